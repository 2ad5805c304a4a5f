#pragma once

#include "adapters/contract/map/CodeUse.h"
#include "adapters/contract/map/Mapping.h"
#include "core/Schema.h"

#include <QHash>
#include <QSet>

namespace contract {

/// What a procedure reads and writes: its mappings and what it touches beyond them. A column of the source that a
/// mapping reads is optional unless it feeds a column that the target's rows cannot do without
/// (`schema::Table::Needs`); one that is necessary in one place is so everywhere.
struct Needs {
    std::vector<const Mapping*> mappings;
    std::vector<TableNeed> reads;
    std::vector<TableNeed> writes;
    std::vector<CodeUse> codes = {}; ///< translated beyond what the rules of the mappings tell
};

/// Tables and columns of a procedure, in their order, each once.
class NeededTables {
public:
    struct Table {
        QString name;
        QStringList necessary;
        QStringList optional;
        QMap<QString, QStringList> feeds = {}; ///< target columns, as "CON_TRO.CONOT", by column
        QStringList days = {};                 ///< columns whose days have to be readable
        bool isNecessary = false;              ///< else the procedure works without the table
    };

    /// What a procedure reads.
    static NeededTables Read(const Needs& needs);
    /// What it writes, with what the layout of the source adds, and the table of translations, which every procedure
    /// writes.
    static NeededTables Written(const Session& session, const Needs& needs);

    const std::vector<Table>& Tables() const& { return m_tables; }
    std::vector<Table> Tables() && { return std::move(m_tables); }
    void Add(const QString& table, const QStringList& necessary, const QStringList& optional = {});

private:
    void AddMapping(const Mapping& mapping);
    Table& Take(const QString& table, const QStringList& necessary, const QStringList& optional);
    Table& Named(const QString& table);

    std::vector<Table> m_tables;
};

/// Tables of the target whose rows a procedure inserts, changes and deletes.
QSet<QString> WrittenTables(const Needs& needs);

/// What the open source and the company's tables lack of the needs.
struct Lacks {
    QStringList necessary; ///< a line for each table and column, with the near names that the source has
    QStringList optional;  ///< the same
    /// Columns of the source that are left out.
    struct Column {
        QString table;
        QString column;
    };
    QVector<Column> leftOut;
    /// Columns of the target that keep less of a number than the schema says, as "X01_ART_ICO.ARPRZ decimal(12,2)".
    QStringList narrow = {};
    /// Columns of the target that the schema does not know, nobody writes and no new row goes without, written so too.
    QStringList demanded = {};
    /// Characters that columns of texts hold in the target, where these are fewer than the schema says.
    QHash<const schema::Column*, int> lengths = {};

    /// The lines for the operator: those that are necessary, then those that are not under "Mancano, facoltative:".
    QString Text() const;
};

/// Looks for what a procedure needs, tables and columns each once, and for those that the layout of the source names;
/// in a SQLite file, which keeps days as anything, also for days that conditions cannot compare.
/// Raises `SqlError` when a database cannot be asked, and `ImportError` for an entry of the layout that fits nothing.
Lacks LacksOf(Session& session, const Needs& needs);

/// Has the source give Null for the columns that it lacks and the procedure can do without. Returns the line that tells
/// them, and what becomes of the target columns that they feed; empty when there are none.
QString LeaveOut(Session& session, const Needs& needs, const Lacks& lacks);

} // namespace contract
