// Excel scarico AS/400: workbooks that an AS/400 was downloaded into, which the operator chooses: customers, suppliers,
// articles and bills, each in the sheet of that name ("CLIENTI", "FORNITORI", "ARTICOLI", "DISTINTE") or in the first.
// The first row has the names of the fields, in any order; data end at the first row without a code. Texts are padded
// with blanks. Nothing of the dump is published: the fields are this system's own reading, fitted to another dump by
// "Tracciati/Excel scarico AS-400.ini". Left out: the unit of a component (DISTINTE.UNMIS), for a bill counts in that
// of the article; one that differs is logged. Known gaps: documents, stock, price lists.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/map/codeRules.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/sheetCells.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"
#include "sources/privateDatabase.h"
#include "sources/workbook/Workbook.h"

#include <algorithm>

using namespace contract;
using namespace contract::rules;

namespace modImport_ExcelAS400 {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_ExcelAS400");

// --- Sheets -------------------------------------------------------------------------------------------------------

const QString Clienti = QStringLiteral("CLIENTI");
const QString Fornitori = QStringLiteral("FORNITORI");
const QString ArticoliTable = QStringLiteral("ARTICOLI");
const QString DistinteTable = QStringLiteral("DISTINTE");

sources::SheetTable SheetOf(const QString& table, const QString& code) {
    return {.table = table, .sheet = table + QStringLiteral("/#1"), .end = {code}};
}

SourceTable RowsOf(const QString& table, const QString& code) {
    return {.table = table, .key = code, .order = sources::RowNumberColumn};
}

/// Whether the record has been cancelled.
bool IsCancelled(const SourceRow& row) { return row.Text("ATREC").compare(u"A", Qt::CaseInsensitive) == 0; }

/// The procedure of a declaration whose log tells in which column each field was found, for their order is free.
template<class Declared>
Procedure OverSheet(Button button, const Declared& declared) {
    ImportPart part = PartOf(declared);
    part.make = [make = part.make, needs = part.needs, sheet = part.source.table](ImportRun& run, const QString& code) {
        QMap<int, QString> found;
        for (const NeededTables::Table& table : NeededTables::Read(needs).Tables()) {
            for (const QString& field : table.name == sheet ? table.necessary + table.optional : QStringList()) {
                const int column = sheetCells::GetColumn(run.GetSession().SourceConnection(), sheet, field);
                found.insert(column, field + u'=' + sources::ColumnLetters(column - 1));
            }
        }
        found.remove(0); // what is not there has been told
        run.AnnounceAppending(
            QStringLiteral("Foglio '%1': %2").arg(sheet, QStringList(found.values()).join(QStringLiteral(", "))));
        return make(run, code);
    };
    return ProcedureOf(button, FrameOf(declared), {part});
}

// --- Counterparties -----------------------------------------------------------------------------------------------

/// What customers and suppliers do not have in common.
struct Party {
    QString procedure;
    QString announcement;
    QString completion;
    QString confirmation;
    QString table;
    QString code;
    QString name;
    QString name2;
    Roles roles;
    bool empties;
};

const Party Customers{"ImportClientiExcelAS400",
                      "Inizio importazione clienti",
                      "Clienti importati correttamente!",
                      "Importare i Clienti?",
                      Clienti,
                      "CDCLI",
                      "RASCL",
                      "RASC2",
                      {.customer = true},
                      true};

const Party Suppliers{"ImportFornitoriExcelAS400",
                      "Inizio importazione fornitori",
                      "Fornitori importati correttamente!",
                      "Importare i Fornitori?",
                      Fornitori,
                      "CDFOR",
                      "RASFO",
                      "RASF2",
                      {.supplier = true},
                      false};

PartyColumns ColumnsOf(const Party& party) {
    return {
        .name = party.name,
        .name2 = party.name2,
        .street = "INDIR",
        .postCode = "CAP",
        .town = "LOCAL",
        .province = "PROVI",
        .country = "NAZIO",
        .vatNumber = "PARIV",
        .taxCode = "CODFI",
        .payment = "CDPAG",
        .account = "NRCCO",
        .iban = "CDIBA",
        .discount1 = "SCON1",
        .discount2 = "SCON2",
        .agent = "CDAGE",
        .list = "CDLIS",
        .currency = "CDVAL",
        .exemption = "CDESE",
        .note = "NOTE",
    };
}

/// A dump has 0 for none in every field of numbers, and which fields are numbers differs.
Lines PartyLinesOf(const Party& party) {
    static const QStringList mayBeNumbers{"CAP",   "PARIV", "CODFI", "NRCCO", "CDIBA",
                                          "CDPAG", "CDAGE", "CDLIS", "CDVAL", "CDESE"};
    std::vector<MapLine> lines = PartyLines(party.table, ColumnsOf(party)).Over({});
    for (MapLine& line : lines) {
        line.rule = mayBeNumbers.contains(line.sources.value(0)) ? ZeroAsBlank(line.rule) : line.rule;
    }
    return {LineGroup(lines), {"COABI", "CDABI", NotZeroCode(Digits(5))}, {"COCAB", "CDCAB", NotZeroCode(Digits(5))}};
}

Counterparties PartiesOf(const Party& party) {
    return {
        .frame = {.module = Module,
                  .procedure = party.procedure,
                  .announcement = party.announcement,
                  .completion = party.completion,
                  .confirmation = party.confirmation},
        .source = RowsOf(party.table, party.code),
        .roles = Always(party.roles),
        .name = QString(party.name + QStringLiteral(", ") + party.name2),
        .vatNumber = "PARIV",
        .taxCode = "CODFI",
        .lines = PartyLinesOf(party),
        .numbers = {.office = "TELE1",
                    .office2 = "TELE2",
                    .fax = "TELFX",
                    .mobile = "CELLU",
                    .mail = "EMAIL",
                    .web = "SITWB",
                    .zeroIsNone = true},
        .empties = party.empties,
        .cancelled =
            [](const SourceRow& row) { return IsCancelled(row) ? QStringLiteral("riga annullata") : QString(); },
        .more = SetIban,
        .further = {{}, {{party.table, {}, {"ATREC"}}}, {}},
    };
}

// --- Articles -----------------------------------------------------------------------------------------------------

Rule Article() { return ArticleCode(ArticoliTable, "CDART"); }

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliExcelAS400"},
        .source = RowsOf(ArticoliTable, "CDART"),
        .code = {"CDART", Article()},
        .description = "DSAR1",
        .lines =
            {
                {"CDEXT", "CDART", First(50)},
                {"ARDE2", "DSAR2", First(100)},
                {"ARUMS", "UNMIS", Unit(ArticoliTable, "UNMIS", schema::defaults::Unit)},
                {"ARUM2", "UNMI2", Unit(ArticoliTable, "UNMI2", "")},
                {"ARCOE", "FATCO", NotZero()},
                {"ARIVA", "CDIVA", VatCode(ArticoliTable, "CDIVA")},
                {"ARCLA", "TPART", Choice({{"P", "PF"}, {"S", "SL"}}, "CM")},
                {"ARFAM", "CDFAM", ZeroAsBlank(TranslatedOrKnown(ArticoliTable, "CDFAM", "FAM_PRO"))},
                {"ARCOS", "CSSTD, CSULT", FirstNotZero()},
                {"ARPRZ", "PRLIS", RoundedTo(6)},
                {"ARRIC", "PRLIS, CSSTD, CSULT", MarkUp()},
                {"ARPSN", "PSNET", RoundedTo(3)},
                {"ARPSL", "PSLOR", RoundedTo(3)},
                {"ARSMN", "SCMIN", RoundedTo(6)},
                {"ARLOR", "LTRIO", RoundedTo(6)},
                {"ARGGA", "GGAPP", RoundedTo(0)},
                {"ARDIS", "NRDIS", ZeroAsBlank(Text())},
                {"ARANN", "ATREC", Is("A")},
            },
        .suppliers = {{.supplier = {"CDFOR", NotZeroCode(KnownSupplier())},
                       .ownCode = {"ARTFO", NotZeroCode(Text())},
                       .price = {"CSSTD, CSULT", FirstNotZero()},
                       .leadDays = "GGAPP",
                       .lot = "LTRIO"}},
        .location = {"CDUBI", NotZeroCode(Text())},
    };
}

// --- Bills --------------------------------------------------------------------------------------------------------

/// A bill counts in the unit of the article: another one is told.
void CheckUnit(ImportRun& run, const SourceRow& row, const Component& component) {
    const QString unit = row.Text("UNMIS");
    if (unit.isEmpty()) {
        return;
    }
    Session& session = run.GetSession();
    const QString known = TranslatedCode(session, ArticoliTable, "UNMIS", unit, "TAB_UMS");
    const QString own = LookUp(session, "ART_ICO", "CDART", component.article, "ARUMS");
    if (own.compare(known.isEmpty() ? unit : known, Qt::CaseInsensitive) != 0) {
        run.Log(QStringLiteral("UNITÀ DI MISURA DIVERSA: %1, componente '%2': '%3', l'articolo ha '%4'")
                    .arg(run.RowKey(), component.article, unit, own));
    }
}

/// A work that stands beside no phase: no phase of Quadrix has it.
void CheckWork(ImportRun& run, const SourceRow& row) {
    const QString work = row.Text("CDLAV");
    const QString phase = row.Text("NRFAS");
    const bool hasPhase =
        std::any_of(phase.begin(), phase.end(), [](QChar c) { return !QStringView(u" 0.").contains(c); });
    if (!work.isEmpty() && !hasPhase) {
        run.Log(QStringLiteral("LAVORAZIONE SENZA FASE: %1: '%2' non si importa").arg(run.RowKey(), work));
    }
}

void CheckComponent(ImportRun& run, const SourceRow& row, Component& component) {
    CheckUnit(run, row, component);
    CheckWork(run, row);
}

Bills Distinte() {
    const ChildTable ofBill{
        .table = DistinteTable, .on = {{"CDPAD"}}, .order = "NRSEQ, _RIGA", .naming = "CDPAD, NRSEQ"};
    ChildTable phases = ofBill;
    phases.order = QStringLiteral("NRFAS, _RIGA");
    // The rest give no phase, as in `CheckWork`: blank or zero, as a number or as a padded text.
    phases.where = QStringLiteral("REPLACE(REPLACE(REPLACE(NRFAS, ' ', ''), '0', ''), '.', '') <> ''");
    return {
        .frame = {.module = Module, .procedure = "ImportDistinteExcelAS400"},
        .source = {.table = DistinteTable, .key = "CDPAD", .order = "CDPAD", .distinct = true},
        .article = {"CDPAD", Article()},
        .components = {.rows = ofBill,
                       .article = {"CDFIG", Article()},
                       .quantity = "QTIMP",
                       .note = "NOTE",
                       .position = "NRSEQ",
                       .phase = {"NRFAS", NotZeroCode(Text())},
                       .lines = {{"DCCOE", "PCSCA", WasteFactor()}}},
        .phases =
            BillPhases{
                .rows = phases, .key = "NRFAS", .number = "NRFAS", .work = {"CDLAV", Work(DistinteTable, "CDLAV")}},
        .component = CheckComponent,
        .further = {{}, {{DistinteTable, {}, {"UNMIS"}}}, {{"ART_ICO", {"CDART", "ARUMS"}}}},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Excel scarico AS/400",
        Module,
        {.kind = "Excel",
         .prepare = sourceSettings::OpenFileExcel({SheetOf(Clienti, "CDCLI"), SheetOf(Fornitori, "CDFOR"),
                                                   SheetOf(ArticoliTable, "CDART"), SheetOf(DistinteTable, "CDPAD")}),
         .names = Naming::OurReading},
        Buttons("YYYY----", {{Button::Cli, "Importa Clienti"}, {Button::Doc, "Importa Fornitori"}}),
        Shown::Keep,
        {
            OverSheet(Button::Cli, PartiesOf(Customers)),
            OverSheet(Button::Art, Articoli()),
            OverSheet(Button::Dis, Distinte()),
            OverSheet(Button::Doc, PartiesOf(Suppliers)),
        },
    };
    return origin;
}

} // namespace modImport_ExcelAS400
