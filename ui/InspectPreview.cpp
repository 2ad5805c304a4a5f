#include "ui/InspectPreview.h"

#include "ui/ChoiceList.h"
#include "ui/WrappedLabel.h"

#include <QFormLayout>
#include <QHeaderView>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

constexpr int WidestColumn = 26; ///< characters; the tool tip has all of it

enum FixedColumn { TargetColumn, SourcesColumn, RuleColumn, FirstValue };

} // namespace

InspectPreview::InspectPreview(Session& session, const contract::Origin& origin, QWidget* parent)
    : QWidget(parent),
      m_session(session),
      m_origin(origin),
      m_all(inspection::Previews(origin)) {
    m_which = new ChoiceList;
    m_which->setObjectName("cmbPreview");
    m_which->setAccessibleName("Che cosa si scrive");
    m_which->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    connect(m_which, &QComboBox::activated, this, [this] { Fill(); });
    m_note = new WrappedLabel(QString());
    m_note->setObjectName("lblPreview");
    m_values = new QTableWidget;
    m_values->setObjectName("tblPreview");
    m_values->setAccessibleName("Prime righe come verrebbero scritte");
    m_values->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_values->setTabKeyNavigation(false);
    m_values->setWordWrap(false);
    m_values->verticalHeader()->hide();
    m_values->verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() * 3 / 2);
    m_values->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_values->horizontalHeader()->setMaximumSectionSize(fontMetrics().averageCharWidth() * WidestColumn);
    auto* lines = new QFormLayout;
    lines->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    lines->addRow("Scri&ve:", m_which);
    auto* all = new QVBoxLayout(this);
    all->addLayout(lines);
    all->addWidget(m_note);
    all->addWidget(m_values, 1);
}

void InspectPreview::Show(const inspection::Table* table) {
    m_which->clear();
    for (size_t i = 0; i < m_all.size(); ++i) {
        const bool isOfTable =
            table != nullptr && m_all[i].mapping->sourceTable.compare(table->name, Qt::CaseInsensitive) == 0;
        if (isOfTable) {
            m_which->addItem(m_all[i].title, static_cast<int>(i));
        }
    }
    Fill();
}

void InspectPreview::Fill() {
    m_values->clear();
    m_values->setRowCount(0);
    m_values->setColumnCount(0);
    if (m_which->currentIndex() < 0) {
        m_note->SetText("Di questa tabella non c'è nulla da mostrare: le importazioni la leggono soltanto.");
        return;
    }
    if (m_session.UserManager.Azienda().isEmpty()) {
        m_note->SetText("Per l'anteprima serve l'azienda: sceglierla nella finestra principale.");
        return;
    }
    const Operator::Busy busy(m_session.Person);
    const inspection::Preview preview =
        inspection::MakePreview(m_session, m_origin, m_all[static_cast<size_t>(m_which->currentData().toInt())]);
    m_note->SetText(!preview.trouble.isEmpty()
                        ? preview.trouble
                        : "Le prime righe come verrebbero scritte; in rosso ciò che farebbe abbandonare la riga.");
    QStringList headers{"Campo", "Sorgente", "Regola"};
    for (const QString& row : preview.rows) {
        headers.append("riga " + row);
    }
    m_values->setColumnCount(static_cast<int>(headers.size()));
    m_values->setHorizontalHeaderLabels(headers);
    m_values->setRowCount(static_cast<int>(preview.lines.size()));
    for (size_t i = 0; i < preview.lines.size(); ++i) {
        FillRow(static_cast<int>(i), preview.lines[i]);
    }
    m_values->resizeColumnsToContents();
}

void InspectPreview::FillRow(int row, const inspection::Preview::Line& line) {
    const auto put = [&](int column, const QString& text, const QString& hint) {
        auto* item = new QTableWidgetItem(text);
        item->setToolTip(hint);
        m_values->setItem(row, column, item);
        return item;
    };
    put(TargetColumn, line.target, line.isAdded ? "Aggiunto dal tracciato" : line.target);
    put(SourcesColumn, line.sources, line.sources);
    put(RuleColumn, line.rule, line.rule);
    for (size_t i = 0; i < line.values.size(); ++i) {
        const auto& [text, trouble] = line.values[i];
        auto* item = put(FirstValue + static_cast<int>(i), trouble.isEmpty() ? text : "✗ " + trouble,
                         trouble.isEmpty() ? text : trouble);
        if (!trouble.isEmpty()) {
            const bool isDark = palette().color(QPalette::Base).lightness() < 128;
            item->setForeground(isDark ? QColor(255, 130, 120) : QColor(180, 20, 20));
        }
    }
}
