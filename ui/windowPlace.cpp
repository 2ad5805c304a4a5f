#include "ui/windowPlace.h"

#include "sql/ownFile.h"

#include <QDir>
#include <QScreen>
#include <QSettings>
#include <QWidget>

namespace windowPlace {

namespace {

constexpr QSize Frame(16, 48); ///< what a desktop puts around a window, at the most

QString FileIn(const QString& folder) { return QDir(folder).filePath(QStringLiteral("Finestra.ini")); }

} // namespace

void Restore(QWidget& window, const QString& folder, const QString& key) {
    const QSettings kept(FileIn(folder), QSettings::IniFormat);
    if (!window.restoreGeometry(kept.value(key).toByteArray())) {
        window.resize(Fitted(window.size(), window.screen()->availableSize()));
    }
}

void Keep(const QWidget& window, const QString& folder, const QString& key) {
    if (const QString file = FileIn(folder); ownFile::LinkObstacle(file).isEmpty()) {
        QSettings(file, QSettings::IniFormat).setValue(key, window.saveGeometry());
    }
}

void SizeTo(QWidget& window, int characters, int lines) {
    const QFontMetrics font = window.fontMetrics();
    window.resize(
        Fitted({font.averageCharWidth() * characters, font.lineSpacing() * lines}, window.screen()->availableSize()));
}

QSize Fitted(const QSize& wanted, const QSize& available) { return wanted.boundedTo(available - Frame); }

} // namespace windowPlace
