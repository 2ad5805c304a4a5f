#pragma once

#include <QVariant>

/// "Finestra.ini" in the folder of the settings: what windows keep of their own, such as their places and the files
/// that were chosen last.
namespace windowFile {

/// What stands there under a key; invalid without it.
QVariant Read(const QString& folder, const QString& key);
/// Does nothing where the file is a link, which would be followed, or cannot be written.
void Write(const QString& folder, const QString& key, const QVariant& value);

} // namespace windowFile
