#pragma once

#include "sources/Oddities.h"

/// Codes of many digits that a spreadsheet has taken for numbers.
namespace sources::spoiltCodes {

/// Notes a text that is a whole number in scientific notation, "8,01234E+12": the digits that are not shown are not
/// there. @param text UTF-8
void Look(QByteArrayView text, const QString& column, qint64 row, Oddities& oddities);
/// Notes a number of a cell with more digits than a spreadsheet keeps.
void Look(double number, const QString& column, qint64 row, Oddities& oddities);

} // namespace sources::spoiltCodes
