#pragma once

#include "app/importFlow.h"
#include "app/startUp.h"
#include "ui/buttonState.h"

#include <QPointer>
#include <QWidget>

class ChoiceList;
class ConnectionBanner;
class ElidedLabel;
class ImportButtons;
class frmHistory;
class frmResult;
class LogView;
class OriginList;
class SourceBar;
class QGroupBox;
class QPlainTextEdit;
class QPushButton;
class QTabWidget;
class QToolButton;
class WindowOperator;

/// The main window: company and origin, the import buttons, the tools, the account of the last run and the log.
class frmImport final : public QWidget {
    Q_OBJECT

public:
    /// @param person the session's operator, whose dialogs stand before this window from now on
    frmImport(Session& session, WindowOperator& person);
    ~frmImport() override;

    /// Fills the lists and applies start mode and settings. The window opens also without a connection, and then says
    /// why there is none.
    void Form_Load(StartMode mode);
    /// What the window shows.
    const WindowState& State() const { return m_state; }

public slots:
    void cmbOrigine_Click();
    void Import(contract::Button button);
    void cmdReset_Click();
    void cmdSequence_Click();
    void cmdSource_Click();
    void cmdTrySource_Click();
    void cmdInspect_Click();
    /// Writes the workbook to be filled in for what one button of the origin imports, where the operator wants it.
    void WriteTemplate(contract::Button button);
    void cmdCheck_Click();
    void cmdCodes_Click();
    /// Compares source and Quadrix, of all that the origin imports or of what one button does, and opens the page.
    void Prove(std::optional<contract::Button> button);
    void cmdHistory_Click();
    /// Shows what a run of the history did.
    void ShowRun(qint64 run);
    void ShowHelp();
    /// Tries the connection again that failed at start.
    void RetryConnection();
    /// Closes the window without asking; an operation under way is cancelled first, and ends with the row it is at.
    void End();

protected:
    /// Asks during an import, and closes when the import has ended; else unloads the window.
    void closeEvent(QCloseEvent* event) override;

private:
    class Running;
    class LockedChoice;

    void Lay();
    QGroupBox* NewChoices();
    QGroupBox* NewImports();
    QGroupBox* NewTools();
    QList<QToolButton*> NewTrialTools();
    QToolButton* NewHistoryTool();
    QWidget* NewAccount();

    void LoadCompanies();
    void FillCompanies(const QVector<modMain::Company>& companies);
    int PlaceOf(const QString& code) const;
    void SelectCompany(const QString& code);
    void RenewCompanies();
    void FillOrigins();
    void ApplySettings();
    void SelectStoredOrigin();
    void ShowConnection(const QString& trouble);
    void ShowState();
    void ShowSource();
    void FillTrials(class QMenu& menu);
    void FillProofs(class QMenu& menu);
    QList<contract::Button> ButtonsToTry() const;
    void TellNothingToTry(class QMenu& menu) const;
    void Run(ImportRequest request);
    void ImportAgain(const ImportRequest& request);
    void Start(ImportRequest request, const QString& what);
    void FocusFirstChoice();
    QString CompanyText() const;
    QString SettingsFolder() const;
    void ShowResults(const QString& what, qsizetype first, FlowOutcome outcome);
    void ShowEmptied(const struct EmptyingResult& result);
    void ShowLog(const QString& path);
    void ShowAccount(const QString& what, const QStringList& lines);
    void Form_Unload();
    Choice Chosen() const;

    Session& m_session;
    WindowOperator& m_person;
    WindowState m_state = InitialState();
    QVector<modMain::Company> m_companies; ///< in the order of the list
    bool m_settled = false;                ///< the settings have been read and applied
    bool m_running = false;                ///< an import, a reset or a sequence is under way
    bool m_closeAfter = false;             ///< the window closes when it has ended

    ConnectionBanner* m_banner = nullptr;
    ChoiceList* cmbAzienda = nullptr;
    OriginList* cmbOrigine = nullptr;
    ChoiceList* cmbErrors = nullptr;
    SourceBar* m_source = nullptr;
    ImportButtons* m_imports = nullptr;
    QPushButton* cmdReset = nullptr;
    QPushButton* cmdSequence = nullptr;
    QPushButton* cmdExit = nullptr;
    QTabWidget* m_account = nullptr;
    QPlainTextEdit* m_result = nullptr;
    LogView* m_log = nullptr;
    ElidedLabel* m_database = nullptr;
    ElidedLabel* m_settings = nullptr;
    QPointer<frmResult> m_resultWindow;
    QPointer<frmHistory> m_history;
};
