#pragma once

#include "app/history/again.h"

#include <QDialog>

namespace history {
struct UndoResult;
}

class QLineEdit;
class QTableWidget;
class WindowOperator;

/// The runs that are kept: looked through, compared, and imported again in part.
class frmHistory final : public QDialog {
    Q_OBJECT

public:
    frmHistory(Session& session, WindowOperator& person, QWidget* parent);
    ~frmHistory() override;

    /// What a part of a run is imported with once the operator has agreed. @param errors what to do about errors
    std::function<void(const ImportRequest&)> Import;
    /// What to do about errors of an import.
    std::function<ErrorAction()> Errors;

public slots:
    /// Reads the runs anew and keeps the one that is chosen.
    void Refresh();
    void cmdOpen_Click();
    /// What the later of the two chosen runs did otherwise than the earlier one.
    void cmdCompare_Click();
    void cmdLog_Click();
    void cmdWriteRejects_Click();
    void cmdImportRejects_Click();
    void cmdImportMended_Click();
    void cmdResume_Click();
    /// Takes back what a run has written, once the operator has seen what that comes to.
    void cmdUndo_Click();

signals:
    /// A run is to be shown.
    void Opened(qint64 run);

private:
    void Lay();
    QLayout* NewButtons();
    void Filter();
    void ShowChoices();
    QVector<qint64> Chosen() const;
    const history::Run* Current() const;
    bool MayWriteRejects(qint64 run, const QString& path);
    bool AgreesToUndo(qint64 run, const history::UndoResult& expected);
    void TellUndone(qint64 run, const history::UndoResult& done);
    void ConfirmAll(const std::vector<history::Again>& all);
    void ShowText(const QString& title, const QString& text);

    Session& m_session;
    WindowOperator& m_person;
    history::History m_history;
    std::vector<history::Run> m_runs; ///< in the order of the list
    QLineEdit* m_text = nullptr;
    QTableWidget* m_list = nullptr;
};
