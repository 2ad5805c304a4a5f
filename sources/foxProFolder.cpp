#include "sources/foxProFolder.h"

#include "sources/DbfValues.h"
#include "sources/privateDatabase.h"
#include "sql/errors.h"

#include <QDir>
#include <QMap>

namespace sources {

namespace {

/// The tables of a folder: name in lower case -> file.
QMap<QString, QFileInfo> FindTables(const QString& folder) {
    const QDir dir(folder);
    if (folder.isEmpty() || !dir.exists()) {
        throw ImportError(QStringLiteral("la cartella '%1' delle tabelle FoxPro non esiste o non si può leggere; "
                                         "controllare il percorso nelle impostazioni dell'origine")
                              .arg(folder));
    }
    QMap<QString, QFileInfo> tables;
    const auto files = dir.entryInfoList(QDir::Files | QDir::Hidden, QDir::Name);
    for (const QFileInfo& file : files) {
        if (file.suffix().compare(u"dbf", Qt::CaseInsensitive) != 0) {
            continue;
        }
        QFileInfo& table = tables[file.completeBaseName().toLower()];
        if (!table.fileName().isEmpty()) {
            throw ImportError(QStringLiteral("la cartella '%1' contiene due file per la stessa tabella ('%2' e '%3'); "
                                             "toglierne uno")
                                  .arg(folder, table.fileName(), file.fileName()));
        }
        table = file;
    }
    return tables;
}

QVector<DbfField> ReadableFields(const DbfFile& file) {
    QVector<DbfField> fields;
    for (const DbfField& field : file.Fields()) {
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

/// Loads a table; returns its columns.
QVector<ColumnInfo> LoadTable(PrivateDatabase& database, const QString& name, DbfFile& file) {
    const QVector<DbfField> fields = ReadableFields(file);
    QVector<ColumnInfo> columns;
    for (const DbfField& field : fields) {
        columns.append({field.name, DbfValues::DeclaredType(field)});
    }
    PrivateTable table(database, name, columns);
    DbfValues values(file);
    while (file.Next()) {
        for (int column = 0; column < fields.size(); ++column) {
            SetValue(table, column, values.Read(fields[column]));
        }
        table.AddRow(file.RecordNumber());
    }
    return columns;
}

void AddIndexes(PrivateDatabase& database, const QString& table, const QVector<ColumnInfo>& columns,
                const QStringList& lookupColumns) {
    for (const ColumnInfo& column : columns) {
        if (lookupColumns.contains(table + u'.' + column.name, Qt::CaseInsensitive)) {
            database.AddIndex(table, column.name);
        }
    }
}

} // namespace

std::unique_ptr<Engine> OpenFoxProFolder(const QString& folder, const ConnectionSettings& settings) {
    const auto files = FindTables(folder);
    PrivateDatabase database;
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        if (!settings.tables.isEmpty() && !settings.tables.contains(file.key(), Qt::CaseInsensitive)) {
            continue;
        }
        DbfFile table(file->filePath(), settings.codePage);
        try {
            const auto columns = LoadTable(database, file.key(), table);
            AddIndexes(database, file.key(), columns, settings.lookupColumns);
        } catch (ImportError& error) {
            if (!error.Message().startsWith(u"File ")) {
                error.AddContext(QStringLiteral("File '%1'").arg(table.FileName()));
            }
            throw;
        }
    }
    return database.Open();
}

} // namespace sources
