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

signals:
    /// The layout file has been changed.
    void Changed();

private:
    void Lay();
    void Done(const QString& trouble);
    void FillAdded();
    QString NewValue() const;

    Session& m_session;
    const contract::Origin& m_origin;
    QString m_table;
    QLineEdit* m_filter = nullptr;
    QTreeWidget* m_added = nullptr;
    QComboBox* m_target = nullptr;
    QComboBox* m_source = nullptr;
    QComboBox* m_rule = nullptr;
};
