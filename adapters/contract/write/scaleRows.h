#pragma once

#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/PriceList.h"

namespace contract {

/// The quantity of a scale as it is written.
QVariant QuantityOf(const Scale& scale);

/// A scale row; prices of articles and costs of works differ in the column of the amount alone.
TargetRow ScaleRow(ImportRun& run, const QString& table, const QString& amountColumn, const Scale& scale);

/// Whether a scale that the source tells is a price; one without a price and a discount is none, which is logged.
/// Raises `ImportError` for one up to a quantity below zero, which would never hold.
/// @param quantity columns of the source @param price columns of the source
bool IsPrice(ImportRun& run, const Scale& scale, const QStringList& quantity, const QStringList& price);

} // namespace contract
