#pragma once

#include "sql/text/statementShape.h"

#include <QString>

/// What a MySQL or MariaDB server is given of a statement taken apart, whichever way it is reached.
namespace mySqlShape {

/// A statement taken apart, its values in the server's own words; its shape stays in those of SQL Server. Nothing is
/// taken out of a text that the server would read otherwise: one with "#", which begins a comment there, or with a
/// number that has an exponent, which is another one as a value. A number that comes from no text gets its digits.
StatementShape Of(StatementShape statement);
/// The shape in the server's own words.
QString Text(const StatementShape& source);
/// Whether a statement leaves tables and columns as they are, so that what is prepared stays good.
bool KeepsTables(const QString& statement);
/// Name of the table that an INSERT writes into, as it stands there; empty for any other statement.
QString InsertedTable(const StatementShape& source);

} // namespace mySqlShape
