#pragma once

#include <QSize>
#include <QString>

class QWidget;

/// Size and place of the windows, kept between two starts.
namespace windowPlace {

/// Puts a window where it was when it was kept, or makes it no larger than the screen. Nothing kept: as it is.
/// @param folder that of the settings file @param key under which it was kept, one for each window
void Restore(QWidget& window, const QString& folder, const QString& key);

/// Keeps size and place in "Finestra.ini" of that folder; a folder that cannot be written keeps none.
void Keep(const QWidget& window, const QString& folder, const QString& key);

/// Makes a window so many characters of its font wide and so many lines high, but no larger than the screen.
void SizeTo(QWidget& window, int characters, int lines);

/// A size that fits a screen with the frame around it, where the window can be made so small.
QSize Fitted(const QSize& wanted, const QSize& available);

} // namespace windowPlace
