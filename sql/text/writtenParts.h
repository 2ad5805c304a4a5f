#pragma once

#include <QString>

/// What an INSERT, UPDATE or DELETE writes, read from its text.
namespace writtenParts {

/// How a statement writes a column.
struct Writing {
    enum class Kind {
        None,    ///< it does not
        Literal, ///< one literal, in each row
        Unclear  ///< an expression, the rows of a query, or what is not understood
    };
    Kind kind = Kind::None;
    QString literal = {}; ///< as it stands there, with its minus
};

/// How an INSERT or UPDATE writes a column (a name without quotes). An INSERT does not write the columns that it does
/// not name.
Writing Of(const QString& statement, const QString& column);
/// The table of an INSERT or UPDATE of one table, without owner and quotes; empty when the statement has another form.
QString TableName(const QString& statement);
/// Name of the table as it stands there, with its owner; empty for any other statement.
QString Table(const QString& statement);
/// Literal that an INSERT of one row or an UPDATE writes into a column, as it stands there; empty when it writes none,
/// or an expression.
QString Value(const QString& statement, const QString& column);

} // namespace writtenParts
