#pragma once

#include "sql/ovConnection.h"

/// Table and column of a source that "table.column" names; either may have points in its name.
inline std::pair<QString, QString> PartedColumn(ovConnection& source, const QString& name) {
    if (name.count('.') > 1) {
        for (const QString& table : source.GetTables()) {
            if (name.startsWith(table + '.', Qt::CaseInsensitive)) {
                return {table, name.mid(table.size() + 1)};
            }
        }
    }
    return {name.section('.', 0, -2), name.section('.', -1)};
}
