// OSL GP90: the SQL Server database of a production system, OSL unless the setting Databasename names another:
// customers, suppliers and carriers, articles, bills with their cycles, orders, base tables, price lists. All tables
// and columns are this system's own reading; an installation that calls them otherwise is fitted by its layout file
// (Tracciati). The numbers of DESTINAZIONI and RIFERIMENTI are those of a counterparty of any kind. The price of LISRIG
// holds from QTASCAGL on. Known gaps: stock, and the phases of orders to subcontractors.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/kinds/PriceLists.h"
#include "adapters/contract/map/codeRules.h"
#include "adapters/contract/map/numberedLists.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_OSL {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_OSL");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Anagrafiche = QStringLiteral("ANAGRAFICHE");
const QString ArticoliTable = QStringLiteral("ARTICOLI");
const QString Distinta = QStringLiteral("DISTINTA");
const QString Cicli = QStringLiteral("CICLI");
const QString Testate = QStringLiteral("ORDTES");
const QString ListHeads = QStringLiteral("LISTES");
const QString ListRows = QStringLiteral("LISRIG");

// --- Rules --------------------------------------------------------------------------------------------------------

/// CDART of an article's code.
Rule Article() { return ArticleCode(ArticoliTable, "CODART"); }

/// The Quadrix code of a code of ANAGRAFICHE.
Rule OfParty(const QString& column) { return Translated(Anagrafiche, column); }

// --- Counterparties -----------------------------------------------------------------------------------------------

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiOSL"},
        .source = {.table = Anagrafiche, .key = "CODICE", .order = "TIPO, CODICE", .naming = "TIPO, CODICE"},
        .roles = ByLetter("TIPO", {.customer = {"C"}, .supplier = {"F"}, .both = {"E"}, .carrier = {"V"}}),
        .name = "RAGSOC1, RAGSOC2",
        .vatNumber = "PARTIVA",
        .taxCode = "CODFISC",
        .lines =
            {
                {"CORAS", "RAGSOC1", First(35)},
                {"CORA2", "RAGSOC1, RAGSOC2", SecondName(35)},
                {"COIND", "INDIRIZZO", Text()},
                {"COCAP", "CAP", Text()},
                {"COCIT", "LOCALITA", Text()},
                {"COPRO", "PROV", Text()},
                {"CONAZ", "NAZIONE", Country(Anagrafiche, "NAZIONE")},
                {"COIVA", "PARTIVA", NotBlank(Text())},
                {"COFIS", "CODFISC", NotBlank(Text())},
                ByRole("COMOP", "COMOA", "CODPAG", OfParty("CODPAG")),
                {"COABI", "ABI", NotBlank(Digits(5))},
                {"COCAB", "CAB", NotBlank(Digits(5))},
                {"COCOC", "CONTO", NotBlank(Text())},
                {"COCIN", "CIN", NotBlank(Text())},
                {"COIBA", "IBAN", NotBlank(WithoutBlanks())},
                ByRole("COSC1", "COSF1", "SCONTO1", NotBlank(RoundedTo(2))),
                ByRole("COSC2", "COSF2", "SCONTO2", NotBlank(RoundedTo(2))),
                {"COAGE", "CODAGE", TranslatedOrKnown(Anagrafiche, "CODAGE", "AGE_NTI")},
                ByRole("COLSC", "COLSF", "CODLIS", OfParty("CODLIS")),
                {"COZON", "CODZONA", OfParty("CODZONA")},
                {"COVAL", "CODVAL", Currency(Anagrafiche, "CODVAL")},
                {"COESE", "CODIVA", ExemptVat(Anagrafiche, "CODIVA")},
                {"CONOT", "NOTE", Text()},
                {"COANN", "ANNULLATO", Flag()},
            },
        .numbers = {.office = "TELEFONO",
                    .office2 = "TELEFONO2",
                    .fax = "FAX",
                    .mobile = "CELLULARE",
                    .mail = "EMAIL",
                    .web = "WEB"},
        .branches = {{
            .rows = {.table = "DESTINAZIONI", .on = {{"CODICE"}}, .order = "PROGR", .naming = "CODICE, PROGR"},
            .lines = BranchLines("DESTINAZIONI", {.number = "PROGR",
                                                  .name = "RAGSOC",
                                                  .street = "INDIRIZZO",
                                                  .postCode = "CAP",
                                                  .town = "LOCALITA",
                                                  .province = "PROV"}),
            .numbers = {.office = "TELEFONO"},
        }},
        .contacts = {{
            .rows = {.table = "RIFERIMENTI", .on = {{"CODICE"}}, .order = "NOME", .naming = "CODICE, NOME"},
            .lines = {{"RFNOM", "NOME", Text()}, {"RFQUA", "MANSIONE", Text()}},
            .numbers = {.office = "TELEFONO", .mail = "EMAIL"},
        }},
        .more = SetIban,
    };
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliOSL"},
        .source = {.table = ArticoliTable, .key = "CODART", .order = "CODART"},
        .code = {"CODART", Article()},
        .description = "DESCR1",
        .lines =
            {
                {"CDEXT", "CODART", Text()},
                {"ARDE2", "DESCR2", First(100)},
                {"ARUMS", "UM", Unit(ArticoliTable, "UM", schema::defaults::Unit)},
                {"ARUM2", "UMACQ", Unit(ArticoliTable, "UM", "")},
                {"ARUMP", "UMACQ", Unit(ArticoliTable, "UM", "")},
                {"ARCOE", "FATTCONV", NotZero()},
                {"ARIVA", "CODIVA", VatCode(ArticoliTable, "CODIVA")},
                {"ARCLA", "CLASSE", Choice({{"P", "PF"}, {"S", "SL"}}, "CM")},
                {"ARFAM", "FAMIGLIA", TranslatedOrKnown(ArticoliTable, "FAMIGLIA", "FAM_PRO")},
                {"ARCOS", "COSTOULT, COSTOSTD", FirstNotZero()},
                {"ARPRZ", "PREZZO", RoundedTo(6)},
                {"ARPSN", "PESO", RoundedTo(3)},
                {"ARSMN", "SCORTAMIN", RoundedTo(6)},
                {"ARLOR", "LOTTORIORD", RoundedTo(6)},
                {"ARQMR", "LOTTOMIN", RoundedTo(6)},
                {"ARGGA", "LEADTIME", RoundedTo(0)},
                {"ARDIS", "DISEGNO", Text()},
                {"ARREV", "REVISIONE", Text()},
                {"ARANN", "ANNULLATO", Flag()},
                {"ARINV", "DATACREA", DayThere()},
                {"DTINS", "DATACREA", DayThere()},
                {"ARNOT", "NOTE", Text()},
            },
        .suppliers = {{.supplier = {"CODFOR", KnownSupplier()},
                       .ownCode = "CODARTFOR",
                       .price = {"COSTOULT, COSTOSTD", FirstNotZero()},
                       .leadDays = "LEADTIME",
                       .lot = "LOTTORIORD",
                       .minimum = "LOTTOMIN"}},
        .location = "UBICAZIONE",
        .more = SetMarkUp,
        .further = {{}, {}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

// --- Bills --------------------------------------------------------------------------------------------------------

Bills Distinte() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistinteOSL",
                  .announcement = "Inizio importazione Distinte Base da OSL",
                  .completion = "Distinte Base OSL importate correttamente: %1 (Fasi: %2, Comp.: %3)"},
        .source = {.table = Distinta, .key = "PADRE", .order = "PADRE", .distinct = true},
        .article = {"PADRE", Article()},
        .components =
            {
                .rows = {.table = Distinta, .on = {{"PADRE"}}, .order = "NRIGA", .naming = "PADRE, NRIGA"},
                .article = {"FIGLIO", Article()},
                .quantity = "QTA",
                .note = "NOTE",
                .position = "NRIGA",
                .phase = "FASE",
                .lines = {{"DCCOE", "SCARTO", WasteFactor()}},
            },
        .phases =
            BillPhases{
                .rows = {.table = Cicli, .on = {{"CODART", "PADRE"}}, .order = "FASE", .naming = "CODART, FASE"},
                .key = "FASE",
                .number = "FASE",
                .work = {"LAVORAZ", Or(Translated("Lavorazioni", "Descrizione"), schema::defaults::GenericWork)},
                .note = "NOTE",
                .setUpTime = "TATTREZ",
                .unitTime = "TUNIT",
                .cost = "COSTOORA",
                .supplier = {"CODFOR", KnownSupplier()},
                .machine = {"MACCHINA", TranslatedOrKnown(Cicli, "MACCHINA", "MAC_CHI")},
            },
    };
}

// --- Documents ----------------------------------------------------------------------------------------------------

bool IsClosed(const SourceRow& row) { return row.Text("STATO").compare(u"E", Qt::CaseInsensitive) == 0; }

/// Nothing more is delivered of an order that is closed.
void CloseRow(ImportRun& /*run*/, const SourceRow& row, TargetRow& target) {
    if (IsClosed(row)) {
        target.Set("DRSTA", schema::defaults::Delivered);
    }
}

/// Behind both buttons: the operator is asked which orders are meant.
Documents Documenti() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDocumentiOSL",
                  .announcement = "Inizio importazione Documenti da OSL",
                  .completion = "Documenti OSL importati correttamente: %1",
                  .confirmation = "Importare i documenti?"},
        .source = {.table = Testate,
                   .key = "NUMERO",
                   .order = "TIPO, ANNO, NUMERO, NRIGA",
                   .naming = "TIPO, ANNO, NUMERO, NRIGA",
                   .group = {"TIPO", "ANNO", "NUMERO"}},
        .rows = {.table = "ORDRIG", .on = {{"ANNO"}, {"TIPO"}, {"NUMERO"}}, .order = "NRIGA"},
        .kinds = {{.marks = {"C"}, .cause = "ORDCL", .type = "ORD", .family = Sales},
                  {.marks = {"F"}, .cause = "ORDFO", .type = "ORD", .family = Purchases},
                  {.marks = {"L"}, .cause = "ORDLA", .type = "ORD", .family = WorkAccount}},
        .kind = "TIPO",
        .head =
            {
                .number = "NUMERO",
                .day = "DATA",
                .year = "ANNO",
                .series = "SERIE",
                .counterparty = {"CODICE", PartyOf()},
                .state = {"STATO", Choice({{"E", schema::defaults::Delivered}}, schema::defaults::ToDeliver)},
                .lines = {{"DTRIC", "RIFORD", Text()},
                          {"DTRID", "DATARIF", Day()},
                          {"DTMOP", "CODPAG", OfParty("CODPAG")},
                          {"DTVAL", "CODVAL", Currency(Anagrafiche, "CODVAL")},
                          {"DTNOT", "NOTE", Text()}},
            },
        .row =
            {
                .number = "NRIGA",
                .article = {"CODART", Article()},
                .description = "DESCR",
                .unit = {"UM", Unit(ArticoliTable, "UM", "")},
                .quantity = "QTA",
                .delivered = "QTAEVASA",
                .price = "PREZZO",
                .discounts = {"SCONTO1", "SCONTO2"},
                .vatCode = {"CODIVA", NotBlank(VatCode(ArticoliTable, "CODIVA"))},
                .lines = {{"DRCOR", "DATACONS", Day()}},
            },
        .which = Which::Asked,
        .moreOfRow = CloseRow,
    };
}

// --- Base tables --------------------------------------------------------------------------------------------------

Procedure TabelleBase() {
    const PaymentTerms terms{
        .frame = {.module = Module,
                  .procedure = "ImportTabelleBaseOSL",
                  .announcement = "Inizio importazione Tabelle Generali",
                  .step = "Modalità di pagamento",
                  .completion = "Tabelle Generali importate correttamente!"},
        .source = {.table = "TABPAG", .key = "CODPAG", .order = "CODPAG"},
        .code = "CODPAG",
        .lines = {{"MPDES", "DESCR", Text()}},
        .series = InstalmentSeries{.count = "NRATE",
                                   .firstDays = "GGPRIMA",
                                   .everyDays = "GGRATA",
                                   .start = {"FINEMESE", FlagAs("FM", "DF")}},
    };
    const BaseTable vat =
        CodeTable("Codici IVA", "TABIVA", "CODIVA", "TAB_IVA",
                  {{"IVDES", "DESCR", Text()}, {"IVALI", "ALIQ", VatRate()}, {"IVIND", "INDETR", RoundedTo(2)}});
    return ProcedureOf(Button::Saldi, FrameOf(terms),
                       {PartOf(terms), PartOf(vat),
                        PartOf(CodeTable("Unità di misura", "TABUM", "UM", "TAB_UMS", {{"UMDES", "DESCR", Text()}})),
                        PartOf(CodeTable("Famiglie", "TABFAM", "FAMIGLIA", "FAM_PRO", {{"FPDES", "DESCR", Text()}}))});
}

// --- Price lists --------------------------------------------------------------------------------------------------

PriceLists Listini() {
    const std::vector<Tie> ofList{{"CODLIS"}};
    return {
        .frame = {.module = Module, .procedure = "ImportListiniOSL"},
        .source = {.table = ListRows,
                   .key = "CODLIS",
                   .order = "CODLIS, CODART, DATAINI, QTASCAGL",
                   .naming = "CODLIS, CODART, QTASCAGL",
                   .joins = {{.table = ListHeads, .on = ofList, .columns = {"DESCR", "TIPO", "VALUTA"}}}},
        .article = {"CODART", Article()},
        .prices = {{
            .list = {"CODLIS", KeptList("CODLIS")},
            .direction = "TIPO",
            .description = "DESCR",
            .currency = {"VALUTA", Currency(Anagrafiche, "CODVAL")},
            .since = {"CODLIS", OfFirst(ListRows, {.table = ListHeads, .on = ofList}, "DATAINI", Day())},
            .from = "DATAINI",
            .to = "DATAFIN",
            .scales = {{.quantityFrom = "QTASCAGL", .price = "PREZZO", .discounts = {"SCONTO1", "SCONTO2"}}},
        }},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "OSL GP90",
        Module,
        {.kind = "SQL Server", .prepare = sourceSettings::Server("OSL"), .names = Naming::OurReading},
        Buttons("YYYYYYNY", {{Button::Saldi, "Importa Tabelle Generali"}, {Button::Disegni, "Importa Listini"}}),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti()),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Dis, Distinte()),
            ProcedureOf(Button::Doc, Documenti()),
            ProcedureOf(Button::Acq, Documenti()),
            TabelleBase(),
            ProcedureOf(Button::Disegni, Listini()),
        },
    };
    return origin;
}

} // namespace modImport_OSL
