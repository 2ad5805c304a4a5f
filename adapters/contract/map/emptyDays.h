#pragma once

#include <QDateTime>
#include <QVariant>

namespace contract {

inline const QDate LatestEmptyDay(1900, 1, 1);

/// Whether a day stands for none: an empty text is 1 January 1900 to SQL Server, and zero is 30 December 1899.
inline bool IsEmptyDay(const QDate& day) { return day == LatestEmptyDay || day == QDate(1899, 12, 30); }

/// A day as it was read; Null for one that stands for none.
inline QVariant WithoutEmptyDay(const QVariant& day) { return IsEmptyDay(day.toDate()) ? QVariant() : day; }

} // namespace contract
