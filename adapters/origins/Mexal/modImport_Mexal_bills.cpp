// Bills of Mexal: DIS_MAT holds a row for each component of a phase of a parent.

#include "adapters/origins/Mexal/modImport_Mexal.h"

#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Bill.h"
#include "core/schemaDefaults.h"

using namespace contract;

namespace modImport_Mexal {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString DisMat = QStringLiteral("DIS_MAT");

// --- Bills --------------------------------------------------------------------------------------------------------

/// RECORD_ID of the phase that a row names; phases are numbered 1, 2, 3 and stand at 10, 20, 30.
qint64 PhaseOf(BillWriter& writer, const SourceRow& row, QHash<int, qint64>& phases) {
    const int number = std::max(1, static_cast<int>(NumberOf(row, "_DBFAS")));
    if (!phases.contains(number)) {
        phases.insert(number, writer.Write(Phase{number * schema::defaults::FirstPhase, {}}));
    }
    return phases.value(number);
}

RowOutcome ImportDistinta(ImportRun& run, BillWriter& writer, const SourceRow& row) {
    const QString parent = row.Text("_DBPAD");
    const QString article = ArticleOf(run, parent);
    if (!IsImported(run, article)) {
        return run.Skip(ArticleMissing);
    }
    const RowOutcome outcome = writer.Begin(article, parent);
    QHash<int, qint64> phases;
    ForEachChild(run.GetSession(),
                 "SELECT * FROM DIS_MAT WHERE [_DBPAD] = " + run.Quoted(parent) + " ORDER BY [_DBFAS], [_DBRIG]",
                 DisMat, "_DBPAD, _DBFAS, _DBRIG", [&](const SourceRow& component) {
                     const QString child = ArticleOf(run, component.Text("_DBFIG"));
                     const qint64 phase = PhaseOf(writer, component, phases);
                     if (IsImported(run, child, NameOf(component, DisMat, "_DBPAD, _DBFAS, _DBRIG"))) {
                         writer.Write(Component{child, NumberOf(component, "_DBQTA"), component.Text("_DBNOT"),
                                                NumberOf(component, "_DBRIG")},
                                      phase);
                     }
                 });
    writer.TellComponentsLeft();
    return outcome;
}

} // namespace

const Needs& DistinteNeeds() {
    static const Needs needs{{}, {{DisMat, {"_DBPAD", "_DBFAS", "_DBRIG", "_DBFIG", "_DBQTA", "_DBNOT"}}}, BillNeeds()};
    return needs;
}

void ImportDistinteMex(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportDistinteMex", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione Distinte Base da Mexal");
        run.Preflight(DistinteNeeds());
        EmptyBills(run, reset);
        const QString from = " FROM DIS_MAT" + run.OnlyCode(" WHERE", "[_DBPAD]", singleCode);
        const ImportRun::Loop heads{"Distinte Base", DisMat, "_DBPAD", "SELECT COUNT(DISTINCT [_DBPAD])" + from,
                                    "SELECT DISTINCT [_DBPAD]" + from + " ORDER BY [_DBPAD]"};
        ImportBills(run, heads, singleCode, "Distinte Base Mexal importate correttamente: %1 (Fasi: %2, Comp.: %3)",
                    [&](BillWriter& writer, const SourceRow& row) { return ImportDistinta(run, writer, row); });
    });
}

} // namespace modImport_Mexal
