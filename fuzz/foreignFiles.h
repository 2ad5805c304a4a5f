#pragma once

#include "sources/fileSource.h"
#include "sources/fixedFiles.h"
#include "sql/errors.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <QtEndian>

#include <optional>

#include <zip.h>

/// Foreign files out of one run of bytes, read as a source: whatever the bytes are, they are read or refused with an
/// error.
namespace foreignFiles {

/// A kind of source, with the files that it is made of.
struct Kind {
    QString connectionString; ///< "%1" stands for the folder
    QStringList files;
    QString package = {};                   ///< the files are put into one of this name, beside `further`
    QMap<QString, QByteArray> further = {}; ///< of a package, as they stand
};

inline Kind FoxPro() {
    return {"Driver={Microsoft Visual FoxPro Driver};Data Source=%1",
            {"t.dbf", "t.fpt", "t.dbt", "t.dbc", "t.dct", "t.cpg"}};
}
inline Kind Text() { return {"Driver={Microsoft Text Driver (*.txt; *.csv)};DBQ=%1", {"t.csv", "schema.ini"}}; }
inline Kind Access() { return {"Driver={Microsoft Access Driver (*.mdb)};DBQ=%1/t.mdb", {"t.mdb"}}; }

inline Kind Fixed() { return {{}, {"t.dat"}}; }
inline Kind Workbook() { return {"Driver={Microsoft Excel Driver (*.xls, *.xlsx)};DBQ=%1/t.xls", {"t.xls"}}; }

// Compressed packages would be refused for nearly every byte that is changed: what stands in them is made up instead.

inline Kind Xlsx() {
    const QByteArray relations =
        "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">";
    const auto relation = [](const char* id, const char* type, const char* target) -> QByteArray {
        return QByteArray("<Relationship Id=\"") + id + "\" Type=\"x/" + type + "\" Target=\"" + target + "\"/>";
    };
    return {"Driver={Microsoft Excel Driver (*.xls, *.xlsx)};DBQ=%1/t.xlsx",
            {"xl/worksheets/sheet1.xml", "xl/sharedStrings.xml", "xl/styles.xml", "xl/workbook.xml"},
            "t.xlsx",
            {{"_rels/.rels", relations + relation("r", "officeDocument", "xl/workbook.xml") + "</Relationships>"},
             {"xl/_rels/workbook.xml.rels", relations + relation("rId1", "worksheet", "worksheets/sheet1.xml") +
                                                relation("rId2", "styles", "styles.xml") +
                                                relation("rId3", "sharedStrings", "sharedStrings.xml") +
                                                "</Relationships>"}}};
}
inline Kind Ods() {
    return {"Driver={Microsoft Excel Driver (*.xls, *.xlsx)};DBQ=%1/t.ods",
            {"content.xml"},
            "t.ods",
            {{"mimetype", "application/vnd.oasis.opendocument.spreadsheet"}}};
}

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

/// The files of a case. One without bytes is left out.
inline QMap<QString, QByteArray> Split(QByteArray bytes, const QStringList& names) {
    QMap<QString, QByteArray> files;
    for (const QString& name : names) {
        qsizetype length = bytes.size();
        if (name != names.last() && bytes.size() >= 4) {
            length = std::min<qsizetype>(qFromLittleEndian<quint32>(bytes.constData()), bytes.size() - 4);
            bytes = bytes.mid(4);
        }
        if (length > 0) {
            files.insert(name, bytes.left(length));
        }
        bytes = bytes.mid(length);
    }
    return files;
}

/// Puts files into a package, not compressed.
inline void Pack(const QString& path, const QMap<QString, QByteArray>& files) {
    zip_t* package = zip_open(QFile::encodeName(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    for (const auto& [name, bytes] : files.asKeyValueRange()) {
        zip_source_t* source =
            zip_source_buffer(package, bytes.constData(), static_cast<zip_uint64_t>(bytes.size()), 0);
        const zip_int64_t at = zip_file_add(package, name.toUtf8().constData(), source, ZIP_FL_OVERWRITE);
        zip_set_file_compression(package, static_cast<zip_uint64_t>(at), ZIP_CM_STORE, 0);
    }
    zip_close(package);
}

/// Writes the files of a case into a folder.
inline void Write(const Kind& kind, const QByteArray& bytes, const QString& folder) {
    QMap<QString, QByteArray> files = Split(bytes, kind.files);
    if (!kind.package.isEmpty()) {
        files.insert(kind.further);
        Pack(folder + '/' + kind.package, files);
        return;
    }
    for (const QString& name : kind.files) {
        QFile file(folder + '/' + name);
        if (!files.contains(name)) {
            file.remove();
        } else if (file.open(QIODevice::WriteOnly)) {
            file.write(files.value(name));
        }
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
    Write(kind, bytes, folder);
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
