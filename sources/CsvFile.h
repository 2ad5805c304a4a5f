#pragma once

#include "sources/TextLines.h"

#include <QVector>

#include <functional>
#include <memory>

struct csv_parser;

namespace sources {

/// A text file with a record a line and a separator between the fields. A field between double quotes may hold the
/// separator, line breaks and, doubled, quotes. Blanks are kept, but those between a closing quote and the separator;
/// lines without any character are left out. Where it has no quotes, every line is a record.
class CsvFile {
public:
    static constexpr char NoQuote = '\0';

    /// What keeps the fields of a record from being told from each other.
    enum class Damage {
        None,
        Return, ///< a CR outside of quotes, in a file whose lines end otherwise
        Quote,  ///< a quote in a field between quotes that neither ends it nor is doubled
    };
    /// One record: the bytes of its fields, and the number of the line that it begins on, from 1.
    struct Record {
        qint64 line = 0;
        QVector<QByteArray> fields; ///< of a damaged one some of them
        Damage damage = Damage::None;
    };

    /// Raises `ImportError` naming the file when it cannot be read. @param skipped lines at its start that are no
    /// records @param quote what stands around fields; `NoQuote` for nothing
    CsvFile(const QString& path, char separator, int skipped = 0, char quote = '"');
    ~CsvFile();
    CsvFile(const CsvFile&) = delete;
    CsvFile& operator=(const CsvFile&) = delete;

    const QString& Path() const { return m_lines.Path(); }
    const TextLines& Lines() const { return m_lines; }
    /// Reads the next record; false at the end. What follows a record with a stray quote begins on the line behind the
    /// one where that field was opened. Raises `ImportError` naming file and line for a quote that is not closed, and
    /// when reading fails.
    bool Next(Record& record);
    /// What is wrong, and what can be done; empty for nothing.
    static QString Tell(Damage damage);

private:
    bool NextLine(QByteArray& line);
    void Feed(const QByteArray& line);
    void Split(const QByteArray& line);
    bool Parse(QByteArrayView line);
    void Hand(QByteArrayView bytes);
    void GiveUp();
    void Join(bool isOpen, Damage damage);
    void EndFile();
    bool IsInQuotes() const;
    bool IsBehindQuote() const;
    bool EndsField(char byte) const { return byte == m_separator || byte == '\r' || byte == '\n'; }

    TextLines m_lines;
    char m_separator;
    char m_quote;
    bool m_ended = false;
    qint64 m_line = 0;
    qint64 m_opened = 0;        ///< the line where the field between quotes under way was opened
    QList<QByteArray> m_held;   ///< the lines behind it that have been read
    QList<QByteArray> m_again;  ///< lines to be read once more
    Record m_open;              ///< the record under way
    QVector<Record> m_complete; ///< records read and not handed out yet, the next one last
    std::unique_ptr<csv_parser> m_parser;
};

} // namespace sources
