#include "core/runEnding.h"

#include "core/italianText.h"

Ending EndingOf(const RunResult& result) {
    switch (result.outcome) {
    case RunResult::Outcome::Failed:
        return Ending::Failed;
    case RunResult::Outcome::Cancelled:
        return Ending::Interrupted;
    case RunResult::Outcome::Done:
        break;
    }
    const bool isWhole = result.givenUpCount + result.givenUpBefore + result.notFound + result.failedLookUps == 0;
    return isWhole ? Ending::Complete : Ending::Incomplete;
}

QString EndingText(Ending ending) {
    switch (ending) {
    case Ending::Incomplete:
        return QStringLiteral("completata ma non per intero");
    case Ending::Interrupted:
        return QStringLiteral("interrotta dall'operatore");
    case Ending::Failed:
        return QStringLiteral("interrotta da un errore");
    case Ending::Complete:
        break;
    }
    return QStringLiteral("completata");
}

std::optional<RunResult::Outcome> FirstNotDone(const QVector<RunResult>& results) {
    for (const RunResult& result : results) {
        if (result.outcome != RunResult::Outcome::Done) {
            return result.outcome;
        }
    }
    return {};
}

QString LossesText(const RunResult& result) {
    QStringList losses;
    const auto tell = [&losses](const QString& what, qint64 count) {
        if (count > 0) {
            losses.append((losses.isEmpty() ? what : QString(what.front().toLower() + what.mid(1))) +
                          italian::NumberText(count));
        }
    };
    tell(QStringLiteral("Righe abbandonate: "), result.givenUpCount);
    tell(QStringLiteral("Righe abbandonate prima dell'interruzione: "), result.givenUpBefore);
    tell(QStringLiteral("Righe del file degli scarti che la fonte non ha più: "), result.notFound);
    tell(QStringLiteral("Ricerche non riuscite: "), result.failedLookUps);
    return losses.join(QStringLiteral(", "));
}

QString RowsLine(const RunResult& result) {
    return QStringLiteral(
               "Righe dell'origine %1: inserite %2, aggiornate %3, saltate %4, abbandonate %5, non raggiunte %6")
        .arg(italian::NumberText(result.sourceRows), italian::NumberText(result.inserted),
             italian::NumberText(result.updated), italian::NumberText(result.skipped),
             italian::NumberText(result.givenUpCount), italian::NumberText(result.notReached));
}

QString DeletedText(qint64 rows) {
    if (rows < 0) {
        return {};
    }
    return rows == 1 ? QStringLiteral("1 riga eliminata")
                     : italian::NumberText(rows) + QStringLiteral(" righe eliminate");
}

QString EmptiedLine(const QString& table, qint64 rows) {
    const QString line = QStringLiteral("Tabella %1: svuotata").arg(table);
    return rows < 0 ? line : QString(line + " (" + DeletedText(rows) + ')');
}
