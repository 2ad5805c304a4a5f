#pragma once

#include "app/inspect.h"

#include <QDialog>

class InspectColumns;
class InspectFurther;
class InspectPreview;
class QCheckBox;
class QTabWidget;
class QTreeWidget;
class WrappedLabel;

/// "Esamina sorgente": the tables and columns of a source beside those that an origin reads. A name that is chosen for
/// what is missing is written into the layout file, and what is found is shown anew.
class frmInspect final : public QDialog {
    Q_OBJECT

public:
    /// Opens the source of an origin, shows the dialog over it and closes the source again; an error is told.
    static void Show(Session& session, const contract::Origin& origin, QWidget* parent);

    /// @param session whose source is open
    frmInspect(Session& session, const contract::Origin& origin, QWidget* parent);

    const inspection::Inspection& Shown() const { return m_shown; }

public slots:
    /// Takes names of the source for tables, and for "table.column"; an empty one says that the column is not there.
    void Take(const QMap<QString, QString>& names);
    /// Takes the names that are equal but for case, blanks and signs.
    void cmdTakeEqual_Click();
    /// Shows all that is proposed, and takes it when the operator agrees.
    void cmdTakeAll_Click();
    /// Asks about a condition that is not written before it closes.
    void reject() override;
    /// Looks at the source again and keeps the table that is chosen.
    void Refresh();

private:
    void Lay();
    QWidget* NewTables();
    void FillTables();
    void ShowTable();
    const inspection::Table* Chosen() const;

    Session& m_session;
    const contract::Origin& m_origin;
    inspection::Inspection m_shown;
    WrappedLabel* m_summary = nullptr;
    QTreeWidget* m_tables = nullptr;
    QCheckBox* m_onlyMissing = nullptr;
    InspectColumns* m_columns = nullptr;
    InspectFurther* m_further = nullptr;
    InspectPreview* m_preview = nullptr;
    QTabWidget* m_tabs = nullptr;
};
