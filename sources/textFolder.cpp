#include "sources/textFolder.h"

#include "sources/CsvFile.h"
#include "sources/fileTables.h"
#include "sources/textSchema.h"
#include "sources/UntoldPage.h"
#include "sql/CodePage.h"
#include "sql/errors.h"

namespace sources {

namespace {

/// The text files of a folder: table name in lower case -> files of that name.
QMap<QString, QStringList> FindTables(const QString& folder, const QStringList& wanted) {
    QMap<QString, QStringList> tables;
    for (const QFileInfo& file : FilesOf(folder, QStringLiteral("dei file di testo"))) {
        static const QStringList extensions{"csv", "txt"};
        if (extensions.contains(file.suffix().toLower())) {
            tables[file.completeBaseName().toLower()].append(file.filePath());
        }
        if (wanted.contains(file.fileName(), Qt::CaseInsensitive)) {
            tables[file.fileName().toLower()] = QStringList(file.filePath());
        }
    }
    return tables;
}

/// Reads the fields of a file as text.
class Decoder {
public:
    Decoder(const CsvFile& file, const TextSchema& schema, const ConnectionSettings& settings)
        : m_path(file.Path()),
          m_page(file.HasUtf8Mark()          ? QStringLiteral("UTF-8")
                 : schema.codePage.isEmpty() ? settings.codePage
                                             : schema.codePage),
          m_untold(settings, file.HasUtf8Mark() || !schema.codePage.isEmpty(), file.Path(), m_page.Name()) {}

    QByteArray Utf8(const QByteArray& bytes, qint64 line, const QString& column) {
        QByteArray utf8;
        if (!m_page.AppendUtf8(bytes, utf8)) {
            throw ImportError(QStringLiteral("file '%1', riga %2, colonna '%3': il testo non è in %4; dire la code "
                                             "page del file in schema.ini (CharacterSet)")
                                  .arg(m_path, QString::number(line), column, m_page.Name()));
        }
        m_untold.Look(utf8, line, column);
        return utf8;
    }

private:
    QString m_path;
    CodePage m_page;
    UntoldPage m_untold;
};

void CheckNames(const QStringList& names, const QString& path) {
    QStringList seen;
    for (qsizetype i = 0; i < names.size(); ++i) {
        if (names.at(i).isEmpty()) {
            throw ImportError(
                QStringLiteral("file '%1': la colonna %2 non ha un nome").arg(path, QString::number(i + 1)));
        }
        if (seen.contains(names.at(i), Qt::CaseInsensitive)) {
            throw ImportError(QStringLiteral("file '%1': la colonna '%2' c'è due volte").arg(path, names.at(i)));
        }
        seen.append(names.at(i));
    }
}

/// The names of the columns: the schema's own, else those of the header, which is read in any case.
QStringList ColumnNames(CsvFile& file, const TextSchema& schema, Decoder& decoder) {
    QStringList names = schema.columns;
    CsvFile::Record header;
    if (schema.hasHeader && !file.Next(header)) {
        throw ImportError(
            QStringLiteral("il file '%1' è vuoto: manca la riga con i nomi delle colonne").arg(file.Path()));
    }
    if (names.isEmpty()) {
        for (const QByteArray& field : std::as_const(header.fields)) {
            names.append(QString::fromUtf8(decoder.Utf8(field, header.line, QString())).trimmed());
        }
    }
    CheckNames(names, file.Path());
    return names;
}

void LoadFile(PrivateDatabase& database, const QString& name, const QString& path, const ConnectionSettings& settings) {
    const TextSchema schema = ReadTextSchema(path);
    CsvFile file(path, schema.separator);
    Decoder decoder(file, schema, settings);
    const QStringList names = ColumnNames(file, schema, decoder);
    QVector<ColumnInfo> columns;
    for (const QString& column : names) {
        columns.append({column, QStringLiteral("TEXT")});
    }
    {
        PrivateTable table(database, name, columns);
        for (CsvFile::Record record; file.Next(record);) {
            if (record.fields.size() != names.size()) {
                throw ImportError(QStringLiteral("file '%1', riga %2: ha %3 campi, le colonne sono %4; controllare "
                                                 "separatore e virgolette")
                                      .arg(path, QString::number(record.line), QString::number(record.fields.size()),
                                           QString::number(names.size())));
            }
            for (int column = 0; column < names.size(); ++column) {
                if (!record.fields.at(column).isEmpty()) {
                    table.SetText(column, decoder.Utf8(record.fields.at(column), record.line, names.at(column)));
                }
            }
            table.AddRow(record.line);
        }
    }
    AddLookupIndexes(database, name, columns, settings.lookupColumns);
}

} // namespace

std::unique_ptr<Engine> OpenTextFolder(const QString& folder, const ConnectionSettings& settings) {
    const auto load = [settings](PrivateDatabase& database, const QString& name, const QString& path) {
        LoadFile(database, name, path, settings);
    };
    return OpenFolderTables(folder, FindTables(folder, settings.tables), load, settings);
}

} // namespace sources
