#include "ui/frmSequence.h"

#include "ui/choiceDialog.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

frmSequence::frmSequence(QWidget* parent)
    : QDialog(parent) {
    setObjectName("frmSequence");
    setWindowTitle("Sequenza di importazione");
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    Lay();
}

void frmSequence::Lay() {
    auto* all = new QVBoxLayout(this);
    all->addWidget(new QLabel("Passi da eseguire:"));
    QStringList captions;
    for (const SequenceChoice& choice : SequenceChoices()) {
        captions.append(choice.caption);
    }
    captions = choiceDialog::WithMnemonics(captions);
    for (const SequenceChoice& choice : SequenceChoices()) {
        auto* box = new QCheckBox(captions.takeFirst());
        box->setObjectName(QStringLiteral("chk") + QLatin1String(choice.name));
        all->addWidget(box);
        m_boxes.emplace_back(choice.step, box);
    }
    const choiceDialog::Buttons buttons = choiceDialog::NewButtons();
    connect(buttons.ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(buttons.cancel, &QPushButton::clicked, this, &QDialog::reject);
    all->addStretch();
    all->addLayout(buttons.row);
}

std::optional<SequenceSteps> frmSequence::LanciaSequenza() {
    if (exec() != Accepted) {
        return std::nullopt;
    }
    SequenceSteps steps;
    for (const auto& [step, box] : m_boxes) {
        steps.*step = box->isChecked();
    }
    return steps;
}
