#pragma once

#include "sql/SettingsFile.h"

/// The application's configuration: the settings file, seen by section and key, and the plain configuration keys.
class ovConfig {
public:
    /// Characters of a value that are read: a reader of private profiles has 128, the last one ends the text.
    static constexpr qsizetype LongestValue = 127;

    /// The settings file that everything below reads.
    void SetConfigFile(const QString& path);
    const QString& ConfigFile() const { return m_file.Path(); }
    /// The settings file itself, for what is written there in a form of its own.
    SettingsFile& File() { return m_file; }

    /// Called after the connection is open and after the company changed: reads the settings file anew.
    /// Raises `ImportError` when it exists and cannot be read.
    void LoadConfig();

    /// A configuration value by key alone (section "CONFIG" of the settings file); never written into the file.
    /// Read from the file as it is now.
    QString GetConfig(const QString& key, const QString& defaultValue = {});
    /// A setting; a missing or empty one is written into the file with its default (where the file can be written), and
    /// the default is returned. At most 127 characters are returned. Raises `ImportError` when the file exists and
    /// cannot be read.
    QString GetAppConfig(const QString& section, const QString& key, const QString& defaultValue = {});
    /// Stores a setting. Raises `ImportError` when the file cannot be written.
    void SetAppConfig(const QString& section, const QString& key, const QString& value);
    /// Whether a setting has more characters than are read.
    bool IsCut(const QString& section, const QString& key) { return m_file.Read(section, key).size() > LongestValue; }
    /// `SettingsFile::BrokenLines` of the settings file.
    QStringList BrokenLines() { return m_file.BrokenLines(); }
    /// A setting that is only read: a missing one is not written into the file.
    QString PeekAppConfig(const QString& section, const QString& key, const QString& defaultValue = {});

private:
    SettingsFile m_file;
};
