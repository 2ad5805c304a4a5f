#include "cli/cli.h"

#include "app/process.h"
#include "app/startUp.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"
#include "cli/help.h"
#include "cli/optionRules.h"
#include "cli/StatementTrace.h"
#include "cli/terminal.h"
#include "cli/TerminalOperator.h"
#include "core/nearNames.h"
#include "sql/visibleText.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

namespace cli {

namespace {

/// Writes bytes as they are; false when the stream takes them no longer.
bool WriteTo(FILE* stream, const QByteArray& bytes) {
    return std::fputs(bytes.constData(), stream) >= 0 && std::fflush(stream) == 0;
}

/// Nothing that a text brings along from the source moves the cursor.
bool PrintTo(FILE* stream, const QString& text) { return WriteTo(stream, VisibleText(text).toLocal8Bit()); }

/// Where the operator talks: the messages go to the standard output, unless the result in JSON has it for itself.
TerminalStreams Streams(bool json) {
    FILE* const messages = json ? stderr : stdout;
    TerminalStreams streams;
    streams.print = [messages](const QString& line) { PrintTo(messages, line + u'\n'); };
    streams.complain = [](const QString& line) { PrintTo(stderr, line + u'\n'); };
    if (terminal::IsErrorOutput()) {
        streams.draw = [](const QString& line) { WriteTo(stderr, "\r\x1b[K" + VisibleLine(line).toLocal8Bit()); };
    }
    if (terminal::IsInput() && (json ? terminal::IsErrorOutput() : terminal::IsOutput())) {
        streams.ask = [messages](const QString& prompt, bool echo) {
            PrintTo(messages, prompt);
            const auto typed = terminal::ReadLine(echo);
            if (!echo || !typed) {
                PrintTo(messages, "\n");
            }
            return typed;
        };
    }
    streams.interrupted = terminal::Interrupted;
    QElapsedTimer clock;
    clock.start();
    streams.seconds = [clock] { return static_cast<double>(clock.elapsed()) / 1000; };
    return streams;
}

/// The command of a command line, taken out of it: the first argument that is no option and no option's value.
QString TakeCommand(QStringList& arguments) {
    for (qsizetype index = 1; index < arguments.size(); ++index) {
        const QString& argument = arguments[index];
        if (argument == u"--config" || argument == u"--trace") { // those that may stand before the command
            ++index;
        } else if (!argument.startsWith(u'-')) {
            return arguments.takeAt(index);
        }
    }
    return {};
}

const Command& CommandOf(const QString& name) {
    if (const Command* command = FindCommand(name)) {
        return *command;
    }
    if (name.isEmpty()) {
        throw UsageError(QStringLiteral("Manca il comando (--help li elenca)"));
    }
    QStringList names;
    for (const Command& command : Commands()) {
        names.append(command.name);
    }
    throw UsageError(
        QStringLiteral("Il comando '%1' non esiste%2 (--help li elenca)").arg(name, DidYouMean(name, names)));
}

/// The names of options without their short forms.
QStringList LongNames(const QList<QCommandLineOption>& options) {
    QStringList names;
    for (const QCommandLineOption& option : options) {
        names.append(option.names().constLast());
    }
    return names;
}

/// "L'opzione 'orign' non esiste: forse 'origin'? (--help elenca quelle del comando)"
QString UnknownOptions(const QStringList& unknown, const QStringList& known) {
    QStringList near;
    for (const QString& name : unknown) {
        near += NearNames(name, known).mid(0, 1);
    }
    const QString maybe = near.isEmpty() ? QString() : QStringLiteral(": forse '%1'?").arg(near.join("', '"));
    return QStringLiteral("%1 '%2' %3%4 (--help elenca quelle del comando)")
        .arg(unknown.size() > 1 ? QStringLiteral("Le opzioni") : QStringLiteral("L'opzione"), unknown.join("', '"),
             unknown.size() > 1 ? QStringLiteral("non esistono") : QStringLiteral("non esiste"), maybe);
}

/// Raises `UsageError` unless the words behind the name of a command are what it wants.
void CheckWords(const QStringList& words, const Command& command) {
    const QStringList actions = command.Actions();
    const QStringList unexpected = words.mid(actions.isEmpty() ? 0 : 1);
    if (!unexpected.isEmpty()) {
        throw UsageError(QStringLiteral("Argomento inatteso: '%1'").arg(unexpected.join("', '")));
    }
    if (!actions.isEmpty() && !actions.contains(words.value(0))) {
        throw UsageError(
            words.isEmpty()
                ? QStringLiteral("Dopo '%1' manca una parola tra %2").arg(command.name, actions.join(", "))
                : QStringLiteral("'%1 %2' non esiste%3 (parole ammesse: %4)")
                      .arg(command.name, words.front(), DidYouMean(words.front(), actions), actions.join(", ")));
    }
}

void Parse(QCommandLineParser& parser, const QStringList& arguments, const QStringList& known) {
    if (!parser.parse(arguments)) {
        const QStringList unknown = parser.unknownOptionNames();
        if (!unknown.isEmpty()) {
            throw UsageError(UnknownOptions(unknown, known));
        }
        static const QRegularExpression quoted("'-*([^']+)'");
        throw UsageError(
            QStringLiteral("Manca il valore dell'opzione --%1").arg(quoted.match(parser.errorText()).captured(1)));
    }
}

/// Every value of an option; none when the command does not know it.
QStringList ValuesOf(const QCommandLineParser& options, const QString& name) {
    return options.optionNames().contains(name) ? options.values(name) : QStringList();
}

std::deque<QString> ToQueue(const QStringList& values) { return {values.begin(), values.end()}; }

GivenAnswers AnswersFrom(const QCommandLineParser& options) {
    GivenAnswers answers;
    static const QStringList yesNo{"yes", "no", "si", "sì"};
    for (const QString& value : ValuesOf(options, "answer")) {
        answers.questions.push_back(OneOf("answer", value, yesNo) != 1);
    }
    answers.inputs = ToQueue(ValuesOf(options, "input") + InputFileLines(ValuesOf(options, "input-file")));
    answers.files = ToQueue(ValuesOf(options, "file"));
    return answers;
}

/// What went wrong, as it was told.
QJsonArray Told(const ovErrors& errors, const TerminalOperator& person) {
    QJsonArray told = QJsonArray::fromStringList(person.Warnings());
    for (const ErrorEntry& entry : errors.Entries()) {
        told.append(entry.message);
    }
    if (const qint64 more = errors.Count() - errors.Entries().size(); more > 0) {
        told.append(QStringLiteral("... e altri %1 errori").arg(more));
    }
    return told;
}

/// Opens what the command needs; false when that failed, and has been reported.
bool Open(Session& session, const Command& command, const QCommandLineParser& options) {
    const QString folder = options.value("config");
    if (options.isSet("config") && !QFileInfo(folder).isDir()) {
        throw UsageError(QStringLiteral("La cartella '%1' di --config non esiste").arg(folder));
    }
    const auto missing =
        command.need == Need::DatabaseToFill ? modMain::MissingDatabase::Create : modMain::MissingDatabase::Fail;
    return command.need == Need::Nothing ||
           modMain::ConnectQuadrix(session, modMain::SettingsFilePath(folder), missing);
}

Report RunCommand(const Command& command, const QCommandLineParser& options) {
    terminal::CatchInterrupt();
    TerminalOperator person(Streams(options.isSet("json")), AnswersFrom(options));
    Session session(person);
    session.Errors.Action = ErrorAction::Abort;
    StatementTrace trace;
    Context context{session, person, options, trace};
    if (options.isSet("trace")) {
        const QString settings = modMain::SettingsFilePath(options.value("config"));
        trace.Start(options.value("trace"), session, modMain::OwnFiles(session, settings));
    }
    Report report{ExitFailed, {}, {}};
    if (Open(session, command, options)) {
        report = command.run(context);
    }
    if (!report.json.contains("errors")) {
        report.json["errors"] = Told(session.Errors, person);
    }
    return report;
}

QString OutcomeOf(int exitCode) {
    static const QStringList outcomes{"done", "failed", "wrongUsage", "cancelled", "incomplete"};
    return outcomes.at(exitCode);
}

int Show(Report report, bool json) {
    if (!report.json.contains("outcome")) {
        report.json["outcome"] = OutcomeOf(report.exitCode);
    }
    bool isTold = true;
    if (json) {
        isTold = WriteTo(stdout, QJsonDocument(report.json).toJson());
    } else if (!report.text.isEmpty()) {
        isTold = PrintTo(stdout, report.text + u'\n');
    }
    if (!isTold) {
        PrintTo(stderr, "Il risultato non si è potuto scrivere per intero sull'uscita\n");
    }
    // What was done is done: the code goes on telling how that ended.
    return !isTold && report.isAll ? ExitFailed : report.exitCode;
}

int ShowError(const QString& message, ExitCode exitCode, bool json) {
    PrintTo(stderr, message + u'\n');
    return Show({exitCode, {}, {{"errors", QJsonArray{message}}}}, json);
}

int RunArguments(QStringList arguments) {
    QString name = TakeCommand(arguments);
    if (arguments.contains("--version")) {
        PrintTo(stdout, process::VersionText("quadrix-import-cli") + u'\n');
        return ExitDone;
    }
    if (name == u"help") {
        name = TakeCommand(arguments); // "help import" is "import --help"
        arguments.append("--help");
    }
    if (name.isEmpty() && (arguments.contains("--help") || arguments.contains("-h"))) {
        PrintTo(stdout, ProgramHelp() + u'\n');
        return ExitDone;
    }
    const Command& command = CommandOf(name);
    QCommandLineParser parser;
    parser.addOptions(GlobalOptions());
    parser.addOptions(command.options);
    Parse(parser, arguments, LongNames(GlobalOptions() + command.options));
    if (parser.isSet("help")) {
        PrintTo(stdout, CommandHelp(command) + u'\n');
        return ExitDone;
    }
    CheckWords(parser.positionalArguments(), command);
    CheckOptions(command, parser);
    return Show(RunCommand(command, parser), parser.isSet("json"));
}

} // namespace

int Run(const QStringList& arguments) {
    const bool json = arguments.contains("--json");
    try {
        return RunArguments(arguments);
    } catch (const UsageError& error) {
        return ShowError(error.Message(), ExitWrongUsage, json);
    } catch (const std::exception& error) {
        return ShowError(MessageOf(error), ExitFailed, json);
    }
}

} // namespace cli
