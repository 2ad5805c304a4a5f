#pragma once

#include "adapters/contract/map/rules.h"

namespace contract {

/// CDCON of the counterparty that was imported from a code of a customer or supplier, else of the one that it was
/// merged into (SYS_IMP, UNIFICATI); empty when there is none.
QString PartyOrSurvivor(Session& session, const QString& code, bool supplier);

namespace rules {

/// "Fornitore: ", the code and the name of the supplier that the first source column names, and the text of the other
/// columns on a line of its own; a supplier who is not there is logged, and left out.
/// @param table,naming table of the row and the columns, separated by ", ", that tell it in the log
Rule SupplierNote(const QString& table, const QString& naming);

} // namespace rules

} // namespace contract
