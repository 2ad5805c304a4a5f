#include "sql/mod_ovTools.h"
#include "sql/variantText.h"

#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace mod_ovTools {

namespace {

using NumberBuffer = QVarLengthArray<char, 64>;

bool IsSeparator(QChar character, const LocaleSeparators& separators) {
    return character == u'.' || character == u',' ||
           (!separators.decimal.isEmpty() && character == separators.decimal.front());
}

/// Whether a number that no double holds is too large, not too small.
bool IsLarge(const NumberBuffer& text) {
    const auto mark = std::find(text.begin(), text.end(), 'e');
    int power = 0;
    const auto read = mark == text.end() ? std::from_chars_result{text.end(), std::errc()}
                                         : std::from_chars(mark + 1, text.end(), power);
    if (read.ec != std::errc()) {
        return *(mark + 1) != '-';
    }
    const auto point = std::find(text.begin(), mark, '.');
    const auto first = std::find_if(text.begin(), mark, [](char c) { return c != '0' && c != '.'; });
    return (point - first) + power > 0;
}

/// Infinite beyond the range of a double.
double Convert(const NumberBuffer& text) {
    double number = 0;
    const auto result = std::from_chars(text.constBegin(), text.constEnd(), number);
    if (result.ec == std::errc::result_out_of_range) {
        return IsLarge(text) ? std::numeric_limits<double>::infinity() : 0; // from_chars does not say which
    }
    return number;
}

qsizetype CopyDigits(QStringView text, qsizetype at, NumberBuffer& buffer) {
    while (at < text.size() && IsDigit(text[at])) {
        buffer.append(static_cast<char>(text[at++].unicode()));
    }
    return at;
}

qsizetype CopyExponent(QStringView text, qsizetype at, NumberBuffer& buffer) {
    if (at >= text.size() || (text[at] != u'e' && text[at] != u'E')) {
        return at;
    }
    const qsizetype sizeBefore = buffer.size();
    buffer.append('e');
    qsizetype next = at + 1;
    if (next < text.size() && (text[next] == u'-' || text[next] == u'+')) {
        if (text[next] == u'-') { // from_chars knows no "+"
            buffer.append('-');
        }
        ++next;
    }
    const qsizetype end = CopyDigits(text, next, buffer);
    if (end == next) {
        buffer.resize(sizeBefore);
        return at;
    }
    return end;
}

/// Infinite beyond the range of a double.
std::optional<double> ReadNumberText(QStringView text, const LocaleSeparators& separators) {
    text = text.trimmed();
    bool negative = text.startsWith(u'-');
    if (negative || text.startsWith(u'+')) {
        text = text.sliced(1);
    } else if (text.endsWith(u'-')) {
        negative = true; // the way mainframes and spreadsheets' accounting formats write it
        text.chop(1);
    }
    NumberBuffer buffer;
    qsizetype at = CopyDigits(text, 0, buffer);
    qsizetype digits = buffer.size();
    if (at < text.size() && IsSeparator(text[at], separators)) {
        buffer.append('.');
        const qsizetype end = CopyDigits(text, at + 1, buffer);
        digits += end - at - 1;
        at = end;
    }
    if (digits == 0 || CopyExponent(text, at, buffer) != text.size()) {
        return std::nullopt;
    }
    const double number = Convert(buffer);
    return negative ? -number : number;
}

double RebuildNumber(QStringView text, const LocaleSeparators& separators) {
    text = text.trimmed();
    qsizetype last = text.size();
    while (last > 0 && !IsSeparator(text[last - 1], separators)) {
        --last;
    }
    NumberBuffer buffer;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (at + 1 == last) {
            buffer.append('.');
        } else if (IsDigit(text[at])) {
            buffer.append(static_cast<char>(text[at].unicode()));
        }
    }
    const double number = Convert(buffer);
    return text.startsWith(u'-') ? -number : number;
}

} // namespace

QString NumberText(double number) {
    constexpr double firstWithExponent = 1e17;
    constexpr double lastWithExponent = 1e-7;
    constexpr double mostWhole = 1e15; // whole numbers below it are written by their digits, which is far quicker
    const double size = std::abs(number);
    if (size < mostWhole && number == std::floor(number)) {
        return QString::number(static_cast<qint64>(number));
    }
    const bool plain = number == 0 || (size < firstWithExponent && size >= lastWithExponent);
    std::array<char, 64> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), number == 0 ? 0.0 : number,
                                      plain ? std::chars_format::fixed : std::chars_format::scientific);
    return QString::fromLatin1(text.data(), result.ptr - text.data());
}

QString ToSqlNumber(const QString& number, const LocaleSeparators& separators) {
    QString text = number;
    if (!separators.thousands.isEmpty()) {
        text.remove(separators.thousands);
    }
    if (!separators.decimal.isEmpty()) {
        text.replace(separators.decimal, QStringLiteral("."));
    }
    return text.replace(u',', u'.');
}

std::optional<double> ReadNumber(const QVariant& value, const LocaleSeparators& separators) {
    if (value.isNull()) {
        return std::nullopt;
    }
    QString storage;
    const auto number =
        HoldsNumber(value) ? std::optional(value.toDouble()) : ReadNumberText(ViewText(value, storage), separators);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

double ToDouble(const QVariant& value, const LocaleSeparators& separators) {
    if (value.isNull()) {
        return 0;
    }
    if (HoldsNumber(value)) {
        return value.toDouble();
    }
    QString storage;
    const QStringView text = ViewText(value, storage);
    const auto number = ReadNumberText(text, separators);
    return number ? *number : RebuildNumber(text, separators);
}

QVariant NzNumber(const QVariant& value, bool zero) {
    QString storage;
    const bool null = value.isNull();
    if (zero) {
        return null || (!HoldsNumber(value) && ViewText(value, storage).trimmed().isEmpty()) ? QVariant(0) : value;
    }
    return null || ToDouble(value) == 0 ? QVariant(QStringLiteral("Null")) : value;
}

QVariant NzText(const QVariant& value, bool empty) {
    if (value.isNull()) {
        return empty ? QString() : QStringLiteral("Null");
    }
    QString storage;
    if (!empty && ViewText(value, storage).isEmpty()) {
        return QStringLiteral("Null");
    }
    return value;
}

double ApplyDiscounts(double quantity, double unitPrice, double discount1, double discount2, double discount3) {
    double amount = quantity * unitPrice;
    for (const double discount : {discount1, discount2, discount3}) {
        if (discount >= 100) {
            amount = 0;
        } else if (discount > 0) {
            amount -= amount * discount / 100;
        }
    }
    return amount;
}

double Percentage(double amount, double percentage) { return amount * percentage / 100; }

} // namespace mod_ovTools
