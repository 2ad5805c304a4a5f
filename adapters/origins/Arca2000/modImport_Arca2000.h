#pragma once

#include "adapters/contract/run/ImportRun.h"

/// What the files of the module share.
namespace modImport_Arca2000 {

inline const QString Module = QStringLiteral("modImport_Arca2000");

const contract::Needs& ArticoliNeeds();
void ImportArticoliArca2000(Session& session, const QString& singleCode, bool reset);

const contract::Needs& ListiniNeeds();
void ImportListiniArca2000(Session& session, const QString& singleCode, bool reset);

} // namespace modImport_Arca2000
