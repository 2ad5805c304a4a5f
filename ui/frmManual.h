#pragma once

#include <QDialog>

/// The manual in a window of its own, at the page of the window that it was called from.
class frmManual final : public QDialog {
    Q_OBJECT

public:
    /// @param page name of its file below docs/manuale
    frmManual(const QString& page, QWidget* parent);
};

/// Opens the manual where F1 is pressed in a window that has a page and no help of its own. It is an event filter of
/// the application.
class ManualKey final : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override;
};
