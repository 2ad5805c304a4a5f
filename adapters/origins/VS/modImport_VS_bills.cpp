// Bills of Visual Space, and their correction: DISTINTA_BASE holds a row for each component of a parent, CICLI the
// phases of an article. A parent's rows may be of several revisions: each is a bill, the last one in force.

#include "adapters/origins/VS/modImport_VS.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/tiedRows.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Bill.h"
#include "adapters/contract/write/componentUnit.h"
#include "adapters/contract/write/missingCodes.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

#include <QSet>

using namespace contract;

namespace modImport_VS {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString DistintaBase = QStringLiteral("DISTINTA_BASE");
const QString RowKey = QStringLiteral("PADRE, POSIZIONE");
const QString Cicli = QStringLiteral("CICLI");
const QString PhaseKey = QStringLiteral("COD_ARTICOLO, NUM_FASE");

// --- Reading ------------------------------------------------------------------------------------------------------

/// A bill of the source: a revision of a parent with its components.
struct Bill {
    qint64 revision;
    QString text; ///< of the revision, in the source
    std::vector<Component> components;
    QStringList leftOut = {}; ///< articles of components that Quadrix lacks
};

/// Adds the row to the components of its bill, unless its article is missing.
void AddComponent(ImportRun& run, const SourceRow& row, Bill& bill) {
    const QString article = ArticleCodeOf(run.GetSession(), ArticoliTable, "COD_ARTICOLO", row.Text("FIGLIO"));
    if (!IsImported(run, article, NameOf(row, DistintaBase, RowKey))) {
        bill.leftOut.append(article);
        return;
    }
    const QString unit = row.Text("UM");
    TellOtherUnit(run, NameOf(row, DistintaBase, RowKey), article, unit,
                  modImport::GetNewCode(run.GetSession(), ArticoliTable, "UM", unit, false));
    bill.components.push_back({article, NumberOf(row, "QUANTITA"), row.Text("NOTE"), row.Value("POSIZIONE")});
}

/// Of revisions that become the same number the last one counts.
void TellReplaced(ImportRun& run, const Bill& former, const Bill& last) {
    run.Log(QStringLiteral("REVISIONE RIPETUTA: %1: '%2' diventa %3 come '%4', e la sostituisce")
                .arg(run.RowKey(), last.text, QString::number(last.revision), former.text));
}

/// The bills of a parent, the revision in force last. @param parent a row with PADRE
std::vector<Bill> BillsOf(ImportRun& run, const SourceRow& parent) {
    std::map<std::pair<qint64, QString>, Bill> bills;
    ForEachChild(run.GetSession(),
                 "SELECT * FROM DISTINTA_BASE WHERE " + TiedTo(run.GetSession().SourceConnection(), "PADRE", parent) +
                     " ORDER BY POSIZIONE",
                 DistintaBase, RowKey, [&](const SourceRow& row) {
                     const QString text = row.Text("REVISIONE");
                     AddComponent(run, row, bills.try_emplace(PlaceOfRevision(text), Bill{0, text, {}}).first->second);
                 });
    std::vector<Bill> sorted;
    sorted.reserve(bills.size());
    for (auto& [place, bill] : bills) {
        bill.revision = NumberOfRevision(run.GetSession(), bill.text);
        if (!sorted.empty() && sorted.back().revision == bill.revision) {
            TellReplaced(run, sorted.back(), bill);
            sorted.pop_back();
        }
        sorted.push_back(std::move(bill));
    }
    return sorted;
}

// --- Bills --------------------------------------------------------------------------------------------------------

/// A phase of the source. A work that Quadrix lacks is the generic one, its code stands in the notes.
Phase PhaseOf(ImportRun& run, const SourceRow& row, int last) {
    const QString code = row.Text("COD_LAVORAZIONE");
    const QString work = TranslatedCode(run.GetSession(), Cicli, "COD_LAVORAZIONE", code, "LAV_ORA");
    const int number = NumberBehind(run, last, WholeNumberOf(row, "NUM_FASE"), schema::defaults::FirstPhase,
                                    [&row] { return NameOf(row, Cicli, PhaseKey); });
    Phase phase{number, work};
    if (work.isEmpty() && !code.isEmpty()) {
        phase.note = "Lavorazione: " + code;
    }
    phase.setUpTime = NumberOf(row, "TEMPO_ATTR");
    phase.unitTime = NumberOf(row, "TEMPO_UNIT");
    return phase;
}

/// Writes the phases of the bill begun last and returns the RECORD_ID of the first, which consumes the components.
qint64 WritePhases(ImportRun& run, BillWriter& writer, const SourceRow& parent) {
    qint64 first = 0;
    int last = 0;
    ForEachChild(run.GetSession(),
                 "SELECT * FROM CICLI WHERE " +
                     TiedTo(run.GetSession().SourceConnection(), "COD_ARTICOLO", parent, "PADRE") +
                     " ORDER BY NUM_FASE",
                 Cicli, PhaseKey, [&](const SourceRow& row) {
                     const Phase phase = PhaseOf(run, row, last);
                     last = phase.sequence;
                     const qint64 id = writer.Write(phase);
                     first = first == 0 ? id : first;
                 });
    return first == 0 ? writer.WriteGeneric() : first;
}

RowOutcome ImportDistinta(ImportRun& run, BillWriter& writer, const SourceRow& parent) {
    const QString code = parent.Text("PADRE");
    const QString article = ArticleCodeOf(run.GetSession(), ArticoliTable, "COD_ARTICOLO", code);
    if (!IsImported(run, article)) {
        writer.Meet(article);
        return run.Skip(ArticleMissing);
    }
    RowOutcome outcome = RowOutcome::Skipped;
    const std::vector<Bill> bills = BillsOf(run, parent);
    for (const Bill& bill : bills) {
        const BillHead head{article, code, bill.revision, &bill == &bills.back(), true};
        if (FillsCodes(run) && writer.Find(head) == 0) {
            continue;
        }
        const RowOutcome one = writer.Begin(head);
        outcome = outcome == RowOutcome::Inserted ? outcome : one;
        const qint64 phase = WritePhases(run, writer, parent);
        for (const Component& component : bill.components) {
            writer.Write(component, phase);
        }
        for (const QString& leftOut : bill.leftOut) {
            writer.LeaveOut(leftOut);
        }
        writer.ClosePhases();
        writer.TellComponentsLeft();
    }
    return outcome == RowOutcome::Skipped ? SkipGone(run) : outcome;
}

// --- Correction ---------------------------------------------------------------------------------------------------

/// RECORD_ID of the bill of a revision, when an import wrote it; else 0.
qint64 ImportedBill(Session& session, const QString& article, qint64 revision) {
    return IdWhere(session, "DIS_BAS",
                   Equals(session, "DBART", article) + " AND " + Equals("DBREV", revision) + " AND " +
                       OfImports(session));
}

/// RECORD_ID of the first phase of the bill begun last.
qint64 FirstPhaseOf(ImportRun& run, BillWriter& writer) {
    const qint64 known =
        run.GetSession().Quadrix.ExecuteCommand("SELECT RECORD_ID FROM " + run.FullName("DIS_FAS") + " WHERE " +
                                                Equals("IDDIS", writer.BillId()) + " ORDER BY DLSEQ");
    return known != 0 ? known : writer.Write(Phase{});
}

/// Puts right what a component has from the source; what else it has stays.
void CorrectComponent(ImportRun& run, BillWriter& writer, const Component& component) {
    const qint64 known =
        IdWhere(run.GetSession(), "DIS_COM",
                Equals("IDDIS", writer.BillId()) + " AND " + Equals(run.GetSession(), "DCART", component.article));
    if (known == 0) {
        writer.Write(component, FirstPhaseOf(run, writer));
        return;
    }
    TargetRow row(run, "DIS_COM");
    row.Set("DCQTA", component.quantity);
    row.Set("DCPOS", component.position);
    row.Set("DCNOT", component.note);
    row.Update("WHERE " + Equals("RECORD_ID", known));
}

/// A component that the source has no more.
struct Gone {
    qint64 id;
    QString article;
};

/// The imported components of the bill begun last that are not in the source; those entered by hand stay.
std::vector<Gone> GoneFrom(ImportRun& run, const BillWriter& writer, const Bill& bill) {
    QSet<QString> there;
    for (const Component& component : bill.components) {
        there.insert(component.article.toUpper());
    }
    for (const QString& leftOut : bill.leftOut) {
        there.insert(leftOut.toUpper());
    }
    Session& session = run.GetSession();
    std::vector<Gone> gone;
    Recordset rows = session.Quadrix.ExecuteWC("SELECT RECORD_ID, DCART FROM " + run.FullName("DIS_COM") + " WHERE " +
                                               Equals("IDDIS", writer.BillId()) + " AND " + OfImports(session) +
                                               " ORDER BY RECORD_ID");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        if (!there.contains(row.Text("DCART").toUpper())) {
            gone.push_back({row.Value("RECORD_ID").toLongLong(), row.Text("DCART")});
        }
    }
    return gone;
}

void Remove(ImportRun& run, const Gone& component) {
    run.DeleteRows("DIS_COM", Equals("RECORD_ID", component.id));
    run.Log(
        QStringLiteral("COMPONENTE ELIMINATO: %1: '%2' non è più nell'origine").arg(run.RowKey(), component.article));
}

RowOutcome CorreggiDistinta(ImportRun& run, BillWriter& writer, const SourceRow& parent) {
    const QString code = parent.Text("PADRE");
    const QString article = ArticleCodeOf(run.GetSession(), ArticoliTable, "COD_ARTICOLO", code);
    writer.Meet(article);
    RowOutcome outcome = run.Skip("distinta che nessuna importazione ha scritto");
    std::vector<Gone> gone;
    for (const Bill& bill : BillsOf(run, parent)) {
        if (ImportedBill(run.GetSession(), article, bill.revision) == 0) {
            continue;
        }
        outcome = writer.Begin(BillHead{article, code, bill.revision});
        for (const Component& component : bill.components) {
            CorrectComponent(run, writer, component);
        }
        const std::vector<Gone> ofBill = GoneFrom(run, writer, bill);
        gone.insert(gone.end(), ofBill.begin(), ofBill.end());
    }
    // Last, when nothing can fail any more: what is removed is not brought back with a row that is given up.
    for (const Gone& component : gone) {
        Remove(run, component);
    }
    return outcome;
}

// --- Procedures ---------------------------------------------------------------------------------------------------

/// Every parent of the source.
ImportRun::Loop Parents(const ImportRun& run, const QString& step, const QString& singleCode) {
    const QString from = " FROM DISTINTA_BASE" + run.OnlyCode(" WHERE", "PADRE", singleCode);
    return {step, DistintaBase, "PADRE", "SELECT COUNT(DISTINCT(PADRE))" + from,
            "SELECT DISTINCT PADRE" + from + " ORDER BY PADRE"};
}

const TableNeed& DistintaBaseNeed() {
    static const TableNeed need{DistintaBase, {"PADRE", "FIGLIO", "POSIZIONE", "QUANTITA", "UM", "NOTE", "REVISIONE"}};
    return need;
}

} // namespace

const Needs& DistinteNeeds() {
    static const Needs needs{
        {},
        {DistintaBaseNeed(), {Cicli, {"COD_ARTICOLO", "NUM_FASE", "COD_LAVORAZIONE", "TEMPO_ATTR", "TEMPO_UNIT"}}},
        BillNeeds(),
        {{.list = Cicli, .field = "COD_LAVORAZIONE", .table = "DIS_LAV", .column = "DLLAV"}}};
    return needs;
}

void ImportDistinteVSP(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportDistinteVSP", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.AnnounceAppending("Inizio importazione Distinte Base da Visual Space");
        run.Preflight(DistinteNeeds());
        Empty(run, reset, BillEmptying());
        ImportBills(run, Parents(run, "Distinte Base", singleCode), singleCode,
                    "Distinte Base Visual Space importate correttamente: %1 (Fasi: %2, Comp.: %3)",
                    [&](BillWriter& writer, const SourceRow& row) { return ImportDistinta(run, writer, row); });
    });
}

const Needs& CorrezioneNeeds() {
    static const Needs needs{{}, {DistintaBaseNeed()}, BillNeeds()};
    return needs;
}

/// Puts right the bills that an import wrote: those that the source has no more stay, as they may be of another origin.
void CorreggiDistinteVSP(Session& session, const QString& singleCode, bool /*reset*/) {
    ImportRun run(session, Module, "CorreggiDistinteVSP", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        if (!run.Ask(CorrectionQuestion)) {
            return;
        }
        run.AnnounceAppending("Inizio correzione Distinte Base da Visual Space");
        run.Preflight(CorrezioneNeeds());
        ImportBills(run, Parents(run, "Correzione Distinte Base", singleCode), singleCode, "Distinte Base corrette!",
                    [&](BillWriter& writer, const SourceRow& row) { return CorreggiDistinta(run, writer, row); });
    });
}

} // namespace modImport_VS
