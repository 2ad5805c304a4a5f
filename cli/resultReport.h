#pragma once

#include "cli/Command.h"

/// The account of procedures that ran, for scripts.
namespace cli {

/// All procedures of one press as one result.
RunResult Total(const QVector<RunResult>& results);

/// "outcome", the classes of source rows, the rows written per table, what was given up, untranslated codes, errors
/// and seconds.
QJsonObject ResultJson(const RunResult& result);

/// "done", "failed", "cancelled".
QString OutcomeName(RunResult::Outcome outcome);
ExitCode ExitCodeOf(RunResult::Outcome outcome);

} // namespace cli
