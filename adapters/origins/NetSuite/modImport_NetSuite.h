#pragma once

#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/run/SourceRow.h"

/// What the files of the module share.
namespace modImport_NetSuite {

inline const QString Module = QStringLiteral("modImport_NetSuite");

inline const QString Clienti = QStringLiteral("ANCL200F");   ///< customers
inline const QString Fornitori = QStringLiteral("ANFO200F"); ///< suppliers
inline const QString Parti = QStringLiteral("ANPA200F");     ///< articles

/// CDART of an article's code.
inline contract::Rule Article() { return contract::rules::ArticleCode(Parti, "CDPAR"); }
/// The currency of a file: "EURO" is the euro.
contract::Rule Valuta(const QString& table);
/// A day that a number tells, with the year in two digits or four; Null for 0.
contract::Rule Giorno();
/// Why a row that is cancelled is left out; empty for one that counts.
QString Cancelled(const contract::SourceRow& row);
/// What `Cancelled` reads.
contract::Needs ReadsState(const QString& table);

/// Orders of customers, or those to suppliers.
contract::Documents Ordini(bool customers);
contract::Procedure TabelleBase();

} // namespace modImport_NetSuite
