#pragma once

#include "adapters/contract/kinds/SourceTable.h"

/// Rules that read the rows of a further table that belong to the row under way.
namespace contract::rules {

/// A rule on columns of the first row that belongs to the one under way, as the order of the rows tells; left out when
/// there is none. @param parent table of the row under way @param columns of the further table, separated by ", "
Rule OfFirst(const QString& parent, const ChildTable& rows, const QString& columns, const Rule& rule);

/// The text of the source columns and that of a column of each row that belongs to the one under way, each on a line of
/// its own; blank ones are left out. @param parent table of the row under way
Rule WithLines(const QString& parent, const ChildTable& rows, const QString& column);

/// One of two values: whether a column of the first row that belongs to the one under way holds the text of the source
/// columns, in any case, as a counterparty names the branch that goods go to. @param parent table of the row under way
Rule NamedBy(const QString& parent, const ChildTable& rows, const QString& column, const QVariant& yes = true,
             const QVariant& no = false);

/// The texts of the source columns, each on a line of its own; blank ones are left out.
Rule OnLines();

/// The value of the first of rules on numbers that gives one other than zero; 0 when none does.
Rule FirstNotZeroOf(const std::vector<Rule>& rules);

} // namespace contract::rules
