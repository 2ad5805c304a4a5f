#pragma once

#include <QDialog>

class QDialogButtonBox;
class QPlainTextEdit;

/// The buttons of a dialog that asks whether to go on; No is the default, and what Escape means.
QDialogButtonBox* YesAndNo(QDialog& dialog);

/// Lines to be looked through before an answer, of which as many are seen as there is room.
QPlainTextEdit* NewReviewList(const QStringList& lines);

/// A question about a list that is looked through before it is answered; No is the default, and what Escape means.
class ReviewDialog final : public QDialog {
    Q_OBJECT

public:
    ReviewDialog(const QString& question, const QStringList& lines, QWidget* parent);
};
