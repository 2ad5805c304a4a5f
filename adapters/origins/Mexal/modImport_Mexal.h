#pragma once

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/kinds/Stock.h"

/// What the files of the module share.
namespace modImport_Mexal {

inline const QString Module = QStringLiteral("modImport_Mexal");

/// Chart of accounts, customers and suppliers among it; the codes of payment terms and currencies too.
inline const QString PiaCon = QStringLiteral("PIA_CON");
/// Articles with their stock and location.
inline const QString ArtMag = QStringLiteral("ART_MAG");

/// CDCON of a counterparty's code: translated through SYS_IMP, else that of the customer (supplier) imported from it;
/// empty when there is none.
QString GetControparteMexal(Session& session, const QString& code, bool customer);

/// The currency of a number of the source; the euro for 1 and a blank one.
contract::Rule NumberedCurrency();
/// CDART of an article's code.
inline contract::Rule Article() { return contract::rules::ArticleCode(ArtMag, "_ARCOD"); }

contract::Articles Articoli();
const contract::Needs& CostiPrezziNeeds();
void ImportaCostiPrezziFromMEX(Session& session, const QString& singleCode, bool reset);
const contract::Needs& SaldiNeeds();
void ImportSaldiMEX(Session& session, const QString& singleCode, bool reset);
contract::Locations Ubicazioni();

contract::Bills Distinte();
contract::Documents Documenti();

} // namespace modImport_Mexal
