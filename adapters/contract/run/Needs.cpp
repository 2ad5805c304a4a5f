#include "adapters/contract/run/Needs.h"

#include <QMap>
#include <QSet>

#include <algorithm>

namespace contract {

namespace {

using ColumnsByTable = QMap<QString, QStringList>;

void Add(ColumnsByTable& tables, const QString& table, const QStringList& columns) {
    tables[table] += columns;
    tables[table].removeDuplicates();
}

void AddMissing(QStringList& missing, ovConnection& connection, const ColumnsByTable& tables, const QString& where) {
    for (auto need = tables.cbegin(); need != tables.cend(); ++need) {
        const QString table = connection.GetFullTableName(need.key());
        QSet<QString> present;
        for (const ColumnInfo& column : connection.GetColumns(table)) {
            present.insert(column.name.toUpper());
        }
        if (present.isEmpty()) {
            missing.append(QStringLiteral("%1: tabella '%2'").arg(where, table));
            continue;
        }
        for (const QString& column : need.value()) {
            if (!present.contains(column.toUpper())) {
                missing.append(QStringLiteral("%1: colonna '%2.%3'").arg(where, table, column));
            }
        }
    }
}

/// Tables whose triggers are switched off together while rows of one of them are written.
const QVector<QStringList>& SwitchedTogether() {
    static const QVector<QStringList> groups{{"DOC_VER", "DOC_ACR", "DOC_CTR"}, {"ORD_COM", "ORD_FAS", "ORD_PRO"}};
    return groups;
}

/// Rights that the user of the target lacks; a table that is not there has been told.
void AddLackingRights(QStringList& missing, ovConnection& target, const ColumnsByTable& tables,
                      const QSet<QString>& written) {
    const auto add = [&missing](const QStringList& lines) {
        for (const QString& line : lines) {
            missing.append(QStringLiteral("Quadrix: ") + line);
        }
    };
    for (auto need = tables.cbegin(); need != tables.cend(); ++need) {
        const QString table = target.GetFullTableName(need.key());
        add(target.LackingRights(table, need.value().value(0), written.contains(need.key())));
    }
    for (const QStringList& group : SwitchedTogether()) {
        if (std::any_of(group.begin(), group.end(), [&](const QString& table) { return written.contains(table); })) {
            for (const QString& table : group) {
                add(target.TriggerObstacles(target.GetFullTableName(table)));
            }
        }
    }
}

} // namespace

QStringList Missing(Session& session, const Needs& needs) {
    ColumnsByTable reads;
    ColumnsByTable writes;
    QSet<QString> written;
    for (const Mapping* mapping : needs.mappings) {
        Add(reads, mapping->sourceTable, mapping->SourceColumns());
        Add(writes, mapping->targetTable, mapping->TargetColumns());
        written.insert(mapping->targetTable);
    }
    for (const TableNeed& need : needs.reads) {
        Add(reads, need.table, need.columns);
    }
    for (const TableNeed& need : needs.writes) {
        Add(writes, need.table, need.columns);
        if (need.isWritten) {
            written.insert(need.table);
        }
    }
    // Whatever is imported asks for translations, and a look-up that fails does not end it.
    Add(writes, QStringLiteral("SYS_IMP"), {"TBNAM", "TBFLD", "TBOLD", "TBNEW"});
    QStringList missing;
    if (!reads.isEmpty()) {
        AddMissing(missing, session.SourceConnection(), reads, QStringLiteral("origine"));
    }
    AddMissing(missing, session.Quadrix, writes, QStringLiteral("Quadrix"));
    AddLackingRights(missing, session.Quadrix, writes, written);
    return missing;
}

} // namespace contract
