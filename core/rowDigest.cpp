#include "core/rowDigest.h"

#include "sql/mod_ovTools.h"

#include <array>
#include <charconv>

// Every row that is written passes here: nothing is made a text of only to be taken in.

namespace {

/// Digits that every engine keeps of a number.
constexpr int Digits = 12;

} // namespace

void RowDigest::Add(const QVariant& value, DataType type) {
    if (!value.isNull()) {
        if (type == DataType::DateTime || type == DataType::Date) {
            const auto time = mod_ovTools::ReadDate(value);
            time ? AddTime(*time) : AddText(mod_ovTools::ToText(value));
        } else if (IsTextType(type)) {
            AddText(QStringView(mod_ovTools::ToText(value)).trimmed());
        } else {
            const auto number = value.typeId() == QMetaType::Bool ? std::optional<double>(value.toBool())
                                                                  : mod_ovTools::ReadNumber(value);
            number ? AddNumber(*number) : AddText(mod_ovTools::ToText(value));
        }
    }
    Add(u'\x1f');
}

void RowDigest::AddText(QStringView text) {
    for (const QChar c : text) {
        Add(c.unicode());
    }
}

/// yyyyMMddhhmmss.
void RowDigest::AddTime(const QDateTime& time) {
    const QDate day = time.date();
    const QTime hour = time.time();
    const std::array<std::pair<int, int>, 6> parts{{{day.year(), 1000},
                                                    {day.month(), 10},
                                                    {day.day(), 10},
                                                    {hour.hour(), 10},
                                                    {hour.minute(), 10},
                                                    {hour.second(), 10}}};
    for (const auto& [number, highest] : parts) {
        for (int place = highest; place > 0; place /= 10) {
            Add(static_cast<char16_t>(u'0' + number / place % 10));
        }
    }
}

void RowDigest::AddNumber(double number) {
    std::array<char, 32> text{};
    const auto written =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::general, Digits);
    for (const char* c = text.data(); c != written.ptr; ++c) {
        Add(static_cast<char16_t>(*c));
    }
}
