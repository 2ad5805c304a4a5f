#pragma once

#include "core/Session.h"

namespace contract {

/// The list of SYS_IMP that keeps the source codes of a company's counterparties that stand in no COCGE or COFGE: two
/// customers of one VAT number are one counterparty, which has one customer's code. Its fields are those two columns.
QString JoinedPartyList(const Session& session);

/// CDCON of the counterparty that a source code of that list became; empty when there is none.
/// @param column "COCGE" for a customer's code, "COFGE" for a supplier's. Raises `SqlError`.
QString JoinedParty(Session& session, const QString& column, const QString& code);

} // namespace contract
