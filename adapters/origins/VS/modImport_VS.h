#pragma once

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/kinds/Stock.h"

/// What the files of the module share.
namespace modImport_VS {

inline const QString Module = QStringLiteral("modImport_VS");

/// Articles; their lists of units and VAT codes are those of the orders and bills too.
inline const QString ArticoliTable = QStringLiteral("A_ARTICOLI");
/// Customers and suppliers; their lists of payment terms and currencies are those of the orders too.
inline const QString Clienti = QStringLiteral("A_CLIENTI");
inline const QString CodCliente = QStringLiteral("COD_CLIENTE");
inline const QString Fornitori = QStringLiteral("A_FORNITORI");
inline const QString CodFornitore = QStringLiteral("COD_FORNITORE");

/// CDCON of a customer (supplier) of the source: translated through SYS_IMP, else that of the one imported from the
/// code, else the one with the VAT number or tax code that the source has for it: the counterparties may have come from
/// another origin. Empty when there is none. @param read the code as it was read
QString GetNewControparteFromVisual(Session& session, const QVariant& read, bool customer);
/// What it reads.
std::vector<contract::TableNeed> RegisterReads(bool customer);

/// CDART of an article's code.
inline contract::Rule Article() { return contract::rules::ArticleCode(ArticoliTable, "COD_ARTICOLO"); }

contract::Articles Articoli();
contract::Procedure Disegni();
contract::Balances Saldi();
contract::Locations Ubicazioni();
contract::Documents DocVen();
contract::Documents DocAcq();

const contract::Needs& DistinteNeeds();
void ImportDistinteVSP(Session& session, const QString& singleCode, bool reset);
inline const QString CorrectionQuestion = QStringLiteral("Correggere le distinte?");
const contract::Needs& CorrezioneNeeds();
void CorreggiDistinteVSP(Session& session, const QString& singleCode, bool reset);

} // namespace modImport_VS
