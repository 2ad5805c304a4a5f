#include "sources/TextLines.h"

#include "sql/errors.h"

namespace sources {

namespace {

constexpr qint64 ChunkSize = qint64(1) << 18;
constexpr qsizetype LongestLine = qsizetype(1) << 26;

void Open(QFile& file) {
    if (!file.open(QIODevice::ReadOnly)) {
        throw ImportError(
            QStringLiteral("il file '%1' non si può leggere: %2").arg(file.fileName(), file.errorString()));
    }
}

QByteArray ReadChunk(QFile& file) {
    QByteArray bytes = file.read(ChunkSize);
    if (file.error() != QFile::NoError) {
        throw ImportError(
            QStringLiteral("il file '%1' non si può leggere: %2").arg(file.fileName(), file.errorString()));
    }
    return bytes;
}

} // namespace

TextLines::TextLines(const QString& path)
    : m_path(path),
      m_file(path) {
    Open(m_file);
    const QByteArray start = m_file.peek(3);
    if (start == "\xEF\xBB\xBF") {
        m_page = QStringLiteral("UTF-8");
        m_file.skip(start.size());
    } else if (start.startsWith("\xFF\xFE") || start.startsWith("\xFE\xFF")) {
        m_page = QStringLiteral("UTF-8");
        m_decoder.emplace(start.startsWith("\xFF") ? QStringDecoder::Utf16LE : QStringDecoder::Utf16BE);
        m_file.skip(2);
    }
    Fill();
    m_end = !m_chunk.contains('\n') && m_chunk.contains('\r') ? '\r' : '\n';
    m_hasLines = m_chunk.contains(m_end);
}

void TextLines::Fill() {
    constexpr char dosEnd = '\x1a';
    QByteArray bytes = ReadChunk(m_file);
    const bool isLast = m_file.atEnd();
    if (m_decoder) {
        bytes = QString(m_decoder->decode(bytes)).toUtf8();
    }
    m_chunk = m_chunk.mid(m_read) + bytes;
    m_read = 0;
    while (isLast && m_chunk.endsWith(dosEnd)) {
        m_chunk.chop(1);
    }
}

bool TextLines::Next(QByteArray& line) {
    qsizetype searched = m_read;
    qsizetype end = m_chunk.indexOf(m_end, searched);
    while (end < 0 && !m_file.atEnd()) {
        searched = m_chunk.size() - m_read;
        Fill();
        end = m_chunk.indexOf(m_end, searched);
        if (end < 0 && m_chunk.size() > LongestLine) {
            throw ImportError(
                QStringLiteral("file '%1': una riga è lunga più di %2 byte, non è un file di testo con una "
                               "riga per ogni record")
                    .arg(m_path, QString::number(LongestLine)));
        }
    }
    const qsizetype next = end < 0 ? m_chunk.size() : end + 1;
    line = m_chunk.mid(m_read, next - m_read);
    m_read = next;
    return !line.isEmpty();
}

QByteArray TextLines::Take(qsizetype length, bool isUtf8) {
    constexpr qsizetype mostOfCharacter = 4;
    while (m_chunk.size() - m_read < length * mostOfCharacter && !m_file.atEnd()) {
        Fill();
    }
    QByteArray bytes = m_chunk.mid(m_read, length);
    const auto isMore = [](char byte) { return (byte & 0xC0) == 0x80; }; // of the character before
    qsizetype missing = isUtf8 ? std::count_if(bytes.begin(), bytes.end(), isMore) : 0;
    for (qsizetype at = m_read + bytes.size(); isUtf8 && at < m_chunk.size(); ++at) {
        missing -= isMore(m_chunk.at(at)) ? 0 : 1;
        if (missing < 0) {
            break;
        }
        bytes += m_chunk.at(at);
    }
    m_read += bytes.size();
    return bytes;
}

bool TextLines::IsUtf8(const QString& path) {
    QFile file(path);
    Open(file);
    QStringDecoder decoder(QStringDecoder::Utf8);
    bool isAscii = true;
    for (QByteArray bytes = ReadChunk(file); !bytes.isEmpty(); bytes = ReadChunk(file)) {
        const bool isPlain = std::all_of(bytes.begin(), bytes.end(), [](char byte) { return (byte & 0x80) == 0; });
        isAscii = isAscii && isPlain;
        const QString text = isAscii ? QString() : QString(decoder.decode(bytes));
        if (decoder.hasError()) {
            return false;
        }
    }
    // A letter that is cut at the end of the file is none.
    return !isAscii && !QString(decoder.decode(QByteArrayView("\n"))).contains(QChar::ReplacementCharacter);
}

QByteArrayView WithoutEnd(QByteArrayView line) {
    while (line.endsWith('\n') || line.endsWith('\r')) {
        line.chop(1);
    }
    return line;
}

} // namespace sources
