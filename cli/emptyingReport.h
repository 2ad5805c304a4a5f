#pragma once

#include "app/reset.h"
#include "cli/Command.h"

namespace cli {

/// Takes the company of --company under work; a failing statement ends the command. Returns its name.
QString TakeCompanyToEmpty(Context& context);

/// The account of a reset or a truncation: the tables emptied, with their rows.
Report EmptyingReport(const EmptyingResult& result);

} // namespace cli
