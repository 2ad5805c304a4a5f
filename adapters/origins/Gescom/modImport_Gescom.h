#pragma once

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/kinds/PriceLists.h"

/// What the files of the module share.
namespace modImport_Gescom {

inline const QString Module = QStringLiteral("modImport_Gescom");

/// Counterparties; they are found by code and kind, as customers and suppliers are numbered apart.
inline const QString Arclfr = QStringLiteral("ARCLFR");
inline const QString ArticoliTable = QStringLiteral("ARTICOLI");
/// Phases of the articles.
inline const QString Arcfas = QStringLiteral("arcfas");

/// CDART of an article's code.
inline contract::Rule Article() { return contract::rules::ArticleCode(ArticoliTable, "CDARTICO"); }

contract::Articles Articoli();
contract::PriceLists Listini();
contract::Bills Distinte();
contract::Documents Documenti();

} // namespace modImport_Gescom
