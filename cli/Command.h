#pragma once

#include "core/Session.h"

#include <QCommandLineParser>
#include <QJsonObject>

class StatementTrace;
class TerminalOperator;

namespace cli {

/// What the program hands back to the shell.
enum ExitCode {
    ExitDone = 0,
    ExitFailed = 1,
    ExitWrongUsage = 2,
    ExitCancelled = 3,
    ExitIncomplete = 4, ///< done, but rows were given up or look-ups failed
};

/// A command line that cannot be carried out as it is written.
class UsageError : public Error {
public:
    using Error::Error;
};

/// How a command ended: shown as text, or as one JSON object with "outcome" and, unless it holds them already,
/// "errors" added.
struct Report {
    ExitCode exitCode = ExitDone;
    QString text;
    QJsonObject json;
    bool isAll = false; ///< nothing else was done: where it cannot be shown, the command has failed
};

/// What a command works with.
struct Context {
    Session& session;
    TerminalOperator& person;
    const QCommandLineParser& options;
    StatementTrace& trace;
};

/// What must be open before a command starts.
enum class Need {
    Nothing,
    Database,      ///< the Quadrix database of the settings
    DatabaseToFill ///< the same; an embedded one is made when missing
};

/// A way in which a command is used.
struct Use {
    QString name;      ///< the word behind the command, or an option, such as "--run", that decides; empty: any other
    QStringList takes; ///< those of the command's options that it takes
    QString why = {};  ///< why it takes no others; empty where that needs no word
};

/// One command of the program.
struct Command {
    QString name;
    QString summary; ///< one line for the list of commands
    QString details; ///< more for its own help; may be empty
    QList<QCommandLineOption> options;
    Need need = Need::Nothing;
    std::function<Report(Context&)> run;
    std::vector<Use> uses = {}; ///< the first that the command line names holds; empty: all options go together
    QStringList repeated = {};  ///< options that may come several times, beside the answers

    /// The words one of which follows the name; empty: none does.
    QStringList Actions() const;
};

/// The word behind the name of a command that has actions.
QString ActionFrom(const QCommandLineParser& options);

/// Value of an option that must be there. Raises `UsageError` naming it.
QString Required(const QCommandLineParser& options, const QString& name);
/// Raises `UsageError` naming those of the options that are not there, all together.
void RequireAll(const QCommandLineParser& options, const QStringList& names);

/// The run of the history whose number an option gives. Raises `UsageError` for what is none.
qint64 RunFrom(const QCommandLineParser& options, const QString& name);

/// One of the values of an option, by position in `values`. Raises `UsageError` listing them.
int OneOf(const QString& option, const QString& value, const QStringList& values);

/// Raises `UsageError` unless --yes was given: for commands that destroy. @param what what they would do
void RequireYes(const QCommandLineParser& options, const QString& what);

} // namespace cli
