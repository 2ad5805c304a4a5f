// Memphis: an SQL Server database, MEMPHIS unless the setting Databasename names another, whose server and user are
// asked for at each import. Counterparties with destinations and a contact, and the chart of accounts in ledgers and
// accounts; no button leads to the chart, which is reached by its name. Nothing of the layout is published: every table
// and column is this system's own reading, fitted to an installation by "Tracciati/Memphis.ini". Known gaps: articles,
// payment terms, stock, documents.

#include "adapters/askedTexts.h"
#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/map/codeRules.h"
#include "adapters/sourceSettings.h"
#include "core/modMain.h"
#include "core/wholeSettings.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Memphis {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Memphis");

const QString Anagrafiche = QStringLiteral("ANAGRAFICHE");

// --- Counterparties -----------------------------------------------------------------------------------------------

const PartyColumns Columns{
    .name = "RagSoc1",
    .name2 = "RagSoc2",
    .isPerson = "PersFisica",
    .surname = "Cognome",
    .firstName = "Nome",
    .street = "Indirizzo",
    .postCode = "Cap",
    .town = "Localita",
    .province = "Provincia",
    .country = "CodNazione",
    .vatNumber = "PartitaIva",
    .taxCode = "CodFiscale",
    .payment = "CodPagamento",
    .ownBank = "CodBancaAz",
    .abi = "CodAbi",
    .cab = "CodCab",
    .cin = "Cin",
    .account = "NumConto",
    .iban = "Iban",
    .bic = "Bic",
    .discount1 = "Sconto1",
    .discount2 = "Sconto2",
    .agent = "CodAgente",
    .list = "CodListino",
    .currency = "CodValuta",
    .language = "CodLingua",
    .zone = "CodZona",
    .category = "CodCategoria",
    .exemption = "CodIva",
    .port = "CodPorto",
    .carrier = "CodVettore",
    .credit = "Fido",
    .ledger = "CodMastro",
    .isBlocked = "Bloccato",
    .isCancelled = "Annullato",
    .note = "Note",
    .created = "DataCreazione",
};

Branches Destinazioni() {
    return {
        .rows = {.table = "DESTINAZIONI", .on = {{"TipoAnag"}, {"CodAnag"}}, .order = "CodDest"},
        .lines = BranchLines(Anagrafiche, {.number = "CodDest",
                                           .name = "RagSoc",
                                           .street = "Indirizzo",
                                           .postCode = "Cap",
                                           .town = "Localita",
                                           .province = "Provincia",
                                           .country = "CodNazione",
                                           .person = "Riferimento",
                                           .isDefault = "Predefinita"}),
        .numbers = {.office = "Telefono", .fax = "Fax"},
    };
}

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiMPH"},
        .source = {.table = Anagrafiche,
                   .key = "CodAnag",
                   .order = "TipoAnag, CodAnag",
                   .where = "TipoAnag IN ('C','F')",
                   .naming = "TipoAnag, CodAnag"},
        .roles = ByLetter("TipoAnag", {.customer = {"C"}, .supplier = {"F"}}),
        .name = "RagSoc1, RagSoc2",
        .vatNumber = "PartitaIva",
        .taxCode = "CodFiscale",
        .lines = PartyLines(Anagrafiche, Columns),
        .numbers = {.office = "Telefono1",
                    .office2 = "Telefono2",
                    .fax = "Fax",
                    .mobile = "Cellulare",
                    .mail = "EMail",
                    .web = "Internet"},
        .created = "DataCreazione",
        .branches = {Destinazioni()},
        .contacts = {{.lines = {{"RFNOM", "Contatto", Text()}}}},
        .more = SetIban,
    };
}

// --- Chart of accounts --------------------------------------------------------------------------------------------

Accounts PianoConti() {
    return {
        .frame = {.module = Module, .procedure = "ImportPianoContiMPH"},
        .accounts =
            {
                .source = {.table = "CONTI", .key = "CodConto", .order = "CodConto"},
                .target = "CON_CON",
                .code = "CodConto",
                .lines =
                    {
                        {"CCDES", "Descrizione", Text()},
                        {"CCMAS", "CodMastro", Text()},
                        {"CCNAT", "Natura", Choice({{"C", "AQ"}, {"R", "VE"}, {"K", "C"}, {"F", "F"}}, "GE")},
                        {"CCLIV", "Livello", RoundedTo(0)},
                    },
            },
        .ledgers =
            BaseTable{
                .source = {.table = "MASTRI", .key = "CodMastro", .order = "CodMastro"},
                .target = "MAS_TRI",
                .code = "CodMastro",
                .lines =
                    {
                        {"MCDES", "Descrizione", Text()},
                        {"MCTIP", "TipoMastro", Text()},
                        {"MCBIL", "TipoMastro", BalanceSection("CR")},
                        {"MCLIV", "Livello", RoundedTo(0)},
                        {"MCRAG", "CodRaggr", Text()},
                    },
            },
    };
}

// --- Source -------------------------------------------------------------------------------------------------------

const std::vector<askedTexts::Prompt> Prompts{
    {"Server Name:", "(local)"}, {"Network Credential:", "0"}, {"Username:", "sa"}, {"Password:", ""}};

bool PrepareSource(Session& session, ovConnection& source) {
    const auto answers = askedTexts::AskAll(session, Prompts);
    if (!answers) {
        return false;
    }
    source.Server = answers->at(0);
    source.NetworkCredential = mod_ovTools::ReadNumber(answers->at(1)).value_or(0) == 1;
    source.User = answers->at(2);
    source.Password = answers->at(3);
    source.DatabaseName = modMain::GetWholeConfig(
        session, sourceSettings::SectionOf(session, "Memphis", "Databasename"), "Databasename", "MEMPHIS");
    if (!sourceSettings::UseNamedFile(session, source)) {
        sourceSettings::ReadLine(session, source);
    }
    return true;
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Memphis",
        Module,
        {.kind = "SQL Server",
         .prepare = PrepareSource,
         .asks = askedTexts::NeedsOf(Prompts),
         .names = Naming::OurReading},
        Buttons("YNNNNN--"),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti()),
            // The list hides the button of the chart for this origin: it is reached by its name.
            ProcedureOf(std::nullopt, PianoConti()),
        },
    };
    return origin;
}

} // namespace modImport_Memphis
