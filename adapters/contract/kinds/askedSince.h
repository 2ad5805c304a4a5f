#pragma once

#include "adapters/contract/kinds/ImportTable.h"

namespace contract {

/// A part whose rows are imported from a day on that the operator is asked for, with today proposed; a single code is
/// imported whatever its day. Rows without any day are left out, and logged by their number. A text that is no day ends
/// the run before anything is written.
/// @param prompt the question
/// @param days columns of the source, of which one is enough
/// @param format of the texts that the columns hold, such as "yyyyMMdd"; empty: they hold dates
ImportPart AskedSince(ImportPart part, const QString& prompt, const QStringList& days, const QString& format = {});

} // namespace contract
