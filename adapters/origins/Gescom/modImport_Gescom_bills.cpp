// Bills of Gescom: DISBAS holds a row for each component of a parent, arcfas the phases of each article.

#include "adapters/origins/Gescom/modImport_Gescom.h"

#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Bill.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;

namespace modImport_Gescom {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Disbas = QStringLiteral("DISBAS");

// --- Bills --------------------------------------------------------------------------------------------------------

/// The phases of the bill under way: RECORD_ID of the first, and of each by its code in the source.
struct Phases {
    qint64 first = 0;
    QHash<QString, qint64> byCode = {};
};

/// The number of a phase. Numbers tell the phases of a bill apart: one that comes again, or is missing, gives way to
/// the next free one.
int SequenceOf(ImportRun& run, const SourceRow& row, int last) {
    const int own = static_cast<int>(NumberOf(row, "SQARCFAS"));
    if (own > last) {
        return own;
    }
    const int next = last + schema::defaults::FirstPhase;
    run.Log(QStringLiteral("FASE RINUMERATA: %1: sequenza '%2' scritta come %3")
                .arg(NameOf(row, Arcfas, "CODFASEL"), row.Text("SQARCFAS"), QString::number(next)));
    return next;
}

Phases WritePhases(ImportRun& run, BillWriter& writer, const QString& parent) {
    Session& session = run.GetSession();
    Phases phases;
    int last = 0;
    ForEachChild(session, "SELECT * FROM arcfas\rWHERE ARARCFAS = " + run.Quoted(parent) + "\rORDER BY SQARCFAS",
                 Arcfas, "CODFASEL", [&](const SourceRow& row) {
                     const QString code = row.Text("CODFASEL");
                     const QString work = modImport::GetNewCode(session, Arcfas, "CODFASEL", code, true);
                     last = SequenceOf(run, row, last);
                     const qint64 id = writer.Write(Phase{last, work.isEmpty() ? code : work, row.Text("NTARCFAS"),
                                                          NumberOf(row, "TAARCFAS"), NumberOf(row, "TUARCFAS")});
                     phases.first = phases.first == 0 ? id : phases.first;
                     if (!phases.byCode.contains(code)) {
                         phases.byCode.insert(code, id);
                     }
                 });
    if (phases.first == 0) {
        phases.first = writer.Write(Phase{});
    }
    return phases;
}

/// The phase that consumes a component: the one that its row names, else the first.
qint64 PhaseOf(ImportRun& run, const SourceRow& row, const Phases& phases) {
    const QString code = row.Text("FSDISBAS");
    if (!code.isEmpty() && !phases.byCode.contains(code)) {
        run.Log(
            QStringLiteral("FASE NON TROVATA: %1: '%2', si usa la prima").arg(NameOf(row, Disbas, "FIDISBAS"), code));
    }
    return phases.byCode.value(code, phases.first);
}

void ImportComponente(ImportRun& run, BillWriter& writer, const SourceRow& row, const Phases& phases) {
    const QString article = ArticleOf(run, row.Text("FIDISBAS"));
    if (IsImported(run, article, NameOf(row, Disbas, "FIDISBAS"))) {
        writer.Write(Component{article, NumberOf(row, "QTDISBAS"), row.Text("NTDISBAS"), row.Value("RGDISBAS")},
                     PhaseOf(run, row, phases));
    }
}

RowOutcome ImportDistinta(ImportRun& run, BillWriter& writer, const SourceRow& row) {
    const QString parent = row.Text("PADISBAS");
    const QString article = ArticleOf(run, parent);
    if (!IsImported(run, article)) {
        return run.Skip(ArticleMissing);
    }
    const RowOutcome outcome = writer.Begin(article, parent);
    const Phases phases = WritePhases(run, writer, parent);
    ForEachChild(run.GetSession(),
                 "SELECT * FROM DISBAS\rWHERE PADISBAS = " + run.Quoted(parent) + "\rORDER BY RGDISBAS", Disbas,
                 "FIDISBAS", [&](const SourceRow& component) { ImportComponente(run, writer, component, phases); });
    writer.TellComponentsLeft();
    return outcome;
}

} // namespace

const Needs& DistinteNeeds() {
    static const Needs needs{{},
                             {{Disbas, {"PADISBAS", "FIDISBAS", "RGDISBAS", "QTDISBAS", "NTDISBAS", "FSDISBAS"}},
                              {Arcfas, {"ARARCFAS", "SQARCFAS", "CODFASEL", "TAARCFAS", "TUARCFAS", "NTARCFAS"}}},
                             BillNeeds()};
    return needs;
}

void ImportDistinteGescom(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportDistinteGescom", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione Distinte Base da Gescom");
        run.Preflight(DistinteNeeds());
        EmptyBills(run, reset);
        const QString where = run.OnlyCode("\rWHERE", "PADISBAS", singleCode);
        const ImportRun::Loop heads{"Distinte Base", Disbas, "PADISBAS",
                                    "SELECT COUNT(DISTINCT PADISBAS) FROM DISBAS" + where,
                                    "SELECT DISTINCT PADISBAS FROM DISBAS" + where + "\rORDER BY PADISBAS"};
        ImportBills(run, heads, singleCode, "Distinte Base Gescom importate correttamente: %1 (Fasi: %2, Comp.: %3)",
                    [&](BillWriter& writer, const SourceRow& row) { return ImportDistinta(run, writer, row); });
    });
}

} // namespace modImport_Gescom
