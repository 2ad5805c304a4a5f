#pragma once

#include "sources/Oddities.h"
#include "sources/privateDatabase.h"

namespace sources {

/// Watches how the numbers are written that stand as texts in the columns of a file: "1.234" is a thousand and more
/// where "2,75" stands beside it, and 1 and a bit beside "2.5"; the marks of "2.500,75" tell themselves. A few values
/// that are no numbers ("n.d.") do not change that; a column where more than a tenth of them are codes ("A.1", "00120",
/// "10.1.2") keeps its points, which is noted where they may be numbers.
class DecimalMarks {
public:
    /// What an operator can do, for the notes.
    struct Remedies {
        QString number; ///< where a mark divides thousands and nothing says so
        QString code;   ///< where a column was taken for one of numbers and is none
    };

    /// @param told the mark that the file's description tells; 0: none
    DecimalMarks(char told, Remedies remedies)
        : m_told(told),
          m_remedies(std::move(remedies)) {}

    /// A column of texts, as the file's description tells: what looks like numbers in it are codes.
    void LeaveOut(int column) { Of(column).isLeftOut = true; }
    /// A column of numbers, as the file's description tells, which tells their mark as well: whatever else stands in
    /// it.
    void TellNumbers(int column) { Of(column).isTold = m_told != 0; }
    /// @param value as it stands in the table, UTF-8
    void Look(int column, QByteArrayView value);
    /// A value that the file itself keeps as a number.
    void LookAtNumber(int column) { ++Of(column).numbers; }
    /// Takes the marks between thousands out of the columns where it is known that they are, and notes the columns
    /// where it cannot be known. After the last row.
    void Settle(PrivateTable& table, Oddities& oddities) const;
    /// A value that is not of the file, such as one mended by hand, as it would be read in that column: without the
    /// marks between thousands where it is known that they are, and noted where it cannot be known. After the last row.
    QByteArray Read(int column, const QString& name, QByteArrayView value, Oddities& oddities) const;

private:
    struct Column {
        bool isLeftOut = false;
        bool isTold = false;    ///< of numbers with the mark that is told
        bool hasCommas = false; ///< a comma that divides decimals
        bool hasPoints = false; ///< a point that does
        qint64 numbers = 0;
        qint64 codes = 0;        ///< digits that are no number: with letters, with zeros in front, with other points
        qint64 words = 0;        ///< texts without a digit
        QByteArray misfit;       ///< the first of the codes and words
        QByteArray pointGrouped; ///< the first value with points, which may divide thousands
        QByteArray commaGrouped; ///< the same with commas
        QByteArray pointDivided; ///< the first one with points that do, before a comma: "1.234,50"
        QByteArray commaDivided; ///< the same with commas, before a point

        void Look(QByteArrayView value);
        bool IsOfNumbers() const;
        const QByteArray& Grouped(char mark) const { return mark == ',' ? commaGrouped : pointGrouped; }
        const QByteArray& Divided(char mark) const { return mark == ',' ? commaDivided : pointDivided; }
    };
    Column& Of(int column);
    char FindThousands(const Column& seen, const QString& name, Oddities& oddities) const;
    void NoteAmongOthers(const Column& seen, const QString& name, Oddities& oddities) const;
    void SettleColumn(int column, PrivateTable& table, Oddities& oddities) const;
    void NoteThousands(const QString& name, const QByteArray& sample, char mark, Oddities& oddities) const;

    std::vector<Column> m_columns;
    char m_told;
    Remedies m_remedies;
};

/// Whether a value has marks that divide thousands, or may: "1.234,50", "1.234".
bool MayDivideThousands(QByteArrayView value);
/// A value without the marks that can divide nothing else: those of "1.234,50" and "1.234.567".
QByteArray WithoutThousands(QByteArrayView value);

} // namespace sources
