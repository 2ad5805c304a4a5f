// Bills of Tessera: DisBasT holds a row for each revision of a bill, DisBasF its phases, DisBasR its components.

#include "adapters/origins/Tessera/modImport_Tessera.h"

#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Bill.h"

using namespace contract;

namespace modImport_Tessera {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString DisBasT = QStringLiteral("DisBasT");
const QString DisBasR = QStringLiteral("DisBasR");
const QString DisBasF = QStringLiteral("DisBasF");

// --- Bills --------------------------------------------------------------------------------------------------------

/// The phases of the bill under way: RECORD_ID of the first, and of each by its number.
struct Phases {
    qint64 first = 0;
    QHash<int, qint64> byNumber = {};
};

QString ChildrenOf(const ovConnection& source, const QString& table, const SourceRow& bill, const QString& order) {
    return "SELECT * FROM " + table + "\rWHERE IdDisBas = " + LiteralOf(source, bill.Value("IdDisBas")) +
           "\rORDER BY " + order;
}

Phases WritePhases(ImportRun& run, BillWriter& writer, const SourceRow& bill) {
    Session& session = run.GetSession();
    Phases phases;
    ForEachChild(session, ChildrenOf(session.SourceConnection(), DisBasF, bill, "NumFas"), DisBasF, "NumFas",
                 [&](const SourceRow& row) {
                     const int number = static_cast<int>(NumberOf(row, "NumFas"));
                     Phase phase{number, WorkOf(session, row.Text("CodLav"))};
                     phase.setUpTime = NumberOf(row, "TemAtt");
                     phase.unitTime = NumberOf(row, "TemUni");
                     phase.cost = NumberOf(row, "CosOra");
                     phase.supplier = SupplierOf(run, row, "IdFor");
                     const qint64 id = writer.Write(phase);
                     phases.first = phases.first == 0 ? id : phases.first;
                     phases.byNumber.insert(number, id);
                 });
    if (phases.first == 0) {
        phases.first = writer.Write(Phase{});
    }
    return phases;
}

/// The phase that consumes a component: the one that its row names, else the first.
qint64 PhaseOf(ImportRun& run, const SourceRow& row, const Phases& phases) {
    const int number = static_cast<int>(NumberOf(row, "NumFas"));
    if (number != 0 && !phases.byNumber.contains(number)) {
        run.Log(QStringLiteral("FASE NON TROVATA: %1: '%2', si usa la prima")
                    .arg(NameOf(row, DisBasR, "NumRig, CodArt"), QString::number(number)));
    }
    return phases.byNumber.value(number, phases.first);
}

void WriteComponents(ImportRun& run, BillWriter& writer, const SourceRow& bill, const Phases& phases) {
    Session& session = run.GetSession();
    ForEachChild(session, ChildrenOf(session.SourceConnection(), DisBasR, bill, "NumRig"), DisBasR, "NumRig, CodArt",
                 [&](const SourceRow& row) {
                     const QString article = ArticleOf(run, row.Text("CodArt"));
                     if (IsImported(run, article, NameOf(row, DisBasR, "NumRig, CodArt"))) {
                         writer.Write(Component{article, NumberOf(row, "Qta"), row.Text("Note"), row.Value("NumRig")},
                                      PhaseOf(run, row, phases));
                     }
                 });
}

RowOutcome ImportDistinta(ImportRun& run, BillWriter& writer, const SourceRow& row) {
    const QString article = ArticleOf(run, row.Text("CodArt"));
    if (!IsImported(run, article)) {
        return run.Skip(ArticleMissing);
    }
    const RowOutcome outcome = writer.Begin(
        BillHead{article, row.Text("IdDisBas"), NumberOf(row, "Rev"), NumberOf(row, "FlgAtt") != 0, row.Text("Note")});
    WriteComponents(run, writer, row, WritePhases(run, writer, row));
    writer.TellComponentsLeft();
    return outcome;
}

} // namespace

const Needs& DistinteNeeds() {
    static const Needs needs = [] {
        Needs all{{}, LookupNeeds(), BillNeeds()};
        all.reads.push_back({DisBasT, {"IdDisBas", "CodArt", "Rev", "FlgAtt", "Note"}});
        all.reads.push_back({DisBasR, {"IdDisBas", "NumRig", "CodArt", "Qta", "NumFas", "Note"}});
        all.reads.push_back({DisBasF, {"IdDisBas", "NumFas", "CodLav", "TemAtt", "TemUni", "CosOra", "IdFor"}});
        all.writes.push_back({"DIS_BAS", {"DBNOT"}});
        all.writes.push_back({"DIS_FAS", {"DLFOR"}});
        return all;
    }();
    return needs;
}

void ImportDistinteTessera(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportDistinteTessera", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione Distinte Base da Tessera");
        run.Preflight(DistinteNeeds());
        EmptyBills(run, reset);
        const QString where = run.OnlyCode("\rWHERE", "CodArt", singleCode);
        const ImportRun::Loop heads{"Distinte Base", DisBasT, "CodArt, Rev", "SELECT COUNT(*) FROM DisBasT" + where,
                                    "SELECT * FROM DisBasT" + where + "\rORDER BY CodArt, Rev"};
        ImportBills(run, heads, singleCode, "Distinte Base Tessera importate correttamente: %1 (Fasi: %2, Comp.: %3)",
                    [&](BillWriter& writer, const SourceRow& row) { return ImportDistinta(run, writer, row); });
    });
}

} // namespace modImport_Tessera
