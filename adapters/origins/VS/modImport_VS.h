#pragma once

#include "adapters/contract/run/ImportRun.h"

/// What the files of the module share.
namespace modImport_VS {

inline const QString Module = QStringLiteral("modImport_VS");

/// Articles; their lists of units and VAT codes are those of the orders and bills too.
inline const QString Articoli = QStringLiteral("A_ARTICOLI");
/// Customers and suppliers; their lists of payment terms and currencies are those of the orders too.
inline const QString Clienti = QStringLiteral("A_CLIENTI");
inline const QString Fornitori = QStringLiteral("A_FORNITORI");

/// CDCON of a customer (supplier) of the source: translated through SYS_IMP, else that of the one imported from the
/// code, else the one with the VAT number or tax code that the source has for it: the counterparties may have come from
/// another origin. Empty when there is none.
QString GetNewControparteFromVisual(contract::ImportRun& run, const QString& code, bool customer);

/// CDART of an article's code.
QString ArticleOf(contract::ImportRun& run, const QString& sourceCode);

const contract::Needs& ArticoliNeeds();
void ImportArticoliVSP(Session& session, const QString& singleCode, bool reset);
const contract::Needs& DisegniNeeds();
void ImportDisegniVSP(Session& session, const QString& singleCode, bool reset);

const contract::Needs& SaldiNeeds();
void ImportSaldiVSP(Session& session, const QString& singleCode, bool reset);
const contract::Needs& UbicazioniNeeds();
void ImportUbicazioniVSP(Session& session, const QString& singleCode, bool reset);

const contract::Needs& DocVenNeeds();
void ImportDocVenVSP(Session& session, const QString& singleCode, bool reset);
const contract::Needs& DocAcqNeeds();
void ImportDocAcqVSP(Session& session, const QString& singleCode, bool reset);

const contract::Needs& DistinteNeeds();
void ImportDistinteVSP(Session& session, const QString& singleCode, bool reset);
const contract::Needs& CorrezioneNeeds();
void CorreggiDistinteVSP(Session& session, const QString& singleCode, bool reset);

} // namespace modImport_VS
