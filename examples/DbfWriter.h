#pragma once

#include "examples/TableWriter.h"

#include <QFile>

namespace examples {

/// How dBase tables are written.
struct DbfStyle {
    bool isVisual = true;   ///< as Visual FoxPro writes them (knows T, I, B and Y), else as FoxPro 2
    uchar language = 0x03;  ///< the header's code page byte: 0x03 Windows 1252, 0x02 DOS 850
    QString container = {}; ///< name of the database container (.dbc) that the table belongs to; empty for none
};

/// A dBase table file and, when it has memo columns, the .fpt file beside it (.dct beside a container). Of a name
/// longer than ten characters the header holds the first ten: the whole name stands in the container. The bytes depend
/// on the rows alone: the day of the last change in the header is a fixed one.
class DbfWriter final : public TableWriter {
public:
    /// @param path the .dbf file; a file that is there already is replaced. Raises `ExampleError`.
    DbfWriter(const QString& path, const QVector<Column>& columns, DbfStyle style = {});

    void Finish() override;

protected:
    void Write(const QVector<QVariant>& row, bool isDeleted) override;

private:
    struct Layout {
        int offset;
        int length;
    };
    void WriteHeader();
    QByteArray Encoded(const QVariant& value) const;
    void WriteValue(const Column& column, char* field, int length, const QVariant& value);
    void WriteText(char* field, int length, const QByteArray& text, bool isRight);
    void WriteMemo(char* field, int length, const QByteArray& text);
    qint64 AppendMemo(const QByteArray& text);
    void Append(QFile& file, const QByteArray& bytes) const;
    [[noreturn]] void Fail(const QString& message) const;

    DbfStyle m_style;
    QFile m_file;
    QFile m_memo;
    QVector<Layout> m_layout;
    int m_recordLength = 1;
    QByteArray m_buffer;
    QByteArray m_memoBuffer;
    qint64 m_rows = 0;
    qint64 m_nextBlock = 0;
    const char* m_column = ""; ///< under way, for errors
};

/// A folder of dBase tables; it is made when it does not exist.
class DbfFolder final : public Store {
public:
    explicit DbfFolder(QString folder, DbfStyle style = {});
    std::unique_ptr<TableWriter> Create(const QString& table, const QVector<Column>& columns) override;
    /// A reader of the tables indexes what it needs: nothing is written.
    void AddIndex(const QString& table, const QStringList& columns) override;
    /// Writes the container, when the style names one: the tables made so far and their columns.
    void Finish() override;

private:
    struct Table {
        QString name;
        QVector<Column> columns;
    };
    QVector<Table> m_tables;
    QString m_folder;
    DbfStyle m_style;
};

} // namespace examples
