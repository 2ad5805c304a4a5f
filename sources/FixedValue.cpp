#include "sources/FixedValue.h"

#include "sql/numberText.h"

#include <QDate>

namespace sources {

namespace {

QStringView WithoutTrailingBlanks(QStringView text) {
    while (!text.isEmpty() && text.back().isSpace()) {
        text.chop(1);
    }
    return text;
}

bool IsDigits(QStringView text) {
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

/// Takes a last digit that holds the sign for a digit of its own: "{" and "A" to "I" are 0 to 9, "}" and "J" to "R" the
/// same below zero, "p" to "y" too. Returns whether the number is below zero.
bool TakeSignOfLastDigit(QString& digits) {
    static const QString above = QStringLiteral("{ABCDEFGHI");
    static const QStringList below{QStringLiteral("}JKLMNOPQR"), QStringLiteral("pqrstuvwxy")};
    const QChar last = digits.back();
    const auto replace = [&digits](qsizetype digit) { digits.back() = QChar(u'0' + static_cast<ushort>(digit)); };
    if (above.contains(last)) {
        replace(above.indexOf(last));
        return false;
    }
    for (const QString& letters : below) {
        if (letters.contains(last)) {
            replace(letters.indexOf(last));
            return true;
        }
    }
    return false;
}

QVariant ReadNumber(QStringView text, const FixedField& field) {
    QString digits = text.trimmed().toString();
    bool isNegative = false;
    if (digits.startsWith(u'-') || digits.startsWith(u'+')) {
        isNegative = digits.startsWith(u'-');
        digits = digits.mid(1).trimmed();
    } else if (digits.endsWith(u'-') || digits.endsWith(u'+')) {
        isNegative = digits.endsWith(u'-');
        digits = digits.chopped(1).trimmed();
    } else if (field.kind == FixedField::Kind::SignedNumber) {
        isNegative = TakeSignOfLastDigit(digits);
    }
    digits.replace(u',', u'.');
    const bool isWritten = digits.count(u'.') == 1; // the decimal mark
    if (!IsDigits(isWritten ? QString(digits).remove(u'.') : digits)) {
        return text.trimmed().toString();
    }
    if (!isWritten && field.decimals > 0) {
        digits = digits.rightJustified(field.decimals + 1, u'0');
        digits.insert(digits.size() - field.decimals, u'.');
    }
    qsizetype zeros = 0; // in front: no digits of the number
    while (zeros + 1 < digits.size() && digits.at(zeros) == u'0' && digits.at(zeros + 1) != u'.') {
        ++zeros;
    }
    digits.remove(0, zeros);
    return NumberOfText(isNegative ? u'-' + digits : digits);
}

QVariant ReadDate(QStringView text, const FixedField& field) {
    constexpr int firstYear = 1950; // of two digits
    const QString digits = text.trimmed().toString();
    if (digits.isEmpty() || digits.count(u'0') == digits.size()) {
        return {};
    }
    QDate date;
    if (IsDigits(digits) && field.kind == FixedField::Kind::YearMonthDay && digits.size() == 8) {
        date = QDate(digits.left(4).toInt(), digits.mid(4, 2).toInt(), digits.mid(6).toInt());
    } else if (IsDigits(digits) && field.kind == FixedField::Kind::DayMonthYear && digits.size() == 6) {
        const int year = digits.mid(4).toInt() + 1900;
        date = QDate(year < firstYear ? year + 100 : year, digits.mid(2, 2).toInt(), digits.left(2).toInt());
    }
    return date.isValid() ? date.toString(QStringLiteral("yyyyMMdd")) : digits;
}

} // namespace

QVariant ReadFixedValue(QStringView characters, const FixedField& field) {
    const QStringView text = WithoutTrailingBlanks(characters);
    if (text.isEmpty()) {
        return {};
    }
    switch (field.kind) {
    case FixedField::Kind::Text:
        return text.toString();
    case FixedField::Kind::Number:
    case FixedField::Kind::SignedNumber:
        return ReadNumber(text, field);
    default:
        return ReadDate(text, field);
    }
}

} // namespace sources
