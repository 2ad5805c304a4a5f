#include "app/brokenReferences.h"

#include "core/italianText.h"
#include "core/Schema.h"
#include "sql/mod_ovTools.h"

#include <QMap>

namespace brokenReferences {

namespace {

/// By physical name the conditions on the rows that go; an empty one: all of them.
using Going = QMap<QString, QStringList>;

QString WhereGoing(const QStringList& conditions) {
    return conditions.contains(QString())
               ? QString()
               : QStringLiteral(" WHERE (%1)").arg(conditions.join(QStringLiteral(") OR (")));
}

/// The query that counts what one reference leaves. @param target physical name of the table of the codes
QString CountQuery(ovConnection& quadrix, const Reference& reference, const schema::Table& owner, const Going& going) {
    const QString table = quadrix.GetFullTableName(reference.table);
    const QString target = quadrix.GetFullTableName(owner.name);
    QString query = QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2 IN (SELECT %3 FROM %4%5)")
                        .arg(table, reference.column, reference.of, target, WhereGoing(going.value(target)));
    if (!reference.owner.isEmpty()) {
        query += QStringLiteral(" AND %1 = '%2'").arg(reference.owner, owner.name);
    }
    if (going.contains(table)) {
        query += QStringLiteral(" AND RECORD_ID NOT IN (SELECT RECORD_ID FROM %1%2)")
                     .arg(table, WhereGoing(going.value(table)));
    }
    return query;
}

} // namespace

std::vector<Reference> ReferencesTo(const QString& name) {
    std::vector<Reference> references;
    const schema::Table* target = schema::FindTable(name);
    for (const schema::Table& table : target == nullptr ? std::vector<schema::Table>() : schema::Tables()) {
        for (const schema::Column& column : table.columns) {
            if (!column.conditionColumn.isEmpty() && !target->CodeColumn().isEmpty()) {
                references.push_back({table.name, column.name, target->CodeColumn(), column.conditionColumn});
            } else if (column.conditionColumn.isEmpty() && column.refersTo == target->name) {
                references.push_back({table.name, column.name, column.refersToColumn, {}});
            }
        }
    }
    return references;
}

std::vector<Broken> LeftBy(Session& session, const std::vector<contract::RowsToDelete>& rows) {
    ovConnection& quadrix = session.Quadrix;
    Going going;
    for (const contract::RowsToDelete& each : rows) {
        going[each.table].append(each.where);
    }
    std::vector<Broken> broken;
    for (const schema::Table& table : schema::Tables()) {
        if (!going.contains(quadrix.GetFullTableName(table.name))) {
            continue;
        }
        for (const Reference& reference : ReferencesTo(table.name)) {
            const QString referring = quadrix.GetFullTableName(reference.table);
            if (going.value(referring).contains(QString())) { // it goes whole
                continue;
            }
            try {
                const qint64 count = quadrix.ExecuteCommand(CountQuery(quadrix, reference, table, going));
                if (count > 0) {
                    broken.push_back({referring, reference.column, count});
                }
            } catch (const Error&) { // as it is said of this
                continue;
            }
        }
    }
    return broken;
}

QString TextOf(const std::vector<Broken>& broken) {
    QStringList parts;
    for (const Broken& each : broken) {
        parts.append(QStringLiteral("%1 (%2): %3").arg(each.table, each.column, italian::NumberText(each.rows)));
    }
    return parts.join(QStringLiteral(", "));
}

} // namespace brokenReferences
