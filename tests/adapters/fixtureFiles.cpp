#include "tests/adapters/fixtureFiles.h"

#include "examples/DbfWriter.h"
#include "sql/errors.h"
#include "tests/support/files.h"

#include <QDateTime>
#include <QDir>

namespace {

/// A copy is as old as it was on 2 January 2024: its time is part of what attachments tell.
void CopyFile(const QString& from, const QString& to) {
    QFile copy(to);
    if (!QFile::copy(from, to) || !copy.open(QIODevice::ReadWrite) ||
        !copy.setFileTime(QDateTime(QDate(2024, 1, 2), QTime(8, 30)), QFileDevice::FileModificationTime)) {
        throw ImportError("Non si può copiare " + from);
    }
}

using Renamed = std::function<QString(const QString& table, const QString& column)>;

void MakeFoxProTable(const QString& from, const QString& to, const Renamed& renamed) {
    QStringList lines = QString::fromUtf8(ReadFile(from)).split('\n', Qt::SkipEmptyParts);
    QVector<examples::Column> columns;
    QList<QByteArray> names;
    for (const QString& text : lines.takeFirst().split('|')) {
        const QStringList parts = text.trimmed().split(' ');
        names.append(renamed(QFileInfo(from).baseName(), parts[0]).toUtf8());
        columns.append({nullptr, parts[1].at(0).toLatin1(), parts.value(2).toInt(), parts.value(3).toInt()});
    }
    for (qsizetype i = 0; i < columns.size(); ++i) {
        columns[i].name = names[i].constData();
    }
    examples::DbfWriter table(to, columns);
    for (const QString& line : std::as_const(lines)) {
        const bool isDeleted = line.startsWith('*');
        const QStringList values = line.mid(isDeleted ? 1 : 0).split('|');
        for (qsizetype i = 0; i < columns.size(); ++i) {
            const QString value = values.value(i).replace("\\n", "\n");
            table.Set(columns[i].name, value.isEmpty() ? QVariant() : QVariant(value));
        }
        isDeleted ? table.AddDeleted() : table.Add();
    }
    table.Finish();
}

} // namespace

void CopyFiles(const QString& from, const QString& to) {
    QDir().mkpath(to);
    const QDir files(from);
    for (const QString& name : files.entryList(QDir::Files)) {
        CopyFile(files.filePath(name), to + '/' + name);
    }
}

void MakeFoxProTables(const QString& from, const QString& to, const Renamed& renamed) {
    const QDir tables(from);
    for (const QString& name : tables.entryList({"*.txt"}, QDir::Files)) {
        MakeFoxProTable(tables.filePath(name), to + '/' + renamed(QFileInfo(name).baseName(), {}) + ".dbf", renamed);
    }
}
