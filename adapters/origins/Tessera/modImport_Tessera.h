#pragma once

#include "adapters/contract/kinds/Documents.h"

/// What the files of the module share.
namespace modImport_Tessera {

inline const QString Module = QStringLiteral("modImport_Tessera");

inline const QString CliFor = QStringLiteral("CliFor");
/// Articles; also the translations of units.
inline const QString Artic = QStringLiteral("Artic");
inline const QString Lavorazioni = QStringLiteral("Lavorazioni"); ///< only a name of translations

// Rules on what stands behind an id of the source: the code of the counterparty, payment term or VAT code.
contract::Rule GetCodContropartiTessera(const contract::Rule& rule);
contract::Rule GetCodPagamentoTessera(const contract::Rule& rule);
contract::Rule GetCodIvaTessera(const contract::Rule& rule);

/// CDART of an article's code.
inline contract::Rule Article() { return contract::rules::ArticleCode(Artic, "CodArt"); }
/// The unit of a code of the source: translated, else in upper case.
inline contract::Rule UnitOr(const QString& blank) {
    return contract::rules::TranslatedOrUpper(Artic, "UniMis", blank);
}
/// The payment term behind an id.
inline contract::Rule PaymentTerm() { return GetCodPagamentoTessera(contract::rules::Translated("Pagam", "CodPag")); }

contract::Documents OrdCli();
contract::Documents DocAcq();

} // namespace modImport_Tessera
