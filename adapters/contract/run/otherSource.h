#pragma once

#include "adapters/contract/run/Origin.h"

namespace contract {

/// A procedure that reads the source of another origin: that one is opened for it in place of its own origin's, with
/// its settings and its layout. @param other must live as long as the procedure
Procedure OverSourceOf(const Origin& other, Procedure procedure);

/// The origin whose source is opened for a procedure of an origin, or for the first of several that reads one; null: no
/// source is.
const Origin* SourceOf(const Origin& origin, const Procedure& procedure);
const Origin* FirstSourceOf(const Origin& origin, const std::vector<const Procedure*>& procedures);

} // namespace contract
