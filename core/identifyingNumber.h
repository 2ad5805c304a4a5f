#pragma once

#include <QString>

/// A VAT number or tax code, without the blanks around it, where it tells who somebody is; empty for none, and for one
/// of a repeated character, such as "00000000000", which only fills the field.
inline QString IdentifyingNumber(const QString& number) {
    const QString text = number.trimmed();
    const bool isFiller = text.count(text.left(1), Qt::CaseInsensitive) == text.size();
    return isFiller ? QString() : text;
}
