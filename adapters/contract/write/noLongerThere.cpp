#include "adapters/contract/write/noLongerThere.h"

namespace contract {

namespace {

/// @param line with the kind, what it is, and how many remain
void Tell(ImportRun& run, const QString& line, const QString& kind, const QString& what, qint64 count) {
    if (count > 0) {
        run.Log(
            line.arg(kind, what, count == 1 ? QStringLiteral("1 rimane") : QStringLiteral("%1 rimangono").arg(count)));
    }
}

} // namespace

void TellNoLongerThere(ImportRun& run, const QString& kind, const QString& what, qint64 count) {
    Tell(run, QStringLiteral("%1 NON PIÙ NELL'ORIGINE: %2: %3 in Quadrix"), kind, what, count);
}

void TellNotMetAgain(ImportRun& run, const QString& kind, const QString& what, qint64 count) {
    if (run.HasGivenUp()) {
        Tell(run, QStringLiteral("%1 NON PIÙ NELL'ORIGINE O TRA LE RIGHE ABBANDONATE: %2: %3 in Quadrix"), kind, what,
             count);
    } else {
        TellNoLongerThere(run, kind, what, count);
    }
}

void TellNotRewritten(ImportRun& run, const QString& kind, const QString& what, qint64 count) {
    Tell(run, QStringLiteral("NON RISCRITTO: %1 di %2, che l'origine ha e si lasciano fuori: %3 in Quadrix come prima"),
         kind, what, count);
}

} // namespace contract
