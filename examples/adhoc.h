#pragma once

#include "examples/describedRules.h"

/// What the two products called Ad Hoc have in common: tables and columns bear the same names.
namespace examples::adhoc {

using namespace described;

qint64 Articles(const Options& options);
Rule ItemCode();
Rule ItemCost();
/// Customers and suppliers are numbered from 1 on, both.
Rule PartyCode();

/// Customers, suppliers and accounts, told apart by ANTIPCON.
Table PartyTable();
/// The directory of banks that counterparties have.
Table BankTable();
Table BranchTable();
/// Articles, and behind them sheets: each format is one.
Table ArticleTable();
/// What belongs to the articles in tables of their own, as the later product has it.
QVector<Table> TablesOfArticles();
QVector<Table> StockTables();

/// Translations of the codes in the tables.
void Prepare(QuadrixScript& script);

} // namespace examples::adhoc
