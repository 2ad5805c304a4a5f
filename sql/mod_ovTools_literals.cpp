#include "sql/mod_ovTools.h"
#include "sql/variantText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace mod_ovTools {

namespace {

constexpr QStringView nullLiteral = u"Null";

// --- text

void AppendQuoted(QString& statement, QStringView text) {
    const auto quotes = std::count(text.begin(), text.end(), QChar(u'\''));
    const qsizetype start = statement.size();
    statement.resize(start + text.size() + quotes + 2);
    QChar* out = statement.data() + start;
    *out++ = u'\'';
    if (quotes == 0) {
        out = std::copy(text.begin(), text.end(), out);
    } else {
        for (const QChar character : text) {
            *out++ = character;
            if (character == u'\'') {
                *out++ = character;
            }
        }
    }
    *out = u'\'';
}

// --- numbers

std::optional<qint64> RoundToInteger(double number) {
    constexpr double limit = 9223372036854775808.0; // 2^63
    const double rounded = std::nearbyint(number);  // halves to even
    if (!(rounded >= -limit && rounded < limit)) {
        return std::nullopt;
    }
    return static_cast<qint64>(rounded);
}

struct LeadingNumber {
    quint64 integer = 0;
    bool overflow = false;
    bool above = false; ///< the decimals are more than a half
    bool half = false;  ///< the decimals are a half exactly
    qsizetype end = 0;
};

LeadingNumber ScanNumber(QStringView text) {
    LeadingNumber number;
    qsizetype at = 0;
    for (; at < text.size() && IsDigit(text[at]); ++at) {
        const quint64 digit = text[at].unicode() - u'0';
        number.overflow = number.overflow || number.integer > (std::numeric_limits<quint64>::max() - digit) / 10;
        number.integer = number.integer * 10 + digit;
    }
    if (at < text.size() && text[at] == u'.') {
        const qsizetype first = ++at;
        bool rest = false;
        for (; at < text.size() && IsDigit(text[at]); ++at) {
            rest = rest || (at > first && text[at] != u'0');
        }
        const char16_t digit = at > first ? text[first].unicode() : u'0';
        number.above = digit > u'5' || (digit == u'5' && rest);
        number.half = digit == u'5' && !rest;
    }
    number.end = at;
    return number;
}

/// End of an exponent that starts at `at`; `at` when there is none.
qsizetype ExponentEnd(QStringView text, qsizetype at) {
    if (at == 0 || at >= text.size() || (text[at] != u'e' && text[at] != u'E')) {
        return at;
    }
    qsizetype digits = at + 1;
    if (digits < text.size() && (text[digits] == u'-' || text[digits] == u'+')) {
        ++digits;
    }
    qsizetype end = digits;
    while (end < text.size() && IsDigit(text[end])) {
        ++end;
    }
    return end == digits ? at : end;
}

/// The number a text begins with, rounded; nothing when it is beyond 64 bits.
std::optional<qint64> ReadInteger(QStringView text) {
    text = text.trimmed();
    const bool negative = text.startsWith(u'-');
    if (negative || text.startsWith(u'+')) {
        text = text.sliced(1);
    }
    LeadingNumber number = ScanNumber(text);
    const qsizetype end = ExponentEnd(text, number.end);
    if (end != number.end) {
        const double scaled = ToDouble(QString(u'0' + text.first(end))); // ".e5" is 0
        return RoundToInteger(negative ? -scaled : scaled);
    }
    if (number.above || (number.half && number.integer % 2 == 1)) {
        number.overflow = number.overflow || number.integer == std::numeric_limits<quint64>::max();
        ++number.integer;
    }
    const quint64 limit = quint64(std::numeric_limits<qint64>::max()) + (negative ? 1 : 0);
    if (number.overflow || number.integer > limit) {
        return std::nullopt;
    }
    return static_cast<qint64>(negative ? 0 - number.integer : number.integer);
}

std::optional<qint64> IntegerOf(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Double:
    case QMetaType::Float:
        return RoundToInteger(value.toDouble());
    case QMetaType::ULongLong:
    case QMetaType::ULong: {
        const quint64 number = value.toULongLong();
        return number <= quint64(std::numeric_limits<qint64>::max()) ? std::optional(qint64(number)) : std::nullopt;
    }
    default:
        break;
    }
    if (HoldsNumber(value)) {
        return value.toLongLong();
    }
    QString storage;
    return ReadInteger(ViewText(value, storage));
}

void AppendInteger(QString& statement, std::optional<qint64> number, qint64 lowest, qint64 highest) {
    if (number && *number >= lowest && *number <= highest) {
        statement += QString::number(*number);
    } else {
        statement += nullLiteral;
    }
}

template<class Number>
void AppendIntegerOf(QString& statement, const QVariant& value) {
    AppendInteger(statement, IntegerOf(value), std::numeric_limits<Number>::min(), std::numeric_limits<Number>::max());
}

void AppendTinyInt(QString& statement, const QVariant& value, const LocaleSeparators& separators) {
    const auto number = ReadNumber(value, separators);
    AppendInteger(statement, number ? RoundToInteger(*number) : std::nullopt, 0, std::numeric_limits<quint8>::max());
}

void AppendDouble(QString& statement, const QVariant& value, const LocaleSeparators& separators) {
    const double number = ToDouble(value, separators);
    if (!std::isfinite(number)) {
        statement += nullLiteral;
    } else {
        statement += value.typeId() == QMetaType::Float ? ToText(value) : NumberText(number);
    }
}

void AppendBit(QString& statement, const QVariant& value) {
    bool set = false;
    if (HoldsNumber(value)) {
        set = value.toDouble() != 0;
    } else {
        QString storage;
        const QStringView text = ViewText(value, storage);
        set = !text.isEmpty() && text != u"0" && text.compare(u"false", Qt::CaseInsensitive) != 0;
    }
    statement += set ? u'1' : u'0';
}

// --- dates

void AppendPadded(QString& statement, int number, int digits) {
    std::array<char16_t, 8> text{};
    for (int at = digits; at-- > 0; number /= 10) {
        text[static_cast<size_t>(at)] = static_cast<char16_t>(u'0' + number % 10);
    }
    statement += QStringView(text.data(), digits);
}

void AppendParts(QString& statement, const std::array<int, 3>& parts, int firstDigits, QStringView mark) {
    AppendPadded(statement, parts[0], firstDigits);
    statement += mark;
    AppendPadded(statement, parts[1], 2);
    statement += mark;
    AppendPadded(statement, parts[2], 2);
}

void AppendDay(QString& statement, const QDateTime& dateTime, QStringView mark) {
    const QDate date = dateTime.date();
    AppendParts(statement, {date.year(), date.month(), date.day()}, 4, mark);
}

void AppendClock(QString& statement, const QDateTime& dateTime, QStringView mark) {
    const QTime time = dateTime.time();
    AppendParts(statement, {time.hour(), time.minute(), time.second()}, 2, mark);
}

constexpr QStringView oracleOpening = u"TO_DATE('";
constexpr QStringView oracleClosing = u"','YYYYMMDDHH24MISS')";

void AppendNoDate(QString& statement, Provider provider) {
    statement += provider == Provider::VisualFoxPro ? QStringView(u"{00:00:00}") : nullLiteral;
}

void AppendDate(QString& statement, const QDateTime& date, Provider provider) {
    switch (provider) {
    case Provider::MySql:
        statement += u'\'';
        AppendDay(statement, date, u"-");
        statement += u'\'';
        break;
    case Provider::Oracle:
        statement += oracleOpening;
        AppendDay(statement, date, {});
        statement += oracleClosing;
        break;
    case Provider::VisualFoxPro:
        statement += u"{^";
        AppendDay(statement, date, u"/");
        statement += u'}';
        break;
    default:
        statement += u'\'';
        AppendDay(statement, date, {});
        statement += u'\'';
    }
}

void AppendTime(QString& statement, const QDateTime& date, Provider provider) {
    const bool braces = provider == Provider::VisualFoxPro;
    statement += braces ? u'{' : u'\'';
    AppendClock(statement, date, u":");
    statement += braces ? u'}' : u'\'';
}

void AppendDayAndClock(QString& statement, const QDateTime& date, QStringView mark) {
    AppendDay(statement, date, mark);
    statement += u' ';
    AppendClock(statement, date, u":");
}

void AppendDateTime(QString& statement, const QDateTime& date, Provider provider) {
    switch (provider) {
    case Provider::Access:
        statement += u'#';
        AppendDayAndClock(statement, date, u"/");
        statement += u'#';
        break;
    case Provider::Oracle:
        statement += oracleOpening;
        AppendDay(statement, date, {});
        AppendClock(statement, date, {});
        statement += oracleClosing;
        break;
    case Provider::VisualFoxPro:
        statement += u"{^";
        AppendDayAndClock(statement, date, u"/");
        statement += u'}';
        break;
    default:
        statement += u'\'';
        AppendDayAndClock(statement, date, {});
        statement += u'\'';
    }
}

using DateWriter = void (*)(QString&, const QDateTime&, Provider);

void AppendDateBy(DateWriter write, QString& statement, const QVariant& value, Provider provider) {
    const auto date = ReadDate(value);
    if (date) {
        write(statement, *date, provider);
    } else {
        AppendNoDate(statement, provider);
    }
}

// --- durations

/// Hours, minutes and seconds of a text; nothing when it is no duration.
std::optional<std::array<int, 3>> SplitDuration(QStringView text) {
    std::array<int, 3> parts{};
    size_t part = 0;
    bool inDigits = false;
    bool separated = false;
    for (const QChar character : text) {
        const bool digit = IsDigit(character);
        if (digit && !inDigits && separated && ++part >= parts.size()) {
            return std::nullopt;
        }
        separated = separated || !digit;
        inDigits = digit;
        if (digit) {
            constexpr int tooMany = 100000000;
            parts[part] = std::min(parts[part] * 10 + (character.unicode() - u'0'), tooMany);
        }
    }
    if (!separated) { // hhhhmmss, zeros in front left out
        const int packed = parts[0];
        parts = {packed / 10000, packed / 100 % 100, packed % 100};
    }
    return parts;
}

void AppendDuration(QString& statement, const QVariant& value) {
    QString storage;
    const QStringView text = ViewText(value, storage).trimmed();
    const bool startsWell = !text.isEmpty() && IsDigit(text.front()); // "-1:30" must not lose its sign
    const auto parts = startsWell ? SplitDuration(text) : std::nullopt;
    constexpr int maximumHours = 9999;
    statement += u'\'';
    if (parts && (*parts)[0] <= maximumHours && (*parts)[1] < 60 && (*parts)[2] < 60) {
        AppendParts(statement, *parts, 4, {});
    } else {
        statement += u"00000000";
    }
    statement += u'\'';
}

void AppendGuid(QString& statement, QStringView text, Provider provider) {
    if (provider != Provider::SqlServer) {
        statement += text;
        return;
    }
    statement += u"CONVERT(uniqueidentifier, '";
    statement += text;
    statement += u"')";
}

bool IsNull(const QVariant& value) {
    return value.isNull() ||
           (value.typeId() == QMetaType::QString && *static_cast<const QString*>(value.constData()) == nullLiteral);
}

bool IsEmptyText(const QVariant& value) {
    QString storage;
    return !HoldsNumber(value) && ViewText(value, storage).isEmpty();
}

void AppendNumber(QString& statement, const QVariant& value, DataType type, const LocaleSeparators& separators) {
    if (IsEmptyText(value)) {
        statement += u'0';
    } else if (type == DataType::Double) {
        AppendDouble(statement, value, separators);
    } else if (type == DataType::Long || type == DataType::BigAutoIncrement) {
        AppendIntegerOf<qint64>(statement, value);
    } else {
        AppendIntegerOf<qint32>(statement, value);
    }
}

} // namespace

void AppendSqlValue(QString& statement, const QVariant& value, DataType type, Provider provider,
                    const LocaleSeparators& separators) {
    if (IsNull(value)) {
        statement += nullLiteral;
        return;
    }
    QString storage;
    if (IsTextType(type)) {
        return AppendQuoted(statement, ViewText(value, storage));
    }
    switch (type) {
    case DataType::Integer:
    case DataType::Long:
    case DataType::AutoIncrement:
    case DataType::BigAutoIncrement:
    case DataType::Double:
        return AppendNumber(statement, value, type, separators);
    case DataType::Date:
        return AppendDateBy(AppendDate, statement, value, provider);
    case DataType::Time:
        return AppendDateBy(AppendTime, statement, value, provider);
    case DataType::DateTime:
        return AppendDateBy(AppendDateTime, statement, value, provider);
    case DataType::Bit:
        return AppendBit(statement, value);
    case DataType::TinyInt:
        return AppendTinyInt(statement, value, separators);
    case DataType::Duration:
        return AppendDuration(statement, value);
    case DataType::Expression:
        statement += ViewText(value, storage);
        return;
    case DataType::Guid:
        return AppendGuid(statement, ViewText(value, storage), provider);
    default:
        statement += nullLiteral;
    }
}

QString FormatSqlValue(const QVariant& value, DataType type, Provider provider, const LocaleSeparators& separators) {
    QString literal;
    AppendSqlValue(literal, value, type, provider, separators);
    return literal;
}

} // namespace mod_ovTools
