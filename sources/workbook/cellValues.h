#pragma once

#include "sources/workbook/Workbook.h"

#include <optional>

namespace sources {

/// The number of a text as files of XML write it, "1.5e-7"; none when it is none, or has no end.
std::optional<double> NumberOf(QStringView text);
/// Makes a cell one that cannot be read.
void Spoil(SheetCell& cell, const QString& why);
/// Makes a cell a date that the file keeps written out: "2024-03-05", "2024-03-05T14:30:00"; unreadable when it is
/// none.
void TakeDate(SheetCell& cell, const QString& value);

} // namespace sources
