#pragma once

#include "ui/ChoiceList.h"

class QFrame;
class QLineEdit;
class QTreeWidget;

/// The list of origins with the kind of source of each. What is typed, over the list or when it is open, is looked for
/// in any part of both.
class OriginList final : public ChoiceList {
    Q_OBJECT

public:
    explicit OriginList(QWidget* parent = nullptr);

    void AddOrigin(const QString& name, const QString& kind);
    void showPopup() override;
    void hidePopup() override;

protected:
    /// Letters and digits open the list and are looked for.
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Fill();
    void Filter(const QString& text);
    void Take();

    QFrame* m_popup;
    QLineEdit* m_text;
    QTreeWidget* m_found;
};
