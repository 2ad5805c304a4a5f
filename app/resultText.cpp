#include "app/resultText.h"

#include "app/procedureTitle.h"
#include "core/italianText.h"
#include "sql/visibleText.h"

namespace {

/// "Controparti da Arca 2000: completata in 12,3 s"
QString EndingLine(const RunResult& result) {
    const Ending ending = EndingOf(result);
    const bool toTheEnd = ending == Ending::Complete || ending == Ending::Incomplete;
    return ProcedureTitle(result.module, result.procedure) + ": " + EndingText(ending) +
           (toTheEnd ? " in " : " dopo ") + italian::Locale().toString(result.seconds, 'f', 1) + " s";
}

/// Whether it is work of the program on Quadrix alone, as a reset or a step of a sequence is.
bool IsWithoutSource(const RunResult& result) {
    static const QStringList modules{"frmImport", "frmSequence", "modImport"};
    return modules.contains(result.module);
}

QString TableLine(const QString& table, const RunResult::TableCount& count) {
    return QStringLiteral("Tabella %1: scritte %2, aggiornate %3")
        .arg(table, italian::NumberText(count.inserted), italian::NumberText(count.updated));
}

QString NoteLine(const Notes::Kind& kind) {
    const QString often = kind.count == 1 ? QString() : QString(" (" + italian::NumberText(kind.count) + ')');
    return kind.name + often + (kind.first.isEmpty() ? QString() : QString(": " + kind.first)) +
           (kind.count == 1 ? "" : ", ...");
}

/// A title and its entries, cut at `most`; nothing without entries.
void AddList(QStringList& lines, const QString& title, const QStringList& entries, qint64 count, int most) {
    if (count == 0) {
        return;
    }
    lines.append(title + " (" + italian::NumberText(count) + "):");
    for (const QString& entry : entries.mid(0, most)) {
        lines.append("  " + entry);
    }
    const qint64 shown = std::min<qint64>(entries.size(), most);
    if (shown < count) {
        lines.append(QStringLiteral("  ... e altre %1").arg(italian::NumberText(count - shown)));
    }
}

} // namespace

QStringList ResultLines(const RunResult& result, int most) {
    QStringList lines{EndingLine(result)};
    const bool isAlone = IsWithoutSource(result);
    for (const RunResult::Emptied& emptied : result.emptied) {
        if (isAlone) {
            lines.append(EmptiedLine(emptied.table, emptied.rows));
        } else if (emptied.rows != 0) {
            const QString what = emptied.rows < 0 ? QStringLiteral("svuotata") : DeletedText(emptied.rows);
            lines.append(QStringLiteral("Tabella %1: %2 prima di importare").arg(emptied.table, what));
        }
    }
    if (!isAlone) {
        lines.append(RowsLine(result));
    }
    if (result.givenUpBefore > 0) {
        lines.append("Righe abbandonate prima dell'interruzione: " + italian::NumberText(result.givenUpBefore));
    }
    if (result.notFound > 0) {
        lines.append("Righe del file non importate, perché la fonte non le ha più con i valori che avevano: " +
                     italian::NumberText(result.notFound));
    }
    if (result.failedLookUps > 0) {
        lines.append("Ricerche non riuscite: " + italian::NumberText(result.failedLookUps));
    }
    lines += result.details;
    for (auto table = result.tables.cbegin(); table != result.tables.cend(); ++table) {
        lines.append(TableLine(table.key(), table.value()));
    }
    for (const QString& error : result.errors) {
        QStringList parts = error.split(u'\n'); // those behind the first are set in: none passes for a line of ours
        lines.append("Errore: " + parts.takeFirst());
        for (const QString& part : parts) {
            lines.append("    " + part);
        }
    }
    QStringList reasons;
    for (const RunResult::GivenUp& row : result.givenUp) {
        reasons.append(row.rowKey + ": " + row.reason);
    }
    AddList(lines, "Righe abbandonate", reasons, result.givenUpCount, most);
    QStringList rules;
    for (auto rule = result.skippedBy.cbegin(); rule != result.skippedBy.cend(); ++rule) {
        rules.append(rule.key() + ": " + italian::NumberText(rule.value()));
    }
    AddList(lines, "Righe saltate, per motivo", rules, rules.size(), most);
    QStringList notes;
    for (const Notes::Kind& kind : result.notes.kinds) {
        notes.append(NoteLine(kind));
    }
    AddList(lines, "Annotazioni nel log, per tipo", notes, notes.size(), most);
    AddList(lines, "Codici senza traduzione", result.untranslated, result.untranslatedCount, most);
    for (QString& line : lines) {
        line = VisibleLine(line);
    }
    return lines;
}
