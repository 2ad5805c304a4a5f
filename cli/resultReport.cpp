#include "cli/resultReport.h"

#include <QJsonArray>

#include <array>

namespace cli {

namespace {

constexpr qsizetype MostListed = 1000; ///< rows given up, and codes, that the total lists; it counts them all

void AddTables(RunResult& total, const RunResult& result) {
    for (auto table = result.tables.cbegin(); table != result.tables.cend(); ++table) {
        RunResult::TableCount& sum = total.tables[table.key()];
        sum.inserted += table->inserted;
        sum.updated += table->updated;
    }
    for (auto rule = result.skippedBy.cbegin(); rule != result.skippedBy.cend(); ++rule) {
        total.skippedBy[rule.key()] += rule.value();
    }
}

QJsonArray EmptiedJson(const RunResult& result) {
    QJsonArray tables;
    for (const RunResult::Emptied& emptied : result.emptied) {
        QJsonObject json{{"table", emptied.table}};
        if (emptied.rows >= 0) {
            json["rows"] = emptied.rows;
        }
        tables.append(json);
    }
    return tables;
}

QJsonObject SkippedByJson(const RunResult& result) {
    QJsonObject rules;
    for (auto rule = result.skippedBy.cbegin(); rule != result.skippedBy.cend(); ++rule) {
        rules[rule.key()] = rule.value();
    }
    return rules;
}

QJsonObject TablesJson(const RunResult& result) {
    QJsonObject tables;
    for (auto table = result.tables.cbegin(); table != result.tables.cend(); ++table) {
        tables[table.key()] = QJsonObject{{"inserted", table->inserted}, {"updated", table->updated}};
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

QJsonArray NotesJson(const Notes& notes) {
    QJsonArray json;
    for (const Notes::Kind& kind : notes.kinds) {
        json.append(QJsonObject{{"kind", kind.name}, {"count", kind.count}, {"first", kind.first}});
    }
    return json;
}

QString OutcomeName(RunResult::Outcome outcome) {
    static const QStringList names{"done", "failed", "cancelled"};
    return names.at(static_cast<int>(outcome));
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

QString EndingName(Ending ending) {
    static const QStringList names{"done", "incomplete", "cancelled", "failed"};
    return names.at(static_cast<int>(ending));
}

ExitCode ExitCodeOf(Ending ending) {
    static const std::array<ExitCode, 4> codes{ExitDone, ExitIncomplete, ExitCancelled, ExitFailed};
    return codes.at(static_cast<size_t>(ending));
}

RunResult Total(const QVector<RunResult>& results) {
    RunResult total;
    total.outcome = FirstNotDone(results).value_or(RunResult::Outcome::Done);
    for (const RunResult& result : results) {
        for (const RunResult::Number& number : RunResult::Numbers) {
            total.*number.member += result.*number.member;
        }
        total.emptied += result.emptied;
        total.givenUp += result.givenUp.mid(0, MostListed - total.givenUp.size());
        total.untranslated += result.untranslated.mid(0, MostListed - total.untranslated.size());
        total.notes.Add(result.notes);
        total.errors += result.errors;
        total.details += result.details;
        total.seconds += result.seconds;
        AddTables(total, result);
    }
    return total;
}

QJsonObject ResultJson(const RunResult& result) {
    return {{"outcome", EndingName(EndingOf(result))},
            {"sourceRows", result.sourceRows},
            {"rowsRead", result.sourceRows - result.notReached},
            {"inserted", result.inserted},
            {"updated", result.updated},
            {"skipped", result.skipped},
            {"skippedBy", SkippedByJson(result)},
            {"givenUp", result.givenUpCount},
            {"givenUpBefore", result.givenUpBefore},
            {"notFound", result.notFound},
            {"failedLookUps", result.failedLookUps},
            {"notReached", result.notReached},
            {"givenUpRows", GivenUpJson(result)},
            {"emptied", EmptiedJson(result)},
            {"written", TablesJson(result)},
            {"untranslated", QJsonArray::fromStringList(result.untranslated)},
            {"untranslatedCount", result.untranslatedCount},
            {"notes", NotesJson(result.notes)},
            {"details", QJsonArray::fromStringList(result.details)},
            {"errors", QJsonArray::fromStringList(result.errors)},
            {"seconds", result.seconds}};
}

} // namespace cli
