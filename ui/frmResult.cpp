#include "ui/frmResult.h"

#include "app/history/rowDetails.h"
#include "app/history/runTexts.h"
#include "core/italianText.h"
#include "ui/AnnotationModel.h"
#include "ui/ChoiceList.h"
#include "ui/frmRow.h"
#include "ui/lists.h"
#include "ui/told.h"
#include "ui/WindowOperator.h"
#include "ui/windowPlace.h"
#include "ui/WrappedLabel.h"

#include <QAction>
#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QTableWidget>
#include <QTreeView>
#include <QVBoxLayout>

namespace {

constexpr int WidthInCharacters = 150;
constexpr int HeightInLines = 42;
constexpr int TypingPause = 200; ///< milliseconds
constexpr qint64 OpenedAtOnce = 200;

QLabel* NewLabel(const QString& text, QWidget* of) {
    auto* label = new QLabel(text);
    label->setBuddy(of);
    return label;
}

} // namespace

frmResult::frmResult(Session& session, WindowOperator& person, qint64 run, QWidget* parent)
    : QDialog(parent),
      m_session(session),
      m_person(person),
      m_history(history::FilePath(session.Config.ConfigFile())),
      m_run(m_history.Load(run)),
      m_model(new AnnotationModel(m_history, run, this)) {
    setObjectName("frmResult");
    setWindowTitle(QStringLiteral("Risultato dell'esecuzione %1").arg(run));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint, true);
    setAttribute(Qt::WA_DeleteOnClose);
    Lay();
    FillKinds();
    Fill();
    m_notes->setFocus();
    windowPlace::Restore(*this, QFileInfo(session.Config.ConfigFile()).absolutePath(), objectName());
}

frmResult::~frmResult() {
    windowPlace::Keep(*this, QFileInfo(m_session.Config.ConfigFile()).absolutePath(), objectName());
}

// --- Laying out ---------------------------------------------------------------------------------------------------

void frmResult::Lay() {
    auto* head = new WrappedLabel(history::HeadLines(m_run).join(u'\n'));
    head->setObjectName("lblHead");
    auto* lower = new QWidget;
    auto* notes = new QVBoxLayout(lower);
    notes->setContentsMargins(0, 0, 0, 0);
    notes->addWidget(NewFilter());
    notes->addWidget(NewNotes(), 1);
    auto* parts = new QSplitter(Qt::Vertical);
    parts->setChildrenCollapsible(false);
    parts->addWidget(NewProcedures());
    parts->addWidget(lower);
    parts->setStretchFactor(0, 0);
    parts->setStretchFactor(1, 1);
    parts->setSizes({1, fontMetrics().lineSpacing() * HeightInLines}); // the upper one is as low as it can be
    auto* all = new QVBoxLayout(this);
    all->addWidget(head);
    all->addWidget(parts, 1);
    all->addLayout(NewButtons());
    windowPlace::SizeTo(*this, WidthInCharacters, HeightInLines);
}

QWidget* frmResult::NewProcedures() {
    auto* table = new QTableWidget;
    table->setObjectName("tblProcedures");
    table->setAccessibleName("Che cosa ha fatto ogni procedura");
    QVector<QStringList> rows;
    for (const history::ProcedureRun& procedure : m_run.procedures) {
        rows.append(history::ProcedureCells(procedure));
    }
    lists::Fill(*table, history::ProcedureHeadings(), rows);
    lists::AlignNumbers(*table);
    const bool isAllReached = std::all_of(m_run.procedures.begin(), m_run.procedures.end(), [](const auto& procedure) {
        return procedure.hasEnded && procedure.result.notReached == 0;
    });
    table->setColumnHidden(static_cast<int>(history::ProcedureHeadings().indexOf("Non raggiunte")), isAllReached);
    const int shown = std::clamp(static_cast<int>(rows.size()), 1, 5);
    table->setMinimumHeight(table->verticalHeader()->defaultSectionSize() * (shown + 2));
    return table;
}

QWidget* frmResult::NewFilter() {
    m_kind = new ChoiceList;
    m_kind->setObjectName("cmbKind");
    m_kind->setAccessibleName("Tipo di annotazione");
    m_kind->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_kind->setMinimumContentsLength(24);
    m_text = new QLineEdit;
    m_text->setObjectName("txtSearch");
    m_text->setAccessibleName("Testo da cercare");
    m_text->setPlaceholderText("Parte del testo, del tipo o della riga");
    m_text->setClearButtonEnabled(true);
    m_order = new ChoiceList;
    m_order->setObjectName("cmbOrder");
    m_order->setAccessibleName("Ordine delle annotazioni");
    m_order->addItems({"come annotate", "per riga", "per testo", "prima quelle da fare"}); // as `NoteOrder` has them
    m_count = new QLabel;
    m_count->setObjectName("lblCount");
    m_typing.setSingleShot(true);
    m_typing.setInterval(TypingPause);
    connect(&m_typing, &QTimer::timeout, this, &frmResult::Fill);
    connect(m_text, &QLineEdit::textChanged, &m_typing, qOverload<>(&QTimer::start));
    connect(m_kind, &QComboBox::activated, this, &frmResult::Fill);
    connect(m_order, &QComboBox::activated, this, &frmResult::Fill);
    auto* filter = new QWidget;
    auto* row = new QHBoxLayout(filter);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(NewLabel("&Tipo:", m_kind));
    row->addWidget(m_kind, 1);
    row->addWidget(NewLabel("Ce&rca:", m_text));
    row->addWidget(m_text, 2);
    row->addWidget(NewLabel("&Ordine:", m_order));
    row->addWidget(m_order);
    row->addWidget(m_count);
    return filter;
}

QWidget* frmResult::NewNotes() {
    m_notes = new QTreeView;
    m_notes->setObjectName("treNotes");
    m_notes->setAccessibleName("Annotazioni per tipo");
    m_notes->setUniformRowHeights(true);
    m_notes->setAllColumnsShowFocus(true);
    m_notes->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_notes->setExpandsOnDoubleClick(false);
    m_notes->setModel(m_model);
    const int width = fontMetrics().averageCharWidth();
    m_notes->header()->setStretchLastSection(false); // what is told gets the room that there is
    m_notes->header()->setSectionResizeMode(AnnotationModel::TextColumn, QHeaderView::Stretch);
    m_notes->setColumnWidth(AnnotationModel::RowColumn, width * 57);
    m_notes->setColumnWidth(AnnotationModel::ProcedureColumn, width * 29);
    auto* copy = new QAction("Copia", m_notes);
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetShortcut);
    m_notes->addAction(copy);
    connect(copy, &QAction::triggered, this, &frmResult::Copy);
    connect(m_notes, &QTreeView::activated, this, &frmResult::OpenRow);
    connect(m_model, &AnnotationModel::Failed, this, &frmResult::Tell, Qt::QueuedConnection);
    connect(m_model, &AnnotationModel::dataChanged, this, &frmResult::ShowCount);
    return m_notes;
}

QLayout* frmResult::NewButtons() {
    const auto add = [this](const QString& name, const QString& caption, const QString& hint, auto&& work) {
        auto* button = lists::NewButton(name, caption, hint);
        connect(button, &QPushButton::clicked, this, work);
        return button;
    };
    auto* row = new QHBoxLayout;
    row->addWidget(add("cmdOpenRow", "&Apri riga...",
                       "Mostra la riga della sorgente accanto a ciò che è diventata (Invio)",
                       [this] { OpenRow(m_notes->currentIndex()); }));
    row->addWidget(
        add("cmdDone", "&Fatto", "Spunta le annotazioni scelte, o toglie la spunta", &frmResult::cmdDone_Click));
    row->addWidget(add("cmdCopy", "Co&pia", "Copia le annotazioni scelte (Ctrl+C)", &frmResult::Copy));
    row->addWidget(add("cmdExport", "&Esporta...", "Scrive le annotazioni mostrate in un file .csv o .xlsx",
                       &frmResult::cmdExport_Click));
    row->addStretch();
    row->addWidget(add("cmdClose", "C&hiudi", {}, &QDialog::close));
    return row;
}

// --- What is shown ------------------------------------------------------------------------------------------------

void frmResult::FillKinds() {
    m_kind->addItem("Tutti", QString());
    for (const history::NoteKind& kind : m_model->Shown().Kinds()) {
        m_kind->addItem(QStringLiteral("%1 (%2)").arg(kind.kind, italian::NumberText(kind.count)), kind.kind);
    }
}

void frmResult::Fill() {
    m_typing.stop();
    QSet<QString> open;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        if (const QModelIndex kind = m_model->index(row, 0); m_notes->isExpanded(kind)) {
            open.insert(m_model->KindAt(kind));
        }
    }
    m_model->Want({m_kind->currentData().toString(), m_text->text().trimmed(),
                   static_cast<history::NoteOrder>(m_order->currentIndex())});
    Expand(open);
    m_notes->selectionModel()->setCurrentIndex(m_model->index(0, 0),
                                               QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    ShowCount();
}

/// What was open stays so; what is searched for is seen at once, as are the rows given up.
void frmResult::Expand(const QSet<QString>& kinds) {
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QModelIndex index = m_model->index(row, 0);
        m_notes->setFirstColumnSpanned(row, {}, true);
        const QString kind = m_model->KindAt(index);
        const bool isFew = m_model->rowCount(index) <= OpenedAtOnce;
        const bool isSought = !m_text->text().isEmpty() || kind == history::GivenUpKind;
        m_notes->setExpanded(index, kinds.contains(kind) || m_model->rowCount() == 1 || (isSought && isFew));
    }
}

void frmResult::ShowCount() {
    qint64 count = 0;
    qint64 done = 0;
    for (const history::NoteKind& kind : m_model->Shown().Kinds()) {
        count += kind.count;
        done += kind.done;
    }
    m_count->setText(QStringLiteral("%1, fatte %2").arg(italian::NumberText(count), italian::NumberText(done)));
}

// --- What is done with them ---------------------------------------------------------------------------------------

QModelIndexList frmResult::Selected() const {
    QModelIndexList selected = m_notes->selectionModel()->selectedRows();
    std::sort(selected.begin(), selected.end(), [](const QModelIndex& a, const QModelIndex& b) {
        const auto place = [](const QModelIndex& index) {
            const QModelIndex kind = index.parent();
            return kind.isValid() ? std::pair(kind.row(), index.row() + 1) : std::pair(index.row(), 0);
        };
        return place(a) < place(b);
    });
    return selected;
}

void frmResult::cmdDone_Click() {
    const QModelIndexList selected = Selected();
    const bool areDone = std::all_of(selected.begin(), selected.end(), [](const QModelIndex& index) {
        return index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    });
    for (const QModelIndex& index : selected) {
        m_model->setData(index, areDone ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    }
}

void frmResult::OpenRow(const QModelIndex& index) {
    const auto note = m_model->NoteAt(index);
    if (!note) {
        m_notes->setExpanded(index.siblingAtColumn(0), !m_notes->isExpanded(index.siblingAtColumn(0)));
        return;
    }
    Told(m_person, [&] { frmRow(*note, history::LookUp(m_session, m_history, m_run, *note), this).exec(); });
}

void frmResult::Copy() {
    QStringList lines;
    for (const QModelIndex& index : Selected()) {
        const auto line = m_model->LineAt(index);
        if (!line) {
            return; // which has been told: the clipboard has all of them or none
        }
        lines.append(*line);
    }
    QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}

void frmResult::cmdExport_Click() {
    const QString path = m_person.SaveFile("Esporta le annotazioni", QStringLiteral("annotazioni-%1.xlsx").arg(Run()),
                                           "Cartella di Excel|*.xlsx|File CSV|*.csv");
    if (path.isEmpty()) {
        return;
    }
    Told(m_person, [&] {
        const Operator::Busy busy(m_person);
        const qint64 written = m_model->Shown().Write(path);
        m_count->setText(QStringLiteral("Scritte %1 annotazioni in %2")
                             .arg(italian::NumberText(written), QFileInfo(path).fileName()));
    });
}

void frmResult::Tell(const QString& trouble) { m_person.Message(trouble, Icon::Exclamation); }
