#pragma once

#include "adapters/contract/run/Origin.h"

namespace sources {
class Layout;
}

namespace contract {

/// The company whose rows are imported from a source that keeps several in one database.
class SourceCompany {
public:
    /// Reads the setting that names it.
    SourceCompany(Session& session, CompanyKey key);

    /// Has tables called with the company's code in front, where that is how the source tells companies apart. The
    /// connection need not be open.
    void CallTables(sources::Layout& layout, const QStringList& tables) const;
    /// Looks for the company in the open source; where a column tells companies apart, the rows of the others are not
    /// read from then on. Without a setting a company that is alone is the one; each table that has the column
    /// tells which there are. Returns what is wrong, in a line that names the companies that are
    /// there; empty when nothing is. Raises `SqlError`.
    QString Take(ovConnection& source, sources::Layout& layout, const QStringList& tables) const;

private:
    QString TakeByPrefix(ovConnection& source) const;
    QString TakeByColumn(ovConnection& source, sources::Layout& layout, const QStringList& tables) const;
    QList<QVariant> Companies(ovConnection& source, const QStringList& tables) const;
    void FilterBy(sources::Layout& layout, const QString& table, const QString& column, const QString& literal) const;
    QString ColumnIn(const QStringList& columns) const;
    /// Whether each table calls its column otherwise: a procedure names it then where a table must have it.
    bool IsEnding() const { return m_key.column.startsWith(u'*'); }
    QString Lacking(const QString& table) const;
    QString Wrong(const QStringList& companies) const;

    CompanyKey m_key;
    QString m_code;    ///< empty: the setting names none
    QString m_setting; ///< as messages name it
};

} // namespace contract
