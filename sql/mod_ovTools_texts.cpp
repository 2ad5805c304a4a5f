#include "sql/dateDigits.h"
#include "sql/mod_ovTools.h"
#include "sql/variantText.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace mod_ovTools {

namespace {

QString DayText(const QDate& day) {
    return DateDigits::Holds(day) ? DateDigits().Day(day, u'-').Text() : day.toString(u"yyyy-MM-dd");
}

QString ClockText(const QTime& time) { return time.isValid() ? DateDigits().Clock(time, u':').Text() : QString(); }

QString DateTimeText(const QDateTime& dateTime) {
    static const QDate zeroDate(1899, 12, 30);
    const QDate day = dateTime.date();
    const QTime time = dateTime.time();
    if (day == zeroDate) {
        return ClockText(time);
    }
    return time == QTime(0, 0) ? DayText(day) : DayText(day) + u' ' + ClockText(time);
}

/// A float has fewer digits than the double it would become: 0.1 must not turn into 0.10000000149011612.
QString FloatText(float number) {
    std::array<char, 64> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::scientific);
    double same = 0;
    std::from_chars(text.data(), result.ptr, same);
    return NumberText(same);
}

} // namespace

QString UpperChars(QString text) {
    const auto mayChange = [](QChar c) { return c >= u'a' && (c <= u'z' || c >= u'\x80'); };
    if (std::any_of(text.cbegin(), text.cend(), mayChange)) {
        for (QChar& character : text) {
            const bool isPlain = character < u'\x80';
            character = !isPlain                                 ? character.toUpper()
                        : character >= u'a' && character <= u'z' ? QChar(character.unicode() - (u'a' - u'A'))
                                                                 : character;
        }
    }
    return text;
}

QString ToText(const QVariant& value) {
    const int type = value.typeId();
    if (type == QMetaType::QString) {
        return *static_cast<const QString*>(value.constData());
    }
    if (value.isNull()) {
        return {};
    }
    switch (type) {
    case QMetaType::Double:
        return NumberText(value.toDouble());
    case QMetaType::Float:
        return FloatText(value.toFloat());
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case QMetaType::QDate:
        return DayText(value.toDate());
    case QMetaType::QTime:
        return ClockText(value.toTime());
    case QMetaType::QDateTime:
        return DateTimeText(value.toDateTime());
    default:
        return value.toString();
    }
}

} // namespace mod_ovTools
