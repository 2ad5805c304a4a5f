#pragma once

#include "app/inspect.h"

namespace inspection {

/// What the columns of tables are called in other layout files: names of the source by logical name in upper case.
using NamesBefore = QMultiHash<QString, QString>;

/// The names in all layout files of a folder; a file that cannot be read has none. Tables stand under their name,
/// columns under their name alone.
NamesBefore ReadNamesBefore(const QString& folder);

/// The names of the source that are found, or proposed, for the columns of all tables but one: by logical name in upper
/// case.
NamesBefore NamesNow(const std::vector<Table>& tables, const Table& but);

/// Gives each missing column of a table its suggestions from what stands in `own`. A column of the source that another
/// one is read from is not suggested, nor is one whose values contradict the field. @param now those of other tables:
/// a code is mostly called the same in each
void SuggestColumns(Table& table, const NamesBefore& before, const NamesBefore& now);

/// The tables of the source that may be a table that is read, the surest first. @param columns those of each table of
/// the source, by its name
std::vector<Suggestion> TablesFor(const Table& table, const QMap<QString, QStringList>& columns,
                                  const NamesBefore& before);

/// A table of the source is suggested first for one logical table alone, on the surest ground, and among equals for the
/// one of which it has most columns; for others it is not suggested for its columns or a likeness.
void TellTablesApart(std::vector<Table>& tables);

} // namespace inspection
