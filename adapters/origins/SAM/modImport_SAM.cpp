// SAM: the ODBC data source SAM; user, password and database are asked for. Persons who are customers, suppliers or
// both, with their addresses and contacts, articles, the chart of accounts. Of the layout the table of persons
// (Persone) is known; every other name is this system's own in its style, all releases alike, and is fitted to an
// installation by the layout file "Tracciati/SAM.ini". Whoever is both is one counterparty, found by IdPersona. SYS_IMP
// knows a person by the table Persone and its code, else by the table and the code of the role. Known gaps: bills,
// price lists, documents.

#include "adapters/askedTexts.h"
#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/map/codeRules.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_SAM {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_SAM");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Persone = QStringLiteral("Persone");
const QString ArticoliTable = QStringLiteral("Articoli");
const QString Conti = QStringLiteral("PianoConti");

/// The persons of one role.
struct RoleTable {
    QString table;
    QString code;
    QString target; ///< column of CON_TRO that keeps the code
    QString step;
    Roles roles;
};
RoleTable Clienti() { return {"Clienti", "CodCliente", "COCGE", "Clienti", {.customer = true}}; }
RoleTable Fornitori() { return {"Fornitori", "CodFornitore", "COFGE", "Fornitori", {.supplier = true}}; }

// --- Counterparties -----------------------------------------------------------------------------------------------

/// What a person is, with the terms of trade of a role: some of them customers alone have.
PartyColumns ColumnsOf(const RoleTable& role) {
    PartyColumns columns{
        .name = "RagioneSociale",
        .name2 = "RagioneSociale2",
        .isPerson = "PersonaFisica",
        .surname = "Cognome",
        .firstName = "Nome",
        .street = "Indirizzo",
        .postCode = "CAP",
        .town = "Localita",
        .province = "Provincia",
        .country = "Nazione",
        .vatNumber = "PartitaIva",
        .taxCode = "CodiceFiscale",
        .payment = "Pagamento",
        .ownBank = "BancaNostra",
        .abi = "ABI",
        .cab = "CAB_Banca",
        .cin = "CIN",
        .account = "ContoCorrente",
        .iban = "IBAN",
        .bic = "BIC",
        .discount1 = "Sconto1",
        .discount2 = "Sconto2",
        .list = "Listino",
        .currency = "Valuta",
        .language = "Lingua",
        .category = "Categoria",
        .exemption = "CodiceIva",
        .ledger = "Conto",
        .isCancelled = "Annullato",
        .note = "Note",
        .created = "DataInserimento",
    };
    if (role.roles.customer) {
        columns.agent = "Agente";
        columns.zone = "Zona";
        columns.port = "Porto";
        columns.carrier = "Vettore";
        columns.credit = "Fido";
        columns.isBlocked = "Bloccato";
    }
    return columns;
}

/// CDCON of who has been imported from the same person in another role. Of two codes that a person has in a role each
/// keeps the counterparty that it has become.
Rule SamePerson(const RoleTable& role, const RoleTable& other) {
    const ChildTable rows{.table = other.table, .on = {{"IdPersona"}}, .order = other.code};
    const ChildTable own{.table = role.table, .on = {{"IdPersona"}}, .order = role.code};
    return {QStringLiteral("controparte importata dalla riga della persona in %1, se %2 non ne ha già una e quella non "
                           "è di un altro %2 della persona; niente se manca")
                .arg(other.table, role.code),
            [rows, own, role, other](const RuleInput& input) -> RuleValue {
                const auto partyOf = [&input](const RoleTable& table, const QString& code) {
                    return code.isEmpty() ? code : LookUp(input.session, "CON_TRO", table.target, code, "CDCON");
                };
                if (!partyOf(role, input.row.Text(role.code)).isEmpty()) {
                    return RuleValue();
                }
                QStringList codes;
                own.ForEach(input.session, input.row, [&](const SourceRow& row) { codes.append(row.Text(role.code)); });
                const auto isTaken = [&](const QString& party) {
                    const QString code = LookUp(input.session, "CON_TRO", "CDCON", party, role.target);
                    return !code.isEmpty() && codes.contains(code, Qt::CaseInsensitive);
                };
                QString party;
                rows.ForEach(input.session, input.row, [&](const SourceRow& row) {
                    const QString found = party.isEmpty() ? partyOf(other, row.Text(other.code)) : QString();
                    party = found.isEmpty() || isTaken(found) ? party : found;
                });
                return party.isEmpty() ? RuleValue() : RuleValue(party);
            },
            Side::Both, rows.OwnNeeds(role.table).reads};
}

/// CDCON that SYS_IMP tells for the code of a person, whatever the role's own.
Rule CodeOfPerson() {
    return {QStringLiteral("tradotto con SYS_IMP (%1, Codice)").arg(Persone), [](const RuleInput& input) {
                return RuleValue(modImport::GetNewCode(input.session, Persone, "Codice", input.Text(), false));
            }};
}

Branches Sedi() {
    return {
        .rows = {.table = "PersoneIndirizzi", .on = {{"IdPersona"}}, .order = "Progressivo"},
        .lines =
            {
                {"CDSED", "Progressivo", Digits(3)},
                {"SERAS", "Descrizione", First(100)},
                {"SEIND", "Indirizzo", Text()},
                {"SECAP", "CAP", WhenNotBlank("Localita", Text())},
                {"SECIT", "Localita", WhenNotBlank("Localita", Text())},
                {"SEPRO", "Provincia", Text()},
                {"SENAZ", "Nazione", Country(Persone, "Nazione")},
                {"SEDEF", "Predefinito", Flag()},
            },
        .numbers = {.office = "Telefono", .fax = "Fax"},
    };
}

Contacts Contatti() {
    return {
        .rows = {.table = "PersoneContatti", .on = {{"IdPersona"}}, .order = "Progressivo"},
        .lines = {{"RFNOM", "Nominativo", Text()}, {"RFQUA", "Ruolo", Text()}},
        .numbers = {.office = "Telefono", .mobile = "Cellulare", .mail = "EMail"},
    };
}

/// The contact that stands with the person.
Contacts Referente() {
    return {.rows = {.table = Persone, .on = {{"IdPersona"}}, .order = "Codice"},
            .lines = {{"RFNOM", "Referente", Text()}}};
}

const QStringList PersonColumns{"Codice",
                                "RagioneSociale",
                                "RagioneSociale2",
                                "PersonaFisica",
                                "Cognome",
                                "Nome",
                                "Indirizzo",
                                "NumeroCivico",
                                "CAP",
                                "Localita",
                                "Provincia",
                                "Nazione",
                                "PartitaIva",
                                "CodiceFiscale",
                                "Telefono1",
                                "Telefono2",
                                "Fax",
                                "Cellulare",
                                "EMail",
                                "SitoWeb",
                                "ABI",
                                "CAB_Banca",
                                "CIN",
                                "ContoCorrente",
                                "IBAN",
                                "BIC",
                                "Valuta",
                                "Lingua",
                                "Annullato",
                                "Note",
                                "DataInserimento"};

/// A person may have no code of its own: the role's tells it.
QString WithoutPerson(const SourceRow& row) {
    return std::ranges::all_of(PersonColumns, [&row](const QString& column) { return row.IsBlank(column); })
               ? QStringLiteral("senza una riga di Persone")
               : QString();
}

Counterparties PartiesOf(const RoleTable& role, const RoleTable& other) {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiSAM", .step = role.step},
        .source = {.table = role.table,
                   .key = role.code,
                   .order = "Codice, " + role.code,
                   .joins = {{.table = Persone, .on = {{"IdPersona"}}, .columns = PersonColumns}}},
        .roles = Always(role.roles),
        .name = "RagioneSociale, RagioneSociale2",
        .vatNumber = "PartitaIva",
        .taxCode = "CodiceFiscale",
        .told = {"Codice", CodeOfPerson()},
        .sameAs = {"IdPersona", SamePerson(role, other)},
        .lines = {LineGroup(PartyLines(Persone, ColumnsOf(role)).Over({})), {"CONRC", "NumeroCivico", Text()}},
        .numbers = {.office = "Telefono1",
                    .office2 = "Telefono2",
                    .fax = "Fax",
                    .mobile = "Cellulare",
                    .mail = "EMail",
                    .web = "SitoWeb"},
        .created = "DataInserimento",
        .branches = {Sedi()},
        .contacts = {Referente(), Contatti()},
        .empties = role.roles.customer,
        .leavesOut = WithoutPerson,
        .more = SetIban,
    };
}

/// A person with both roles is written by the first and gains the second.
Procedure Controparti() {
    const Counterparties customers = PartiesOf(Clienti(), Fornitori());
    return ProcedureOf(Button::Cli, FrameOf(customers), {PartOf(customers), PartOf(PartiesOf(Fornitori(), Clienti()))});
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliSAM"},
        .source = {.table = ArticoliTable, .key = "Codice", .order = "Codice"},
        .code = {"Codice", ArticleCode(ArticoliTable, "Codice")},
        .description = "Descrizione",
        .lines =
            {
                {"CDEXT", "Codice", Text()},
                {"ARDE2", "Descrizione2", First(100)},
                {"ARDEC", "DescrizioneEstesa", First(255)},
                {"ARUMS", "UnitaMisura", Unit(ArticoliTable, "UnitaMisura", schema::defaults::Unit)},
                {"ARUM2", "UnitaMisura2", Unit(ArticoliTable, "UnitaMisura2", "")},
                {"ARCOE", "FattoreConversione", NotZero()},
                {"ARIVA", "CodiceIva", VatCode(ArticoliTable, "CodiceIva")},
                {"ARCLA", "TipoArticolo", Choice({{"PF", "PF"}}, "CM")},
                {"ARFAM", "Famiglia", Translated(ArticoliTable, "Famiglia")},
                {"ARCOS", "CostoUltimo, CostoStandard", FirstNotZero()},
                {"ARPRZ", "PrezzoVendita", RoundedTo(6)},
                {"ARSCO", "Sconto", RoundedTo(2)},
                {"ARPSN", "PesoNetto", RoundedTo(3)},
                {"ARPSL", "PesoLordo", RoundedTo(3)},
                {"ARSMN", "ScortaMinima", RoundedTo(6)},
                {"ARSMX", "ScortaMassima", RoundedTo(6)},
                {"ARPUR", "PuntoRiordino", RoundedTo(6)},
                {"ARQMR", "QuantitaMinima", RoundedTo(6)},
                {"ARLOR", "LottoRiordino", RoundedTo(6)},
                {"ARGGA", "GiorniApprovvigionamento", RoundedTo(0)},
                {"ARANN", "Annullato", Flag()},
                {"ARNOT", "Note", Text()},
                {"DTINS", "DataInserimento", NotBlank(MomentOrNow())},
            },
        .suppliers = {{.supplier = {"CodFornitore", KnownSupplier()},
                       .ownCode = "CodiceFornitore",
                       .price = {"CostoUltimo, CostoStandard", FirstNotZero()},
                       .leadDays = "GiorniApprovvigionamento",
                       .lot = "LottoRiordino",
                       .minimum = "QuantitaMinima"}},
        .aliases = {{.code = "CodiceBarre"}},
        .location = "Ubicazione",
        .more = SetMarkUp,
        .further = {{}, {}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

// --- Chart of accounts --------------------------------------------------------------------------------------------

Accounts PianoConti() {
    return {
        .frame = {.module = Module, .procedure = "ImportPianoContiSAM"},
        .accounts = {.source = {.table = Conti, .key = "Conto", .order = "Conto"},
                     .target = "PIA_CON",
                     .code = "Conto",
                     .lines =
                         {
                             {"PCDES", "Descrizione", First(100)},
                             {"PCMAS", "Mastro", Text()},
                             {"PCNAT", "Tipo", Text()},
                             {"PCTIP", "Tipo", Text()},
                             {"PCBIL", "Tipo", BalanceSection("CR")},
                             {"PCLEV", "Livello", RoundedTo(0)},
                             {"PCRAG", "Raggruppamento", Text()},
                             {"PCDET", "Movimentabile", Flag()},
                         }},
    };
}

// --- Source -------------------------------------------------------------------------------------------------------

const std::vector<askedTexts::Prompt> Prompts{{"Database UserName:"}, {"Database Password:"}, {"Database Name:"}};

bool PrepareSource(Session& session, ovConnection& source) {
    const auto answers = askedTexts::AskAll(session, Prompts);
    if (!answers) {
        return false;
    }
    if (sourceSettings::NamesSqliteFile(answers->at(2))) {
        source.DatabaseName = answers->at(2);
        return sourceSettings::UseNamedFile(session, source, {});
    }
    source.ConnectionString = "Provider=MSDASQL.1;Password=" + answers->at(1) +
                              ";Persist Security Info=True;User ID=" + answers->at(0) +
                              ";Data Source=SAM;Initial Catalog=" + answers->at(2);
    sourceSettings::ReadLine(session, source);
    return true;
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "SAM",
        Module,
        {.kind = "ODBC", .prepare = PrepareSource, .asks = askedTexts::NeedsOf(Prompts), .names = Naming::OurReading},
        Buttons("YYNNN---"),
        Shown::Keep,
        {
            Controparti(),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Piano, PianoConti()),
        },
    };
    return origin;
}

} // namespace modImport_SAM
