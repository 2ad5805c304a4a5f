#include "sql/dateDigits.h"
#include "sql/mod_ovTools.h"
#include "sql/ValueWriter.h"
#include "sql/variantText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace mod_ovTools {

namespace {

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

void WriteInteger(ValueWriter& out, std::optional<qint64> number, qint64 lowest, qint64 highest) {
    if (number && *number >= lowest && *number <= highest) {
        out.Whole(*number);
    } else {
        out.Null();
    }
}

template<class Number>
void WriteIntegerOf(ValueWriter& out, const QVariant& value) {
    WriteInteger(out, IntegerOf(value), std::numeric_limits<Number>::min(), std::numeric_limits<Number>::max());
}

void WriteTinyInt(ValueWriter& out, const QVariant& value, const LocaleSeparators& separators) {
    const auto number = ReadNumber(value, separators);
    WriteInteger(out, number ? RoundToInteger(*number) : std::nullopt, 0, std::numeric_limits<quint8>::max());
}

/// A number of single precision by its own digits: as a double it would have more.
void WriteDouble(ValueWriter& out, const QVariant& value, const LocaleSeparators& separators) {
    const double number = ToDouble(value, separators);
    if (!std::isfinite(number)) {
        out.Null();
    } else {
        out.Number(value.typeId() == QMetaType::Float ? ToDouble(ToText(value)) : number);
    }
}

void WriteBit(ValueWriter& out, const QVariant& value) {
    bool set = false;
    if (HoldsNumber(value)) {
        set = value.toDouble() != 0;
    } else {
        QString storage;
        const QStringView text = ViewText(value, storage);
        set = !text.isEmpty() && text != u"0" && text.compare(u"false", Qt::CaseInsensitive) != 0;
    }
    out.Whole(set ? 1 : 0);
}

// --- dates

constexpr char16_t noMark = u'\0';

/// A date as a text, or in the marks of the databases that have some for it.
void WriteMarked(ValueWriter& out, QStringView opening, const DateDigits& date, QStringView closing) {
    if (opening.isEmpty()) {
        out.Text(date.View());
    } else {
        out.Words(QString(opening + date.View() + closing));
    }
}

constexpr QStringView oracleOpening = u"TO_DATE('";
constexpr QStringView oracleClosing = u"','YYYYMMDDHH24MISS')";

void WriteDate(ValueWriter& out, const QDateTime& date, Provider provider) {
    const bool isFoxPro = provider == Provider::VisualFoxPro;
    const char16_t mark = isFoxPro ? u'/' : provider == Provider::MySql ? u'-' : noMark;
    const DateDigits day = DateDigits().Day(date.date(), mark);
    if (provider == Provider::Oracle) {
        WriteMarked(out, oracleOpening, day, oracleClosing);
    } else {
        WriteMarked(out, isFoxPro ? u"{^" : QStringView(), day, u"}");
    }
}

void WriteTime(ValueWriter& out, const QDateTime& date, Provider provider) {
    WriteMarked(out, provider == Provider::VisualFoxPro ? u"{" : QStringView(), DateDigits().Clock(date.time(), u':'),
                u"}");
}

DateDigits DayAndClock(const QDateTime& date, char16_t mark) {
    return DateDigits().Day(date.date(), mark).Mark(u' ').Clock(date.time(), u':');
}

void WriteDateTime(ValueWriter& out, const QDateTime& date, Provider provider) {
    switch (provider) {
    case Provider::Access:
        return WriteMarked(out, u"#", DayAndClock(date, u'/'), u"#");
    case Provider::Oracle:
        return WriteMarked(out, oracleOpening, DateDigits().Day(date.date(), noMark).Clock(date.time(), noMark),
                           oracleClosing);
    case Provider::VisualFoxPro:
        return WriteMarked(out, u"{^", DayAndClock(date, u'/'), u"}");
    default:
        out.Text(DayAndClock(date, noMark).View());
    }
}

using DateWriter = void (*)(ValueWriter&, const QDateTime&, Provider);

void WriteDateBy(DateWriter write, ValueWriter& out, const QVariant& value, Provider provider) {
    if (const auto date = ReadDate(value)) {
        write(out, *date, provider);
    } else if (provider == Provider::VisualFoxPro) {
        out.Words(u"{00:00:00}");
    } else {
        out.Null();
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

void WriteDuration(ValueWriter& out, const QVariant& value) {
    QString storage;
    const QStringView text = ViewText(value, storage).trimmed();
    const bool startsWell = !text.isEmpty() && IsDigit(text.front()); // "-1:30" must not lose its sign
    const auto parts = startsWell ? SplitDuration(text) : std::nullopt;
    constexpr int maximumHours = 9999;
    const bool isStored = parts && (*parts)[0] <= maximumHours && (*parts)[1] < 60 && (*parts)[2] < 60;
    const auto [hours, minutes, seconds] = isStored ? *parts : std::array<int, 3>{};
    out.Text(DateDigits().Parts(hours, 4, minutes, seconds, noMark).View());
}

void WriteGuid(ValueWriter& out, QStringView text, Provider provider) {
    if (provider != Provider::SqlServer) {
        out.Words(text);
        return;
    }
    out.Words(u"CONVERT(uniqueidentifier, ");
    out.Text(text);
    out.Words(u")");
}

bool IsNull(const QVariant& value) { return value.isNull() || IsNullText(value); }

bool IsEmptyText(const QVariant& value) {
    QString storage;
    return !HoldsNumber(value) && ViewText(value, storage).isEmpty();
}

void WriteNumber(ValueWriter& out, const QVariant& value, DataType type, const LocaleSeparators& separators) {
    if (IsEmptyText(value)) {
        out.Whole(0);
    } else if (type == DataType::Double) {
        WriteDouble(out, value, separators);
    } else if (type == DataType::Long || type == DataType::BigAutoIncrement) {
        WriteIntegerOf<qint64>(out, value);
    } else {
        WriteIntegerOf<qint32>(out, value);
    }
}

/// Writes values as literals into a text.
class LiteralWriter final : public ValueWriter {
public:
    explicit LiteralWriter(QString& text)
        : m_text(text) {}

    void Null() override { m_text += NullLiteral; }
    void Text(QStringView text) override { AppendQuoted(m_text, text); }
    void Whole(qint64 number) override { m_text += QString::number(number); }
    void Number(double number) override { m_text += NumberText(number); }
    void Words(QStringView sql) override { m_text += sql; }

private:
    QString& m_text;
};

} // namespace

void WriteSqlValue(ValueWriter& out, const QVariant& value, DataType type, Provider provider,
                   const LocaleSeparators& separators) {
    if (IsNull(value)) {
        return out.Null();
    }
    QString storage;
    if (IsTextType(type)) {
        return out.Text(ViewText(value, storage));
    }
    switch (type) {
    case DataType::Integer:
    case DataType::Long:
    case DataType::AutoIncrement:
    case DataType::BigAutoIncrement:
    case DataType::Double:
        return WriteNumber(out, value, type, separators);
    case DataType::Date:
        return WriteDateBy(WriteDate, out, value, provider);
    case DataType::Time:
        return WriteDateBy(WriteTime, out, value, provider);
    case DataType::DateTime:
        return WriteDateBy(WriteDateTime, out, value, provider);
    case DataType::Bit:
        return WriteBit(out, value);
    case DataType::TinyInt:
        return WriteTinyInt(out, value, separators);
    case DataType::Duration:
        return WriteDuration(out, value);
    case DataType::Expression:
        return out.Words(ViewText(value, storage));
    case DataType::Guid:
        return WriteGuid(out, ViewText(value, storage), provider);
    default:
        out.Null();
    }
}

void AppendSqlValue(QString& statement, const QVariant& value, DataType type, Provider provider,
                    const LocaleSeparators& separators) {
    LiteralWriter literal(statement);
    WriteSqlValue(literal, value, type, provider, separators);
}

QString FormatSqlValue(const QVariant& value, DataType type, Provider provider, const LocaleSeparators& separators) {
    QString literal;
    AppendSqlValue(literal, value, type, provider, separators);
    return literal;
}

} // namespace mod_ovTools
