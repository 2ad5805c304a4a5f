#pragma once

#include "core/RunResult.h"

/// "Righe lette 10: inserite 9, ...": how many source rows came to which end.
QString RowsLine(const RunResult& result);

/// The short account of a procedure's run, for the operator: outcome and time, source rows by what became of them,
/// rows written per table, rows given up with their reasons, what the log tells beside, codes without a translation,
/// errors. One line each.
/// @param most reasons and codes beyond this number are counted only
QStringList ResultLines(const RunResult& result, int most = 20);
