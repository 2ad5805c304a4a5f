#pragma once

#include "app/sequence.h"

#include <QDialog>

class QCheckBox;

/// The dialog in which the operator chooses the steps of the second sequence.
class frmSequence final : public QDialog {
    Q_OBJECT

public:
    explicit frmSequence(QWidget* parent);

    /// Shows the dialog; the steps that are ticked when the operator confirms, none when he gives up.
    std::optional<SequenceSteps> LanciaSequenza();

private:
    void Lay();

    std::vector<std::pair<SequenceStep, QCheckBox*>> m_boxes;
};
