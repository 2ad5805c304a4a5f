#pragma once

#include <QComboBox>

/// A list to choose from. The wheel turns over it do not change the choice: a notch on the way down the window would
/// have another company filled.
class ChoiceList : public QComboBox {
    Q_OBJECT

public:
    using QComboBox::QComboBox;

    void showPopup() override;

signals:
    /// The list is about to open: what it shows can be renewed.
    void Opening();

protected:
    void wheelEvent(QWheelEvent* event) override;
};
