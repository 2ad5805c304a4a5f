#pragma once

#include <QString>
#include <QStringList>

namespace sources {

/// How a text file of a folder is laid out.
struct TextSchema {
    char separator = ';';
    bool hasHeader = true;  ///< the first line names the columns
    QStringList columns;    ///< own names, in order; empty: those of the header
    QList<bool> areTexts;   ///< whether the type of each of them is one of texts, by which codes are told from numbers
    QList<bool> areNumbers; ///< whether it is one of numbers: what is told of their decimal mark holds then
    QString codePage;       ///< empty: not told
    char decimalMark = 0;   ///< "," or "."; 0: not told
    int skipped = 0;        ///< lines in front of the header: one that tells the separator
    char quote = '"';       ///< what stands around fields; `CsvFile::NoQuote` for nothing
    QStringList unused;     ///< lines of its section that tell nothing that is read: "riga 5: 'NumberDigits=2'"
    bool isFound = true;    ///< the separator was found by looking
};

/// Reads the section of a file in the "schema.ini" of its folder, as ODBC text drivers know it: Format (CSVDelimited,
/// TabDelimited, Delimited(c)), ColNameHeader, CharacterSet (ANSI, OEM, Unicode or the name of a code page),
/// DecimalSymbol, TextDelimiter (", ' or none), DateTimeFormat (the ways in which dates are read in any case) and Col1,
/// Col2 ... with the name in front and its type (Text, Char, Memo, LongChar) behind it. What is not told: the separator
/// is the one that a first line "sep=;" tells, else the one of ";", tab, "," and "|" that the first line holds outside
/// of quotes, in that order; the first line names the columns. Raises `ImportError` naming the file, and the line of
/// "schema.ini", when a value is none or asks for what cannot be done, or neither names nor header are there.
TextSchema ReadTextSchema(const QString& path);

} // namespace sources
