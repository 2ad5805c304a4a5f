#pragma once

#include "core/Record.h"
#include "core/Session.h"

/// Calculations of the production component on rows that are in the Quadrix database.
namespace qdxProduction {

/// Recomputes the totals of a document from its rows and stores them in its head, rounded to cents:
/// - DTMER goods: the sum of DRTOT, description rows left out;
/// - DTSCT discount: the head's two discounts in percent, DTSCO and then DTSCI on what the first left;
/// - DTIMP taxable: goods less discount, plus packing (DTSIM) and transport (DTSTR);
/// - DTIVA tax: for each VAT code the code's share of the taxable amount, rounded to cents, times its rate, rounded to
///   cents. The share follows the rows' amounts; the last code takes what rounding left, and packing and transport
///   follow the goods. A code that TAB_IVA lacks is an error, as it would leave the tax short.
/// - DTTOT total: taxable plus tax.
/// @param headTable for example "DOC_VEN" @param head RECORD_ID of the head
/// @param totals a row of that table that holds nothing yet
/// Raises `SqlError`, `RowGivenUp`, or `ImportError` naming the document when the head or a VAT code is missing.
void qdxDocAggiornaTotale(Session& session, const QString& headTable, qint64 head, Record& totals);

/// Row table of a head table: "DOC_VER" of "DOC_VEN". Raises `ImportError` for a table that is no head.
QString RowTableOf(const QString& headTable);

} // namespace qdxProduction
