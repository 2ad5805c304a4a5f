#pragma once

#include <QStringList>

namespace sources {

/// Changes entries of the text of a layout file. Whatever else stands in it, comments and order, stays.
class LayoutEdit {
public:
    explicit LayoutEdit(const QString& text)
        : m_lines(QString(text).remove(u'\r').split(u'\n')) {}

    /// The value of an entry; null when there is none.
    QString Value(const QString& section, const QString& key) const;
    /// Gives an entry a value; a comment behind it stays. One that is not there is added at the end of its section.
    /// Raises `ImportError` for a value that the file cannot hold.
    void Set(const QString& section, const QString& key, const QString& value);
    /// Takes an entry out; does nothing without it.
    void Remove(const QString& section, const QString& key);
    /// Adds an entry that does not count yet, as a comment that counts once its ";" is taken away. Does nothing where
    /// the entry, or a comment for it, is there. @param reason comment behind it
    void Suggest(const QString& section, const QString& key, const QString& value, const QString& reason);
    /// The text; with a line end behind the last line.
    QString Text() const;

    /// A name of the source as a value: in brackets where its points, blanks or signs would be read as something else.
    static QString Written(const QString& name);

private:
    qsizetype Find(const QString& section, const QString& key, bool amongComments) const;
    void Add(const QString& section, const QString& line);

    QStringList m_lines;
};

/// Writes the text of a layout file in UTF-8, and its folder where it is missing. Raises `ImportError`.
void WriteLayoutFile(const QString& path, const QString& text);

} // namespace sources
