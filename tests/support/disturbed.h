#pragma once

#include "core/Schema.h"
#include "tests/support/TestTarget.h"

/// Changes amounts, texts and links of all rows that imports have written, so that the next import has them to put
/// right.
inline void Disturb(TestTarget& target) {
    for (const schema::Table& table : schema::Tables()) {
        QStringList changes;
        for (const schema::Column& column : table.columns) {
            if (table.name == "SYS_IMP" || table.key.contains(column.name)) {
                continue;
            }
            if (column.type == DataType::Double) {
                changes.append(column.name + " = COALESCE(" + column.name + ", 0) + 1");
            } else if (column.words || column.name == "NRNUM" || column.name == "LNTXT") {
                changes.append(column.name + " = 'Altro'");
            } else if (column.name == "IDDBF") {
                changes.append(column.name + " = Null");
            }
        }
        const QString name = target.Db().GetFullTableName(table.name);
        if (!changes.isEmpty() && !target.Db().GetColumns(name).isEmpty()) {
            target.Execute("UPDATE " + name + " SET " + changes.join(", ") + " WHERE USINS = 'SYSTEM_IMPORT'");
        }
    }
}
