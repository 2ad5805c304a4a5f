#pragma once

#include "app/inspect.h"
#include "app/inspect_preview.h"

#include <QWidget>

class QComboBox;
class QTableWidget;
class WrappedLabel;

/// The first rows of a table as they would be written, each value beside its rule.
class InspectPreview final : public QWidget {
    Q_OBJECT

public:
    /// @param session whose source is open
    InspectPreview(Session& session, const contract::Origin& origin, QWidget* parent = nullptr);

    /// Offers what is written from a table, and shows the first of it. @param table null for none
    void Show(const inspection::Table* table);

private:
    void Fill();
    void FillRow(int row, const inspection::Preview::Line& line);

    Session& m_session;
    const contract::Origin& m_origin;
    std::vector<inspection::PreviewOf> m_all;
    QComboBox* m_which = nullptr;
    WrappedLabel* m_note = nullptr;
    QTableWidget* m_values = nullptr;
};
