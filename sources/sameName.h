#pragma once

#include <QStringView>

namespace sources {

/// Whether two names of tables, columns or settings are the same, as every source takes them: in any case.
inline bool IsSameName(QStringView left, QStringView right) { return left.compare(right, Qt::CaseInsensitive) == 0; }

} // namespace sources
