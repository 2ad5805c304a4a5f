#pragma once

#include "core/Session.h"

/// Passwords in the settings files. The environment goes before a file: for one that must not hold them, or that may
/// only be read.
namespace storedPassword {

/// The environment variable that stands for a password of a settings file: name of the file, section and key in
/// capitals, anything but letters and digits as "_". "QUADRIX_IMPORT_PASSWORD" for Password in [IMPORT] of Quadrix.ini.
QString Variable(const SettingsFile& file, const QString& section, const QString& key);
/// The value of that variable; none where it is not set, while an empty one is a password too.
std::optional<QString> FromEnvironment(const SettingsFile& file, const QString& section, const QString& key);

/// A password as a connection needs it. One that stands in the file in clear is replaced there by a masked form, which
/// tells itself by its first characters, so that a clear one may be written over it at any time; where that cannot be
/// done, the operator is told that it stays legible. Empty when there is none.
QString Read(Session& session, SettingsFile& file, const QString& section, const QString& key);
/// The form that the file keeps of a password, for copying it into another file: masked, as far as it can be.
QString ReadMasked(Session& session, SettingsFile& file, const QString& section, const QString& key);

/// Tells the operator that a password stays legible, and why; each password once in a session.
void TellLegible(Session& session, const SettingsFile& file, const QString& section, const QString& key,
                 const QString& reason);

} // namespace storedPassword
