#pragma once

#include "adapters/contract/map/rules.h"

namespace contract {

class TargetRow;

/// One line of a mapping table: the target column, the source column (several are joined, separated by ", "; empty for
/// none) and the rule between them.
struct MapLine {
    MapLine(QString targetColumn, const QString& sourceColumns, Rule how);
    MapLine(const char* targetColumn, const char* sourceColumns, Rule how);
    ~MapLine();
    MapLine(const MapLine&);
    MapLine(MapLine&&) noexcept;
    MapLine& operator=(const MapLine&);
    MapLine& operator=(MapLine&&) noexcept;

    using IsMissing = std::function<bool(const QString& table, const QString& column)>;

    /// Whether the source lacks what the line would write: all columns that its rule finds it in, or one that it needs.
    /// @param table of the columns of the line
    bool IsLacking(const QString& table, const IsMissing& isMissing) const;
    bool IsLackingIn(Session& session, const SourceRow& row) const;
    /// Whether it lacks one of those columns.
    bool IsTouched(const QString& table, const IsMissing& isMissing) const;
    /// What the rule gives for a row; left out where the source lacks it, unless Quadrix has a value of its own for it.
    RuleValue ValueOf(Session& session, const SourceRow& row, const Facts& facts) const;

    QString target;
    QStringList sources;
    Rule rule;
};

/// How a row of one source table becomes a row of one target table, column by column in target order.
struct Mapping {
    QString targetTable; ///< bare name
    QString sourceTable;
    std::vector<MapLine> lines;
    /// Whether rows are not written by the lines: they tell some of another mapping's, or rows that are written with
    /// those of another table. What the layout of a source adds does not go with them.
    bool isPart = false;
    /// Whether the query names its columns and each row stands for several of the table: no other column can be read.
    bool isOfKeys = false;

    /// Sets every column whose rule gives a value, then those that the layout of the source adds. What the source lacks
    /// is left out, but for values of Quadrix's own in a new row. The `ImportError`s of rules and of values that do not
    /// fit become one, of five at the most, each with the name of its source column.
    void Apply(TargetRow& target, Session& session, const SourceRow& row, const Facts& facts) const;
    /// Source columns that are read, each once.
    QStringList SourceColumns() const;
    /// Target columns that are written.
    QStringList TargetColumns() const;
    /// Those among them whose columns the open source lacks.
    QStringList LackingColumns(Session& session) const;
    /// The mapping as a Markdown table: target, source, rule.
    QString Page() const;
};

} // namespace contract
