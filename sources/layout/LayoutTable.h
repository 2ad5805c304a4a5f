#pragma once

#include "sql/engine.h"

#include <QMap>
#include <QSet>

namespace sources {

/// A table of a source under its logical name.
class LayoutTable {
public:
    struct Column {
        QString name;
        QString inSource; ///< empty: not there
    };

    QString name;
    QStringList inSource;      ///< how the source calls it, owner first
    QString filter;            ///< empty: every row is read
    QStringList alsoRead = {}; ///< logical names

    /// Whether a query over the table is said otherwise in the source.
    bool Changes() const { return m_isCalled || !filter.isEmpty() || !m_columns.isEmpty() || !alsoRead.isEmpty(); }
    bool IsCalled() const { return m_isCalled; }
    /// @param parts owner and name
    void Call(const QStringList& parts) {
        inSource = parts;
        m_isCalled = true;
    }
    void CallColumn(const Column& column) { m_columns.insert(column.name.toUpper(), column); }
    void Know(const QString& column) { m_known.insert(column.toUpper()); }

    /// What the source calls otherwise, or does not have; null for any other column.
    const Column* Find(const QString& column) const;
    bool Knows(const QString& column) const { return Find(column) != nullptr || m_known.contains(column.toUpper()); }
    /// How the source calls a column; the logical name itself unless another is known.
    QString InSource(const QString& column) const;

    /// What the columns of the source are called by logical names: one name for each, then those that no column of its
    /// own has.
    struct Names {
        struct More {
            QString name;
            int position; ///< of the column that it stands for; -1: none
        };
        QStringList names;
        QVector<More> more;
    };
    Names NamesOf(const QStringList& columnsOfSource) const;
    /// The columns of the source that the engine has for the table; empty when it has none.
    QVector<ColumnInfo> ColumnsOfSource(Engine& engine) const;

private:
    bool m_isCalled = false;
    QMap<QString, Column> m_columns; ///< by name in upper case
    QSet<QString> m_known;
};

/// The parts of a name with its owner, without brackets: "dbo.[Clienti e fornitori]" has two.
QStringList NameParts(const QString& name);
/// A table, by the parts of its name, as a statement writes it.
QString TableText(const QStringList& parts, Dialect dialect);
/// A name as a statement writes it, quoted where that engine needs it.
QString Quoted(const QString& name, Dialect dialect);

} // namespace sources
