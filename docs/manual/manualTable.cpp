#include "docs/manual/manualTable.h"

#include <QRegularExpression>

namespace manual {

namespace {

QStringList CellsOf(const QString& line) {
    QStringList cells = line.mid(1, line.lastIndexOf(u'|') - 1).split(u'|');
    for (QString& cell : cells) {
        cell = cell.trimmed();
    }
    return cells;
}

bool IsRule(const QString& line) { return line.startsWith(u"|--"); }

} // namespace

QStringList PageRow::Names() const {
    static const QRegularExpression code(QStringLiteral("`([^`]+)`"));
    QStringList names;
    for (auto found = code.globalMatch(cells.value(0)); found.hasNext();) {
        names.append(found.next().captured(1));
    }
    return names;
}

bool PageRow::IsOf(const QSet<QString>& sections) const {
    return std::all_of(sections.begin(), sections.end(),
                       [this](const QString& section) { return heading.contains(u'[' + section + u']'); });
}

QString WithRows(const QString& page, const QString& title, const std::function<void(PageRow&)>& change) {
    QStringList lines = page.split(u'\n');
    PageRow row;
    for (QString& line : lines) {
        if (line.startsWith(u'#')) {
            row.heading = line;
        }
        if (!line.startsWith(u'|')) {
            row.header.clear();
        } else if (row.header.isEmpty()) {
            row.header = CellsOf(line);
        } else if (!IsRule(line) && row.header.first() == title) {
            row.cells = CellsOf(line);
            change(row);
            line = RowLine(row.cells);
        }
    }
    return lines.join(u'\n');
}

QList<PageRow> RowsOf(const QString& page, const QString& title) {
    QList<PageRow> rows;
    WithRows(page, title, [&rows](PageRow& row) { rows.append(row); });
    return rows;
}

QString AsCode(const QString& text) { return u'`' + text + u'`'; }

QString RowLine(const QStringList& cells) {
    QString line = QStringLiteral("|");
    for (const QString& cell : cells) {
        line += cell.isEmpty() ? QStringLiteral(" |") : QString(u' ' + cell + QStringLiteral(" |"));
    }
    return line;
}

} // namespace manual
