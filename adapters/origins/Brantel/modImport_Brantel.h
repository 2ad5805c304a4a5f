#pragma once

#include "adapters/contract/map/rules.h"
#include "adapters/contract/run/Origin.h"

/// What the files of the module share.
namespace modImport_Brantel {

inline const QString Module = QStringLiteral("modImport_Brantel");

/// Counterparties; also the translations of payment terms and currencies.
inline const QString Anagrafiche = QStringLiteral("Anagrafiche");
/// Articles; also the translations of units and VAT codes.
inline const QString Articoli = QStringLiteral("Articoli");

/// Kinds of price list, as the source and the numbers in SYS_IMP have them.
inline const QString SalesLists = QStringLiteral("V");
inline const QString PurchaseLists = QStringLiteral("A");

/// CDART of an article's code.
inline contract::Rule Article() { return contract::rules::ArticleCode(Articoli, "CodArticolo"); }
/// The unit of a code of the source; `blank` when there is none.
inline contract::Rule ArticleUnit(const QString& blank) { return contract::rules::Unit(Articoli, "Um", blank); }

contract::Procedure ImportContropartiBrantel();
contract::Procedure ImportArticoliBrantel();
contract::Procedure ImportDistinteBrantel();
contract::Procedure ImportOrdiniBrantel();
contract::Procedure ImportListiniBrantel();

} // namespace modImport_Brantel
