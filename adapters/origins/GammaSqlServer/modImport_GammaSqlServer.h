#pragma once

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyRows.h"
#include "adapters/contract/kinds/PriceLists.h"

/// What the files of the module share, and the declarations that the other entry of the same program uses.
namespace modImport_GammaSqlServer {

inline const QString Module = QStringLiteral("modImport_GammaSqlServer");

// A table is a code and a name, a column the code of its table, its own name and, for a key of another table, the code
// of that one.
inline const QString Clifor = QStringLiteral("CG44_CLIFOR");       ///< customers and suppliers
inline const QString Anaggen = QStringLiteral("CG16_ANAGGEN");     ///< the persons and firms that they are
inline const QString Anagrart = QStringLiteral("MG66_ANAGRART");   ///< articles
inline const QString Artdesc = QStringLiteral("MG87_ARTDESC");     ///< their descriptions, by option and language
inline const QString Artprod = QStringLiteral("PD18_ARTPROD");     ///< what production knows of them
inline const QString Listartic = QStringLiteral("LI10_LISTARTIC"); ///< general price lists
inline const QString Listartcf = QStringLiteral("LI16_LISTARTCF"); ///< prices of a customer or supplier

/// A table tells the company in a column that begins with its own code, by which the imports order its rows and tie
/// those of others to them. The general register, towns and banks serve every company.
inline contract::CompanyKey Ditta() {
    return {.setting = "Ditta", .table = Clifor, .column = "*_DITTA_CG18", .usual = "1"};
}

/// CDART of an article's code.
inline contract::Rule Article() { return contract::rules::ArticleCode(Anagrart, "MG66_CODART"); }

/// CDLIS of a price list: its number, unless SYS_IMP knows another code; 0 is none.
contract::Rule PriceList();

contract::Counterparties Controparti();
/// The branches alone; who uses it tells the frame.
contract::PartyRows SediSole();
contract::PartyRows Riferimenti();
contract::Articles Articoli();
contract::PriceLists Listini();
/// Prices of single customers, or of single suppliers.
contract::PriceLists ListiniPersonali(bool customers);
contract::Bills Distinte();
/// Tubes of a CSV file that the operator chooses.
contract::Procedure Tubolari();

} // namespace modImport_GammaSqlServer
