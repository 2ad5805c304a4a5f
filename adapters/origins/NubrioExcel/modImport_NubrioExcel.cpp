// Nubrio Excel: a workbook that the operator chooses, whose first sheet has bills of materials by level under the
// headings of its first row, in any order: a row of level 0 is a product, one of level n belongs to the last one above
// it of level n-1. Data end where "Livello" and "Codice" are both blank. Articles that Quadrix lacks are made, the
// others stay as they are. Customer-specific, nothing of it is published: the headings are this system's own reading,
// fitted to another workbook by "Tracciati/Nubrio Excel.ini". A row without a level or of one that skips one is given
// up, with those that belong to it, each by its code; the treatment of a part without components has no bill that could
// have its phase, and is logged.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"
#include "sources/privateDatabase.h"
#include "sql/errors.h"

#include <QRegularExpression>

using namespace contract;
using namespace contract::rules;

namespace modImport_NubrioExcel {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_NubrioExcel");

const QString Sheet = QStringLiteral("NUBRIO");
const QString RowNumber = sources::RowNumberColumn;
const QString Parent = sources::ParentRowColumn;

/// The rows that belong to one.
const ChildTable Below{
    .table = Sheet, .on = {{Parent, RowNumber}}, .order = RowNumber, .naming = QStringLiteral("Codice")};

// --- Rules --------------------------------------------------------------------------------------------------------

Rule Article() { return ArticleCode("ART_ICO", "CDART"); }

bool IsProduct(const SourceRow& row) { return !row.IsBlank("Livello") && NumberOf(row, "Livello") == 0; }

/// Whether rows belong to one.
bool HasParts(Session& session, const SourceRow& row) {
    bool has = false;
    Below.First(session, row, [&has](const SourceRow&) { has = true; });
    return has;
}

/// What an article is, by its place in the sheet.
Rule KindOfPlace() {
    return {"\"PF\" per il livello 0, \"SL\" per una riga che ne ha altre sotto, altrimenti \"CM\"",
            [](const RuleInput& input) {
                return RuleValue(IsProduct(input.row)                 ? QStringLiteral("PF")
                                 : HasParts(input.session, input.row) ? QStringLiteral("SL")
                                                                      : QStringLiteral("CM"));
            },
            Side::Both, Below.OwnNeeds(Sheet).reads};
}

/// CDCON of the first counterparty whose name begins with a text, suppliers before others; empty for none.
QString PartyByBeginning(Session& session, const QString& begin) {
    QString pattern = begin; // what LIKE reads as a pattern stands for any character there, and is compared below
    static const QRegularExpression wildcards(QStringLiteral("[%_\\[]"));
    const bool isPlain = !begin.contains(wildcards);
    Recordset rows = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT CDCON, CORAS FROM %1 WHERE CORAS LIKE %2 ORDER BY COFOR DESC, CDCON")
            .arg(session.Quadrix.GetFullTableName("CON_TRO"),
                 LiteralOf(session.Quadrix, QString(pattern.replace(wildcards, QStringLiteral("_")) + u'%'))));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        if (isPlain || row.Text("CORAS").startsWith(begin, Qt::CaseInsensitive)) {
            return row.Text("CDCON");
        }
    }
    return {};
}

/// The counterparty whose name begins with the text; one that is not there is logged, and left out.
Rule SupplierByName() {
    return {"fornitore il cui nome comincia così; se manca va nel log e non si scrive",
            [](const RuleInput& input) -> RuleValue {
                const QString name = input.Text();
                if (name.isEmpty()) {
                    return std::nullopt;
                }
                const QString supplier = PartyByBeginning(input.session, name.left(35));
                if (supplier.isEmpty()) {
                    modImport::LogNote(
                        input.session,
                        QStringLiteral("FORNITORE NON TROVATO: %1: '%2'").arg(input.session.Errors.RowKey(), name));
                    return std::nullopt;
                }
                return supplier;
            }};
}

/// Gives a row up that has no place among the levels: no bill would have it.
void CheckPlace(const SourceRow& row) {
    if (row.IsBlank("Livello")) {
        throw ImportError(QStringLiteral("la riga non ha il livello"));
    }
    if (!IsProduct(row) && row.IsBlank(Parent)) {
        throw ImportError(QStringLiteral("il livello '%1' non segue quello della riga sopra: la riga non appartiene a "
                                         "nessuna distinta")
                              .arg(row.Text("Livello")));
    }
}

/// The treatment of a part without components is told: there is no bill for its phase.
void TellTreatmentWithoutBill(ImportRun& run, const SourceRow& row) {
    if (!row.IsBlank("Trattamento") && !HasParts(run.GetSession(), row)) {
        run.Log(QStringLiteral("TRATTAMENTO SENZA DISTINTA: %1: '%2'").arg(run.RowKey(), row.Text("Trattamento")));
    }
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.step = "Articoli"},
        .source = {.table = Sheet, .key = "Codice", .order = RowNumber},
        .code = {"Codice", Article()},
        .description = "Descrizione",
        .lines =
            {
                {"CDEXT", "Codice", First(50)},
                {"ARDE2", "Descrizione 2", First(100)},
                {"ARREV", "Rev.", Or(Text(), "0")},
                {"ARUMS", "U.M.", Unit("NUBRIO", "UM", schema::defaults::Unit)},
                {"ARIVA", "", Constant(schema::defaults::VatCode)},
                {"ARCLA", "Livello", KindOfPlace()},
                {"ARMAT", "Materiale", Translated("NUBRIO", "MATERIALE")},
                {"ARDMZ", "Spessore mm", RoundedTo(6)},
                {"ARDMX", "Lunghezza mm", RoundedTo(6)},
                {"ARDMY", "Larghezza mm", RoundedTo(6)},
                {"ARPSN", "Peso kg", RoundedTo(3)},
                {"ARCOS", "Costo", RoundedTo(6)},
                {"ARDIS", "Disegno", Text()},
            },
        .suppliers = {{.supplier = {"Fornitore", SupplierByName()}, .price = "Costo"}},
        .there = ArticleThere::Kept,
        .empties = {},
        .each =
            [](ImportRun& run, const SourceRow& row) {
                CheckPlace(row);
                TellTreatmentWithoutBill(run, row);
            },
        .further = {{}, {{Sheet, {Parent}}}, {{"CON_TRO", {"CDCON", "CORAS", "COFOR"}}}},
    };
}

// --- Bills --------------------------------------------------------------------------------------------------------

/// The number of a component among those of its bill, by tens.
void SetPosition(ImportRun& run, const SourceRow& row, Component& component) {
    constexpr int step = 10;
    const auto number = [&row](const QString& column) { return row.Value(column).toLongLong(); };
    component.position = step * run.GetSession().SourceConnection().ExecuteCommand(
                                    QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2 = %3 AND %4 <= %5")
                                        .arg(Sheet, Parent)
                                        .arg(number(Parent))
                                        .arg(RowNumber)
                                        .arg(number(RowNumber)));
}

/// The treatment is a phase behind the generic one.
void WriteTreatment(ImportRun& run, BillWriter& writer, const SourceRow& row) {
    static const Rule work = Work("Lavorazioni", "Descrizione");
    if (!row.IsBlank("Trattamento")) {
        const RuleValue code = work.apply({run.GetSession(), row, {"Trattamento"}, {}});
        writer.Write(Phase{.sequence = 2 * schema::defaults::FirstPhase, .work = code->toString()});
    }
    writer.ClosePhases();
}

/// A sheet has the bills of some products.
Bills Distinte() {
    return {
        .frame = {.module = Module, .procedure = "ImportDistinteNubrioExcel"},
        .source = {.table = Sheet,
                   .key = "Codice",
                   .order = RowNumber,
                   .told =
                       [](ImportRun&) {
                           return QStringLiteral("%1 IN (SELECT %2 FROM %3)").arg(RowNumber, Parent, Sheet);
                       }},
        .article = {"Codice", Article()},
        .revision = {"Rev.", RevisionNumber()},
        .active = {"Rev.",
                   IsNewestRevision({.table = Sheet, .on = {{"Codice"}}, .order = RowNumber}, "Rev.", HasParts)},
        .oneInForce = true,
        .components = {.rows = Below,
                       .article = {"Codice", Article()},
                       .quantity = "Quantita",
                       .note = "Note",
                       .repeated = Repeated::Adds,
                       .lines = {{"DCDMX", "Lunghezza mm", RoundedTo(6)}, {"DCDMY", "Larghezza mm", RoundedTo(6)}}},
        .hasAll = false,
        .component = SetPosition,
        .after = WriteTreatment,
        .further = {{}, {{Sheet, {Parent}, {"Trattamento"}}}, {}},
    };
}

Procedure ImportDistinteNubrioExcel() {
    const Bills bills = Distinte();
    return ProcedureOf(Button::Dis, FrameOf(bills), {PartOf(Articoli()), PartOf(bills)});
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    const auto prepare = [](Session& session, ovConnection& source) {
        source.LookupColumns = QStringList{Sheet + u'.' + Parent};
        return sourceSettings::OpenFileExcel({{.table = Sheet, .end = {"Livello", "Codice"}, .level = "Livello"}})(
            session, source);
    };
    static const Origin origin{
        "Nubrio Excel",
        Module,
        {.kind = "Excel", .prepare = {prepare, Place::Chosen}, .names = Naming::OurReading},
        Buttons("NNYNNNNN"),
        Shown::Keep,
        {ImportDistinteNubrioExcel()},
    };
    return origin;
}

} // namespace modImport_NubrioExcel
