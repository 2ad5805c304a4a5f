#include "app/importFlow.h"
#include "app/sequenceRun.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"
#include "cli/keptRuns.h"
#include "cli/resultReport.h"
#include "cli/TerminalOperator.h"
#include "core/nearNames.h"

#include <QDir>
#include <QJsonArray>

namespace cli {

namespace {

QString NameOf(const SequenceChoice& choice) { return QString::fromLatin1(choice.name).toLower(); }

QStringList StepNames() {
    QStringList names;
    for (const SequenceChoice& choice : SequenceChoices()) {
        names.append(NameOf(choice));
    }
    return names;
}

/// The steps of "--steps a,b,c"; "all" is every import and the final queries, not the emptying.
SequenceSteps StepsFrom(const QCommandLineParser& options) {
    SequenceSteps steps;
    for (const QString& given : options.values("steps").join(u',').split(u',', Qt::SkipEmptyParts)) {
        const QString name = given.trimmed().toLower();
        bool known = name == u"all";
        for (const SequenceChoice& choice : SequenceChoices()) {
            const bool all = name == u"all" && choice.step != &SequenceSteps::DeleteBefore;
            steps.*choice.step = steps.*choice.step || all || NameOf(choice) == name;
            known = known || NameOf(choice) == name;
        }
        if (!known) {
            throw UsageError(QStringLiteral("Il passo '%1' non esiste%2 (passi: all, %3)")
                                 .arg(given, DidYouMean(name, StepNames()), StepNames().join(", ")));
        }
    }
    if (steps == SequenceSteps()) {
        throw UsageError(QStringLiteral("Manca l'opzione --steps: la sequenza 2 vuole i suoi passi (all, %1)")
                             .arg(StepNames().join(", ")));
    }
    return steps;
}

QString OutcomeName(SequenceEntry::Outcome outcome) {
    static const QStringList names{"notReached", "done", "failed", "cancelled", "notConnected", "unavailable"};
    return names.at(static_cast<int>(outcome));
}

QJsonArray EntriesJson(const SequenceResult& result) {
    QJsonArray entries;
    for (const SequenceEntry& entry : result.entries) {
        QJsonArray procedures;
        for (const RunResult& procedure : entry.results) {
            QJsonObject json = ResultJson(procedure);
            json["module"] = procedure.module;
            json["procedure"] = procedure.procedure;
            procedures.append(json);
        }
        entries.append(QJsonObject{{"step", entry.step},
                                   {"outcome", OutcomeName(entry.outcome)},
                                   {"message", entry.message},
                                   {"told", QJsonArray::fromStringList(entry.told)},
                                   {"procedures", procedures}});
    }
    return entries;
}

int ScriptFrom(const QCommandLineParser& options, const SequenceSettings& settings) {
    return options.isSet("script") ? OneOf("script", options.value("script"), {"1", "2"}) + 1 : settings.script;
}

/// Raises `UsageError` for steps given to sequence 1, which has none to choose from.
void RefuseSteps(const QCommandLineParser& options) {
    if (options.isSet("steps")) {
        throw UsageError(
            QStringLiteral("--steps vale con la sequenza 2, e %1 la 1: indicare --script 2")
                .arg(options.isSet("script") ? QStringLiteral("si è chiesta") : QStringLiteral("Sequence.ini indica")));
    }
}

/// What a sequence asks: sequence 1 about the emptying, before the first table is; the steps of both ask nothing.
std::vector<contract::AnswerNeed> QuestionsOf(const Context& context, int script) {
    if (script != 1) {
        return {};
    }
    const std::deque<bool>& given = context.person.AnswersLeft().questions;
    std::vector<contract::AnswerNeed> questions{{"svuotare tutte le tabelle del database dell'azienda?"}};
    if (!given.empty() && given.front()) {
        questions.push_back({"svuotare anche il database del software CAM collegato?"});
    }
    return questions;
}

bool HasUntranslated(const SequenceResult& result) {
    return std::any_of(result.entries.cbegin(), result.entries.cend(), [](const SequenceEntry& entry) {
        return std::any_of(entry.results.cbegin(), entry.results.cend(),
                           [](const RunResult& procedure) { return procedure.untranslatedCount > 0; });
    });
}

Report ReportOf(const Context& context, const SequenceResult& result, const QList<qint64>& runs) {
    const Ending ending = result.HowItEnded();
    Report report{ExitCodeOf(ending), {}, {{"outcome", EndingName(ending)}}};
    report.text =
        (SequenceLines(result) + RunLines(context, runs, {.untranslated = HasUntranslated(result)})).join(u'\n');
    report.json["givenUp"] = result.GivenUp();
    report.json["steps"] = EntriesJson(result);
    report.json["log"] = result.logFile;
    report.json["run"] = RunNumberJson(runs);
    return report;
}

/// Raises `UsageError` for a company that there is not, naming those that there are.
void RequireCompany(Session& session, const SequenceSettings& settings) {
    QStringList known;
    const auto companies = modMain::GetCompanies(session);
    const QStringList listed = modMain::NamesInList(companies);
    for (qsizetype i = 0; i < companies.size(); ++i) {
        for (const QString& name : {companies.at(i).name, listed.at(i), companies.at(i).code}) {
            if (name.trimmed().compare(settings.company, Qt::CaseInsensitive) == 0) {
                return;
            }
        }
        known << listed.at(i).trimmed() << companies.at(i).code.trimmed();
    }
    throw UsageError(QStringLiteral("L'azienda '%1' di '%2' non esiste%3 (aziende presenti: %4)")
                         .arg(settings.company, QDir::toNativeSeparators(settings.file),
                              DidYouMean(settings.company, known),
                              known.isEmpty() ? QStringLiteral("nessuna") : known.join(", ")));
}

/// What goes besides the tables that are emptied; nothing where that cannot be told.
QString BesidesText(Session& session, const SequenceSettings& settings) {
    const ovErrors::Acting acting(session.Errors, ErrorAction::Abort);
    try {
        TakeCompany(session, CompanyOf(session, settings).code);
        const QStringList besides = BesidesEmptying(session);
        return besides.isEmpty() ? QString() : ". " + besides.join(". ");
    } catch (const Error&) {
        return {};
    }
}

Report Sequence(Context& context) {
    const SequenceSettings settings = ReadSequenceSettings(context.session);
    RequireCompany(context.session, settings);
    const int script = ScriptFrom(context.options, settings);
    SequenceWindow window;
    QString what = QStringLiteral("La sequenza %1 importa nell'azienda '%2'").arg(script).arg(settings.company);
    if (script == 2) {
        const SequenceSteps steps = StepsFrom(context.options);
        window.LanciaSequenza = [steps] { return std::optional(steps); };
        if (steps.DeleteBefore) {
            what += " e prima ne svuota le tabelle, con quelle comuni GEN_...";
            what += context.options.isSet("yes") ? QString() : BesidesText(context.session, settings);
        }
    } else {
        RefuseSteps(context.options);
    }
    if (const QString merged = MergedTextOf(context.session, settings); !merged.isEmpty()) {
        what += ". " + merged;
    }
    RequireYes(context.options, what);
    RequireAnswersTo(context, QuestionsOf(context, script));
    context.session.Errors.Action = ErrorsFrom(context.options);
    TakeMaxRejects(context);
    const KeptRuns kept(context.session);
    const SequenceResult result =
        script == 1 ? ::Sequence(context.session, settings, window) : Sequence2(context.session, settings, window);
    Report report = ReportOf(context, result, kept.Of(context.session.UserManager.Azienda()));
    report.json["script"] = script;
    report.json["company"] = settings.company;
    return report;
}

} // namespace

Command SequenceCommand() {
    return {"sequence",
            "esegue la sequenza di importazione di un'installazione",
            "Azienda, origini e log della sequenza stanno in Sequence.ini, accanto a Quadrix.ini (un esempio "
            "commentato è in examples/Sequence.ini). Passi della sequenza 2: all (tutti, senza svuotare), " +
                StepNames().join(", ") + ".",
            {{"script", "Quale sequenza: 1 o 2; senza, quella di Sequence.ini.", "NUMERO"},
             {"steps", "Passi della sequenza 2, separati da virgole.", "PASSI"},
             {"answer", "Risposta a una domanda della sequenza 1: yes o no.", "RISPOSTA"},
             ErrorsOption(),
             MaxRejectsOption(),
             YesOption()},
            Need::Database,
            Sequence,
            {},
            {"steps"}};
}

} // namespace cli
