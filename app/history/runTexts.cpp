#include "app/history/runTexts.h"

#include "app/history/again.h"
#include "app/procedureTitle.h"
#include "core/italianText.h"
#include "sql/visibleText.h"

#include <QDir>

namespace history {

namespace {

/// "12 (documento già importato: 10; senza codice: 2)"
QString SkippedText(const RunResult& result) {
    QStringList reasons;
    for (const auto& [reason, rows] : result.skippedBy.asKeyValueRange()) {
        reasons.append(reason + QStringLiteral(": ") + italian::NumberText(rows));
    }
    return italian::NumberText(result.skipped) +
           (reasons.isEmpty() ? QString() : QString(QStringLiteral(" (") + reasons.join(QStringLiteral("; ")) + u')'));
}

/// "completata (prova)", "completata; annullata"
QString StateText(const Run& run) {
    return EndingText(run) + (run.isTrial ? QStringLiteral(" (prova)") : QString()) +
           (run.IsUndone() ? QStringLiteral("; annullata") : QString()) +
           (run.isElsewhere ? QString(QStringLiteral("; in un altro database: ") + run.database) : QString());
}

/// "30, aperte 6": the others were imported by later runs
QString GivenUpText(const Run& run) {
    qint64 all = 0;
    for (const ProcedureRun& procedure : run.procedures) {
        all += procedure.rejects;
    }
    const qint64 open = RejectsIn(run);
    return open == all ? italian::NumberText(all)
                       : QStringLiteral("%1, aperte %2").arg(italian::NumberText(all), italian::NumberText(open));
}

QStringList Visible(QStringList texts) {
    for (QString& text : texts) {
        text = VisibleLine(text);
    }
    return texts;
}

} // namespace

const QStringList& ProcedureHeadings() {
    static const QStringList headings{"Procedura",   "Lette",         "Inserite", "Aggiornate", "Saltate",
                                      "Abbandonate", "Non raggiunte", "Secondi",  "Esito"};
    return headings;
}

QStringList ProcedureCells(const ProcedureRun& procedure) {
    const RunResult& result = procedure.result;
    const QString title = ProcedureTitle(result.module, result.procedure);
    QString ending = procedure.hasEnded ? EndingText(EndingOf(result))
                                        : QStringLiteral("non è arrivata alla fine; fatte le prime %1 righe")
                                              .arg(italian::NumberText(procedure.reached.rows));
    if (!procedure.undone.isEmpty()) {
        ending += QStringLiteral("; annullata: ") + procedure.undone;
    }
    if (!procedure.hasEnded) {
        return Visible({title, {}, {}, {}, {}, italian::NumberText(procedure.rejects), {}, {}, ending});
    }
    return Visible({title, italian::NumberText(result.sourceRows), italian::NumberText(result.inserted),
                    italian::NumberText(result.updated), SkippedText(result), italian::NumberText(result.givenUpCount),
                    italian::NumberText(result.notReached), italian::Locale().toString(result.seconds, 'f', 1),
                    ending});
}

const QStringList& RunHeadings() {
    static const QStringList headings{"N.",      "Inizio",   "Esito",      "Abbandonate", "Operazione",
                                      "Azienda", "Inserite", "Aggiornate", "Chi"};
    return headings;
}

QStringList RunCells(const Run& run) {
    qint64 inserted = 0;
    qint64 updated = 0;
    bool isCounted = true; // of a procedure that did not come to its end nobody has
    for (const ProcedureRun& procedure : run.procedures) {
        inserted += procedure.result.inserted;
        updated += procedure.result.updated;
        isCounted = isCounted && procedure.hasEnded;
    }
    const auto counted = [isCounted](qint64 rows) {
        return isCounted ? italian::NumberText(rows) : QStringLiteral("?");
    };
    return Visible({QString::number(run.id), italian::MomentText(run.started), StateText(run), GivenUpText(run),
                    run.work, QStringLiteral("%1 %2").arg(run.company, run.companyName).trimmed(), counted(inserted),
                    counted(updated), run.worker});
}

QStringList HeadLines(const Run& run) {
    QStringList lines{QStringLiteral("Esecuzione %1, %2: %3").arg(QString::number(run.id), run.work, EndingText(run)),
                      QStringLiteral("Azienda: %1 %2, dal %3 al %4, %5")
                          .arg(run.company, run.companyName, italian::MomentText(run.started),
                               run.ended.isValid() ? italian::MomentText(run.ended) : QStringLiteral("..."),
                               run.worker)};
    if (!run.database.isEmpty()) {
        lines.append(QStringLiteral("Database: ") + run.database +
                     (run.isElsewhere ? QStringLiteral(" (non è quello delle impostazioni di adesso)") : QString()));
    }
    if (!run.source.isEmpty()) {
        lines.append(QStringLiteral("Sorgente: ") + QDir::toNativeSeparators(run.source));
    }
    if (!run.code.isEmpty()) {
        lines.append(QStringLiteral("Codice: ") + run.code);
    }
    if (!run.layout.isEmpty()) {
        lines.append(QStringLiteral("Con un file del tracciato"));
    }
    if (run.isTrial) {
        lines.append(QStringLiteral("Era una prova: il database è rimasto com'era."));
    }
    return Visible(lines + run.options);
}

} // namespace history
