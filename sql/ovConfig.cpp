#include "sql/ovConfig.h"

#include "sql/errors.h"

namespace {
const QString ConfigSection = QStringLiteral("CONFIG");
} // namespace

void ovConfig::SetConfigFile(const QString& path) { m_file = SettingsFile(path); }

void ovConfig::LoadConfig() {
    m_file.Reload();
    m_file.Read(ConfigSection, {});
}

QString ovConfig::GetConfig(const QString& key, const QString& defaultValue) {
    return PeekAppConfig(ConfigSection, key, defaultValue);
}

QString ovConfig::PeekAppConfig(const QString& section, const QString& key, const QString& defaultValue) {
    const QString value = m_file.Read(section, key).left(LongestValue);
    return value.isEmpty() ? defaultValue : value;
}

QString ovConfig::GetAppConfig(const QString& section, const QString& key, const QString& defaultValue) {
    const QString value = m_file.Read(section, key).left(LongestValue);
    if (!value.isEmpty()) {
        return value;
    }
    try {
        SetAppConfig(section, key, defaultValue);
    } catch (const ImportError&) {
        // A file that may only be read serves as well: the default holds without standing in it.
    }
    return defaultValue;
}

void ovConfig::SetAppConfig(const QString& section, const QString& key, const QString& value) {
    m_file.Write(section, key, value);
}
