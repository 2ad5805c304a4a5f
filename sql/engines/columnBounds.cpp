#include "sql/engines/columnBounds.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

struct WholeType {
    const char* word;
    double largest;
};

constexpr WholeType WholeTypes[] = {
    {"bit", 1},
    {"tinyint", 127},
    {"smallint", 32767},
    {"mediumint", 8388607},
    {"int", std::numeric_limits<qint32>::max()},
    {"integer", std::numeric_limits<qint32>::max()},
    {"bigint", static_cast<double>(std::numeric_limits<qint64>::max())},
};

/// A type as it is written: "decimal(12,2)".
struct WrittenType {
    QString word;
    std::optional<int> first;  ///< 12
    std::optional<int> second; ///< 2
};

WrittenType ReadType(const QString& type) {
    static const QRegularExpression form(QStringLiteral("^(\\w+)(?:\\((\\d+)(?:,(-?\\d+))?\\))?"));
    const QRegularExpressionMatch match = form.match(type);
    const auto number = [&match](int part) {
        return match.hasCaptured(part) ? std::optional(match.capturedView(part).toInt()) : std::nullopt;
    };
    return {match.captured(1).toLower(), number(2), number(3)};
}

bool IsOneOf(const QString& word, std::initializer_list<const char*> words) {
    return std::any_of(words.begin(), words.end(), [&word](const char* each) { return word == QLatin1String(each); });
}

/// The largest number of so many digits.
double OfDigits(int digits) { return std::pow(10.0, std::max(digits, 0)) - 1; }

/// A number with a floating point, unless it has as many digits as a double.
bool IsShortFloat(const WrittenType& type) {
    constexpr int BitsOfDouble = 53;
    const bool isFloat = type.word == u"float";
    const bool isShort = IsOneOf(type.word, {"real", "binary_float"}) ||
                         (isFloat && type.first.value_or(0) < BitsOfDouble && !type.second);
    return isShort || ((isFloat || type.word == u"double") && type.second);
}

void TakeNumber(ColumnBounds& bounds, const WrittenType& type) {
    const auto* whole = std::find_if(std::begin(WholeTypes), std::end(WholeTypes),
                                     [&type](const WholeType& each) { return type.word == QLatin1String(each.word); });
    const bool isExact = IsOneOf(type.word, {"decimal", "numeric", "number"}) && type.first;
    constexpr int decimalsOfMoney = 4;
    if (whole != std::end(WholeTypes)) {
        const bool isOfBits = type.word == u"bit" && type.first;
        bounds.largest = isOfBits ? std::pow(2.0, *type.first) - 1 : whole->largest;
        bounds.decimals = 0;
    } else if (isExact) {
        bounds.decimals = std::max(type.second.value_or(0), 0);
        bounds.largest = OfDigits(*type.first - type.second.value_or(0));
    } else if (IsOneOf(type.word, {"money", "smallmoney"})) {
        bounds.decimals = decimalsOfMoney;
    }
    bounds.isRounding = bounds.decimals >= 0 || IsShortFloat(type);
}

} // namespace

ColumnBounds BoundsOf(const QString& name, const QString& type) {
    ColumnBounds bounds;
    bounds.name = name;
    bounds.type = type;
    const WrittenType written = ReadType(type);
    if (IsOneOf(written.word, {"char", "varchar", "nchar", "nvarchar", "varchar2", "nvarchar2"})) {
        bounds.length = written.first.value_or(0);
    } else {
        TakeNumber(bounds, written);
    }
    return bounds;
}
