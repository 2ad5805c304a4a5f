#pragma once

#include <QStringList>
#include <QVector>

class ChoiceList;
class QPushButton;
class QTableWidget;

/// What the windows over the history have in common.
namespace lists {

/// Fills a table that is only read: headings and rows of texts, a whole row chosen at once. A text that does not fit is
/// shown by the tool tip.
void Fill(QTableWidget& table, const QStringList& headings, const QVector<QStringList>& rows);
/// Aligns what begins with a number to the right.
void AlignNumbers(QTableWidget& table);
/// Chooses a row alone, whatever keys are down meanwhile.
void ChooseRow(QTableWidget& table, int row);

/// A button that Enter does not press unless it has the focus. @param hint its tool tip, and what is read aloud
QPushButton* NewButton(const QString& name, const QString& caption, const QString& hint);
/// A list of names, some of them long, of which one is chosen; it has none yet. @param title what is read aloud
ChoiceList* NewNameList(const QString& name, const QString& title);

} // namespace lists
