#include "app/report/json.h"

#include "app/report/verdict.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>

namespace proof {

namespace {

template<class Things, class Make>
QJsonArray Array(const Things& things, const Make& make) {
    QJsonArray array;
    for (const auto& thing : things) {
        array.append(make(thing));
    }
    return array;
}

QString LightName(Light light) {
    return light == Light::Green    ? QStringLiteral("green")
           : light == Light::Yellow ? QStringLiteral("yellow")
                                    : QStringLiteral("red");
}

QJsonObject VerdictJson(const Findings& findings) {
    const Verdict verdict = VerdictOf(findings);
    return {{"verdict", LightName(verdict.light)}, {"reason", verdict.reason}};
}

QString Exact(const ExactSum& sum) { return QString::number(sum.Value(), 'f', 6); }

QJsonObject Json(const Total& total) {
    return {{"group", total.group},
            {"sourceRows", total.sourceRows},
            {"targetRows", total.targetRows},
            {"agrees", total.Agrees()},
            {"amounts", Array(total.amounts, [](const Total::Amount& amount) {
                 return QJsonObject{
                     {"column", amount.column}, {"source", Exact(amount.source)}, {"target", Exact(amount.target)}};
             })}};
}

QJsonObject Json(const Difference& difference) {
    static const QStringList kinds{"value", "missing", "surplus"};
    QJsonObject json{
        {"kind", kinds.at(static_cast<int>(difference.kind))}, {"table", difference.table}, {"row", difference.row}};
    if (difference.kind == Difference::Kind::Value) {
        json["sourceRow"] = difference.sourceRow;
        json["column"] = difference.column;
        json["source"] = difference.source;
        json["target"] = difference.target;
    }
    return json;
}

QJsonObject Json(const TableFigures& table) {
    return {{"table", table.table},
            {"equal", table.equal},
            {"different", table.different},
            {"missing", table.missing},
            {"surplus", table.surplus},
            {"kept", table.kept},
            {"others", table.others},
            {"totals", Array(table.totals, [](const Total& total) { return Json(total); })},
            {"differences", Array(table.differences, [](const Difference& each) { return Json(each); })}};
}

QJsonObject Json(const Step& step) {
    const RunResult& result = step.result;
    QJsonObject skippedBy;
    for (const auto& [rule, rows] : result.skippedBy.asKeyValueRange()) {
        skippedBy[rule] = rows;
    }
    return {{"title", step.title},
            {"sourceRows", result.sourceRows},
            {"found", result.updated},
            {"missing", result.inserted},
            {"skipped", result.skipped},
            {"skippedBy", skippedBy},
            {"givenUp", result.givenUpCount},
            {"givenUpRows", Array(result.givenUp,
                                  [](const RunResult::GivenUp& row) {
                                      return QJsonObject{{"key", row.rowKey}, {"reason", row.reason}};
                                  })},
            {"untranslated", QJsonArray::fromStringList(result.untranslated)},
            {"details", QJsonArray::fromStringList(result.details)},
            {"errors", QJsonArray::fromStringList(result.errors)}};
}

QJsonObject Json(const Kind& kind) {
    QJsonObject json = VerdictJson(FindingsOf(kind));
    json["title"] = kind.title;
    json["data"] = kind.data;
    json["procedures"] = Array(kind.steps, [](const Step& step) { return Json(step); });
    json["mended"] = kind.mended;
    json["uncompared"] = Array(kind.uncompared, [](const Uncompared& each) {
        return QJsonObject{{"column", each.column}, {"cells", each.cells}, {"reason", each.reason}};
    });
    json["tables"] = Array(kind.tables, [](const TableFigures& table) { return Json(table); });
    return json;
}

/// What was found, without who looked and when.
QJsonObject FoundJson(const Proof& proof) {
    QJsonObject json = VerdictJson(FindingsOf(proof));
    json["company"] = proof.companyCode;
    json["origin"] = proof.origin;
    json["data"] = Array(proof.kinds, [](const Kind& kind) { return Json(kind); });
    json["openCodes"] = proof.openCodeCount;
    return json;
}

} // namespace

QJsonObject Json(const Proof& proof) {
    QJsonObject json = FoundJson(proof);
    json["source"] = proof.source;
    json["database"] = proof.database;
    json["started"] = proof.begun.toString(Qt::ISODate);
    json["ended"] = proof.ended.toString(Qt::ISODate);
    json["worker"] = proof.worker;
    json["version"] = proof.version;
    json["digest"] = Digest(proof);
    return json;
}

QString Digest(const Proof& proof) {
    const QByteArray found = QJsonDocument(FoundJson(proof)).toJson(QJsonDocument::Compact);
    return QString::fromLatin1(QCryptographicHash::hash(found, QCryptographicHash::Sha256).toHex());
}

} // namespace proof
