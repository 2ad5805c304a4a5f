#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

/// A settings file with "[SECTION]" and "key=value" lines, read and written one value at a time. It is in code page
/// 1252, or in the Unicode form that the mark at its begin tells, and stays as it is. Section and key names are
/// compared without case; comments, order and unknown lines are kept when a value is written.
class SettingsFile {
public:
    explicit SettingsFile(QString path = {})
        : m_path(std::move(path)) {}

    const QString& Path() const { return m_path; }

    /// The value, without surrounding blanks and without one pair of surrounding quotes; empty when the file, the
    /// section or the key is missing. A change made on disk meanwhile is seen.
    /// Raises `ImportError` naming the file when it exists and cannot be read, or holds what is no text.
    QString Read(const QString& section, const QString& key);
    /// Writes the value, creating folder, file, section or key when missing. Raises `ImportError` naming the file.
    void Write(const QString& section, const QString& key, const QString& value) { Write(section, {{key, value}}); }
    /// Writes several values of a section at once: all or none, also when the program ends in between.
    void Write(const QString& section, const QList<std::pair<QString, QString>>& values);
    /// Lines that are neither a section, nor a value, nor a comment, as "riga 3: '[DATABASE'". Raises as `Read` does.
    QStringList BrokenLines();
    /// Forgets what was read.
    void Reload();

    /// How the file holds its text.
    enum class Form { Ansi, Utf8, Utf16Little, Utf16Big };

private:
    void Load();

    QString m_path;
    Form m_form = Form::Ansi;
    QStringList m_lines;
    QDateTime m_modified;
    qint64 m_size = -1;
};
