#pragma once

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/ImportTable.h"
#include "adapters/contract/write/Cam.h"
#include "adapters/contract/write/CamBill.h"

/// What the files of the module share.
namespace modImport_Lantek24 {

inline const QString Module = QStringLiteral("modImport_Lantek24");

using contract::cam::ArticleOf;
using contract::cam::MaterialOf;
using contract::cam::Products;
using contract::cam::WorkOf;

/// The class of a product that is a sheet.
inline const QString SheetClass = QStringLiteral("51");

contract::Rule UnitOfName();
/// The day of a column, with its time; Null for a blank one and for one that stands for none.
QVariant DayOf(const contract::SourceRow& row, const QString& column);

contract::Articles Articoli();

void ImportDistintaLantek24(Session& session, const QString& singleCode, bool reset);

contract::Procedure DocumentiProcedure();
/// The production orders, each behind the bill of its product; part of the import of documents.
contract::ImportPart OrdiniProduzione();

contract::Procedure InventarioProcedure();
contract::Procedure RitagliProcedure();

} // namespace modImport_Lantek24
