#include "sql/engines/odbc/odbcBounds.h"

#include "sql/engines/columnBounds.h"
#include "sql/text/catalogLiteral.h"

namespace odbc {

namespace {

/// Types of SQL Server by number: 231 and 239 have two bytes for each character; 189 is numbered by the server.
const QString OfSqlServer = QStringLiteral(
    "SELECT C.name, TYPE_NAME(C.system_type_id), "
    "CASE WHEN C.system_type_id IN (231, 239) THEN C.max_length / 2 ELSE C.max_length END, C.precision, C.scale, "
    "CASE WHEN C.is_nullable = 0 AND C.default_object_id = 0 AND C.is_identity = 0 AND C.is_computed = 0 "
    "AND C.system_type_id <> 189 AND COALESCE(COLUMNPROPERTY(C.object_id, C.name, 'GeneratedAlwaysType'), 0) = 0 "
    "THEN 1 ELSE 0 END "
    "FROM sys.columns AS C WHERE C.object_id = OBJECT_ID(N%1) ORDER BY C.column_id");

/// What Oracle numbers or computes has a default; a trigger may give a value to any column.
const QString OfOracle = QStringLiteral(
    "SELECT C.COLUMN_NAME, C.DATA_TYPE, C.CHAR_LENGTH, C.DATA_PRECISION, C.DATA_SCALE, "
    "CASE WHEN C.NULLABLE = 'N' AND C.DEFAULT_LENGTH IS NULL AND NOT EXISTS (SELECT 1 FROM USER_TRIGGERS T "
    "WHERE T.TABLE_NAME = C.TABLE_NAME AND T.TRIGGER_TYPE LIKE 'BEFORE%' AND T.TRIGGERING_EVENT LIKE '%INSERT%') "
    "THEN 1 ELSE 0 END "
    "FROM USER_TAB_COLUMNS C WHERE C.TABLE_NAME = UPPER(%1) ORDER BY C.COLUMN_ID");

/// A type with its sizes, as it is written: "decimal(12,2)". Those of other types say nothing.
QString Written(const QString& word, const QVariant& length, const QVariant& digits, const QVariant& decimals) {
    const auto is = [&word](const char* type) { return word.compare(QLatin1String(type), Qt::CaseInsensitive) == 0; };
    if (word.contains(u"char", Qt::CaseInsensitive)) { // -1: of any length
        return length.toInt() > 0 ? QStringLiteral("%1(%2)").arg(word, length.toString()) : word;
    }
    if ((is("decimal") || is("numeric") || is("number")) && !decimals.isNull()) {
        constexpr int most = 38;
        return QStringLiteral("%1(%2,%3)")
            .arg(word, QString::number(digits.isNull() ? most : digits.toInt()), QString::number(decimals.toInt()));
    }
    return is("float") ? QStringLiteral("%1(%2)").arg(word, digits.toString()) : word;
}

} // namespace

QString BoundsQuery(Dbms dbms, const QString& table) {
    QString query = dbms == Dbms::SqlServer ? OfSqlServer : dbms == Dbms::Oracle ? OfOracle : QString();
    return query.replace(QLatin1String("%1"), CatalogLiteral(table));
}

QVector<ColumnBounds> BoundsFrom(Cursor& rows) {
    QVector<ColumnBounds> all;
    while (rows.Next()) {
        ColumnBounds bounds = BoundsOf(rows.Value(0).toString(),
                                       Written(rows.Value(1).toString(), rows.Value(2), rows.Value(3), rows.Value(4)));
        bounds.isDemanded = rows.Value(5).toInt() != 0;
        all.append(bounds);
    }
    return all;
}

} // namespace odbc
