#pragma once

#include <QByteArray>
#include <QtEndian>

/// The bytes of a number in a file, the lowest first.
template<class Number>
QByteArray RawBytes(Number number) {
    QByteArray bytes(sizeof(Number), '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}
