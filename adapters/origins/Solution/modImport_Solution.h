#pragma once

#include "adapters/contract/run/Origin.h"

/// What serves the origin that keeps its accounts in Solution, too.
namespace modImport_Solution {

/// Solution alone: the source that its procedures open.
const contract::Origin& Entry();

contract::Procedure ImportContropartiSolution();
contract::Procedure ImportDocumentiSolution();

} // namespace modImport_Solution
