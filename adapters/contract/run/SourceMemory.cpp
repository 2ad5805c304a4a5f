#include "adapters/contract/run/SourceMemory.h"

#include "adapters/contract/run/SourceLayout.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QScopeGuard>

#include <algorithm>

namespace contract {

namespace {

// A line for each table: its name, then its columns, each with its type. No name holds one of these.
constexpr QChar Separator(u'\t');
constexpr QChar BeforeType(u'\x1f');

/// Empty where there are no settings, beside which it could stand.
QString MemoryPath(const Session& session, const QString& module) {
    const QString settings = session.Config.ConfigFile();
    return settings.isEmpty() ? QString()
                              : QFileInfo(settings).path() + QStringLiteral("/Tracciati/%1.colonne").arg(module);
}

SeenTables ReadMemory(const QString& path) {
    SeenTables tables;
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        return tables;
    }
    for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        QStringList columns = line.split(Separator);
        QVector<ColumnInfo>& table = tables[columns.takeFirst()];
        for (const QString& column : std::as_const(columns)) {
            table.append({column.section(BeforeType, 0, 0), column.section(BeforeType, 1)});
        }
    }
    return tables;
}

QByteArray MemoryText(const SeenTables& tables) {
    QString text;
    for (const auto& [table, columns] : tables.asKeyValueRange()) {
        text += table;
        for (const ColumnInfo& column : columns) {
            text += Separator + column.name + BeforeType + column.type;
        }
        text += u'\n';
    }
    return text.toUtf8();
}

/// What keeps it from being written; empty when nothing does.
QString WriteMemory(const QString& path, const QByteArray& text) {
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
    return isWritten ? QString() : file.errorString();
}

const ColumnInfo* ColumnNamed(const QVector<ColumnInfo>& columns, const QString& name) {
    const auto found = std::find_if(columns.begin(), columns.end(), [&name](const ColumnInfo& column) {
        return column.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == columns.end() ? nullptr : &*found;
}

/// The names of the columns that are not among others.
QString NamesBeyond(const QVector<ColumnInfo>& columns, const QVector<ColumnInfo>& others) {
    QStringList names;
    for (const ColumnInfo& column : columns) {
        names += ColumnNamed(others, column.name) == nullptr ? QStringList(column.name) : QStringList();
    }
    return names.join(QStringLiteral(", "));
}

QString Retyped(const QVector<ColumnInfo>& before, const QVector<ColumnInfo>& now) {
    QStringList columns;
    for (const ColumnInfo& column : now) {
        const ColumnInfo* known = ColumnNamed(before, column.name);
        if (known != nullptr && !known->type.isEmpty() && !column.type.isEmpty() &&
            known->type.compare(column.type, Qt::CaseInsensitive) != 0) {
            columns.append(QStringLiteral("%1 (%2, prima %3)").arg(column.name, column.type, known->type));
        }
    }
    return columns.join(QStringLiteral(", "));
}

/// The columns of a table by the names of the source itself, whatever the layout calls them.
QVector<ColumnInfo> OwnColumns(ovConnection& source, const QString& table) {
    const auto layout = std::exchange(source.Layout, nullptr);
    const auto restore = qScopeGuard([&] { source.Layout = layout; });
    return source.GetColumns(table);
}

/// The name of a table in the source.
QString OwnName(ovConnection& source, const QString& table) {
    const sources::LayoutTable* known = source.Layout == nullptr ? nullptr : LayoutOf(source).Find(table);
    return known == nullptr ? table : known->inSource.join(u'.');
}

/// The columns, where those without a type, as one of a sheet without any value, keep the one that was seen.
QVector<ColumnInfo> WithKnownTypes(QVector<ColumnInfo> columns, const QVector<ColumnInfo>& before) {
    for (ColumnInfo& column : columns) {
        const ColumnInfo* known = column.type.isEmpty() ? ColumnNamed(before, column.name) : nullptr;
        column.type = known == nullptr ? column.type : known->type;
    }
    return columns;
}

/// Compares the tables that are needed with those that were seen, and puts them in their place.
QStringList TakeChanges(Session& session, const Needs& needs, SeenTables& seen) {
    QStringList lines;
    for (const NeededTables::Table& table : NeededTables::Read(needs).Tables()) {
        const QString name = OwnName(session.SourceConnection(), table.name);
        const QVector<ColumnInfo> columns = OwnColumns(session.SourceConnection(), name);
        const QString change = seen.contains(name) ? ChangeText(seen[name], columns) : QString();
        if (!change.isEmpty()) {
            lines.append(QStringLiteral("ORIGINE CAMBIATA DALL'ULTIMA VOLTA: %1: %2").arg(name, change));
        }
        seen.insert(name, WithKnownTypes(columns, seen.value(name)));
    }
    return lines;
}

} // namespace

SeenTables SeenAtLastImport(const Session& session, const QString& module) {
    return ReadMemory(MemoryPath(session, module));
}

QString ChangeText(const QVector<ColumnInfo>& before, const QVector<ColumnInfo>& now) {
    QStringList changes;
    const auto add = [&changes](const QString& what, const QString& columns) {
        changes += columns.isEmpty() ? QStringList() : QStringList(what + columns);
    };
    add(QStringLiteral("in più "), NamesBeyond(now, before));
    add(QStringLiteral("in meno "), NamesBeyond(before, now));
    add(QStringLiteral("di altro tipo "), Retyped(before, now));
    return changes.join(QStringLiteral("; "));
}

QStringList ChangesOfSource(Session& session, const QString& module, const Needs& needs) {
    SeenTables seen = SeenAtLastImport(session, module);
    return seen.isEmpty() ? QStringList() : TakeChanges(session, needs, seen);
}

QStringList RememberSource(Session& session, const QString& module, const Needs& needs) {
    const QString path = MemoryPath(session, module);
    if (path.isEmpty()) {
        return {};
    }
    SeenTables seen = ReadMemory(path);
    const QByteArray before = MemoryText(seen);
    QStringList lines = TakeChanges(session, needs, seen);
    const QByteArray now = MemoryText(seen);
    if (const QString wrong = now == before ? QString() : WriteMemory(path, now); !wrong.isEmpty()) {
        lines.append(QStringLiteral("COLONNE DELL'ORIGINE NON ANNOTATE: %1: %2").arg(path, wrong));
    }
    return lines;
}

} // namespace contract
