#pragma once

#include "app/progressText.h"
#include "core/Operator.h"

#include <QDialog>

#include <functional>

class ChoiceList;
class QHBoxLayout;
class QLabel;
class QProgressBar;
class QPushButton;
class WrappedLabel;

/// The dialog of a long operation: step, bar, rows done, rate, time left and a cancel button. Modal, but shown, not
/// executed: the operation goes on and gives the window its turn at every value.
class frmProgress final : public QDialog, public Progress {
    Q_OBJECT

public:
    /// Shows the dialog in the middle of the screen. @param parent the window it stands before
    /// @param seconds of work since any fixed moment, for the rate
    frmProgress(QWidget* parent, std::function<double()> seconds);

    bool Cancel() const override { return m_cancel; }

    /// Shows what is done about errors, and lets it be changed for the rest of the operation. @param action must
    /// outlive the dialog; whoever else changes it is followed
    void OfferErrors(ErrorAction& action);

public slots:
    /// Sets the cancel flag; the operation stops at its next row and closes the dialog.
    void cmdCancel_Click();
    /// Escape and the close button of the frame: cancels when the operator says so; the dialog stays.
    void reject() override;

signals:
    /// Asked by `reject` before it cancels.
    void CancelAsked(bool& agreed);

protected:
    void Refresh() override;

private:
    void Lay();
    void Centre();
    void Draw(double seconds);
    void ShowErrors();

    WrappedLabel* lblProgress;
    QProgressBar* prgImport;
    QLabel* m_done;
    QLabel* m_rate;
    QLabel* m_left;
    QPushButton* cmdCancel;
    QHBoxLayout* m_errors;
    ChoiceList* m_mode = nullptr; ///< null: what is done about errors is not offered
    QPushButton* m_ignoreAll = nullptr;
    ErrorAction* m_action = nullptr;
    bool m_cancel = false;
    RateMeter m_meter;
    std::function<double()> m_seconds;
    double m_drawnAt = -1; ///< seconds on the clock; negative before the first drawing
    QString m_drawnCaption;
    float m_drawnMax = 0;
};
