#pragma once

#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// The database of the CAM software beside Quadrix, told by settings of section IMPORT: PREFIX_Server, PREFIX_Database
/// (a name that ends in ".sqlite" or ".db" is a SQLite file), PREFIX_Username, PREFIX_Password, and PREFIX_Path, the
/// folder of its products, with their drawings.
inline const QString CurrentCam = QStringLiteral("CAM");

/// What a connection to it is for.
enum class CamAccess { Read, Write };

/// Opens it as a connection of its own; over one that is for reading nothing can be written. Raises `SqlError` with the
/// engine's message.
std::unique_ptr<ovConnection> qdxCamOpenConnection(Session& session, const QString& prefix = CurrentCam,
                                                   CamAccess access = CamAccess::Read);

/// The folder of its products; empty when the setting is.
QString CamProductsFolder(Session& session, const QString& prefix = CurrentCam);

/// Stores the drawing of a remnant, "<product>.bmp" in the products folder, as the image of its format (RECORD_ID of
/// ART_FMT). Nothing without a products folder; a drawing that is not there is logged. Raises as `StoreImage`.
void qdxAggiornaImmagineRitagli(ImportRun& run, qint64 format, const QString& product);

/// What the CAM's own codes are in Quadrix.
namespace cam {

/// Products: parts, assemblies and sheets.
inline const QString Products = QStringLiteral("PPRR_PPRR_00000100");
/// How SYS_IMP names the codes of products.
inline const QString ProductCodes = QStringLiteral("PPRR_PPRR");

/// CDART of a product.
QString ArticleOf(ImportRun& run, const QString& product);
/// CDMAT of a material; empty when TAB_MAT has none with that external code.
QString MaterialOf(Session& session, const QString& material);
/// Columns of `Products` that tell which sheet a remnant is cut from.
inline const QStringList SheetColumns{"DIS_ShtRefOrg", "DIS_MatRef", "DIS_Thickness"};
/// CDART of the sheet that a remnant, a row of `Products`, is cut from: that of the sheet which it names, else the one
/// of its material and thickness; empty when there is none.
QString SheetOfRemnant(ImportRun& run, const SourceRow& row);
/// The unit of Quadrix for the name of one; the usual one for a blank name and for "unt".
/// @param recordsMissing one without translation waits for it in SYS_IMP
QString UnitOf(Session& session, const QString& name, bool recordsMissing = true);
/// The work centre of an operation, the generic one when there is none.
QString WorkOf(const ImportRun& run, const SourceRow& row);

} // namespace cam

} // namespace contract
