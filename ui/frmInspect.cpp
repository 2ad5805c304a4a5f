#include "ui/frmInspect.h"

#include "app/connectSource.h"
#include "app/inspect_draft.h"
#include "app/inspect_texts.h"
#include "ui/InspectColumns.h"
#include "ui/InspectFurther.h"
#include "ui/inspectMarks.h"
#include "ui/InspectPreview.h"
#include "ui/lists.h"
#include "ui/told.h"
#include "ui/windowPlace.h"
#include "ui/WrappedLabel.h"

#include <QCheckBox>
#include <QDir>
#include <QHeaderView>
#include <QPushButton>
#include <QScopeGuard>
#include <QShortcut>
#include <QSplitter>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

using inspection::Table;

namespace {

constexpr int InspectWidth = 170; ///< characters
constexpr int InspectHeight = 40; ///< lines

enum ColumnOfTables { TableColumn, TableStateColumn, TableInSourceColumn, TableRowsColumn };

} // namespace

void frmInspect::Show(Session& session, const contract::Origin& origin, QWidget* parent) {
    const auto close = qScopeGuard([&session] { CloseSource(session); });
    const auto show = [&] {
        {
            const Operator::Busy busy(session.Person);
            if (!inspection::OpenToLook(session, origin)) {
                return;
            }
        }
        frmInspect(session, origin, parent).exec();
    };
    Told(session.Person, show, "Impossibile connettersi a " + origin.name + "!\n\n");
}

frmInspect::frmInspect(Session& session, const contract::Origin& origin, QWidget* parent)
    : QDialog(parent),
      m_session(session),
      m_origin(origin) {
    setObjectName("frmInspect");
    setWindowTitle("Esamina sorgente - " + origin.name);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint, true);
    Lay();
    Refresh();
    m_tables->setFocus();
}

void frmInspect::Lay() {
    m_summary = new WrappedLabel(QString());
    m_summary->setObjectName("lblSummary");
    m_columns = new InspectColumns;
    connect(m_columns, &InspectColumns::Chosen, this, [this](const QString& key, const QString& name) {
        Take({{key, name}});
    });
    m_further = new InspectFurther(m_session, m_origin);
    connect(m_further, &InspectFurther::Changed, this, &frmInspect::Refresh);
    m_preview = new InspectPreview(m_session, m_origin);
    m_tabs = new QTabWidget;
    m_tabs->addTab(m_columns, "&Colonne");
    m_tabs->addTab(m_further, "&Filtri e altri campi");
    m_tabs->addTab(m_preview, "Ante&prima");
    connect(m_tabs, &QTabWidget::currentChanged, this, [this] { ShowTable(); });
    auto* parts = new QSplitter;
    parts->setChildrenCollapsible(false);
    parts->addWidget(NewTables());
    parts->addWidget(m_tabs);
    const int part = fontMetrics().averageCharWidth() * InspectWidth / 5;
    parts->setSizes({part * 2, part * 3});
    parts->setStretchFactor(0, 2);
    parts->setStretchFactor(1, 3);
    auto* takeAll = lists::NewButton("cmdTakeAll", "&Accetta le proposte...",
                                     "Mostra tutti i nomi proposti e, dopo la conferma, li scrive nel tracciato");
    connect(takeAll, &QPushButton::clicked, this, &frmInspect::cmdTakeAll_Click);
    auto* takeEqual = lists::NewButton("cmdTakeEqual", "Accetta &gli uguali",
                                       "Scrive nel tracciato i nomi uguali salvo maiuscole, spazi e segni (Ctrl+U)");
    connect(new QShortcut(QKeySequence("Ctrl+U"), this), &QShortcut::activated, takeEqual, &QPushButton::click);
    connect(takeEqual, &QPushButton::clicked, this, &frmInspect::cmdTakeEqual_Click);
    auto* close = lists::NewButton("cmdClose", "C&hiudi", {});
    connect(close, &QPushButton::clicked, this, &frmInspect::reject);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_onlyMissing);
    buttons->addStretch();
    buttons->addWidget(takeEqual);
    buttons->addWidget(takeAll);
    buttons->addWidget(close);
    auto* all = new QVBoxLayout(this);
    all->addWidget(m_summary);
    all->addWidget(parts, 1);
    all->addLayout(buttons);
    windowPlace::SizeTo(*this, InspectWidth, InspectHeight);
}

QWidget* frmInspect::NewTables() {
    m_tables = new QTreeWidget;
    m_tables->setObjectName("lstTables");
    m_tables->setAccessibleName("Tabelle che l'origine legge");
    m_tables->setHeaderLabels({"Tabella", "Stato", "Nella sorgente", "Righe"});
    m_tables->setRootIsDecorated(false);
    m_tables->setUniformRowHeights(true);
    m_tables->setAllColumnsShowFocus(true);
    connect(m_tables, &QTreeWidget::currentItemChanged, this, [this] { ShowTable(); });
    m_onlyMissing = new QCheckBox("&Solo ciò che manca");
    m_onlyMissing->setObjectName("chkOnlyMissing");
    connect(m_onlyMissing, &QCheckBox::toggled, this, [this] {
        FillTables();
        ShowTable();
    });
    return m_tables;
}

const Table* frmInspect::Chosen() const {
    const QTreeWidgetItem* item = m_tables->currentItem();
    const auto found = std::find_if(m_shown.tables.begin(), m_shown.tables.end(), [item](const Table& table) {
        return item != nullptr && table.name == item->text(TableColumn);
    });
    return found == m_shown.tables.end() ? nullptr : &*found;
}

void frmInspect::Refresh() {
    const Operator::Busy busy(m_session.Person);
    try {
        m_shown = inspection::Inspect(m_session, m_origin);
    } catch (const std::exception& error) {
        m_shown.layoutTrouble = MessageOf(error);
    }
    QStringList lines{inspection::Summary(m_shown)};
    lines.append("Tracciato: " + QDir::toNativeSeparators(m_shown.layoutFile) +
                 (QFileInfo::exists(m_shown.layoutFile) ? "" : " (non c'è ancora)"));
    if (!m_shown.layoutTrouble.isEmpty()) {
        lines.append("Il tracciato non vale: " + m_shown.layoutTrouble);
    }
    m_summary->SetText(lines.join('\n'));
    FillTables();
    ShowTable();
}

void frmInspect::FillTables() {
    const QTreeWidgetItem* before = m_tables->currentItem();
    const QString chosen = before == nullptr ? QString() : before->text(TableColumn);
    const QSignalBlocker quiet(m_tables);
    m_tables->clear();
    for (const Table& table : m_shown.tables) {
        if (m_onlyMissing->isChecked() && inspection::MarkOf(table) == inspection::Mark::Found) {
            continue;
        }
        auto* item =
            new QTreeWidgetItem(m_tables, {table.name, inspection::StateText(table), inspection::SourceText(table),
                                           table.isFound ? inspection::RowsText(table.rows) : QString()});
        item->setTextAlignment(TableRowsColumn, Qt::AlignRight | Qt::AlignVCenter);
        inspectMarks::Show(*item, TableStateColumn, inspection::MarkOf(table));
        for (int column = TableColumn; column <= TableRowsColumn; ++column) {
            item->setToolTip(column, item->text(column));
        }
        if (table.name == chosen) {
            m_tables->setCurrentItem(item);
        }
    }
    if (m_tables->currentItem() == nullptr && m_tables->topLevelItemCount() > 0) {
        m_tables->setCurrentItem(m_tables->topLevelItem(0));
    }
    inspectMarks::FitColumns(*m_tables);
}

void frmInspect::ShowTable() {
    const Table* table = Chosen();
    m_columns->Show(table, m_shown.others, m_onlyMissing->isChecked());
    m_further->Show(table);
    if (m_tabs->currentWidget() == m_preview) {
        m_preview->Show(table);
    }
}

void frmInspect::Take(const QMap<QString, QString>& names) {
    inspectMarks::ChangeOrTell(m_session.Person, [&] { return inspection::TakeNames(m_session, m_origin, names); });
    Refresh();
}

void frmInspect::reject() {
    const QStringList typed = m_further->Unwritten();
    if (typed.isEmpty() || m_session.Person.Ask("Una condizione non è scritta nel tracciato. Chiudere senza scriverla?",
                                                Question::ExclamationNo, typed.join('\n')) == Answer::Yes) {
        QDialog::reject();
    }
}

void frmInspect::cmdTakeEqual_Click() {
    const QMap<QString, QString> names = inspection::EqualNames(m_shown);
    if (names.isEmpty()) {
        m_session.Person.Message("Di ciò che manca nessun nome è uguale.");
        return;
    }
    Take(names);
}

void frmInspect::cmdTakeAll_Click() {
    const QMap<QString, QString> names = inspection::ProposedNames(m_shown);
    if (names.isEmpty()) {
        m_session.Person.Message("Non c'è nessuna proposta: scegliere i nomi uno per uno.");
        return;
    }
    if (m_session.Person.Review("Scrivere nel tracciato questi nomi?", inspection::ProposalLines(m_shown))) {
        Take(names);
    }
}
