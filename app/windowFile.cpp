#include "app/windowFile.h"

#include "sql/ownFile.h"

#include <QDir>
#include <QSettings>

namespace windowFile {

namespace {

QString PathIn(const QString& folder) { return QDir(folder).filePath(QStringLiteral("Finestra.ini")); }

} // namespace

QVariant Read(const QString& folder, const QString& key) {
    return QSettings(PathIn(folder), QSettings::IniFormat).value(key);
}

void Write(const QString& folder, const QString& key, const QVariant& value) {
    if (const QString path = PathIn(folder); ownFile::LinkObstacle(path).isEmpty()) {
        QSettings(path, QSettings::IniFormat).setValue(key, value);
    }
}

} // namespace windowFile
