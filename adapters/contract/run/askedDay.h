#pragma once

#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// Asks for a day, with one proposed; a question given up ends the run as cancelled. Raises `ImportError` when the
/// answer is no date.
QDate AskDay(ImportRun& run, const QString& question, const QDate& proposed);

} // namespace contract
