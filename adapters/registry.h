#pragma once

#include "adapters/contract/Origin.h"

/// The origins of the window's list.
namespace registry {

/// All origins, in the order of the list.
const std::vector<const contract::Origin*>& Origins();
/// The origin of that name, compared without case; null when there is none.
const contract::Origin* Find(const QString& name);

} // namespace registry
