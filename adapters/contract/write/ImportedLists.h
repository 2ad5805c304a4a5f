#pragma once

#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// Which price lists a part of a procedure imports, so that it knows its own among those that the source has no more:
/// a list of which no row comes is met by nothing else. SYS_IMP keeps a row for each, in a list of the company's own;
/// those of older releases, which kept the module alone, are nobody's until they are met again. Every operation raises
/// `SqlError`.
class ImportedLists {
public:
    /// @param part what tells the parts of a procedure apart; empty where it has one
    ImportedLists(ImportRun& run, const QString& part);

    /// Has SYS_IMP say that a list is imported here. Where no price list of an import is left, those of before are
    /// forgotten. @param list direction and code, e.g. "V L1"
    void Keep(const QString& list);
    /// The lists that are imported here and nowhere else, in their order.
    QStringList Own();

private:
    QHash<QString, QStringList>& Owners();
    void ForgetWithoutLists();
    QString OfCompany() const;

    ImportRun& m_run;
    QString m_owner;
    bool m_hasBegun = false;
    std::optional<QHash<QString, QStringList>> m_owners; ///< by list; none before somebody asks
};

} // namespace contract
