#pragma once

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/Stock.h"

/// What the files of the module share.
namespace modImport_AdHoc {

inline const QString Module = QStringLiteral("modImport_AdHoc");

/// Customers, suppliers and the accounts of the chart, told apart by ANTIPCON.
inline const QString Conti = QStringLiteral("CONTI");
inline const QString ArtIcol = QStringLiteral("ART_ICOL");
/// Balances of each article in each warehouse.
inline const QString SaldiArt = QStringLiteral("SALDIART");
/// The bank directory, which gives the counterparties their coordinates.
inline const QString Banche = QStringLiteral("BAN_CHE");

/// CDART of an article's code.
inline contract::Rule Article() { return contract::rules::ArticleCode(ArtIcol, "ARCODART"); }

contract::Counterparties Controparti();
contract::Articles Articoli();
contract::Accounts PianoConti();
contract::Procedure TabelleBase();
contract::Procedure Lamiere();
contract::Procedure Movimenti();
contract::Procedure Inventario();
contract::Procedure AllegatiLantek();
contract::Procedure PackingList();

} // namespace modImport_AdHoc
