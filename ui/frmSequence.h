#pragma once

#include "app/sequence.h"

#include <QDialog>

class QCheckBox;

/// The dialog in which the operator chooses the steps of the second sequence.
class frmSequence final : public QDialog {
    Q_OBJECT

public:
    frmSequence(Operator& person, QWidget* parent);

    /// Shows the dialog; the steps that are ticked when the operator confirms, none when he gives up.
    std::optional<SequenceSteps> LanciaSequenza();

public slots:
    /// Closes the dialog when something is chosen.
    void cmdOk_Click();

private:
    void Lay();
    /// Those that are ticked.
    SequenceSteps Steps() const;

    Operator& m_person;
    std::vector<std::pair<SequenceStep, QCheckBox*>> m_boxes;
};
