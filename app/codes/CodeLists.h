#pragma once

#include <QHash>
#include <QSet>
#include <QStringList>

#include <vector>

/// The codes of sources that the operator gives their codes of Quadrix, in SYS_IMP.
namespace codes {

/// A table of Quadrix whose rows have codes, and the column of these.
struct BaseTable {
    QString table; ///< bare name
    QString column;

    bool operator==(const BaseTable&) const = default;
};

/// The codes that stand in SYS_IMP under one table and field: who asks for them, and what they become.
struct CodeList {
    QString table; ///< TBNAM
    QString field; ///< TBFLD
    QStringList origins = {};
    QStringList feeds = {};            ///< columns of Quadrix that they go to, as "CON_TRO.COMOP"
    std::vector<BaseTable> bases = {}; ///< a new code must be one of each; empty: any text is one
    int size = 0;                      ///< characters that a new code may have

    /// "anagrafe.pag"
    QString Name() const { return table + u'.' + field; }
};

inline constexpr int NameLength = 20; ///< of tables and fields in SYS_IMP

/// What a table and a field of SYS_IMP are told apart by: their first 20 characters, in any case.
QString KeyOf(const QString& table, const QString& field);

/// The lists of all origins, as their procedures declare them.
class CodeLists {
public:
    CodeLists();

    /// The list of a table and a field. One that no origin declares is that of a base table when it bears its name,
    /// else of any text.
    const CodeList& Of(const QString& table, const QString& field);
    /// Whether a procedure of an origin asks for codes of a list.
    bool Knows(const QString& table, const QString& field) const { return m_declared.contains(KeyOf(table, field)); }
    /// Those of procedures, and those that were asked for, by key.
    const QHash<QString, CodeList>& All() const { return m_lists; }
    /// "TABLE.FIELD" of those that procedures ask for.
    QStringList Names() const;

private:
    QHash<QString, CodeList> m_lists;
    QSet<QString> m_declared; ///< keys of those of procedures
};

} // namespace codes
