#pragma once

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"

/// What the files of the module share.
namespace modImport_Mago {

inline const QString Module = QStringLiteral("modImport_Mago");

inline const QString Items = QStringLiteral("MA_Items");

/// The day that stands for none.
inline const QDate NoDay(1799, 12, 31);

/// CDART of an item's code.
inline contract::Rule Item() { return contract::rules::ArticleCode(Items, "Item"); }

contract::Articles Articoli();
contract::Bills Distinte();

} // namespace modImport_Mago
