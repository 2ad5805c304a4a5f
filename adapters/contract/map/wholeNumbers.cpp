#include "adapters/contract/map/wholeNumbers.h"

#include "sql/errors.h"
#include "sql/mod_ovTools.h"
#include "sql/variantText.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace contract {

namespace {

/// None for a fraction, and beyond 64 bits.
std::optional<qint64> WholeOf(double number) {
    constexpr double limit = 9223372036854775808.0; // 2^63
    const bool isWhole = number == std::floor(number) && number >= -limit && number < limit;
    return isWhole ? std::optional(static_cast<qint64>(number)) : std::nullopt;
}

bool AreZeros(QStringView text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c == u'0'; });
}

std::optional<qint64> WholeOf(QStringView text) {
    text = text.trimmed();
    const bool hasSign = text.startsWith(u'-') || text.startsWith(u'+');
    const bool endsNegative = !hasSign && text.endsWith(u'-');
    const bool isNegative = endsNegative || text.startsWith(u'-');
    text = text.mid(hasSign ? 1 : 0).chopped(endsNegative ? 1 : 0);
    const auto mark = std::find_if_not(text.begin(), text.end(), IsDigit);
    const qsizetype digits = mark - text.begin();
    const bool hasMark = digits < text.size() && (*mark == u'.' || *mark == u',');
    if (text.size() <= (hasMark ? 1 : 0) || !AreZeros(text.sliced(digits + (hasMark ? 1 : 0)))) {
        return std::nullopt;
    }
    bool fits = false;
    const QString sign = isNegative ? QStringLiteral("-0") : QStringLiteral("0");
    const qint64 number = QString(sign + text.first(digits)).toLongLong(&fits);
    return fits ? std::optional(number) : std::nullopt;
}

} // namespace

std::optional<qint64> ReadWholeNumber(const QVariant& value) {
    if (value.isNull()) {
        return std::nullopt;
    }
    const int type = value.typeId();
    if (type == QMetaType::Double || type == QMetaType::Float) {
        return WholeOf(value.toDouble());
    }
    if (HoldsNumber(value)) {
        return value.toLongLong();
    }
    QString storage;
    return WholeOf(ViewText(value, storage));
}

int WholePartOf(double number) {
    if (!(std::abs(number) < -static_cast<double>(std::numeric_limits<int>::min()))) {
        throw ImportError(QStringLiteral("%1 è troppo grande").arg(mod_ovTools::NumberText(number)));
    }
    return static_cast<int>(number);
}

} // namespace contract
