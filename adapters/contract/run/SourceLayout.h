#pragma once

#include "adapters/contract/run/SourceCompany.h"
#include "sources/layout/Layout.h"
#include "sources/layout/LayoutFile.h"

namespace contract {

/// What is told of the source that is open: by the layout file of its origin, "Tracciati/<Origin>.ini" beside the
/// settings, and by the setting that names the company.
class SourceLayout {
public:
    /// Reads the file of an origin, and has the connection, which is not open yet, know the names in it; does nothing
    /// without a file for an origin of one company. What the source itself holds is not looked at. Raises `ImportError`
    /// naming file, line and words for an entry that fits nothing that the origin reads or writes.
    static void Take(Session& session, const Origin& origin, ovConnection& source);

    /// Whether the file says that the source does not have a column.
    bool IsMarkedMissing(const QString& table, const QString& column) const;
    /// Looks at the entries of one table. @param columns the logical ones that the open source has of it; empty when it
    /// does not have the table. Raises `ImportError` for a table, column or condition that the source does not know.
    void Check(ovConnection& source, const QString& table, const QStringList& columns) const;
    /// Looks for the company in the open source: see `SourceCompany::Take`.
    QString TakeCompany(ovConnection& source) const;
    /// What is told of it: see `SourceCompany::Lines`; also a table of another company that the file has read in place
    /// of its own. @param tables logical ones
    QStringList CompanyLines(ovConnection& source, const QStringList& tables) const;
    /// Of tables of the source, those that do not bear the code of another company than that which is imported.
    QStringList WithoutOthers(const QStringList& tables) const;
    /// The condition of a table; empty when all of its rows are read.
    QString FilterOf(const QString& table) const;
    /// What the source calls the columns that a message about a row names, "COCGE si chiama 'Codice Cliente'"; empty
    /// where it calls them the same.
    QString OwnNames(const QString& row, const QString& message) const;
    /// The lines that a mapping gains.
    const std::vector<MapLine>& AddedTo(const Mapping& mapping) const;

private:
    using Entry = sources::LayoutFile::Entry;

    /// A column of the target that the file adds.
    struct Added {
        Entry entry;
        QString target; ///< bare name of the table
        QString table;  ///< of the source, logical; empty: a constant, for every mapping to the target
        QString column; ///< of the source; empty for a constant
        MapLine line;
    };

    SourceLayout(sources::LayoutFile file, const Origin& origin);
    void TakeTables(sources::Layout& layout) const;
    void TakeColumns(sources::Layout& layout) const;
    void TakeFilters(sources::Layout& layout) const;
    void TakeAdded(sources::Layout& layout);
    Added AddedOf(const Entry& entry) const;
    void Place(const Added& added);
    void CheckFilter(ovConnection& source, const Entry& entry) const;
    const QString& KnownTable(const QString& section, const Entry& entry, const QString& table) const;
    QString SourceColumn(const QString& table, const QString& column) const;

    sources::LayoutFile m_file;
    mutable std::optional<SourceCompany> m_company; ///< learns which one it is from the open source
    QMap<QString, QStringList> m_known;             ///< logical columns of each table that the origin reads
    std::vector<const Mapping*> m_mappings;
    QHash<QString, std::vector<MapLine>> m_lines; ///< by target and source table
    std::vector<Added> m_added;
};

/// The lines that a mapping gains by the layout of the source that is open.
const std::vector<MapLine>& AddedLines(const Session& session, const Mapping& mapping);

/// What is read of the tables of a procedure in the source that is open, where it is not all: the company, the rows
/// that name none, a line for each condition of the layout; none without any.
QStringList FilterLines(Session& session, const Needs& needs);

/// Whether the open source lacks a column, which is Null for that reason.
bool IsLeftOut(Session& session, const QString& table, const QString& column);

/// The names of a source that is open; made without any when it has none.
sources::Layout& LayoutOf(ovConnection& source);

} // namespace contract
