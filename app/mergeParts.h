#pragma once

#include "app/merge.h"

/// The parts of a counterparty merge.
namespace merge {

/// The two companies, with their codes as the database writes them.
struct Companies {
    QString from;
    QString to;
};

/// Finds both companies. Raises `ImportError` when one is unknown or both are the same.
Companies FindCompanies(Session& session, const QString& from, const QString& to);
/// Physical name of a company's table.
QString TableOf(const QString& company, const QString& bareName);
/// A text as a literal.
QString Quoted(const Session& session, const QString& text);

/// Finds the match of every counterparty of the source company, by its code; nothing when the operator cancelled.
/// Raises `ImportError` for a code that is not six digits and when the destination has no more codes.
std::optional<QVector<modMain::MergeMatch>> FindMatches(Session& session, const Companies& companies,
                                                        Progress& progress);

/// The columns of the source company that hold counterparty codes.
class References {
public:
    /// Reads the dictionary. Raises `ImportError` when it names a table or column that the company lacks.
    References(Session& session, Companies companies);

    /// Raises `ImportError` when a new code could be taken for an old one that is still to be re-pointed: one without
    /// a "0" cannot be marked.
    void CheckMarks(const QVector<modMain::MergeMatch>& matches) const;
    /// Reads which codes are in use, so that only those are re-pointed. Called once, before the first.
    void ReadCodes();
    /// Re-points one code, marked; returns the number of rows changed.
    qint64 Repoint(const QString& oldCode, const QString& newCode);
    /// Takes the marks away, all or none.
    void Unmark();

    /// Whether a column of a table (bare name) holds counterparty codes in every row.
    bool Holds(const QString& table, const QString& column) const;

    /// A code as it stands while references are being re-pointed: "0" is written "X".
    static QString Marked(QString code) { return code.replace(u'0', u'X'); }
    static QString Unmarked(QString code) { return code.replace(u'X', u'0'); }

private:
    struct Reference {
        QString table; ///< bare name
        QString column;
        QString condition;   ///< which rows hold counterparty codes; empty for all
        QSet<QString> codes; ///< that stood there at the start
    };

    void Read();
    void Check() const;
    QString Update(const Reference& reference, const QString& value, const QString& which) const;

    Session& m_session;
    Companies m_companies;
    std::vector<Reference> m_references;
};

/// Copies counterparties into the destination company.
class Copier {
public:
    /// Raises `ImportError` when the destination lacks a column of the source.
    Copier(Session& session, Companies companies);

    /// Gives the new code of a counterparty that a copied row refers to; without it they are copied as they are.
    std::function<QString(const QString& oldCode)> NewCodeOf;
    /// Tells the columns that refer to counterparties.
    const References* KnownReferences = nullptr;

    /// Copies a counterparty with all that hangs on it. @param copied rows written, by bare table name
    void Copy(const modMain::MergeMatch& match, QMap<QString, qint64>& copied);

private:
    /// A table that is copied along.
    struct Part {
        QString table;      ///< bare name
        QString codeColumn; ///< holds the counterparty's code
        QString condition;  ///< behind the code's
        QMap<QString, DataType> types;
    };

    void ReadTypes(Part& part);
    qint64 CopyRows(const Part& part, const modMain::MergeMatch& match);
    QString InsertText(const Part& part, const Recordset& rows, const QString& newCode) const;
    QVariant Translated(const Part& part, const QString& column, const QVariant& value) const;

    Session& m_session;
    Companies m_companies;
    std::vector<Part> m_parts;
};

} // namespace merge
