#pragma once

#include <QString>
#include <QVariant>

/// A decimal number as a database writes it ("1234.50"): a whole number without a fraction comes as an integer, any
/// other as a double, and one with more digits than a double keeps stays a text, so that none is lost.
inline QVariant NumberOfText(const QString& text) {
    constexpr qsizetype DigitsOfDouble = 15;
    const qsizetype digits = text.size() - text.count(u'-') - text.count(u'.');
    bool ok = false;
    if (!text.contains(u'.')) {
        const qint64 number = text.toLongLong(&ok);
        return ok ? QVariant(number) : QVariant(text);
    }
    const double number = digits <= DigitsOfDouble ? text.toDouble(&ok) : 0;
    return ok ? QVariant(number) : QVariant(text);
}
