#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace sources {

/// What the number format of a cell says of the number in it: whether it is a date, and with which zeros it is shown.
class CellFormat {
public:
    enum class Kind {
        Number,
        Date,    ///< a day, may be with a time of day
        Time,    ///< a time of day alone
        Elapsed, ///< hours or minutes that may be more than a day's
        Padded,  ///< a code: whole, with leading zeros
    };

    CellFormat() = default;
    /// @param code as files keep it, in the words of English Excel: "dd/mm/yyyy", "00000", "#,##0.00"
    explicit CellFormat(const QString& code);
    /// The format of a number below 164 that files do not write out.
    static CellFormat BuiltIn(int number);

    Kind GetKind() const { return m_kind; }
    /// Whether a number is shown a hundredfold, with the sign "%".
    bool IsPercent() const { return m_isPercent; }
    /// The number as the cell shows it when it is a code with leading zeros: "00120" for 120; none for another format
    /// and for a number that is not whole or below zero.
    std::optional<QByteArray> Padded(double number) const;

private:
    Kind m_kind = Kind::Number;
    bool m_isPercent = false;
    QString m_pattern; ///< of a padded code: "0" and "#" are digits, any other character stands for itself
};

/// The day and time of a number that counts days: "yyyyMMdd", with a time of day "yyyyMMdd hh:mm:ss"; of a time alone
/// "hh:mm:ss"; empty for 0, which stands for no date. None for what is no date: a number below zero, 29 February 1900,
/// a time without its day under the format of a date, a day after 9999.
/// @param kind `Date` or `Time` @param since1904 days count from 1 January 1904, else from 1 January 1900
std::optional<QByteArray> DateOfSerial(double serial, CellFormat::Kind kind, bool since1904);

} // namespace sources
