#pragma once

#include "adapters/contract/run/ImportRun.h"

/// What the files of the module share.
namespace modImport_Tessera {

inline const QString Module = QStringLiteral("modImport_Tessera");

/// Articles; also the translations of units.
inline const QString Artic = QStringLiteral("Artic");

// Codes of the source behind its ids. Empty for the id 0, a blank one and one that is not there.
QString GetCodContropartiTessera(Session& session, const contract::SourceRow& row, const QString& idColumn);
QString GetCodPagamentoTessera(Session& session, const contract::SourceRow& row, const QString& idColumn);
QString GetCodIvaTessera(Session& session, const contract::SourceRow& row, const QString& idColumn);
/// What those read.
std::vector<contract::TableNeed> LookupNeeds();

/// CDART of an article's code.
QString ArticleOf(contract::ImportRun& run, const QString& sourceCode);
/// The unit of a code of the source: translated, else in upper case; empty for a blank one.
QString UnitOf(Session& session, const QString& sourceCode);
/// The work centre of a code of the source: translated, else the code itself.
QString WorkOf(Session& session, const QString& sourceCode);
/// CDCON of the supplier that a row names by its id; empty when it names none, or one that was not imported (logged).
QString SupplierOf(contract::ImportRun& run, const contract::SourceRow& row, const QString& idColumn);

const contract::Needs& ContropartiNeeds();
void ImportContropartiTessera(Session& session, const QString& singleCode, bool reset);

const contract::Needs& ArticoliNeeds();
void ImportArticoliTessera(Session& session, const QString& singleCode, bool reset);

const contract::Needs& DistinteNeeds();
void ImportDistinteTessera(Session& session, const QString& singleCode, bool reset);

const contract::Needs& OrdCliNeeds();
void ImportOrdCliTessera(Session& session, const QString& singleCode, bool reset);

const contract::Needs& DocAcqNeeds();
void ImportDocAcqTessera(Session& session, const QString& singleCode, bool reset);

} // namespace modImport_Tessera
