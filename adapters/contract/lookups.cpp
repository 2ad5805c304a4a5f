#include "adapters/contract/lookups.h"

#include "sql/mod_ovTools.h"

namespace contract {

QString LookUp(Session& session, const QString& table, const QString& keyColumn, const QString& keyValue,
               const QString& column) {
    return mod_ovTools::ToText(session.Quadrix.GetDbValue(table, keyColumn, keyValue, column)).trimmed();
}

qint64 IdWhere(Session& session, const QString& table, const QString& condition) {
    return session.Quadrix.ExecuteCommand(QStringLiteral("SELECT RECORD_ID FROM ") +
                                          session.Quadrix.GetFullTableName(table) + QStringLiteral(" WHERE ") +
                                          condition);
}

qint64 LastId(Session& session, const QString& table) {
    return session.Quadrix.ExecuteCommand(QStringLiteral("SELECT MAX(RECORD_ID) FROM ") +
                                          session.Quadrix.GetFullTableName(table));
}

QString Equals(const Session& session, const QString& column, const QString& text) {
    return column + QStringLiteral(" = ") +
           mod_ovTools::FormatSqlValue(text, DataType::NVarChar, session.Quadrix.ProviderType);
}

QString Equals(const QString& column, qint64 number) {
    return column + QStringLiteral(" = ") + QString::number(number);
}

bool IsThere(Session& session, const QString& table, const QString& column, const QString& value) {
    return session.Quadrix.CheckExistValue(table, column, value);
}

} // namespace contract
