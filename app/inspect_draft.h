#pragma once

#include "app/inspect.h"

namespace inspection {

/// The text of a layout file with a comment for each table and column that is missing: the name that is suggested for
/// it, or none, and why. What stands in the text stays, and nothing of the draft counts before its ";" is taken away.
QString Draft(const Inspection& inspection, const QString& text);

/// Writes the draft into the layout file of what was looked at. Raises `ImportError`.
void WriteDraft(const Inspection& inspection);

/// Takes names for what is missing: writes them into the layout file, so that they count. @param names those of the
/// source by table, and by "table.column"; an empty one says that the source does not have the column
void TakeNames(const Inspection& inspection, const QMap<QString, QString>& names);

/// All that is proposed for what is missing: names of the source by table, and by "table.column".
QMap<QString, QString> ProposedNames(const Inspection& inspection);

} // namespace inspection
