#include "app/importFlow.h"
#include "app/resultText.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"
#include "cli/resultReport.h"

#include <QJsonArray>

namespace cli {

namespace {

ImportRequest RequestFrom(Context& context) {
    ImportRequest request;
    request.choice.origin = &OriginFrom(context.options);
    request.choice.errors = ErrorsFrom(context.options);
    if (const auto* named = ProcedureOf(*request.choice.origin, context.options.value("data"))) {
        request.procedure = named->name;
    } else {
        request.button = ButtonFrom(context.options);
    }
    TakeCompanyOption(context, request.choice);
    request.singleCode = context.options.value("code");
    request.confirmed = true;
    request.reset = context.options.isSet("reset");
    request.dryRun = context.options.isSet("dry-run");
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

QString Text(const Session& session, bool dryRun) {
    QStringList lines;
    for (const RunResult& result : session.Results) {
        lines += ResultLines(result);
    }
    if (dryRun) {
        lines.append("Era una prova: il database è rimasto com'era.");
    }
    if (!session.Results.isEmpty()) {
        lines.append("Log: " + session.LogFile);
    }
    return lines.join(u'\n');
}

Report Import(Context& context) {
    const ImportRequest request = RequestFrom(context);
    const FlowOutcome flow = RunImport(context.session, request);
    RunResult total = Total(context.session.Results);
    total.outcome = OutcomeOf(flow);
    Report report{ExitCodeOf(total.outcome), Text(context.session, request.dryRun), ResultJson(total)};
    if (total.errors.isEmpty() && report.exitCode == ExitFailed) {
        report.json.remove("errors"); // what went wrong has been told outside the procedures
    }
    report.json["origin"] = request.choice.origin->name;
    report.json["company"] = request.choice.companyCode;
    report.json["data"] = request.procedure.isEmpty() ? contract::ButtonName(request.button) : request.procedure;
    report.json["dryRun"] = request.dryRun;
    report.json["log"] = context.session.LogFile;
    report.json["procedures"] = ProceduresJson(context.session.Results);
    return report;
}

} // namespace

Command ImportCommand() {
    return {"import",
            "importa un tipo di dati di un'origine in un'azienda",
            "--data prende anche il nome di una procedura, come la elenca il comando origins: quella sola si esegue.\n"
            "Le opzioni --answer, --input e --file si ripetono: rispondono nell'ordine alle domande della procedura.",
            {CompanyOption(),
             OriginOption(),
             DataOption(),
             {"code", "Importa solo la riga dell'origine con questo codice.", "CODICE"},
             {"reset", "Svuota le tabelle di destinazione prima di importare."},
             {"dry-run", "Prova: alla fine il database torna com'era."},
             {"answer", "Risposta a una domanda: yes o no.", "RISPOSTA"},
             {"input", "Risposta a una richiesta di testo.", "TESTO"},
             {"file", "File da scegliere dove la procedura ne chiede uno.", "PERCORSO"},
             ErrorsOption()},
            Need::Database,
            Import};
}

} // namespace cli
