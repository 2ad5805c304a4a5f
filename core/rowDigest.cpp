#include "core/rowDigest.h"

#include "sql/mod_ovTools.h"

#include <array>

namespace {

/// Digits that every engine keeps of a number.
constexpr int Digits = 12;

/// yyyyMMddhhmmss. Every row that is written has one or two: by Qt's formats they took half the time of its digest.
QString Stamp(const QDateTime& time) {
    const QDate day = time.date();
    const QTime hour = time.time();
    const std::array<std::pair<int, int>, 6> parts{
        {{day.year(), 4}, {day.month(), 2}, {day.day(), 2}, {hour.hour(), 2}, {hour.minute(), 2}, {hour.second(), 2}}};
    QString stamp;
    for (const auto& [number, width] : parts) {
        stamp += QString::number(number).rightJustified(width, u'0');
    }
    return stamp;
}

QString NormalForm(const QVariant& value, DataType type) {
    if (value.isNull()) {
        return {};
    }
    if (type == DataType::DateTime || type == DataType::Date) {
        const auto time = mod_ovTools::ReadDate(value);
        return time ? Stamp(*time) : mod_ovTools::ToText(value);
    }
    if (!IsTextType(type)) {
        const auto number =
            value.typeId() == QMetaType::Bool ? std::optional<double>(value.toBool()) : mod_ovTools::ReadNumber(value);
        return number ? QString::number(*number, 'g', Digits) : mod_ovTools::ToText(value);
    }
    return mod_ovTools::ToText(value).trimmed();
}

} // namespace

void RowDigest::Add(const QVariant& value, DataType type) {
    Add(NormalForm(value, type));
    Add(u"\x1f");
}

void RowDigest::Add(QStringView text) {
    for (const QChar c : text) {
        m_hash = (m_hash ^ c.unicode()) * 0x100000001b3;
    }
}
