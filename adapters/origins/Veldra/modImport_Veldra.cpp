// Veldra, one customer's own database: SQL Server, VELDRA unless the setting Databasename names another.
// Counterparties of every kind with their telephones and addresses, branches and contact persons. Nothing is published:
// every table and column is this system's own reading, fitted to an installation by "Tracciati/Veldra.ini". Branches
// and contacts are those of IdSoggetto. Known gaps: articles, documents and everything else; the window shows no button
// for them.

#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "adapters/sourceSettings.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Veldra {

const contract::Origin& Entry();

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Soggetti = QStringLiteral("Soggetti");

/// What hangs on a counterparty.
ChildTable RowsOf(const QString& table) {
    return {.table = table, .on = {{"IdSoggetto"}}, .order = "Progressivo", .naming = "IdSoggetto, Progressivo"};
}

// --- Telephones and addresses -------------------------------------------------------------------------------------

const ChildTable& Recapiti() {
    static const ChildTable rows = RowsOf("Recapiti");
    return rows;
}

Needs RecapitiNeeds() {
    Needs needs = Recapiti().OwnNeeds(Soggetti);
    needs.reads.push_back({Recapiti().table, {"TipoRecapito", "Valore"}, {"Descrizione"}});
    return needs;
}

/// The telephones of a counterparty that have no description of their own are told apart by their order.
QString TelephoneLabel(int position) {
    static const QStringList labels{"Ufficio", "Ufficio 2"};
    return labels.value(position, QStringLiteral("Altro"));
}

void WriteRecapiti(ImportRun& run, CounterpartyWriter& writer, const SourceRow& party, const Owner& owner) {
    constexpr int labelSize = 50;
    int telephones = 0;
    Recapiti().ForEach(run.GetSession(), party, [&](const SourceRow& row) {
        const QString value = row.Text("Valore");
        const auto label = [own = FirstOf(row.Text("Descrizione"), labelSize)](const QString& usual) {
            return own.isEmpty() ? usual : own;
        };
        const QString kind = row.Text("TipoRecapito").toUpper();
        if (value.isEmpty()) {
            return;
        }
        if (kind == u"T") {
            writer.Telephone(owner, label(TelephoneLabel(telephones++)), value);
        } else if (kind == u"F") {
            writer.Telephone(owner, label("Fax (uff.)"), value);
        } else if (kind == u"C") {
            writer.Telephone(owner, label("Cellulare"), value);
        } else if (kind == u"E") {
            writer.Mail(owner, label("@ Principale"), value);
        } else if (kind == u"W") {
            writer.WebSite(owner, value, label("Indirizzo Web"));
        } else {
            run.Log(QStringLiteral("RECAPITO NON IMPORTATO: %1: '%2': il tipo '%3' non è T (telefono), F (fax), "
                                   "C (cellulare), E (posta elettronica) né W (sito)")
                        .arg(Recapiti().Name(row), value, kind));
        }
    });
}

// --- Counterparties -----------------------------------------------------------------------------------------------

Branches Sedi() {
    const QString table = QStringLiteral("Sedi");
    return {
        .rows = RowsOf(table),
        .lines =
            {
                {BranchLines(table, {.number = "Progressivo",
                                     .name = "Denominazione",
                                     .street = "Indirizzo",
                                     .houseNumber = "Civico",
                                     .postCode = "Cap",
                                     .town = "Comune",
                                     .province = "Provincia",
                                     .country = "Nazione",
                                     .person = "Referente",
                                     .isDefault = "Predefinita"})
                     .Over({})},
                {"SETIP", "TipoSede", Choice({{"F", "FT"}}, "CO")},
            },
    };
}

Contacts Referenti() {
    return {
        .rows = RowsOf("Referenti"),
        .lines = {{"RFNOM", "Nominativo", Text()},
                  {"RFQUA", "Ruolo", Text()},
                  {"RFTIT", "Ufficio", Text()},
                  {"RFNOT", "Note", Text()}},
        .numbers = {.office = "Telefono", .mobile = "Cellulare", .mail = "Email"},
    };
}

Lines LinesOfSoggetti() {
    const Lines lines = PartyLines(Soggetti, {.name = "Denominazione",
                                              .name2 = "Denominazione2",
                                              .isPerson = "PersonaFisica",
                                              .surname = "Cognome",
                                              .firstName = "Nome",
                                              .street = "Indirizzo",
                                              .houseNumber = "Civico",
                                              .postCode = "Cap",
                                              .town = "Comune",
                                              .province = "Provincia",
                                              .vatNumber = "PartitaIva",
                                              .taxCode = "CodiceFiscale",
                                              .recipientCode = "CodiceDestinatario",
                                              .certifiedMail = "Pec",
                                              .abi = "Abi",
                                              .cab = "Cab",
                                              .cin = "Cin",
                                              .account = "Conto",
                                              .iban = "Iban",
                                              .bic = "Bic",
                                              .discount1 = "Sconto1",
                                              .discount2 = "Sconto2",
                                              .discount3 = "Sconto3",
                                              .agent = "CodAgente",
                                              .list = "CodListino",
                                              .language = "Lingua",
                                              .category = "CodCategoria",
                                              .credit = "Fido",
                                              .ledger = "ContoContabile",
                                              .isBlocked = "Bloccato",
                                              .isCancelled = "Annullato",
                                              .note = "Note"});
    return {
        {lines.Over({})},
        {"COINV", "DataInserimento", DayOrToday()},
        {"CONAZ", "Nazione", Country(Soggetti, "NAZIONE")},
        ByRole("COMOP", "COMOA", "CodPagamento", Translated(Soggetti, "PAGAMENTI")),
        {"COVAL", "CodValuta", Currency(Soggetti, "VALUTA")},
        {"COZON", "CodZona", Translated(Soggetti, "ZONA")},
        {"COESE", "CodIvaEsenzione", ExemptVat(Soggetti, "COD.ESENZIONEIVA")},
    };
}

Counterparties Controparti() {
    return {
        .frame = {.module = "modImport_Veldra", .procedure = "ImportContropartiVeldra"},
        .source = {.table = Soggetti, .key = "Codice", .order = "Codice"},
        .roles = ByLetter("Tipo", {.customer = {"1"}, .supplier = {"2"}, .both = {"3"}, .carrier = {"4"}}),
        .name = "Denominazione, Denominazione2",
        .vatNumber = "PartitaIva",
        .taxCode = "CodiceFiscale",
        .lines = LinesOfSoggetti(),
        .branches = {Sedi()},
        .contacts = {Referenti()},
        .more = SetIban,
        .after = WriteRecapiti,
        .further = RecapitiNeeds(),
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Veldra",
        "modImport_Veldra",
        {.kind = "SQL Server", .prepare = sourceSettings::Server("VELDRA"), .names = Naming::OurReading},
        Buttons("YNNN----"),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti()),
        },
    };
    return origin;
}

} // namespace modImport_Veldra
