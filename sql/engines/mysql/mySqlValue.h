#pragma once

#include <QVariant>

struct st_mysql_field;
struct st_mysql_stmt;

/// Values of a MySQL or MariaDB server as the program has them; a null variant is the database's Null.
namespace mySqlValue {

/// A value that came as a text.
QVariant OfText(const QByteArray& bytes, const st_mysql_field& field);
/// Whether a prepared statement gives a column the value that its text would give; a FLOAT it does not, which the
/// server rounds to six digits in a text.
bool IsSamePrepared(const st_mysql_field& field);
/// The value of a column (from 0) of the row of a prepared statement.
QVariant OfRow(st_mysql_stmt* statement, unsigned column, const st_mysql_field& field);

} // namespace mySqlValue
