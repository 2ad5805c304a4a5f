#include "app/history/Annotations.h"
#include "app/history/compare.h"
#include "app/history/rejects.h"
#include "app/history/runTexts.h"
#include "app/resultText.h"
#include "app/startUp.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"
#include "cli/resultReport.h"

#include <QJsonArray>

namespace cli {

namespace {

using namespace history;

QJsonObject RunJson(const Run& run) {
    QJsonArray procedures;
    for (const ProcedureRun& procedure : run.procedures) {
        QJsonObject json = ResultJson(procedure.result);
        json["procedure"] = procedure.result.procedure;
        json["module"] = procedure.result.module;
        json["rejects"] = procedure.rejects;
        json["rejectsImported"] = procedure.imported;
        json["reachedRows"] = procedure.reached.rows;
        json["undone"] = procedure.undone;
        if (!procedure.hasEnded) {
            json["outcome"] = "killed";
        }
        procedures.append(json);
    }
    return {{"run", run.id},
            {"started", run.started.toString(Qt::ISODate)},
            {"ended", run.ended.toString(Qt::ISODate)},
            {"ending", run.isUnderWay    ? QString("running")
                       : run.WasKilled() ? QString("killed")
                                         : EndingName(run.ending)},
            {"dryRun", run.isTrial},
            {"worker", run.worker},
            {"company", run.company},
            {"origin", run.origin},
            {"data", run.data},
            {"work", run.work},
            {"database", run.database},
            {"source", run.source},
            {"layout", run.layout},
            {"code", run.code},
            {"options", QJsonArray::fromStringList(run.options)},
            {"procedures", procedures}};
}

/// Every note of a run with its row, the rows given up first.
QJsonArray NotesJson(const History& history, qint64 run) {
    Annotations notes(history, run);
    QJsonArray json;
    for (size_t kind = 0; kind < notes.Kinds().size(); ++kind) {
        for (qint64 place = 0; place < notes.Kinds()[kind].count; ++place) {
            const Note& note = notes.At(kind, place);
            json.append(QJsonObject{{"kind", note.kind},
                                    {"procedure", note.procedure},
                                    {"row", note.row},
                                    {"text", note.text},
                                    {"done", note.isDone}});
        }
    }
    return json;
}

QStringList Lines(const History& history, const Run& run) {
    QStringList lines = HeadLines(run);
    for (const ProcedureRun& procedure : run.procedures) {
        lines += QString();
        if (procedure.hasEnded) {
            lines += ResultLines(procedure.result);
        } else {
            lines += QStringLiteral("%1: non è arrivata alla fine; scritte le prime %2 righe")
                         .arg(procedure.result.procedure, QString::number(procedure.reached.rows));
        }
        if (!procedure.undone.isEmpty()) {
            lines += QStringLiteral("Annullata: ") + procedure.undone;
        }
    }
    for (const NoteKind& kind : history.NoteKinds(run.id)) {
        lines += QStringLiteral("%1: %2, di cui fatte %3")
                     .arg(kind.kind, QString::number(kind.count), QString::number(kind.done));
    }
    return lines;
}

/// The company of --company as its runs name it; empty without the option. Raises `UsageError` for one that there is
/// not; none when Quadrix does not open, which has been told.
std::optional<QString> CompanyFrom(Context& context, const History& history) {
    const QString given = context.options.value("company");
    if (given.isEmpty() || history.LastRun(given) > 0) {
        return given;
    }
    if (!modMain::ConnectQuadrix(context.session, modMain::SettingsFilePath(context.options.value("config")))) {
        return std::nullopt;
    }
    Choice choice;
    TakeCompanyOption(context, choice);
    return choice.companyCode;
}

Report List(const History& history, const QString& company) {
    const std::vector<Run> runs = history.Runs(company);
    Report report;
    report.isAll = true;
    // Which one the settings name is known once it is open, and this command needs none.
    const bool areSeveral =
        std::any_of(runs.begin(), runs.end(), [&runs](const Run& run) { return run.target != runs.front().target; });
    const auto line = [areSeveral](const QStringList& cells, const QString& database) {
        return (areSeveral ? cells + QStringList(database) : cells).join(QStringLiteral(" | "));
    };
    QStringList lines{line(RunHeadings(), QStringLiteral("Database"))};
    QJsonArray json;
    for (const Run& run : runs) {
        lines += line(RunCells(run), run.database);
        json.append(RunJson(run));
    }
    const QString ofWhom = company.isEmpty() ? QString() : QStringLiteral(" dell'azienda %1").arg(company);
    report.text = runs.empty() ? QStringLiteral("La cronologia%1 è vuota.").arg(ofWhom) : lines.join(u'\n');
    report.json["runs"] = json;
    return report;
}

/// Writes the rows given up. Raises `UsageError` for a file that is being mended, unless --yes was given.
QStringList SaveRejects(const Context& context, const History& history, qint64 run) {
    const QString path = context.options.value("rejects");
    if (const QStringList changed = ChangedRejects(history, run, path); !changed.isEmpty()) {
        RequireYes(context.options, QStringLiteral("'%1' ha righe corrette, o di un'altra esecuzione: si perderebbero")
                                        .arg(changed.join(QStringLiteral("', '"))));
    }
    return WriteRejects(history, run, path);
}

Report One(const Context& context, const History& history, qint64 number) {
    const Run run = history.Load(number);
    Report report;
    report.isAll = true;
    report.json = RunJson(run);
    if (context.options.isSet("log")) {
        report.text = history.Log(number);
        report.json["log"] = report.text;
        return report;
    }
    QStringList lines = Lines(history, run);
    if (context.options.isSet("rejects")) {
        const QStringList files = SaveRejects(context, history, number);
        lines += files.isEmpty() ? QStringLiteral("Nessuna riga scartata: nessun file scritto.")
                                 : QStringLiteral("Righe scartate scritte in: ") + files.join(QStringLiteral(", "));
        report.json["rejectFiles"] = QJsonArray::fromStringList(files);
    }
    if (context.options.isSet("notes")) {
        const QString file = context.options.value("notes");
        const qint64 notes = Annotations(history, number).Write(file);
        lines += QStringLiteral("Annotazioni scritte in %1: %2").arg(file, QString::number(notes));
        report.json["notesFile"] = file;
    }
    if (context.options.isSet("json")) {
        report.json["annotations"] = NotesJson(history, number);
    }
    report.text = lines.join(u'\n');
    return report;
}

/// Removes what is kept of old runs. @param company empty: of every company
Report Forget(const Context& context, History& history, const QString& company) {
    const QString text = context.options.value("forget-before");
    const QDate day = QDate::fromString(text, QStringLiteral("dd/MM/yyyy"));
    if (!day.isValid()) {
        throw UsageError(QStringLiteral("--forget-before: '%1' non è una data GG/MM/AAAA").arg(text));
    }
    const std::vector<Run> all = history.Runs(company, std::numeric_limits<int>::max());
    const auto old = std::count_if(all.begin(), all.end(), [limit = day.startOfDay()](const Run& run) {
        return run.started < limit; //
    });
    const QString ofWhom =
        company.isEmpty() ? QStringLiteral("di tutte le aziende") : QStringLiteral("dell'azienda %1").arg(company);
    RequireYes(context.options,
               QStringLiteral("toglie dalla cronologia le esecuzioni %1 cominciate prima del %2, che sono %3")
                   .arg(ofWhom, text, QString::number(old)));
    const qint64 runs = history.Forget(day, company);
    Report report;
    report.text = QStringLiteral("Esecuzioni %1 tolte dalla cronologia: %2").arg(ofWhom, QString::number(runs));
    report.json["forgotten"] = runs;
    return report;
}

Report Two(const History& history, qint64 before, qint64 after) {
    const QStringList lines = Differences(history, before, after);
    Report report;
    report.isAll = true;
    report.text = lines.isEmpty() ? QStringLiteral("Nessuna differenza.") : lines.join(u'\n');
    report.json["differences"] = QJsonArray::fromStringList(lines);
    return report;
}

Report Show(Context& context) {
    const QCommandLineParser& options = context.options;
    History history(FilePath(modMain::SettingsFilePath(options.value("config"))));
    if (options.isSet("compare")) {
        return Two(history, RunFrom(options, "compare"), RunFrom(options, "run"));
    }
    if (options.isSet("log") || options.isSet("run")) {
        return One(context, history, RunFrom(options, "run"));
    }
    const auto company = CompanyFrom(context, history);
    if (!company) {
        return {ExitFailed, {}, {}};
    }
    return options.isSet("forget-before") ? Forget(context, history, *company) : List(history, *company);
}

} // namespace

Command HistoryCommand() {
    return {"history",
            "elenca le esecuzioni fatte e mostra che cosa ha fatto ognuna",
            "Senza --run le elenca tutte, la più recente prima. La cronologia sta in Cronologia.sqlite, accanto alle "
            "impostazioni.",
            {{"company", "Solo le esecuzioni di questa azienda; con --forget-before toglie solo le sue.", "CODICE"},
             {"run", "Mostra l'esecuzione con questo numero.", "NUMERO"},
             {"compare", "Con --run: che cosa è cambiato rispetto a questa.", "NUMERO"},
             {"log", "Con --run: il suo log."},
             {"notes", "Con --run: scrive le sue annotazioni, riga per riga, in un file .csv o .xlsx.", "FILE"},
             {"rejects", "Con --run: scrive le righe abbandonate in un file .csv o .xlsx, da correggere.", "FILE"},
             {"forget-before", "Toglie le esecuzioni cominciate prima di questo giorno, GG/MM/AAAA.", "GIORNO"},
             {"yes", "Conferma --forget-before; con --rejects sovrascrive un file che qualcuno ha corretto."}},
            Need::Nothing,
            Show,
            {{"--forget-before", {"company", "yes"}},
             {"--compare", {"run"}},
             {"--log", {"run"}},
             {"--run", {"notes", "rejects", "yes"}},
             {"", {"company"}}}};
}

} // namespace cli
