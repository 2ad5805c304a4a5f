#pragma once

#include "adapters/contract/run/Account.h"
#include "adapters/contract/run/Needs.h"
#include "adapters/contract/run/TargetRow.h"
#include "core/modImport.h"
#include "core/Schema.h"

#include <map>
#include <memory>
#include <typeindex>

namespace contract {

/// Raised where the operator gives a question or a run up, past everything that reports errors.
struct GivenUpByOperator {};

/// One run of one import procedure: announcement, preflight, emptying, questions, the row loop with progress, cancel
/// and the account, the completion message, and the guard around it all. When it ends, its result is in the session.
class ImportRun {
public:
    /// @param singleCode empty imports everything; otherwise nothing is announced, shown or cancelled
    ImportRun(Session& session, const QString& module, const QString& procedure, const QString& singleCode);

    /// Runs the procedure's body: an error is reported under its name and ends it. The pointer, the progress dialog
    /// and the source's recordsets are restored and closed in every case.
    void Guard(const std::function<void()>& body);

    /// From now on an error that ends the run stands in the log too, behind this text ("Errore: ").
    void LogErrorsAs(const QString& text) { m_errorText = text; }

    /// Starts a new log with the announcement; a run of a single code is not announced.
    void Announce(const QString& announcement);
    /// Writes the announcement behind what the log holds already.
    void AnnounceAppending(const QString& announcement);
    /// Checks that the source and the target hold what the run reads and writes, before anything is written.
    /// Raises `ImportError` listing everything that is missing. Columns of the source that the procedure can do without
    /// are left out when they are missing: they read as Null, and one line in log and result tells them. Another tells
    /// columns of the target that keep less of a number than the schema says.
    void Preflight(const Needs& needs);
    /// Empties tables (bare names), in their order, when the operator asked for it. Result and log tell the rows.
    void Truncate(bool reset, const QStringList& tables);
    /// Deletes rows of a table (physical name) before the first row is read; result and log tell how many.
    /// @param words of the statement in front of the name @param condition on them; empty: all
    void Delete(const QString& words, const QString& table, const QString& condition);
    /// Asks a yes/no question of this origin, each once in a run. When the operator gives it up, the run ends there as
    /// cancelled.
    bool Ask(const QString& question);
    /// Asks for a text; the same, by its prompt.
    QString Input(const QString& prompt, const QString& title, const QString& defaultText);

    /// A loop over source rows.
    struct Loop {
        QString step;      ///< for the progress dialog
        QString table;     ///< source table, for messages
        QString keyColumn; ///< its code column, for messages; several are joined, separated by ", "
        QString count;     ///< query that counts the rows
        QString select;    ///< query that reads them
        /// Columns whose values tell which rows belong together, such as the rows of a document, and by which the rows
        /// come ordered; empty: every row stands alone. Rows that belong together are carried over or given up as one,
        /// and a cancel waits for their end.
        QStringList group = {};
        /// What tells it of a row where the values as they are do not; null: they do.
        std::function<QString(const SourceRow&)> groupOf = {};
        /// The database that holds the rows; null: the source of the import.
        ovConnection* database = nullptr;
        /// What tells, before their number, the rows that the queries leave behind by their day; empty: there are none.
        QString leftOut = {};
        QString countAll = {}; ///< query that counts these too
    };
    using RowWork = std::function<RowOutcome(const SourceRow&)>;
    /// Reads the rows and hands each to `row`. Several are committed together (setting GruppoRighe of section IMPORT):
    /// a row counts from its commit on. One that cannot be carried over is taken back alone, with the rows that belong
    /// to it, and goes the way the error collector's `Action` says. Rows may be done more than once: what they remember
    /// has to go through `WhenTakenBack` or `Restores`.
    /// @param groupEnd called after the last of the rows that belong together
    /// @return false when the operator cancelled
    bool Rows(const Loop& loop, const RowWork& row, const std::function<void()>& groupEnd = {});
    /// Counts the rows of a loop that a run which broke off does not come to: they are not reached, and log and result
    /// tell them with its step. Where that cannot be asked any more (or the query is empty) they tell the step alone.
    void DoesNotReach(const Loop& loop) noexcept;
    /// Whether the operator has cancelled the run.
    bool WasCancelled() const { return m_account.Result.outcome == RunResult::Outcome::Cancelled; }
    /// Leaves the row under way out by a rule of the import, which the result tells with the number of its rows.
    /// @param rule in the operator's words, e.g. "documento già importato"
    RowOutcome Skip(const QString& rule) {
        m_rule = rule;
        return RowOutcome::Skipped;
    }
    /// Shows the completion message, unless the run was cancelled or of a single code, or what is to be done before it
    /// failed.
    void Complete(const QString& message);
    /// Whether the database takes back what a row has written when it is given up. False where tables of Quadrix are of
    /// an engine without transactions, which the log tells once.
    bool TakesRowsBack();
    /// What is still to be done before a run may be called complete; none with an empty function.
    void BeforeCompletion(std::function<void()> work) { m_beforeCompletion = std::move(work); }

    /// Switches the triggers of a table (bare name) on again, whatever has happened. It is tried once more when it
    /// fails: nobody would notice triggers that stay off. In the end the operator and the log are told, with what is
    /// left to be done, and the run counts as failed.
    /// @param waiting names of the triggers that are to be made again; empty where it is not known whether there are
    /// any, none where the database has a switch for all of a table
    void SwitchTriggersOn(const QString& table, const std::optional<QStringList>& waiting) noexcept;

    /// Deletes the rows of a table (bare name) that a condition names (without WHERE), for rows that are written anew;
    /// returns how many. Unlike `Delete` it is part of the row under way.
    qint64 DeleteRows(const QString& table, const QString& condition);

    /// Appends a line about the row under way to the import log; it also stands in the result.
    void Log(const QString& message);
    /// Appends a line to the log and to what the result tells of the whole run, each once.
    void Tell(const QString& line);
    /// A text as an SQL literal of the target.
    QString Quoted(const QString& text) const;
    /// "\rWHERE column = 'code'", the condition of a run of a single code; empty for a run of all.
    /// @param lead what stands before the column, with the white space before it, e.g. "\rWHERE" or " AND"
    QString OnlyCode(const QString& lead, const QString& column, const QString& code) const;
    /// Physical name of a company table: the company's code and the bare name.
    QString FullName(const QString& table) const { return m_session.Quadrix.GetFullTableName(table); }
    Session& GetSession() const { return m_session; }
    /// Of the procedure, for example "modImport_Arca2000".
    const QString& Module() const { return m_account.Result.module; }
    /// How codes and texts are written, as the configuration said when the run began.
    const modImport::FieldCase& Case() const { return m_case; }
    /// For example "ImportArticoliArca2000".
    const QString& ProcedureName() const { return m_account.Result.procedure; }
    /// Characters that a column of texts holds, by the schema or, where these are fewer, in the database; 0: any
    /// number.
    int LengthOf(const schema::Column& column) const {
        return m_lengths.isEmpty() ? column.size : m_lengths.value(&column, column.size);
    }
    bool IsSingle() const { return m_single; }
    /// Whether it takes some of the source rows alone: those of a code, those that are wanted, those that an earlier
    /// run has not reached. What it does not meet may well be in the source.
    bool IsPart() const;
    /// Whether it goes on behind an earlier run that broke off.
    bool GoesOn() const;
    /// Whether that one has written the row of a table (bare name) that has a RECORD_ID: together they are one import,
    /// and what counts of rows that an import has written counts of these.
    bool HasWrittenBefore(const QString& table, qint64 id) const;
    /// Whether source rows were given up so far.
    bool HasGivenUp() const { return m_account.Result.givenUpCount > 0; }
    /// Key of the row under way, for log lines.
    QString RowKey() const { return m_session.Errors.RowKey(); }

    /// Has `forget` called when what was written last is taken back: what is remembered of it must not serve later
    /// rows.
    void WhenTakenBack(std::function<void()> forget) { m_session.Memory.WhenTakenBack(std::move(forget)); }
    /// Gives a variable, which outlives the run, its present value back when what follows is taken back.
    template<class Variable>
    void Restores(Variable& variable) {
        m_session.Memory.Restores(variable);
    }

    /// Gives an entry of a hash, which outlives the row, its present value back, or takes it out again where there is
    /// none, when what follows is taken back.
    template<class Key, class Value>
    void RestoresEntry(QHash<Key, Value>& hash, const Key& key) {
        const auto there = hash.constFind(key);
        WhenTakenBack([&hash, key, before = there == hash.cend() ? std::nullopt : std::optional<Value>(*there)] {
            if (before) {
                hash.insert(key, *before);
            } else {
                hash.remove(key);
            }
        });
    }

    /// Puts a value into a set that outlives the row, until what is written now is taken back.
    template<class Value>
    void Remember(QSet<Value>& set, const Value& value) {
        if (!set.contains(value)) {
            set.insert(value);
            WhenTakenBack([&set, value] { set.remove(value); });
        }
    }

    /// What the parts of a procedure share, made when it is first asked for.
    template<class Thing>
    std::shared_ptr<Thing> Shared() {
        std::shared_ptr<void>& thing = m_shared[std::type_index(typeid(Thing))];
        if (!thing) {
            thing = std::make_shared<Thing>();
        }
        return std::static_pointer_cast<Thing>(thing);
    }

    /// Rows of a table (bare name) that the run has written so far, without those taken back.
    qint64 WrittenRows(const QString& table) const { return m_account.Written(table); }
    /// RECORD_ID of the row that the run has inserted last into a table (bare name), as the insert gave it; 0 when it
    /// has inserted none.
    qint64 LastId(const QString& table) const;
    /// The same, also while the row waits; null when it has inserted none.
    PendingRows::Id LastRow(const QString& table) const { return m_lastIds.value(table); }
    /// Called by whoever writes: counts a row that was written for the source row under way.
    /// @param id identity value of the new row, where somebody may ask for it
    void Inserted(const QString& table, const PendingRows::Id& id = {});
    void Updated(const QString& table) { m_account.Updated(table); }
    /// What many rows of a table share that have the same columns.
    struct RowShape {
        QString fullTableName;
        QStringList columns; ///< in the order in which they are written, without those of bytes
        QByteArray insert;   ///< see `ovQueryConstructor::KnownInsert`; empty before the first
    };
    /// @param fields by the column's place in the table: its place in the row; -1 for one that is not written
    RowShape& ShapeOf(const schema::Table& table, const std::vector<qint16>& fields);
    /// Whether somebody keeps what rows were before they are written, and what was written.
    bool KeepsImages() const { return m_session.Observer != nullptr && m_session.Observer->KeepsImages(); }
    /// Tells of a row that was written. @param complete puts in what is known only once the row stands in the database
    template<class Complete>
    void TellChange(TargetChange change, Complete complete) {
        if (m_session.Observer != nullptr && m_session.Observer->NamesRows()) {
            change.row = RowKey();
        }
        modImport::Tell(m_session, [change = std::move(change), complete](RunObserver& observer) mutable {
            complete(change);
            observer.TargetChanges(change);
        });
    }
    /// Tells of the rows of a condition (with its WHERE), which are about to be written, with what they are now.
    /// @param change what is told of all of them: its columns are those that are kept, none for all
    void KeepImages(TargetChange change, const QString& where);

private:
    friend class RowLoop;

    void CommitAccount();
    void LogError();
    void AppendToLog(const QString& line);
    void LogLines();
    void LogOrReport(const QString& message);
    void WillEmpty(const QString& table, const QString& condition = {}) const;
    void TellEmptied(const QString& table, qint64 rows, const QString& line);
    void TellNotMet();
    void CountNotMet();
    void LogEnding();
    void Finish();

    Session& m_session;
    modImport::FieldCase m_case;
    Account m_account;
    bool m_single;
    bool m_failed = false;
    QString m_errorText; ///< empty: errors are not logged
    std::function<void()> m_beforeCompletion;
    QString m_rule; ///< that leaves the row under way out
    QHash<QString, PendingRows::Id> m_lastIds;
    int m_loops = 0; ///< begun so far
    std::optional<bool> m_takesRowsBack;
    QHash<std::pair<const schema::Table*, QByteArray>, RowShape> m_shapes; ///< by table and fields
    QHash<const schema::Column*, int> m_lengths; ///< where the database has fewer characters than the schema
    QHash<QString, bool> m_answers;              ///< by question
    QHash<QString, QString> m_texts;             ///< by prompt
    std::map<std::type_index, std::shared_ptr<void>> m_shared;
    double m_start; ///< seconds on the operator's clock
};

} // namespace contract
