#pragma once

#include "adapters/contract/run/Origin.h"

#include <QMap>

/// The pages that tell how every import maps its source: made from the mapping tables that the imports run by.
namespace mappingPages {

/// Markdown pages by file name: one for each module that has procedures, and "README.md", the list of them.
QMap<QString, QString> Pages(const std::vector<const contract::Origin*>& origins);

/// The page of one origin, as its operator reads it; empty when it has no procedures.
QString PageOf(const contract::Origin& origin);

/// The page of all origins: source kind, module, procedures with their buttons, whose the names of the source are, and
/// what the head of the module tells of it, its gaps above all.
/// @param sources folder of the program's source text, where the modules stand. Raises `ImportError` for a module
/// without a head.
QString OriginsPage(const std::vector<const contract::Origin*>& origins, const QString& sources);

} // namespace mappingPages
