#pragma once

#include "tests/sources/rawBytes.h"

#include <QByteArray>
#include <QString>
#include <QtEndian>

#include <initializer_list>

/// Workbooks of old Excel made byte by byte.
namespace xlsBytes {

inline QByteArray Words(std::initializer_list<int> numbers) {
    QByteArray bytes;
    for (const int number : numbers) {
        bytes += RawBytes(static_cast<quint16>(number));
    }
    return bytes;
}
inline QByteArray Record(int type, const QByteArray& data) {
    return Words({type, static_cast<int>(data.size())}) + data;
}

/// A container with one stream, whose sectors are the first ones.
inline QByteArray Container(const QString& name, QByteArray stream) {
    constexpr qsizetype sector = 512;
    constexpr quint32 end = 0xfffffffe;
    stream = stream.leftJustified(std::max<qsizetype>(4096, (stream.size() + sector - 1) / sector * sector), '\0');
    const auto count = static_cast<quint32>(stream.size() / sector);
    QByteArray header = QByteArray("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1", 8) + QByteArray(16, '\0') +
                        Words({0x3e, 3, 0xfffe, 9, 6, 0, 0, 0}) + RawBytes(quint32(0)) + RawBytes(quint32(1)) +
                        RawBytes(count + 1) + RawBytes(quint32(0)) + RawBytes(quint32(4096)) + RawBytes(end) +
                        RawBytes(quint32(0)) + RawBytes(end) + RawBytes(quint32(0)) + RawBytes(count);
    QByteArray next;
    for (quint32 at = 0; at < count; ++at) {
        next += RawBytes(at + 1 < count ? at + 1 : end);
    }
    next += RawBytes(quint32(0xfffffffd)) + RawBytes(end);
    const auto entry = [](const QString& called, char type, quint32 first, quint32 size) -> QByteArray {
        QByteArray bytes;
        for (const QChar character : called) {
            bytes += RawBytes(character.unicode());
        }
        bytes = bytes.leftJustified(64, '\0') + Words({static_cast<int>(2 * called.size() + 2)}) + type;
        return bytes.leftJustified(116, '\0') + RawBytes(first) + RawBytes(size) + RawBytes(quint32(0));
    };
    const QByteArray entries = entry("Root Entry", 5, end, 0) + entry(name, 2, 0, count * sector);
    return header.leftJustified(sector, '\xff') + stream + next.leftJustified(sector, '\xff') +
           entries.leftJustified(sector, '\0');
}

/// A workbook of Excel 95 with one sheet and two formats of cells: plain, and a code of four digits.
inline QByteArray Workbook(const QString& stream, quint16 page, const QByteArray& name, const QByteArray& sheet) {
    const QByteArray head =
        Record(0x809, Words({0x500, 5, 0, 0})) + (page == 0 ? QByteArray() : Record(0x42, RawBytes(page))) +
        Record(0x41e, Words({170}) + '\4' + "0000") + Record(0xe0, Words({0, 0})) + Record(0xe0, Words({0, 170}));
    const auto length = static_cast<char>(name.size());
    const auto size = head.size() + 4 + 7 + name.size() + 4;
    return Container(stream,
                     head + Record(0x85, RawBytes(static_cast<quint32>(size)) + QByteArray(2, '\0') + length + name) +
                         Record(0x0a, {}) + sheet);
}

} // namespace xlsBytes
