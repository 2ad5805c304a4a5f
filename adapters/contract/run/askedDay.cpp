#include "adapters/contract/run/askedDay.h"

#include "core/italianText.h"
#include "sql/mod_ovTools.h"

namespace contract {

QDate AskDay(ImportRun& run, const QString& question, const QDate& proposed) {
    const QString typed = run.Input(question, QuadrixCaption, italian::DayText(proposed));
    const auto day = mod_ovTools::ReadDate(typed);
    if (!day) {
        throw ImportError(QStringLiteral("'%1' non è una data, scriverla gg/mm/aaaa").arg(typed));
    }
    return day->date();
}

} // namespace contract
