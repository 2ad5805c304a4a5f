#pragma once

#include "core/RunResult.h"

#include <optional>

/// How a run ended, the better before the worse: `std::max` of several is how they ended together.
enum class Ending {
    Complete,
    Incomplete,  ///< done, but rows were given up or not found, or look-ups failed
    Interrupted, ///< by the operator
    Failed,
};

/// How a run ended. Message, icon, result, log and exit code all follow from it.
Ending EndingOf(const RunResult& result);
/// "completata", "completata ma non per intero", "interrotta dall'operatore", "interrotta da un errore"
QString EndingText(Ending ending);

/// The outcome of the first of the results that is not done; none when all are.
std::optional<RunResult::Outcome> FirstNotDone(const QVector<RunResult>& results);

/// "Righe abbandonate: 81, ricerche non riuscite: 2"; empty when nothing was lost.
QString LossesText(const RunResult& result);
/// "Righe dell'origine 10: inserite 9, ...": how many source rows came to which end.
QString RowsLine(const RunResult& result);
/// "6.452 righe eliminate", "1 riga eliminata"; empty for -1, rows that the database did not count.
QString DeletedText(qint64 rows);
/// "Tabella X01_CON_TRO: svuotata (6.452 righe eliminate)"
QString EmptiedLine(const QString& table, qint64 rows);
