#pragma once

#include "adapters/contract/run/Needs.h"

namespace contract {

/// The codes that a rule translates. Its words tell them: "SYS_IMP (anagrafe, pag)" each list and field, "when TAB_UMS
/// has it" the table whose codes they become. Empty for a rule that translates none.
std::vector<CodeUse> CodesOf(const Rule& rule);

/// Those that a procedure translates: by its mappings, each with the column that it goes to, and beyond them.
std::vector<CodeUse> CodesOf(const Needs& needs);

} // namespace contract
