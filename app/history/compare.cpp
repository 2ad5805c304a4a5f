#include "app/history/compare.h"

namespace history {

namespace {

/// Two numbers under a name, where they differ.
void Compare(QStringList& lines, const QString& what, qint64 before, qint64 after) {
    if (before != after) {
        lines.append(QStringLiteral("%1: da %2 a %3").arg(what, QString::number(before), QString::number(after)));
    }
}

void CompareResults(QStringList& lines, const RunResult& before, const RunResult& after) {
    const auto line = [&](const char* what, qint64 RunResult::*number) {
        Compare(lines, after.procedure + QStringLiteral(", ") + QString::fromUtf8(what), before.*number, after.*number);
    };
    line("righe dell'origine", &RunResult::sourceRows);
    line("inserite", &RunResult::inserted);
    line("aggiornate", &RunResult::updated);
    line("saltate", &RunResult::skipped);
    line("abbandonate", &RunResult::givenUpCount);
    line("non raggiunte", &RunResult::notReached);
    line("ricerche non riuscite", &RunResult::failedLookUps);
    line("codici senza traduzione", &RunResult::untranslatedCount);
}

/// Names of the rows that a run gave up, with their reasons.
QMap<QString, QString> Reasons(const History& history, qint64 run) {
    QMap<QString, QString> reasons;
    history.ForEachReject(run, [&reasons](const Reject& reject) {
        reasons.insert(reject.procedure + QStringLiteral(", ") + reject.row.row, reject.row.reason);
    });
    return reasons;
}

void CompareRejects(QStringList& lines, const QMap<QString, QString>& before, const QMap<QString, QString>& after) {
    for (const auto& [row, reason] : after.asKeyValueRange()) {
        if (!before.contains(row)) {
            lines.append(QStringLiteral("Ora abbandonata: %1: %2").arg(row, reason));
        } else if (before.value(row) != reason) {
            lines.append(QStringLiteral("Abbandonata per un altro motivo: %1: %2 (prima: %3)")
                             .arg(row, reason, before.value(row)));
        }
    }
    for (const auto& [row, reason] : before.asKeyValueRange()) {
        if (!after.contains(row)) {
            lines.append(QStringLiteral("Non più abbandonata: %1 (prima: %2)").arg(row, reason));
        }
    }
}

/// What became of the rows given up in a run that took some rows alone: its counts say nothing beside those of a whole
/// one.
void ComparePart(QStringList& lines, const History& history, qint64 before, qint64 after) {
    lines.append(
        QStringLiteral("L'esecuzione %1 ha ripreso solo righe di un'altra: i conteggi non si confrontano.").arg(after));
    const QMap<QString, QString> again = Reasons(history, after);
    history.ForEachReject(before, [&](const Reject& reject) {
        const QString row = reject.procedure + QStringLiteral(", ") + reject.row.row;
        if (reject.importedBy == after) {
            lines.append(QStringLiteral("Ora importata: %1 (prima: %2)").arg(row, reject.row.reason));
        } else if (again.contains(row)) {
            lines.append(QStringLiteral("Ancora abbandonata: %1: %2").arg(row, again.value(row)));
        } else {
            lines.append(QStringLiteral("Non ripresa: ") + row);
        }
    });
}

QMap<QString, qint64> Counts(const std::vector<NoteKind>& kinds) {
    QMap<QString, qint64> counts;
    for (const NoteKind& kind : kinds) {
        counts.insert(kind.kind, kind.count);
    }
    return counts;
}

} // namespace

QStringList Differences(const History& history, qint64 before, qint64 after) {
    const Run first = history.Load(before);
    const Run second = history.Load(after);
    QStringList lines;
    if (second.options.contains(OnlySomeRows)) {
        ComparePart(lines, history, before, after);
        return lines;
    }
    for (const ProcedureRun& procedure : second.procedures) {
        const auto same = std::find_if(first.procedures.begin(), first.procedures.end(), [&](const ProcedureRun& each) {
            return each.result.procedure == procedure.result.procedure;
        });
        if (same == first.procedures.end()) {
            lines.append(QStringLiteral("%1: non c'era").arg(procedure.result.procedure));
        } else {
            CompareResults(lines, same->result, procedure.result);
        }
    }
    for (const ProcedureRun& procedure : first.procedures) {
        if (std::none_of(second.procedures.begin(), second.procedures.end(), [&](const ProcedureRun& each) {
                return each.result.procedure == procedure.result.procedure;
            })) {
            lines.append(QStringLiteral("%1: non c'è più").arg(procedure.result.procedure));
        }
    }
    CompareRejects(lines, Reasons(history, before), Reasons(history, after));
    const QMap<QString, qint64> notesBefore = Counts(history.NoteKinds(before));
    const QMap<QString, qint64> notesAfter = Counts(history.NoteKinds(after));
    QStringList kinds = notesBefore.keys() + notesAfter.keys();
    kinds.removeDuplicates();
    for (const QString& kind : std::as_const(kinds)) {
        Compare(lines, kind, notesBefore.value(kind), notesAfter.value(kind));
    }
    return lines;
}

} // namespace history
