#pragma once

#include "adapters/contract/run/Origin.h"

/// The origins of the list that have no module yet: what choosing them does to the window is known, the procedures are
/// not there. Giving one its module takes its row out of here.
namespace announced {

/// The announced origin of that name, compared with case. Raises `ImportError` when there is none.
const contract::Origin& Find(const QString& name);
/// How many there are.
int Count();

} // namespace announced
