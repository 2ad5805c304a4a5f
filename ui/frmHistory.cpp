#include "ui/frmHistory.h"

#include "app/history/compare.h"
#include "app/history/mayUndo.h"
#include "app/history/rejects.h"
#include "app/history/runTexts.h"
#include "app/history/undo.h"
#include "ui/lists.h"
#include "ui/TextDialog.h"
#include "ui/told.h"
#include "ui/WindowOperator.h"
#include "ui/windowPlace.h"

#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

constexpr int HistoryWidth = 190; ///< characters
constexpr int HistoryHeight = 34; ///< lines
constexpr size_t MostInBox = 10;  ///< rows that a message box can hold
const QString TableFiles = QStringLiteral("Cartella di Excel|*.xlsx|File CSV|*.csv");

/// Does what may take long, as the pointer shows, and gives what it gives.
template<class Work>
auto Busily(Operator& person, const Work& work) {
    const Operator::Busy busy(person);
    return work();
}

} // namespace

frmHistory::frmHistory(Session& session, WindowOperator& person, QWidget* parent)
    : QDialog(parent),
      m_session(session),
      m_person(person),
      m_history(session) {
    setObjectName("frmHistory");
    setWindowTitle("Cronologia delle esecuzioni");
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint, true);
    setAttribute(Qt::WA_DeleteOnClose);
    Lay();
    Refresh();
    m_list->setFocus();
    windowPlace::Restore(*this, QFileInfo(session.Config.ConfigFile()).absolutePath(), objectName());
}

frmHistory::~frmHistory() {
    windowPlace::Keep(*this, QFileInfo(m_session.Config.ConfigFile()).absolutePath(), objectName());
}

void frmHistory::Lay() {
    m_text = new QLineEdit;
    m_text->setObjectName("txtSearchRuns");
    m_text->setAccessibleName("Esecuzioni da cercare");
    m_text->setPlaceholderText("Azienda, origine, operazione, esito, data...");
    m_text->setClearButtonEnabled(true);
    connect(m_text, &QLineEdit::textChanged, this, &frmHistory::Filter);
    auto* label = new QLabel("C&erca:");
    label->setBuddy(m_text);
    auto* search = new QHBoxLayout;
    search->addWidget(label);
    search->addWidget(m_text, 1);
    m_list = new QTableWidget;
    m_list->setObjectName("tblRuns");
    m_list->setAccessibleName("Esecuzioni, la più recente prima");
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    connect(m_list, &QTableWidget::itemSelectionChanged, this, &frmHistory::ShowChoices);
    connect(m_list, &QTableWidget::activated, this, &frmHistory::cmdOpen_Click);
    auto* all = new QVBoxLayout(this);
    all->addLayout(search);
    all->addWidget(m_list, 1);
    all->addLayout(NewButtons());
    windowPlace::SizeTo(*this, HistoryWidth, HistoryHeight);
}

QLayout* frmHistory::NewButtons() {
    const auto add = [this](QHBoxLayout& row, const QString& name, const QString& caption, const QString& hint,
                            auto&& work) {
        auto* button = lists::NewButton(name, caption, hint);
        connect(button, &QPushButton::clicked, this, work);
        row.addWidget(button);
    };
    auto* looking = new QHBoxLayout;
    add(*looking, "cmdOpen", "&Apri...", "Mostra che cosa ha fatto l'esecuzione (Invio)", &frmHistory::cmdOpen_Click);
    add(*looking, "cmdCompare", "&Confronta...",
        "Con due esecuzioni scelte: che cosa è cambiato dalla prima alla seconda", &frmHistory::cmdCompare_Click);
    add(*looking, "cmdLog", "Re&gistro...", "Mostra il registro dell'esecuzione", &frmHistory::cmdLog_Click);
    looking->addStretch();
    add(*looking, "cmdClose", "C&hiudi", {}, &QDialog::close);
    auto* again = new QHBoxLayout;
    add(*again, "cmdWriteRejects", "&Scarti in un file...",
        "Scrive le righe abbandonate in un file .xlsx o .csv, da correggere", &frmHistory::cmdWriteRejects_Click);
    add(*again, "cmdImportRejects", "&Importa solo gli scarti...",
        "Importa di nuovo le righe abbandonate, come la sorgente le ha adesso", &frmHistory::cmdImportRejects_Click);
    add(*again, "cmdImportMended", "Importa scarti corre&tti...",
        "Importa le righe rimaste in un file degli scarti, con i valori corretti", &frmHistory::cmdImportMended_Click);
    add(*again, "cmdResume", "Ripren&di...", "Prosegue un'esecuzione interrotta da dove era arrivata",
        &frmHistory::cmdResume_Click);
    add(*again, "cmdUndo", "A&nnulla esecuzione...",
        "Toglie le righe che l'esecuzione ha inserito e riporta com'erano quelle che ha aggiornato",
        &frmHistory::cmdUndo_Click);
    again->addStretch();
    auto* both = new QVBoxLayout;
    both->addLayout(looking);
    both->addLayout(again);
    return both;
}

void frmHistory::Refresh() {
    Told(m_person, [this] {
        const QVector<qint64> chosen = Chosen();
        m_runs = m_history.Runs();
        QVector<QStringList> rows;
        for (const history::Run& run : m_runs) {
            rows.append(history::RunCells(run));
        }
        {
            const QSignalBlocker quiet(m_list);
            lists::Fill(*m_list, history::RunHeadings(), rows);
            lists::AlignNumbers(*m_list);
            const auto kept = std::find_if(m_runs.begin(), m_runs.end(), [&chosen](const history::Run& run) {
                return !chosen.isEmpty() && run.id == chosen.first();
            });
            lists::ChooseRow(*m_list, kept == m_runs.end() ? 0 : static_cast<int>(kept - m_runs.begin()));
        }
        Filter();
    });
}

void frmHistory::Filter() {
    for (int row = 0; row < m_list->rowCount(); ++row) {
        const QStringList cells = history::RunCells(m_runs[static_cast<size_t>(row)]);
        m_list->setRowHidden(row, !cells.join(u'\n').contains(m_text->text().trimmed(), Qt::CaseInsensitive));
    }
    ShowChoices();
}

/// The buttons that have something to do for what is chosen.
void frmHistory::ShowChoices() {
    const QVector<qint64> chosen = Chosen();
    const history::Run* run = Current();
    const bool isHere = run != nullptr && !run->isElsewhere;
    const bool hasRejects = isHere && history::RejectsIn(*run) > 0;
    const bool hadRejects = isHere && std::any_of(run->procedures.begin(), run->procedures.end(),
                                                  [](const auto& each) { return each.rejects > 0; });
    const auto enable = [this](const char* name, bool isOn) { findChild<QPushButton*>(name)->setEnabled(isOn); };
    enable("cmdOpen", run != nullptr);
    enable("cmdLog", run != nullptr);
    enable("cmdCompare", chosen.size() == 2);
    enable("cmdWriteRejects", hasRejects);
    enable("cmdImportRejects", hasRejects);
    enable("cmdImportMended", hasRejects || hadRejects); // what was mended wrongly is mended again
    enable("cmdUndo", run != nullptr && history::CanUndo(*run));
    enable("cmdResume", run != nullptr && history::CanGoOn(*run));
}

/// The runs that are chosen, the earliest first.
QVector<qint64> frmHistory::Chosen() const {
    QVector<qint64> runs;
    for (const QModelIndex& index :
         m_list->selectionModel() == nullptr ? QModelIndexList() : m_list->selectionModel()->selectedRows()) {
        if (!m_list->isRowHidden(index.row())) {
            runs.append(m_runs.at(static_cast<size_t>(index.row())).id);
        }
    }
    std::sort(runs.begin(), runs.end());
    return runs;
}

/// The only run that is chosen; null for none or several.
const history::Run* frmHistory::Current() const {
    const QVector<qint64> chosen = Chosen();
    const auto found = std::find_if(m_runs.begin(), m_runs.end(), [&chosen](const history::Run& run) {
        return chosen.size() == 1 && run.id == chosen.first();
    });
    return found == m_runs.end() ? nullptr : &*found;
}

// --- Looking ------------------------------------------------------------------------------------------------------

void frmHistory::cmdOpen_Click() {
    if (const history::Run* run = Current()) {
        emit Opened(run->id);
    }
}

void frmHistory::cmdCompare_Click() {
    const QVector<qint64> chosen = Chosen();
    Told(m_person, [&] {
        const QStringList lines =
            Busily(m_person, [&] { return history::Differences(m_history, chosen.at(0), chosen.at(1)); });
        ShowText(QStringLiteral("Dall'esecuzione %1 alla %2").arg(chosen.at(0)).arg(chosen.at(1)),
                 lines.isEmpty() ? QStringLiteral("Nessuna differenza.") : lines.join(u'\n'));
    });
}

void frmHistory::cmdLog_Click() {
    const qint64 run = Current()->id;
    Told(m_person, [&] {
        const QString log = Busily(m_person, [&] { return m_history.Log(run); });
        ShowText(QStringLiteral("Registro dell'esecuzione %1").arg(run),
                 log.isEmpty() ? QStringLiteral("Il registro di questa esecuzione non c'è.") : log);
    });
}

void frmHistory::ShowText(const QString& title, const QString& text) { TextDialog(title, text, this).exec(); }

// --- Importing again ----------------------------------------------------------------------------------------------

/// The dialog that chose the file has asked about that one, whatever is in it, and about none beside it.
bool frmHistory::MayWriteRejects(qint64 run, const QString& path) {
    const QStringList changed = Busily(m_person, [&] { return history::ChangedRejects(m_history, run, path); });
    return changed.isEmpty() ||
           m_person.Ask("C'è un file con righe corrette, o di un'altra esecuzione: si perderebbero. "
                        "Sovrascriverlo?",
                        Question::ExclamationNo, changed.join(u'\n')) == Answer::Yes;
}

void frmHistory::cmdWriteRejects_Click() {
    const qint64 run = Current()->id;
    const QString path = m_person.SaveFile("Scarti in un file", QStringLiteral("scarti-%1.xlsx").arg(run), TableFiles);
    if (path.isEmpty()) {
        return;
    }
    Told(m_person, [&] {
        if (!MayWriteRejects(run, path)) {
            return;
        }
        const QStringList files = Busily(m_person, [&] { return history::WriteRejects(m_history, run, path); });
        m_person.Message(
            QStringLiteral("Righe abbandonate scritte in:\n%1\n\nCorreggere i valori, lasciare nel file solo "
                           "le righe da importare, poi \"Importa scarti corretti\".")
                .arg(files.join(u'\n')));
    });
}

void frmHistory::cmdImportRejects_Click() {
    Told(m_person, [this] { ConfirmAll(history::RejectsAgain(m_session, m_history, Current()->id, {}, Errors())); });
}

void frmHistory::cmdImportMended_Click() {
    const qint64 run = Current()->id;
    const QString file = m_person.OpenFile("File degli scarti corretti", "File degli scarti|*.xlsx;*.csv;*.ods;*.xls");
    if (!file.isEmpty()) {
        Told(m_person, [&] { ConfirmAll(history::RejectsAgain(m_session, m_history, run, {file}, Errors())); });
    }
}

void frmHistory::cmdResume_Click() {
    Told(m_person, [this] {
        if (const auto again = history::RestAgain(m_session, m_history, Current()->id, Errors())) {
            ConfirmAll({*again});
        }
    });
}

/// Many rows that stay are looked through in a list, beneath which all else is seen.
bool frmHistory::AgreesToUndo(qint64 run, const history::UndoResult& expected) {
    const QString question = QStringLiteral("Annullare l'esecuzione %1?").arg(run);
    if (expected.kept.size() <= MostInBox) {
        return m_person.Ask(question, Question::ExclamationNo, history::LinesOf(expected).join(u'\n')) == Answer::Yes;
    }
    return m_person.Review(history::SummaryOf(expected).join(u'\n') + "\n\n" + question, history::KeptLines(expected));
}

void frmHistory::TellUndone(qint64 run, const history::UndoResult& done) {
    if (done.kept.size() <= MostInBox) {
        m_person.Message(history::LinesOf(done).join(u'\n'));
        return;
    }
    const QStringList lines = history::SummaryOf(done) + QStringList{{}, "Righe che restano:"};
    ShowText(QStringLiteral("Esecuzione %1 annullata").arg(run), (lines + history::KeptLines(done)).join(u'\n'));
}

void frmHistory::cmdUndo_Click() {
    const qint64 run = Current()->id;
    Told(m_person, [&] {
        const auto expected = Busily(m_person, [&] { return history::TryUndo(m_session, m_history, run); });
        if (AgreesToUndo(run, expected)) {
            const auto done = Busily(m_person, [&] { return history::UndoAlone(m_session, m_history, run); });
            TellUndone(run, done);
            Refresh();
        }
    });
}

void frmHistory::ConfirmAll(const std::vector<history::Again>& all) {
    for (const history::Again& again : all) {
        const Answer answer = m_person.Ask(again.question, Question::Plain, again.details);
        if (answer == Answer::GivenUp) {
            return;
        }
        if (answer == Answer::Yes) {
            Import(again.request);
            Refresh();
        }
    }
}
