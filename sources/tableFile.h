#pragma once

#include <QSet>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <vector>

namespace sources {

/// Writes a table that people look at, fill in and give back: a workbook for a path that ends in ".xlsx", CSV for
/// ".csv" (separator ";", UTF-8 with its mark, lines that end in CR LF). Texts stay texts, whatever they look like: a
/// code keeps its leading zeros, and none is taken for a formula.
class TableWriter {
public:
    /// Begins the file with the names of the columns. What is there is written over only when it is empty, or a table
    /// with the same first two columns: a wrong name must cost nobody a file. Raises `ImportError` naming it,
    /// also where the path has another ending or its folder is not there.
    /// @param sheet name of the sheet of a workbook; what Excel does not take in a name is replaced
    static std::unique_ptr<TableWriter> Create(const QString& path, const QString& sheet, const QStringList& columns);
    virtual ~TableWriter() = default;
    /// Adds a row: numbers as such, everything else as its text (`mod_ovTools::ToText`), Null as nothing. Raises
    /// `ImportError` naming the file: it cannot be written, or is full (1,048,576 rows of a workbook, 32,767 characters
    /// of a cell).
    virtual void AddRow(const QVector<QVariant>& values) = 0;
    /// Begins a further sheet with the names of its columns, for what helps to fill in the first, which alone is read
    /// back. False where the file has no sheets: then nothing is to be added to it.
    virtual bool AddSheet(const QString& sheet, const QStringList& columns) = 0;
    /// Ends the file: until then it is not whole. Raises `ImportError` naming it.
    virtual void Close() = 0;
};

/// A table as it was read back.
struct TableOfFile {
    struct Row {
        qint64 number = 0;            ///< in its file, from 1: of the sheet's row, of the line in CSV
        QStringList values;           ///< as many as there are columns, as texts (`mod_ovTools::ToText`)
        QSet<qsizetype> numbers = {}; ///< places of those that a workbook keeps as numbers
    };
    QString path;
    QStringList columns;
    std::vector<Row> rows; ///< those with something in them
};

/// Reads the first sheet of a workbook (.xlsx, .xls, .ods), or a CSV file (separator ";", "," or tab, as its first line
/// has it), whose first row names the columns. Raises `ImportError` naming the file, and the row and column of what
/// cannot be read.
TableOfFile ReadTable(const QString& path);

} // namespace sources
