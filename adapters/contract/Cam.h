#pragma once

#include "core/Session.h"

namespace contract {

/// The database of the CAM software beside Quadrix, told by settings of section IMPORT: PREFIX_Server, PREFIX_Database
/// (a name that ends in ".sqlite" or ".db" is a SQLite file), PREFIX_Username, PREFIX_Password, and PREFIX_Path, the
/// folder of its products, with their drawings.
inline const QString CurrentCam = QStringLiteral("CAM");

/// Opens it as a connection of its own. Raises `SqlError` with the engine's message.
std::unique_ptr<ovConnection> qdxCamOpenConnection(Session& session, const QString& prefix = CurrentCam);

/// The folder of its products; empty when the setting is.
QString CamProductsFolder(Session& session, const QString& prefix = CurrentCam);

} // namespace contract
