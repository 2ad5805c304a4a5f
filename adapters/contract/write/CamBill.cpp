#include "adapters/contract/write/CamBill.h"

#include "adapters/contract/run/tiedRows.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Cam.h"
#include "adapters/contract/write/componentUnit.h"
#include "adapters/contract/write/missingCodes.h"
#include "core/schemaDefaults.h"

namespace contract {

using namespace cam;

namespace {

const QString Operations = QStringLiteral("MMNN_PPOO_00000200");
/// The product that a cost element is of; not every release has it.
const QString ChildColumn = QStringLiteral("CPrdRef");
const QString ProductColumn = QStringLiteral("PrdRef");
/// The unit of its quantity.
const QString UnitColumn = QStringLiteral("UntName");

QString OfProduct(const ImportRun& run, const QString& table, const SourceRow& product) {
    return "SELECT * FROM " + table + "\rWHERE " + TiedTo(run.GetSession().SourceConnection(), ProductColumn, product);
}

/// Writes the phases and returns the RECORD_ID of the first, which consumes the components.
qint64 WritePhases(ImportRun& run, BillWriter& writer, const SourceRow& product) {
    qint64 first = 0;
    int last = 0;
    ForEachChild(run.GetSession(), OfProduct(run, Operations, product) + "\rORDER BY OOrder", Operations,
                 "PrdRef, OOrder", [&](const SourceRow& row) {
                     last = NumberBehind(run, last, WholeNumberOf(row, "OOrder"), OperationStep,
                                         [&row] { return NameOf(row, Operations, "PrdRef, OOrder"); });
                     const qint64 id = writer.Write(Phase{last, WorkOf(run, row), {}, 0, NumberOf(row, "StdTime")});
                     first = first == 0 ? id : first;
                 });
    return first == 0 ? writer.WriteGeneric() : first;
}

/// The article of a sheet that a product is cut from: of its material and thickness.
QString SheetOf(ImportRun& run, BillWriter& writer, const SourceRow& product) {
    Session& session = run.GetSession();
    const Recordset found = session.SourceConnection().ExecuteWC(OfProduct(run, Products, product));
    if (found.Eof()) {
        return {};
    }
    const SourceRow row(found);
    return writer.SheetOf(MaterialOf(session, row.Text("DIS_MatRef")), NumberOf(row, "DIS_Thickness"));
}

void WriteComponent(ImportRun& run, BillWriter& writer, const SourceRow& row, const SourceRow& product, qint64 phase) {
    const QString child = row.HasColumn(ChildColumn) ? row.Text(ChildColumn) : QString();
    const QString article = child.isEmpty() ? SheetOf(run, writer, product) : ArticleOf(run, child);
    if (article.isEmpty() || !writer.HasArticle(article)) {
        run.Log(QStringLiteral("ARTICOLO NON TROVATO: %1: '%2'").arg(NameOf(row, Costs, "PrdRef"), child));
        writer.LeaveOut(article);
        return;
    }
    if (row.HasColumn(UnitColumn) && !row.IsBlank(UnitColumn)) {
        const QString unit = row.Text(UnitColumn);
        TellOtherUnit(run, NameOf(row, Costs, "PrdRef"), article, unit, UnitOf(run.GetSession(), unit, false));
    }
    writer.Write(Component{article, NumberOf(row, "StdQuan")}, phase);
}

} // namespace

RowOutcome qdxImportDistintaFromLantek24(ImportRun& run, BillWriter& writer, const SourceRow& product) {
    const QString code = product.Text(ProductColumn);
    const QString article = ArticleOf(run, code);
    if (!IsImported(run, article)) {
        writer.Meet(article);
        return run.Skip(ArticleMissing);
    }
    if (FillsCodes(run) && writer.Find({article, code}) == 0) {
        return SkipGone(run);
    }
    const RowOutcome outcome = writer.Begin(article, code);
    qdxMakeDistintaFromCAM(run, writer, product);
    writer.ClosePhases();
    writer.TellComponentsLeft();
    return outcome;
}

void qdxMakeDistintaFromCAM(ImportRun& run, BillWriter& writer, const SourceRow& product) {
    const qint64 phase = WritePhases(run, writer, product);
    ForEachChild(run.GetSession(), OfProduct(run, Costs, product) + " AND " + IsMaterial, Costs, "PrdRef",
                 [&](const SourceRow& row) { WriteComponent(run, writer, row, product, phase); });
}

const Needs& CamBillNeeds() {
    static const Needs needs{{},
                             {{Operations, {"PrdRef", "OOrder", "WrkRef", "OprRef", "StdTime"}},
                              {Costs, {"PrdRef", "CType", "StdQuan"}, {UnitColumn}},
                              {Products, {"PrdRef", "DIS_MatRef", "DIS_Thickness"}}},
                             BillNeeds(),
                             {{.list = "MMNN_PPOO", .field = "OprRef", .table = "DIS_LAV", .column = "DLLAV"}}};
    return needs;
}

} // namespace contract
