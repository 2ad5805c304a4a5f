#pragma once

#include <QByteArray>
#include <QFile>
#include <QVector>

namespace sources {

/// A file of Office 97 to 2003: a container of streams, each kept in sectors that need not stand one behind the other.
class CompoundFile {
public:
    /// Whether the bytes are those that such a file begins with.
    static bool IsStart(QByteArrayView bytes);

    /// Reads the list of the streams. Raises `ImportError`, without the name of the file.
    explicit CompoundFile(const QString& path);

    /// A stream of the list.
    class Stream {
    public:
        qint64 Size() const { return m_size; }

    private:
        friend class CompoundFile;
        qint64 m_size = 0;
        QVector<quint32> m_sectors;
        bool m_isMini = false;
    };
    bool Holds(const QString& name) const { return Find(name) != nullptr; }
    /// The stream of that name, which must be there. Raises `ImportError` when its sectors are not.
    Stream Open(const QString& name) const;
    /// Bytes of a stream; fewer than asked for only at its end. Raises `ImportError` for sectors outside the file.
    QByteArray Read(const Stream& stream, qint64 offset, qint64 length);

private:
    struct Entry {
        QString name;
        quint32 first = 0;
        qint64 size = 0;
    };
    const Entry* Find(const QString& name) const;
    void ReadHeader();
    /// Sectors that stand one behind the other.
    QByteArray ReadSectors(quint32 sector, qint64 count);
    QVector<quint32> ReadNumbers(const QVector<quint32>& sectors);
    QVector<quint32> SectorsOfTable(const QByteArray& header);
    void ReadEntries(quint32 first);
    static QVector<quint32> Chain(const QVector<quint32>& table, quint32 first);

    QFile m_file;
    qint64 m_sectorSize = 0;
    qint64 m_miniCutoff = 0;
    QVector<quint32> m_next;     ///< the sector behind each one
    QVector<quint32> m_nextMini; ///< the same of the small ones
    QVector<Entry> m_entries;
    Stream m_miniSectors; ///< that the small ones stand in
};

} // namespace sources
