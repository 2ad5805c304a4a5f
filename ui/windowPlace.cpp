#include "ui/windowPlace.h"

#include "app/windowFile.h"

#include <QScreen>
#include <QWidget>

namespace windowPlace {

namespace {

constexpr QSize Frame(16, 48); ///< what a desktop puts around a window, at the most

} // namespace

void Restore(QWidget& window, const QString& folder, const QString& key) {
    if (!window.restoreGeometry(windowFile::Read(folder, key).toByteArray())) {
        window.resize(Fitted(window.size(), window.screen()->availableSize()));
    }
}

void Keep(const QWidget& window, const QString& folder, const QString& key) {
    windowFile::Write(folder, key, window.saveGeometry());
}

void SizeTo(QWidget& window, int characters, int lines) {
    const QFontMetrics font = window.fontMetrics();
    window.resize(
        Fitted({font.averageCharWidth() * characters, font.lineSpacing() * lines}, window.screen()->availableSize()));
}

QSize Fitted(const QSize& wanted, const QSize& available) { return wanted.boundedTo(available - Frame); }

} // namespace windowPlace
