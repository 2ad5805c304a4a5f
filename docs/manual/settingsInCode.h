#pragma once

#include <QMap>
#include <QSet>
#include <QStringList>

namespace manual {

/// How the code reads a setting.
struct SettingUse {
    QSet<QString> sections; ///< those that the calls tell; none when they have it from elsewhere
    QSet<QString> defaults; ///< those that the calls tell; null is among them where one tells none
};

/// The settings that code reads. A key that is put together has its pieces here: "_Path" ends keys, "Disable_" begins
/// them.
using SettingUses = QMap<QString, SettingUse>;

/// Adds what a source file reads.
void AddSettingsOf(const QString& code, SettingUses& uses);

} // namespace manual
