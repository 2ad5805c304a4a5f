#pragma once

#include "app/merge.h"
#include "core/Schema.h"

/// The parts of a counterparty merge.
namespace merge {

inline const QString Master = QStringLiteral("CON_TRO"); ///< the table of the counterparties

/// Codes of the two companies, as the database writes them.
struct Companies {
    QString from;
    QString to;
};

/// The company of that code, compared without case. Raises `ImportError` naming those that there are.
modMain::Company FindCompany(Session& session, const QString& code);
/// Physical name of a company's table.
QString TableOf(const QString& company, const QString& bareName);

/// Finds the match of every counterparty of the source company, by its code; nothing when the operator cancelled.
/// Raises `ImportError` for a code that is not six digits and when the destination has no more codes.
std::optional<QVector<modMain::MergeMatch>> FindMatches(Session& session, const Companies& companies,
                                                        Progress& progress);

/// The columns of the source company that hold counterparty codes.
class References {
public:
    /// Reads the dictionary.
    References(Session& session, Companies companies);

    /// Raises `ImportError` when the dictionary names a table or column that the company lacks.
    void Check() const;
    /// Raises `ImportError` when a new code could be taken for an old one that is still to be re-pointed: one without
    /// a "0" cannot be marked.
    void CheckMarks(const QVector<modMain::MergeMatch>& matches) const;
    /// Reads which codes are in use, so that only those are re-pointed. Called once, before the first.
    void ReadCodes();
    /// Whether some of them are marked: a merge was interrupted.
    bool HasMarks() const;
    /// Whether an interrupted merge may have re-pointed some of them: codes without a "0" bear no mark.
    bool MayBeRepointed() const;
    /// Whether there are any.
    bool HasCodes() const;
    /// Whether the dictionary names such columns at all.
    bool AreKnown() const { return !m_references.empty(); }
    /// What is to be told of codes that no counterparty of the source has, each once: they stay, and mean whoever has
    /// them in the destination. @param takesUp an interrupted merge: codes without a "0" may be new ones already
    QStringList NotesOfStrangers(const QVector<modMain::MergeMatch>& matches, bool takesUp) const;
    /// Re-points one code, marked; returns the number of rows changed.
    qint64 Repoint(const QString& oldCode, const QString& newCode);
    /// Takes the marks away, all or none. A code that holds an "X" of its own stays as it is.
    void Unmark();

    /// Whether a column of a table (bare name) holds counterparty codes in every row.
    bool Holds(const QString& table, const QString& column) const;

    /// A code as it stands while references are being re-pointed: "0" is written "X".
    static QString Marked(QString code) { return code.replace(u'0', u'X'); }
    static QString Unmarked(QString code) { return code.replace(u'X', u'0'); }
    /// Whether it is a code of six digits with "X" for each "0".
    static bool IsMarked(const QString& code);

private:
    struct Reference {
        QString table; ///< bare name
        QString column;
        QString condition;   ///< which rows hold counterparty codes; empty for all
        QSet<QString> codes; ///< that stood there at the start
    };

    void Read();
    bool HasCode(const std::function<bool(const QString&)>& isOne) const;
    /// None when it has no such code.
    std::optional<QString> NameInDestination(const QString& code) const;
    QString Update(const Reference& reference, const QString& value, const QString& which) const;
    QStringList NeverMarked(const Reference& reference) const; ///< codes with an "X" that are no marked ones, quoted

    Session& m_session;
    Companies m_companies;
    std::vector<Reference> m_references;
};

/// What was copied for a counterparty.
struct Copied {
    QMap<QString, qint64> rows; ///< by bare table name
    QStringList notes;          ///< lines for the log
};

/// Codes of tables of which each company has its own, such as price lists, banks and agents: a copy bears those of the
/// company that it comes from.
class OwnCodes {
public:
    OwnCodes(Session& session, Companies companies);

    /// What is to be told of a code that is copied: the destination does not have it, or calls something else so.
    /// Empty for any other value, and for a code that has been told.
    /// @param table,column where it stands
    QString NoteOf(const QString& counterparty, const QString& table, const QString& column, const QString& code);

private:
    /// How a company describes a code; none when it does not have it.
    std::optional<QString> DescriptionOf(const QString& company, const schema::Table& table, const QString& codeColumn,
                                         const QString& code) const;

    Session& m_session;
    Companies m_companies;
    QSet<QString> m_told; ///< codes looked at, with their tables
};

/// Copies counterparties into the destination company.
class Copier {
public:
    /// Raises `ImportError` when the destination lacks a column of the source.
    /// @param references tells further columns that refer to counterparties than the schema does; lives as long
    Copier(Session& session, Companies companies, const References& references);

    /// Gives the new code of another counterparty that a copied row refers to; none: it is kept, and noted.
    std::function<std::optional<QString>(const QString& oldCode)> NewCodeOf = [](auto&) { return std::nullopt; };

    /// Copies a counterparty with all that hangs on it.
    Copied Copy(const modMain::MergeMatch& match);

private:
    /// Rows that are copied together, and how they change.
    struct Rows {
        QString table; ///< bare name
        QString keyColumn;
        QString oldKey;
        QString newKey;
        QString condition = {}; ///< in front of that of the key
    };

    void ReadTypes(const QString& table);
    void CopyRows(const Rows& what, Copied& copied);
    void CopyAttached(const QString& owner, const QString& oldKey, const QString& newKey, Copied& copied);
    QString InsertText(const Rows& what, const Recordset& row, Copied& copied);
    bool HoldsCounterparty(const QString& table, const QString& column) const;
    QVariant Translated(const Rows& what, const QString& column, const QVariant& value, Copied& copied);

    Session& m_session;
    Companies m_companies;
    const References& m_references;
    OwnCodes m_ownCodes;
    QHash<QString, QMap<QString, DataType>> m_types; ///< of the columns, by bare table name
};

} // namespace merge
