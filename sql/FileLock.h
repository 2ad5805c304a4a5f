#pragma once

#include "sql/errors.h"

#include <memory>

/// A lock between programs that the operating system keeps on a file: it goes with the program that has it, whichever
/// way that ends. The file may stay behind then, and means nothing by itself.
class FileLock {
public:
    /// Takes the lock; null when another program, or another lock of this one, has it. A symbolic link is refused.
    /// @param path file of the lock, made when missing; nothing else may stand in it
    /// @param note who takes it and for what, for whom it is refused
    /// Raises `ImportError` when the file cannot be made or locked.
    static std::unique_ptr<FileLock> Take(const QString& path, const QString& note);
    /// Whether somebody has the lock of that file.
    static bool IsTaken(const QString& path);
    /// What the one who has it has noted; empty when nothing can be read.
    static QString NoteOf(const QString& path);

    /// Lets go; the file is deleted.
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

private:
    FileLock(QString path, qintptr handle)
        : m_path(std::move(path)),
          m_handle(handle) {}

    QString m_path;
    qintptr m_handle;
};
