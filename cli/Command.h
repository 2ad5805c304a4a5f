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

/// One command of the program.
struct Command {
    QString name;
    QString summary; ///< one line for the list of commands
    QString details; ///< more for its own help; may be empty
    QList<QCommandLineOption> options;
    Need need = Need::Nothing;
    std::function<Report(Context&)> run;
    QStringList actions = {}; ///< words one of which follows the name; empty: none does
};

/// The word behind the name of a command that has actions.
QString ActionFrom(const QCommandLineParser& options);

/// Value of an option that must be there. Raises `UsageError` naming it.
QString Required(const QCommandLineParser& options, const QString& name);
/// Raises `UsageError` naming those of the options that are not there, all together.
void RequireAll(const QCommandLineParser& options, const QStringList& names);

/// One of the values of an option, by position in `values`. Raises `UsageError` listing them.
int OneOf(const QString& option, const QString& value, const QStringList& values);

/// Raises `UsageError` unless --yes was given: for commands that destroy. @param what what they would do
void RequireYes(const QCommandLineParser& options, const QString& what);

} // namespace cli
