#include "core/rowDigest.h"

#include "sql/dateDigits.h"
#include "sql/mod_ovTools.h"
#include "sql/variantText.h"

#include <array>
#include <charconv>
#include <cmath>

// Every row that is written passes here: nothing is made a text of only to be taken in.

namespace {

/// Digits that every engine keeps of a number.
constexpr int Digits = 12;

} // namespace

void RowDigest::Add(const QVariant& value, DataType type) {
    if (!value.isNull()) {
        QString storage;
        if (type == DataType::DateTime || type == DataType::Date) {
            const auto time = mod_ovTools::ReadDate(value);
            time ? AddTime(*time) : AddText(ViewText(value, storage));
        } else if (IsTextType(type)) {
            AddText(ViewText(value, storage).trimmed());
        } else {
            const auto number = value.typeId() == QMetaType::Bool ? std::optional<double>(value.toBool())
                                                                  : mod_ovTools::ReadNumber(value);
            number ? AddNumber(*number) : AddText(ViewText(value, storage));
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
    AddText(DateDigits().Day(time.date(), u'\0').Clock(time.time(), u'\0').View());
}

void RowDigest::AddNumber(double number) {
    constexpr double mostWhole = 1e11; // whole numbers below it have no exponent either way, and are quick so
    std::array<char, 32> text{};
    const bool isWhole = std::abs(number) < mostWhole && number == std::floor(number) && !std::signbit(number);
    const auto written =
        isWhole ? std::to_chars(text.data(), text.data() + text.size(), static_cast<qint64>(number))
                : std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::general, Digits);
    for (const char* c = text.data(); c != written.ptr; ++c) {
        Add(static_cast<char16_t>(*c));
    }
}
