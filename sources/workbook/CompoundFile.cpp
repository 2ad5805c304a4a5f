#include "sources/workbook/CompoundFile.h"

#include "sql/errors.h"

#include <QtEndian>

namespace sources {

namespace {

constexpr qint64 HeaderSize = 512;
constexpr qint64 MiniSectorSize = 64;
constexpr quint32 EndOfChain = 0xfffffffe;
constexpr quint32 LastSector = 0xfffffffa; ///< higher numbers are marks
constexpr qsizetype EntrySize = 128;
const QByteArray Start = QByteArrayLiteral("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1");

template<class Number>
Number At(const QByteArray& bytes, qsizetype offset) {
    return qFromLittleEndian<Number>(bytes.constData() + offset);
}

[[noreturn]] void Fail(const QString& what) {
    throw ImportError(
        QStringLiteral("il file è danneggiato o incompleto (%1): copiarlo di nuovo dall'origine, o aprirlo "
                       "con Excel e salvarlo di nuovo")
            .arg(what));
}

} // namespace

bool CompoundFile::IsStart(QByteArrayView bytes) { return bytes.startsWith(Start); }

CompoundFile::CompoundFile(const QString& path)
    : m_file(path) {
    if (!m_file.open(QIODevice::ReadOnly)) {
        throw ImportError(QStringLiteral("il file non si può aprire (%1)").arg(m_file.errorString()));
    }
    ReadHeader();
}

void CompoundFile::ReadHeader() {
    const QByteArray header = m_file.read(HeaderSize);
    if (header.size() < HeaderSize || !IsStart(header)) {
        Fail(QStringLiteral("manca l'intestazione"));
    }
    const auto shift = At<quint16>(header, 30);
    if (shift != 9 && shift != 12) {
        Fail(QStringLiteral("settori di lunghezza impossibile"));
    }
    m_sectorSize = qint64(1) << shift;
    m_miniCutoff = At<quint32>(header, 56);
    m_next = ReadNumbers(SectorsOfTable(header));
    m_nextMini = ReadNumbers(Chain(m_next, At<quint32>(header, 60)));
    ReadEntries(At<quint32>(header, 48));
}

QByteArray CompoundFile::ReadSectors(quint32 sector, qint64 count) {
    const qint64 offset = (qint64(sector) + 1) * m_sectorSize;
    // The last sector of a file may be no longer than its content.
    QByteArray bytes = offset < m_file.size() && m_file.seek(offset) ? m_file.read(m_sectorSize * count) : QByteArray();
    if (bytes.isEmpty()) {
        Fail(QStringLiteral("il settore %1 è oltre la fine").arg(sector));
    }
    return bytes;
}

QVector<quint32> CompoundFile::ReadNumbers(const QVector<quint32>& sectors) {
    QVector<quint32> numbers;
    for (const quint32 sector : sectors) {
        const QByteArray bytes = ReadSectors(sector, 1);
        for (qsizetype at = 0; at + 4 <= bytes.size(); at += 4) {
            numbers.append(At<quint32>(bytes, at));
        }
    }
    return numbers;
}

/// The first 109 stand in the header, the others in a chain of sectors of their own.
QVector<quint32> CompoundFile::SectorsOfTable(const QByteArray& header) {
    constexpr qsizetype listAt = 76;
    const qint64 most = m_file.size() / m_sectorSize + 1;
    QVector<quint32> sectors;
    const auto take = [&sectors](const QByteArray& bytes, qsizetype from, qsizetype to) {
        for (qsizetype at = from; at < to; at += 4) {
            if (At<quint32>(bytes, at) < LastSector) {
                sectors.append(At<quint32>(bytes, at));
            }
        }
    };
    take(header, listAt, HeaderSize);
    auto further = At<quint32>(header, 68);
    for (qint64 count = 0; further < LastSector; ++count) {
        const QByteArray list = ReadSectors(further, 1).leftJustified(m_sectorSize, '\0');
        take(list, 0, m_sectorSize - 4);
        further = At<quint32>(list, m_sectorSize - 4);
        if (count > most || sectors.size() > most) {
            Fail(QStringLiteral("la tabella dei settori si morde la coda"));
        }
    }
    return sectors;
}

QVector<quint32> CompoundFile::Chain(const QVector<quint32>& table, quint32 first) {
    QVector<quint32> chain;
    for (quint32 sector = first; sector != EndOfChain && sector < LastSector; sector = table.at(sector)) {
        if (sector >= static_cast<quint32>(table.size()) || chain.size() >= table.size()) {
            Fail(QStringLiteral("la catena del settore %1 è interrotta").arg(first));
        }
        chain.append(sector);
    }
    return chain;
}

void CompoundFile::ReadEntries(quint32 first) {
    constexpr qsizetype longestName = 64;
    for (const quint32 sector : Chain(m_next, first)) {
        const QByteArray bytes = ReadSectors(sector, 1);
        for (qsizetype at = 0; at + EntrySize <= bytes.size(); at += EntrySize) {
            const auto length = std::min<qsizetype>(At<quint16>(bytes, at + 64), longestName);
            const auto type = static_cast<unsigned char>(bytes.at(at + 66));
            Entry entry;
            for (qsizetype unit = 0; unit + 2 < length; unit += 2) {
                entry.name += QChar(At<quint16>(bytes, at + unit));
            }
            entry.first = At<quint32>(bytes, at + 116);
            entry.size = At<quint32>(bytes, at + 120);
            constexpr int stream = 2;
            constexpr int root = 5;
            if (type == root) {
                m_miniSectors.m_sectors = Chain(m_next, entry.first);
                m_miniSectors.m_size = m_miniSectors.m_sectors.size() * m_sectorSize;
            } else if (type == stream) {
                m_entries.append(entry);
            }
        }
    }
}

const CompoundFile::Entry* CompoundFile::Find(const QString& name) const {
    for (const Entry& entry : m_entries) {
        if (entry.name.compare(name, Qt::CaseInsensitive) == 0) {
            return &entry;
        }
    }
    return nullptr;
}

CompoundFile::Stream CompoundFile::Open(const QString& name) const {
    const Entry& entry = *Find(name);
    Stream stream;
    stream.m_isMini = entry.size < m_miniCutoff;
    stream.m_sectors = Chain(stream.m_isMini ? m_nextMini : m_next, entry.first);
    stream.m_size = entry.size;
    if (stream.m_sectors.size() * (stream.m_isMini ? MiniSectorSize : m_sectorSize) < stream.m_size) {
        Fail(QStringLiteral("'%1' finisce prima del suo ultimo byte").arg(name));
    }
    return stream;
}

QByteArray CompoundFile::Read(const Stream& stream, qint64 offset, qint64 length) {
    const qint64 size = stream.m_isMini ? MiniSectorSize : m_sectorSize;
    const qint64 end = std::min(offset + length, stream.m_size);
    QByteArray bytes;
    while (offset < end) {
        const qint64 first = offset / size;
        const quint32 sector = stream.m_sectors.at(first);
        const qint64 inSector = offset % size;
        qint64 count = 1; // of sectors that stand one behind the other
        while (count * size - inSector < end - offset && stream.m_sectors.at(first + count) == sector + count) {
            ++count;
        }
        const qint64 part = std::min(count * size - inSector, end - offset);
        const QByteArray read = stream.m_isMini ? Read(m_miniSectors, sector * MiniSectorSize + inSector, part)
                                                : ReadSectors(sector, count).mid(inSector, part);
        if (read.size() != part) {
            Fail(QStringLiteral("il settore %1 è oltre la fine").arg(sector));
        }
        bytes += read;
        offset += part;
    }
    return bytes;
}

} // namespace sources
