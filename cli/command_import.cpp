#include "app/history/again.h"
#include "app/history/rejects.h"
#include "app/importFlow.h"
#include "app/mergeRecord.h"
#include "app/resultText.h"
#include "app/RunLog.h"
#include "cli/answersAgain.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"
#include "cli/keptRuns.h"
#include "cli/resultReport.h"
#include "cli/TerminalOperator.h"
#include "core/italianText.h"

#include <QDir>
#include <QJsonArray>

namespace cli {

namespace {

/// The run that is imported again in part, of --rejects-of or --resume; 0 without them.
qint64 EarlierRun(const QCommandLineParser& options) {
    for (const char* option : {"resume", "rejects-of"}) {
        if (options.isSet(option)) {
            return RunFrom(options, option);
        }
    }
    return 0;
}

/// The files of --mended. Rows of several tables stand in a file each, beside the name that history --rejects was
/// given: "scarti-4.csv" stands for "scarti-4-CLIENTI.csv" and the others where it is not there itself.
QStringList MendedFiles(const QStringList& named) {
    QStringList files;
    for (const QString& name : named) {
        const QFileInfo file(name);
        QStringList those{name};
        if (!file.exists()) {
            those.clear();
            const QString begins = file.completeBaseName() + u'-';
            for (const QFileInfo& other : file.dir().entryInfoList(QDir::Files, QDir::Name)) {
                if (other.fileName().startsWith(begins) && other.suffix() == file.suffix()) {
                    those.append(other.filePath());
                }
            }
        }
        if (those.isEmpty()) {
            throw UsageError(QStringLiteral("--mended: il file '%1' non c'è").arg(name));
        }
        files += those;
    }
    return files;
}

/// What of an earlier run is imported again, press by press.
std::vector<ImportRequest> EarlierRequests(Context& context, qint64 number) {
    const history::History history(context.session);
    if (context.options.isSet("resume")) {
        return {history::RestRequest(context.session, history, number)};
    }
    return history::RejectRequests(context.session, history, number, MendedFiles(context.options.values("mended")));
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
        RequireImports(*request.choice.origin, request.button, CalledBy(request).size());
    }
    TakeCompanyOption(context, request.choice);
}

/// Raises `UsageError` for a company that was merged into another, unless that is agreed to.
void RequireNotMerged(Context& context, const ImportRequest& request) {
    const QString merged = merge::MergedText(context.session, request.choice.companyCode);
    if (!merged.isEmpty() && !context.options.isSet("dry-run")) {
        RequireYes(context.options, merged);
    }
}

/// Raises `UsageError` for an option that a procedure of the press would not heed.
void RefuseUnheeded(const Context& context, const ImportRequest& request) {
    const auto procedures = CalledBy(request);
    const auto all =
        std::find_if(procedures.begin(), procedures.end(), [](const auto* each) { return !each->takesCode; });
    if (context.options.isSet("code") && all != procedures.end()) {
        throw UsageError(QStringLiteral("--code non vale con %1: prende tutte le righe").arg((*all)->name));
    }
    const bool empties =
        std::any_of(procedures.begin(), procedures.end(), [](const auto* each) { return each->asksReset; });
    if (context.options.isSet("reset") && !procedures.empty() && !empties) {
        throw UsageError(
            QStringLiteral("--reset non vale con %1: prima di farlo non svuota nulla").arg(procedures.front()->name));
    }
}

std::vector<AskingPress> PressesOf(const std::vector<ImportRequest>& requests) {
    std::vector<AskingPress> presses;
    presses.reserve(requests.size());
    for (const ImportRequest& request : requests) {
        presses.push_back({*request.choice.origin, CalledBy(request)});
    }
    return presses;
}

/// The presses that the command line wants, one after the other.
std::vector<ImportRequest> RequestsFrom(Context& context) {
    std::vector<ImportRequest> requests(1);
    if (const qint64 run = EarlierRun(context.options); run != 0) {
        requests = EarlierRequests(context, run);
    } else {
        TakeChoice(context, requests.front());
        requests.front().singleCode = context.options.value("code");
    }
    for (ImportRequest& request : requests) {
        RefuseUnheeded(context, request);
        RequireNotMerged(context, request);
        request.choice.errors = ErrorsFrom(context.options);
        request.confirmed = true;
        request.reset = context.options.isSet("reset");
        request.dryRun = context.options.isSet("dry-run");
    }
    RequireAnswers(context, PressesOf(requests));
    return requests;
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

/// The end of its work is the operator's, who was asked what to do about an error and gave up there.
void TellInterrupted(Session& session, RunResult& total) {
    total.outcome = RunResult::Outcome::Cancelled;
    for (RunResult& result : session.Results) {
        const bool hasFailed = result.outcome == RunResult::Outcome::Failed;
        result.outcome = hasFailed ? RunResult::Outcome::Cancelled : result.outcome;
    }
}

/// What there is to say of a code that no row of the source has; empty when it was met.
QString UnknownCode(const ImportRequest& request, const RunResult& total) {
    const bool isMet = request.singleCode.isEmpty() || total.sourceRows > 0;
    return isMet || total.outcome != RunResult::Outcome::Done
               ? QString()
               : QStringLiteral("Nessuna riga letta dell'origine ha il codice '%1': non è stato importato nulla.")
                     .arg(request.singleCode);
}

QStringList Lines(const Context& context, const ImportRequest& request) {
    const Session& session = context.session;
    QStringList lines = request.only != nullptr ? request.only->Remarks() : QStringList();
    for (const RunResult& result : session.Results) {
        lines += ResultLines(result);
    }
    if (request.dryRun) {
        lines.append("Era una prova: il database è rimasto com'era.");
    }
    if (!session.Results.isEmpty()) {
        lines.append("Log: " + LogOfLast(session));
    }
    return lines;
}

/// How the presses ended together.
RunResult TotalOf(Context& context, FlowOutcome flow) {
    RunResult total = Total(context.session.Results);
    total.outcome = OutcomeOf(flow);
    if (total.outcome == RunResult::Outcome::Failed && context.person.GaveUp()) {
        TellInterrupted(context.session, total);
    }
    return total;
}

/// How the command ended, as text and as JSON.
Report ReportOf(const Context& context, const std::vector<ImportRequest>& requests, const RunResult& total,
                const QList<qint64>& runs) {
    const ImportRequest& request = requests.front();
    Report report{ExitCodeOf(EndingOf(total)), {}, ResultJson(total)};
    QStringList lines = Lines(context, request);
    if (const QString lack = UnknownCode(request, total); !lack.isEmpty()) {
        lines.append(lack);
        report.exitCode = ExitIncomplete;
        report.json["outcome"] = EndingName(Ending::Incomplete);
        report.json["errors"] = QJsonArray::fromStringList(total.errors + QStringList(lack));
    }
    const bool isDone = !request.dryRun;
    const qint64 earlier = context.options.value("rejects-of").toLongLong();
    const QStringList steps = RunLines(context, runs,
                                       {.untranslated = isDone && total.untranslatedCount > 0,
                                        .resumes = isDone && earlier == 0,
                                        .rejectsOf = earlier,
                                        .files = context.person.FilesChosen(),
                                        .answers = AnswersGiven(context, PressesOf(requests))});
    report.text = (lines + (isDone ? steps : steps.mid(0, 1))).join(u'\n');
    if (total.errors.isEmpty() && report.exitCode == ExitFailed) {
        report.json.remove("errors"); // what went wrong has been told outside the procedures
    }
    report.json["run"] = RunNumberJson(runs);
    report.json["origin"] = request.choice.origin->name;
    report.json["company"] = request.choice.companyCode;
    report.json["data"] = request.procedure.isEmpty() ? contract::ButtonName(request.button) : request.procedure;
    report.json["dryRun"] = request.dryRun;
    report.json["log"] = LogOfLast(context.session);
    report.json["procedures"] = ProceduresJson(context.session.Results);
    return report;
}

Report Import(Context& context) {
    TakeMaxRejects(context);
    const std::vector<ImportRequest> requests = RequestsFrom(context);
    const ImportRequest& request = requests.front();
    const KeptRuns kept(context.session);
    auto flow = FlowOutcome::Done;
    for (size_t press = 0; press < requests.size() && flow != FlowOutcome::Cancelled; ++press) {
        const FlowOutcome one = RunImport(context.session, requests[press]); // each has a source of its own
        flow = one == FlowOutcome::Done ? flow : one;
    }
    const RunResult total = TotalOf(context, flow);
    return ReportOf(context, requests, total,
                    kept.Of(request.choice.companyCode, static_cast<qsizetype>(requests.size())));
}

/// What is imported decides what else may be told.
std::vector<Use> Uses() {
    const QStringList how{"dry-run", "answer", "input", "input-file", "file", "errors", "max-rejects", "yes"};
    const QStringList what{"company", "origin", "data"};
    const QString ofTheRun =
        QStringLiteral("dati, origine e azienda sono quelli dell'esecuzione, e non si svuota nulla");
    return {{"--resume", how, ofTheRun},
            {"--rejects-of", how + QStringList("mended"), ofTheRun},
            {"--code", how + what, QStringLiteral("per una riga sola non si svuotano le altre")},
            {"", how + what + QStringList("reset")}};
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
              "file si importano, con i valori corretti, e non di nuovo quelle già importate così.",
              "FILE"},
             {"resume", "Riprende l'esecuzione con questo numero da dove si è interrotta.", "NUMERO"},
             {"reset", "Svuota le tabelle di destinazione prima di importare."},
             {"dry-run", "Prova: alla fine il database torna com'era."},
             {"answer", "Risposta a una domanda: yes o no.", "RISPOSTA"},
             InputOption(),
             InputFileOption(),
             {"file", "File da scegliere dove la procedura ne chiede uno.", "PERCORSO"},
             ErrorsOption(),
             MaxRejectsOption(),
             {"yes", "Conferma una procedura che non fa altro che eliminare dati."}},
            Need::Database,
            Import,
            Uses(),
            {"mended"}};
}

} // namespace cli
