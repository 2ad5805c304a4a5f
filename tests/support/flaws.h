#pragma once

#include "ui/mnemonics.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSet>
#include <QTabWidget>

namespace flaws {

/// Every control of a window that a mnemonic of its own stands for and that is on the screen now; of the tabs those that
/// have one, as the keys go through all of them.
inline QStringList VisibleCaptions(QWidget& window) {
    QStringList captions;
    for (const QPushButton* button : window.findChildren<QPushButton*>()) {
        captions += button->isVisible() ? QStringList(button->text()) : QStringList();
    }
    for (const QCheckBox* box : window.findChildren<QCheckBox*>()) {
        captions += box->isVisible() ? QStringList(box->text()) : QStringList();
    }
    for (const QLabel* label : window.findChildren<QLabel*>()) {
        captions += label->isVisible() && label->buddy() != nullptr ? QStringList(label->text()) : QStringList();
    }
    for (const QTabWidget* tabs : window.findChildren<QTabWidget*>()) {
        for (int tab = 0; tabs->isVisible() && tab < tabs->count(); ++tab) {
            captions += MnemonicOf(tabs->tabText(tab)).isNull() ? QStringList() : QStringList(tabs->tabText(tab));
        }
    }
    return captions;
}

/// What a control lacks for those who see it, read it aloud or reach it by its letter; empty when all is well.
inline QString Of(QWidget& window) {
    QSet<QChar> letters;
    for (const QString& caption : VisibleCaptions(window)) {
        const QChar letter = MnemonicOf(caption);
        if (letter.isNull() || letters.contains(letter)) {
            return "mnemonic of " + caption;
        }
        letters.insert(letter);
    }
    for (const QPushButton* button : window.findChildren<QPushButton*>()) {
        if (button->isVisible() && (button->width() < button->sizeHint().width() ||
                                    button->height() < button->sizeHint().height() || button->text().isEmpty())) {
            return QStringLiteral("size of %1: %2 x %3").arg(button->text()).arg(button->width()).arg(button->height());
        }
        if (button->isVisible() && button->shortcut() != QKeySequence::mnemonic(button->text())) {
            return "the letter does not press " + button->text();
        }
    }
    for (const QComboBox* list : window.findChildren<QComboBox*>()) {
        if (list->accessibleName().isEmpty() || list->focusPolicy() == Qt::NoFocus) {
            return "name of " + list->objectName();
        }
    }
    return {};
}

/// The same of a window whose tabs are looked at one after the other; the one that was chosen is so again at the end.
inline QString OfEachTab(QWidget& window) {
    auto* tabs = window.findChild<QTabWidget*>();
    const int chosen = tabs->currentIndex();
    QString flaw;
    for (int tab = 0; tab < tabs->count() && flaw.isEmpty(); ++tab) {
        tabs->setCurrentIndex(tab);
        flaw = Of(window);
    }
    tabs->setCurrentIndex(chosen);
    return flaw;
}

} // namespace flaws
