#include "adapters/contract/write/componentUnit.h"

#include "adapters/contract/map/lookups.h"

namespace contract {

void TellOtherUnit(ImportRun& run, const QString& name, const QString& article, const QString& unit,
                   const QString& known) {
    if (unit.isEmpty()) {
        return;
    }
    const QString own = LookUp(run.GetSession(), "ART_ICO", "CDART", article, "ARUMS");
    if ((known.isEmpty() ? unit : known).compare(own, Qt::CaseInsensitive) != 0) {
        run.Log(QStringLiteral("UNITÀ DI MISURA DIVERSA: %1: '%2' è in '%3', l'articolo in '%4'")
                    .arg(name, article, unit, own));
    }
}

} // namespace contract
