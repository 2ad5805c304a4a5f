#include "sql/ovDatabase.h"

#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"
#include "sql/variantText.h"

namespace {

/// The kind a value has by itself, for comparing it in a condition.
DataType TypeOf(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
        return DataType::Bit;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return DataType::Long;
    case QMetaType::Double:
    case QMetaType::Float:
        return DataType::Double;
    case QMetaType::QDate:
    case QMetaType::QDateTime:
        return DataType::DateTime;
    default:
        return DataType::VarChar;
    }
}

struct TypeWord {
    const char* start; ///< how the database's type begins
    const char* keyword;
};

/// Longer words first: the first that a type begins with counts.
constexpr TypeWord TypeWords[] = {
    {"DATETIME", "datetime"},
    {"TIMESTAMP", "datetime"},
    {"SMALLDATETIME", "datetime"},
    {"DATE", "datetime"},
    {"NVARCHAR", "char"},
    {"VARCHAR", "char"},
    {"NCHAR", "char"},
    {"CHAR", "char"},
    {"NTEXT", "memo"},
    {"LONGTEXT", "memo"},
    {"TINYTEXT", "memo"},
    {"MEDIUMTEXT", "memo"},
    {"TEXT", "memo"},
    {"MEMO", "memo"},
    {"BIGINT", "long"},
    {"INT", "integer"},
    {"SMALLINT", "integer"},
    {"TINYINT(1)", "bit"},
    {"TINYINT", "integer"},
    {"BIT", "bit"},
    {"FLOAT", "double"},
    {"DOUBLE", "double"},
    {"REAL", "double"},
    {"NUMERIC", "double"},
    {"DECIMAL", "double"},
    {"MONEY", "double"},
    {"IMAGE", "object"},
    {"LONGBLOB", "object"},
    {"BLOB", "object"},
    {"VARBINARY", "object"},
};

/// A column of the rows of a key, and the key as they have it.
SqlText SelectBy(const ovDatabase& database, const QString& table, const QString& column, const QString& keyColumn,
                 const QVariant& key, DataType type) {
    SqlText query(database.GetProviderType());
    query += u"SELECT ";
    query += column;
    if (column != keyColumn) {
        query += u", ";
        query += keyColumn;
    }
    query += u" FROM ";
    query += database.GetFullTableName(table);
    query += u" WHERE ";
    query += keyColumn;
    query += u" = ";
    return query.Add(TextAsIs(key), type);
}

/// Whether one of the rows, which then stand on it, has the key asked for.
bool HasKey(Recordset& rows, const QString& keyColumn, const QVariant& key) {
    return key.typeId() == QMetaType::QString ? StepToCode(rows, keyColumn, key.toString()) : !rows.Eof();
}

} // namespace

QVariant ovDatabase::GetDbValue(const QString& table, const QString& keyColumn, const QVariant& keyValue,
                                const QString& column, const QVariant& defaultValue) {
    if (keyValue.typeId() == QMetaType::QString && IsAbsent(table, keyColumn, keyValue.toString())) {
        return defaultValue;
    }
    Recordset rows = ExecuteWC(SelectBy(*this, table, column, keyColumn, keyValue, TypeOf(keyValue)));
    return HasKey(rows, keyColumn, keyValue) ? rows.Fields(0).Value() : defaultValue;
}

bool ovDatabase::CheckExistValue(const QString& table, const QString& column, const QVariant& value, DataType type) {
    const bool isKnown = value.typeId() == QMetaType::QString && IsAbsent(table, column, value.toString());
    if (isKnown) {
        return false;
    }
    Recordset rows = ExecuteWC(SelectBy(*this, table, column, column, value, type));
    return HasKey(rows, column, value);
}

QVariant ovDatabase::GetMaxValue(const QString& table, const QString& column, const QString& where,
                                 const QVariant& defaultValue) {
    QString query = QStringLiteral("SELECT MAX(") + column + QStringLiteral(") FROM ") + GetFullTableName(table);
    if (!where.isEmpty()) {
        query += u' ' + where;
    }
    const Recordset rows = ExecuteWC(query);
    const QVariant largest = rows.Eof() ? QVariant() : rows.Fields(0).Value();
    return largest.isNull() ? defaultValue : largest;
}

QString ovDatabase::GetFieldTypeText(const QString& table, const QString& column, const QString& defaultText) {
    for (const ColumnInfo& info : GetColumns(GetFullTableName(table))) {
        if (info.name.compare(column, Qt::CaseInsensitive) != 0) {
            continue;
        }
        for (const TypeWord& word : TypeWords) {
            if (info.type.startsWith(QLatin1String(word.start), Qt::CaseInsensitive)) {
                return QString::fromLatin1(word.keyword);
            }
        }
    }
    return defaultText;
}

TableInfo ovDatabase::GetTableInfo(const QString& table) {
    TableInfo info;
    info.columns = GetColumns(GetFullTableName(table));
    // A shared list TAB_IVA keeps its code in CDIVA, a company's master CON_TRO in CDCON.
    const QString bare = table.right(7).toUpper();
    const bool shared = bare.startsWith(QLatin1String("TAB_")) || bare.startsWith(QLatin1String("SYS_"));
    const QString code = QStringLiteral("CD") + (shared ? bare.mid(4) : bare.left(3));
    for (const ColumnInfo& column : info.columns) {
        if (column.name.compare(code, Qt::CaseInsensitive) == 0) {
            info.keyColumn = code;
        }
    }
    return info;
}

void ovDatabase::AlterTriggersStatus(const QString& fullTableName, bool enabled) {
    Execute(QStringLiteral("ALTER TABLE ") + fullTableName +
            (enabled ? QStringLiteral(" ENABLE TRIGGER ALL") : QStringLiteral(" DISABLE TRIGGER ALL")));
}
