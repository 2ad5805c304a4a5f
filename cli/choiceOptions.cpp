#include "cli/choiceOptions.h"

#include "adapters/registry.h"
#include "adapters/sourceSettings.h"
#include "cli/TerminalOperator.h"
#include "core/nearNames.h"

#include <QFileInfo>

namespace cli {

namespace {

const QStringList& DataKinds() {
    static const QStringList kinds = [] {
        QStringList names;
        for (int button = 0; button < contract::ButtonCount; ++button) {
            names.append(contract::ButtonName(static_cast<contract::Button>(button)));
        }
        return names;
    }();
    return kinds;
}

const QStringList ErrorNames{"ask", "ignore", "retry", "abort"}; ///< in the order of `ErrorModes`

} // namespace

QCommandLineOption CompanyOption() { return {"company", "Codice dell'azienda di Quadrix.", "CODICE"}; }
QCommandLineOption OriginOption() { return {"origin", "Origine dei dati, come la elenca il comando origins.", "NOME"}; }
QCommandLineOption DataOption() {
    return {"data", "Dati da importare: " + DataKinds().join(", ") + ", o il nome di una procedura.", "DATI"};
}
QCommandLineOption ErrorsOption() {
    return {"errors",
            "Come trattare gli errori: ask (li gestisce l'utente), ignore (ignora e continua), retry (riprova 3 "
            "volte), abort (interrompi l'azione).",
            "MODO", "ask"};
}
QCommandLineOption MaxRejectsOption() {
    return {"max-rejects",
            "Si ferma quando una procedura ha abbandonato tante righe: un numero, o una parte di quelle fatte come 5% "
            "(dopo le prime 200).",
            "LIMITE"};
}
QCommandLineOption YesOption() { return {"yes", "Conferma il comando."}; }

QCommandLineOption InputOption() {
    return {"input", "Risposta a una richiesta di testo; la vede chiunque elenchi i processi.", "TESTO"};
}
QCommandLineOption InputFileOption() {
    return {"input-file",
            "File con risposte a richieste di testo, una per riga, dopo quelle di --input; - legge l'ingresso "
            "standard. Per le password.",
            "FILE"};
}

QStringList InputFileLines(const QStringList& paths) {
    QStringList lines;
    for (const QString& path : paths) {
        QFile file(path);
        const bool isOpen = path == u"-" ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
        if (!isOpen) {
            throw UsageError(QStringLiteral("File '%1' di --input-file: %2").arg(path, file.errorString()));
        }
        QString text = QString::fromLocal8Bit(file.readAll()).replace(QLatin1String("\r\n"), QLatin1String("\n"));
        if (text.endsWith(u'\n')) {
            text.chop(1);
        }
        lines += text.split(u'\n');
    }
    return lines;
}

modMain::Company CompanyOf(Context& context, const QString& option) {
    const QString code = Required(context.options, option);
    QStringList names;
    for (const modMain::Company& company : modMain::GetCompanies(context.session)) {
        if (company.code.compare(code, Qt::CaseInsensitive) == 0) {
            return company;
        }
        names.append(company.code);
    }
    const QString known = names.isEmpty() ? QString("nessuna") : names.join(", ");
    throw UsageError(
        QStringLiteral("L'azienda '%1' non esiste%2 (aziende presenti: %3)").arg(code, DidYouMean(code, names), known));
}

void TakeCompanyOption(Context& context, Choice& choice) {
    const modMain::Company company = CompanyOf(context, "company");
    choice.company = company.name;
    choice.companyCode = company.code;
}

const contract::Origin& OriginFrom(const QCommandLineParser& options) {
    const QString name = Required(options, "origin");
    if (const contract::Origin* origin = registry::Find(name)) {
        return *origin;
    }
    QStringList names;
    for (const contract::Origin* origin : registry::Origins()) {
        names.append(origin->name);
    }
    throw UsageError(QStringLiteral("L'origine '%1' non esiste%2 (il comando origins le elenca)")
                         .arg(name, DidYouMean(name, names)));
}

contract::Button ButtonFrom(const QCommandLineParser& options, const contract::Origin& origin) {
    return ButtonFrom(Required(options, "data"), origin);
}

contract::Button ButtonFrom(const QString& data, const contract::Origin& origin) {
    if (const auto button = contract::ButtonFromName(data)) {
        return *button;
    }
    QStringList procedures;
    for (const contract::Procedure& procedure : origin.procedures) {
        procedures.append(procedure.name);
    }
    throw UsageError(
        QStringLiteral("Opzione --data: valore '%1' non previsto%2 (valori ammessi: %3, o una procedura di %4)")
            .arg(data, DidYouMean(data, DataKinds() + procedures), DataKinds().join(", "), origin.name));
}

void RequireImports(const contract::Origin& origin, contract::Button button, size_t imports) {
    if (imports == 0) {
        throw UsageError(
            QStringLiteral("%1 non ha importazioni per --data %2").arg(origin.name, contract::ButtonName(button)));
    }
}

ErrorAction ErrorsFrom(const QCommandLineParser& options) {
    return ErrorModeAction(OneOf("errors", options.value("errors"), ErrorNames));
}

void TakeMaxRejects(Context& context) {
    const QString told = context.options.value("max-rejects");
    if (!context.options.isSet("max-rejects")) {
        return;
    }
    const auto limit = RejectLimit::Of(told);
    if (!limit) {
        throw UsageError(
            QStringLiteral("Opzione --max-rejects: '%1' non è un numero di righe né una percentuale come 5%")
                .arg(told));
    }
    context.session.MostGivenUp = *limit;
}

namespace {

QString QuotedList(const QStringList& texts) { return u'"' + texts.join(QStringLiteral("\", \"")) + u'"'; }

/// The questions of a kind that the command line does not answer.
QStringList Unanswered(const std::vector<contract::AnswerNeed>& needed, contract::AnswerKind kind, size_t given) {
    QStringList questions;
    for (const contract::AnswerNeed& need : needed) {
        if (need.kind == kind) {
            questions.append(need.question);
        }
    }
    return questions.mid(static_cast<qsizetype>(given));
}

/// What presses, or the opening of sources, ask for.
struct Asked {
    std::vector<contract::AnswerNeed> questions;
    qsizetype files = 0;      ///< that are asked for
    qsizetype knownFiles = 0; ///< the same, but for those that the settings may name
};

/// Adds the file that opening a source asks for, unless the settings name one that is there.
void AddFile(Asked& asked, Session& session, const contract::Origin& source) {
    const contract::Place place = source.source.prepare.place;
    const sourceSettings::OfOrigin settings(session, source.name);
    const QString path = place == contract::Place::File ? sourceSettings::DatabasePath(session) : QString();
    const bool isNamed = sourceSettings::NamesSqliteFile(path) || QFileInfo(path).isFile();
    asked.knownFiles += place == contract::Place::Chosen ? 1 : 0;
    asked.files += place == contract::Place::Chosen || (place == contract::Place::File && !isNamed) ? 1 : 0;
}

/// Adds what a press asks: each source is opened in place of the one before.
void AddPress(Asked& asked, Session& session, const AskingPress& press) {
    const auto own = contract::AnswersNeeded(press.origin, press.procedures);
    asked.questions.insert(asked.questions.end(), own.begin(), own.end());
    const contract::Origin* open = nullptr;
    for (const contract::Procedure* procedure : press.procedures) {
        const contract::Origin* source = contract::SourceOf(press.origin, *procedure);
        if (source != nullptr && source != open) {
            AddFile(asked, session, *source);
            open = source;
        }
        asked.files += procedure->choosesFile ? 1 : 0;
        asked.knownFiles += procedure->choosesFile ? 1 : 0;
    }
}

/// Raises `UsageError` when the command line answers more than it is asked.
void RefuseSurplus(const QString& option, size_t given, const QStringList& questions, const QString& advice = {}) {
    if (given > static_cast<size_t>(questions.size())) {
        throw UsageError(QStringLiteral("Risposte --%1 in più: %2, mentre %3%4")
                             .arg(option, QString::number(given),
                                  questions.isEmpty() ? QStringLiteral("non si chiede niente")
                                                      : QString("si chiede solo " + QuotedList(questions)),
                                  advice));
    }
}

/// The same for the answers of every kind.
void RefuseSurplus(const Context& context, const Asked& asked) {
    const GivenAnswers& given = context.person.AnswersLeft();
    RefuseSurplus("answer", given.questions.size(), Unanswered(asked.questions, contract::AnswerKind::YesNo, 0));
    RefuseSurplus("input", given.inputs.size(), Unanswered(asked.questions, contract::AnswerKind::Text, 0));
    RefuseSurplus("file", given.files.size(), QStringList(asked.files, "il file da importare"),
                  asked.files == 0 ? QStringLiteral(": la sorgente è quella che le impostazioni nominano") : QString());
}

/// Raises `UsageError` naming the questions, and the files, that nobody is there to answer.
void RequireAnswered(const Context& context, const Asked& asked) {
    const GivenAnswers& given = context.person.AnswersLeft();
    const QStringList yesNo = Unanswered(asked.questions, contract::AnswerKind::YesNo, given.questions.size());
    const QStringList texts = Unanswered(asked.questions, contract::AnswerKind::Text, given.inputs.size());
    QStringList missing;
    if (!yesNo.isEmpty()) {
        missing.append(QStringLiteral("%1 (--answer yes oppure --answer no, una per domanda)").arg(QuotedList(yesNo)));
    }
    if (!texts.isEmpty()) {
        missing.append(
            QStringLiteral("%1 (--input TESTO, uno per domanda, o --input-file FILE)").arg(QuotedList(texts)));
    }
    if (static_cast<qsizetype>(given.files.size()) < asked.knownFiles) {
        missing.append(QStringLiteral("il file da importare (--file PERCORSO)"));
    }
    if (!missing.isEmpty() && !context.person.HasPerson()) {
        throw UsageError(QStringLiteral("Manca la risposta a: %1. Non è stato eliminato né scritto nulla.")
                             .arg(missing.join(QStringLiteral("; "))));
    }
}

} // namespace

void RequireAnswers(const Context& context, const std::vector<AskingPress>& presses) {
    Asked asked;
    for (const AskingPress& press : presses) {
        AddPress(asked, context.session, press);
    }
    RefuseSurplus(context, asked);
    RequireAnswered(context, asked);
}

void RequireAnswersTo(const Context& context, const std::vector<contract::AnswerNeed>& questions) {
    const Asked asked{.questions = questions};
    RefuseSurplus(context, asked);
    RequireAnswered(context, asked);
}

void RequireOpeningAnswers(const Context& context, const std::vector<const contract::Origin*>& sources) {
    Asked asked;
    for (const contract::Origin* source : sources) {
        asked.questions.insert(asked.questions.end(), source->source.asks.begin(), source->source.asks.end());
        AddFile(asked, context.session, *source);
    }
    RefuseSurplus(context, asked);
    RequireAnswered(context, asked);
}

} // namespace cli
