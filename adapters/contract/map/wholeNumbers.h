#pragma once

#include <QVariant>

#include <optional>

namespace contract {

/// The whole number that a value is: as a text, digits with a sign in front or behind, and zeros alone behind a decimal
/// mark. None for any other value, and for one that 64 bits do not hold. An exponent is none: "1E3" is a code.
std::optional<qint64> ReadWholeNumber(const QVariant& value);

/// What a number has in front of its decimal mark. Raises `ImportError` where 32 bits do not hold it.
int WholePartOf(double number);

} // namespace contract
