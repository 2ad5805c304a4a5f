#pragma once

#include "core/Schema.h"
#include "core/Session.h"

/// What the tables, columns and rows of Quadrix are called on the page.
namespace proof {

/// "Documenti di vendita" for "DOC_VEN"; a table without a name of its own keeps its bare one.
QString TableTitle(const QString& table);
/// "Imponibile" for "DTIMP"; a column without a name of its own keeps its code.
QString ColumnTitle(const QString& column);
/// A value as an Italian reads it: 1.234,5; 31/12/2024; Sì; empty for Null.
QString Shown(const schema::Column* column, const QVariant& value);

/// A value of a row by its column; Null for a column that the row lacks.
using ValueOf = std::function<QVariant(const QString& column)>;

/// What tells a row from others, that of the row it belongs to first: "DDT 117 2024 - 3 AB-01". The row it belongs to
/// is read. Raises `SqlError`.
QString RowTitle(Session& session, const schema::Table& table, const ValueOf& value);

} // namespace proof
