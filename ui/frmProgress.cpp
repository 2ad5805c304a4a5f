#include "ui/frmProgress.h"

#include "app/importFlow.h"
#include "ui/ChoiceList.h"
#include "ui/WrappedLabel.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <cmath>

namespace {

constexpr int BarSteps = 10000;   ///< the bar counts whole numbers only
constexpr double DrawEvery = 0.1; ///< seconds
constexpr int ProgressWidth = 72; ///< characters

QLabel* NewLabel(QWidget* parent, const QString& name, Qt::Alignment alignment) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(alignment | Qt::AlignVCenter);
    return label;
}

} // namespace

frmProgress::frmProgress(QWidget* parent, std::function<double()> seconds)
    : QDialog(parent),
      lblProgress(new WrappedLabel({}, this)),
      prgImport(new QProgressBar(this)),
      m_done(NewLabel(this, "lblDone", Qt::AlignLeft)),
      m_rate(NewLabel(this, "lblRate", Qt::AlignHCenter)),
      m_left(NewLabel(this, "lblTimeLeft", Qt::AlignRight)),
      cmdCancel(new QPushButton("&Interrompi", this)),
      m_errors(new QHBoxLayout),
      m_seconds(std::move(seconds)) {
    setObjectName("frmProgress");
    setWindowTitle(QuadrixCaption);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setModal(true);
    Lay();
    connect(cmdCancel, &QPushButton::clicked, this, &frmProgress::cmdCancel_Click);
    // Who answers a row of boxes with Enter or Space must not stop what they have started with the last stroke.
    cmdCancel->setAutoDefault(false);
    setFocusPolicy(Qt::StrongFocus);
    setFocus();
    show();
    Centre();
}

void frmProgress::Lay() {
    lblProgress->setObjectName("lblProgress");
    lblProgress->setAccessibleName("Operazione in corso");
    lblProgress->setMinimumWidth(fontMetrics().averageCharWidth() * ProgressWidth);
    prgImport->setObjectName("prgImport");
    prgImport->setAccessibleName("Avanzamento");
    prgImport->setRange(0, BarSteps);
    cmdCancel->setObjectName("cmdCancel");
    auto* facts = new QHBoxLayout;
    facts->addWidget(m_done, 1);
    facts->addWidget(m_rate, 1);
    facts->addWidget(m_left, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdCancel);
    auto* all = new QVBoxLayout(this);
    all->addWidget(lblProgress);
    all->addWidget(prgImport);
    all->addLayout(facts);
    all->addLayout(m_errors);
    all->addStretch();
    all->addLayout(buttons);
}

void frmProgress::OfferErrors(ErrorAction& action) {
    m_action = &action;
    m_mode = new ChoiceList(this);
    m_mode->setObjectName("cmbErrorsNow");
    m_mode->setAccessibleName("In caso di errore, da adesso");
    m_mode->addItems(ErrorModes());
    connect(m_mode, &QComboBox::activated, this, [this](int mode) { *m_action = ErrorModeAction(mode); });
    m_ignoreAll = new QPushButton("Ignora &tutti", this);
    m_ignoreAll->setObjectName("cmdIgnoreAll");
    m_ignoreAll->setAutoDefault(false);
    m_ignoreAll->setToolTip("Fino alla fine di questa operazione abbandona senza chiedere ogni riga che non riesce");
    m_ignoreAll->setAccessibleDescription(m_ignoreAll->toolTip());
    connect(m_ignoreAll, &QPushButton::clicked, this, [this] {
        *m_action = ErrorAction::Ignore;
        setFocus(); // else the button beside would have it, which the next stroke presses
        ShowErrors();
    });
    auto* label = new QLabel("In caso di &errore:", this);
    label->setBuddy(m_mode);
    m_errors->addWidget(label);
    m_errors->addWidget(m_mode);
    m_errors->addWidget(m_ignoreAll);
    m_errors->addStretch();
    ShowErrors();
}

/// The answer to an error may have changed it too.
void frmProgress::ShowErrors() {
    if (m_mode != nullptr) {
        m_mode->setCurrentText(ErrorModeName(*m_action));
        m_ignoreAll->setEnabled(*m_action != ErrorAction::Ignore);
    }
}

void frmProgress::Centre() {
    const QRect room = screen()->geometry();
    move(room.left() + room.width() / 2 - width() / 2, room.top() + room.height() / 2 - height() / 2);
}

void frmProgress::cmdCancel_Click() {
    m_cancel = true;
    cmdCancel->setEnabled(false);
    cmdCancel->setText("Interruzione...");
}

void frmProgress::reject() {
    bool agreed = false;
    if (!m_cancel) {
        emit CancelAsked(agreed);
    }
    if (agreed) {
        cmdCancel_Click();
    }
}

void frmProgress::Refresh() {
    const double seconds = m_seconds();
    const bool full = Value() >= Max();
    if (seconds - m_drawnAt >= DrawEvery || m_drawnAt < 0 || full || m_drawnCaption != Caption() ||
        m_drawnMax != Max()) {
        Draw(seconds);
    }
    QCoreApplication::processEvents();
}

void frmProgress::Draw(double seconds) {
    m_drawnAt = seconds;
    m_drawnCaption = Caption();
    m_drawnMax = Max();
    m_meter.Add(seconds, Value());
    ShowErrors();
    lblProgress->SetText(Caption());
    const double share = Max() > 0 ? static_cast<double>(Value()) / static_cast<double>(Max()) : 0;
    prgImport->setValue(static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * BarSteps)));
    m_done->setText(DoneText(Value(), Max()));
    m_rate->setText(RateText(m_meter.PerSecond()));
    m_left->setText(TimeLeftText(Max() - Value(), m_meter.PerSecond()));
}
