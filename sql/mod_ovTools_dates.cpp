#include "sql/mod_ovTools.h"
#include "sql/variantText.h"

#include <QTimeZone>

namespace mod_ovTools {

namespace {

const QDate& ZeroDate() {
    static const QDate date(1899, 12, 30);
    return date;
}

/// Walks through a text and takes numbers and marks off its front.
class Scanner {
public:
    explicit Scanner(QStringView text)
        : m_text(text) {}

    bool AtEnd() const { return m_text.isEmpty(); }
    QChar Peek() const { return m_text.isEmpty() ? QChar() : m_text.front(); }
    void Skip() { m_text = m_text.sliced(1); }

    qsizetype DigitCount() const {
        qsizetype count = 0;
        while (count < m_text.size() && IsDigit(m_text[count])) {
            ++count;
        }
        return count;
    }
    /// The number of the next `digits` characters, which are known to be digits.
    int Take(qsizetype digits) {
        int number = 0;
        for (const QChar digit : m_text.first(digits)) {
            number = number * 10 + (digit.unicode() - u'0');
        }
        m_text = m_text.sliced(digits);
        return number;
    }
    /// A number of one or two digits; -1 when there is none.
    int TakeShort() {
        const qsizetype digits = DigitCount();
        return digits == 1 || digits == 2 ? Take(digits) : -1;
    }
    bool TakeMark(QChar mark) {
        if (Peek() != mark) {
            return false;
        }
        Skip();
        return true;
    }

private:
    QStringView m_text;
};

/// The time that the rest of a text is; an invalid one when it is none.
QTime ScanTime(Scanner scanner) {
    const int hours = scanner.TakeShort();
    const QChar mark = scanner.Peek();
    if (hours < 0 || (mark != u':' && mark != u'.')) {
        return {};
    }
    scanner.Skip();
    const int minutes = scanner.TakeShort();
    int seconds = 0;
    int milliseconds = 0;
    if (scanner.TakeMark(mark)) {
        seconds = scanner.TakeShort();
        if (seconds >= 0 && (scanner.TakeMark(u'.') || scanner.TakeMark(u','))) {
            const qsizetype digits = scanner.DigitCount();
            if (digits == 0) {
                return {};
            }
            for (qsizetype digit = 0; digit < digits; ++digit) {
                const int number = scanner.Take(1);
                milliseconds = digit < 3 ? milliseconds * 10 + number : milliseconds;
            }
            for (qsizetype digit = digits; digit < 3; ++digit) {
                milliseconds *= 10;
            }
        }
    }
    return scanner.AtEnd() && minutes >= 0 && seconds >= 0 ? QTime(hours, minutes, seconds, milliseconds) : QTime();
}

QDate ScanDashed(Scanner& scanner, qsizetype digits) {
    const bool yearFirst = digits == 4;
    const int first = scanner.Take(digits);
    const QChar mark = scanner.Peek();
    if (mark != u'-' && mark != u'/' && mark != u'.') {
        return {};
    }
    scanner.Skip();
    const int month = scanner.TakeShort();
    if (!scanner.TakeMark(mark)) {
        return {};
    }
    if (yearFirst) {
        return {first, month, scanner.TakeShort()};
    }
    return scanner.DigitCount() == 4 ? QDate(scanner.Take(4), month, first) : QDate();
}

QDate ScanPacked(Scanner& scanner) {
    const int year = scanner.Take(4);
    const int month = scanner.Take(2);
    return {year, month, scanner.Take(2)};
}

/// Whether a day is one that databases hold; a year below 100 is two digits that lost their century.
bool IsHeld(const QDate& date) {
    static const QDate first(100, 1, 1);
    static const QDate last(9999, 12, 31);
    return date.isValid() && date >= first && date <= last;
}

std::optional<QDateTime> Combine(const QDate& date, const QTime& time) {
    return IsHeld(date) && time.isValid() ? std::optional(QDateTime(date, time, Qt::UTC)) : std::nullopt;
}

std::optional<QDateTime> ReadDateText(QStringView text) {
    Scanner scanner(text.trimmed());
    const qsizetype digits = scanner.DigitCount();
    QDate date;
    if (digits == 14) {
        date = ScanPacked(scanner);
        const int hours = scanner.Take(2);
        const int minutes = scanner.Take(2);
        return Combine(date, QTime(hours, minutes, scanner.Take(2)));
    }
    if (digits == 8) {
        date = ScanPacked(scanner);
    } else if (digits == 1 || digits == 2 || digits == 4) {
        const Scanner start = scanner;
        date = ScanDashed(scanner, digits);
        if (!date.isValid()) {
            Scanner time = start;
            time.Take(digits);
            return time.Peek() == u':' ? Combine(ZeroDate(), ScanTime(start)) : std::nullopt;
        }
    }
    if (scanner.AtEnd()) {
        return Combine(date, QTime(0, 0));
    }
    if (scanner.Peek() == u'T') {
        scanner.Skip();
    } else if (scanner.Peek() == u' ') {
        while (scanner.TakeMark(u' ')) {
        }
    } else {
        return std::nullopt;
    }
    return Combine(date, ScanTime(scanner));
}

} // namespace

std::optional<QDateTime> ReadDate(const QVariant& value) {
    if (value.isNull() || HoldsNumber(value)) {
        return std::nullopt;
    }
    switch (value.typeId()) {
    case QMetaType::QDate:
        return Combine(value.toDate(), QTime(0, 0));
    case QMetaType::QTime:
        return Combine(ZeroDate(), value.toTime());
    case QMetaType::QDateTime: {
        const auto& moment = *static_cast<const QDateTime*>(value.constData());
        if (moment.timeSpec() == Qt::UTC) {
            return moment.isValid() && IsHeld(moment.date()) ? std::optional(moment) : std::nullopt;
        }
        return Combine(moment.date(), moment.time());
    }
    default:
        break;
    }
    QString storage;
    return ReadDateText(ViewText(value, storage));
}

QDateTime ToDate(const QVariant& value) {
    return ReadDate(value).value_or(QDateTime(ZeroDate(), QTime(0, 0), Qt::UTC));
}

bool ToBoolean(const QVariant& value) {
    if (value.isNull()) {
        return false;
    }
    if (!HoldsNumber(value)) {
        QString storage;
        const QStringView text = ViewText(value, storage).trimmed();
        if (text.compare(u"true", Qt::CaseInsensitive) == 0) {
            return true;
        }
    }
    return ReadNumber(value).value_or(0) != 0;
}

} // namespace mod_ovTools
