#include "adapters/contract/SourceRow.h"

#include "sql/mod_ovTools.h"

namespace contract {

QString SourceRow::Text(const QString& column) const { return mod_ovTools::ToText(Value(column)).trimmed(); }

QString NameOf(const SourceRow& row, const QString& table, const QString& keyColumn) {
    QString name = QStringLiteral("tabella '%1'").arg(table);
    static const QString recordNumber = QStringLiteral("_RECNO");
    if (row.HasColumn(recordNumber)) {
        name += QStringLiteral(", riga ") + row.Text(recordNumber);
    }
    return name + QStringLiteral(", %1 '%2'").arg(keyColumn, row.Text(keyColumn));
}

void ForEachChild(Session& session, const QString& query, const QString& table, const QString& keyColumn,
                  const std::function<void(const SourceRow&)>& work) {
    Recordset rows = session.SourceConnection().ExecuteWC(query);
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        try {
            work(row);
        } catch (ImportError& error) {
            error.AddContext(NameOf(row, table, keyColumn));
            throw;
        }
    }
}

} // namespace contract
