#pragma once

#include <QFile>
#include <QStringDecoder>

#include <optional>

namespace sources {

/// The lines of a text file, in whatever way they end: LF, CR LF or CR alone. A mark of UTF-8 is left out, UTF-16 comes
/// as UTF-8, and the end mark of DOS (0x1A) behind the last line is no part of it.
class TextLines {
public:
    /// Raises `ImportError` naming the file when it cannot be read.
    explicit TextLines(const QString& path);

    const QString& Path() const { return m_path; }
    /// Reads the next line, with what ends it; false at the end. Raises `ImportError` naming the file when reading
    /// fails and for a line that is too long to be one.
    bool Next(QByteArray& line);
    /// Reads so many characters, of a file without lines; fewer at the end. @param isUtf8 else each is a byte
    QByteArray Take(qsizetype length, bool isUtf8);
    /// Whether lines end somewhere near the start of the file.
    bool HasLines() const { return m_hasLines; }
    /// What the file itself tells of its texts: "UTF-8" by a mark or as UTF-16; none when it tells nothing.
    const std::optional<QString>& TellsPage() const { return m_page; }
    /// Looks at a whole file that tells nothing: whether it holds letters that are no ASCII, and all of them are UTF-8.
    /// Raises as the constructor.
    static bool IsUtf8(const QString& path);

private:
    void Fill();

    QString m_path;
    QFile m_file;
    std::optional<QString> m_page;
    std::optional<QStringDecoder> m_decoder; ///< of UTF-16
    char m_end = '\n';
    bool m_hasLines = false;
    QByteArray m_chunk;
    qsizetype m_read = 0; ///< bytes of the chunk that have been handed out
};

/// A line without what ends it.
QByteArrayView WithoutEnd(QByteArrayView line);

} // namespace sources
