#pragma once

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/kinds/PriceLists.h"

/// What the files of the module share.
namespace modImport_BMS {

inline const QString Module = QStringLiteral("modImport_BMS");

/// What stands before an error that ends a run, in the log.
inline const QString Errors = QStringLiteral("Errore: ");

inline const QString Clienti = QStringLiteral("ANCLIENT");
inline const QString Fornitori = QStringLiteral("ANFORNIT");
inline const QString Artmag = QStringLiteral("LGARTMAG");

/// CDART of an article's code.
inline contract::Rule Article() { return contract::rules::ArticleCode(Artmag, "COD_ARTICOLO"); }

contract::Articles Articoli();
contract::PriceLists Listini();
contract::Bills Distinte();
contract::Documents Documenti();

} // namespace modImport_BMS
