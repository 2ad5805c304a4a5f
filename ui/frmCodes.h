#pragma once

#include "app/codes/apply.h"
#include "app/codes/codeFile.h"

#include <QDialog>
#include <QHash>

class CodeDetails;
class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class WindowOperator;
class WrappedLabel;

/// "Codici": the codes of sources that wait for their codes of Quadrix. What is chosen is written when it is saved.
class frmCodes final : public QDialog {
    Q_OBJECT

public:
    /// @param person the session's operator @param origin whose codes are shown alone; null for those of all. Raises
    /// `SqlError`.
    frmCodes(Session& session, WindowOperator& person, const contract::Origin* origin, QWidget* parent);

public slots:
    void cmdSave_Click();
    void cmdDescribe_Click();
    void cmdExport_Click();
    void cmdImport_Click();
    /// Shows each cell of rows that were imported without codes that are translated by now, as a trial of importing
    /// them again alone would change it, and does so when the operator agrees.
    void cmdApply_Click();
    /// Takes the code away that the chosen one was given.
    void TakeAway();
    /// Asks about what is not saved before it closes.
    void reject() override;

private:
    void Lay();
    QLayout* NewFilter();
    QWidget* NewList();
    QLayout* NewButtons();
    void FillLists();
    void Fill();
    void Show();
    void ShowItem(QTreeWidgetItem& item, const codes::Code& code);
    void Take(const codes::Change& change);
    bool Saves(const std::vector<codes::Change>& changes);
    bool SavesBeforeApplying();
    void Apply(const std::vector<codes::RowsToRepeat>& all);
    void GoOn();
    bool IsShown(const codes::Code& code);
    const codes::Code* Current() const;
    std::optional<codes::Change> PendingOf(const codes::Code& code) const;
    std::vector<codes::Change> Pending() const;

    Session& m_session;
    WindowOperator& m_person;
    const contract::Origin* m_origin;
    codes::Worklist m_worklist;
    QHash<QString, codes::Change> m_pending; ///< what is chosen and not saved yet, by code
    WrappedLabel* m_summary = nullptr;
    QLineEdit* m_search = nullptr;
    QComboBox* m_lists = nullptr;
    QCheckBox* m_all = nullptr;
    QTreeWidget* m_codes = nullptr;
    CodeDetails* m_details = nullptr;
    QPushButton* m_save = nullptr;
};
