#include "app/brokenReferences.h"

#include "adapters/contract/write/Attachment.h"
#include "app/mergeRecord.h"
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

/// The query that counts what one reference leaves in a table (physical name).
QString CountQuery(ovConnection& quadrix, const Reference& reference, const QString& table, const schema::Table& owner,
                   const Going& going) {
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

/// What one reference leaves, table by table.
void AddLeft(ovConnection& quadrix, const Reference& reference, const schema::Table& owner, const QString& company,
             const Going& going, std::vector<Broken>& broken) {
    for (const QString& referring : ReferringTables(quadrix, reference, owner.name, company)) {
        if (going.value(referring).contains(QString())) { // it goes whole
            continue;
        }
        try {
            const qint64 count = quadrix.ExecuteCommand(CountQuery(quadrix, reference, referring, owner, going));
            if (count > 0) {
                const bool isOwn = owner.shared || referring == PhysicalName(reference.table, company);
                broken.push_back({referring, reference.column, count, !isOwn});
            }
        } catch (const Error&) { // as it is said of this
            continue;
        }
    }
}

/// What of the attachments hangs on a table, all companies' together; without it where none do. An undo does not look
/// at them: nobody can tell whose company's they are.
std::optional<Reference> AttachmentsOf(const schema::Table& table) {
    const QString code = contract::CodeOfRecords(table.name);
    return code.isEmpty() ? std::nullopt
                          : std::optional(Reference{QStringLiteral("SYS_ATT"), QStringLiteral("ATKEY"), code,
                                                    QStringLiteral("ATTBL")});
}

} // namespace

QString PhysicalName(const QString& table, const QString& company) {
    const schema::Table* known = schema::FindTable(table);
    return known == nullptr || known->shared ? table : QString(company + u'_' + table);
}

QStringList ReferringTables(ovConnection& quadrix, const Reference& reference, const QString& table,
                            const QString& company) {
    QStringList tables{PhysicalName(reference.table, company)};
    const schema::Table* known = schema::FindTable(table);
    if (known == nullptr || tables.first() == reference.table) {
        return tables;
    }
    const bool isMerged = table == merge::Master; // with those that were merged into it
    const QStringList merged = isMerged ? merge::MergedInto(quadrix, company) : QStringList();
    if (!known->shared && merged.isEmpty()) {
        return tables;
    }
    Recordset companies = quadrix.ExecuteWC(QStringLiteral("SELECT CDAZI FROM SYS_AZI ORDER BY CDAZI"));
    for (; !companies.Eof(); companies.MoveNext()) {
        const QString other = mod_ovTools::ToText(companies.Fields(0).Value()).trimmed();
        if (known->shared || merged.contains(other, Qt::CaseInsensitive)) {
            tables.append(PhysicalName(reference.table, other));
        }
    }
    tables.removeDuplicates();
    return tables;
}

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
            AddLeft(quadrix, reference, table, session.UserManager.Azienda(), going, broken);
        }
        if (const auto attachments = AttachmentsOf(table)) {
            AddLeft(quadrix, *attachments, table, session.UserManager.Azienda(), going, broken);
        }
    }
    return broken;
}

QString TextOf(const std::vector<Broken>& broken) {
    QStringList parts;
    for (const Broken& each : broken) {
        parts.append(QStringLiteral("%1 (%2): %3").arg(each.table, each.column, italian::NumberText(each.rows)));
    }
    const bool hasMerged =
        std::any_of(broken.begin(), broken.end(), [](const Broken& each) { return each.isOfMerged; });
    return parts.join(QStringLiteral(", ")) +
           (hasMerged ? u"; quelle di un'azienda fusa in questa restano giuste se da allora è stata ricaricata" : u"");
}

} // namespace brokenReferences
