#pragma once

#include "adapters/contract/map/rules.h"

/// Rules on the codes and marks that sources have in common.
namespace contract::rules {

/// Left out when the source columns hold a code that is none: blank or zero.
Rule NotZeroCode(const Rule& rule);
/// As the rule does for a blank where the code is zero, which stands for none in a column of numbers.
Rule ZeroAsBlank(const Rule& rule);
/// Null, so that the target is cleared, when the source columns are blank; a code that is told and has no translation
/// is left out as ever.
Rule ClearedWhenBlank(const Rule& rule);
/// The section of the balance sheet that a letter tells: "SP" for assets (A) and liabilities (P), "CE" for those of
/// profit and loss, empty for any other. @param economic the letters of profit and loss, such as "CR"
Rule BalanceSection(const QString& economic);
/// One of two values, as the source column is set or not in the way of `Flag`.
Rule FlagAs(const QVariant& set, const QVariant& otherwise);
/// The rate of a VAT code, 2 decimals. A blank one is 0, as exempt codes have it in most sources, and noted.
Rule VatRate();
/// As `PartyOf` by the code in the first source column: of a supplier where the last one begins with a mark, in any
/// case, else of a customer.
Rule PartyByMark(const QString& supplier);
/// CDCON of the counterparty that was imported from the code, of a customer, else of a supplier; left out when blank.
/// One that is not there is logged, and left out.
Rule KnownParty();

} // namespace contract::rules
