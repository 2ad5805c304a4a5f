#pragma once

#include <QStringList>

class QHBoxLayout;
class QPushButton;

/// What the dialogs in which something is ticked have in common.
namespace choiceDialog {

/// Captions of check boxes with a mnemonic each; the letters of the two buttons are kept free.
QStringList WithMnemonics(const QStringList& captions);

/// The buttons at the foot of a dialog.
struct Buttons {
    QHBoxLayout* row;
    QPushButton* ok;     ///< "cmdOk"
    QPushButton* cancel; ///< "cmdCancel", which Enter presses: nothing is started by accident
};

Buttons NewButtons();

} // namespace choiceDialog
