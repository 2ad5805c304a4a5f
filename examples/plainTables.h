#pragma once

#include "examples/describedRules.h"

/// Tables that many programs keep in the same plain way, one column for each thing, under names of their own.
namespace examples::described {

/// Flags are the letters S and N.
inline const QVariant Yes = QStringLiteral("S");
inline const QVariant No = QStringLiteral("N");

/// The fields whose columns the source has: those with a name.
QVector<Field> Present(QVector<Field> fields);

// --- Counterparties -----------------------------------------------------------------------------------------------

/// The columns of counterparties by what they hold; one that the source does not have is left empty.
struct PartyNames {
    QByteArray name = {};
    QByteArray name2 = {};
    QByteArray isPerson = {};
    QByteArray surname = {};
    QByteArray firstName = {};
    QByteArray street = {};
    QByteArray houseNumber = {}; ///< stands with the street where it has no column
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
    QByteArray payment = {}; ///< RB30, RB60, BO30, RD
    QByteArray ownBank = {}; ///< BA1, BA2
    QByteArray abi = {};
    QByteArray cab = {};
    QByteArray cin = {};
    QByteArray account = {};
    QByteArray iban = {};
    QByteArray bic = {};
    QByteArray discount1 = {};
    QByteArray discount2 = {};
    QByteArray agent = {};
    QByteArray list = {}; ///< `SalesList` of customers, `PurchaseList` of suppliers
    QByteArray currency = {};
    QByteArray language = {};
    QByteArray zone = {};
    QByteArray category = {};
    QByteArray exemption = {}; ///< N8
    QByteArray port = {};
    QByteArray carrier = {};
    QByteArray credit = {};
    QByteArray ledger = {}; ///< one of `Chart`
    QByteArray isBlocked = {};
    QByteArray isCancelled = {};
    QByteArray note = {};
    QByteArray created = {};
};

/// The rows are counterparties, customers first. Those of several tables that tell of the same ones agree.
QVector<Field> PartyColumns(const Address& address, const PartyNames& names);
/// What Quadrix calls the codes that stand in these columns of a table.
void PrepareParties(QuadrixScript& script, const QString& table, const PartyNames& names);
/// The own banks and the exemption that counterparties name, where the source does not bring them itself.
void PrepareBases(QuadrixScript& script);
/// So many customers and suppliers whom another origin has brought, for sources without any. @param code in the source
void PrepareCustomers(QuadrixScript& script, qint64 count, const Rule& code, const Options& options);
void PrepareSuppliers(QuadrixScript& script, qint64 count, const Rule& code, const Options& options);

struct BranchNames {
    QByteArray number = {};
    QByteArray name = {};
    QByteArray street = {};
    QByteArray postCode = {};
    QByteArray town = {};
    QByteArray province = {};
    QByteArray country = {};
    QByteArray office = {};
    QByteArray fax = {};
    QByteArray contact = {};
    QByteArray isDefault = {};
};

/// Two branches for some of the customers; a few have no street.
Count Branches();
QVector<Field> BranchColumns(const Address& address, const BranchNames& names);
/// The value of the customer that a branch belongs to.
Rule OfBranch(const Rule& customer);

// --- Articles -----------------------------------------------------------------------------------------------------

struct ArticleNames {
    QByteArray description = {};
    QByteArray description2 = {};
    QByteArray longText = {};
    QByteArray unit = {}; ///< PZ, KG, MT
    QByteArray unit2 = {};
    QByteArray factor = {}; ///< of the second unit
    QByteArray purchaseUnit = {};
    QByteArray vatCode = {}; ///< 22, 10
    QByteArray family = {};  ///< MEC, LAM, VIT
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
/// @param supplier code of any supplier
QVector<Field> ArticleColumns(const ArticleNames& names, const Rule& supplier);
void PrepareArticles(QuadrixScript& script, const QString& table, const ArticleNames& names);

// --- Prices -------------------------------------------------------------------------------------------------------

/// The price lists: sales, purchase and those made for somebody.
inline const QString SalesList = QStringLiteral("L1");
inline const QString PurchaseList = QStringLiteral("A1");
inline const QString SpecialList = QStringLiteral("P1");

struct ListNames {
    QByteArray code = {};
    QByteArray description = {};
    QByteArray kind = {};
    QByteArray currency = {};
    QByteArray from = {};
};

/// The table of the lists. @param sales,purchase what their kind is
Table ListTable(const QString& name, const ListNames& names, const QString& sales = QStringLiteral("V"),
                const QString& purchase = QStringLiteral("A"));

struct PriceNames {
    QByteArray list = {};
    QByteArray article = {};
    QByteArray from = {};
    QByteArray to = {};
    QByteArray quantity = {};
    QByteArray price = {};
    QByteArray discount1 = {};
    QByteArray discount2 = {};
    QByteArray discount3 = {};
};

/// A sales price, one for quantities and a purchase price of each article; behind them special ones of some.
QVector<Field> PriceColumns(const PriceNames& names, const Count& articles, const Rule& article);
Count Prices(const Count& articles);
/// One rule for each of the lists, by the rows of prices.
Rule ByList(const Count& articles, const Rule& sales, const Rule& purchase, const Rule& special);

} // namespace examples::described
