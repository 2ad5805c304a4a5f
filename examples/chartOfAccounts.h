#pragma once

#include "examples/describedRules.h"

/// A small chart of accounts: groups, ledgers and accounts.
namespace examples::described {

struct Account {
    QString code; ///< two digits of a group, four of a ledger, eight of an account
    QString description;
    QString kind; ///< A assets, P liabilities, C costs, R revenues, O memorandum

    int Level() const { return code.size() == 2 ? 1 : code.size() == 4 ? 2 : 3; }
    /// Only those of the last level do.
    bool TakesPostings() const { return Level() == 3; }
    bool IsEconomic() const { return kind == "C" || kind == "R"; }
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
