#pragma once

#include <QSet>
#include <QStringList>

#include <functional>

namespace manual {

/// A row of a table of a page, under the heading that it stands under.
struct PageRow {
    QString heading;
    QStringList header;
    QStringList cells;

    /// What stands as code in the first cell: the names that the row is about.
    QStringList Names() const;
    /// Whether the heading tells all of these sections of a settings file.
    bool IsOf(const QSet<QString>& sections) const;
};

/// The rows of the tables of a page whose first column bears this title.
QList<PageRow> RowsOf(const QString& page, const QString& title);

/// The page with each of those rows as `change` leaves its cells.
QString WithRows(const QString& page, const QString& title, const std::function<void(PageRow&)>& change);

/// The text as a cell or a row shows it.
QString AsCode(const QString& text);
QString RowLine(const QStringList& cells);

} // namespace manual
