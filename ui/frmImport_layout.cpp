#include "app/template/sheetTemplate.h"
#include "ui/ChoiceList.h"
#include "ui/ConnectionBanner.h"
#include "ui/ElidedLabel.h"
#include "ui/frmImport.h"
#include "ui/ImportButtons.h"
#include "ui/lists.h"
#include "ui/LogView.h"
#include "ui/OriginList.h"
#include "ui/SourceBar.h"
#include "ui/toolButtons.h"
#include "ui/windowPlace.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int OriginsAtOnce = 20;
constexpr int LeastAccountLines = 7;
constexpr int ImportWidth = 110; ///< characters
constexpr int ImportHeight = 44; ///< lines

/// A list to choose from; nothing is chosen at first.
template<class List>
List* NewList(const QString& name, const QString& accessibleName, const QString& placeholder) {
    auto* list = new List;
    list->setObjectName(name);
    list->setAccessibleName(accessibleName);
    list->setPlaceholderText(placeholder);
    list->setMaxVisibleItems(OriginsAtOnce);
    list->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    return list;
}

/// A button that opens a menu, which is filled each time.
void AddMenu(QToolButton& button, const std::function<void(QMenu&)>& fill) {
    auto* menu = new QMenu(&button);
    QObject::connect(menu, &QMenu::aboutToShow, menu, [menu, fill] { fill(*menu); });
    button.setMenu(menu);
    button.setPopupMode(QToolButton::InstantPopup);
}

} // namespace

void frmImport::Lay() {
    setObjectName("frmImport");
    setWindowTitle("Quadrix/IMPORT");
    m_banner = new ConnectionBanner;
    m_banner->hide();
    connect(m_banner, &ConnectionBanner::Retry, this, &frmImport::RetryConnection);
    auto* work = new QHBoxLayout;
    work->addWidget(NewImports(), 1);
    work->addWidget(NewTools());
    m_database = new ElidedLabel;
    m_database->setObjectName("lblDatabase");
    m_settings = new ElidedLabel;
    m_settings->setObjectName("lblSettings");
    auto* status = new QHBoxLayout;
    status->addWidget(m_database, 1);
    status->addWidget(m_settings, 1);
    auto* all = new QVBoxLayout(this);
    all->addWidget(m_banner);
    all->addWidget(NewChoices());
    all->addLayout(work);
    all->addWidget(NewAccount(), 1);
    all->addLayout(status);
    windowPlace::SizeTo(*this, ImportWidth, ImportHeight);
}

QGroupBox* frmImport::NewChoices() {
    cmbAzienda = NewList<ChoiceList>("cmbAzienda", "Azienda", "Scegliere l'azienda");
    cmbOrigine = NewList<OriginList>("cmbOrigine", "Origine dei dati", "Scegliere l'origine dei dati");
    cmbErrors = NewList<ChoiceList>("cmbErrors", "In caso di errore", {});
    cmbErrors->addItems(ErrorModes());
    cmbErrors->setCurrentIndex(0);
    connect(cmbAzienda, &ChoiceList::Opening, this, [this] {
        if (!m_running) {
            RenewCompanies();
        }
    });
    connect(cmbOrigine, &QComboBox::currentIndexChanged, this, &frmImport::cmbOrigine_Click);
    auto* picIcon = new QLabel;
    picIcon->setObjectName("picIcon");
    constexpr int iconSize = 64;
    picIcon->setPixmap(windowIcon().pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
    auto* group = new QGroupBox("Azienda e origine");
    auto* lines = new QFormLayout;
    lines->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    lines->addRow("A&zienda:", cmbAzienda);
    lines->addRow("&Origine:", cmbOrigine);
    lines->addRow("I&n caso di errore:", cmbErrors);
    m_source = new SourceBar;
    connect(m_source, &SourceBar::Edit, this, &frmImport::cmdSource_Click);
    connect(m_source, &SourceBar::Try, this, &frmImport::cmdTrySource_Click);
    connect(m_source, &SourceBar::Inspect, this, &frmImport::cmdInspect_Click);
    connect(m_source, &SourceBar::Template, this, [this](int position) {
        WriteTemplate(sheetTemplate::ButtonsOf(*Chosen().origin).at(static_cast<size_t>(position)));
    });
    lines->addRow(new QLabel("Sorgente:"), m_source); // its buttons have keys of their own
    auto* all = new QHBoxLayout(group);
    all->addLayout(lines, 1);
    all->addWidget(picIcon, 0, Qt::AlignVCenter);
    return group;
}

QGroupBox* frmImport::NewImports() {
    m_imports = new ImportButtons;
    connect(m_imports, &ImportButtons::Pressed, this, &frmImport::Import);
    auto* group = new QGroupBox("Importazioni");
    auto* all = new QVBoxLayout(group);
    all->addWidget(m_imports);
    all->addStretch();
    return group;
}

QList<QToolButton*> frmImport::NewTrialTools() {
    auto* check = NewToolButton("cmdCheck", "Verifica",
                                "Guarda se sorgente e azienda hanno ciò che serve, senza scrivere", QKeySequence("F7"));
    connect(check, &QToolButton::clicked, this, &frmImport::cmdCheck_Click);
    auto* trial = NewToolButton("cmdTrial", "Prova", "Prova un'importazione: alla fine il database torna com'era",
                                QKeySequence("F8"));
    AddMenu(*trial, [this](QMenu& menu) { FillTrials(menu); });
    auto* proof = NewToolButton("cmdProof", "Quadratura",
                                "Confronta la sorgente con ciò che è in Quadrix e ne apre il verbale, senza scrivere",
                                QKeySequence("F11"));
    AddMenu(*proof, [this](QMenu& menu) { FillProofs(menu); });
    auto* codes = NewToolButton("cmdCodes", "Codici", "Codici dell'origine che attendono il codice di Quadrix",
                                QKeySequence("F9"));
    connect(codes, &QToolButton::clicked, this, &frmImport::cmdCodes_Click);
    auto* help = NewToolButton("cmdHelp", "Aiuto", "Tasti, corrispondenze dell'origine, versione",
                               QKeySequence(QKeySequence::HelpContents));
    connect(help, &QToolButton::clicked, this, &frmImport::ShowHelp);
    return {check, trial, codes, proof, help};
}

QGroupBox* frmImport::NewTools() {
    cmdReset = lists::NewButton("cmdReset", "&Reset Database...", "Elimina i dati scelti dell'azienda");
    cmdSequence = lists::NewButton("cmdSequence", "Se&quenza...", "Esegue la sequenza di importazione");
    cmdExit = lists::NewButton("cmdExit", "&Esci", "Chiude il programma");
    connect(cmdReset, &QPushButton::clicked, this, &frmImport::cmdReset_Click);
    connect(cmdSequence, &QPushButton::clicked, this, &frmImport::cmdSequence_Click);
    connect(cmdExit, &QPushButton::clicked, this, &QWidget::close);
    // Two beside each other: at 200 % the window is not taller than the screen.
    auto* tools = new QGridLayout;
    tools->addWidget(cmdReset, 0, 0);
    tools->addWidget(cmdSequence, 0, 1);
    QList<QToolButton*> further = NewTrialTools();
    further.append(NewHistoryTool());
    int place = 2;
    for (QToolButton* tool : std::as_const(further)) {
        tool->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
        tools->addWidget(tool, place / 2, place % 2);
        ++place;
    }
    auto* group = new QGroupBox("Strumenti");
    auto* all = new QVBoxLayout(group);
    all->addLayout(tools);
    all->addStretch();
    all->addWidget(cmdExit);
    return group;
}

QWidget* frmImport::NewAccount() {
    m_result = new QPlainTextEdit;
    m_result->setObjectName("txtResult");
    m_result->setAccessibleName("Esito dell'ultima operazione");
    m_result->setReadOnly(true);
    m_result->setTabChangesFocus(true);
    m_result->setPlaceholderText("Qui compare l'esito dell'ultima operazione.");
    m_log = new LogView;
    m_account = new QTabWidget;
    m_account->setObjectName("tabAccount");
    m_account->addTab(m_result, "Esi&to");
    m_account->addTab(m_log, "Re&gistro");
    m_account->setMinimumHeight(fontMetrics().lineSpacing() * LeastAccountLines);
    return m_account;
}
