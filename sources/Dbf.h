#pragma once

#include "sql/CodePage.h"

#include <QByteArrayView>
#include <QFile>
#include <QStringList>
#include <QVector>

#include <optional>

namespace sources {

/// A column of a dBase or FoxPro table as its header describes it.
struct DbfField {
    QString name;
    char type = 'C'; ///< the letter of the format: C N F D T L I B Y M V, others are not read
    int offset = 0;  ///< of the first byte in the record, whose byte 0 is the deleted mark
    int length = 0;  ///< bytes
    int decimals = 0;
    int nullBit = -1;      ///< bit of the null flags that marks a Null; -1: the column cannot be Null by mark
    int lengthBit = -1;    ///< bit that says the last byte holds the text's length (V); -1 for other types
    bool isHidden = false; ///< a column the system keeps for itself
};

/// Which format a table's memo texts are kept in.
enum class MemoFormat {
    DBase3, ///< .dbt, blocks of 512 bytes, text up to the end mark
    DBase4, ///< .dbt, blocks with a length
    FoxPro, ///< .fpt
};

/// A dBase III/IV or (Visual) FoxPro table, read forward one record at a time; a buffer of a few records is all it
/// holds. Every length the file tells is checked before it is used.
class DbfFile {
public:
    /// Reads the header. @param codePage page of a file that tells none, neither in a file ".cpg" beside it nor in its
    /// header; empty for cp1252. One that ends in "!" holds whatever the file tells.
    /// Raises `ImportError` naming the file when it cannot be opened, is no such table, or is cut short.
    explicit DbfFile(const QString& path, const QString& codePage = {});

    /// The file's name without its folder.
    const QString& FileName() const { return m_fileName; }
    const QString& Path() const { return m_path; }
    /// All columns in their order, also those that the system hides.
    const QVector<DbfField>& Fields() const { return m_fields; }
    /// Rows of the file, deleted ones too.
    qint64 RecordCount() const { return m_recordCount; }
    /// Rows behind those that the header announces: a program that died, or is still writing, leaves its count behind.
    qint64 Unannounced() const { return m_unannounced; }
    const CodePage& TextPage() const { return m_page; }
    /// Whether the code page is known: the header or a file beside it tells it, or it is forced.
    bool TellsPage() const { return m_tellsPage; }
    /// The database container (.dbc) that a table of Visual FoxPro says it belongs to, as it stands in the header: a
    /// path seen from the table's folder; empty for a table of its own.
    const QString& Container() const { return m_container; }
    /// Format of the memo file by the table's version.
    MemoFormat Memos() const;

    /// Steps to the next record that is not deleted; false after the last one. Raises `ImportError`.
    bool Next();
    /// Number of the record in the file, from 1.
    qint64 RecordNumber() const { return m_record; }
    /// The field's bytes in the record under way, valid until `Next`.
    QByteArrayView Bytes(const DbfField& field) const { return m_current.sliced(field.offset, field.length); }
    /// Whether the bit of the null flags is set in the record under way; false for -1.
    bool HasFlag(int bit) const;

private:
    void ReadHeader(const QString& codePage);
    void ReadFields(const QByteArray& header);
    void NumberFlags();
    void CheckSize();
    void CountUnannounced(qint64 most);
    void FindPage(const QString& codePage, unsigned char language);
    void CheckFields() const;
    void FillBuffer();
    [[noreturn]] void Fail(const QString& message) const;

    QString m_path;
    QString m_fileName;
    QFile m_file;
    CodePage m_page;
    bool m_tellsPage = false;
    QVector<DbfField> m_fields;
    QString m_container;
    int m_version = 0;
    qint64 m_recordCount = 0;
    qint64 m_unannounced = 0;
    qint64 m_headerLength = 0;
    qint64 m_recordLength = 0;
    int m_flagsField = -1; ///< index of the field of null flags; -1 for none

    QByteArray m_buffer;
    qint64 m_inBuffer = 0; ///< records of the buffer not yet stepped over
    qint64 m_record = 0;
    QByteArrayView m_current;
};

/// The code page named by the language byte of a table's header; null when the byte tells none, or one that is not
/// known.
std::optional<QString> CodePageOfLanguage(unsigned char language);

} // namespace sources
