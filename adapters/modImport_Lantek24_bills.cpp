// Bills of Lantek 24: MMNN_PPOO holds the operations of a product and what its cost is made of; the materials among
// these are its components.

#include "adapters/modImport_Lantek24.h"

#include "adapters/contract/Article.h"
#include "core/qdxProduction_sheets.h"
#include "core/schemaDefaults.h"

using namespace contract;

namespace modImport_Lantek24 {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Operations = QStringLiteral("MMNN_PPOO_00000200");
const QString Costs = QStringLiteral("MMNN_PPOO_00000300");
/// The product that a cost element is of; not every release has it.
const QString ChildColumn = QStringLiteral("CPrdRef");
/// Kind of a cost element that is material.
const QString Material = QStringLiteral("CType = 100");

QString OfProduct(const ImportRun& run, const QString& table, const QString& product) {
    return "SELECT * FROM " + table + "\rWHERE PrdRef = " + run.Quoted(product);
}

// --- Bills --------------------------------------------------------------------------------------------------------

/// Writes the phases and returns the RECORD_ID of the first, which consumes the components.
qint64 WritePhases(ImportRun& run, BillWriter& writer, const QString& product) {
    qint64 first = 0;
    int last = 0;
    ForEachChild(run.GetSession(), OfProduct(run, Operations, product) + "\rORDER BY OOrder", Operations,
                 "PrdRef, OOrder", [&](const SourceRow& row) {
                     // Operations count from one; numbers tell phases apart, so one that comes again gives way.
                     const int own = static_cast<int>(NumberOf(row, "OOrder"));
                     last = own > last ? own : last + 1;
                     const qint64 id = writer.Write(Phase{last, WorkOf(run, row), {}, 0, NumberOf(row, "StdTime")});
                     first = first == 0 ? id : first;
                 });
    return first == 0 ? writer.Write(Phase{}) : first;
}

/// The article of a sheet that a product is cut from: of its material and thickness.
QString SheetOf(ImportRun& run, const QString& product) {
    Session& session = run.GetSession();
    const Recordset found = session.SourceConnection().ExecuteWC(OfProduct(run, Products, product));
    if (found.Eof()) {
        return {};
    }
    const SourceRow row(found);
    return qdxProduction::qdxGetCodiceLamieraEsterno(session, MaterialOf(session, row.Text("DIS_MatRef")),
                                                     NumberOf(row, "DIS_Thickness"));
}

void WriteComponent(ImportRun& run, BillWriter& writer, const SourceRow& row, const QString& product, qint64 phase) {
    const QString child = row.HasColumn(ChildColumn) ? row.Text(ChildColumn) : QString();
    const QString article = child.isEmpty() ? SheetOf(run, product) : ArticleOf(run, child);
    if (article.isEmpty() || !writer.HasArticle(article)) {
        run.Log(QStringLiteral("ARTICOLO NON TROVATO: %1: '%2'").arg(NameOf(row, Costs, "PrdRef"), child));
        return;
    }
    writer.Write(Component{article, NumberOf(row, "StdQuan")}, phase);
}

} // namespace

RowOutcome WriteBill(ImportRun& run, BillWriter& writer, const QString& product) {
    const QString article = ArticleOf(run, product);
    if (!IsImported(run, article)) {
        return run.Skip(ArticleMissing);
    }
    const RowOutcome outcome = writer.Begin(article, product);
    const qint64 phase = WritePhases(run, writer, product);
    ForEachChild(run.GetSession(), OfProduct(run, Costs, product) + " AND " + Material, Costs, "PrdRef",
                 [&](const SourceRow& row) { WriteComponent(run, writer, row, product, phase); });
    writer.TellComponentsLeft();
    return outcome;
}

const Needs& DistintaNeeds() {
    static const Needs needs{{},
                             {{Operations, {"PrdRef", "OOrder", "WrkRef", "OprRef", "StdTime"}},
                              {Costs, {"PrdRef", "CType", "StdQuan"}},
                              {Products, {"PrdRef", "DIS_MatRef", "DIS_Thickness"}}},
                             BillNeeds()};
    return needs;
}

void ImportDistintaLantek24(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportDistintaLantek24", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione Distinte Base da Lantek 24");
        run.Preflight(DistintaNeeds());
        EmptyBills(run, reset);
        const QString from = Costs + "\rWHERE " + Material + run.OnlyCode("\rAND", "PrdRef", singleCode);
        const ImportRun::Loop heads{"Distinte Base", Costs, "PrdRef", "SELECT COUNT(DISTINCT PrdRef) FROM " + from,
                                    "SELECT DISTINCT PrdRef FROM " + from + "\rORDER BY PrdRef"};
        ImportBills(
            run, heads, singleCode, "Distinte Base Lantek 24 importate correttamente: %1 (Fasi: %2, Comp.: %3)",
            [&](BillWriter& writer, const SourceRow& row) { return WriteBill(run, writer, row.Text("PrdRef")); });
    });
}

} // namespace modImport_Lantek24
