#pragma once

#include "adapters/contract/run/Origin.h"

/// The origins of the window's list.
namespace registry {

/// All origins, in the order of the list.
const std::vector<const contract::Origin*>& Origins();
/// Origins that the list does not show: a sequence opens them beside one of the list.
const std::vector<const contract::Origin*>& SecondSources();
/// Both: every origin that the program knows.
std::vector<const contract::Origin*> All();
/// The origin of that name, of the list or not, compared without case; null when there is none.
const contract::Origin* Find(const QString& name);
/// The origins of a module, such as "modImport_Tessera", of the list or not; none where there is no such module.
std::vector<const contract::Origin*> OfModule(const QString& module);

} // namespace registry
