#pragma once

#include "adapters/contract/write/CounterpartyRegister.h"

namespace contract {

// A carrier has no column for its code of the source, as customers and suppliers have: SYS_IMP tells what became of it.

/// Finds the counterparty of a carrier: the one with its VAT number; else the one that SYS_IMP tells; else the next
/// free code. Raises as the register does.
Placement PlaceCarrier(ImportRun& run, const CounterpartyRegister& parties, const SourceIdentity& source);

/// Stores in SYS_IMP what became of a carrier, unless it stands there.
void RememberCarrier(ImportRun& run, const SourceIdentity& source, const QString& code);

} // namespace contract
