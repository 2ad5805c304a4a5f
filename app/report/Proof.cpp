#include "app/report/Proof.h"

#include <algorithm>

namespace proof {

bool Total::Agrees() const {
    return sourceRows == targetRows && std::all_of(amounts.begin(), amounts.end(),
                                                   [](const Amount& amount) { return amount.source == amount.target; });
}

SourceFigures FiguresOf(const Kind& kind) {
    SourceFigures figures;
    for (const Step& step : kind.steps) {
        figures.rows += step.result.sourceRows;
        figures.found += step.result.updated;
        figures.missing += step.result.inserted;
        figures.skipped += step.result.skipped;
        figures.givenUp += step.result.givenUpCount;
        figures.notReached += step.result.notReached;
    }
    return figures;
}

} // namespace proof
