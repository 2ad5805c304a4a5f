#pragma once

#include "app/history/History.h"

namespace history {

/// What a run did otherwise than an earlier one, as lines: rows by what became of them, rows given up that are new or
/// no longer given up, notes by kind, errors. Empty when they did the same. Raises `ImportError` for a run that is not
/// kept.
QStringList Differences(const History& history, qint64 before, qint64 after);

} // namespace history
