#include "sql/mod_ovTools.h"
#include "sql/variantText.h"

#include <array>
#include <charconv>

namespace mod_ovTools {

namespace {

QString DateTimeText(const QDateTime& dateTime) {
    static const QDate zeroDate(1899, 12, 30);
    const QString time = dateTime.time().toString(u"hh:mm:ss");
    if (dateTime.date() == zeroDate) {
        return time;
    }
    const QString date = dateTime.date().toString(u"yyyy-MM-dd");
    return dateTime.time() == QTime(0, 0) ? date : date + u' ' + time;
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
    for (QChar& character : text) {
        character = character.toUpper();
    }
    return text;
}

QString ToText(const QVariant& value) {
    if (value.isNull()) {
        return {};
    }
    switch (value.typeId()) {
    case QMetaType::Double:
        return NumberText(value.toDouble());
    case QMetaType::Float:
        return FloatText(value.toFloat());
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case QMetaType::QDate:
        return value.toDate().toString(u"yyyy-MM-dd");
    case QMetaType::QTime:
        return value.toTime().toString(u"hh:mm:ss");
    case QMetaType::QDateTime:
        return DateTimeText(value.toDateTime());
    default:
        return value.toString();
    }
}

} // namespace mod_ovTools
