#include "app/history/again.h"
#include "app/history/rejects.h"
#include "app/importFlow.h"
#include "app/resultText.h"
#include "app/RunLog.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"
#include "cli/resultReport.h"
#include "cli/TerminalOperator.h"

#include <QJsonArray>

namespace cli {

namespace {

QString QuotedList(const QStringList& texts) { return u'"' + texts.join(QStringLiteral("\", \"")) + u'"'; }

/// The questions of a kind that the command line does not answer; raises `UsageError` when it answers more.
QStringList Unanswered(const std::vector<contract::AnswerNeed>& needed, contract::AnswerKind kind, size_t given,
                       const QString& option) {
    QStringList questions;
    for (const contract::AnswerNeed& need : needed) {
        if (need.kind == kind) {
            questions.append(need.question);
        }
    }
    if (given > static_cast<size_t>(questions.size())) {
        throw UsageError(
            QStringLiteral("Risposte --%1 in più: %2, mentre si chiede %3")
                .arg(option, QString::number(given),
                     questions.isEmpty() ? QStringLiteral("niente") : QString("solo " + QuotedList(questions))));
    }
    return questions.mid(static_cast<qsizetype>(given));
}

/// Nothing may be deleted before it is known that every question will have its answer.
void RequireAnswers(const Context& context, const ImportRequest& request) {
    const auto needed = contract::AnswersNeeded(*request.choice.origin, CalledBy(request));
    const GivenAnswers& given = context.person.AnswersLeft();
    const QStringList yesNo = Unanswered(needed, contract::AnswerKind::YesNo, given.questions.size(), "answer");
    const QStringList texts = Unanswered(needed, contract::AnswerKind::Text, given.inputs.size(), "input");
    if (context.person.HasPerson() || (yesNo.isEmpty() && texts.isEmpty())) {
        return;
    }
    QStringList missing;
    if (!yesNo.isEmpty()) {
        missing.append(QStringLiteral("%1 (--answer yes oppure --answer no, una per domanda)").arg(QuotedList(yesNo)));
    }
    if (!texts.isEmpty()) {
        missing.append(
            QStringLiteral("%1 (--input TESTO, uno per domanda, o --input-file FILE)").arg(QuotedList(texts)));
    }
    throw UsageError(QStringLiteral("Manca la risposta a: %1. Non è stato eliminato né scritto nulla.")
                         .arg(missing.join(QStringLiteral("; "))));
}

/// The run that is imported again in part, of --rejects-of or --resume; 0 without them.
qint64 EarlierRun(const QCommandLineParser& options) {
    const bool resumes = options.isSet("resume");
    if (options.isSet("mended") && !options.isSet("rejects-of")) {
        throw UsageError(QStringLiteral("--mended vale con --rejects-of"));
    }
    if (!resumes && !options.isSet("rejects-of")) {
        return 0;
    }
    for (const char* option : {"code", "reset", "data", "origin", "company"}) {
        if (options.isSet(option)) {
            throw UsageError(QStringLiteral("--%1 non vale con --rejects-of e --resume: dati, origine e azienda sono "
                                            "quelli dell'esecuzione, e non si svuota nulla")
                                 .arg(QLatin1String(option)));
        }
    }
    const QString text = options.value(resumes ? "resume" : "rejects-of");
    const qint64 run = text.toLongLong();
    if (run <= 0 || (resumes && options.isSet("rejects-of"))) {
        throw UsageError(QStringLiteral("'%1' non è il numero di un'esecuzione").arg(text));
    }
    return run;
}

/// What of an earlier run is imported again.
void TakeEarlier(Context& context, qint64 number, ImportRequest& request) {
    const history::History history(history::FilePath(context.session.Config.ConfigFile()));
    const history::Run run = history.Load(number);
    history::Repeat(context.session, run, request);
    const QStringList mended = context.options.values("mended");
    request.only = context.options.isSet("resume") ? history::RestOf(run)
                   : mended.isEmpty()              ? history::RejectsOf(history, number)
                                                   : history::MendedRejects(history, number, mended);
    request.reset = false;
}

void TakeChoice(Context& context, ImportRequest& request) {
    RequireAll(context.options, {"company", "origin", "data"});
    request.choice.origin = &OriginFrom(context.options);
    if (const auto* named = ProcedureOf(*request.choice.origin, context.options.value("data"))) {
        request.procedure = named->name;
        if (!named->destroys.isEmpty() && !context.options.isSet("dry-run")) {
            RequireYes(context.options, named->destroys);
        }
    } else {
        request.button = ButtonFrom(context.options, *request.choice.origin);
    }
    TakeCompanyOption(context, request.choice);
}

ImportRequest RequestFrom(Context& context) {
    ImportRequest request;
    request.choice.errors = ErrorsFrom(context.options);
    if (const qint64 run = EarlierRun(context.options); run != 0) {
        TakeEarlier(context, run, request);
    } else {
        TakeChoice(context, request);
    }
    request.singleCode = context.options.value("code");
    request.confirmed = true;
    request.reset = request.reset.value_or(context.options.isSet("reset"));
    request.dryRun = context.options.isSet("dry-run");
    RequireAnswers(context, request);
    return request;
}

/// The outcome of a press that came to no result, or whose results do not tell.
RunResult::Outcome OutcomeOf(FlowOutcome flow) {
    switch (flow) {
    case FlowOutcome::Done:
        return RunResult::Outcome::Done;
    case FlowOutcome::Cancelled:
    case FlowOutcome::Declined:
        return RunResult::Outcome::Cancelled;
    default:
        return RunResult::Outcome::Failed;
    }
}

QJsonArray ProceduresJson(const QVector<RunResult>& results) {
    QJsonArray procedures;
    for (const RunResult& result : results) {
        QJsonObject json = ResultJson(result);
        json.remove("givenUpRows"); // they stand in the total
        json.remove("untranslated");
        json["module"] = result.module;
        json["procedure"] = result.procedure;
        procedures.append(json);
    }
    return procedures;
}

/// What the history tells; `otherwise` where it cannot be read: the log has told it, and the import stands.
template<class Result, class Ask>
Result OfHistory(const Session& session, Result otherwise, const Ask& ask) {
    try {
        return ask(history::History(history::FilePath(session.Config.ConfigFile())));
    } catch (const Error&) {
        return otherwise;
    }
}

/// The number of the last run of a company that is kept; 0 when none is.
qint64 LastRun(const Session& session, const QString& company) {
    return OfHistory(session, qint64{0}, [&](const history::History& history) { return history.LastRun(company); });
}

/// What there is to do about what an import has left open, by the commands that do it.
QStringList NextSteps(const Session& session, const RunResult& total, qint64 run) {
    QStringList steps;
    if (OfHistory(session, false, [run](const auto& history) { return history::RejectsIn(history.Load(run)) > 0; })) {
        steps.append(QStringLiteral("Righe abbandonate in un file, da correggere: history --run %1 --rejects FILE; poi "
                                    "import --rejects-of %1 --mended FILE")
                         .arg(run));
    }
    if (total.untranslatedCount > 0) {
        steps.append(QStringLiteral("Codici da tradurre: codes list --company %1; poi codes apply --company %1")
                         .arg(session.UserManager.Azienda()));
    }
    return steps;
}

QString Text(const Session& session, bool dryRun, const RunResult& total, qint64 run) {
    QStringList lines;
    for (const RunResult& result : session.Results) {
        lines += ResultLines(result);
    }
    if (dryRun) {
        lines.append("Era una prova: il database è rimasto com'era.");
    }
    if (!session.Results.isEmpty()) {
        lines.append("Log: " + LogOfLast(session));
    }
    if (run > 0) {
        lines.append(QStringLiteral("Esecuzione: %1").arg(run));
        lines += dryRun ? QStringList() : NextSteps(session, total, run);
    }
    return lines.join(u'\n');
}

Report Import(Context& context) {
    const ImportRequest request = RequestFrom(context);
    const qint64 before = LastRun(context.session, request.choice.companyCode);
    const FlowOutcome flow = RunImport(context.session, request);
    RunResult total = Total(context.session.Results);
    total.outcome = OutcomeOf(flow);
    if (total.outcome == RunResult::Outcome::Failed && context.person.GaveUp()) {
        total.outcome = RunResult::Outcome::Cancelled; // at the question what to do about an error
    }
    const qint64 last = LastRun(context.session, request.choice.companyCode);
    const qint64 run = last > before ? last : 0; // trouble with the history leaves an earlier one the last
    Report report{ExitCodeOf(EndingOf(total)), Text(context.session, request.dryRun, total, run), ResultJson(total)};
    report.json["run"] = run > 0 ? QJsonValue(run) : QJsonValue();
    if (total.errors.isEmpty() && report.exitCode == ExitFailed) {
        report.json.remove("errors"); // what went wrong has been told outside the procedures
    }
    report.json["origin"] = request.choice.origin->name;
    report.json["company"] = request.choice.companyCode;
    report.json["data"] = request.procedure.isEmpty() ? contract::ButtonName(request.button) : request.procedure;
    report.json["dryRun"] = request.dryRun;
    report.json["log"] = LogOfLast(context.session);
    report.json["procedures"] = ProceduresJson(context.session.Results);
    return report;
}

} // namespace

Command ImportCommand() {
    return {"import",
            "importa un tipo di dati di un'origine in un'azienda",
            "--data prende anche il nome di una procedura, come la elenca il comando origins: quella sola si esegue.\n"
            "Le domande di ogni procedura, nel loro ordine, sono in origins --json alla voce \"questions\".\n"
            "Le opzioni --answer, --input e --file si ripetono: rispondono nell'ordine alle domande della procedura.\n"
            "Una password si dà con --input-file, o nella variabile d'ambiente che sta per la sua chiave delle "
            "impostazioni, come QUADRIX_DATABASE_PASSWORD e QUADRIX_IMPORT_PASSWORD.",
            {CompanyOption(),
             OriginOption(),
             DataOption(),
             {"code", "Importa solo la riga dell'origine con questo codice.", "CODICE"},
             {"rejects-of", "Importa solo le righe abbandonate dall'esecuzione con questo numero (comando history).",
              "NUMERO"},
             {"mended",
              "Con --rejects-of: file scritto da history --rejects e corretto; si ripete. Solo le righe rimaste nei "
              "file si importano, con i valori corretti.",
              "FILE"},
             {"resume", "Riprende l'esecuzione con questo numero da dove si è interrotta.", "NUMERO"},
             {"reset", "Svuota le tabelle di destinazione prima di importare."},
             {"dry-run", "Prova: alla fine il database torna com'era."},
             {"answer", "Risposta a una domanda: yes o no.", "RISPOSTA"},
             InputOption(),
             InputFileOption(),
             {"file", "File da scegliere dove la procedura ne chiede uno.", "PERCORSO"},
             ErrorsOption(),
             {"yes", "Conferma una procedura che non fa altro che eliminare dati."}},
            Need::Database,
            Import};
}

} // namespace cli
