#pragma once

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/map/codeRules.h"

/// What the files of the module share.
namespace modImport_Metodo {

inline const QString Module = QStringLiteral("modImport_Metodo");

// Source tables.
inline const QString Anagrafica = QStringLiteral("ANAGRAFICACF");
inline const QString Riservati = QStringLiteral("ANAGRAFICARISERVATICF");
inline const QString ArticoliTable = QStringLiteral("ANAGRAFICAARTICOLI");

/// A code of the counterparties under the name that SYS_IMP has for it.
inline contract::Rule Coded(const QString& name) {
    return contract::rules::NotZeroCode(contract::rules::Translated(Anagrafica, name));
}
/// The currency of a number of TABCAMBI. @param parent table of the row @param column that holds the number
contract::Rule CurrencyOfNumber(const QString& parent, const QString& column);

/// A country by its number, else by its ISO code, translated; Italy when both are blank, left out when they name
/// another that is not known.
contract::Rule NationOf();
/// What a counterparty has for each year, of its last one; it is the first join.
contract::Join LastYear(const QStringList& columns);
/// CDCON of the counterparty of a row (TIPOCONTO, CODCONTO); empty when it is not there.
QString ImportedParty(Session& session, const contract::SourceRow& row);

/// Telex and web address.
void WriteAddresses(contract::ImportRun& run, contract::CounterpartyWriter& writer, const contract::SourceRow& row,
                    const contract::Owner& owner);
contract::Needs AddressNeeds();

/// CDART of an article's code.
inline contract::Rule Article() { return contract::rules::ArticleCode(ArticoliTable, "CODICE"); }
/// Units and VAT codes of articles and documents are the same.
inline contract::Rule ArticleUnit(const QString& blank) { return contract::rules::Unit(ArticoliTable, "UM", blank); }
inline contract::Rule ArticleVat() { return contract::rules::VatCode(ArticoliTable, "CODIVA"); }

contract::Counterparties Controparti();
/// They come behind the counterparties, whose numbers they must not take.
contract::Counterparties Vettori();
/// The carrier that a counterparty usually has, once carriers have their codes.
contract::ImportPart VettoriAbituali();
contract::BaseTable LettereIntento();
contract::Procedure RiallineaTelFaxContropartiMetodo();
contract::Articles Articoli();
contract::Procedure ImportBanche();
contract::Procedure ImportPianoContiMetodo();
contract::Procedure ImportModalitaPagamentoMetodo();
/// The documents; behind the button of one document its number is asked.
contract::Procedure ImportDocumentiMetodo(contract::Button button);

} // namespace modImport_Metodo
