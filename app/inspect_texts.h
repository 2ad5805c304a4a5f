#pragma once

#include "app/inspect.h"

/// How the window tells what was found.
namespace inspection {

/// Where a table or a column stands, for its mark in a list.
enum class Mark { Found, Optional, Missing };

Mark MarkOf(const Column& column);
/// A table is missing that is not found, or lacks a necessary column.
Mark MarkOf(const Table& table);

/// "trovata", "manca", "manca, facoltativa", "segnata come mancante".
QString StateText(const Column& column);
/// "trovata", "manca", "mancano 3 colonne necessarie"; behind it how the table has changed since the last import.
QString StateText(const Table& table);
/// What the source calls a column, or the name that is proposed with its ground: "CAMPO7? (valori: partita IVA)".
QString SourceText(const Column& column);
/// The same of a table.
QString SourceText(const Table& table);
/// What a chosen file is instead of a table; empty when it is that one.
QString OtherText(const Table& table);
/// How a table has changed since the last import; empty when it has not, or that is not known.
QString ChangeText(const Table& table);
/// The first values of a column, found or proposed, in quotes.
QString ValuesText(const Table& table, const QString& own);
/// "'A1', 'A2'": examples of values, each cut behind so many characters.
QString ExamplesText(const QStringList& values, qsizetype longest);
/// "1.234"; empty for a number that is not known.
QString RowsText(qint64 rows);
/// One line for the whole: how many tables and columns are there, and what is missing.
QString Summary(const Inspection& inspection);
/// What is proposed for all that is missing, a line each: "ARCLFR.IVACLFOR = CAMPO7 (valori: partita IVA)".
QStringList ProposalLines(const Inspection& inspection);

} // namespace inspection
