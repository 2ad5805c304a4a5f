#pragma once

#include <QString>
#include <QStringList>

namespace sources {

/// How a text file of a folder is laid out.
struct TextSchema {
    char separator = ';';
    bool hasHeader = true; ///< the first line names the columns
    QStringList columns;   ///< own names, in order; empty: those of the header
    QString codePage;      ///< empty: not told
};

/// Reads the section of a file in the "schema.ini" of its folder, as ODBC text drivers know it: Format (CSVDelimited,
/// TabDelimited, Delimited(c)), ColNameHeader, CharacterSet (ANSI, OEM or the name of a code page) and Col1, Col2 ...
/// with the name in front. What is not told: the separator is the one of ";", tab, "," and "|" that the first line
/// holds, in that order; the first line names the columns.
/// Raises `ImportError` naming the file when a value is none, or neither names nor header are there.
TextSchema ReadTextSchema(const QString& path);

} // namespace sources
