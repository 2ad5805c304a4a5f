#include "adapters/contract/map/codesOfRule.h"

#include <QRegularExpression>

namespace contract {

std::vector<CodeUse> CodesOf(const Rule& rule) {
    // What joins rules joins their words, so that those of the inner ones stand in it as they are; the table of codes
    // stands behind its list and before the next one.
    static const QRegularExpression uses(
        QStringLiteral("SYS_IMP \\(([^,()]+), ([^()]+)\\)(?:(?:(?!SYS_IMP).)*?\\bse ([A-Z]{3}_[A-Z]{3}) (?:lo )?ha)?"));
    std::vector<CodeUse> codes;
    for (auto use = uses.globalMatch(rule.text); use.hasNext();) {
        const QRegularExpressionMatch match = use.next();
        codes.push_back({match.captured(1), match.captured(2), match.captured(3)});
    }
    return codes;
}

std::vector<CodeUse> CodesOf(const Needs& needs) {
    std::vector<CodeUse> all = needs.codes;
    for (const Mapping* mapping : needs.mappings) {
        for (const MapLine& line : mapping->lines) {
            for (CodeUse use : CodesOf(line.rule)) {
                use.table = mapping->targetTable;
                use.column = line.target;
                all.push_back(use);
            }
        }
    }
    return all;
}

} // namespace contract
