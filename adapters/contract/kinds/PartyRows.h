#pragma once

#include "adapters/contract/kinds/ImportTable.h"
#include "adapters/contract/kinds/Roles.h"
#include "adapters/contract/write/Counterparty.h"

namespace contract {

/// What hangs on a counterparty, in an import of its own.
enum class PartyRow { Branch, Contact };

/// An import of the branches or of the contact persons alone, whose counterparties are there. A row without a street
/// (the source of SEIND), or without a name (that of RFNOM), is none; one whose counterparty is not there is left out,
/// and logged. What hangs there already is not written again.
struct PartyRows {
    PartyRow kind = PartyRow::Branch;
    Frame frame = {};
    SourceTable source;
    RoleTeller roles; ///< a customer's code is looked for among customers, any other among suppliers
    QString owner;    ///< column with the code of the counterparty
    /// CDCON of the counterparty where more than that code tells it; blank: there is none, which its rule logs. Without
    /// it the code is looked for as the roles say.
    Field party = {};
    Lines lines = {}; ///< of CON_SED over the usual ones (destination of goods, Italy, not the default), or of CON_RIF
    NumberColumns numbers = {};
};

/// The declaration as part of a procedure, and what the procedure tells of itself: see `ProcedureOf`.
ImportPart PartOf(const PartyRows& declared);
Frame FrameOf(const PartyRows& declared);

} // namespace contract
