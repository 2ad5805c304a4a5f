#pragma once

#include "adapters/contract/map/rules.h"
#include "adapters/contract/run/Origin.h"
#include "sources/privateDatabase.h"

/// What the files of the module share.
namespace modImport_Lamina {

inline const QString Module = QStringLiteral("modImport_Lamina");

/// What codes are translated under, whichever file they stand in.
inline const QString Codes = QStringLiteral("LAMINA");

/// The line of the file that a row stands in, which messages tell.
inline const QString Line = sources::RowNumberColumn;

inline const QString Distinte = QStringLiteral("DISTINTE");
inline const QString Lavorazioni = QStringLiteral("LAVORAZIONI");

/// CDART of an article's code.
inline contract::Rule Article() { return contract::rules::ArticleCode(Codes, "CODICE"); }
/// The unit of a code of the source; `blank` when there is none.
inline contract::Rule ArticleUnit(const QString& blank) { return contract::rules::Unit(Codes, "UM", blank); }

contract::Procedure ImportDistinteLaminaFromCSV();
contract::Procedure ImportLavorazioniLaminaFromCSV();

} // namespace modImport_Lamina
