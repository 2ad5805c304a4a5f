#pragma once

#include "adapters/contract/map/rules.h"
#include "adapters/contract/run/Origin.h"

/// What the files of the module share.
namespace modImport_Borgo {

inline const QString Module = QStringLiteral("modImport_Borgo");

/// Counterparties; also the translations of payment terms and currencies.
inline const QString Anagrafica = QStringLiteral("Anagrafica");
/// Articles; also the translations of units and VAT codes.
inline const QString Articoli = QStringLiteral("Articoli");

/// What the codes of articles are translated under: the recoding of sheets writes it.
inline const QString CodesOf = QStringLiteral("ART_ICO");
inline const QString CodeField = QStringLiteral("CDART");

/// CDART of an article's code.
inline contract::Rule Article() { return contract::rules::ArticleCode(CodesOf, CodeField); }
/// The unit of a code of the source; `blank` when there is none.
inline contract::Rule ArticleUnit(const QString& blank) { return contract::rules::Unit(Articoli, "Um", blank); }

/// Kilograms of a sheet of a format (ART_FMT): its own weight (LMPES), else by its measures, the thickness of its
/// article and its density, 3 decimals; 0 when the format is not known, or it has no weight and the thickness or the
/// density is not known. Raises `SqlError`.
double GetPesoFormatoBorgo(Session& session, const QString& article, const QString& format);
/// Kilograms of so many sheets of a format; 0 when its weight is not known. Raises `SqlError`.
double GetQuantitaFormatoBorgo(Session& session, const QString& article, const QString& format, double sheets);

contract::Procedure ImportOrdiniVenditaBorgo();
contract::Procedure ImportOrdiniAcquistoBorgo();
contract::Procedure RicodificaArticoliLamieraBorgo();

} // namespace modImport_Borgo
