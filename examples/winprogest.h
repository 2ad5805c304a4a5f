#pragma once

#include "examples/arca2000.h"
#include "examples/examples.h"
#include "examples/quadrixScript.h"

namespace examples::winprogest {

/// A code of twenty characters at most that no article has.
inline const QString UnknownArticleCode = QStringLiteral("ZZ-NON-ESISTE");

/// Articles, their other codes, promotions.
Totals WriteArticles(Store& store, const Options& options, QuadrixScript& script);
/// Bills of materials.
Totals WriteBills(Store& store, const Options& options, QuadrixScript& script);
/// Offers, orders, delivery notes, invoices, pro-forma invoices and orders to suppliers, each derived from the one
/// before.
Totals WriteDocuments(Store& store, const Options& options, QuadrixScript& script);

} // namespace examples::winprogest
