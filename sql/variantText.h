#pragma once

#include "sql/mod_ovTools.h"

#include <QStringView>

/// Text of a value without a copy when it holds text already. The view lives as long as both arguments.
inline QStringView ViewText(const QVariant& value, QString& storage) {
    if (value.typeId() == QMetaType::QString) {
        return *static_cast<const QString*>(value.constData());
    }
    storage = mod_ovTools::ToText(value);
    return storage;
}

/// The literal of Null. The rules of `mod_ovTools::FormatSqlValue` take it for Null as a text, too.
inline constexpr QStringView NullLiteral = u"Null";

/// Whether a value is the text that stands for Null.
inline bool IsNullText(const QVariant& value) {
    return value.typeId() == QMetaType::QString && *static_cast<const QString*>(value.constData()) == NullLiteral;
}

/// A value as it is: such bytes are not taken for Null.
inline QVariant TextAsIs(const QVariant& value) {
    return IsNullText(value) ? QVariant(QByteArrayLiteral("Null")) : value;
}

/// Whether a value holds a number of its own kind, not a text that may be read as one.
inline bool HoldsNumber(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

/// 0 to 9, and no digit of other scripts.
inline bool IsDigit(QChar character) { return character >= u'0' && character <= u'9'; }
