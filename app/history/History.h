#pragma once

#include "adapters/contract/run/RowSelection.h"
#include "app/history/historyFile.h"
#include "app/history/writtenDatabase.h"
#include "core/runEnding.h"

namespace history {

/// A procedure of a run that is kept.
struct ProcedureRun {
    qint64 id = 0;
    RunResult result;
    bool hasEnded = false;                   ///< else the program was killed in it, and the result is empty
    contract::RowSelection::Reached reached; ///< source rows that were committed last
    qint64 rejects = 0;                      ///< rows given up that are kept
    qint64 imported = 0;                     ///< those of them that a later run has imported, mended or not
    QString origin;                          ///< whose procedure it is; empty: not known
    QString undone;                          ///< when and by whom what it wrote was taken back; empty: it was not
};

/// A run that is kept.
struct Run {
    qint64 id = 0;
    QDateTime started;
    QDateTime ended; ///< invalid: it is under way, or its program was killed
    bool isUnderWay = false;
    Ending ending = Ending::Complete; ///< of one that has ended
    bool isTrial = false;
    bool isPartial = false; ///< from some point on it was not kept what the run did
    QString worker;
    QString version;
    QString company;
    QString companyName;
    QString origin;
    QString data; ///< button or procedure, as the command line names it
    QString work;
    QString source;
    QString layout; ///< text of the layout file of its source; empty: it had none
    QString code;   ///< that it was limited to; empty: to none
    QStringList options;
    qint64 resumes = 0;       ///< the run that it goes on with; 0: it begins by itself
    qint64 target = 0;        ///< number of the database that it has written to; 0: not known
    QString database;         ///< where that is; empty: not known
    bool isElsewhere = false; ///< that is another one than the history was opened for: nothing of it stands here
    bool wasReplaced = false; ///< the other one stood at the same place
    std::vector<ProcedureRun> procedures;

    bool WasKilled() const { return !ended.isValid() && !isUnderWay; }
    /// Whether what it wrote was taken back.
    bool IsUndone() const;
};
/// What there is to say of a run into another database: "ha scritto in un altro database, ...".
QString ElsewhereText(const Run& run);
/// "completata", "interrotta: il programma è terminato prima della fine", ...
QString EndingText(const Run& run);

/// The kind under which the rows that a run gave up stand among its notes.
inline const QString GivenUpKind = QStringLiteral("RIGA ABBANDONATA");

/// The option of a run that took rows of an earlier one alone.
inline const QString OnlySomeRows = QStringLiteral("Solo righe di un'esecuzione precedente");

/// What a run told, by kind.
struct NoteKind {
    QString kind;
    qint64 count = 0;
    qint64 done = 0; ///< those that the operator has ticked off
};
struct Note {
    qint64 id = 0;
    QString procedure;
    QString kind;
    QString row;
    QString text;
    bool isDone = false;
};
/// In which order notes are wanted.
enum class NoteOrder {
    Told, ///< as they came up
    Row,  ///< by the name of their row
    Text,
    OpenFirst, ///< those that are not ticked off before the others
};
struct Reject {
    qint64 id = 0;
    QString procedure;
    RejectedRow row;
    qint64 importedBy = 0;   ///< the run that has imported it since; 0: none has
    QString importedAs = {}; ///< `MendedText` of the row that it has imported; null where that is not known
};
/// A code without a translation, in the runs that are kept.
struct WaitingCode {
    OpenCode code;
    qint64 rows = 0;   ///< of the last run that met it
    QStringList first; ///< names of the first of them
    qint64 run = 0;
    QString origin; ///< of the procedure; empty: not known
    QString procedure;
    bool isOfSeveral = false; ///< the run was one of several origins
};

/// Reads the history of the runs. Everything raises `SqlError`.
class History {
public:
    /// Opens it, and makes an empty one when there is none. It takes all runs for runs into one database.
    explicit History(const QString& path);
    /// Opens that of a session, for the database of Quadrix that is open there: runs into another one are told apart.
    explicit History(Session& session);

    /// The runs, the latest first. @param company its code; empty for all
    std::vector<Run> Runs(const QString& company = {}, int most = 1000) const;
    /// One run, with the first of the rows that its procedures gave up; none of that number raises `ImportError`.
    Run Load(qint64 run) const;
    /// The number of the latest run of a company; 0 without one. @param company its code; empty for all
    qint64 LastRun(const QString& company = {}) const;
    /// Its log; empty when it was not kept.
    QString Log(qint64 run) const;

    /// What a run told by kind, in the order in which the kinds came up, of the notes that hold a text (empty: of all).
    /// @param kind not empty: of this one alone, which is not that of the rows given up
    std::vector<NoteKind> NoteKinds(qint64 run, const QString& text = {}, const QString& kind = {}) const;
    /// The rows that it gave up, as a kind.
    NoteKind GivenUp(qint64 run, const QString& text = {}) const;
    /// A piece of the notes of a kind (empty: of all but the rows given up) that hold a text (empty: whatever they
    /// hold), in that order. Rows given up are those of `GivenUpKind`.
    std::vector<Note> Notes(qint64 run, const QString& kind, const QString& text, qint64 from, int most,
                            NoteOrder order = NoteOrder::Told) const;
    /// Ticks notes off, or takes the tick away: one, or all of a kind that hold a text (empty: all).
    void SetDone(const Note& note, bool isDone) const;
    void SetKindDone(qint64 run, const QString& kind, const QString& text, bool isDone) const;

    /// What tells a row given up, with all that its source had in it.
    static QString KeyOf(const RejectedRow& row);
    /// Hands each row that a run gave up to `work`, procedure by procedure.
    void ForEachReject(qint64 run, const std::function<void(const Reject&)>& work) const;
    /// The row given up that a note of `GivenUpKind` tells; none when it is not kept any more.
    std::optional<Reject> FindReject(qint64 note) const;

    /// The rows of a source that runs into a company of the database have given up and later ones have imported
    /// (`KeyOf`), with the number of the row given up.
    QHash<QString, qint64> ImportedRejects(const QString& company, const QString& origin) const;

    /// The codes that the last run of each procedure of a company of the database, of those that were not taken back,
    /// has met without a translation. Whether they have one by now is not known here. @param company its code
    std::vector<WaitingCode> WaitingCodes(const QString& company, int mostRows) const;

    /// A table in which rows that a run has written were, until a later one emptied it; the run is 0 without one.
    struct Emptied {
        qint64 run = 0;
        QString table = {}; ///< physical name
    };
    /// @param tables pattern (LIKE) of the physical names of those that count
    /// @param procedure number of the one of the run that counts; 0: all of them
    Emptied EmptiedBehind(qint64 run, const QString& tables = QStringLiteral("%"), qint64 procedure = 0) const;

    /// Removes runs that began before a day, with all that is kept of them; returns how many.
    /// @param company its code; empty for all
    qint64 Forget(const QDate& before, const QString& company = {});

    ovConnection& File() const { return *m_file; }
    const QString& Path() const { return m_path; }

private:
    /// The names of all source rows that wait for a code in a procedure of a run, by its number.
    QStringList RowsWaiting(qint64 procedure, const OpenCode& code) const;
    Run RunOf(const Recordset& row) const;
    /// `WroteTo` the database that it was opened for.
    QString Here(const QString& runs) const;
    /// Their numbers, as they stand in a query.
    QStringList ProceduresOf(qint64 run) const;
    void LoadProcedures(Run& run) const;
    void LoadGivenUp(ProcedureRun& procedure) const;

    QString m_path;
    std::unique_ptr<ovConnection> m_file;
    std::optional<WrittenDatabase> m_database; ///< that it was opened for; none: whichever
};

} // namespace history
