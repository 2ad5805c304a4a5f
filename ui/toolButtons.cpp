#include "ui/toolButtons.h"

#include <QToolButton>

QToolButton* NewToolButton(const QString& name, const QString& caption, const QString& hint, const QKeySequence& keys) {
    auto* button = new QToolButton;
    button->setObjectName(name);
    button->setText(caption);
    button->setShortcut(keys);
    button->setToolTip(hint + " (" + keys.toString(QKeySequence::NativeText) + ')');
    button->setAccessibleName(caption);
    button->setAccessibleDescription(button->toolTip());
    button->setFocusPolicy(Qt::StrongFocus);
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    return button;
}
