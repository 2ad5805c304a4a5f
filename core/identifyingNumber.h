#pragma once

#include <QString>

#include <algorithm>

/// A VAT number or tax code, without the blanks around it, where it tells who somebody is. Empty for none, and for what
/// only fills the field: one repeated character, such as "00000000000", or a text without any digit, such as "ESTERO".
inline QString IdentifyingNumber(const QString& number) {
    const QString text = number.trimmed();
    const bool isRepeated = text.count(text.left(1), Qt::CaseInsensitive) == text.size();
    const bool hasDigit = std::any_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
    return isRepeated || !hasDigit ? QString() : text;
}
