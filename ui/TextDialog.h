#pragma once

#include <QDialog>

/// A text of many lines to be read, such as a log.
class TextDialog final : public QDialog {
    Q_OBJECT

public:
    TextDialog(const QString& title, const QString& text, QWidget* parent);
};
