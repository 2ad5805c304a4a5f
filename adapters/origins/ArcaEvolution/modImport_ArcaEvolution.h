#pragma once

#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/kinds/PriceLists.h"

/// What the files of the module share.
namespace modImport_ArcaEvolution {

inline const QString Module = QStringLiteral("modImport_ArcaEvolution");

/// Counterparties, customers and suppliers in one.
inline const QString Cf = QStringLiteral("CF");
/// Destinations of counterparties.
inline const QString Destinazioni = QStringLiteral("CFDest");
/// Articles.
inline const QString Ar = QStringLiteral("AR");

/// Whether an IBAN holds letters and digits alone, has the 27 characters of an Italian one when it is one, and its
/// check digits are right (ISO 13616). It is given without blanks, in upper case.
bool ValidateIBAN(const QString& iban);

/// A street cut up: 35 characters, what is left of it, and the house number behind the last comma.
struct Street {
    QString first;
    QString rest;
    QString number;
};
Street StreetOf(const QString& text);
/// A part of the street in the source column.
contract::Rule StreetPart(QString Street::*part, const QString& words);
/// Our bank, the CDBAN of BAN_CHE, by its ledger account: the one with that external code, else the one with the IBAN
/// that table Banca tells. Left out, and logged, when there is none.
contract::Rule OurBank();

/// The Quadrix language of a Windows language number (1040 is Italian); empty for one that is not known.
QString LanguageOf(Session& session, const QString& number);

/// The refresh of the suppliers.
contract::Procedure SistemaSediLegaliFornitori();

contract::PaymentTerms Pagamenti();

/// CDART of an article's code.
inline contract::Rule Article() { return contract::rules::ArticleCode(Ar, "Cd_AR"); }
/// The code of a price list: translated, else its own, under which the lists are imported.
contract::Rule PriceListCode();
contract::PriceLists Listini();
/// The articles, then the locations of the warehouses.
contract::Procedure ArticoliProcedure();

contract::Documents Documenti();

} // namespace modImport_ArcaEvolution
