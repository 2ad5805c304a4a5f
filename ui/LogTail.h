#pragma once

#include <QString>

/// Follows a log file that another part of the program writes, opens and closes line by line.
class LogTail {
public:
    /// What is new since the last look.
    struct Change {
        bool restarted = false; ///< the file was emptied or went: forget what was read before
        bool skipped = false;   ///< there was too much new text: its beginning does not come
        QString text;           ///< whole lines, with "\n" at the end of each
    };

    explicit LogTail(QString path)
        : m_path(std::move(path)) {}
    /// Reads on. Of much new text only the last 256 KB come. A file that is not there is an empty one.
    Change Read();

private:
    QString m_path;
    qint64 m_offset = 0;
    QByteArray m_head; ///< first bytes of the file, by which an emptied and rewritten one is told
};
