#include "adapters/contract/run/tiedRows.h"

namespace contract {

QString TiedTo(const ovConnection& source, const QString& column, const SourceRow& row, const QString& of) {
    return column + QStringLiteral(" = ") + LiteralOf(source, row.Value(of.isEmpty() ? column : of));
}

} // namespace contract
