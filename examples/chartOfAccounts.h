#pragma once

#include "examples/describedRules.h"

/// A small chart of accounts: ledgers, each with so many accounts behind it.
namespace examples::described::chart {

inline constexpr qint64 Ledgers = 9;
inline constexpr qint64 AccountsOfLedger = 4;
inline constexpr qint64 Accounts = Ledgers * AccountsOfLedger;

Rule LedgerText();
Rule AccountText();
/// By the section of the balance that a ledger belongs to.
Rule BySection(const QVariant& assets, const QVariant& liabilities, const QVariant& costs, const QVariant& revenues);

} // namespace examples::described::chart
