#pragma once

#include "core/Session.h"

/// Rows that hang on counterparties by their codes, such as telephones and mail. Where the counterparties go and such
/// rows stay, whoever is given their codes next takes them over: what imports have hung there therefore goes along,
/// and what stays of a hand is told. Everything raises `SqlError`.
namespace hangingRows {

/// What goes along when those tables (bare names) are emptied, and what stays, in sentences; none when nothing hangs.
QStringList Texts(Session& session, const QStringList& emptied);

/// Deletes what imports have hung there, table by table, each told to the observer of the session before.
/// @param emptied bare names of the tables that were emptied whole
/// @return the tables (physical names) of which rows went
QList<RunResult::Emptied> Delete(Session& session, const QStringList& emptied);

} // namespace hangingRows
