#include "ui/frmImport.h"

#include "adapters/registry.h"
#include "app/reset.h"
#include "app/resultText.h"
#include "app/sequence.h"
#include "core/italianText.h"
#include "core/modMain.h"
#include "ui/ChoiceList.h"
#include "ui/ConnectionBanner.h"
#include "ui/ElidedLabel.h"
#include "ui/frmImport_running.h"
#include "ui/frmReset.h"
#include "ui/frmSequence.h"
#include "ui/ImportButtons.h"
#include "ui/LogView.h"
#include "ui/OriginList.h"
#include "ui/SourceBar.h"
#include "ui/told.h"
#include "ui/WindowOperator.h"
#include "ui/windowPlace.h"

#include <QCloseEvent>
#include <QDialog>
#include <QDir>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>

namespace {

const QString Section = QStringLiteral("IMPORT");
const QString CompanyKey = QStringLiteral("AZIENDA");
const QString OriginKey = QStringLiteral("ORIGINE");
const QString PlaceKey = QStringLiteral("Geometria");
const QString LockKey = QStringLiteral("Disable_Configuration");
constexpr int MostListed = 200; ///< reasons and codes that the account of a run lists

/// Letters that stand for the lists, the tools, the tabs and the buttons beside them.
const QSet<QChar> FixedMnemonics{u'z', u'o', u'n', u'r', u'q', u'e', u't', u'g', u'l', u'v', u'f'};

} // namespace

frmImport::frmImport(Session& session, WindowOperator& person)
    : m_session(session),
      m_person(person) {
    setWindowIcon(QIcon(":/ui/quadrix-import.svg"));
    Lay();
    m_person.SetWindow(this);
}

frmImport::~frmImport() {
    m_person.SetWindow(nullptr);
    m_person.SetErrorAction(nullptr);
}

// --- Loading ------------------------------------------------------------------------------------------------------

void frmImport::Form_Load(StartMode mode) {
    Guarded(m_session.Errors, "frmImport", "Form_Load", false, [&] {
        windowPlace::Restore(*this, SettingsFolder(), PlaceKey);
        LoadCompanies();
        FillOrigins();
        m_log->Follow(m_session.LogFile);
        ApplyStartMode(m_state, mode);
        ApplySettings();
        return true;
    });
    ShowState();
    FocusFirstChoice();
}

QString frmImport::SettingsFolder() const { return QFileInfo(m_session.Config.ConfigFile()).absolutePath(); }

void frmImport::FillOrigins() {
    const QColor pale = palette().color(QPalette::Disabled, QPalette::Text);
    for (const contract::Origin* origin : registry::Origins()) {
        cmbOrigine->AddOrigin(origin->name, origin->source.kind);
        if (!IsBuilt(*origin)) {
            const int index = cmbOrigine->count() - 1;
            const QString hint = "Nessuna importazione disponibile in questa versione";
            cmbOrigine->setItemData(index, pale, Qt::ForegroundRole);
            cmbOrigine->setItemData(index, hint, Qt::ToolTipRole);
            cmbOrigine->setItemData(index, hint, Qt::AccessibleDescriptionRole);
        }
    }
    cmbOrigine->setCurrentIndex(-1);
}

/// Fills the list of companies and chooses that of the last time; says why where there are none.
void frmImport::LoadCompanies() {
    // Nothing has been chosen about errors yet, and there is nothing to ask: the window itself offers another try.
    const ovErrors::Acting acting(m_session.Errors, ErrorAction::Abort);
    QString trouble;
    if (!m_session.Quadrix.State()) {
        trouble = "Il database Quadrix non è aperto";
    } else if (!Guarded(m_session.Errors, "frmImport", "Form_Load", false, [this] {
                   FillCompanies(modMain::GetCompanies(m_session));
                   cmbAzienda->setCurrentIndex(
                       cmbAzienda->findText(m_session.Config.GetAppConfig(Section, CompanyKey, {})));
                   return true;
               })) {
        trouble = "Il database aperto non è un database di Quadrix";
    }
    ShowConnection(trouble);
}

/// The settings hold the names as the list shows them: without the code nobody knows which one of a name is meant.
void frmImport::FillCompanies(const QVector<modMain::Company>& companies) {
    m_companies = companies;
    cmbAzienda->clear();
    cmbAzienda->addItems(modMain::NamesInList(companies));
}

/// The place of a company in the list; -1 when it is not there.
int frmImport::PlaceOf(const QString& code) const {
    const auto known = std::find_if(m_companies.cbegin(), m_companies.cend(),
                                    [&code](const modMain::Company& each) { return each.code == code; });
    return known == m_companies.cend() ? -1 : static_cast<int>(known - m_companies.cbegin());
}

/// Chooses a company by its code, also one that was made since the list was read; none when there is none of that code.
void frmImport::SelectCompany(const QString& code) {
    if (PlaceOf(code) < 0) {
        RenewCompanies();
    }
    cmbAzienda->setCurrentIndex(PlaceOf(code));
}

/// A company may have been made since: the list is read anew, and the choice stays. A database that does not answer
/// leaves the list as it is; whatever is started next will tell.
void frmImport::RenewCompanies() {
    if (!m_session.Quadrix.State()) {
        return;
    }
    const ovErrors::Acting acting(m_session.Errors, ErrorAction::Abort);
    try {
        const QString chosen = m_companies.value(cmbAzienda->currentIndex()).code;
        FillCompanies(modMain::GetCompanies(m_session));
        cmbAzienda->setCurrentIndex(PlaceOf(chosen));
    } catch (const std::exception&) {
        return;
    }
}

/// Hides and locks what the settings take away. Settings that cannot be read have been told when the connection was
/// tried: they are applied when that succeeds.
void frmImport::ApplySettings() {
    try {
        m_session.Config.PeekAppConfig(Section, OriginKey);
    } catch (const ImportError&) {
        return;
    }
    m_settled = true;
    const auto isOn = [this](const QString& key) {
        try {
            return modMain::IsAppConfigOn(m_session, Section, key, QStringLiteral("0"));
        } catch (const ImportError&) {
            m_session.MonitorOnce(QStringLiteral("frmImport"), QStringLiteral("ApplySettings"));
            return false;
        }
    };
    if (m_state.locked || isOn(LockKey)) {
        SelectStoredOrigin();
    }
    ApplySwitches(m_state, isOn);
}

/// A window whose lists are locked works on the origin of the last time. It is chosen before the switches are applied,
/// as choosing shows what they hide.
void frmImport::SelectStoredOrigin() {
    cmbOrigine->setCurrentIndex(cmbOrigine->findText(m_session.Config.PeekAppConfig(Section, OriginKey)));
}

/// @param trouble why nothing can be done on the database; empty when all is well
void frmImport::ShowConnection(const QString& trouble) {
    const QVector<ErrorEntry>& errors = m_session.Errors.Entries();
    if (!trouble.isEmpty()) {
        m_banner->SetReason(trouble, errors.isEmpty() ? QString() : errors.last().message,
                            m_session.Config.ConfigFile());
    }
    m_banner->setVisible(!trouble.isEmpty());
    m_database->SetText((m_session.Quadrix.State() ? "Database: " : "Database non aperto: ") +
                        m_session.Quadrix.DatabaseName +
                        (m_session.Quadrix.LineWarning().isEmpty() ? "" : " (connessione non cifrata)"));
    m_settings->SetText("Impostazioni: " + QDir::toNativeSeparators(m_session.Config.ConfigFile()));
}

void frmImport::FocusFirstChoice() {
    if (!m_state.locked) {
        (cmbAzienda->currentIndex() < 0 ? cmbAzienda : cmbOrigine)->setFocus();
    }
}

void frmImport::RetryConnection() {
    m_session.Errors.ClearError();
    modMain::ConnectQuadrix(m_session, m_session.Config.ConfigFile());
    LoadCompanies();
    if (!m_settled) {
        ApplySettings();
        ShowState();
    }
}

void frmImport::ShowState() {
    cmbAzienda->setEnabled(!m_state.locked);
    cmbOrigine->setEnabled(!m_state.locked);
    cmbErrors->setEnabled(!m_state.locked);
    m_person.SetErrorAction(m_state.locked ? nullptr : &m_session.Errors.Action);
    m_source->SetChoosable(!m_state.locked);
    m_imports->SetState(m_state, FixedMnemonics, registry::Find(cmbOrigine->currentText()));
    cmdSequence->setVisible(m_state.sequence);
    cmdReset->setVisible(m_state.reset);
    ShowSource();
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
    ImportRequest request;
    request.button = button;
    Run(request);
}

void frmImport::Run(ImportRequest request) {
    request.choice = Chosen();
    request.procedure = TaskProcedure(m_state.mode);
    Start(request, HintOf(m_state, request.button, request.choice.origin).what);
}

/// @param what it does, as the account names it
void frmImport::Start(ImportRequest request, const QString& what) {
    if (m_running) {
        return;
    }
    const Running running(*this);
    const qsizetype first = m_session.Results.size();
    qint64 kept = 0; // the history has runs of other programs as well
    request.kept = [&kept](qint64 run) { kept = run; };
    m_account->setCurrentWidget(m_log);
    ShowLog(m_session.LogFile);
    const FlowOutcome outcome = RunImport(m_session, request);
    if (request.choice.origin != nullptr) {
        ShowResults(request.dryRun ? QString("Prova (il database è rimasto com'era) di " + what) : what, first,
                    outcome);
    }
    ShowSource();
    if (kept != 0) {
        ShowRun(kept);
    }
}

void frmImport::cmdReset_Click() {
    if (m_running) {
        return;
    }
    const Running running(*this);
    if (!CheckData(m_session, Chosen())) {
        return;
    }
    Told(m_person, [this] {
        const auto besides = [this](const ResetOptions& options) { return BesidesReset(m_session, options); };
        frmReset dialog(m_person, CompanyText(), CountResetRows(m_session), besides, this);
        if (dialog.SelectOptions()) {
            ShowEmptied(ResetDatabase(m_session, dialog.Options()));
        }
    });
}

void frmImport::cmdSequence_Click() {
    if (m_running) {
        return;
    }
    const Running running(*this);
    const LockedChoice locked(*this);
    SequenceWindow window;
    window.SelectCompany = [this](const modMain::Company& company) { SelectCompany(company.code); };
    window.SelectOrigin = [this](const QString& name) {
        cmbOrigine->setCurrentIndex(cmbOrigine->findText(name, Qt::MatchFixedString));
    };
    window.LanciaSequenza = [this] { return frmSequence(m_person, this).LanciaSequenza(); };
    window.AgreesToEmpty = [this](const QString& question) {
        return m_person.Ask(question, Question::ExclamationNo) == Answer::Yes;
    };
    if (const auto result = PressSequence(m_session, Chosen(), window)) {
        ShowAccount("Sequenza di importazione", SequenceLines(*result, MostListed));
    }
}

// --- Account of a run ---------------------------------------------------------------------------------------------

/// "DEM Officine Dimostrative S.r.l."
QString frmImport::CompanyText() const {
    const modMain::Company company = m_companies.value(cmbAzienda->currentIndex());
    return company.code + ' ' + company.name;
}

/// @param what the operation; @param first the first of its results in the session
void frmImport::ShowResults(const QString& what, qsizetype first, FlowOutcome outcome) {
    QStringList lines;
    for (const RunResult& result : m_session.Results.mid(first)) {
        lines += QStringList{{}} + ResultLines(result, MostListed);
    }
    if (outcome == FlowOutcome::Failed && lines.isEmpty()) {
        lines.append("Non eseguita: non è stato scritto nulla.");
        for (const ErrorEntry& entry : m_session.Errors.Entries()) {
            lines.append("Errore: " + entry.message);
        }
    }
    if (!lines.isEmpty()) {
        ShowAccount(what, lines);
    }
    if (first < m_session.Results.size()) {
        ShowLog(m_session.Results.last().logFile);
    }
}

/// Follows another log than before; an empty path leaves the one that is shown.
void frmImport::ShowLog(const QString& path) {
    if (!path.isEmpty() && path != m_log->Path()) {
        m_log->Follow(path);
    }
}

void frmImport::ShowEmptied(const EmptyingResult& result) {
    const bool done = result.outcome == RunResult::Outcome::Done;
    QStringList lines{done ? "Completato" : "Interrotto: le tabelle non elencate restano come erano"};
    for (const EmptyingResult::Table& table : result.tables) {
        lines.append(EmptiedLine(table));
    }
    lines += result.told;
    ShowAccount("Reset Database", lines);
}

/// The account of an operation under a line that says which one it was, of which company and when.
void frmImport::ShowAccount(const QString& what, const QStringList& lines) {
    const QString when = italian::MinuteText(m_session.Now());
    const QStringList head{what + ", azienda " + CompanyText() + ", " + when};
    m_result->setPlainText((head + lines).join(u'\n'));
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

void frmImport::End() {
    m_person.End();
    m_closeAfter = m_running;
    if (!m_running) {
        close();
    }
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
    for (QDialog* over : findChildren<QDialog*>(Qt::FindDirectChildrenOnly)) {
        over->close();
    }
    windowPlace::Keep(*this, SettingsFolder(), PlaceKey);
    m_session.Quadrix.CloseConnection();
}
