#pragma once

#include "app/inspect.h"
#include "sources/layout/LayoutEdit.h"

namespace inspection {

/// The text of a layout file with a comment for each table and column that is missing: the name that is suggested for
/// it, or none, and why. What stands in the text stays, and nothing of the draft counts before its ";" is taken away.
QString Draft(const Inspection& inspection, const QString& text);

/// Writes the draft into the layout file of what was looked at. Raises `ImportError`.
void WriteDraft(const Inspection& inspection);

/// Changes the layout file of the origin whose source is open. Where the file would then stop an import it is put back
/// as it was, and what is wrong is returned; empty when all is well. Of a file that is chosen for each import the
/// tables of other files count where the change is theirs. Raises `ImportError` when it cannot be written.
QString ChangeLayout(Session& session, const contract::Origin& origin,
                     const std::function<void(sources::LayoutEdit&)>& change);

/// The same with names for what is missing. @param names those of the source by table, and by "table.column"; an empty
/// one says that the source does not have the column
QString TakeNames(Session& session, const contract::Origin& origin, const QMap<QString, QString>& names);

/// All that is proposed for what is missing: names of the source by table, and by "table.column".
QMap<QString, QString> ProposedNames(const Inspection& inspection);
/// Of those the names that are equal but for case, blanks and signs: they need not be looked through.
QMap<QString, QString> EqualNames(const Inspection& inspection);

} // namespace inspection
