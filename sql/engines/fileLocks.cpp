#include "sql/engines/fileLocks.h"

#include <QUrl>

QString FileLocks::PathOf(const QString& name) const {
    return m_base + u'-' + QString::fromLatin1(QUrl::toPercentEncoding(name)) + QStringLiteral(".lock");
}

bool FileLocks::Take(const QString& name, const QString& holder) {
    if (m_base.isEmpty()) {
        return true;
    }
    auto lock = FileLock::Take(PathOf(name), holder);
    if (lock == nullptr) {
        return false;
    }
    m_held[name] = std::move(lock);
    return true;
}
