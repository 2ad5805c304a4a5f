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
    /// read from then on. Without a setting a company that is alone is the one, and has the rows that name none; each
    /// table that has the column tells which there are. Returns what is wrong, in a line that names the companies that
    /// are there; empty when nothing is. Raises `SqlError`.
    QString Take(ovConnection& source, sources::Layout& layout, const QStringList& tables);

    /// The company that was taken and, of some tables, the rows that name none, in lines for the operator; none where
    /// nothing tells companies apart.
    QStringList Lines(const QStringList& tables) const;
    /// Whether a table of the source bears the code of another company than that which is imported.
    /// @param name in the source
    /// @param tables those of the source; @param read the logical ones
    bool IsOfAnother(const QString& name, const QStringList& tables, const QStringList& read) const;

private:
    /// The values of the column in a table, each once.
    using Values = QMap<QString, QList<QVariant>>;

    QString TakeByPrefix(ovConnection& source);
    QString TakeByColumn(ovConnection& source, sources::Layout& layout, const QStringList& tables);
    Values ValuesByTable(ovConnection& source, const QStringList& tables) const;
    void CountNameless(ovConnection& source, const QString& table, const QString& column,
                       const QList<QVariant>& values);
    void FilterBy(sources::Layout& layout, const QString& table, const QString& column,
                  const QStringList& literals) const;
    QString ColumnIn(const QStringList& columns) const;
    /// Whether each table calls its column otherwise: a procedure names it then where a table must have it.
    bool IsEnding() const { return m_key.column.startsWith(u'*'); }
    QString Lacking(const QString& table) const;
    QString Wrong(const QStringList& companies) const;

    CompanyKey m_key;
    QString m_code;                        ///< empty: the setting names none
    QString m_setting;                     ///< as messages name it
    QString m_taken = {};                  ///< the company that the rows are those of; empty: nothing tells it
    bool m_takesNameless = false;          ///< rows that name no company are read as well
    QMap<QString, qint64> m_nameless = {}; ///< how many they are, by table
};

} // namespace contract
