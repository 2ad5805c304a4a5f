#include "examples/DbfWriter.h"

#include <QDate>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace examples {

namespace {

constexpr int HeaderLength = 32;
constexpr int DescriptorLength = 32;
constexpr int VisualBackLink = 263; ///< room for the name of a database container
constexpr int LongestName = 10;     ///< of a column in the header
constexpr int MemoBlock = 64;
constexpr int MemoHeader = 512;
constexpr int BufferBytes = 1 << 20;

/// Bytes of a column in the record, and digits of the types that have one length.
int LengthOf(const Column& column, bool isVisual) {
    switch (column.type) {
    case 'D':
    case 'T':
    case 'B':
    case 'Y':
        return 8;
    case 'L':
        return 1;
    case 'I':
        return 4;
    case 'M':
        return isVisual ? 4 : 10;
    default:
        return column.length;
    }
}

int DecimalsOf(const Column& column) { return column.type == 'Y' ? 4 : column.decimals; }

template<class Number>
void Put(char* field, Number number) {
    qToLittleEndian(number, field);
}

void PutMoment(char* field, const QDateTime& moment) {
    Put(field, static_cast<qint32>(moment.isValid() ? moment.date().toJulianDay() : 0));
    Put(field + 4, static_cast<qint32>(moment.isValid() ? moment.time().msecsSinceStartOfDay() : 0));
}

/// Whether a value stands in the file as its text: also what is no value of the column's type.
bool IsAsText(const QVariant& value) { return value.isNull() || value.userType() == QMetaType::QString; }

QByteArray DigitsOf(const QVariant& value, int decimals) {
    return IsAsText(value) ? value.toString().toLatin1() : QByteArray::number(value.toDouble(), 'f', decimals);
}

QByteArray DayOf(const QVariant& value) {
    return (IsAsText(value) ? value.toString() : value.toDate().toString("yyyyMMdd")).toLatin1();
}

QByteArray MarkOf(const QVariant& value) {
    return IsAsText(value) ? value.toString().toLatin1() : QByteArray(value.toBool() ? "T" : "F");
}

/// DOS code page 850 for the letters of Italian, the others of its Latin set that names bring, and a few signs.
QByteArray To850(const QString& text) {
    static const QString letters = QStringLiteral("ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜø£Ø×ƒáíóúñÑªº");
    static const QHash<QChar, uchar> others{{u'À', 0xb7}, {u'Á', 0xb5}, {u'È', 0xd4}, {u'Ì', 0xde}, {u'Ò', 0xe3},
                                            {u'Ù', 0xeb}, {u'°', 0xf8}, {u'ß', 0xe1}, {u'§', 0xf5}};
    QByteArray bytes;
    for (const QChar letter : text) {
        const qsizetype index = letters.indexOf(letter);
        if (letter.unicode() < 0x80) {
            bytes += static_cast<char>(letter.unicode());
        } else if (index >= 0) {
            bytes += static_cast<char>(0x80 + index);
        } else {
            bytes += others.contains(letter) ? static_cast<char>(others.value(letter)) : '\0';
        }
    }
    return bytes;
}

QByteArray To1252(const QString& text) {
    QByteArray bytes;
    for (const QChar letter : text) {
        const bool isLatin = letter.unicode() < 0x80 || (letter.unicode() >= 0xa0 && letter.unicode() <= 0xff);
        bytes += letter == u'€' ? '\x80' : isLatin ? static_cast<char>(letter.unicode()) : '\0';
    }
    return bytes;
}

} // namespace

DbfWriter::DbfWriter(const QString& path, const QVector<Column>& columns, DbfStyle style)
    : TableWriter(QFileInfo(path).completeBaseName(), columns),
      m_style(std::move(style)),
      m_file(path) {
    bool hasMemo = false;
    for (const Column& column : columns) {
        const int length = LengthOf(column, m_style.isVisual);
        m_layout.append({m_recordLength, length});
        m_recordLength += length;
        hasMemo = hasMemo || column.type == 'M';
        m_column = column.name.constData();
        if (length < 1 || length > 254 || (column.name.size() > LongestName && m_style.container.isEmpty())) {
            Fail(QStringLiteral("una colonna ha da 1 a 254 byte e un nome di 10 caratteri al più"));
        }
    }
    if (!m_file.open(QIODevice::WriteOnly)) {
        Fail(m_file.errorString());
    }
    const bool isContainer = path.endsWith(u".dbc");
    m_memo.setFileName(QFileInfo(path).path() + u'/' + Name() + (isContainer ? u".dct" : u".fpt"));
    if (hasMemo && !m_memo.open(QIODevice::WriteOnly)) {
        Fail(m_memo.errorString());
    }
    m_memoBuffer = hasMemo ? QByteArray(MemoHeader, '\0') : QByteArray();
    m_nextBlock = MemoHeader / MemoBlock;
    WriteHeader();
}

void DbfWriter::WriteHeader() {
    const int backLink = m_style.isVisual ? VisualBackLink : 0;
    const auto count = static_cast<int>(Columns().size());
    QByteArray header(HeaderLength + count * DescriptorLength + 1 + backLink, '\0');
    const bool hasMemo = m_memo.isOpen();
    header[0] = m_style.isVisual ? '\x30' : hasMemo ? '\xf5' : '\x03';
    header[1] = 124; // years since 1900
    header[2] = 1;
    header[3] = 15;
    Put(header.data() + 4, static_cast<quint32>(m_rows));
    Put(header.data() + 8, static_cast<quint16>(header.size()));
    Put(header.data() + 10, static_cast<quint16>(m_recordLength));
    header[28] = m_style.isVisual && hasMemo ? '\x02' : '\0';
    header[29] = static_cast<char>(m_style.language);
    for (int index = 0; index < count; ++index) {
        const Column& column = Columns()[index];
        char* descriptor = header.data() + HeaderLength + qsizetype(index) * DescriptorLength;
        qstrncpy(descriptor, column.name.constData(), LongestName + 1);
        descriptor[11] = column.type;
        Put(descriptor + 12, static_cast<quint32>(m_layout[index].offset));
        descriptor[16] = static_cast<char>(m_layout[index].length);
        descriptor[17] = static_cast<char>(DecimalsOf(column));
    }
    const qsizetype end = HeaderLength + count * DescriptorLength;
    header[end] = '\x0d';
    const QByteArray container = m_style.container.isEmpty() ? QByteArray() : m_style.container.toLatin1() + ".dbc";
    header.replace(end + 1, container.size(), container);
    Append(m_file, header);
}

void DbfWriter::Finish() {
    m_buffer += '\x1a';
    Append(m_file, m_buffer);
    m_file.seek(0);
    WriteHeader();
    m_file.close();
    if (m_memo.isOpen()) {
        Append(m_memo, m_memoBuffer);
        QByteArray header(8, '\0');
        qToBigEndian(static_cast<quint32>(m_nextBlock), header.data());
        qToBigEndian(static_cast<quint16>(MemoBlock), header.data() + 6);
        m_memo.seek(0);
        Append(m_memo, header);
        m_memo.close();
    }
    if (m_file.error() != QFileDevice::NoError || m_memo.error() != QFileDevice::NoError) {
        Fail(m_file.errorString());
    }
}

void DbfWriter::Write(const QVector<QVariant>& row, bool isDeleted) {
    const qsizetype start = m_buffer.size();
    m_buffer.append(m_recordLength, ' ');
    m_buffer[start] = isDeleted ? '*' : ' ';
    ++m_rows;
    for (int index = 0; index < row.size(); ++index) {
        m_column = Columns()[index].name.constData();
        const Layout& at = m_layout[index];
        WriteValue(Columns()[index], m_buffer.data() + start + at.offset, at.length, row[index]);
    }
    if (m_buffer.size() >= BufferBytes) {
        Append(m_file, m_buffer);
        m_buffer.resize(0);
    }
    if (m_memoBuffer.size() >= BufferBytes) {
        Append(m_memo, m_memoBuffer);
        m_memoBuffer.resize(0);
    }
}

QByteArray DbfWriter::Encoded(const QVariant& value) const {
    const QString text = value.toString();
    const QByteArray bytes = m_style.language == 0x02 ? To850(text) : To1252(text);
    if (bytes.contains('\0')) {
        Fail(QStringLiteral("il testo '%1' ha caratteri che la codepage della tabella non ha").arg(text));
    }
    return bytes;
}

void DbfWriter::WriteText(char* field, int length, const QByteArray& text, bool isRight) {
    if (text.size() > length) {
        Fail(QStringLiteral("il valore '%1' è più lungo di %2").arg(QString::fromLatin1(text)).arg(length));
    }
    std::copy(text.cbegin(), text.cend(), field + (isRight ? length - text.size() : 0));
}

void DbfWriter::WriteValue(const Column& column, char* field, int length, const QVariant& value) {
    switch (column.type) {
    case 'N':
    case 'F':
        return WriteText(field, length, DigitsOf(value, column.decimals), true);
    case 'D':
        return WriteText(field, length, DayOf(value), false);
    case 'L':
        return WriteText(field, length, MarkOf(value), false);
    case 'T':
        return PutMoment(field, value.toDateTime());
    case 'I':
        return Put(field, static_cast<qint32>(value.toInt()));
    case 'B':
        return Put(field, value.toDouble());
    case 'Y':
        return Put(field, static_cast<qint64>(std::llround(value.toDouble() * 10000)));
    case 'M':
        return WriteMemo(field, length, Encoded(value));
    default:
        return WriteText(field, length, Encoded(value), false);
    }
}

void DbfWriter::WriteMemo(char* field, int length, const QByteArray& text) {
    const qint64 block = text.isEmpty() ? 0 : AppendMemo(text);
    if (m_style.isVisual) {
        return Put(field, static_cast<quint32>(block));
    }
    WriteText(field, length, block == 0 ? QByteArray() : QByteArray::number(block), true);
}

qint64 DbfWriter::AppendMemo(const QByteArray& text) {
    constexpr quint32 kindText = 1;
    const qsizetype start = m_memoBuffer.size();
    const qint64 block = m_nextBlock;
    const qint64 blocks = (8 + text.size() + MemoBlock - 1) / MemoBlock;
    m_memoBuffer.append(blocks * MemoBlock, '\0');
    qToBigEndian(kindText, m_memoBuffer.data() + start);
    qToBigEndian(static_cast<quint32>(text.size()), m_memoBuffer.data() + start + 4);
    std::copy(text.cbegin(), text.cend(), m_memoBuffer.data() + start + 8);
    m_nextBlock += blocks;
    return block;
}

void DbfWriter::Append(QFile& file, const QByteArray& bytes) const {
    if (file.write(bytes) != bytes.size()) {
        Fail(file.errorString());
    }
}

void DbfWriter::Fail(const QString& message) const {
    throw ExampleError(QStringLiteral("File '%1', riga %2, colonna '%3': %4")
                           .arg(m_file.fileName())
                           .arg(m_rows)
                           .arg(QLatin1String(m_column), message));
}

DbfFolder::DbfFolder(QString folder, DbfStyle style)
    : m_folder(std::move(folder)),
      m_style(std::move(style)) {
    if (!QDir().mkpath(m_folder)) {
        throw ExampleError(QStringLiteral("la cartella '%1' non si può creare").arg(m_folder));
    }
}

std::unique_ptr<TableWriter> DbfFolder::Create(const QString& table, const QVector<Column>& columns) {
    m_tables.append({table, columns});
    return std::make_unique<DbfWriter>(m_folder + u'/' + table + QStringLiteral(".dbf"), columns, m_style);
}

void DbfFolder::AddIndex(const QString&, const QStringList&) {}

void DbfFolder::Finish() {
    if (m_style.container.isEmpty()) {
        return;
    }
    DbfWriter objects(m_folder + u'/' + m_style.container + QStringLiteral(".dbc"), {{"OBJECTID", 'I'},
                                                                                     {"PARENTID", 'I'},
                                                                                     {"OBJECTTYPE", 'C', 10},
                                                                                     {"OBJECTNAME", 'C', 128},
                                                                                     {"PROPERTY", 'M'},
                                                                                     {"CODE", 'M'},
                                                                                     {"RIINFO", 'C', 6},
                                                                                     {"USER", 'M'}});
    int id = 0;
    const auto add = [&](int parent, const char* type, const QString& name) {
        objects.Set("OBJECTID", ++id).Set("PARENTID", parent).Set("OBJECTTYPE", QString(QLatin1String(type)));
        objects.Set("OBJECTNAME", name).Add();
        return id;
    };
    const int database = add(1, "Database", QStringLiteral("Database"));
    for (const Table& table : std::as_const(m_tables)) {
        const int owner = add(database, "Table", table.name);
        for (const Column& column : table.columns) {
            add(owner, "Field", QString(QLatin1String(column.name)).toLower());
        }
    }
    objects.Finish();
}

} // namespace examples
