#pragma once

#include "sql/errors.h"

#include <QMap>
#include <QStringList>

#include <optional>
#include <vector>

namespace sources {

/// The text file that tells how the logical names of an origin are called at this customer: sections with "key=value"
/// lines. A line that begins with ";" is a comment, as is what stands behind a value after a blank and ";", outside
/// quotes and brackets. It is read as the Unicode that its mark tells, else as UTF-8, else as cp1252.
class LayoutFile {
public:
    struct Entry {
        QString key;
        QString value; ///< without surrounding blanks; may be empty
        int line = 0;  ///< from 1
    };

    /// The sections, as they are written in the file.
    static const QString Tables, Columns, Filters, Added;

    /// The file of an origin in a folder of layouts: its name, with "-" for what no file is called.
    static QString PathOf(const QString& folder, const QString& origin);
    /// Reads a file; none when it does not exist. Raises `ImportError` naming file, line and words for an unknown
    /// section, a line that is none, and an entry that comes twice.
    static std::optional<LayoutFile> Read(const QString& path);
    /// The text of a file, as it is read; empty when it does not exist. Raises `ImportError` when it cannot be read.
    static QString TextOf(const QString& path);
    /// A line, or what stands right of its sign, without the comment behind it.
    static QStringView WithoutComment(QStringView line);

    const std::vector<Entry>& Entries(const QString& section) const;
    /// The error of an entry, with file and line.
    ImportError Wrong(const QString& section, const Entry& entry, const QString& what) const;

private:
    void Take(QString line, int number);
    void Add(const Entry& entry);

    QString m_path;
    QString m_section; ///< of the line under way
    QMap<QString, std::vector<Entry>> m_entries;
};

} // namespace sources
