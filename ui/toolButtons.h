#pragma once

#include <QKeySequence>

class QToolButton;

/// A button that is reached by a key of its own and not by a letter: of those the main window has none left.
/// @param hint what it does; the tool tip tells the key too
QToolButton* NewToolButton(const QString& name, const QString& caption, const QString& hint, const QKeySequence& keys);
