#pragma once

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Documents.h"

/// What the files of the module share.
namespace modImport_Metodo {

inline const QString Module = QStringLiteral("modImport_Metodo");

// Source tables.
inline const QString Anagrafica = QStringLiteral("ANAGRAFICACF");
inline const QString Riservati = QStringLiteral("ANAGRAFICARISERVATICF");
inline const QString ArticoliTable = QStringLiteral("ANAGRAFICAARTICOLI");

/// A rule on a number that is a code: zero is none, as blank is.
contract::Rule NotZeroCode(const contract::Rule& rule);
/// A code of the counterparties under the name that SYS_IMP has for it.
inline contract::Rule Coded(const QString& name) { return NotZeroCode(contract::rules::Translated(Anagrafica, name)); }
/// The currency of a number of TABCAMBI. @param parent table of the row @param column that holds the number
contract::Rule CurrencyOfNumber(const QString& parent, const QString& column);

/// CDART of an article's code.
inline contract::Rule Article() { return contract::rules::ArticleCode(ArticoliTable, "CODICE"); }
/// Units and VAT codes of articles and documents are the same.
inline contract::Rule ArticleUnit(const QString& blank) { return contract::rules::Unit(ArticoliTable, "UM", blank); }
inline contract::Rule ArticleVat() { return contract::rules::VatCode(ArticoliTable, "CODIVA"); }

contract::Articles Articoli();
contract::Procedure ImportBanche();
contract::Procedure ImportPianoContiMetodo();
contract::Procedure ImportModalitaPagamentoMetodo();
/// The documents; behind the button of one document its number is asked.
contract::Procedure ImportDocumentiMetodo(contract::Button button);

} // namespace modImport_Metodo
