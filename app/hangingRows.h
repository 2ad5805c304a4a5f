#pragma once

#include "core/Session.h"

/// Rows that hang on counterparties by their codes, such as telephones and mail. Where the counterparties go and such
/// rows stay, whoever is given their codes next takes them over: what imports have hung there therefore goes along,
/// and what stays of a hand is told, as are rows of other tables that name the counterparties, such as the suppliers of
/// articles. Everything raises `SqlError`.
namespace hangingRows {

/// What goes along when those tables (bare names) are emptied, and what stays, in sentences; none when nothing hangs.
/// To be asked before: what stays is found by the counterparties that go.
QStringList Texts(Session& session, const QStringList& emptied);

/// The rows of other tables that name the counterparties among those tables, in a sentence; none without such rows.
/// To be asked before, as the other.
QStringList LeftTexts(Session& session, const QStringList& emptied);

/// Deletes what imports have hung there, table by table, each told to the observer of the session before.
/// @param emptied bare names of the tables that were emptied whole
/// @return the tables (physical names) of which rows went
QList<RunResult::Emptied> Delete(Session& session, const QStringList& emptied);

} // namespace hangingRows
