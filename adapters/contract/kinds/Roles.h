#pragma once

#include "adapters/contract/kinds/SourceTable.h"

namespace contract {

/// How a row of the source tells what its counterparty is.
struct RoleTeller {
    QStringList columns = {}; ///< that it reads
    std::function<Roles(const SourceRow&)> of;
    bool knowsCarriers = false; ///< whether it tells carriers apart
};

/// Every row is the same.
RoleTeller Always(const Roles& roles);

/// The values of a column that tells the role, compared without case; an empty one the source does not have. Any other
/// value raises `ImportError`.
struct RoleValues {
    QStringList customer = {};
    QStringList supplier = {};
    QStringList both = {};
    QStringList carrier = {};
};
RoleTeller ByLetter(const QString& column, const RoleValues& letters);

/// The beginnings of a code that tells the role, e.g. "201." for customers. A code with none of them raises
/// `ImportError`.
RoleTeller ByPrefix(const QString& column, const RoleValues& prefixes);

/// A flag for each role; an empty column the source does not have. A row without any raises `ImportError`.
struct RoleFlags {
    QString customer = {};
    QString supplier = {};
    QString carrier = {};
};
RoleTeller ByFlags(const RoleFlags& columns);

/// What runs before the rows where only those of some types are read: it logs each row whose type is blank, for it may
/// be of any.
/// @param name column of its name, in the log
std::function<void(ImportRun&, const QString& singleCode)> TellingUntyped(const SourceTable& source,
                                                                          const QString& type, const QString& name);

} // namespace contract
