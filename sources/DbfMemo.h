#pragma once

#include "sources/Dbf.h"

namespace sources {

/// The memo texts that belong to a table, in the file beside it, whose format is that of its extension where the one
/// that the table's version wants is not there. The file is opened when the first text is asked for:
/// a table whose memos are all empty needs none.
class DbfMemo {
public:
    explicit DbfMemo(const DbfFile& table);

    /// The bytes of a memo text, in the table's code page; empty for no text (blank or zero).
    /// @param pointer the field's bytes: the number of a block, in binary (4 bytes) or in digits (10 bytes).
    /// Raises `ImportError` when the file is missing or the block is not a text inside of it.
    QByteArray Read(QByteArrayView pointer);

private:
    void Open();
    QByteArray Bytes(qint64 offset, qint64 length);
    QString FindMemoFile();
    QByteArray ReadToEndMark(qint64 offset);
    QByteArray ReadDBase4(qint64 offset);
    QByteArray ReadFoxPro(qint64 offset);

    QString m_tablePath;
    MemoFormat m_format;
    QFile m_file;
    qint64 m_blockSize = 0;
};

} // namespace sources
