#pragma once

#include "core/Session.h"

namespace contract {

/// The list of SYS_IMP that keeps the source codes of a company's counterparties that do not tell by COCGE or COFGE
/// alone whose they are: two customers of one VAT number are one counterparty, which has one customer's code; a code
/// that the source has given to somebody else is there twice. Its fields are those two columns.
QString JoinedPartyList(const Session& session);
/// CDCON of the counterparty that a source code of that list is of; empty when there is none.
/// @param column as `SourceCodeColumn`. Raises `SqlError`.
QString JoinedParty(Session& session, const QString& column, const QString& code);

} // namespace contract
