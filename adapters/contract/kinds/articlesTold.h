#pragma once

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/write/ArticleRemains.h"

namespace contract {

/// What the source tells of its articles: what it has no column for, it does not say that there is none of. Raises
/// `SqlError`.
ArticleRemains::Told ToldBy(Session& session, const Articles& declared);

/// The same of their units in rows of other tables.
bool TellsUnits(Session& session, const Articles& declared);

} // namespace contract
