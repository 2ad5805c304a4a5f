#pragma once

#include <QString>
#include <QStringList>

/// The words of HTML that the page is made of.
namespace proof::html {

/// A text as it stands in a page.
QString Text(const QString& text);
/// A whole number and an amount as an Italian reads them: 1.234; 1.234,50 (at least two decimals).
QString Number(qint64 number);
QString Amount(double amount);

/// "<tag class="...">content</tag>"; without an attribute for an empty class.
QString Element(const QString& tag, const QString& content, const QString& cssClass = {});

/// A column of a table.
struct Column {
    QString head;
    bool isNumber = false;
};
/// A row of it: its cells, which are HTML already.
struct Row {
    QStringList cells;
    QString cssClass = {};
};
/// A table; nothing without rows.
QString Table(const QList<Column>& columns, const QList<Row>& rows, const QString& cssClass = {});

} // namespace proof::html
