#pragma once

#include "sql/ovDatabase.h"

// Databases may take two codes for one that are two for whoever wrote them: the collations of some tell no "È" from
// "E" and no "ß" from "ss". What a row is found by tells whose it is: codes are compared in capitals, as they are
// written, and only where one of them has a letter beyond ASCII.

/// Whether two codes are one, in capitals and but for blanks at the end.
bool IsSameCode(const QString& left, const QString& right);

/// Whether the code of a row is the one that the row was looked for by. A value that is no text is.
bool IsCodeAsked(const QVariant& found, const QString& asked);

/// Steps to the next row, the one under way included, whose column has the code asked for; false when there is none.
bool StepToCode(Recordset& rows, QAnyStringView column, const QString& asked);

/// RECORD_ID of the first row of a table (bare name) that meets a condition (without WHERE), which compares a column
/// with a code, and has that code; 0 when there is none. Raises `SqlError`.
qint64 IdOfCode(ovDatabase& database, const QString& table, const QString& condition, const QString& column,
                const QString& code);

/// Whether a row has a code in a column in which each stands once. Raises `SqlError`, and `ImportError` naming both
/// where a row has another one that the database takes for it: it would refuse a second row, and change that one.
bool HasOwnCode(ovDatabase& database, const QString& table, const QString& column, const QString& code);

/// Raises the `ImportError` of `HasOwnCode` where the code of a row is not the one asked for.
void CheckCodeAsked(const QVariant& found, const QString& asked);
