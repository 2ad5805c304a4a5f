#pragma once

#include "adapters/contract/run/Emptying.h"
#include "adapters/contract/run/ImportRun.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/ImportingModules.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

namespace contract {

/// What the writer below writes.
std::vector<TableNeed> BillNeeds();

/// What a reset of the bills empties.
Emptying BillEmptying();

/// A phase of a bill. Without an own number the phases count by tens.
struct Phase {
    int sequence = 0; ///< 0: the first
    QString work;     ///< empty: the generic work centre
    QString note = {};
    double setUpTime = 0; ///< in minutes
    double unitTime = 0;  ///< in minutes
    double cost = 0;      ///< per hour
    /// CDCON of who does it, empty for the company itself; none: not told, and what Quadrix has stays.
    std::optional<QString> supplier = {};
    std::optional<QString> machine = {}; ///< CDMAC; the same
};

/// A bill.
struct BillHead {
    QString article;
    QString sourceKey;
    QVariant revision = {}; ///< Null: an article has one bill
    QVariant active = {};   ///< whether it is the revision in force; Null: it is
    /// Whether it is that alone, where it is in force: other revisions of the article that imports wrote no longer are.
    bool alone = false;
    std::optional<QString> note = {}; ///< none: the source has none, and what Quadrix has stays
    /// Whether it takes the place of another one that the run has written: what only that one has goes.
    bool replaces = false;
    QString wholeKey = {}; ///< of what `sourceKey` is cut from; empty: it is whole
};

/// What the quantity of a component does that its bill has got in this run already.
enum class Repeated {
    Replaces, ///< the one before, which is logged
    Adds,     ///< to the one before, which keeps its place
};

/// A component of a bill.
struct Component {
    QString article;
    double quantity = 0; ///< per unit of the parent
    QString note = {};
    QVariant position = {};
    bool subcontracted = schema::defaults::NotSubcontracted; ///< it goes to the supplier who does its phase
    Repeated repeated = Repeated::Replaces;
};

/// Writes bills of materials and counts them. It knows the target, never the origin.
/// Every operation raises `SqlError`, `RowGivenUp` or, for a value that does not fit, `ImportError`.
class BillWriter {
public:
    explicit BillWriter(ImportRun& run)
        : m_run(run),
          m_modules(run, QStringLiteral("DIS_BAS")) {}

    /// Whether the article is there.
    bool HasArticle(const QString& article) const;
    /// RECORD_ID of the bill of an article, and of its revision where that is told; 0 when there is none.
    qint64 Find(const BillHead& head) const;
    /// Makes sure that an article has a bill: a new one is inserted, an existing one marked as changed. What it holds
    /// is written by the calls below. @param sourceKey key of the bill in the source
    RowOutcome Begin(const QString& article, const QString& sourceKey) { return Begin(BillHead{article, sourceKey}); }
    /// The same; an article has one bill for each revision. One that the run has begun by another key of the source
    /// raises `ImportError`, unless it is to be replaced: their components would be mixed. @param more sets further
    /// columns
    RowOutcome Begin(const BillHead& head, const std::function<void(TargetRow&)>& more = {});
    /// RECORD_ID of the bill begun last.
    qint64 BillId() const { return m_bill; }
    /// The phase that a bill begun last which has none in the source hangs its components on: the first that is there
    /// as it is, where the bill has phases and none that is the generic one as imports write it; else that one, which
    /// is written. Components of the bill that hang on one of its phases stay there. @return its RECORD_ID
    qint64 WriteGeneric();
    /// The same for a source that tells no phases of any bill: those that are there are none that it has no more.
    qint64 KeepPhase();
    /// Writes a phase of the bill begun last, or the phase of that sequence number when it is there.
    /// @param more sets further columns @return its RECORD_ID
    qint64 Write(const Phase& phase, const std::function<void(TargetRow&)>& more = {});
    /// Writes a component of the bill begun last, with cost, mark-up and price that its article has now. A component
    /// that the bill already has is rewritten; a quantity that is lost by that is logged where this run wrote it.
    /// @param phase RECORD_ID of the phase that consumes it @param more sets further columns
    void Write(const Component& component, qint64 phase, const std::function<void(TargetRow&)>& more = {});
    /// The article of the sheets of a material and thickness; empty without one. No index finds it: each pair is looked
    /// for once, as an import of bills writes no articles.
    QString SheetOf(const QString& material, double thickness);
    /// Tells which components earlier imports have left in the bill begun last that this run has not written: they are
    /// no longer in the source, yet they stay. Called when the bill is complete. Those that the run has written for a
    /// bill whose place this one takes go.
    void TellComponentsLeft();
    /// The source has a component of the bill begun last that is not written now, as its article is missing or its days
    /// are over. Where an earlier import wrote it, it stays as it was, which `TellComponentsLeft` says.
    void LeaveOut(const QString& article) { m_leftOut.insert(mod_ovTools::UpperChars(article)); }
    /// Keeps in mind that the source has bills of an article that are not begun.
    void Meet(const QString& article) { m_met.insert(mod_ovTools::UpperChars(article)); }
    /// Tells which bills of earlier imports the source has no more, as the run has neither begun them nor met their
    /// article: they stay. Called behind the last row; a run of some of the rows tells nothing, and nothing is told
    /// where another module imports bills too, as they may be of that one.
    void TellBillsLeft();
    /// The same of the phases, for a source that tells phases; called when those of the bill are complete. The generic
    /// phase that an import gave the bill while the source told none goes: what it consumed, the first phase does.
    void ClosePhases();
    /// Links every component whose article has a bill to that bill, of several revisions to the one in force; the
    /// others have no link. A bill that contains itself, over any number of levels, is logged with its path: it cannot
    /// be unfolded.
    void LinkSubAssemblies();

    /// Tells that the single bill that is wanted is not there.
    void TellMissing(const QString& singleCode) const;
    /// The completion message: a text in which %1 bills, %2 phases and %3 components may stand.
    QString Completion(QString text) const;

    // Bills, phases and components of the run, for the completion message.
    qint64 Bills() const { return m_run.WrittenRows("DIS_BAS") - m_withdrawals; }
    qint64 Phases() const { return m_run.WrittenRows("DIS_FAS"); }
    qint64 Components() const { return m_run.WrittenRows("DIS_COM"); }

private:
    void Claim(const BillHead& head);
    void KeepBegun(const BillHead& head);
    void WithdrawOthers(const BillHead& head);
    /// A phase that is there.
    struct KnownPhase {
        qint64 id = 0; ///< 0: none
        int sequence = 0;
    };
    KnownPhase FirstInPlaceOfGeneric() const;
    void DropReplacedPhases();
    void DropReplacedComponents(const QList<qint64>& left);
    void DropPhase(qint64 phase);
    void TellLinks(const QString& bill) const;
    void LogCycles();
    double QuantityOf(const Component& component);
    bool HangsOnPhase(qint64 component) const;

    ImportRun& m_run;
    ImportingModules m_modules;
    qint64 m_bill = 0;
    bool m_wasThere = false;             ///< the bill begun last
    bool m_replaces = false;             ///< the same, as `BillHead` tells
    QSet<qint64> m_leftParts;            ///< components of earlier imports that a bill of the run has no longer
    QSet<qint64> m_leftPhases;           ///< the same of phases
    QHash<qint64, size_t> m_begun;       ///< bills of the run: digests of their whole keys
    QSet<QString> m_met;                 ///< articles whose bills the source has, in capitals
    qint64 m_withdrawals = 0;            ///< updates of bills that are no longer in force
    QHash<QString, double> m_quantities; ///< of the bill begun last, by article
    QSet<QString> m_leftOut;             ///< articles of its components that are not written, in capitals
    QSet<int> m_phases;                  ///< of the bill begun last, by sequence
    bool m_tellsNoPhase = false;         ///< the source, of the same
    qint64 m_firstPhase = 0;             ///< the one of them that was written first
    PendingRows::Id m_firstComponent;    ///< that the run has inserted; null: it has inserted none
    QHash<std::pair<QString, double>, QString> m_sheets;
};

/// The number that a phase or operation of a source gets. Numbers tell those of a bill or order apart: one that is not
/// higher than those before gives way to the next free one, and is logged.
/// @param last of those written before, 0 for none @param own of the source, 0 for none
/// @param step between numbers that the source does not give @param name of its row in the log
int NumberBehind(ImportRun& run, int last, int own, int step, const std::function<QString()>& name);

/// Tells which phases earlier imports have left in a bill (RECORD_ID) that the source no longer tells: they stay.
/// @param told sequences of those that it tells
/// @param ids gets RECORD_ID of each; outlives the run
/// @return RECORD_ID of the generic phase among them, without times, which is not told; 0 for none
qint64 TellPhasesLeft(ImportRun& run, qint64 bill, const QSet<int>& told, QSet<qint64>* ids = nullptr);

/// Imports the bills of a run: reads their heads and hands each to `bill`, then links the sub-assemblies. A single bill
/// that is not there is told, and bills that the source has no more; a run that is cancelled links nothing.
/// @param singleCode of the bill that is wanted; empty for all
/// @param completion the message at the end, in which %1 bills, %2 phases and %3 components may stand
void ImportBills(ImportRun& run, const ImportRun::Loop& heads, const QString& singleCode, const QString& completion,
                 const std::function<RowOutcome(BillWriter&, const SourceRow&)>& bill);

} // namespace contract
