#pragma once

#include "adapters/contract/run/Origin.h"

#include <QMap>

/// The pages that tell how every import maps its source: made from the mapping tables that the imports run by.
namespace mappingPages {

/// Markdown pages by file name: one for each module that has procedures, and "README.md", the list of them.
QMap<QString, QString> Pages(const std::vector<const contract::Origin*>& origins);

} // namespace mappingPages
