#include "cli/choiceOptions.h"

#include "adapters/registry.h"
#include "app/startUp.h"
#include "cli/TerminalOperator.h"
#include "core/nearNames.h"

#include <QFile>

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

void TakeCompanyOption(Context& context, Choice& choice) {
    const QString code = Required(context.options, "company");
    QStringList names;
    for (const modMain::Company& company : modMain::GetCompanies(context.session)) {
        if (company.code.compare(code, Qt::CaseInsensitive) == 0) {
            choice.company = company.name;
            choice.companyCode = company.code;
            return;
        }
        names.append(company.code);
    }
    const QString known = names.isEmpty() ? QString("nessuna") : names.join(", ");
    throw UsageError(
        QStringLiteral("L'azienda '%1' non esiste%2 (aziende presenti: %3)").arg(code, Suggestion(code, names), known));
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
                         .arg(name, Suggestion(name, names)));
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
            .arg(data, Suggestion(data, DataKinds() + procedures), DataKinds().join(", "), origin.name));
}

ErrorAction ErrorsFrom(const QCommandLineParser& options) {
    return ErrorModeAction(OneOf("errors", options.value("errors"), ErrorNames));
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

/// Raises `UsageError` when the command line answers more than the questions of a kind.
void RefuseSurplus(const std::vector<contract::AnswerNeed>& needed, contract::AnswerKind kind, size_t given,
                   const QString& option) {
    const QStringList questions = Unanswered(needed, kind, 0);
    if (given > static_cast<size_t>(questions.size())) {
        throw UsageError(
            QStringLiteral("Risposte --%1 in più: %2, mentre si chiede %3")
                .arg(option, QString::number(given),
                     questions.isEmpty() ? QStringLiteral("niente") : QString("solo " + QuotedList(questions))));
    }
}

/// Raises `UsageError` naming the questions, and the files, that nobody is there to answer.
void RequireAnswered(const Context& context, const std::vector<contract::AnswerNeed>& needed, size_t files) {
    const GivenAnswers& given = context.person.AnswersLeft();
    const QStringList yesNo = Unanswered(needed, contract::AnswerKind::YesNo, given.questions.size());
    const QStringList texts = Unanswered(needed, contract::AnswerKind::Text, given.inputs.size());
    QStringList missing;
    if (!yesNo.isEmpty()) {
        missing.append(QStringLiteral("%1 (--answer yes oppure --answer no, una per domanda)").arg(QuotedList(yesNo)));
    }
    if (!texts.isEmpty()) {
        missing.append(
            QStringLiteral("%1 (--input TESTO, uno per domanda, o --input-file FILE)").arg(QuotedList(texts)));
    }
    if (given.files.size() < files) {
        missing.append(QStringLiteral("il file dell'origine (--file PERCORSO)"));
    }
    if (!missing.isEmpty() && !context.person.HasPerson()) {
        throw UsageError(QStringLiteral("Manca la risposta a: %1. Non è stato eliminato né scritto nulla.")
                             .arg(missing.join(QStringLiteral("; "))));
    }
}

} // namespace

bool WantsFile(const contract::Origin* source) {
    return source != nullptr && source->source.prepare.place == contract::Place::Chosen;
}

void RequireAnswers(const Context& context, const std::vector<AskingPress>& presses) {
    std::vector<contract::AnswerNeed> needed;
    bool wantsFile = false;
    for (const AskingPress& press : presses) {
        const auto own = contract::AnswersNeeded(press.origin, press.procedures);
        needed.insert(needed.end(), own.begin(), own.end());
        wantsFile = wantsFile || WantsFile(FirstSourceOf(press.origin, press.procedures));
    }
    const GivenAnswers& given = context.person.AnswersLeft();
    RefuseSurplus(needed, contract::AnswerKind::YesNo, given.questions.size(), "answer");
    RefuseSurplus(needed, contract::AnswerKind::Text, given.inputs.size(), "input");
    RequireAnswered(context, needed, wantsFile ? 1 : 0);
}

void RequireOpeningAnswers(const Context& context, const std::vector<const contract::Origin*>& sources) {
    std::vector<contract::AnswerNeed> needed;
    size_t files = 0;
    for (const contract::Origin* source : sources) {
        needed.insert(needed.end(), source->source.asks.begin(), source->source.asks.end());
        files += WantsFile(source) ? 1 : 0;
    }
    RequireAnswered(context, needed, files);
}

} // namespace cli
