#pragma once

#include "adapters/contract/kinds/ImportTable.h"

namespace contract {

/// A part whose rows are imported from a day on that the operator is asked for, with today proposed; a single code is
/// imported whatever its day. A text that is no day ends the run before anything is written.
/// @param prompt the question @param condition the condition on the rows of the source, without AND
ImportPart AskedSince(ImportPart part, const QString& prompt,
                      const std::function<QString(const ovConnection& source, const QDate& from)>& condition);

} // namespace contract
