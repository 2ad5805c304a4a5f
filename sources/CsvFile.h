#pragma once

#include "sources/TextLines.h"

#include <QVector>

#include <functional>
#include <memory>

struct csv_parser;

namespace sources {

/// A text file with a record a line and a separator between the fields. A field between double quotes may hold the
/// separator, line breaks and, doubled, quotes. Blanks are kept; lines without any character are left out.
class CsvFile {
public:
    /// One record: the bytes of its fields, and the number of the line that it begins on, from 1.
    struct Record {
        qint64 line = 0;
        QVector<QByteArray> fields;
        bool isBroken = false; ///< by a CR outside of quotes, in a file whose lines end otherwise: no record is told
    };

    /// Raises `ImportError` naming the file when it cannot be read. @param skipped lines at its start that are no
    /// records
    CsvFile(const QString& path, char separator, int skipped = 0);
    ~CsvFile();
    CsvFile(const CsvFile&) = delete;
    CsvFile& operator=(const CsvFile&) = delete;

    const QString& Path() const { return m_lines.Path(); }
    const TextLines& Lines() const { return m_lines; }
    /// Reads the next record; false at the end. Raises `ImportError` naming file and line for a quote that is not
    /// closed, and when reading fails.
    bool Next(Record& record);

private:
    void Feed(const QByteArray& bytes);
    void EndFile();

    TextLines m_lines;
    bool m_ended = false;
    qint64 m_line = 0;
    Record m_open;              ///< the record under way
    QVector<Record> m_complete; ///< records read and not handed out yet, the next one last
    std::unique_ptr<csv_parser> m_parser;
};

} // namespace sources
