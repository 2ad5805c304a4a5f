#pragma once

#include "sources/fileSource.h"
#include "sources/fixedFiles.h"
#include "sql/errors.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <optional>

/// Foreign files out of one run of bytes, read as a source: whatever the bytes are, they are read or refused with an
/// error.
namespace foreignFiles {

/// A kind of source, with the files that it is made of.
struct Kind {
    QString connectionString; ///< "%1" stands for the folder
    QStringList files;
};

inline Kind FoxPro() {
    return {"Driver={Microsoft Visual FoxPro Driver};Data Source=%1",
            {"t.dbf", "t.fpt", "t.dbt", "t.dbc", "t.dct", "t.cpg"}};
}
inline Kind Text() { return {"Driver={Microsoft Text Driver (*.txt; *.csv)};DBQ=%1", {"t.csv", "schema.ini"}}; }
inline Kind Access() { return {"Driver={Microsoft Access Driver (*.mdb)};DBQ=%1/t.mdb", {"t.mdb"}}; }

inline Kind Fixed() { return {{}, {"t.dat"}}; }
inline Kind Workbook() { return {"Driver={Microsoft Excel Driver (*.xls, *.xlsx)};DBQ=%1/t.xls", {"t.xls"}}; }

/// The bytes of a case: each file but the last with its length (4 bytes) in front.
inline QByteArray Join(const QVector<QByteArray>& files) {
    QByteArray bytes;
    for (int file = 0; file < files.size(); ++file) {
        if (file + 1 < files.size()) {
            QByteArray length(4, '\0');
            qToLittleEndian(static_cast<quint32>(files.at(file).size()), length.data());
            bytes += length;
        }
        bytes += files.at(file);
    }
    return bytes;
}

/// Writes the files of a case into a folder. A file without bytes is left out.
inline void Split(QByteArray bytes, const QStringList& names, const QString& folder) {
    for (const QString& name : names) {
        qsizetype length = bytes.size();
        if (name != names.last() && bytes.size() >= 4) {
            length = std::min<qsizetype>(qFromLittleEndian<quint32>(bytes.constData()), bytes.size() - 4);
            bytes = bytes.mid(4);
        }
        QFile file(folder + '/' + name);
        if (length == 0) {
            file.remove();
        } else if (file.open(QIODevice::WriteOnly)) {
            file.write(bytes.constData(), length);
        }
        bytes = bytes.mid(length);
    }
}

/// A value that cannot be read ends nothing else: its error goes into `refused` unless one stands there.
inline void ReadValue(const Cursor& cursor, int column, std::optional<QString>& refused) {
    try {
        cursor.Value(column);
    } catch (const ImportError& error) {
        refused = refused.value_or(error.Message());
    }
}

/// Records of two kinds, with a field of each.
inline std::unique_ptr<Engine> OpenFixed(const QString& folder, const ConnectionSettings& settings) {
    using Field = sources::FixedField::Kind;
    return sources::OpenFixedFiles(
        folder,
        {{"teste",
          "t.dat",
          24,
          {{"codice", 2, 6}, {"data", 8, 6, Field::DayMonthYear}, {"altra", 14, 8, Field::YearMonthDay}},
          [](QStringView line) { return line.startsWith(u'T'); }},
         {"righe",
          "t.dat",
          24,
          {{"quantita", 2, 9, Field::SignedNumber, 3}, {"prezzo", 11, 9, Field::Number, 2}},
          {},
          true}},
        settings);
}

/// Reads every value of every table of a case in a folder. Returns the error that it, or the first of its values, is
/// refused with.
inline std::optional<QString> Read(const Kind& kind, const QByteArray& bytes, const QString& folder) {
    Split(bytes, kind.files, folder);
    std::optional<QString> refused;
    try {
        ConnectionSettings settings;
        settings.connectionString = QString(kind.connectionString).arg(folder);
        settings.note = [](const QString&) {};
        const auto engine =
            kind.connectionString.isEmpty() ? OpenFixed(folder, settings) : sources::OpenFileSource(settings);
        for (const QString& table : engine->Tables()) {
            engine->Columns(table);
            const auto cursor = engine->Query("SELECT * FROM \"" + QString(table).replace('"', "\"\"") + '"');
            while (cursor->Next()) {
                for (int column = 0; column < cursor->Columns().size(); ++column) {
                    ReadValue(*cursor, column, refused);
                }
            }
        }
    } catch (const Error& error) {
        return error.Message();
    }
    return refused;
}

} // namespace foreignFiles
