#include "app/history/resultJson.h"

#include <QJsonArray>

namespace history {

namespace {

QJsonArray EmptiedJson(const QVector<RunResult::Emptied>& tables) {
    QJsonArray json;
    for (const RunResult::Emptied& emptied : tables) {
        json.append(QJsonArray{emptied.table, emptied.rows});
    }
    return json;
}

QJsonArray NotesJson(const Notes& notes) {
    QJsonArray json;
    for (const Notes::Kind& kind : notes.kinds) {
        json.append(QJsonArray{kind.name, kind.count, kind.first});
    }
    return json;
}

QStringList TextsOf(const QJsonValue& value) {
    QStringList texts;
    for (const auto text : value.toArray()) {
        texts.append(text.toString());
    }
    return texts;
}

} // namespace

QJsonObject ToJson(const RunResult& result) {
    QJsonObject skipped;
    for (const auto& [rule, rows] : result.skippedBy.asKeyValueRange()) {
        skipped.insert(rule, rows);
    }
    QJsonObject tables;
    for (const auto& [table, count] : result.tables.asKeyValueRange()) {
        tables.insert(table, QJsonArray{count.inserted, count.updated});
    }
    QJsonObject json{{"outcome", static_cast<int>(result.outcome)},
                     {"skippedBy", skipped},
                     {"tables", tables},
                     {"emptied", EmptiedJson(result.emptied)},
                     {"notes", NotesJson(result.notes)},
                     {"noteCount", result.notes.count},
                     {"errors", QJsonArray::fromStringList(result.errors)},
                     {"details", QJsonArray::fromStringList(result.details)},
                     {"codes", QJsonArray::fromStringList(result.untranslated)},
                     {"seconds", result.seconds}};
    for (const RunResult::Number& number : RunResult::Numbers) {
        json.insert(QLatin1String(number.name), result.*number.member);
    }
    return json;
}

RunResult ResultFrom(const QJsonObject& json) {
    RunResult result;
    result.outcome = static_cast<RunResult::Outcome>(json["outcome"].toInt());
    for (const RunResult::Number& number : RunResult::Numbers) {
        result.*number.member = json[QLatin1String(number.name)].toInteger();
    }
    const QJsonObject skipped = json["skippedBy"].toObject();
    for (auto rule = skipped.begin(); rule != skipped.end(); ++rule) {
        result.skippedBy.insert(rule.key(), rule.value().toInteger());
    }
    const QJsonObject tables = json["tables"].toObject();
    for (auto table = tables.begin(); table != tables.end(); ++table) {
        const QJsonArray counts = table.value().toArray();
        result.tables.insert(table.key(), {counts.at(0).toInteger(), counts.at(1).toInteger()});
    }
    for (const auto emptied : json["emptied"].toArray()) {
        result.emptied.append({emptied.toArray().at(0).toString(), emptied.toArray().at(1).toInteger()});
    }
    for (const auto kind : json["notes"].toArray()) {
        const QJsonArray parts = kind.toArray();
        result.notes.kinds.append({parts.at(0).toString(), parts.at(1).toInteger(), parts.at(2).toString()});
    }
    result.notes.count = json["noteCount"].toInteger();
    result.errors = TextsOf(json["errors"]);
    result.details = TextsOf(json["details"]);
    result.untranslated = TextsOf(json["codes"]);
    result.seconds = json["seconds"].toDouble();
    return result;
}

} // namespace history
