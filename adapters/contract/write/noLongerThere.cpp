#include "adapters/contract/write/noLongerThere.h"

namespace contract {

namespace {

void Tell(ImportRun& run, const QString& kind, const QString& what, qint64 count) {
    if (count > 0) {
        run.Log(
            QStringLiteral("%1: %2: %3 in Quadrix")
                .arg(kind, what, count == 1 ? QStringLiteral("1 rimane") : QStringLiteral("%1 rimangono").arg(count)));
    }
}

} // namespace

void TellNoLongerThere(ImportRun& run, const QString& kind, const QString& what, qint64 count) {
    Tell(run, kind + QStringLiteral(" NON PIÙ NELL'ORIGINE"), what, count);
}

void TellNotMetAgain(ImportRun& run, const QString& kind, const QString& what, qint64 count) {
    const QString orGivenUp = run.HasGivenUp() ? QStringLiteral(" O TRA LE RIGHE ABBANDONATE") : QString();
    Tell(run, kind + QStringLiteral(" NON PIÙ NELL'ORIGINE") + orGivenUp, what, count);
}

} // namespace contract
