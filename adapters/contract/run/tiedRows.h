#pragma once

#include "adapters/contract/run/SourceRow.h"

namespace contract {

/// The condition on rows of a table of the source that belong to a row of another: that a column of theirs has the
/// value of one of its columns. The value as it was read, since the text that a code is has lost the blanks in front of
/// one that is aligned to the right; blanks behind it count nowhere, which not every database knows.
/// @param of the column of that row; empty: it has the same name
QString TiedTo(const ovConnection& source, const QString& column, const SourceRow& row, const QString& of = {});

} // namespace contract
