#include "adapters/contract/Cam.h"

#include "adapters/sourceSettings.h"
#include "core/modMain.h"

namespace contract {

std::unique_ptr<ovConnection> qdxCamOpenConnection(Session& session, const QString& prefix) {
    auto connection = std::make_unique<ovConnection>();
    connection->Errors = &session.Errors;
    connection->Trace = session.TraceSource;
    sourceSettings::ServerKeys keys;
    keys.prefix = prefix + u'_';
    keys.server = QStringLiteral("Server");
    keys.database = QStringLiteral("Database");
    keys.username = keys.prefix + QStringLiteral("Username");
    keys.password = keys.prefix + QStringLiteral("Password");
    sourceSettings::Server("LANTEK", keys)(session, *connection);
    connection->OpenConnection();
    return connection;
}

QString CamProductsFolder(Session& session, const QString& prefix) {
    return modMain::GetAppConfig(session, QStringLiteral("IMPORT"), prefix + QStringLiteral("_Path"), {})
        .replace(u'\\', u'/');
}

} // namespace contract
