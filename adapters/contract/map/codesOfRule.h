#pragma once

#include "adapters/contract/run/Needs.h"

namespace contract {

/// Codes of a source that are translated through SYS_IMP, and the column of Quadrix that they go to.
struct CodeUse {
    QString list;           ///< TBNAM of their rows
    QString field;          ///< TBFLD
    QString codeTable = {}; ///< Quadrix table (bare name) whose codes they become; empty: the column tells
    QString table = {};     ///< that they are written to, its bare name
    QString column = {};
};

/// The codes that a rule translates. Its words tell them: "SYS_IMP (anagrafe, pag)" each list and field, "when TAB_UMS
/// has it" the table whose codes they become. Empty for a rule that translates none.
std::vector<CodeUse> CodesOf(const Rule& rule);

/// Those that the mappings of a procedure translate, each with the column that it goes to.
std::vector<CodeUse> CodesOf(const Needs& needs);

} // namespace contract
