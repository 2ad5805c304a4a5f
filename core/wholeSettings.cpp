#include "core/wholeSettings.h"

#include "core/modMain.h"

#include <QDir>

namespace modMain {

void RequireWhole(Session& session, const QString& section, const QString& key) {
    if (session.Config.IsCut(section, key)) {
        throw ImportError(QStringLiteral("chiave %1, sezione [%2] di '%3': ne sono letti solo i primi %4 caratteri; "
                                         "accorciarla")
                              .arg(key, section, QDir::toNativeSeparators(session.Config.ConfigFile()),
                                   QString::number(ovConfig::LongestValue)));
    }
}

QString GetWholeConfig(Session& session, const QString& section, const QString& key, const QString& defaultValue) {
    RequireWhole(session, section, key);
    return GetAppConfig(session, section, key, defaultValue);
}

} // namespace modMain
