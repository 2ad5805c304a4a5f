#pragma once

#include "sql/ovErrors.h"

#include <QDialog>

class QDialogButtonBox;
class QPushButton;
class QVBoxLayout;

/// Shows one error: what happened and what to do, the source row, the statement and the engine's own words, all of
/// which can be copied at once.
class ErrorDialog final : public QDialog {
    Q_OBJECT

public:
    enum class Kind {
        Report, ///< an error that ended a procedure: it can only be read
        Choice, ///< a failing statement: Riprova, Ignora, Ignora tutti, Interrompi
    };

    ErrorDialog(const ErrorEntry& error, Kind kind, QWidget* parent);

    /// The operator's choice; closing the dialog otherwise is `Abort`.
    ErrorAnswer Answer() const { return m_answer; }

    /// The error as text, for the clipboard and for mail to whoever can help.
    static QString TextOf(const ErrorEntry& error);

protected:
    /// A letter alone presses the button that it stands for, as in a question box.
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Lay(const ErrorEntry& error, Kind kind);
    void AddDetail(QVBoxLayout& layout, const QString& title, const QString& name, const QString& text);
    void AddStatement(QVBoxLayout& layout, const QString& text);
    void AddChoices(QDialogButtonBox& buttons, const ErrorEntry& error);
    QPushButton* AddChoice(QDialogButtonBox& buttons, const QString& text, const QString& name, ErrorAnswer answer);
    void AddCopy(QDialogButtonBox& buttons, const QString& text);

    ErrorAnswer m_answer = ErrorAnswer::Abort;
};
