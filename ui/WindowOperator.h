#pragma once

#include "core/Operator.h"

#include <QPointer>
#include <QTimer>

class QDialog;
class QMessageBox;
class QWidget;
class frmProgress;

/// The operator at the window: real dialogs before the main window.
class WindowOperator final : public Operator {
public:
    /// The window that the dialogs stand before, while there is one.
    void SetWindow(QWidget* window) { m_window = window; }
    /// What is done about errors, which a progress dialog lets the operator change; null: it does not.
    void SetErrorAction(ErrorAction* action) { m_errorAction = action; }

    /// The details stand beneath the question. Esc and the close button of the box give the question up.
    Answer Ask(const QString& question, Question style = Question::Plain, const QString& details = {}) override;
    bool Review(const QString& question, const QStringList& lines) override;
    /// A prompt that names a password hides what is typed.
    std::optional<QString> Input(const QString& prompt, const QString& title, const QString& defaultText) override;
    QString OpenFile(const QString& title, const QString& filter) override;
    /// Lets the operator choose a file to write; an empty path when he gave up. One that is there is written over only
    /// when he agrees; a name without an ending gets that of the filter. @param name that is proposed @param filter
    /// "description|pattern" pairs, the usual one first
    QString SaveFile(const QString& title, const QString& name, const QString& filter);
    ErrorAnswer ChooseOnError(const ErrorEntry& error) override;
    std::unique_ptr<Progress> ShowProgress() override;

    /// Asks whether the operation under way is to be stopped, and presses cancel in its progress dialogs.
    /// @return whether it will stop; false without a question when it shows no progress dialog
    bool AskToStop(const QString& question);

    /// The program is to end: presses cancel in every progress dialog, leaves the others as Esc would, without their
    /// asking, and shows none from now on: questions count as given up, errors end what they happened in.
    void End();

protected:
    void ShowMessage(const QString& text, Icon icon) override;
    void ShowError(const ErrorEntry& error) override;
    void ShowBusy(bool busy) override;

private:
    QWidget* Parent() const;
    int Exec(QDialog& dialog);
    int Run(QMessageBox& box);
    void CancelProgresses();
    void LeaveDialogs();

    QWidget* m_window = nullptr;
    ErrorAction* m_errorAction = nullptr;
    QVector<QPointer<frmProgress>> m_progresses; ///< those on the screen, oldest first
    bool m_ending = false;
    QTimer m_leaving; ///< runs from the end on
};

/// A filter of "description|pattern" pairs in the form that the file dialog reads: "File di Excel (*.xls);;Tutti i
/// file (*)". Patterns in a description's own brackets are not repeated.
QString FileDialogFilter(const QString& filter);
