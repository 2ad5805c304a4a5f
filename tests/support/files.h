#pragma once

#include <QFile>

/// Writes a file that a test needs; the program ends when it cannot.
inline void WriteFile(const QString& path, const QByteArray& bytes, QIODevice::OpenMode mode = QIODevice::Truncate) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | mode) || file.write(bytes) != bytes.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
}

/// What a file holds; empty when it cannot be read.
inline QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return !path.isEmpty() && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
