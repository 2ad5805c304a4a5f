#pragma once

#include "core/Session.h"

/// Which database of Quadrix a run has written to: the settings may name another one by now.
namespace history {

struct WrittenDatabase {
    QString place;       ///< its file, or its server and name; empty: it is not known
    qint64 identity = 0; ///< within a file: what tells it from another one that was there before; 0: it has none
};

/// The database of an open connection. Raises `SqlError`.
WrittenDatabase DatabaseOf(ovConnection& quadrix);
/// Gives a file that has no identity yet one, in its header (`application_id` of SQLite): no table is touched. Raises
/// `SqlError`.
void Identify(ovConnection& quadrix);
/// Whether two are one; what is not known does not tell them apart.
bool AreOne(const WrittenDatabase& a, const WrittenDatabase& b);

/// The number of a database in the file of a history; 0: no run there has written to it. Raises `SqlError`.
qint64 NumberOf(ovConnection& file, const WrittenDatabase& database);
/// The same, added where it is missing.
qint64 KeptNumberOf(ovConnection& file, const WrittenDatabase& database);

/// A condition on runs (table `runs`, by its alias in the query): that they have written to the database of that
/// number, or that it is not known to which. 0: all of them have.
QString WroteTo(qint64 database, const QString& runs);

} // namespace history
