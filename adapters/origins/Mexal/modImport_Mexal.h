#pragma once

#include "adapters/contract/run/ImportRun.h"

/// What the files of the module share.
namespace modImport_Mexal {

inline const QString Module = QStringLiteral("modImport_Mexal");

/// Counterparties and accounts.
inline const QString PiaCon = QStringLiteral("PIA_CON");
/// Articles with their stock and location.
inline const QString ArtMag = QStringLiteral("ART_MAG");

/// CDCON of a counterparty's code: translated through SYS_IMP, else that of the customer (supplier) imported from it;
/// empty when there is none.
QString GetControparteMexal(Session& session, const QString& code, bool customer);

/// The currency of a number of the source; the euro for 1 and a blank one.
QString CurrencyOfNumber(Session& session, const QString& number);

/// CDART of an article's code.
QString ArticleOf(contract::ImportRun& run, const QString& sourceCode);

const contract::Needs& ArticoliNeeds();
void ImportArticoliMEX(Session& session, const QString& singleCode, bool reset);
const contract::Needs& CostiPrezziNeeds();
void ImportaCostiPrezziFromMEX(Session& session, const QString& singleCode, bool reset);
const contract::Needs& SaldiNeeds();
void ImportSaldiMEX(Session& session, const QString& singleCode, bool reset);
const contract::Needs& UbicazioniNeeds();
void ImportUbicazioniMEX(Session& session, const QString& singleCode, bool reset);

const contract::Needs& DocumentiNeeds();
void ImportDocumentiMEX(Session& session, const QString& singleCode, bool reset);

const contract::Needs& DistinteNeeds();
void ImportDistinteMex(Session& session, const QString& singleCode, bool reset);

} // namespace modImport_Mexal
