#pragma once

#include "adapters/contract/map/rules.h"
#include "adapters/contract/run/ImportRun.h"

#include <QSet>

namespace contract {

/// How `Warehouses` makes a code, for a mapping of what it writes: the rule itself gives no value.
/// @param table,field of the codes, as SYS_IMP knows them
Rule WarehouseWritten(const QString& table, const QString& field);

/// The warehouses of a source: translated through SYS_IMP, else known to MAG_AZZ, else the principal one, which the log
/// tells once for each.
class Warehouses {
public:
    /// @param table,field of their codes, as SYS_IMP knows them
    Warehouses(ImportRun& run, QString table, QString field)
        : m_run(run),
          m_table(std::move(table)),
          m_field(std::move(field)) {}

    /// CDMAG of one; the principal one for a blank code. Raises `SqlError`.
    QString CodeOf(const QString& code);
    /// CDMAG of the warehouse that a balance of one stands in which is imported again as it waited for its translation;
    /// empty where it waited for none.
    QString LeftBy(const QString& code) const;

private:
    ImportRun& m_run;
    QString m_table;
    QString m_field;
    QSet<QString> m_told; ///< codes that are not there
};

} // namespace contract
