// Lamina: a CSV file for each button, which the operator chooses, with ";" between the columns and their names in the
// first line. Counterparties, their contact persons and branches, articles and orders of customers stand here, bills
// and their phases in modImport_Lamina_bills.cpp. Nothing is published: every name is this system's own reading, fitted
// by "Tracciati/Lamina.ini", where a file is the table of its procedure (CONTROPARTI, CONTATTI, SEDI, ARTICOLI,
// DISTINTE, LAVORAZIONI, ORDINI), whatever it is called. Days are gg/mm/aaaa, times minutes. Known gaps: price lists,
// stock.

#include "adapters/origins/Lamina/modImport_Lamina.h"

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/kinds/PartyRows.h"
#include "adapters/contract/kinds/readFiles.h"
#include "adapters/contract/map/codeRules.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"
#include "sources/privateDatabase.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Lamina {

const contract::Origin& Entry();

namespace {

const QString Controparti = QStringLiteral("CONTROPARTI");
const QString Contatti = QStringLiteral("CONTATTI");
const QString Sedi = QStringLiteral("SEDI");
const QString ArticoliFile = QStringLiteral("ARTICOLI");
const QString Ordini = QStringLiteral("ORDINI");

Rule TextDay() { return DateText("dd/MM/yyyy"); }

// --- Counterparties -----------------------------------------------------------------------------------------------

Lines PartyLinesOf() {
    const Lines lines = PartyLines(Codes, {.name = "RAGIONE_SOCIALE",
                                           .name2 = "RAGIONE_SOCIALE_2",
                                           .street = "INDIRIZZO",
                                           .houseNumber = "CIVICO",
                                           .postCode = "CAP",
                                           .town = "CITTA",
                                           .province = "PROVINCIA",
                                           .country = "NAZIONE",
                                           .vatNumber = "PARTITA_IVA",
                                           .taxCode = "CODICE_FISCALE",
                                           .recipientCode = "CODICE_SDI",
                                           .certifiedMail = "PEC",
                                           .ownBank = "BANCA",
                                           .abi = "ABI",
                                           .cab = "CAB",
                                           .account = "CONTO",
                                           .iban = "IBAN",
                                           .discount1 = "SCONTO",
                                           .agent = "AGENTE",
                                           .list = "LISTINO",
                                           .currency = "VALUTA",
                                           .exemption = "ESENZIONE",
                                           .note = "NOTE"});
    return {{lines.Over({})}, ByRole("COMOP", "COMOA", "PAGAMENTO", Translated(Codes, "PAGAMENTI"))};
}

Counterparties Parties() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiLaminaFromCSV"},
        .source = {.table = Controparti, .key = "CODICE", .naming = Line + ", CODICE"},
        .roles = ByLetter("TIPO", {.customer = {"C"}, .supplier = {"F"}, .both = {"E"}}),
        .name = "RAGIONE_SOCIALE, RAGIONE_SOCIALE_2",
        .vatNumber = "PARTITA_IVA",
        .taxCode = "CODICE_FISCALE",
        .codeTable = Codes,
        .lines = PartyLinesOf(),
        .numbers = {.office = "TELEFONO",
                    .office2 = "TELEFONO_2",
                    .fax = "FAX",
                    .mobile = "CELLULARE",
                    .mail = "EMAIL",
                    .web = "SITO"},
    };
}

// --- Contacts and branches ----------------------------------------------------------------------------------------

/// Rows of a counterparty that is there: of a customer with that code, else of a supplier.
PartyRows RowsOf(PartyRow kind, const QString& file, const QString& procedure, const QString& confirmation) {
    return {.kind = kind,
            .frame = {.module = Module, .procedure = procedure, .confirmation = confirmation},
            .source = {.table = file, .key = "CLIENTE", .naming = Line + ", CLIENTE"},
            .roles = Always({.customer = true}),
            .owner = "CLIENTE",
            .party = {"CLIENTE", KnownParty()}};
}

PartyRows ContactRows() {
    PartyRows rows =
        RowsOf(PartyRow::Contact, Contatti, "ImportContattiContropartiLamina", "Importare i Contatti dei Clienti?");
    rows.lines = {{"RFNOM", "NOME", Text()},    {"RFQUA", "RUOLO", Text()},  {"RFTIT", "REPARTO", Text()},
                  {"RFOFF", "OFFERTE", Flag()}, {"RFORD", "ORDINI", Flag()}, {"RFDDT", "DDT", Flag()},
                  {"RFFAT", "FATTURE", Flag()}, {"RFNOT", "NOTE", Text()}};
    rows.numbers = {.office = "TELEFONO", .mobile = "CELLULARE", .mail = "EMAIL"};
    return rows;
}

PartyRows BranchRows() {
    PartyRows rows = RowsOf(PartyRow::Branch, Sedi, "ImportSediContropartiLamina", "Importare le Sedi dei Clienti?");
    rows.lines = {{BranchLines(Codes, {.number = "PROGRESSIVO",
                                       .name = "RAGIONE_SOCIALE",
                                       .street = "INDIRIZZO",
                                       .houseNumber = "CIVICO",
                                       .postCode = "CAP",
                                       .town = "CITTA",
                                       .province = "PROVINCIA",
                                       .country = "NAZIONE",
                                       .person = "REFERENTE",
                                       .isDefault = "PREDEFINITA",
                                       .note = "NOTE"})
                       .Over({})},
                  {"SETIP", "TIPO", Choice({{"F", "FT"}}, "CO")}};
    rows.numbers = {.office = "TELEFONO", .fax = "FAX"};
    return rows;
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles ArticlesOf() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliLaminaFromCSV"},
        .source = {.table = ArticoliFile, .key = "CODICE", .naming = Line + ", CODICE"},
        .code = {"CODICE", Article()},
        .description = "DESCRIZIONE",
        .lines =
            {
                {"CDEXT", "CODICE", Text()},
                {"ARDE2", "DESCRIZIONE_2", First(100)},
                {"ARUMS", "UM", ArticleUnit(schema::defaults::Unit)},
                {"ARUM2", "UM_2", ArticleUnit("")},
                {"ARCOE", "FATTORE", NotZero()},
                {"ARIVA", "IVA", VatCode(Codes, "IVA")},
                {"ARCLA", "CLASSE", UpperOr(10, "CM")},
                {"ARLAM", "CLASSE", Is("LM")},
                {"ARTUB", "CLASSE", Is("TB")},
                {"ARFAM", "FAMIGLIA", TranslatedOrKnown(Codes, "FAMIGLIA", "FAM_PRO")},
                {"ARMAT", "MATERIALE", TranslatedOrKnown(Codes, "MATERIALE", "TAB_MAT")},
                {"ARDMX", "LUNGHEZZA", RoundedTo(6)},
                {"ARDMY", "LARGHEZZA", RoundedTo(6)},
                {"ARDMZ", "SPESSORE", RoundedTo(6)},
                {"ARPSN", "PESO", RoundedTo(3)},
                {"ARCOS", "COSTO", RoundedTo(6)},
                {"ARPRZ", "PREZZO", RoundedTo(6)},
                {"ARSMN", "SCORTA_MIN", RoundedTo(6)},
                {"ARLOR", "LOTTO", RoundedTo(6)},
                {"ARGGA", "LEAD_TIME", RoundedTo(0)},
                {"ARCLI", "CLIENTE", KnownCustomer()},
                {"ARDIS", "DISEGNO", Text()},
                {"ARREV", "REVISIONE", Text()},
                {"ARNOT", "NOTE", Text()},
            },
        .suppliers = {{.supplier = {"FORNITORE", KnownSupplier()},
                       .ownCode = "CODICE_FORNITORE",
                       .price = "COSTO",
                       .leadDays = "LEAD_TIME",
                       .lot = "LOTTO"}},
        .location = "UBICAZIONE",
        .more = SetMarkUp,
        .further = {{}, {}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

// --- Orders of customers ------------------------------------------------------------------------------------------

Documents OrdersOf() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportOrdiniLaminaFromCSV",
                  .announcement = "Inizio importazione Ordini da Lamina",
                  .step = "Ordini",
                  .completion = "Ordini Lamina importati correttamente: %1",
                  .confirmation = "Importare gli Ordini?"},
        .source = {.table = Ordini,
                   .key = "NUMERO",
                   .order = "ANNO, NUMERO, " + Line,
                   .naming = Line + ", ANNO, NUMERO, RIGA",
                   .group = {"ANNO", "NUMERO"}},
        .reading = Reading::OneTable,
        .kinds = {{.cause = "ORDCL", .type = "ORD", .family = Sales}},
        .head =
            {
                .number = "NUMERO",
                .day = {"DATA", TextDay()},
                .year = "ANNO",
                .counterparty = {"CLIENTE", CustomerOf()},
                .lines =
                    {
                        {"DTRIC", "RIF_CLIENTE", Text()},
                        {"DTRID", "DATA_RIF", TextDay()},
                        {"DTMOP", "PAGAMENTO", Translated(Codes, "PAGAMENTI")},
                    },
            },
        .row =
            {
                .number = "RIGA",
                .article = {"ARTICOLO", Article()},
                .description = "DESCRIZIONE",
                .unit = {"UM", ArticleUnit("")},
                .quantity = "QUANTITA",
                .delivered = "EVASO",
                .price = "PREZZO",
                .discounts = {"SCONTO"},
                .vatCode = {"IVA", NotBlank(VatCode(Codes, "IVA"))},
                .lines = {{"DRCOR", "CONSEGNA", TextDay()}, {"DRNOT", "NOTE", Text()}},
            },
        .sinceCondition = EveryRow,
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Lamina",
        Module,
        {.kind = "CSV",
         .prepare =
             sourceSettings::CsvFileAs({Controparti, Contatti, Sedi, ArticoliFile, Distinte, Lavorazioni, Ordini},
                                       {Distinte + ".PADRE", Lavorazioni + ".ARTICOLO"}),
         .names = Naming::OurReading},
        Buttons("YYYYYYYN", {{Button::Acq, "Importa Contatti Clienti"},
                             {Button::Saldi, "Importa Sedi Clienti"},
                             {Button::Piano, "Importa Lavorazioni Distinte"}}),
        Shown::Keep,
        {
            ProcedureReadingChosenFile(Button::Cli, Parties()),
            ProcedureReadingChosenFile(Button::Art, ArticlesOf()),
            ImportDistinteLaminaFromCSV(),
            ProcedureReadingChosenFile(Button::Doc, OrdersOf()),
            ProcedureReadingChosenFile(Button::Acq, ContactRows()),
            ProcedureReadingChosenFile(Button::Saldi, BranchRows()),
            ImportLavorazioniLaminaFromCSV(),
        },
    };
    return origin;
}

} // namespace modImport_Lamina
