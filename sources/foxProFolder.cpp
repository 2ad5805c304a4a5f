#include "sources/foxProFolder.h"

#include "sources/DbfValues.h"
#include "sources/fileTables.h"
#include "sources/foxProContainer.h"
#include "sources/Oddities.h"
#include "sources/UntoldPage.h"
#include "sql/errors.h"

namespace sources {

namespace {

/// The tables of a folder: name in lower case -> files of that name; more than one where case tells them apart.
QMap<QString, QStringList> FindTables(const QString& folder) {
    QMap<QString, QStringList> tables;
    for (const QFileInfo& file : FilesOf(folder, QStringLiteral("delle tabelle FoxPro"))) {
        if (file.suffix().compare(u"dbf", Qt::CaseInsensitive) == 0) {
            tables[file.completeBaseName().toLower()].append(file.filePath());
        }
    }
    return tables;
}

QVector<DbfField> ReadableFields(const QVector<DbfField>& all) {
    QVector<DbfField> fields;
    for (const DbfField& field : all) {
        if (DbfValues::IsReadable(field)) {
            fields.append(field);
        }
    }
    return fields;
}

void SetValue(PrivateTable& table, int column, const DbfValue& value) {
    switch (value.kind) {
    case DbfValue::Kind::Null:
        break;
    case DbfValue::Kind::Text:
        table.SetText(column, value.text);
        break;
    case DbfValue::Kind::Integer:
        table.SetInteger(column, value.integer);
        break;
    case DbfValue::Kind::Real:
        table.SetReal(column, value.real);
        break;
    }
}

/// Fills a table with the rows of a file. A value that cannot be read ends no row but those that ask for it.
class DbfLoader {
public:
    DbfLoader(const QString& path, const ConnectionSettings& settings)
        : m_settings(settings),
          m_file(path, settings.codePage),
          m_values(m_file),
          m_untold(settings, m_file.TellsPage(), m_file.FileName(), m_file.TextPage().Name()),
          m_oddities(settings, QStringLiteral("file '%1'").arg(m_file.FileName())) {}

    void Load(PrivateDatabase& database, const QString& name) {
        m_fields = ReadableFields(WithLongNames(m_file));
        QStringList names;
        QStringList places;
        for (const DbfField& field : std::as_const(m_fields)) {
            names.append(field.name);
            places.append(QString::number(places.size() + 1));
        }
        names = DistinctNames(names, places, m_oddities);
        for (qsizetype column = 0; column < m_fields.size(); ++column) {
            m_columns.append({names.at(column), DbfValues::DeclaredType(m_fields.at(column))});
        }
        {
            PrivateTable table(database, name, m_columns);
            while (m_file.Next()) {
                for (int column = 0; column < m_fields.size(); ++column) {
                    Copy(table, column);
                }
                table.AddRow(m_file.RecordNumber());
            }
        }
        AddLookupIndexes(database, name, m_columns, m_settings.lookupColumns);
        if (m_file.Unannounced() > 0) {
            m_oddities.Add(
                QStringLiteral("RIGHE NON ANNUNCIATE"), QString(), 0,
                QStringLiteral("l'intestazione annuncia %1 righe, il file ne contiene altre %2, che si leggono: "
                               "l'applicativo di origine lo stava scrivendo, o si è interrotto")
                    .arg(m_file.RecordCount() - m_file.Unannounced())
                    .arg(m_file.Unannounced()));
        }
        m_oddities.Tell();
    }

private:
    void Copy(PrivateTable& table, int column) {
        try {
            const DbfValue value = m_values.Read(m_fields.at(column));
            SetValue(table, column, value);
            if (value.kind == DbfValue::Kind::Text) {
                const bool isMemo = m_fields.at(column).type == 'M';
                m_untold.Look(value.text, m_file.RecordNumber(), m_columns.at(column).name,
                              isMemo ? QByteArrayView() : m_file.Bytes(m_fields.at(column)));
            }
        } catch (const ImportError& error) {
            table.SetUnreadable(column, error.Message());
            m_oddities.Add(UnreadableKind, m_columns.at(column).name, m_file.RecordNumber(),
                           error.Message().section(QStringLiteral(": "), 1));
        }
    }

    const ConnectionSettings& m_settings;
    DbfFile m_file;
    DbfValues m_values;
    UntoldPage m_untold;
    Oddities m_oddities;
    QVector<DbfField> m_fields;
    QVector<ColumnInfo> m_columns;
};

} // namespace

std::unique_ptr<Engine> OpenFoxProFolder(const QString& folder, const ConnectionSettings& settings) {
    const auto load = [settings](PrivateDatabase& database, const QString& name, const QString& path) {
        DbfLoader(path, settings).Load(database, name);
    };
    return OpenFolderTables(folder, FindTables(folder), load, settings);
}

} // namespace sources
