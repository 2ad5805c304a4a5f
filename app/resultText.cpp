#include "app/resultText.h"

#include <QLocale>

namespace {

const QLocale& Italian() {
    static const QLocale locale(QLocale::Italian, QLocale::Italy);
    return locale;
}

QString Number(qint64 number) { return Italian().toString(number); }

QString OutcomeText(RunResult::Outcome outcome) {
    switch (outcome) {
    case RunResult::Outcome::Failed:
        return QStringLiteral("interrotta da un errore");
    case RunResult::Outcome::Cancelled:
        return QStringLiteral("interrotta dall'operatore");
    case RunResult::Outcome::Done:
        break;
    }
    return QStringLiteral("completata");
}

QString TableLine(const QString& table, const RunResult::TableCount& count) {
    const QString line = QStringLiteral("Tabella %1: scritte %2, aggiornate %3")
                             .arg(table, Number(count.inserted), Number(count.updated));
    return count.takenBack == 0 ? line : QString(line + ", riprese " + Number(count.takenBack));
}

QString NoteLine(const Notes::Kind& kind) {
    const QString often = kind.count == 1 ? QString() : QString(" (" + Number(kind.count) + ')');
    return kind.name + often + (kind.first.isEmpty() ? QString() : QString(": " + kind.first)) +
           (kind.count == 1 ? "" : ", ...");
}

/// A title and its entries, cut at `most`; nothing without entries.
void AddList(QStringList& lines, const QString& title, const QStringList& entries, qint64 count, int most) {
    if (count == 0) {
        return;
    }
    lines.append(title + " (" + Number(count) + "):");
    for (const QString& entry : entries.mid(0, most)) {
        lines.append("  " + entry);
    }
    const qint64 shown = std::min<qint64>(entries.size(), most);
    if (shown < count) {
        lines.append(QStringLiteral("  ... e altre %1").arg(Number(count - shown)));
    }
}

} // namespace

QString RowsLine(const RunResult& result) {
    return QStringLiteral("Righe lette %1: inserite %2, aggiornate %3, saltate %4, abbandonate %5, non raggiunte %6")
        .arg(Number(result.sourceRows), Number(result.inserted), Number(result.updated), Number(result.skipped),
             Number(result.givenUpCount), Number(result.notReached));
}

QStringList ResultLines(const RunResult& result, int most) {
    QStringList lines{result.procedure + ": " + OutcomeText(result.outcome) + " in " +
                      Italian().toString(result.seconds, 'f', 1) + " s"};
    lines.append(RowsLine(result));
    for (auto table = result.tables.cbegin(); table != result.tables.cend(); ++table) {
        lines.append(TableLine(table.key(), table.value()));
    }
    for (const QString& error : result.errors) {
        lines.append("Errore: " + error);
    }
    QStringList reasons;
    for (const RunResult::GivenUp& row : result.givenUp) {
        reasons.append(row.rowKey + ": " + row.reason);
    }
    AddList(lines, "Righe abbandonate", reasons, result.givenUpCount, most);
    QStringList notes;
    for (const Notes::Kind& kind : result.notes.kinds) {
        notes.append(NoteLine(kind));
    }
    AddList(lines, "Annotazioni nel log, per tipo", notes, notes.size(), most);
    AddList(lines, "Codici senza traduzione", result.untranslated, result.untranslated.size(), most);
    return lines;
}
