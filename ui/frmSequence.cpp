#include "ui/frmSequence.h"

#include "ui/choiceDialog.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

frmSequence::frmSequence(Operator& person, QWidget* parent)
    : QDialog(parent),
      m_person(person) {
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
    connect(buttons.ok, &QPushButton::clicked, this, &frmSequence::cmdOk_Click);
    connect(buttons.cancel, &QPushButton::clicked, this, &QDialog::reject);
    all->addStretch();
    all->addLayout(buttons.row);
}

SequenceSteps frmSequence::Steps() const {
    SequenceSteps steps;
    for (const auto& [step, box] : m_boxes) {
        steps.*step = box->isChecked();
    }
    return steps;
}

void frmSequence::cmdOk_Click() {
    if (Steps() == SequenceSteps()) {
        m_person.Message(QStringLiteral("Selezionare almeno un opzione!"), Icon::Exclamation);
    } else {
        accept();
    }
}

std::optional<SequenceSteps> frmSequence::LanciaSequenza() {
    return exec() == Accepted ? std::optional(Steps()) : std::nullopt;
}
