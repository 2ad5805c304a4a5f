#pragma once

#include <QDialog>

class QDialogButtonBox;

/// The buttons of a dialog that asks whether to go on; No is the default, and what Escape means.
QDialogButtonBox* YesAndNo(QDialog& dialog);

/// A question about a list that is looked through before it is answered; No is the default, and what Escape means.
class ReviewDialog final : public QDialog {
    Q_OBJECT

public:
    ReviewDialog(const QString& question, const QStringList& lines, QWidget* parent);
};
