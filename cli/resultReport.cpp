#include "cli/resultReport.h"

#include "app/progressText.h"

#include <QJsonArray>
#include <QLocale>

namespace cli {

namespace {

constexpr qsizetype MostLines = 20; ///< of a list in the text

QString Number(qint64 number) { return QLocale(QLocale::Italian, QLocale::Italy).toString(number); }

QString Figure(const QString& name, qint64 number) {
    return QStringLiteral("%1 %2").arg(name, -26).arg(Number(number), 12);
}

/// A heading with the number of all items, and the first of them.
void AddList(QStringList& lines, const QString& heading, qint64 count, const QStringList& items) {
    if (count == 0) {
        return;
    }
    lines.append(QStringLiteral("%1 (%2):").arg(heading, Number(count)));
    for (const QString& item : items.mid(0, MostLines)) {
        lines.append(QString("  " + item));
    }
    if (count > MostLines) {
        lines.append(QStringLiteral("  ... e altre %1").arg(Number(count - MostLines)));
    }
}

QStringList TableLines(const RunResult& result) {
    QStringList lines;
    for (auto table = result.tables.cbegin(); table != result.tables.cend(); ++table) {
        QStringList parts;
        const auto add = [&parts](qint64 count, const char* what) {
            if (count > 0) {
                parts.append(QString(Number(count) + u' ' + what));
            }
        };
        add(table->inserted, "inserite");
        add(table->updated, "aggiornate");
        add(table->takenBack, "inserite e riprese");
        lines.append(QString(table.key() + ": " + parts.join(", ")));
    }
    return lines;
}

QStringList GivenUpLines(const RunResult& result) {
    QStringList lines;
    for (const RunResult::GivenUp& row : result.givenUp) {
        lines.append(QString(row.rowKey + ": " + row.reason));
    }
    return lines;
}

void AddTables(RunResult& total, const RunResult& result) {
    for (auto table = result.tables.cbegin(); table != result.tables.cend(); ++table) {
        RunResult::TableCount& sum = total.tables[table.key()];
        sum.inserted += table->inserted;
        sum.updated += table->updated;
        sum.takenBack += table->takenBack;
    }
}

QJsonObject TablesJson(const RunResult& result) {
    QJsonObject tables;
    for (auto table = result.tables.cbegin(); table != result.tables.cend(); ++table) {
        tables[table.key()] =
            QJsonObject{{"inserted", table->inserted}, {"updated", table->updated}, {"takenBack", table->takenBack}};
    }
    return tables;
}

QJsonArray GivenUpJson(const RunResult& result) {
    QJsonArray rows;
    for (const RunResult::GivenUp& row : result.givenUp) {
        rows.append(QJsonObject{{"key", row.rowKey}, {"reason", row.reason}});
    }
    return rows;
}

} // namespace

QString OutcomeName(RunResult::Outcome outcome) {
    static const QStringList names{"done", "failed", "cancelled"};
    return names.at(static_cast<int>(outcome));
}

QString OutcomeText(RunResult::Outcome outcome) {
    static const QStringList texts{"completata", "fallita", "annullata"};
    return texts.at(static_cast<int>(outcome));
}

ExitCode ExitCodeOf(RunResult::Outcome outcome) {
    switch (outcome) {
    case RunResult::Outcome::Done:
        return ExitDone;
    case RunResult::Outcome::Cancelled:
        return ExitCancelled;
    case RunResult::Outcome::Failed:
        break;
    }
    return ExitFailed;
}

RunResult Total(const QVector<RunResult>& results) {
    RunResult total;
    for (const RunResult& result : results) {
        if (total.outcome == RunResult::Outcome::Done) {
            total.outcome = result.outcome;
        }
        total.sourceRows += result.sourceRows;
        total.inserted += result.inserted;
        total.updated += result.updated;
        total.skipped += result.skipped;
        total.notReached += result.notReached;
        total.givenUpCount += result.givenUpCount;
        total.givenUp += result.givenUp;
        total.untranslated += result.untranslated;
        total.errors += result.errors;
        total.seconds += result.seconds;
        AddTables(total, result);
    }
    return total;
}

QJsonObject ResultJson(const RunResult& result) {
    return {{"outcome", OutcomeName(result.outcome)},
            {"sourceRows", result.sourceRows},
            {"rowsRead", result.sourceRows - result.notReached},
            {"inserted", result.inserted},
            {"updated", result.updated},
            {"skipped", result.skipped},
            {"givenUp", result.givenUpCount},
            {"notReached", result.notReached},
            {"givenUpRows", GivenUpJson(result)},
            {"written", TablesJson(result)},
            {"untranslated", QJsonArray::fromStringList(result.untranslated)},
            {"errors", QJsonArray::fromStringList(result.errors)},
            {"seconds", result.seconds}};
}

QString ResultText(const RunResult& result) {
    QStringList lines{Figure("Righe dell'origine", result.sourceRows), Figure("  inserite", result.inserted),
                      Figure("  aggiornate", result.updated),          Figure("  saltate", result.skipped),
                      Figure("  abbandonate", result.givenUpCount),    Figure("  non raggiunte", result.notReached)};
    if (!result.AddsUp()) {
        lines.append("  Attenzione: le righe non tornano, il conto è sbagliato!");
    }
    AddList(lines, "Tabelle scritte", result.tables.size(), TableLines(result));
    AddList(lines, "Righe abbandonate", result.givenUpCount, GivenUpLines(result));
    AddList(lines, "Codici senza traduzione", result.untranslated.size(), result.untranslated);
    lines.append(QString("Tempo: " + DurationText(result.seconds)));
    return lines.join(u'\n');
}

} // namespace cli
