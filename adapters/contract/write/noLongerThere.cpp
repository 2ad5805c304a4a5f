#include "adapters/contract/write/noLongerThere.h"

namespace contract {

void TellNoLongerThere(ImportRun& run, const QString& kind, const QString& what, qint64 count) {
    if (count > 0) {
        run.Log(
            QStringLiteral("%1 NON PIÙ NELL'ORIGINE: %2: %3 in Quadrix")
                .arg(kind, what, count == 1 ? QStringLiteral("1 rimane") : QStringLiteral("%1 rimangono").arg(count)));
    }
}

} // namespace contract
