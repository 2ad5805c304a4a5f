#pragma once

#include "app/report/Proof.h"
#include "app/report/verdict.h"

/// The parts of the page that tell of the kinds of data.
namespace proof::html {

/// A light as a word on its colour.
QString Tag(Light light);

/// A picture of the source rows of all kinds, by what becomes of them; empty without any.
QString RowsChart(const std::vector<Kind>& kinds);
/// A page with a picture of the totals of all documents on both sides; empty without any.
QString TotalsPage(const std::vector<Kind>& kinds);
/// All that there is to say about one kind.
QString KindSection(const Kind& kind);

} // namespace proof::html
