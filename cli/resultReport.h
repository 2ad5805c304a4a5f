#pragma once

#include "cli/Command.h"

/// The account of procedures that ran, for people and for scripts.
namespace cli {

/// All procedures of one press as one result.
RunResult Total(const QVector<RunResult>& results);

/// "outcome", the classes of source rows, the rows written per table, what was given up, untranslated codes, errors
/// and seconds.
QJsonObject ResultJson(const RunResult& result);

/// A summary of a few lines whose figures add up; long lists are cut, and say so.
QString ResultText(const RunResult& result);

/// "done", "failed", "cancelled".
QString OutcomeName(RunResult::Outcome outcome);
/// "completata", "fallita", "annullata".
QString OutcomeText(RunResult::Outcome outcome);
ExitCode ExitCodeOf(RunResult::Outcome outcome);

} // namespace cli
