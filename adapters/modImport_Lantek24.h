#pragma once

#include "adapters/contract/Bill.h"

/// What the files of the module share.
namespace modImport_Lantek24 {

inline const QString Module = QStringLiteral("modImport_Lantek24");

/// Products: parts, assemblies and sheets.
inline const QString Products = QStringLiteral("PPRR_PPRR_00000100");
/// The class of a product that is a sheet.
inline const QString SheetClass = QStringLiteral("51");

/// CDART of a product.
QString ArticleOf(contract::ImportRun& run, const QString& product);
/// The unit of a unit's name in the source; the usual one for a blank name and for "unt".
QString UnitOf(Session& session, const QString& name);
/// The work centre of an operation, the generic one when there is none.
QString WorkOf(const contract::ImportRun& run, const contract::SourceRow& row);
/// CDMAT of a material of the source; empty when TAB_MAT has none with that external code.
QString MaterialOf(Session& session, const QString& material);
/// The day of a column, with its time; Null for a blank one and for 1 January 1900, which stands for none.
QVariant DayOf(const contract::SourceRow& row, const QString& column);

const contract::Needs& ArticoliNeeds();
void ImportArticoliLantek24(Session& session, const QString& singleCode, bool reset);

/// What the bill of a product reads and writes.
const contract::Needs& DistintaNeeds();
/// Writes the bill of a product, whose article is there, with its phases and components.
contract::RowOutcome WriteBill(contract::ImportRun& run, contract::BillWriter& writer, const QString& product);
void ImportDistintaLantek24(Session& session, const QString& singleCode, bool reset);

const contract::Needs& DocumentiNeeds();
void ImportDocumentiLantek24(Session& session, const QString& singleCode, bool reset);

const contract::Needs& OrdiniNeeds();
/// The production orders, each behind the bill of its product; part of the import of documents.
bool ImportOrdiniProduzione(contract::ImportRun& run);
/// Removes the production orders that an import wrote, when the operator asked for it.
void RemoveImportedOrders(contract::ImportRun& run, bool reset);

const contract::Needs& InventarioNeeds();
void ImportInventarioLantek24(Session& session, const QString& singleCode, bool reset);

const contract::Needs& RitagliNeeds();
void ImportRitagliLantek24(Session& session, const QString& singleCode, bool reset);

} // namespace modImport_Lantek24
