#pragma once

#include "sources/Oddities.h"
#include "sources/privateDatabase.h"

namespace sources {

/// Watches how the numbers in the columns of a text file are written: "1.234" is a thousand and more where "2.500,75"
/// stands beside it, and 1 and a bit beside "2.5".
class DecimalMarks {
public:
    /// @param told the mark that the file's description tells; 0: none
    DecimalMarks(qsizetype columns, char told)
        : m_columns(static_cast<size_t>(columns)),
          m_told(told) {}

    /// A column of texts, as the file's description tells: what looks like numbers in it are codes.
    void LeaveOut(int column);
    void Look(int column, QByteArrayView value);
    /// Takes the marks between thousands out of the columns where it is known that they are, and notes the columns
    /// where it cannot be known. After the last row.
    void Settle(PrivateTable& table, Oddities& oddities) const;

private:
    struct Column {
        bool isOfNumbers = true;
        bool hasCommas = false;  ///< a comma that divides decimals
        bool hasPoints = false;  ///< a point that does
        QByteArray pointGrouped; ///< the first value with points, which may divide thousands
        QByteArray commaGrouped; ///< the same with commas
    };
    std::vector<Column> m_columns;
    char m_told;
};

} // namespace sources
