#include "sources/DbfMemo.h"

#include "sources/findFile.h"
#include "sql/errors.h"

#include <QFileInfo>
#include <QtEndian>

#include <algorithm>

namespace sources {

namespace {

constexpr qint64 HeaderLength = 512;
constexpr qint64 BlockHeaderLength = 8;

/// The number of a block; null for text that is no number.
std::optional<qint64> BlockNumber(QByteArrayView pointer) {
    if (pointer.size() == 4) {
        return qFromLittleEndian<quint32>(pointer.data());
    }
    const QByteArray digits = pointer.toByteArray().replace('\0', ' ').trimmed();
    bool isNumber = digits.isEmpty();
    const qint64 number = digits.isEmpty() ? 0 : digits.toLongLong(&isNumber);
    return isNumber && number >= 0 ? std::optional(number) : std::nullopt;
}

} // namespace

DbfMemo::DbfMemo(const DbfFile& table)
    : m_tablePath(table.Path()),
      m_format(table.Memos()) {}

QByteArray DbfMemo::Read(QByteArrayView pointer) {
    const auto block = BlockNumber(pointer);
    if (!block) {
        throw ImportError(QStringLiteral("il riferimento al testo del memo non è un numero ('%1')")
                              .arg(QString::fromLatin1(pointer)));
    }
    if (*block == 0) {
        return {};
    }
    if (!m_file.isOpen()) {
        Open();
    }
    // Ten digits times 65,535 bytes stay far inside 64 bits.
    const qint64 offset = *block * m_blockSize;
    switch (m_format) {
    case MemoFormat::DBase3:
        return ReadToEndMark(offset);
    case MemoFormat::DBase4:
        return ReadDBase4(offset);
    case MemoFormat::FoxPro:
        break;
    }
    return ReadFoxPro(offset);
}

/// The path of the file; its format follows from it.
QString DbfMemo::FindMemoFile() {
    const QFileInfo table(m_tablePath);
    const QString stem = table.path() + u'/' + table.completeBaseName();
    const bool isFoxPro = m_format == MemoFormat::FoxPro;
    const QString usual = isFoxPro ? QStringLiteral(".fpt") : QStringLiteral(".dbt");
    const QString path = FindFile(stem + usual);
    const QString other =
        path.isEmpty() ? FindFile(stem + (isFoxPro ? QStringLiteral(".dbt") : QStringLiteral(".fpt"))) : QString();
    if (path.isEmpty() && other.isEmpty()) {
        throw ImportError(QStringLiteral("manca il file dei memo '%1%2'; copiarlo dall'origine nella stessa cartella")
                              .arg(table.completeBaseName(), usual));
    }
    if (!other.isEmpty()) {
        m_format = isFoxPro ? MemoFormat::DBase4 : MemoFormat::FoxPro;
    }
    return path.isEmpty() ? other : path;
}

void DbfMemo::Open() {
    const QString path = FindMemoFile();
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::ReadOnly)) {
        throw ImportError(QStringLiteral("il file dei memo '%1' non si può aprire (%2)")
                              .arg(QFileInfo(path).fileName(), m_file.errorString()));
    }
    QByteArray header;
    try {
        header = Bytes(0, 24);
    } catch (const ImportError&) { // each memo tells of it
        m_file.close();
        throw;
    }
    const auto* bytes = reinterpret_cast<const uchar*>(header.constData());
    m_blockSize = m_format == MemoFormat::FoxPro ? qFromBigEndian<quint16>(bytes + 6) : HeaderLength;
    if (m_format == MemoFormat::DBase4 && qFromLittleEndian<quint16>(bytes + 20) != 0) {
        m_blockSize = qFromLittleEndian<quint16>(bytes + 20);
    }
    // FoxPro writes 0 for blocks of one byte.
    m_blockSize = std::max<qint64>(m_blockSize, 1);
}

QByteArray DbfMemo::Bytes(qint64 offset, qint64 length) {
    const qint64 size = m_file.size();
    if (offset > size || length > size - offset || !m_file.seek(offset)) {
        throw ImportError(
            QStringLiteral("il testo del memo sta fuori dal file '%1' (byte %2, lunghezza %3, file di %4); "
                           "copiare di nuovo tabella e memo dall'origine, insieme")
                .arg(QFileInfo(m_file.fileName()).fileName(), QString::number(offset), QString::number(length),
                     QString::number(size)));
    }
    QByteArray bytes = m_file.read(length);
    if (bytes.size() != length) {
        throw ImportError(QStringLiteral("il file dei memo '%1' non si legge (%2)")
                              .arg(QFileInfo(m_file.fileName()).fileName(), m_file.errorString()));
    }
    return bytes;
}

namespace {

/// The editor of dBase marks the line ends it made itself with a byte of their own, which in the pages of DOS is a
/// letter too: it is one where lines end without a carriage return.
QByteArray WithoutSoftEnds(QByteArray text) {
    constexpr char softReturn = '\x8d';
    for (qsizetype at = text.indexOf('\n'); at >= 0; at = text.indexOf('\n', at + 1)) {
        if (at == 0 || (text.at(at - 1) != '\r' && text.at(at - 1) != softReturn)) {
            return text;
        }
    }
    return text.replace("\x8d\n", "\r\n");
}

} // namespace

/// A text that is the last of its file may have no mark.
QByteArray DbfMemo::ReadToEndMark(qint64 offset) {
    constexpr char endMark = 0x1a;
    QByteArray text;
    for (qint64 at = offset; at == offset || at < m_file.size();) {
        const qint64 length = std::clamp<qint64>(m_file.size() - at, 1, HeaderLength);
        const QByteArray block = Bytes(at, length);
        const qsizetype end = block.indexOf(endMark);
        text += end < 0 ? block : block.left(end);
        if (end >= 0) {
            break;
        }
        at += length;
    }
    return WithoutSoftEnds(std::move(text));
}

QByteArray DbfMemo::ReadDBase4(qint64 offset) {
    const QByteArray head = Bytes(offset, BlockHeaderLength);
    const auto* bytes = reinterpret_cast<const uchar*>(head.constData());
    const qint64 length = qFromLittleEndian<quint32>(bytes + 4);
    if (bytes[0] != 0xff || bytes[1] != 0xff || length < BlockHeaderLength) {
        throw ImportError(
            QStringLiteral("il blocco %1 del file '%2' non è un testo di memo; copiare di nuovo tabella e "
                           "memo dall'origine, insieme")
                .arg(offset / m_blockSize)
                .arg(QFileInfo(m_file.fileName()).fileName()));
    }
    return Bytes(offset + BlockHeaderLength, length - BlockHeaderLength);
}

QByteArray DbfMemo::ReadFoxPro(qint64 offset) {
    constexpr quint32 highestKind = 2; // picture, text, object
    const QByteArray head = Bytes(offset, BlockHeaderLength);
    const auto* bytes = reinterpret_cast<const uchar*>(head.constData());
    if (offset < HeaderLength || qFromBigEndian<quint32>(bytes) > highestKind) {
        throw ImportError(
            QStringLiteral("il blocco %1 del file '%2' non è un testo di memo; copiare di nuovo tabella e "
                           "memo dall'origine, insieme")
                .arg(offset / m_blockSize)
                .arg(QFileInfo(m_file.fileName()).fileName()));
    }
    return Bytes(offset + BlockHeaderLength, qFromBigEndian<quint32>(bytes + 4));
}

} // namespace sources
