#include "app/sequence.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"
#include "cli/resultReport.h"
#include "core/nearNames.h"

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
                                 .arg(given, Suggestion(name, StepNames()), StepNames().join(", ")));
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

Report Sequence(Context& context) {
    const SequenceSettings settings = ReadSequenceSettings(context.session);
    const int script = ScriptFrom(context.options, settings);
    SequenceWindow window;
    QString what = QStringLiteral("La sequenza %1 importa nell'azienda '%2'").arg(script).arg(settings.company);
    if (script == 2) {
        const SequenceSteps steps = StepsFrom(context.options);
        window.LanciaSequenza = [steps] { return std::optional(steps); };
        what += steps.DeleteBefore ? " e prima ne svuota le tabelle, con quelle comuni GEN_..." : "";
    }
    RequireYes(context.options, what);
    context.session.Errors.Action = ErrorsFrom(context.options);
    const SequenceResult result =
        script == 1 ? ::Sequence(context.session, settings, window) : Sequence2(context.session, settings, window);
    const Ending ending = result.HowItEnded();
    Report report{ExitCodeOf(ending), SequenceLines(result).join(u'\n'), {}};
    report.json["script"] = script;
    report.json["company"] = settings.company;
    report.json["outcome"] = EndingName(ending);
    report.json["givenUp"] = result.GivenUp();
    report.json["steps"] = EntriesJson(result);
    report.json["log"] = result.logFile;
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
             {"answer", "Risposta a una domanda: yes o no.", "RISPOSTA"},
             InputOption(),
             InputFileOption(),
             {"file", "File da scegliere dove una procedura ne chiede uno.", "PERCORSO"},
             ErrorsOption(),
             YesOption()},
            Need::Database,
            Sequence};
}

} // namespace cli
