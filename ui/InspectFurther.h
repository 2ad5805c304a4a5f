#pragma once

#include "app/inspect_further.h"

#include <QWidget>

class QComboBox;
class QLineEdit;
class QPushButton;
class QTreeWidget;

/// What the layout file adds to one table: which rows are read, and further columns of Quadrix.
class InspectFurther final : public QWidget {
    Q_OBJECT

public:
    /// @param session whose source is open
    InspectFurther(Session& session, const contract::Origin& origin, QWidget* parent = nullptr);

    /// @param table null for none
    void Show(const inspection::Table* table);
    /// The conditions that were typed and not written, each behind its table and a colon.
    QStringList Unwritten() const;

signals:
    /// The layout file has been changed.
    void Changed();

private:
    void Lay();
    QString WriteFilter();
    void Change(const std::function<QString()>& change);
    void FillAdded();
    QString NewValue() const;

    Session& m_session;
    const contract::Origin& m_origin;
    QString m_table;
    QString m_written;              ///< the condition of the table, as the layout file has it
    QMap<QString, QString> m_typed; ///< conditions that are not written, by table
    QLineEdit* m_filter = nullptr;
    QTreeWidget* m_added = nullptr;
    QComboBox* m_target = nullptr;
    QComboBox* m_source = nullptr;
    QComboBox* m_rule = nullptr;
};
