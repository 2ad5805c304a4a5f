#include "ui/frmImport.h"

#include "adapters/registry.h"
#include "app/reset.h"
#include "app/resultText.h"
#include "app/sequence.h"
#include "core/modMain.h"
#include "ui/ConnectionBanner.h"
#include "ui/ElidedLabel.h"
#include "ui/frmReset.h"
#include "ui/frmSequence.h"
#include "ui/ImportButtons.h"
#include "ui/LogView.h"
#include "ui/WindowOperator.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>

namespace {

const QString Section = QStringLiteral("IMPORT");
const QString CompanyKey = QStringLiteral("AZIENDA");
const QString OriginKey = QStringLiteral("ORIGINE");
constexpr int MostListed = 200; ///< reasons and codes that the account of a run lists

/// Letters that stand for the lists, the tools, the tabs and the buttons beside them.
const QSet<QChar> FixedMnemonics{u'z', u'o', u'n', u'r', u'q', u'e', u't', u'g', u'l', u'v', u'f'};

} // namespace

/// An operation under way, for its lifetime: no other one starts, and the window closes behind it when that was asked.
class frmImport::Running {
public:
    explicit Running(frmImport& window)
        : m_window(window) {
        m_window.m_running = true;
    }
    ~Running() {
        m_window.m_running = false;
        m_window.m_log->Refresh();
        if (m_window.m_closeAfter) {
            QMetaObject::invokeMethod(&m_window, &QWidget::close, Qt::QueuedConnection);
        }
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

private:
    frmImport& m_window;
};

frmImport::frmImport(Session& session, WindowOperator& person)
    : m_session(session),
      m_person(person) {
    setWindowIcon(QIcon(":/ui/quadrix-import.svg"));
    Lay();
    m_person.SetWindow(this);
}

frmImport::~frmImport() { m_person.SetWindow(nullptr); }

// --- Loading ------------------------------------------------------------------------------------------------------

void frmImport::Form_Load(StartMode mode) {
    Guarded(m_session.Errors, "frmImport", "Form_Load", false, [&] {
        ShowConnection();
        FillCompanies();
        for (const contract::Origin* origin : registry::Origins()) {
            cmbOrigine->addItem(origin->name);
        }
        cmbOrigine->setCurrentIndex(-1);
        m_log->Follow(m_session.LogFile);
        ApplyStartMode(m_state, mode);
        ApplySwitches(m_state, [this](const QString& key) {
            return modMain::IsAppConfigOn(m_session, Section, key, QStringLiteral("0"));
        });
        return true;
    });
    SelectStoredOrigin();
    ShowState();
    FocusFirstChoice();
}

void frmImport::FillCompanies() {
    cmbAzienda->clear();
    if (!m_session.Quadrix.State()) {
        return;
    }
    m_companies = modMain::GetCompanies(m_session);
    for (const modMain::Company& company : std::as_const(m_companies)) {
        cmbAzienda->addItem(company.name);
    }
    cmbAzienda->setCurrentIndex(cmbAzienda->findText(m_session.Config.GetAppConfig(Section, CompanyKey, {})));
}

void frmImport::ShowConnection() {
    const bool open = m_session.Quadrix.State();
    const QVector<ErrorEntry>& errors = m_session.Errors.Entries();
    if (!open) {
        m_banner->SetReason(errors.isEmpty() ? QString() : errors.last().message, m_session.Config.ConfigFile());
    }
    m_banner->setVisible(!open);
    m_database->SetText((open ? "Database: " : "Database non aperto: ") + m_session.Quadrix.DatabaseName);
    m_settings->SetText("Impostazioni: " + QDir::toNativeSeparators(m_session.Config.ConfigFile()));
}

/// A window whose lists are locked works on the origin of the last time.
void frmImport::SelectStoredOrigin() {
    if (m_state.locked) {
        cmbOrigine->setCurrentIndex(cmbOrigine->findText(m_session.Config.PeekAppConfig(Section, OriginKey)));
    }
}

void frmImport::FocusFirstChoice() {
    if (!m_state.locked) {
        (cmbAzienda->currentIndex() < 0 ? cmbAzienda : cmbOrigine)->setFocus();
    }
}

void frmImport::RetryConnection() {
    m_session.Errors.ClearError();
    modMain::ConnectQuadrix(m_session, m_session.Config.ConfigFile());
    ShowConnection();
    Guarded(m_session.Errors, "frmImport", "Form_Load", false, [&] {
        FillCompanies();
        return true;
    });
}

void frmImport::ShowState() {
    cmbAzienda->setEnabled(!m_state.locked);
    cmbOrigine->setEnabled(!m_state.locked);
    cmbErrors->setEnabled(!m_state.locked);
    m_imports->SetState(m_state, FixedMnemonics);
    cmdSequence->setVisible(m_state.sequence);
    cmdReset->setVisible(m_state.reset);
}

// --- Choosing and starting ----------------------------------------------------------------------------------------

Choice frmImport::Chosen() const {
    Choice choice;
    const modMain::Company company = m_companies.value(cmbAzienda->currentIndex());
    choice.company = company.name;
    choice.companyCode = company.code;
    choice.origin = registry::Find(cmbOrigine->currentText());
    choice.errors = ErrorModeAction(cmbErrors->currentIndex());
    return choice;
}

void frmImport::cmbOrigine_Click() {
    if (const contract::Origin* origin = registry::Find(cmbOrigine->currentText())) {
        ApplyOrigin(m_state, *origin);
        ShowState();
    }
}

void frmImport::Import(contract::Button button) {
    if (m_running) {
        return;
    }
    const Running running(*this);
    const qsizetype first = m_session.Results.size();
    m_account->setCurrentWidget(m_log);
    ShowLog(m_session.LogFile);
    ImportRequest request;
    request.choice = Chosen();
    request.button = button;
    request.procedure = TaskProcedure(m_state.mode);
    RunImport(m_session, request);
    ShowResults(first);
}

void frmImport::cmdReset_Click() {
    if (m_running) {
        return;
    }
    const Running running(*this);
    if (!CheckData(m_session, Chosen())) {
        return;
    }
    frmReset dialog(m_person, cmbAzienda->currentText(), this,
                    [this](const ResetOptions& options) { return ResetDetails(m_session, options); });
    if (dialog.SelectOptions()) {
        ShowEmptied("Reset Database", ResetDatabase(m_session, dialog.Options()));
    }
}

void frmImport::cmdSequence_Click() {
    if (m_running) {
        return;
    }
    const Running running(*this);
    SequenceWindow window;
    window.SelectCompany = [this](const QString& name) { cmbAzienda->setCurrentIndex(cmbAzienda->findText(name)); };
    window.SelectOrigin = [this](const QString& name) {
        cmbOrigine->setCurrentIndex(cmbOrigine->findText(name, Qt::MatchFixedString));
    };
    window.LanciaSequenza = [this] { return frmSequence(this).LanciaSequenza(); };
    window.AgreesToEmpty = [this](const QString& question) {
        return m_person.Ask(question, Question::ExclamationNo) == Answer::Yes;
    };
    if (const auto result = PressSequence(m_session, Chosen(), window)) {
        ShowAccount(SequenceLines(*result, MostListed));
    }
}

// --- Account of a run ---------------------------------------------------------------------------------------------

void frmImport::ShowResults(qsizetype first) {
    QStringList lines;
    for (const RunResult& result : m_session.Results.mid(first)) {
        lines += ResultLines(result, MostListed) + QStringList{{}};
    }
    if (!lines.isEmpty()) {
        ShowAccount(lines);
        ShowLog(m_session.Results.last().logFile);
    }
}

/// Follows another log than before; an empty path leaves the one that is shown.
void frmImport::ShowLog(const QString& path) {
    if (!path.isEmpty() && path != m_log->Path()) {
        m_log->Follow(path);
    }
}

void frmImport::ShowEmptied(const QString& title, const EmptyingResult& result) {
    const bool done = result.outcome == RunResult::Outcome::Done;
    QStringList lines{title + (done ? ": completato" : ": interrotto, le tabelle non elencate restano come erano")};
    for (const EmptyingResult::Table& table : result.tables) {
        lines.append(EmptiedLine(table));
    }
    ShowAccount(lines);
}

void frmImport::ShowAccount(const QStringList& lines) {
    m_result->setPlainText(lines.join(u'\n'));
    m_account->setCurrentWidget(m_result);
}

// --- Closing ------------------------------------------------------------------------------------------------------

void frmImport::closeEvent(QCloseEvent* event) {
    if (m_running) {
        event->ignore();
        m_closeAfter =
            m_closeAfter || m_person.AskToStop("Un'operazione è in corso. Interromperla e chiudere il programma?");
        return;
    }
    Form_Unload();
    event->accept();
}

void frmImport::Form_Unload() {
    Guarded(m_session.Errors, "frmImport", "Form_Unload", false, [&] {
        if (cmbOrigine->currentIndex() >= 0) {
            m_session.Config.SetAppConfig(Section, OriginKey, cmbOrigine->currentText());
        }
        if (cmbAzienda->currentIndex() >= 0) {
            m_session.Config.SetAppConfig(Section, CompanyKey, cmbAzienda->currentText());
        }
        return true;
    });
    m_session.Quadrix.CloseConnection();
}
