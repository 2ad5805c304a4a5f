#include "ui/inspectMarks.h"

#include "ui/told.h"

#include <QHeaderView>
#include <QTreeWidget>

namespace inspectMarks {

void Show(QTreeWidgetItem& item, int column, inspection::Mark mark) {
    const bool isDark = item.treeWidget()->palette().color(QPalette::Base).lightness() < 128;
    switch (mark) {
    case inspection::Mark::Found:
        item.setText(column, QStringLiteral("✓ ") + item.text(column));
        return;
    case inspection::Mark::Optional:
        item.setText(column, QStringLiteral("○ ") + item.text(column));
        item.setForeground(column, isDark ? QColor(230, 190, 90) : QColor(140, 90, 0));
        return;
    case inspection::Mark::Missing:
        item.setText(column, QStringLiteral("✗ ") + item.text(column));
        item.setForeground(column, isDark ? QColor(255, 130, 120) : QColor(180, 20, 20));
    }
}

void FitColumns(QTreeWidget& list) {
    const int most = std::max(list.fontMetrics().averageCharWidth() * 36, list.viewport()->width() / 3);
    for (int column = 0; column + 1 < list.columnCount(); ++column) {
        list.resizeColumnToContents(column);
        list.setColumnWidth(column, std::min(list.columnWidth(column), most));
    }
}

bool ChangeOrTell(Operator& person, const std::function<QString()>& change) {
    const QString stays = QStringLiteral("Il tracciato resta com'era: ");
    QString trouble;
    const bool isDone = Told(
        person, [&] { trouble = change(); }, stays);
    if (!trouble.isEmpty()) {
        person.Message(stays + trouble, Icon::Exclamation);
    }
    return isDone && trouble.isEmpty();
}

} // namespace inspectMarks
