#pragma once

#include "core/runEnding.h"

/// The short account of a procedure's run, for the operator: how it ended and its time, what was deleted before, source
/// rows by what became of them, what else the procedure tells, rows written per table, rows given up with their
/// reasons, what the log tells beside, codes without a translation, errors. One line each. What emptied tables without
/// a source has no rows of one.
/// @param most reasons and codes beyond this number are counted only
QStringList ResultLines(const RunResult& result, int most = 20);
