#pragma once

#include "core/Session.h"

/// Rows that hang on articles or counterparties by their codes, such as the attributes of the ones, the telephones of
/// the others. Where those go and such rows stay, whoever is given their codes next takes them over: what imports have
/// hung there therefore goes along, with the texts of articles by language, whoever has written them. Of a hand it is
/// told what goes and what stays, as are rows of other tables that name them, such as price lists and attachments. A
/// table that is not there has no rows. Everything raises `SqlError`.
namespace hangingRows {

/// What goes along when articles or counterparties are emptied, and what stays, in sentences; none when nothing hangs.
/// To be asked before anything goes: what stays is found by the rows that go.
/// @param going bare names of the tables that are emptied; those of others are not looked at
/// @param besides further tables that are emptied whole, by themselves
QStringList Texts(Session& session, const QStringList& going, const QStringList& besides = {});

/// The rows of other tables that name the articles or counterparties among those tables, in sentences; none without
/// such rows. To be asked before, as the other.
QStringList LeftTexts(Session& session, const QStringList& emptied);

/// Deletes what goes along, table by table, each told to the observer of the session before.
/// @param going bare names of the tables that were emptied whole
/// @return the tables (physical names) of which rows went
QList<RunResult::Emptied> Delete(Session& session, const QStringList& going);

} // namespace hangingRows
