#pragma once

#include "cli/Command.h"
#include "core/runEnding.h"

class QJsonArray;

/// The account of procedures that ran, for scripts.
namespace cli {

/// All procedures of one press as one result.
RunResult Total(const QVector<RunResult>& results);

/// "outcome", the classes of source rows, the rows written per table, what was given up, untranslated codes, errors
/// and seconds.
QJsonObject ResultJson(const RunResult& result);

/// Kinds of notes with their number and the first of each.
QJsonArray NotesJson(const Notes& notes);

/// "done", "incomplete", "cancelled", "failed".
QString EndingName(Ending ending);
ExitCode ExitCodeOf(Ending ending);
/// The same for what has no rows that could be given up: "done", "cancelled", "failed".
QString OutcomeName(RunResult::Outcome outcome);
ExitCode ExitCodeOf(RunResult::Outcome outcome);

} // namespace cli
