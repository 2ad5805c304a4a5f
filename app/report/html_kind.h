#pragma once

#include "app/report/Proof.h"
#include "app/report/verdict.h"

/// The parts of the page that tell of the kinds of data.
namespace proof::html {

/// A light as a word on its colour.
QString Tag(Light light);

/// The pictures of all kinds together.
QString KindsOverview(const std::vector<Kind>& kinds);
/// All that there is to say about one kind.
QString KindSection(const Kind& kind);

} // namespace proof::html
