#include "sources/workbook/BiffRecords.h"

#include "sql/errors.h"

namespace sources {

namespace {

constexpr qsizetype HeadSize = 4;
constexpr qint64 PieceSize = qint64(1) << 16;

[[noreturn]] void FailCut() {
    throw ImportError(
        QStringLiteral("il file è danneggiato o incompleto: copiarlo di nuovo dall'origine, o aprirlo con "
                       "Excel e salvarlo di nuovo"));
}

} // namespace

/// The bytes that come next; fewer at the end of the stream.
QByteArrayView BiffRecords::Ahead(qsizetype length) {
    if (m_chunk.size() - m_read < length) {
        m_chunkAt += m_read;
        m_chunk = m_file.Read(m_stream, m_chunkAt, std::max<qint64>(PieceSize, length));
        m_read = 0;
    }
    return QByteArrayView(m_chunk).sliced(m_read, std::min(length, m_chunk.size() - m_read));
}

bool BiffRecords::Next() {
    const QByteArrayView head = Ahead(HeadSize);
    if (head.size() < HeadSize) {
        return false;
    }
    m_type = static_cast<Biff>(qFromLittleEndian<quint16>(head.data()));
    const auto length = qFromLittleEndian<quint16>(head.data() + 2);
    m_read += HeadSize;
    const QByteArrayView data = Ahead(length);
    if (data.size() < length) {
        FailCut();
    }
    m_data = data.toByteArray();
    m_read += length;
    return true;
}

std::optional<Biff> BiffRecords::NextType() {
    const QByteArrayView head = Ahead(HeadSize);
    return head.size() < HeadSize ? std::nullopt
                                  : std::optional(static_cast<Biff>(qFromLittleEndian<quint16>(head.data())));
}

void BiffRecords::Require(qsizetype offset, qsizetype length) const {
    if (offset < 0 || length < 0 || offset > m_data.size() || length > m_data.size() - offset) {
        FailCut();
    }
}

void BiffText::Continue() {
    if (m_records.NextType() != Biff::Continue || !m_records.Next()) {
        FailCut();
    }
    m_at = 0;
}

template<class Number>
Number BiffText::Take() {
    if (m_at >= m_records.Data().size()) {
        Continue();
    }
    const auto number = m_records.At<Number>(m_at);
    m_at += static_cast<qsizetype>(sizeof(Number));
    return number;
}

void BiffText::Skip(qsizetype length) {
    while (length > 0) {
        if (m_at >= m_records.Data().size()) {
            Continue();
        }
        const qsizetype part = std::min(length, m_records.Data().size() - m_at);
        m_at += part;
        length -= part;
    }
}

QString BiffText::Unicode(int bytesOfLength) {
    constexpr unsigned wide = 1;
    constexpr unsigned asian = 4;
    constexpr unsigned rich = 8;
    qsizetype length = bytesOfLength == 1 ? Take<quint8>() : Take<quint16>();
    unsigned flags = Take<quint8>();
    const qsizetype runs = (flags & rich) != 0 ? Take<quint16>() : 0;
    const qsizetype pronounced = (flags & asian) != 0 ? Take<qint32>() : 0;
    QString text;
    while (length > 0) {
        if (m_at >= m_records.Data().size()) {
            Continue(); // where it goes on it is told anew how wide the characters are
            flags = Take<quint8>();
        }
        const qsizetype width = (flags & wide) != 0 ? 2 : 1;
        const qsizetype part = std::min(length, (m_records.Data().size() - m_at) / width);
        if (part == 0) {
            FailCut();
        }
        const QByteArrayView bytes = m_records.Bytes(m_at, part * width);
        for (qsizetype at = 0; at < bytes.size(); at += width) {
            text += width == 2 ? QChar(qFromLittleEndian<quint16>(bytes.data() + at))
                               : QChar(static_cast<uchar>(bytes[at]));
        }
        m_at += bytes.size();
        length -= part;
    }
    constexpr qsizetype runSize = 4;
    Skip(runs * runSize + pronounced);
    return text;
}

QString BiffText::InPage(int bytesOfLength, const CodePage& page) {
    const qsizetype length = bytesOfLength == 1 ? Take<quint8>() : Take<quint16>();
    const QString text = DecodeText(m_records.Bytes(m_at, length), page);
    m_at += length;
    return text;
}

} // namespace sources
