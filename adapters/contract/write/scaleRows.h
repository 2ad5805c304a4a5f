#pragma once

#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/PriceList.h"

namespace contract {

/// The quantity of a scale as it is written.
QVariant QuantityOf(const Scale& scale);

/// A scale row; prices of articles and costs of works differ in the column of the amount alone.
TargetRow ScaleRow(ImportRun& run, const QString& table, const QString& amountColumn, const Scale& scale);

} // namespace contract
