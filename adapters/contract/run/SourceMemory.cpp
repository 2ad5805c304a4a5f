#include "adapters/contract/run/SourceMemory.h"

#include "adapters/contract/run/SourceLayout.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QScopeGuard>

namespace contract {

namespace {

constexpr QChar Separator(u'\t'); ///< no name holds one

/// The columns of each table, as they were seen last: a line for each table, its name first.
class Memory {
public:
    explicit Memory(QString path)
        : m_path(std::move(path)) {
        QFile file(m_path);
        if (!file.open(QIODevice::ReadOnly)) {
            return;
        }
        for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
            QStringList names = line.split(Separator);
            const QString table = names.takeFirst();
            m_columns.insert(table, names);
        }
    }

    const QMap<QString, QStringList>& Columns() const { return m_columns; }
    void Set(const QString& table, const QStringList& columns) {
        m_isChanged = m_isChanged || m_columns.value(table) != columns;
        m_columns.insert(table, columns);
    }

    /// What keeps it from being written; empty when nothing does.
    QString Save() const {
        if (!m_isChanged) {
            return {};
        }
        QDir().mkpath(QFileInfo(m_path).path());
        QSaveFile file(m_path);
        if (!file.open(QIODevice::WriteOnly)) {
            return file.errorString();
        }
        for (const auto& [table, columns] : m_columns.asKeyValueRange()) {
            file.write((table + Separator + columns.join(Separator) + u'\n').toUtf8());
        }
        return file.commit() ? QString() : file.errorString();
    }

private:
    QString m_path;
    QMap<QString, QStringList> m_columns;
    bool m_isChanged = false;
};

/// ": in più A, B; in meno C".
QString Change(const QStringList& before, const QStringList& now) {
    const auto others = [](QStringList names, const QStringList& than) {
        names.removeIf([&than](const QString& name) { return than.contains(name, Qt::CaseInsensitive); });
        return names.join(QStringLiteral(", "));
    };
    const QString more = others(now, before);
    const QString less = others(before, now);
    return (more.isEmpty() ? QString() : QStringLiteral(": in più ") + more) +
           (less.isEmpty() ? QString() : (more.isEmpty() ? u": in meno " : u"; in meno ") + less);
}

/// The columns of a table by the names of the source itself, whatever the layout calls them.
QStringList OwnColumns(ovConnection& source, const QString& table) {
    const auto layout = std::exchange(source.Layout, nullptr);
    const auto restore = qScopeGuard([&] { source.Layout = layout; });
    QStringList columns;
    for (const ColumnInfo& column : source.GetColumns(table)) {
        columns.append(column.name);
    }
    return columns;
}

/// The name of a table in the source.
QString OwnName(ovConnection& source, const QString& table) {
    const sources::LayoutTable* known = source.Layout == nullptr ? nullptr : LayoutOf(source).Find(table);
    return known == nullptr ? table : known->inSource.join(u'.');
}

} // namespace

QStringList ChangesOfSource(Session& session, const QString& module, const Needs& needs) {
    const QString settings = session.Config.ConfigFile();
    const std::vector<NeededTables::Table> tables = NeededTables::Read(needs).Tables();
    if (settings.isEmpty() || tables.empty()) {
        return {};
    }
    const QString path = QFileInfo(settings).path() + QStringLiteral("/Tracciati/%1.colonne").arg(module);
    Memory memory(path);
    QStringList lines;
    for (const NeededTables::Table& table : tables) {
        const QString name = OwnName(session.SourceConnection(), table.name);
        const QStringList columns = OwnColumns(session.SourceConnection(), name);
        const auto before = memory.Columns().constFind(name);
        const QString change = before == memory.Columns().constEnd() ? QString() : Change(*before, columns);
        if (!change.isEmpty()) {
            lines.append(QStringLiteral("ORIGINE CAMBIATA DALL'ULTIMA VOLTA: ") + name + change);
        }
        memory.Set(name, columns);
    }
    if (const QString wrong = memory.Save(); !wrong.isEmpty()) {
        lines.append(QStringLiteral("COLONNE DELL'ORIGINE NON ANNOTATE: %1: %2").arg(path, wrong));
    }
    return lines;
}

} // namespace contract
