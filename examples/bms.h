#pragma once

#include "examples/plainTables.h"

/// What the files of the example of BMS share.
namespace examples::bms {

using namespace described;

inline const QVariantList Terms{"RB30", "RB60", "BON"};

inline Rule CustomerCode() { return Code("C", 5); }
inline Rule SupplierCode() { return Code("F", 5); }
inline Rule YesOrNo(int percent) { return Chance(percent, Fixed(Yes), Fixed(No)); }

QVector<Table> ArticleTables();
QVector<Table> BillTables();
QVector<Table> OrderTables();
QVector<Table> PriceTables();

} // namespace examples::bms
