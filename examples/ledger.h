#pragma once

#include "examples/describedRules.h"

/// What the ledgers of many programs keep alike, each under names of its own: counterparties, articles and prices.
namespace examples::ledger {

using namespace described;

/// The columns of a table of customers and suppliers; it has none without a name.
struct PartyNames {
    QByteArray name;
    QByteArray name2 = {};
    QByteArray isPerson = {};
    QByteArray surname = {};
    QByteArray firstName = {};
    QByteArray street = {};
    QByteArray houseNumber = {}; ///< without it the street has it
    QByteArray postCode = {};
    QByteArray town = {};
    QByteArray province = {};
    QByteArray country = {};
    QByteArray vatNumber = {};
    QByteArray taxCode = {};
    QByteArray office = {};
    QByteArray office2 = {};
    QByteArray fax = {};
    QByteArray mobile = {};
    QByteArray mail = {};
    QByteArray certifiedMail = {};
    QByteArray web = {};
    QByteArray contact = {};
    QByteArray payment = {};
    QByteArray ownBank = {};
    QByteArray abi = {};
    QByteArray cab = {};
    QByteArray cin = {};
    QByteArray account = {};
    QByteArray iban = {};
    QByteArray bic = {};
    QByteArray discount1 = {};
    QByteArray discount2 = {};
    QByteArray agent = {};
    QByteArray list = {};
    QByteArray currency = {};
    QByteArray language = {};
    QByteArray zone = {};
    QByteArray category = {};
    QByteArray exemption = {};
    QByteArray port = {};
    QByteArray carrier = {};
    QByteArray credit = {};
    QByteArray ledger = {};
    QByteArray isBlocked = {};
    QByteArray isCancelled = {};
    QByteArray note = {};
    QByteArray created = {};
};
/// The columns but for the code, of a table that has the suppliers behind the customers.
/// @param table tells the addresses of one table from those of another
QVector<Field> PartyColumns(const QByteArray& table, const PartyNames& names);
/// Tells Quadrix the codes of these columns, and a bank of the company.
void PrepareParties(QuadrixScript& script, const QString& table, const PartyNames& names, const Options& options);

/// So many customers and suppliers whom another origin has brought, for sources without any. @param code in the source
void PrepareCustomers(QuadrixScript& script, qint64 count, const Rule& code, const Options& options);
void PrepareSuppliers(QuadrixScript& script, qint64 count, const Rule& code, const Options& options);

/// The columns of a table of articles; it has none without a name.
struct ArticleNames {
    QByteArray description = {};
    QByteArray description2 = {};
    QByteArray longText = {};
    QByteArray unit = {};
    QByteArray unit2 = {};
    QByteArray factor = {};
    QByteArray vatCode = {};
    QByteArray kind = {};
    QString product = {}; ///< what the kind of a product is; others are "M"
    QByteArray family = {};
    QByteArray lastCost = {};
    QByteArray standardCost = {};
    QByteArray price = {};
    QByteArray discount = {};
    QByteArray netWeight = {};
    QByteArray grossWeight = {};
    QByteArray lowestStock = {};
    QByteArray highestStock = {};
    QByteArray reorderPoint = {};
    QByteArray lowestOrder = {};
    QByteArray lot = {};
    QByteArray leadDays = {};
    QByteArray supplier = {};
    QByteArray supplierCode = {};
    QByteArray barCode = {};
    QByteArray location = {};
    QByteArray length = {};
    QByteArray width = {};
    QByteArray thickness = {};
    QByteArray isCancelled = {};
    QByteArray note = {};
    QByteArray created = {};
};
/// What an article costs and is sold for, by its number, wherever it stands.
Rule Cost();
Rule SalesPrice();
/// The columns but for the code. @param supplier the code of a supplier, by its number among the suppliers
QVector<Field> ArticleColumns(const ArticleNames& names, const Rule& supplier);
void PrepareArticles(QuadrixScript& script, const QString& table, const ArticleNames& names);

/// The lists of a table of prices: sales, purchase and those made for somebody.
inline const QString SalesList = QStringLiteral("L1");
inline const QString PurchaseList = QStringLiteral("A1");
inline const QString SpecialList = QStringLiteral("P1");

/// The columns of a table of prices.
struct PriceNames {
    QByteArray list;
    QByteArray article;
    QByteArray from;
    QByteArray to;
    QByteArray quantity;
    QByteArray price;
    QByteArray discount1;
    QByteArray discount2;
    QByteArray discount3;
};
/// A sales price, one for quantities and a purchase price of each article; behind them special ones of some.
QVector<Field> PriceColumns(const PriceNames& names, const Count& articles, const Rule& article);
qint64 PriceRows(const Count& articles, const Options& options);
/// One rule for each of the lists, by the rows of prices.
Rule ByList(const Count& articles, const Rule& sales, const Rule& purchase, const Rule& special);

} // namespace examples::ledger
