#include "adapters/contract/SourceRow.h"

#include "sql/mod_ovTools.h"

namespace contract {

QString SourceRow::Text(const QString& column) const { return mod_ovTools::ToText(Value(column)).trimmed(); }

} // namespace contract
