#pragma once

#include "sources/workbook/CellFormat.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace sources {

/// A cell with something in it.
struct SheetCell {
    enum class Kind {
        Text,
        Number,
        Boolean,
        Error,      ///< the text is that of the error, "#N/A"
        Date,       ///< the text is the date, already written out: "20240305" or "20240305 14:30:00"
        NoValue,    ///< a formula whose result the file does not keep
        EmptyText,  ///< a formula whose result is an empty text, as programs that do not reckon write it for all
        Unreadable, ///< the text says why
    };
    int column = 0; ///< from 0
    Kind kind = Kind::Text;
    QByteArray text;                    ///< UTF-8
    double number = 0;                  ///< 1 and 0 of a boolean
    const CellFormat* format = nullptr; ///< of a number; null for a plain one
};

/// A row of a sheet with the cells that hold something, from left to right.
struct SheetRow {
    qint64 number = 0; ///< from 1
    bool isHidden = false;
    std::vector<SheetCell> cells;
};

/// The rows of a sheet, read forward.
class SheetReader {
public:
    virtual ~SheetReader() = default;
    /// Reads the next row that holds something; false after the last one. Raises `ImportError`, without the names of
    /// file and sheet.
    virtual bool Next(SheetRow& row) = 0;
    /// Ranges of merged cells, such as "A2:A5", as far as they have been met; all of them after the last row.
    virtual const QStringList& Merged() const = 0;
};

/// A workbook opened for reading.
class Workbook {
public:
    virtual ~Workbook() = default;
    /// Names of the worksheets in the order of their tabs, hidden ones too; sheets of charts and macros are none.
    virtual QStringList Sheets() const = 0;
    /// Whether whoever opens the workbook does not see a sheet. @param sheet its place, from 0
    virtual bool IsHidden(int sheet) const = 0;
    /// Begins to read a sheet. @param sheet its place, from 0. Raises `ImportError`, without the name of the file.
    virtual std::unique_ptr<SheetReader> Read(int sheet) = 0;
    /// Whether its dates count from 1904.
    virtual bool Since1904() const = 0;
    /// The code page of its texts when the file does not tell it well; empty when they are Unicode.
    virtual QString UntoldPage() const { return {}; }
};

/// Opens a workbook, told by its content whatever its name: .xlsx and .xlsm (a package of XML), .ods (another one),
/// .xls of Excel 5.0 to 2003. @param codePage of texts of Excel 5.0 and 95 whose file does not tell its page Raises
/// `ImportError` naming the file when it cannot be opened, is damaged, cut or protected by a password, or is something
/// else under such a name: a page of HTML, a text, a file of another program.
std::unique_ptr<Workbook> OpenWorkbook(const QString& path, const QString& codePage = {});

/// The sheets in the order by which they are called by their places: those that are seen, then the hidden ones.
QList<int> PlacedSheets(const Workbook& workbook);

constexpr int MostColumns = 16384; ///< of a sheet

/// The letters of a column, from 0: "A", "Z", "AA".
QString ColumnLetters(int column);
/// The column of the letters that a reference such as "AB12" begins with, from 0; -1 for none or one beyond "XFD".
int ColumnOfLetters(QStringView reference);

} // namespace sources
