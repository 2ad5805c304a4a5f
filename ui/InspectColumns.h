#pragma once

#include "app/inspect.h"

#include <QWidget>

class QComboBox;
class QLabel;
class QPushButton;
class QTreeWidget;

/// The columns of one table that an origin reads, beside what the source has: each with its values, and a list to
/// choose another name from.
class InspectColumns final : public QWidget {
    Q_OBJECT

public:
    explicit InspectColumns(QWidget* parent = nullptr);

    /// @param table null for none @param others tables of the source that nothing reads
    void Show(const inspection::Table* table, const QStringList& others, bool onlyMissing);

signals:
    /// A name of the source is chosen for a table, or for "table.column"; an empty one says that it is not there.
    void Chosen(const QString& key, const QString& name);

private:
    void FillColumns(bool onlyMissing);
    void FillTableNames(const QStringList& others);
    void ShowColumn();
    const inspection::Column* Current() const;

    inspection::Table m_table;
    QComboBox* m_tableName = nullptr;
    QPushButton* m_useTable = nullptr;
    QTreeWidget* m_columns = nullptr;
    QLabel* m_label = nullptr;
    QComboBox* m_columnName = nullptr;
    QPushButton* m_useColumn = nullptr;
};
