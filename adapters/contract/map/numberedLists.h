#pragma once

#include "adapters/contract/map/rules.h"

/// Rules on the codes of price lists: SYS_IMP tells the one that Quadrix has for each (codicilistino, origin).
namespace contract::rules {

/// CDLIS of a price list: the number that SYS_IMP tells; a code without one is given the number behind the highest,
/// which no list of Quadrix has, and it is kept in SYS_IMP. Where an import has given it in another company and a list
/// of a hand has it in this one, the company gets a number of its own, which the log tells. Left out when blank.
/// @param origin field of SYS_IMP
Rule NumberedList(const QString& origin);

/// CDLIS of the list that a counterparty has: the number that SYS_IMP tells; without one as `Translated`, by table and
/// field.
Rule ListOfParty(const QString& origin, const QString& table, const QString& field);

/// CDLIS of a price list that keeps its code, unless SYS_IMP tells another. Left out when blank.
Rule KeptList(const QString& origin);

} // namespace contract::rules
