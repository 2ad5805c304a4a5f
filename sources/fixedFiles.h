#pragma once

#include "sql/engine.h"

#include <vector>

namespace sources {

/// A field of a record of fixed width.
struct FixedField {
    enum class Kind {
        Text,         ///< trailing blanks are left out
        Number,       ///< digits, with a sign in front or behind where it has one
        SignedNumber, ///< the same; the last digit may be a letter that holds the sign too, as COBOL writes it
        DayMonthYear, ///< DDMMYY: years 50 to 99 are of 1900, the others of 2000
        YearMonthDay, ///< YYYYMMDD
    };
    QString name;
    int start = 1; ///< place of its first character in the line, from 1
    int length = 1;
    Kind kind = Kind::Text;
    int decimals = 0; ///< last digits of a number that stand behind a decimal mark which is not written
};

/// A kind of record of a file of fixed width: a table.
struct FixedRecord {
    QString table;  ///< name that queries ask for
    QString file;   ///< name of the file, in any case; several kinds may stand in one file
    int length = 0; ///< characters of a line, without its end
    std::vector<FixedField> fields;
    /// Whether a line is of this kind; null: each one is. Lines that are of no kind (page headings) are left out.
    std::function<bool(QStringView line)> isOne = {};
    bool mayBeShort = false; ///< blanks at the end of a line are not written
};

/// Opens a folder of files of fixed width: each kind of record is a table of a private database, with the number of the
/// line as first column (`RowNumberColumn`); a table is read when it is first asked for. A file without ends of lines
/// is read in pieces of the length of a record. Where no code page is told, a file whose accented letters all are UTF-8
/// is read as such. Blank lines are left out; blank numbers, and dates of blanks or zeros,
/// are Null; what is no number or no date stays as its text. A line of another length than its record's (longer by more
/// than blanks, or shorter where that may not be) is noted, as is how many lines were left out; asking for a value of
/// it raises `ImportError` with file and line.
/// @param settings its `tables`, `lookupColumns` and `codePage` are used
/// Raises `ImportError` naming the folder; reading a table raises it naming a file that is not there.
std::unique_ptr<Engine> OpenFixedFiles(const QString& folder, const std::vector<FixedRecord>& records,
                                       const ConnectionSettings& settings);

} // namespace sources
