#pragma once

#include "core/Operator.h"
#include "core/RejectLimit.h"
#include "core/RowMemory.h"
#include "core/RunObserver.h"
#include "sql/FileLock.h"
#include "sql/ovConfig.h"
#include "sql/ovDialogs.h"
#include "sql/ovUserManager.h"

#include <QHash>
#include <QSet>

#include <optional>

namespace contract {
class RowSelection;
class SourceLayout;
} // namespace contract

/// Look-ups that failed in the procedure under way.
struct LookUpFailures {
    qint64 count = 0;
    QStringList messages; ///< of the different ones, each once
    /// The operator would not go on with one of them, or trying again was in vain: those that follow are told alone.
    bool wasAborted = false;
};

/// A line of the log that waits for the commit of its row.
struct HeldLine {
    QString line; ///< with its time
    QString note; ///< what the result tells of it; empty for nothing
};

/// Codes that were asked for and have no translation, each once.
class UntranslatedCodes {
public:
    static constexpr qsizetype MostKept = 1000;

    /// Takes a code in, as "table.field = code", unless it has been taken in since `Forget`. @return whether it is new
    bool Add(const QString& code);
    /// Forgets the code that was taken in last, as its row is.
    void TakeBack(const QString& code);
    /// Those that were taken in since `Begin`, in the order they were met; the first 1000 of them.
    const QStringList& First() const { return m_first; }
    /// How many were taken in since `Begin`.
    qint64 Count() const { return m_count; }
    /// Begins to list and count anew, for another procedure: a code that an earlier one has met is not told again.
    void Begin();
    /// Forgets them all.
    void Forget();

private:
    QStringList m_first;
    qint64 m_count = 0;
    using Hashes = std::pair<size_t, size_t>;
    static Hashes HashesOf(const QString& code);

    QSet<Hashes> m_seen; ///< two hashes of each: small, however many and long the codes are
};

/// What somebody writes into section IMPORT of the settings before he opens a source: it is corrected where he has it
/// from.
struct WrittenSettings {
    QString file;
    QString section;  ///< of the file
    QString prefix;   ///< in front of its keys in IMPORT
    QStringList keys; ///< of the file
};

/// What lives for the run: the framework objects, the two connections, the operator and the clock.
/// Passed by reference; there is one per program.
class Session {
public:
    /// Creates the framework objects and wires them; nothing is opened.
    explicit Session(Operator& person);

    ovErrors Errors;
    RejectLimit MostGivenUp; ///< rows of each procedure
    ovConnection Quadrix; ///< the target database
    ovConfig Config;
    ovUserManager UserManager;
    ovDialogs Dialogs;
    /// The source of the import under way; null between imports and for imports without one.
    std::unique_ptr<ovConnection> Source;
    /// The origin whose section of the settings goes before the common one; empty: none does, whatever is opened
    /// within. Absent while nothing is opened.
    std::optional<QString> SettingsOrigin;
    /// What was last written into the settings for a source, while that counts; none: nothing was.
    std::optional<WrittenSettings> Written;
    /// What the layout file of its origin tells, while it is open; null without such a file.
    std::shared_ptr<const contract::SourceLayout> Layout;
    /// Sees every statement that a source is asked, in the source's own words.
    ovConnection::StatementObserver TraceSource;
    Operator& Person;
    /// Today and now; a test sets its own.
    std::function<QDateTime()> Now = [] { return QDateTime::currentDateTime(); };
    /// Path of the default import log, "import.log".
    QString LogFile;
    /// Whether the default log has been begun anew since this was set to false.
    bool LogBeginsAnew = false;

    /// Path of a further log that gets every line of the default one, and keeps those of earlier runs; empty for none.
    QString LogCopy;

    /// Held while this program works with its settings file, so that others find it; null where that is not told.
    std::unique_ptr<FileLock> Presence;

    /// Reports the error being handled (call it inside a catch block) as `ovErrors::Monitoring` does, unless one with
    /// the same words has been reported since the collector was cleared: one that every setting meets is told once.
    void MonitorOnce(const QString& module, const QString& procedure);

    /// From which day on documents are imported, in place of the setting DOC_DateStart; invalid: the setting counts.
    QDate DocumentsFrom;
    /// What this day is told as: "DateStart di Sequence.ini".
    QString DocumentsFromSetting;

    /// Passwords of the settings of which the operator knows that they stay legible.
    QSet<QString> LegiblePasswords;

    /// The source connection. Raises `ImportError` when no source is open.
    ovConnection& SourceConnection();

    /// Translations read in this run, keyed by table, field and old code (`modImport::GetNewCode`).
    QHash<QString, QString> Translations;
    UntranslatedCodes Untranslated;
    QStringList ToldLines; ///< what the operator was told of lines that are not encrypted
    ::Notes Notes;         ///< of the procedure under way
    LookUpFailures FailedLookUps;
    RowMemory Memory;                ///< of the source rows that are not committed yet
    std::vector<HeldLine> HeldLines; ///< their lines of the log, which are written with the commit
    /// What is told of them to the observer, with the commit.
    std::vector<std::function<void(RunObserver&)>> HeldTales;
    /// Keeps what the procedures do; null: nobody does.
    RunObserver* Observer = nullptr;
    /// The source rows that the procedures are limited to, such as those given up earlier; null: they take all.
    contract::RowSelection* Selection = nullptr;
    /// One entry per procedure that ran, oldest first.
    QVector<RunResult> Results;
};
