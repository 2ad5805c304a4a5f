#include "core/modMain.h"

#include "sql/mod_ovTools.h"

#include <QDir>

namespace modMain {

namespace {

const QString Module = QStringLiteral("modMain");

constexpr int ReadOnly = 1;
constexpr int Hidden = 2;
constexpr int Folder = 16;
constexpr int Normal = 128;

qint32 Attributes(const QFileInfo& file) {
    const int bits = (file.isWritable() ? 0 : ReadOnly) | (file.isHidden() ? Hidden : 0) | (file.isDir() ? Folder : 0);
    return bits == 0 ? Normal : bits;
}

/// The name of the short path, where it is another one than the long name.
QString ShortName(const QString& path, const QString& longName) {
    const QString name = QFileInfo(mod_ovTools::GetShortPath(path)).fileName();
    return name == longName ? QString() : name;
}

} // namespace

QString GetAppConfig(Session& session, const QString& section, const QString& key, const QString& defaultValue) {
    try {
        return session.Config.GetAppConfig(section, key, defaultValue);
    } catch (...) {
        session.MonitorOnce(Module, QStringLiteral("GetAppConfig"));
        return defaultValue;
    }
}

bool IsOne(const QString& text) { return mod_ovTools::ReadNumber(text) == 1; }

bool IsAppConfigOn(Session& session, const QString& section, const QString& key, const QString& defaultValue) {
    const QString text = GetAppConfig(session, section, key, defaultValue);
    const auto number = text.trimmed().isEmpty() ? 0 : mod_ovTools::ReadNumber(text);
    const bool isOn = number == 1;
    if (!isOn && number != 0) {
        throw ImportError(
            QStringLiteral("chiave %1, sezione [%2] di '%3': '%4' non è 1 (sì) né 0 (no); un commento è una "
                           "riga a sé")
                .arg(key, section, QDir::toNativeSeparators(session.Config.ConfigFile()), text));
    }
    return isOn;
}

void SetAppConfig(Session& session, const QString& section, const QString& key, const QString& value) {
    Guarded(session.Errors, Module, QStringLiteral("SetAppConfig"), false, [&] {
        session.Config.SetAppConfig(section, key, value);
        return true;
    });
}

bool SetProvider(ovConnection& connection, const QString& name) {
    static const QMap<QString, Provider> providers{{"MSSQL", Provider::SqlServer},
                                                   {"ACCESS", Provider::Access},
                                                   {"SYBASE", Provider::Sybase},
                                                   {"MYSQL", Provider::MySql},
                                                   {"ORACLE", Provider::Oracle}};
    const QString key = name.trimmed().toUpper();
    connection.ProviderType = providers.value(key, connection.ProviderType);
    connection.Embedded = key == u"SQLITE";
    return connection.Embedded || providers.contains(key);
}

QString GetSP(Session& session, const QString& name, const ovQueryConstructor* parameters) {
    const Operator::Busy busy(session.Person);
    return Guarded(session.Errors, Module, QStringLiteral("GetSP"), QString(),
                   [&] { return mod_ovTools::StoredProcedureText(name, parameters, session.Quadrix.ProviderType); });
}

bool GetFileInfo(const QString& path, FileInfo& info) {
    const QFileInfo file(path);
    if (!file.exists()) {
        return false;
    }
    info.fileName = file.fileName();
    info.path = file.path();
    info.shortName = ShortName(path, info.fileName);
    info.size = static_cast<qint32>(static_cast<quint32>(file.size()));
    info.created = file.birthTime();
    info.accessed = file.lastRead();
    info.written = file.lastModified();
    info.attributes = Attributes(file);
    return true;
}

} // namespace modMain
