#pragma once

#include "core/Session.h"

namespace contract {

/// A table of a company (bare name) as the other companies of the database have it, by its physical names. What hangs
/// on a record by its code alone in a table that all companies share, hangs on each record of that code.
/// Raises `SqlError`.
QStringList TablesOfOthers(Session& session, const QString& table);

/// The condition on rows of a shared table that hang on a record of this company and of no other.
/// @param column that holds the code of the record @param table of the records, bare name @param code its column
/// @param others see `TablesOfOthers`
QString OfThisCompanyAlone(const Session& session, const QString& column, const QString& table, const QString& code,
                           const QStringList& others);

} // namespace contract
