#pragma once

#include "adapters/sourceSettings.h"
#include "app/CompanyLock.h"
#include "app/connectSource.h"
#include "app/history/Recorder.h"
#include "app/RunLog.h"
#include "app/sequence.h"

/// The company of the settings. Raises `ImportError` when there is none of that name or code, nor one that lists show
/// so, and when several have the name.
modMain::Company CompanyOf(Session& session, const SequenceSettings& settings);
/// `merge::MergedText` of that company; empty without one, which the sequence then tells.
QString MergedTextOf(Session& session, const SequenceSettings& settings);

/// What the two sequences share: log, progress, sources, procedures and the account of the steps.
class SequenceRun {
public:
    /// The operator has stopped the sequence.
    class Stopped : public std::exception {};
    /// The operator has given it up before it began.
    class Declined : public std::exception {};

    SequenceRun(Session& session, const SequenceSettings& settings, const SequenceWindow& window);

    /// Runs the body under the name of its procedure and returns the account.
    SequenceResult Guard(const QString& procedure, const std::function<void()>& body);

    Session& GetSession() const { return m_session; }
    Progress& Bar() { return *m_progress; }
    /// Writes a line into the log of the sequence; the first one starts it anew.
    void Log(const QString& message);
    /// Takes the company of the settings under work; raises as `CompanyOf`. Nobody else works on it from then on.
    /// Raises `ImportError` when somebody does.
    void SelectCompany();
    /// "X01 Prova", the company under work.
    QString CompanyName() const { return m_company.code + ' ' + m_company.name; }
    /// Raises `ImportError` when the log cannot be written: before anything is deleted. What stands there stays.
    void CheckLog() const;
    /// Keeps everybody else from work on any company from now on, for the tables that all share. The same.
    void LockAllCompanies();
    /// Adds steps behind those planned.
    void Plan(const QStringList& steps);
    /// Puts a further step in front of those still to come.
    void PlanFirst(const QString& step);
    /// How much of the bar each step is; 1 for those not named.
    void SetWeights(const QMap<QString, qint64>& weights) { m_weights = weights; }
    /// Starts a step. Raises `Stopped` when the operator pressed cancel.
    void Begin(const QString& step);
    /// Ends the step under way. @param lines for the log, in front of how it ended
    void End(SequenceEntry::Outcome outcome, const QString& message = {}, const QStringList& lines = {});
    /// Does the work of a step that is no procedure of an origin, and has the history keep it as one, also when it
    /// fails.
    /// @param module under which @param work tells what it empties or has to tell
    void KeepStep(const QString& module, const std::function<void(RunResult& account)>& work);
    /// Skips the step because of its source; the text is told at the end.
    void SkipNotConnected(const QString& text);

    /// The origin of that name. Raises `ImportError` for one that the list lacks.
    const contract::Origin& OriginOf(const QString& name) const;
    /// The procedure of an origin; null when its module has none of that name. Raises `ImportError` for an origin that
    /// the list lacks.
    const contract::Procedure* Find(const QString& origin, const QString& procedure) const;
    /// Writes the values of a source of the settings into section IMPORT, its keys with `prefix` in front: all, or
    /// none. Raises `ImportError` when one cannot be written, as another source would be opened then.
    void WriteKeys(const QString& section, const QString& prefix = {});
    /// Writes the keys of an origin and opens it as the session's source; false when either failed, which is reported.
    bool Connect(const QString& origin);
    /// Opens it quietly, with the keys as they are; an error is logged. False when it cannot be opened.
    bool ConnectQuietly(const QString& origin);
    /// The number that some work gives; 0 when it fails, which is logged under a title.
    qint64 Quietly(const QString& title, const std::function<qint64()>& work);
    /// Runs a procedure of an origin as the step under way, and ends the step.
    void Import(const QString& origin, const QString& procedure);
    /// The same on another connection than the session's source, which is put back.
    void ImportFrom(SecondSource& source, const QString& origin, const QString& procedure);

private:
    void Conclude();
    QStringList Shortcomings() const;
    void LogOutcome();
    void LogStatement();
    void RunProcedure(const contract::Procedure& procedure);
    void TellStopped();
    float WeightOf(const SequenceEntry& entry) const { return static_cast<float>(m_weights.value(entry.step, 1)); }
    SequenceEntry& Current() { return m_result.entries[m_current]; }

    Session& m_session;
    modMain::Company m_company; ///< under work
    QString m_procedure;        ///< under which errors are reported
    std::vector<std::unique_ptr<CompanyLock>> m_locks;
    std::optional<RunLog> m_runLog;
    std::optional<history::Recorder> m_recorder;
    const SequenceSettings& m_settings;
    const SequenceWindow& m_window;
    SequenceResult m_result;
    std::unique_ptr<Progress> m_progress;
    QMap<QString, qint64> m_weights;
    qsizetype m_current = -1; ///< the step under way or ended last
    bool m_logStarted = false;
    qint64 m_errorsBefore = 0; ///< reported before the step under way
};
