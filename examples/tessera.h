#pragma once

#include "examples/describedRules.h"

/// The tables of Tessera, also for a source that has another program's tables beside them.
namespace examples::tessera {

using namespace described;

qint64 Articles(const Options& options);
Rule ArticleCode();
/// @param code of a counterparty
QVector<Table> Tables(const Rule& code);
/// The translations and base rows that an import needs.
void Prepare(QuadrixScript& script);

} // namespace examples::tessera
