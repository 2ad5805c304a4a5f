#include "sql/engines/odbc/odbcCatalog.h"

#include "sql/engines/odbc/odbcStatement.h"

namespace odbc {

namespace {

/// A name as the catalog functions of the API take it; null for any.
SQLWCHAR* OrAny(const QString& name) { return name.isEmpty() ? nullptr : Wide(name); }
SQLSMALLINT Length(const QString& name) { return static_cast<SQLSMALLINT>(name.size()); }

/// Names of the tables of one kind, as ODBC calls them ("TABLE", "VIEW").
QStringList TablesOf(const std::shared_ptr<OdbcConnection>& connection, const QString& kind) {
    constexpr int NameColumn = 2;
    OdbcStatement rows(connection);
    rows.Run(QStringLiteral("SQLTables"), [&kind](SQLHSTMT statement) {
        return SQLTablesW(statement, nullptr, 0, nullptr, 0, nullptr, 0, Wide(kind), Length(kind));
    });
    QStringList names;
    while (rows.Fetch()) {
        names.append(rows.Value(NameColumn).toString());
    }
    return names;
}

/// The type in the words of SQL Server.
QString TypeText(int type, int size) {
    switch (KindOf(type, false, TextForm::Wide)) {
    case ValueKind::Bit:
        return QStringLiteral("BIT");
    case ValueKind::Integer:
    case ValueKind::UnsignedInteger:
        return QStringLiteral("INT");
    case ValueKind::Big:
    case ValueKind::UnsignedBig:
        return QStringLiteral("BIGINT");
    case ValueKind::Real:
    case ValueKind::Decimal:
        return QStringLiteral("FLOAT");
    case ValueKind::Date:
    case ValueKind::Moment:
        return QStringLiteral("DATETIME");
    case ValueKind::Bytes:
        return QStringLiteral("IMAGE");
    case ValueKind::Text:
    case ValueKind::NarrowText:
    case ValueKind::Time:
        break;
    }
    return QStringLiteral("NVARCHAR(%1)").arg(size);
}

/// A name as the database keeps one that was not quoted.
QString AsKept(const OdbcConnection& connection, const QString& name) {
    switch (connection.InfoWord(SQL_IDENTIFIER_CASE)) {
    case SQL_IC_UPPER:
        return name.toUpper();
    case SQL_IC_LOWER:
        return name.toLower();
    default:
        return name;
    }
}

} // namespace

DbmsWords WordsOf(Dbms dbms) {
    DbmsWords words;
    words.identity = QStringLiteral("SELECT @@IDENTITY");
    words.mark = QStringLiteral("SAVEPOINT QDX_ROW");
    words.toMark = QStringLiteral("ROLLBACK TO SAVEPOINT QDX_ROW");
    switch (dbms) {
    case Dbms::SqlServer:
        // What a trigger inserts elsewhere does not count, nor what others do.
        words.withInsert = QStringLiteral("SELECT CAST(SCOPE_IDENTITY() AS bigint)");
        // There is no transaction before the first statement that needs one.
        words.mark = QStringLiteral("IF @@TRANCOUNT > 0 SAVE TRANSACTION QDX_ROW");
        words.toMark = QStringLiteral("ROLLBACK TRANSACTION QDX_ROW");
        words.stands = QStringLiteral("SELECT XACT_STATE()");
        words.triggers = QStringLiteral("ALTER TABLE %1 %2 TRIGGER ALL");
        break;
    case Dbms::Oracle:
        // Each identity column has a sequence of its own; what a trigger inserts elsewhere does not move it.
        words.sequence =
            QStringLiteral("SELECT SEQUENCE_NAME FROM USER_TAB_IDENTITY_COLS WHERE TABLE_NAME = UPPER('%1')");
        words.current = QStringLiteral("SELECT \"%1\".CURRVAL FROM DUAL");
        words.triggers = QStringLiteral("ALTER TABLE %1 %2 ALL TRIGGERS");
        break;
    case Dbms::MySql:
        words.identity = QStringLiteral("SELECT LAST_INSERT_ID()");
        words.stands = QStringLiteral("SELECT @@in_transaction");
        break;
    case Dbms::Other:
        break;
    }
    return words;
}

Dbms DbmsOf(const OdbcConnection& connection) {
    const QString name = connection.Info(SQL_DBMS_NAME);
    const auto says = [&name](const char* word) { return name.contains(QLatin1String(word), Qt::CaseInsensitive); };
    if (says("Microsoft SQL Server")) {
        return Dbms::SqlServer;
    }
    if (says("MySQL") || says("MariaDB")) {
        return Dbms::MySql;
    }
    return says("Oracle") ? Dbms::Oracle : Dbms::Other;
}

QStringList Tables(const std::shared_ptr<OdbcConnection>& connection) {
    return TablesOf(connection, QStringLiteral("TABLE")) + TablesOf(connection, QStringLiteral("VIEW"));
}

QVector<ColumnInfo> Columns(const std::shared_ptr<OdbcConnection>& connection, const QString& table) {
    constexpr int NameColumn = 3;
    constexpr int TypeColumn = 4;
    constexpr int SizeColumn = 6;
    const QString kept = AsKept(*connection, table);
    const QString owner = kept.contains(u'.') ? kept.section(u'.', -2, -2) : QString();
    const QString name = kept.section(u'.', -1);
    OdbcStatement rows(connection);
    rows.Run(QStringLiteral("SQLColumns"), [&](SQLHSTMT statement) {
        return SQLColumnsW(statement, nullptr, 0, OrAny(owner), Length(owner), Wide(name), Length(name), nullptr, 0);
    });
    QVector<ColumnInfo> columns;
    while (rows.Fetch()) {
        const QString column = rows.Value(NameColumn).toString();
        const int type = rows.Value(TypeColumn).toInt();
        columns.append({column, TypeText(type, rows.Value(SizeColumn).toInt())});
    }
    return columns;
}

} // namespace odbc
