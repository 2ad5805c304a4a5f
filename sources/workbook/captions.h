#pragma once

#include "sources/workbook/Workbook.h"

namespace sources {

/// The text of a cell, as a header has it.
QString TextOf(const SheetCell& cell);
bool IsBlank(const SheetCell& cell);
bool HasDigit(const SheetCell& cell);
/// Whether a cell is of words, in which there may be a number: "Sconto 1", no date, no "02345678901".
bool IsCaption(const SheetCell& cell);
/// Whether a text says, wherever it stands, that there are codes: "Codice articolo", "Cod. cliente", "CodArt"; no code
/// that has such a beginning.
bool SaysCode(const QString& text);
/// Whether a text above codes is their caption: that, or words for what has a code, and no other: "Articolo", "ID".
bool NamesCodes(const QString& text);

} // namespace sources
