#pragma once

#include "app/history/RowNumbers.h"
#include "core/runEnding.h"
#include "core/Session.h"
#include "sql/FileLock.h"
#include "sql/SqlText.h"

#include <QElapsedTimer>

#include <functional>

namespace history {

/// What is known of a run when it begins.
struct RunFacts {
    QString origin = {};      ///< name of the origin; empty for a run of several
    QString data = {};        ///< button or procedure, as the command line names it; empty for a run of several
    QString work = {};        ///< what is done, in the operator's words
    QString source = {};      ///< where it reads, without passwords
    QString layout = {};      ///< text of the layout file of the source; empty without one
    QString company = {};     ///< its code; empty: the one under work
    QString code = {};        ///< that the run is limited to; empty: it takes all
    QStringList options = {}; ///< what else was chosen, in the operator's words
    qint64 resumes = 0;       ///< the run that it goes on with; 0: none
    bool isTrial = false;
    /// Is told the number of the run at its end; not of one that is not kept, or in which
    /// no procedure ran. It raises nothing.
    std::function<void(qint64 run)> kept = {};
};

/// Keeps what the procedures of a press do, from its construction to its end, as a run of the history. It is written
/// down shortly behind each commit, so that a kill leaves it behind by half a second at the most. Trouble with the file
/// never stops an import: the log and the result tell it once, the rest of the run is not kept, and the run is marked
/// so.
class Recorder final : public RunObserver {
public:
    Recorder(Session& session, RunFacts facts);
    ~Recorder() override;
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// The procedure of the list of an origin that is to run: what follows is kept under this name, whatever its run
    /// reports under. Both empty: what follows is none of them.
    void Begins(const QString& procedure, const QString& origin);

    /// What the history keeps as the log of a run that does not write the import log.
    void Logs(const QString& text) { m_log = text; }

    void ProcedureBegins(const QString& module, const QString& procedure) noexcept override;
    void NoteStands(const QString& row, const QString& note) noexcept override;
    void CodeIsOpen(const QString& row, const ::OpenCode& code) noexcept override;
    void CodesAreLeft() noexcept override { m_leavesCodes = true; }
    bool KeepsImages() const noexcept override { return m_file != nullptr && m_keepsImages; }
    void TargetChanges(const TargetChange& change) noexcept override;
    void TableIsEmptied(const QString& table, const QString& condition) noexcept override;
    void RowIsGivenUp(const RejectedRow& row) noexcept override;
    void RowsStand(int loop, qint64 rows, const QString& last) noexcept override;
    void ProcedureEnds(const RunResult& result) noexcept override;

private:
    template<class Work>
    void Try(const Work& work) noexcept;
    void TellTrouble() noexcept;
    void Begin(const RunFacts& facts);
    void AdoptLogs();
    void KeepWaiting();
    void KeepIfImported(const RejectedRow& row);
    void KeepImported();
    void KeepDone(const RunResult& result);
    void Keep(SqlText statement);
    void KeepInserted(const TargetChange& change);
    void KeepWritten(const QString& table);
    std::optional<RowNumbers> NumbersOf(const QString& table, const QString& condition) const;
    void KeepForgotten(const QString& table, const std::optional<RowNumbers>& rows);
    void KeepTouched(const QString& table, bool isEmptied, const std::optional<RowNumbers>& rows = {});
    void CloseChanges();
    void Write();
    qint64 ColumnList(const QStringList& columns);
    qint64 NumberOf(const ::OpenCode& code);
    void End();
    void TellEnd(ovConnection& file, bool isPartial) const;
    void TellPartial() const noexcept;
    void AdoptPartial();

    /// Rows that were inserted one after the other into a table, with the same columns: most of what an import does.
    struct InsertedRows {
        QString table;
        QStringList columns;
        QString rows;   ///< "id digest" of each, with blanks between them
        QString places; ///< how far each is behind the one before it, among the rows of all tables
        qint64 last = 0;
    };
    struct Reached {
        int loop;
        qint64 rows;
        QString last;
    };

    Session& m_session;
    RunObserver* m_before = nullptr; ///< who is told again behind the run
    bool m_isPart;                   ///< of the rows that the procedures could take
    bool m_keepsImages;
    std::unique_ptr<ovConnection> m_file; ///< null: nothing is kept, or not any more
    std::unique_ptr<FileLock> m_lock;
    qint64 m_run = 0;
    std::function<void(qint64 run)> m_kept;
    bool m_isPartial = false; ///< something of the run could not be kept
    qsizetype m_first;        ///< results of the session before it
    qint64 m_procedure = 0;
    Ending m_ending = Ending::Complete; ///< the worst of its procedures
    std::optional<QString> m_log;       ///< null: the log stands in the file
    QString m_logFile;
    qint64 m_lastKept = 0;                ///< waiting rows up to this one were those of the run before
    bool m_leavesCodes = false;           ///< of rows that were there
    qint64 m_logStart = 0;                ///< of this run in it, in bytes
    QString m_name;                       ///< of the procedure of the list that runs; empty: none is known
    std::vector<SqlText> m_waiting;       ///< to be written
    std::vector<InsertedRows> m_inserted; ///< behind them
    std::vector<SqlText> m_updated;       ///< behind those: rows that were inserted may be among them
    qint64 m_block = 0;                   ///< how often they were written
    qint64 m_place = 0;                   ///< of the last one of them
    size_t m_changes = 0;                 ///< rows in both
    std::optional<Reached> m_reached;     ///< in front of the last of them, or behind them all
    bool m_stands = false;                ///< behind them all
    bool m_reachedWaits = false;          ///< they were written, and it was not
    QString m_company;
    qint64 m_target = 0; ///< number of the database that it writes to
    QString m_origin;    ///< of the procedures
    std::optional<QHash<QString, qint64>>
        m_imported;          ///< rows given up before and imported since, by their key; none: not asked for yet
    QString m_trouble;       ///< to be told in the log
    QElapsedTimer m_since;   ///< it was written last
    QSet<QString> m_written; ///< tables of the target, by the procedure
    QHash<QString, qint64> m_columnLists; ///< numbers by names
    /// The same by the place of a list in memory, which is kept: rows of one shape are told with the very same one.
    QHash<const QString*, std::pair<QStringList, qint64>> m_listsByPlace;
    QHash<QString, qint64> m_codes;
};

} // namespace history
