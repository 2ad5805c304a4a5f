#pragma once

#include "adapters/contract/kinds/Field.h"

namespace contract {

/// A column of a table and the one of another table that it equals; of the same name when the other is empty.
struct Tie {
    QString column;
    QString other = {};
    bool tiesNulls = false; ///< whether Null equals Null, as a revision or a series that is not told

    const QString& Other() const { return other.isEmpty() ? column : other; }
    /// That the columns are equal, as a condition on the tables of these aliases.
    QString Condition(const QString& alias, const QString& otherAlias) const;
};

/// A second table that is read beside the first, row by row: columns of it stand in the row as if they were its own.
struct Join {
    QString table;
    std::vector<Tie> on;    ///< columns of this table, each with the column of the first table that it equals
    QStringList columns;    ///< that are read
    bool isOptional = true; ///< a row of the first table without one is read too
    QString where = {};     ///< a further condition on its rows, which it names J1, J2, ... as the tables are joined
};

/// Where an import reads its rows. Names that the statements of the source must quote stand in brackets: "[_PCCOD]"; a
/// table whose key does has all of its columns in brackets.
struct SourceTable {
    QString table;
    QString key;            ///< its code column, by which a run of a single code asks
    QString order = {};     ///< columns, separated by ", "; empty: as the source gives them
    QString where = {};     ///< condition on the rows, without WHERE; with joins the table is T, they are J1, J2, ...
    QString naming = {};    ///< columns that tell a row in messages; empty: the key
    QStringList group = {}; ///< see `ImportRun::Loop`
    std::function<QString(const SourceRow&)> groupOf = {}; ///< the same
    /// Each value of the key comes once, with the columns of the joins, and nothing else of the rows is read.
    bool distinct = false;
    QString apart = {}; ///< with `distinct`: further columns, separated by ", ", whose values come with the key
    /// A further condition that the settings or the operator tell, without WHERE; empty for none. It is asked before
    /// anything is written and raises `ImportError` when the source does not have what they name.
    std::function<QString(ImportRun&)> told = {};
    std::vector<Join> joins = {};

    /// The loop over its rows.
    /// @param further condition known only at the run; empty for none @param singleCode empty for all
    ImportRun::Loop Loop(const ImportRun& run, const QString& step, const QString& further,
                         const QString& singleCode) const;
    /// What tells which rows a row belongs to; empty without a group.
    QString GroupOf(const SourceRow& row) const { return groupOf ? groupOf(row) : GroupText(row, group); }
    /// Columns that the statement itself names, and the tables of the joins.
    Needs OwnNeeds() const;
    /// Raises `ImportError` where columns are those of a join, and the second table has no row beside this one.
    void CheckPartner(const SourceRow& row, const QStringList& columns) const;
    /// What fields read of the row and of other tables.
    Needs NeedsOf(const std::vector<Field>& fields) const;
    /// The lines as mappings, one for each table that they read; none without lines.
    std::vector<Mapping> Mappings(const QString& target, const std::vector<MapLine>& lines) const;

private:
    QString Qualified(const QString& columns) const;
    const Join* JoinOf(const QStringList& columns) const;
};

/// Rows that belong to one of another table, such as the branches of a counterparty. Without a table it is the row
/// itself that tells the child.
struct ChildTable {
    QString table = {};
    std::vector<Tie> on = {}; ///< columns of the child, each with the column of the parent that it equals
    QString order = {};       ///< columns, separated by ", "
    QString where = {};       ///< a further condition, without WHERE
    QString naming = {};      ///< columns that tell a row in messages; empty: the order's, else the ties'
    bool isOptional = false;  ///< some releases of the source lack the table: it has no rows then

    /// Hands each child of a row to `work`, whose notes and `ImportError` name the child too; the row itself without a
    /// table.
    void ForEach(Session& session, const SourceRow& parent, const std::function<void(const SourceRow&)>& work) const;
    /// The same with the first of them alone.
    void First(Session& session, const SourceRow& parent, const std::function<void(const SourceRow&)>& work) const;
    /// The name of a child in messages.
    QString Name(const SourceRow& row) const;
    /// What the statement itself names. @param parent table of the parent
    Needs OwnNeeds(const QString& parent) const;
    /// What fields read. @param parent table of the parent
    Needs NeedsOf(const QString& parent, const std::vector<Field>& fields) const;

private:
    SqlText QueryOf(Session& session, const SourceRow& parent) const;
};

/// The columns of a list without alias and brackets: "T.[_MMNUM]" is "_MMNUM".
QStringList BareColumns(const QString& columns);

} // namespace contract
