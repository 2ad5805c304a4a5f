#pragma once

#include <QString>

/// What an INSERT, UPDATE or DELETE writes, read from its text.
namespace writtenParts {

/// Name of the table as it stands there, with its owner; empty for any other statement.
QString Table(const QString& statement);
/// Literal that an INSERT of one row or an UPDATE writes into a column, as it stands there; empty when it writes none,
/// or an expression.
QString Value(const QString& statement, const QString& column);

} // namespace writtenParts
