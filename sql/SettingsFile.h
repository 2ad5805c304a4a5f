#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

/// A settings file with "[SECTION]" and "key=value" lines, in code page 1252, read and written one value at a time.
/// Section and key names are compared without case; comments, order and unknown lines are kept when a value is written.
class SettingsFile {
public:
    explicit SettingsFile(QString path = {})
        : m_path(std::move(path)) {}

    const QString& Path() const { return m_path; }

    /// The value, without surrounding blanks and without one pair of surrounding quotes; empty when the file, the
    /// section or the key is missing. A change made on disk meanwhile is seen.
    /// Raises `ImportError` naming the file when it exists and cannot be read.
    QString Read(const QString& section, const QString& key);
    /// Writes the value, creating folder, file, section or key when missing. Raises `ImportError` naming the file.
    void Write(const QString& section, const QString& key, const QString& value);
    /// Forgets what was read.
    void Reload();

private:
    void Load();

    QString m_path;
    QStringList m_lines;
    QDateTime m_modified;
    qint64 m_size = -1;
};
