#include "ui/LogTail.h"

#include "sql/CodePage.h"

#include <QFile>

namespace {
constexpr qint64 HeadSize = 64;
constexpr qint64 MostAtOnce = qint64(256) * 1024;
} // namespace

LogTail::Change LogTail::Read() {
    Change change;
    QFile file(m_path);
    const bool opened = file.open(QIODevice::ReadOnly);
    const QByteArray head = opened ? file.read(HeadSize) : QByteArray();
    const qint64 size = opened ? file.size() : 0;
    if (size < m_offset || !head.startsWith(m_head)) {
        change.restarted = true;
        m_offset = 0;
    }
    m_head = head;
    change.skipped = size - m_offset > MostAtOnce;
    if (change.skipped) {
        m_offset = size - MostAtOnce;
    }
    if (!opened || !file.seek(m_offset)) {
        return change;
    }
    QByteArray bytes = file.read(size - m_offset);
    bytes.truncate(bytes.lastIndexOf('\n') + 1);
    m_offset += bytes.size();
    if (change.skipped) {
        bytes.remove(0, bytes.indexOf('\n') + 1);
    }
    bytes.replace("\r\n", "\n");
    change.text = DecodeText(bytes, CodePage());
    return change;
}
