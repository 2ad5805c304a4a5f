#pragma once

#include "sql/FileLock.h"

#include <map>

/// The locks of a database that keeps none itself, on files. They serve between the programs that see these files.
class FileLocks {
public:
    /// @param base path that the names of the files begin with; empty: the database belongs to this program alone
    explicit FileLocks(QString base)
        : m_base(std::move(base)) {}

    // As `Engine` has them.
    bool Take(const QString& name, const QString& holder);
    QString Holder(const QString& name) const { return FileLock::NoteOf(PathOf(name)); }
    void Release(const QString& name) noexcept { m_held.erase(name); }

private:
    QString PathOf(const QString& name) const;

    QString m_base;
    std::map<QString, std::unique_ptr<FileLock>> m_held;
};
