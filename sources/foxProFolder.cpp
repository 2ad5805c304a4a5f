#include "sources/foxProFolder.h"

#include "sources/DbfValues.h"
#include "sources/fileTables.h"
#include "sources/foxProContainer.h"
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

void FillTable(PrivateDatabase& database, const QString& name, const QVector<ColumnInfo>& columns,
               const QVector<DbfField>& fields, DbfFile& file, const ConnectionSettings& settings) {
    PrivateTable table(database, name, columns);
    DbfValues values(file);
    UntoldPage page(settings, file.TellsPage(), file.FileName(), file.TextPage().Name());
    while (file.Next()) {
        for (int column = 0; column < fields.size(); ++column) {
            const DbfValue value = values.Read(fields[column]);
            SetValue(table, column, value);
            if (value.kind == DbfValue::Kind::Text) {
                page.Look(value.text, file.RecordNumber(), fields[column].name);
            }
        }
        table.AddRow(file.RecordNumber());
    }
}

void LoadTable(PrivateDatabase& database, const QString& name, const QString& path,
               const ConnectionSettings& settings) {
    DbfFile file(path, settings.codePage);
    const QVector<DbfField> fields = ReadableFields(WithLongNames(file));
    QVector<ColumnInfo> columns;
    for (const DbfField& field : fields) {
        columns.append({field.name, DbfValues::DeclaredType(field)});
    }
    FillTable(database, name, columns, fields, file, settings);
    AddLookupIndexes(database, name, columns, settings.lookupColumns);
}

} // namespace

std::unique_ptr<Engine> OpenFoxProFolder(const QString& folder, const ConnectionSettings& settings) {
    const auto load = [settings](PrivateDatabase& database, const QString& name, const QString& path) {
        LoadTable(database, name, path, settings);
    };
    return OpenFolderTables(folder, FindTables(folder), load, settings);
}

} // namespace sources
