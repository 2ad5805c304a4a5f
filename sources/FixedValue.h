#pragma once

#include "sources/fixedFiles.h"

namespace sources {

/// The value of a field as its characters tell it: Null, a text, a whole number, a number with decimals, or a date as
/// text "yyyyMMdd". What is no number or no date comes as the text that stands there.
QVariant ReadFixedValue(QStringView characters, const FixedField& field);

} // namespace sources
