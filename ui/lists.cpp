#include "ui/lists.h"

#include "ui/ChoiceList.h"

#include <QHeaderView>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableWidget>

namespace lists {

namespace {

constexpr int WidestColumn = 60; ///< characters

bool IsNumber(const QString& text) {
    static const QRegularExpression number(QStringLiteral("^[\\d.,]+( \\(|, |$)"));
    return number.match(text).hasMatch();
}

} // namespace

void Fill(QTableWidget& table, const QStringList& headings, const QVector<QStringList>& rows) {
    table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setTabKeyNavigation(false);
    table.setWordWrap(false);
    table.verticalHeader()->hide();
    table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().lineSpacing() * 3 / 2);
    table.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    table.horizontalHeader()->setStretchLastSection(true);
    table.setRowCount(0);
    table.setColumnCount(static_cast<int>(headings.size()));
    table.setHorizontalHeaderLabels(headings);
    table.setRowCount(static_cast<int>(rows.size()));
    for (int row = 0; row < table.rowCount(); ++row) {
        for (int column = 0; column < table.columnCount(); ++column) {
            const QString text = rows.at(row).value(column);
            auto* item = new QTableWidgetItem(text);
            item->setToolTip(text);
            table.setItem(row, column, item);
        }
    }
    table.horizontalHeader()->setMaximumSectionSize(table.fontMetrics().averageCharWidth() * WidestColumn);
    table.resizeColumnsToContents();
    table.horizontalHeader()->setMaximumSectionSize(-1);
}

void AlignNumbers(QTableWidget& table) {
    for (int row = 0; row < table.rowCount(); ++row) {
        for (int column = 0; column < table.columnCount(); ++column) {
            if (QTableWidgetItem* item = table.item(row, column); IsNumber(item->text())) {
                item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            }
        }
    }
}

void ChooseRow(QTableWidget& table, int row) {
    table.selectionModel()->setCurrentIndex(table.model()->index(row, 0),
                                            QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

QPushButton* NewButton(const QString& name, const QString& caption, const QString& hint) {
    auto* button = new QPushButton(caption);
    button->setObjectName(name);
    button->setToolTip(hint);
    button->setAccessibleDescription(hint);
    button->setAutoDefault(false);
    return button;
}

ChoiceList* NewNameList(const QString& name, const QString& title) {
    constexpr int mostVisible = 20;
    auto* list = new ChoiceList;
    list->setObjectName(name);
    list->setAccessibleName(title);
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMaxVisibleItems(mostVisible);
    return list;
}

} // namespace lists
