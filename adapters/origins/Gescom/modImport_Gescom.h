#pragma once

#include "adapters/contract/run/ImportRun.h"

/// What the files of the module share.
namespace modImport_Gescom {

inline const QString Module = QStringLiteral("modImport_Gescom");

/// Counterparties; they are found by code and kind, as customers and suppliers are numbered apart.
inline const QString Arclfr = QStringLiteral("ARCLFR");
/// Phases of the articles.
inline const QString Arcfas = QStringLiteral("arcfas");

/// CDART of an article's code.
QString ArticleOf(contract::ImportRun& run, const QString& sourceCode);

const contract::Needs& ArticoliNeeds();
void ImportArticoliGescom(Session& session, const QString& singleCode, bool reset);

const contract::Needs& ListiniNeeds();
void ImportListiniGescom(Session& session, const QString& singleCode, bool reset);

const contract::Needs& DistinteNeeds();
void ImportDistinteGescom(Session& session, const QString& singleCode, bool reset);

const contract::Needs& DocumentiNeeds();
void ImportDocumentiGescom(Session& session, const QString& singleCode, bool reset);

} // namespace modImport_Gescom
