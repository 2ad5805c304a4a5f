#include "adapters/contract/run/Needs.h"

#include <QMap>
#include <QSet>

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

} // namespace

QStringList Missing(Session& session, const Needs& needs) {
    ColumnsByTable reads;
    ColumnsByTable writes;
    for (const Mapping* mapping : needs.mappings) {
        Add(reads, mapping->sourceTable, mapping->SourceColumns());
        Add(writes, mapping->targetTable, mapping->TargetColumns());
    }
    for (const TableNeed& need : needs.reads) {
        Add(reads, need.table, need.columns);
    }
    for (const TableNeed& need : needs.writes) {
        Add(writes, need.table, need.columns);
    }
    // Whatever is imported asks for translations, and a look-up that fails does not end it.
    Add(writes, QStringLiteral("SYS_IMP"), {"TBNAM", "TBFLD", "TBOLD", "TBNEW"});
    QStringList missing;
    if (!reads.isEmpty()) {
        AddMissing(missing, session.SourceConnection(), reads, QStringLiteral("origine"));
    }
    AddMissing(missing, session.Quadrix, writes, QStringLiteral("Quadrix"));
    return missing;
}

} // namespace contract
