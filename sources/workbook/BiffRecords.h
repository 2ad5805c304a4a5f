#pragma once

#include "sources/workbook/CompoundFile.h"

#include "sql/CodePage.h"

#include <QtEndian>

namespace sources {

/// The kinds of records that are read of a workbook of Excel 5.0 to 2003.
enum class Biff : quint16 {
    Formula = 0x0006,
    Eof = 0x000a,
    Since1904 = 0x0022,
    FilePass = 0x002f,
    Continue = 0x003c,
    CodePage = 0x0042,
    BoundSheet = 0x0085,
    MulRk = 0x00bd,
    RString = 0x00d6,
    Xf = 0x00e0,
    MergeCells = 0x00e5,
    Sst = 0x00fc,
    LabelSst = 0x00fd,
    Number = 0x0203,
    Label = 0x0204,
    BoolErr = 0x0205,
    String = 0x0207,
    Row = 0x0208,
    Array = 0x0221,
    Table = 0x0236,
    Rk = 0x027e,
    Format = 0x041e,
    SharedFormula = 0x04bc,
    Bof = 0x0809,
};

/// The records of a stream, one behind the other from a place of it on.
class BiffRecords {
public:
    BiffRecords(CompoundFile& file, const CompoundFile::Stream& stream, qint64 offset = 0)
        : m_file(file),
          m_stream(stream),
          m_chunkAt(offset) {}

    /// Steps to the next record; false at the end of the stream. Raises `ImportError` for one that is cut.
    bool Next();
    Biff Type() const { return m_type; }
    const QByteArray& Data() const { return m_data; }
    /// The type of the record behind this one; none at the end.
    std::optional<Biff> NextType();

    /// A number of the record under way. Raises `ImportError` when it is behind its end.
    template<class Number>
    Number At(qsizetype offset) const {
        Require(offset, sizeof(Number));
        return qFromLittleEndian<Number>(m_data.constData() + offset);
    }
    QByteArrayView Bytes(qsizetype offset, qsizetype length) const {
        Require(offset, length);
        return QByteArrayView(m_data).sliced(offset, length);
    }

private:
    QByteArrayView Ahead(qsizetype length);
    void Require(qsizetype offset, qsizetype length) const;

    CompoundFile& m_file;
    const CompoundFile::Stream& m_stream;
    qint64 m_chunkAt;     ///< of the chunk's first byte, in the stream
    qsizetype m_read = 0; ///< bytes of the chunk that have been stepped over
    QByteArray m_chunk;
    Biff m_type = Biff::Eof;
    QByteArray m_data;
};

/// Reads texts of a record, which may go on in the records that continue it.
class BiffText {
public:
    /// @param offset of the text in the record under way @param page of texts that are not Unicode
    BiffText(BiffRecords& records, qsizetype offset)
        : m_records(records),
          m_at(offset) {}

    /// A text of Excel 97 to 2003, with a length of one or two bytes in front.
    QString Unicode(int bytesOfLength);
    /// A text of Excel 5.0 and 95.
    QString InPage(int bytesOfLength, const CodePage& page);

private:
    template<class Number>
    Number Take();
    void Skip(qsizetype length);
    void Continue();

    BiffRecords& m_records;
    qsizetype m_at;
};

} // namespace sources
