#pragma once

#include "examples/describedRules.h"

/// Tables that many programs keep in the same plain way, one column for each thing, under names of their own.
namespace examples::described {

/// Flags are the letters S and N.
inline const QVariant Yes = QStringLiteral("S");
inline const QVariant No = QStringLiteral("N");

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
    QByteArray list = {};
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
    QByteArray isCancelled = {};
    QByteArray note = {};
    QByteArray created = {};
};

/// @param supplier code of any supplier
QVector<Field> ArticleColumns(const ArticleNames& names, const Rule& supplier);
void PrepareArticles(QuadrixScript& script, const QString& table, const ArticleNames& names);

// --- Accounts -----------------------------------------------------------------------------------------------------

struct Account {
    QString code; ///< two digits of a group, four of a ledger, eight of an account
    QString description;
    QString kind; ///< A assets, P liabilities, C costs, R revenues, O memorandum

    int Level() const { return code.size() == 2 ? 1 : code.size() == 4 ? 2 : 3; }
    /// Only those of the last level do.
    bool TakesPostings() const { return Level() == 3; }
    /// Code of what it stands in.
    QString Parent() const { return Level() == 1 ? QString() : code.left(Level() == 2 ? 2 : 4); }
};

/// The accounts of these levels.
QVector<Account> Chart(int firstLevel, int lastLevel);

/// What a list has, a row for each of its elements.
template<class Element, class Member>
Rule Each(const QVector<Element>& list, Member member) {
    return [=](const Place& place) { return QVariant(std::invoke(member, list[place.row % list.size()])); };
}

} // namespace examples::described
