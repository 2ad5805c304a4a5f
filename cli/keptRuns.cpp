#include "cli/keptRuns.h"

#include "app/history/again.h"
#include "app/history/rejects.h"
#include "cli/answersAgain.h"

#include <QJsonValue>

namespace cli {

namespace {

/// What the history tells; `otherwise` where it cannot be read.
template<class Result, class Ask>
Result OfHistory(const Session& session, Result otherwise, const Ask& ask) {
    try {
        return ask(history::History(history::FilePath(session.Config.ConfigFile())));
    } catch (const Error&) {
        return otherwise;
    }
}

/// The runs with rows given up that none has imported yet: the run, and those that it goes on with. The one whose rows
/// it was to import has them all, with those that it did not come to.
QList<qint64> RunsWithRejects(const history::History& history, qint64 last, qint64 rejectsOf) {
    QList<qint64> runs;
    if (rejectsOf != 0 && history::RejectsIn(history.Load(rejectsOf)) > 0) {
        return {rejectsOf};
    }
    for (qint64 number = last; number != 0;) {
        const history::Run run = history.Load(number);
        if (history::RejectsIn(run) > 0) {
            runs.prepend(number);
        }
        number = run.resumes;
    }
    return runs;
}

/// Whether a run was to go on with another one and found the source changed: going on with it finds the same.
bool FoundAnotherSource(const history::Run& run) {
    return std::any_of(run.procedures.begin(), run.procedures.end(), [](const history::ProcedureRun& procedure) {
        return !procedure.result.errors.filter(contract::ImportAnew).isEmpty();
    });
}

/// Whether a run broke off behind its beginning and can go on.
bool HasRest(const history::History& history, qint64 number) {
    const history::Run run = history.Load(number);
    const bool began = std::any_of(run.procedures.begin(), run.procedures.end(),
                                   [](const auto& procedure) { return procedure.result.sourceRows > 0; });
    return began && !FoundAnotherSource(run) && history::CanGoOn(run) && history::RestOf(history, run) != nullptr;
}

/// The files that were chosen, as the command that goes on from there wants them.
QString FileOptions(const QStringList& files) {
    QString options;
    for (const QString& file : files) {
        options += QStringLiteral(" --file ") + (file.contains(u' ') ? QString(u'"' + file + u'"') : file);
    }
    return options;
}

QStringList NextSteps(const Context& context, qint64 run, const LeftOpen& left) {
    Session& session = context.session;
    const QString files = FileOptions(left.files);
    const auto answers = [&](const auto& presses) {
        return OfHistory(session, QString(), [&](const history::History& history) {
            return AnswerOptions(context, left.answers, presses(history));
        });
    };
    const auto again = [&](qint64 number, bool rejects) {
        return answers([&](const auto& history) { return PressesAgain(session, history, number, rejects); });
    };
    QStringList steps;
    if (left.resumes && OfHistory(session, false, [run](const auto& history) { return HasRest(history, run); })) {
        steps.append(
            QStringLiteral("Non è arrivata alla fine; riprendere da dove si è fermata: import --resume %1").arg(run) +
            files + again(run, false));
    }
    for (const qint64 each : OfHistory(session, QList<qint64>(), [&](const auto& history) {
             return RunsWithRejects(history, run, left.rejectsOf);
         })) {
        steps.append(QStringLiteral("Righe abbandonate in un file, da correggere: history --run %1 --rejects FILE; poi "
                                    "import --rejects-of %1 --mended FILE")
                         .arg(each) +
                     files + again(each, true));
    }
    if (left.untranslated) {
        steps.append(QStringLiteral("Codici da tradurre: codes list --company %1; poi codes apply --company %1")
                         .arg(session.UserManager.Azienda()) +
                     files +
                     answers([&](const auto&) { return PressesAgain(session, codes::FindWaitingRows(session)); }));
    }
    return steps;
}

} // namespace

KeptRuns::KeptRuns(const Session& session)
    : m_session(session),
      m_before(OfHistory(session, qint64{0}, [](const history::History& history) {
          const std::vector<history::Run> last = history.Runs({}, 1);
          return last.empty() ? 0 : last.front().id;
      })) {}

QList<qint64> KeptRuns::Of(const QString& company, qsizetype most) const {
    if (company.isEmpty()) {
        return {};
    }
    return OfHistory(m_session, QList<qint64>(), [&](const history::History& history) {
        QList<qint64> runs;
        for (const history::Run& run : history.Runs(company, static_cast<int>(most))) {
            if (run.id > m_before && !run.procedures.empty()) {
                runs.prepend(run.id);
            }
        }
        return runs;
    });
}

QStringList RunLines(const Context& context, const QList<qint64>& runs, const LeftOpen& left) {
    if (runs.isEmpty()) {
        return {};
    }
    QStringList numbers;
    for (const qint64 run : runs) {
        numbers.append(QString::number(run));
    }
    const QString title = runs.size() == 1 ? QStringLiteral("Esecuzione: ") : QStringLiteral("Esecuzioni: ");
    QStringList lines(title + numbers.join(QStringLiteral(", ")));
    for (const qint64 run : runs) {
        LeftOpen ofRun = left;
        ofRun.untranslated = left.untranslated && run == runs.last();
        lines += NextSteps(context, run, ofRun);
    }
    lines.removeDuplicates();
    return lines;
}

QJsonValue RunNumberJson(const QList<qint64>& runs) { return runs.isEmpty() ? QJsonValue() : QJsonValue(runs.last()); }

} // namespace cli
