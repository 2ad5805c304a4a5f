#pragma once

#include "sql/engine.h"

#include <vector>

namespace sources {

/// Of a sheet whose rows tell their level: the number of the row that one belongs to.
inline const QString ParentRowColumn = QStringLiteral("_PADRE");

/// How a sheet of a workbook is read as a table.
struct SheetTable {
    QString table; ///< name that queries ask for
    /// Name of the sheet, or "#" and its place among the worksheets, from 1, where hidden ones come behind those that
    /// are seen; of several with "/" between, which no name can have, the first that is there.
    QString sheet = "#1";
    int headerRow = 1; ///< row with the names of the columns; 0: they are called A, B, ...
    int firstRow = 0;  ///< first row that is read; 0: the one behind the header
    int columns = 0;   ///< columns that the table has at least, whatever is in them
    /// The rows end before the first in which all of these columns are blank; what stands behind is noted, and not
    /// read. Empty, or where the sheet has none of them: they end with the sheet.
    QStringList end = {};
    /// What the file calls these columns; empty: the same. A sheet without the names of the module is one of somebody's
    /// own: rows between header and first row are data there, unless they look like captions.
    QStringList endInFile = {};
    /// Column with the level of a row, from 0: a row belongs to the last one above it of the level before, which the
    /// column `ParentRowColumn` tells. It is Null for level 0, for what is no level, and for a row that skips a level;
    /// these are noted. Empty: rows have no levels.
    QString level = {};
};

/// Opens a workbook of Excel (`OpenWorkbook`): each sheet is a table of a private database under its own name and under
/// "#1", "#2", ... (which are not listed), with its first row as header; `sheets` says which are read otherwise. A
/// sheet is read when it is first asked for; first column is the number of the row (`RowNumberColumn`), and a row
/// without any value is none. A sheet that is read by its place while the workbook has others is noted.
///
/// A number is a number; shown with leading zeros ("00000") it is the text that is shown. Texts keep their blanks. A
/// date comes as one, a boolean as a bit, a formula as the value that it had when the file was saved. A column of whole
/// numbers and texts is one of texts. Hidden rows are read as any other, merged cells have their value in the first one
/// alone: both are noted. A cell with an error, a formula without a value or a date that is none cannot be read: that
/// is noted, and asking for its value raises `ImportError` with file, sheet, row and column.
/// @param path its name in any case
/// @param settings its `tables`, `lookupColumns` and `codePage` (for Excel 5.0 and 95) are used
/// Raises `ImportError` naming the file; reading a table raises it with the sheet: one that is not there, without its
/// header, damaged.
std::unique_ptr<Engine> OpenWorkbookFile(const QString& path, const ConnectionSettings& settings,
                                         const std::vector<SheetTable>& sheets = {});

} // namespace sources
