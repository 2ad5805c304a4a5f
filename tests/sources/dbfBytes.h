#pragma once

#include <QByteArray>
#include <QFile>
#include <QtEndian>
#include <QVector>

/// Tables made byte by byte, for what no program writes on purpose.
namespace dbfBytes {

struct Field {
    QByteArray name;
    char type;
    int length;
    int decimals = 0;
    int flags = 0; ///< 1 hidden, 2 may be Null
};

struct Table {
    int version = 0x30;
    int language = 0x03;
    QVector<Field> fields;
    QByteArray rows; ///< with their deleted marks
    int count = 1;   ///< of rows, as the header announces it

    /// The bytes of the file, as a whole one has them.
    QByteArray Bytes() const {
        QByteArray header(32, '\0');
        quint16 rowLength = 1;
        for (const Field& field : fields) {
            QByteArray descriptor(32, '\0');
            descriptor.replace(0, field.name.size(), field.name);
            descriptor[11] = field.type;
            descriptor[16] = static_cast<char>(field.length);
            descriptor[17] = static_cast<char>(field.decimals);
            descriptor[18] = static_cast<char>(field.flags);
            header += descriptor;
            rowLength = static_cast<quint16>(rowLength + field.length);
        }
        header += '\x0d';
        header[0] = static_cast<char>(version);
        header[29] = static_cast<char>(language);
        qToLittleEndian(static_cast<quint32>(count), header.data() + 4);
        qToLittleEndian(static_cast<quint16>(header.size()), header.data() + 8);
        qToLittleEndian(rowLength, header.data() + 10);
        return header + rows + '\x1a';
    }
};

} // namespace dbfBytes
