#include "ui/frmCodes.h"

#include "adapters/contract/run/Origin.h"
#include "app/connectSource.h"
#include "app/inspect.h"
#include "app/resultText.h"
#include "ui/ChoiceList.h"
#include "ui/CodeDetails.h"
#include "ui/CodePreview.h"
#include "ui/inspectMarks.h"
#include "ui/lists.h"
#include "ui/told.h"
#include "ui/WindowOperator.h"
#include "ui/windowPlace.h"
#include "ui/WrappedLabel.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QShortcut>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace codes;

namespace {

constexpr int CodesWidth = 170; ///< characters
constexpr int CodesHeight = 40; ///< lines
constexpr int MostKeys = 5;     ///< suggestions that have a key

const QString CodeFiles = QStringLiteral("Cartella di lavoro|*.xlsx|Testo CSV|*.csv");

enum CodeColumn { OldColumn, WordsColumn, FieldColumn, RowsColumn, NewColumn };

QString KeyOfCode(const QString& table, const QString& field, const QString& oldCode) {
    return KeyOf(table, field) + QChar(0) + oldCode;
}

} // namespace

frmCodes::frmCodes(Session& session, WindowOperator& person, const contract::Origin* origin, QWidget* parent)
    : QDialog(parent),
      m_session(session),
      m_person(person),
      m_origin(origin),
      m_worklist(session, origin) {
    setObjectName("frmCodes");
    setWindowTitle(origin == nullptr ? QString("Codici") : "Codici - " + origin->name);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint, true);
    Lay();
    FillLists();
    Fill();
    m_codes->setFocus();
}

// --- Laying out ---------------------------------------------------------------------------------------------------

void frmCodes::Lay() {
    m_summary = new WrappedLabel(QString());
    m_summary->setObjectName("lblSummary");
    m_details = new CodeDetails(m_worklist);
    connect(m_details, &CodeDetails::Chosen, this, &frmCodes::Take);
    auto* parts = new QSplitter;
    parts->setChildrenCollapsible(false);
    parts->addWidget(NewList());
    parts->addWidget(m_details);
    const int part = fontMetrics().averageCharWidth() * CodesWidth / 5;
    parts->setSizes({part * 3, part * 2});
    auto* all = new QVBoxLayout(this);
    all->addLayout(NewFilter());
    all->addWidget(m_summary);
    all->addWidget(parts, 1);
    all->addLayout(NewButtons());
    windowPlace::SizeTo(*this, CodesWidth, CodesHeight);
}

QLayout* frmCodes::NewFilter() {
    m_search = new QLineEdit;
    m_search->setObjectName("txtSearch");
    m_search->setPlaceholderText("Codice, descrizione o elenco");
    m_search->setClearButtonEnabled(true);
    connect(m_search, &QLineEdit::textChanged, this, &frmCodes::Fill);
    m_lists = new ChoiceList;
    m_lists->setObjectName("cmbLists");
    m_lists->setAccessibleName("Elenco");
    m_lists->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    connect(m_lists, &QComboBox::currentIndexChanged, this, &frmCodes::Fill);
    m_all = new QCheckBox("Anche i &tradotti");
    m_all->setObjectName("chkAll");
    connect(m_all, &QCheckBox::toggled, this, &frmCodes::Fill);
    auto* searchLabel = new QLabel("&Cerca:");
    searchLabel->setBuddy(m_search);
    auto* listLabel = new QLabel("E&lenco:");
    listLabel->setBuddy(m_lists);
    auto* row = new QHBoxLayout;
    row->addWidget(searchLabel);
    row->addWidget(m_search, 1);
    row->addWidget(listLabel);
    row->addWidget(m_lists);
    row->addWidget(m_all);
    return row;
}

QWidget* frmCodes::NewList() {
    m_codes = new QTreeWidget;
    m_codes->setObjectName("lstCodes");
    m_codes->setAccessibleName("Codici dell'origine");
    m_codes->setHeaderLabels({"Codice origine", "Descrizione", "Elenco", "Righe", "Codice di Quadrix"});
    m_codes->setRootIsDecorated(false);
    m_codes->setUniformRowHeights(true);
    m_codes->setAllColumnsShowFocus(true);
    connect(m_codes, &QTreeWidget::currentItemChanged, this, &frmCodes::Show);
    const auto onKey = [this](const QKeySequence& keys, const std::function<void()>& work) {
        connect(new QShortcut(keys, m_codes, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, this, work);
    };
    for (int place = 0; place < MostKeys; ++place) {
        onKey(QKeySequence(Qt::Key_1 + place), [this, place] { m_details->Take(place); });
    }
    onKey(QKeySequence(Qt::Key_Delete), [this] { TakeAway(); });
    return m_codes;
}

QLayout* frmCodes::NewButtons() {
    auto* describe = lists::NewButton("cmdDescribe", "Leggi &descrizioni",
                                      "Legge dalla sorgente dell'origine le descrizioni dei suoi codici");
    describe->setEnabled(m_origin != nullptr);
    auto* write = lists::NewButton("cmdExport", "&Esporta...", "Scrive i codici mostrati in un file da compilare");
    auto* read = lists::NewButton("cmdImport", "&Importa...", "Riprende un file compilato");
    auto* apply =
        lists::NewButton("cmdApply", "&Applica alle righe già importate...",
                         "Importa di nuovo, da sole, le righe importate senza i codici tradotti nel frattempo");
    m_save = lists::NewButton("cmdSave", "&Salva", "Scrive in SYS_IMP i codici scelti");
    connect(new QShortcut(QKeySequence::Save, this), &QShortcut::activated, m_save, &QPushButton::click);
    auto* close = lists::NewButton("cmdClose", "C&hiudi", {});
    connect(describe, &QPushButton::clicked, this, &frmCodes::cmdDescribe_Click);
    connect(write, &QPushButton::clicked, this, &frmCodes::cmdExport_Click);
    connect(read, &QPushButton::clicked, this, &frmCodes::cmdImport_Click);
    connect(apply, &QPushButton::clicked, this, &frmCodes::cmdApply_Click);
    connect(m_save, &QPushButton::clicked, this, &frmCodes::cmdSave_Click);
    connect(close, &QPushButton::clicked, this, &frmCodes::reject);
    auto* row = new QHBoxLayout;
    row->addWidget(describe);
    row->addWidget(write);
    row->addWidget(read);
    row->addWidget(apply);
    row->addStretch();
    row->addWidget(m_save);
    row->addWidget(close);
    return row;
}

// --- Showing ------------------------------------------------------------------------------------------------------

void frmCodes::FillLists() {
    const QString before = m_lists->currentText();
    const QSignalBlocker quiet(m_lists);
    m_lists->clear();
    m_lists->addItem("Tutti");
    for (const Code& code : m_worklist.Codes()) {
        const QString name = code.table + '.' + code.field;
        if (m_lists->itemText(m_lists->count() - 1) != name) { // they come in this order
            m_lists->addItem(name);
        }
    }
    m_lists->setCurrentIndex(std::max(0, m_lists->findText(before)));
}

bool frmCodes::IsShown(const Code& code) {
    const QString name = code.table + '.' + code.field;
    const QString sought = m_search->text().trimmed();
    const bool isFound = sought.isEmpty() || code.oldCode.contains(sought, Qt::CaseInsensitive) ||
                         code.description.contains(sought, Qt::CaseInsensitive) ||
                         name.contains(sought, Qt::CaseInsensitive) ||
                         code.newCode.contains(sought, Qt::CaseInsensitive);
    return isFound && (m_lists->currentIndex() <= 0 || m_lists->currentText() == name) &&
           (m_all->isChecked() || code.IsOpen() || PendingOf(code));
}

void frmCodes::Fill() {
    const Code* before = Current();
    const QString kept = before == nullptr ? QString() : KeyOfCode(before->table, before->field, before->oldCode);
    {
        const QSignalBlocker quiet(m_codes);
        m_codes->clear();
        QList<QTreeWidgetItem*> items;
        QTreeWidgetItem* chosen = nullptr;
        for (const Code& code : m_worklist.Codes()) {
            if (IsShown(code)) {
                items.append(new QTreeWidgetItem);
                items.last()->setData(OldColumn, Qt::UserRole, QStringList{code.table, code.field, code.oldCode});
                ShowItem(*items.last(), code);
                chosen = KeyOfCode(code.table, code.field, code.oldCode) == kept ? items.last() : chosen;
            }
        }
        m_codes->addTopLevelItems(items);
        m_codes->setCurrentItem(chosen != nullptr ? chosen : items.value(0));
        inspectMarks::FitColumns(*m_codes);
    }
    Show();
}

void frmCodes::ShowItem(QTreeWidgetItem& item, const Code& code) {
    const auto pending = PendingOf(code);
    item.setText(OldColumn, code.oldCode);
    item.setText(WordsColumn, code.description);
    item.setText(FieldColumn, code.table + '.' + code.field);
    item.setText(RowsColumn, code.waiting ? QString::number(code.waiting->rows) : QString());
    item.setTextAlignment(RowsColumn, Qt::AlignRight | Qt::AlignVCenter);
    item.setText(NewColumn, !pending                     ? code.newCode
                            : pending->newCode.isEmpty() ? QString("(da togliere)")
                                                         : pending->newCode + " (da salvare)");
    QFont font = m_codes->font();
    font.setBold(pending.has_value());
    item.setFont(NewColumn, font);
}

void frmCodes::Show() {
    const Code* code = Current();
    Told(m_person, [&] { m_details->Show(code, code == nullptr ? std::nullopt : PendingOf(*code)); });
    const auto open = std::count_if(m_worklist.Codes().begin(), m_worklist.Codes().end(),
                                    [](const Code& each) { return each.IsOpen(); });
    m_summary->SetText(QString("Codici in attesa: %1 su %2; scelti e non ancora salvati: %3")
                           .arg(open)
                           .arg(m_worklist.Codes().size())
                           .arg(m_pending.size()));
    m_save->setEnabled(!m_pending.isEmpty());
}

const Code* frmCodes::Current() const {
    const QTreeWidgetItem* item = m_codes->currentItem();
    const QStringList key = item == nullptr ? QStringList() : item->data(OldColumn, Qt::UserRole).toStringList();
    return m_worklist.Find(key.value(0), key.value(1), key.value(2));
}

std::optional<Change> frmCodes::PendingOf(const Code& code) const {
    const auto pending = m_pending.constFind(KeyOfCode(code.table, code.field, code.oldCode));
    return pending == m_pending.constEnd() ? std::nullopt : std::optional(*pending);
}

std::vector<Change> frmCodes::Pending() const { return {m_pending.begin(), m_pending.end()}; }

// --- Choosing and saving ------------------------------------------------------------------------------------------

void frmCodes::Take(const Change& change) {
    const bool isTaken = Told(m_person, [&] {
        const Change checked = Checked(m_worklist, change);
        const Code* code = m_worklist.Find(change.table, change.field, change.oldCode);
        const QString key = KeyOfCode(change.table, change.field, change.oldCode);
        if (code != nullptr && code->newCode == checked.newCode) {
            m_pending.remove(key);
        } else {
            m_pending.insert(key, checked);
        }
    });
    if (!isTaken) {
        return;
    }
    if (m_codes->currentItem() != nullptr && Current() != nullptr) {
        ShowItem(*m_codes->currentItem(), *Current());
    }
    GoOn();
}

/// To the next code, so that one key after the other works the list off.
void frmCodes::GoOn() {
    QTreeWidgetItem* next = m_codes->itemBelow(m_codes->currentItem());
    if (next != nullptr) {
        m_codes->setCurrentItem(next);
    }
    Show();
}

void frmCodes::TakeAway() {
    if (const Code* code = Current()) {
        Take({.table = code->table, .field = code->field, .oldCode = code->oldCode, .newCode = {}});
    }
}

/// What was chosen beside these stays to be saved. @return false when nothing was saved, which has been told
bool frmCodes::Saves(const std::vector<Change>& changes) {
    const bool isSaved = Told(m_person, [&] {
        const Saved saved = Save(m_worklist, changes);
        for (const Change& change : changes) {
            m_pending.remove(KeyOfCode(change.table, change.field, change.oldCode));
        }
        m_person.Message(saved.Text());
    });
    if (!isSaved) { // what others have saved meanwhile is seen now, and in the way of the next saving no more
        Told(m_person, [this] { m_worklist.Refresh(); });
    }
    FillLists();
    Fill();
    return isSaved;
}

void frmCodes::cmdSave_Click() { Saves(Pending()); }

void frmCodes::cmdDescribe_Click() {
    const auto close = qScopeGuard([this] { CloseSource(m_session); });
    const auto describe = [this] {
        const Operator::Busy busy(m_person);
        if (inspection::OpenToLook(m_session, *m_origin)) {
            m_worklist.TakeDescriptions(*m_origin);
        }
    };
    Told(m_person, describe, "Impossibile connettersi a " + m_origin->name + "!\n\n");
    Fill();
}

void frmCodes::cmdExport_Click() {
    const QString path = m_person.SaveFile("Esporta i codici", "codici.xlsx", CodeFiles);
    if (path.isEmpty() ||
        (HoldsWork(m_worklist, path) && m_person.Ask("Il file ha codici compilati che non sono stati ripresi: si "
                                                     "perderebbero. Sovrascriverlo?",
                                                     Question::ExclamationNo, path) != Answer::Yes)) {
        return;
    }
    std::vector<Code> shown;
    for (const Code& code : m_worklist.Codes()) {
        if (IsShown(code)) {
            shown.push_back(code);
        }
    }
    Told(m_person, [&] {
        const Operator::Busy busy(m_person);
        WriteFile(m_worklist, shown, path);
    });
}

void frmCodes::cmdImport_Click() {
    const QString path = m_person.OpenFile("Codici compilati", CodeFiles);
    if (path.isEmpty()) {
        return;
    }
    Told(m_person, [&] {
        const FilePlan plan = ReadFile(m_worklist, path);
        if (!plan.mistakes.isEmpty()) {
            m_person.Message(
                "Non si è salvato nulla: correggere il file e ripetere.\n\n" + plan.mistakes.mid(0, 20).join('\n') +
                    (plan.mistakes.size() > 20 ? QString("\n... e altri %1 errori").arg(plan.mistakes.size() - 20)
                                               : QString()),
                Icon::Exclamation);
            return;
        }
        QStringList lines;
        for (const Change& change : plan.changes) {
            lines.append(QString("%1.%2: '%3' = '%4'").arg(change.table, change.field, change.oldCode, change.newCode));
        }
        if (m_person.Review(plan.Text() + "\n\nSalvare questi codici?", lines)) {
            Saves(plan.changes);
        }
    });
}

/// Codes that are not saved translate nothing yet. @return false when they are not to be applied now
bool frmCodes::SavesBeforeApplying() {
    if (m_pending.isEmpty()) {
        return true;
    }
    const Answer answer = m_person.Ask("I codici scelti non sono salvati, e così non si applicano. Salvarli?");
    return answer == Answer::Yes ? Saves(Pending()) : answer == Answer::No;
}

void frmCodes::cmdApply_Click() {
    if (!SavesBeforeApplying()) {
        return;
    }
    Told(m_person, [this] {
        const std::vector<RowsToRepeat> all = FindRowsToRepeat(m_worklist);
        if (all.empty()) {
            m_person.Message("Nessuna riga importata attende codici tradotti nel frattempo.");
            return;
        }
        QStringList lines;
        for (const RowsToRepeat& rows : all) {
            lines += rows.Lines(m_worklist);
        }
        std::optional<Preview> preview;
        {
            const Operator::Quiet quiet(m_person); // a trial's end is none that the operator waits for
            preview = PreviewOf(m_session, all);
        }
        if (!preview->IsWhole()) {
            m_person.Message("La prova non è arrivata alla fine: non si è scritto nulla.", Icon::Exclamation);
        } else if (CodePreview(lines, *preview, this).exec() == QDialog::Accepted) {
            Apply(all);
        }
    });
    Told(m_person, [this] { m_worklist.Refresh(); });
    Fill();
}

void frmCodes::Apply(const std::vector<RowsToRepeat>& all) {
    const qsizetype first = m_session.Results.size();
    const bool isDone = std::all_of(all.begin(), all.end(), [this](const RowsToRepeat& rows) {
        const Operator::Quiet quiet(m_person); // what the procedures say at their end stands in the lines
        return Repeat(m_session, rows) == FlowOutcome::Done;
    });
    QStringList lines{isDone ? "Codici applicati alle righe già importate."
                             : "Non tutte le righe si sono importate di nuovo."};
    for (const RunResult& result : m_session.Results.mid(first)) {
        lines.append(ResultLines(result).mid(0, 2).join('\n'));
    }
    m_person.Message(lines.join("\n\n"), isDone ? Icon::Information : Icon::Exclamation);
}

void frmCodes::reject() {
    if (m_pending.isEmpty() || m_person.Ask("I codici scelti non sono salvati. Chiudere senza salvarli?",
                                            Question::ExclamationNo) == Answer::Yes) {
        QDialog::reject();
    }
}
