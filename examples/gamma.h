#pragma once

#include "examples/describedRules.h"

/// What the files of the example of Gamma share.
namespace examples::gamma {

using namespace described;

inline Rule No() { return Fixed(0); }
inline Rule NewYear(int year) { return Fixed(QDate(year, 1, 1)); }

/// The columns that every table begins with: the company; and the counterparty.
Field Company(const QByteArray& table);
QVector<Field> Owner(const QByteArray& table, const Rule& side, const Rule& code);

QVector<Table> ArticleTables();
QVector<Table> PriceTables();
QVector<Table> BillTables();
/// What the CSV file of tubes holds.
Table TubeTable();

} // namespace examples::gamma
