#pragma once

#include "sql/engine.h"
#include "sql/engines/odbc/odbcConnection.h"

/// What an ODBC driver tells of the database behind it.
namespace odbc {

/// Databases that are spoken to in words of their own.
enum class Dbms { Other, SqlServer, MySql, Oracle };

/// What is said to a database in its own words.
struct DbmsWords {
    QString identity;   ///< query for the identity value that was given last
    QString withInsert; ///< query for it that goes along with the INSERT, which alone knows it; empty: `identity` does
    QString
        sequence;    ///< query for the sequence that numbers table %1; empty: the database tells by itself what it gave
    QString current; ///< query for the number that sequence %1 has given this session last
    QString mark;    ///< marks a point of the open transaction
    QString toMark;  ///< goes back to it
    QString stands;  ///< query that gives 1 while a transaction is open; empty: a failing statement ends none
    QString triggers; ///< switches the triggers of table %1, %2 being ENABLE or DISABLE; empty: there is no switch
};
DbmsWords WordsOf(Dbms dbms);

/// The database behind a connection.
Dbms DbmsOf(const OdbcConnection& connection);
/// Names of the tables and views that the connection sees. Raises `SqlError`.
QStringList Tables(const std::shared_ptr<OdbcConnection>& connection);
/// Columns of a table ("owner.table" too), in their order, with types in the words of SQL Server: ODBC gives their
/// kind, not the database's own text. Empty when the table does not exist. Raises `SqlError`.
QVector<ColumnInfo> Columns(const std::shared_ptr<OdbcConnection>& connection, const QString& table);

} // namespace odbc
