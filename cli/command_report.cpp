#include "app/report/html.h"
#include "app/report/json.h"
#include "app/report/makeProof.h"
#include "app/report/pageFile.h"
#include "app/report/verdict.h"
#include "app/startUp.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"
#include "cli/outputFile.h"
#include "cli/terminal.h"
#include "cli/TerminalOperator.h"

#include <QDir>

namespace cli {

namespace {

/// The kinds of the values of --data; every one of the origin without.
std::vector<proof::Wanted> WantedFrom(const QCommandLineParser& options, const contract::Origin& origin) {
    std::vector<proof::Wanted> wanted;
    for (const QString& data : options.values("data")) {
        const contract::Procedure* named = ProcedureOf(origin, data);
        wanted.push_back(named == nullptr ? proof::Wanted{ButtonFrom(data, origin)}
                                          : proof::Wanted{.procedure = named->name});
    }
    for (const proof::Wanted& each : wanted) {
        RequireImports(origin, each.button, proof::ProceduresOf(origin, each).size());
    }
    wanted = wanted.empty() ? proof::AllOf(origin) : wanted;
    if (wanted.empty()) {
        throw ImportError(QStringLiteral("%1: nessuna importazione da confrontare").arg(origin.name));
    }
    return wanted;
}

ExitCode CodeOf(proof::Light light) {
    return light == proof::Light::Green ? ExitDone : light == proof::Light::Yellow ? ExitIncomplete : ExitFailed;
}

Report MakeReport(Context& context) {
    RequireAll(context.options, {"company", "origin", "output"});
    Choice choice;
    choice.origin = &OriginFrom(context.options);
    const auto wanted = WantedFrom(context.options, *choice.origin);
    TakeCompanyOption(context, choice);
    std::vector<AskingPress> presses;
    presses.reserve(wanted.size());
    for (const proof::Wanted& each : wanted) {
        presses.push_back({*choice.origin, proof::ProceduresOf(*choice.origin, each)});
    }
    RequireAnswers(context, presses);
    const QString path = context.options.value("output");
    CheckOutput(path, {QStringLiteral("Verbale"), proof::FirstLine,
                       modMain::OwnFiles(context.session, context.session.Config.ConfigFile())});
    GivenAnswers answers;
    const auto made =
        proof::Make(context.session, choice, wanted,
                    {[&] { answers = context.person.AnswersLeft(); }, [&] { context.person.SetAnswers(answers); }});
    if (!made) {
        return {ExitFailed, {}, {}};
    }
    if (terminal::Interrupted() || context.person.GaveUp()) {
        return {ExitCancelled, "Annullato: il verbale non è stato scritto.", {}};
    }
    proof::WritePage(path, *made);
    const proof::Verdict verdict = proof::VerdictOf(proof::FindingsOf(*made));
    Report report{CodeOf(verdict.light), {}, proof::Json(*made)};
    report.text = verdict.reason + QStringLiteral("\nVerbale: ") + QDir::toNativeSeparators(path);
    report.json["output"] = path;
    return report;
}

} // namespace

Command ReportCommand() {
    return {
        "report",
        "confronta origine e Quadrix e ne scrive il verbale di quadratura; non importa nulla",
        "Rilegge l'origine con le regole dell'importazione e confronta ciò che ne deve risultare con ciò che è in "
        "Quadrix,\n"
        "riga per riga e somma per somma; il database resta com'era. Il verbale è una pagina HTML che si apre e si "
        "stampa\n"
        "con qualunque browser, anche in PDF. L'opzione --data si ripete; senza, si confronta ogni genere di dati "
        "dell'origine.\n"
        "Le opzioni --answer, --input e --file rispondono alle domande delle importazioni, nell'ordine dei generi.\n"
        "Codice d'uscita 0 se tutto concorda, 4 se concorda con riserve (righe non importabili, codici da tradurre), "
        "1 se no.",
        {CompanyOption(),
         OriginOption(),
         DataOption(),
         {"output", "File HTML da scrivere; un verbale che c'è già viene sostituito.", "FILE"},
         {"answer", "Risposta a una domanda: yes o no.", "RISPOSTA"},
         InputOption(),
         InputFileOption(),
         {"file", "File da scegliere dove la procedura ne chiede uno.", "PERCORSO"}},
        Need::Database,
        MakeReport,
        {},
        {"data"}};
}

} // namespace cli
