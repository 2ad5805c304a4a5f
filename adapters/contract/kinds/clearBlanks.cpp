#include "adapters/contract/kinds/clearBlanks.h"

#include "adapters/contract/run/SourceLayout.h"
#include "core/Schema.h"
#include "sql/mod_ovTools.h"

#include <algorithm>

namespace contract {

namespace {

/// Columns that a blank of the source does not clear: a counterparty is made with them, whatever the source has.
bool IsOfCreation(const QString& column) {
    static const QStringList columns{"CDCON", "COINV", "COCON", "COCLI", "COFOR", "COVET", "COCGE",
                                     "COFGE", "CONAZ", "COLNG", "COVAL", "COTPF", "DTINS", "USINS"};
    return columns.contains(column);
}

bool IsOfRoles(Side side, const Roles& roles) {
    return side == Side::Both || (side == Side::Customer ? roles.customer : roles.supplier);
}

} // namespace

void ClearBlanks(TargetRow& target, Session& session, const SourceRow& row, const Mapping& mapping,
                 const Roles& roles) {
    const auto clear = [&](const MapLine& line) {
        if (line.sources.isEmpty() || line.IsLackingIn(session, row) || !IsOfRoles(line.rule.side, roles) ||
            IsOfCreation(line.target) || !target.Value(line.target).isNull()) {
            return;
        }
        if (std::all_of(line.sources.begin(), line.sources.end(),
                        [&row](const QString& one) { return row.IsBlank(one); })) {
            target.Set(line.target, QVariant());
        } else if (const auto number = mod_ovTools::ReadNumber(row.Value(line.sources.first()));
                   number == 0.0 &&
                   schema::FindTable(mapping.targetTable)->FindColumn(line.target)->type == DataType::Double) {
            target.Set(line.target, 0);
        }
    };
    std::for_each(mapping.lines.begin(), mapping.lines.end(), clear);
    const std::vector<MapLine>& added = AddedLines(session, mapping);
    std::for_each(added.begin(), added.end(), clear);
}

} // namespace contract
