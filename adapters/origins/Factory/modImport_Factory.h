#pragma once

#include "adapters/contract/map/rules.h"
#include "adapters/contract/run/Origin.h"

/// What the files of the module share.
namespace modImport_Factory {

inline const QString Module = QStringLiteral("modImport_Factory");

/// Articles; also the translations of units and VAT codes.
inline const QString Articoli = QStringLiteral("ARTICOLI");

/// CDART of an article's code.
inline contract::Rule Article() { return contract::rules::ArticleCode(Articoli, "CODART"); }
/// The unit of a code of the source; `blank` when there is none.
inline contract::Rule ArticleUnit(const QString& blank) { return contract::rules::Unit(Articoli, "UM", blank); }

contract::Procedure ImportArticoliFactory();
contract::Procedure ImportDistinteFactory();
contract::Procedure ImportCommesseAperteFactory();
/// The same jobs out of a workbook, whichever source its button opens.
contract::Procedure ImportCommesseAperteFactory_daFileExcel();
/// The workbook.
const contract::Origin& EntryOfWorkbook();

} // namespace modImport_Factory
