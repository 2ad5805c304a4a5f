#pragma once

#include "core/Operator.h"
#include "core/RunResult.h"
#include "sql/ovConfig.h"
#include "sql/ovDialogs.h"
#include "sql/ovUserManager.h"

#include <QHash>
#include <QSet>

namespace contract {
class SourceLayout;
}

/// Look-ups that failed in the procedure under way.
struct LookUpFailures {
    qint64 count = 0;
    QStringList messages;    ///< of the different ones, each once
    bool wasAborted = false; ///< the operator has been asked about one of them, and would not go on with it
};

/// What lives for the run: the framework objects, the two connections, the operator and the clock.
/// Passed by reference; there is one per program.
class Session {
public:
    /// Creates the framework objects and wires them; nothing is opened.
    explicit Session(Operator& person);

    ovErrors Errors;
    ovConnection Quadrix; ///< the target database
    ovConfig Config;
    ovUserManager UserManager;
    ovDialogs Dialogs;
    /// The source of the import under way; null between imports and for imports without one.
    std::unique_ptr<ovConnection> Source;
    /// What the layout file of its origin tells, while it is open; null without such a file.
    std::shared_ptr<const contract::SourceLayout> Layout;
    /// Sees every statement that a source is asked, in the source's own words.
    ovConnection::StatementObserver TraceSource;
    Operator& Person;
    /// Today and now; a test sets its own.
    std::function<QDateTime()> Now = [] { return QDateTime::currentDateTime(); };
    /// Path of the default import log, "import.log".
    QString LogFile;

    /// Path of a further log that gets every line of the default one, and keeps those of earlier runs; empty for none.
    QString LogCopy;

    /// Reports the error being handled (call it inside a catch block) as `ovErrors::Monitoring` does, unless one with
    /// the same words has been reported since the collector was cleared: one that every setting meets is told once.
    void MonitorOnce(const QString& module, const QString& procedure);

    /// From which day on documents are imported, in place of the setting DOC_DateStart; invalid: the setting counts.
    QDate DocumentsFrom;

    /// The source connection. Raises `ImportError` when no source is open.
    ovConnection& SourceConnection();

    /// Translations read in this run, keyed by table, field and old code (`modImport::GetNewCode`).
    QHash<QString, QString> Translations;
    /// Codes that were asked for and have no translation, as "table.field = code", in the order they were met.
    QStringList Untranslated;
    QSet<QString> UntranslatedSeen; ///< the same, for a quick look
    ::Notes Notes;                  ///< of the procedure under way
    LookUpFailures FailedLookUps;
    /// One entry per procedure that ran, oldest first.
    QVector<RunResult> Results;
};
