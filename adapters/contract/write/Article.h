#pragma once

#include "adapters/contract/run/Emptying.h"
#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// What the writer below writes.
std::vector<TableNeed> ArticleNeeds();

/// What a reset of the articles empties: their tables and the texts of their languages.
Emptying ArticleEmptying();

/// Whether an article is there. One that is not is logged.
/// @param rowName the source row that names it; empty for the row under way
bool IsImported(ImportRun& run, const QString& article, const QString& rowName = {});

/// Whether the run that this one goes on with has written an article.
bool IsWrittenBefore(ImportRun& run, const QString& article);

/// What `ArticleWriter::Location` writes.
std::vector<TableNeed> LocationNeeds();

/// What a reset of the locations empties.
Emptying LocationEmptying();

/// A line of the cost or price history of an article.
struct HistoryLine {
    QString article;
    QVariant day;
    QVariant amount;
    QVariant discount;
    QString note;
    QVariant changed; ///< moment of the line in the source; Null for the moment of the import
};

/// A supplier of an article, a counterparty that is there. A value that is not valid the source does not tell, and what
/// there is of it stays; Null it has none.
struct SupplierLink {
    static constexpr size_t Values = 4; ///< beside the supplier and the mark

    QString supplier; ///< CDCON
    QVariant price = {};
    std::optional<bool> preferred = true; ///< none: the source lacks it
    QVariant leadDays = {};
    QVariant lot = {};     ///< of a reorder
    QVariant minimum = {}; ///< order quantity
    bool isFirst = false;  ///< of the article: the preferred one where nothing tells any
};

/// Writes articles and what hangs on them. It knows the target, never the origin.
/// Every operation raises `SqlError`, `RowGivenUp` or, for a value that does not fit, `ImportError`.
class ArticleWriter {
public:
    explicit ArticleWriter(ImportRun& run)
        : m_run(run) {}

    /// CDART of a source code: translated through SYS_IMP (table and field), else the code itself in the case of key
    /// fields; at most 50 characters.
    QString CodeOf(const QString& table, const QString& field, const QString& sourceCode) const;
    /// An article of a source code follows. One that an earlier row of the run had by another source code is told. Two
    /// codes that only became one because both were cut are two articles: that raises `ImportError`.
    void Claim(const QString& article, const QString& sourceCode);
    /// Writes the article of `facts.code`: a new one is inserted as valid from today, an existing one is updated, and
    /// one that an earlier row of the run has written otherwise is told, where it was claimed. Where
    /// the database takes the code of another article for it ("È" and "E"), that raises `ImportError`.
    /// @param more sets what the mapping cannot tell, after it
    RowOutcome Write(const Mapping& mapping, const SourceRow& row, const Facts& facts,
                     const std::function<void(TargetRow&)>& more = {}) const;
    /// Stores a text of ARDES or ARDEC in a language; a new one goes when the row under way is given up.
    void Text(const QString& article, const QString& column, const QString& text, const QString& language = "IT") const;
    /// Stores the description as language text of ARDES and ARDEC: 100 characters in upper case.
    void Texts(const QString& article, const QString& description) const;
    /// Links the one supplier that the source tells of an article, found by its code in the source.
    /// @return the supplier's CDCON; empty when there is none, and nothing is written
    QString Supplier(const QString& article, const QString& supplierSourceCode, double price) const;
    /// Writes the code that an article has at a counterparty. One that is there stays, with the description of now
    /// where an import has written it. @param description that it has there; empty for none
    void CodeAtCounterparty(const QString& article, const QString& code, const QString& counterparty,
                            const QString& description = {}) const;
    /// Writes another code of an article, of the company's own, unless it is there.
    void InternalCode(const QString& article, const QString& code) const;
    /// Writes a line of the cost history (STO_COS) or of the price history (STO_PRZ); an article has one a day, and a
    /// second one is left out.
    void Cost(const HistoryLine& line) const { History(QStringLiteral("STO_COS"), QStringLiteral("STCOS"), line); }
    void Price(const HistoryLine& line) const { History(QStringLiteral("STO_PRZ"), QStringLiteral("STPRZ"), line); }
    /// Writes the default location of an article and the location itself, each when it is missing.
    /// @param description of the location; empty for its code
    /// @return whether the article has gained it; else it is skipped
    RowOutcome Location(const QString& article, const QString& location, const QString& description = {}) const;

    /// The same of an article that has one location in the source: others that imports have given it are its default
    /// ones no longer.
    void OwnLocation(const QString& article, const QString& location) const;

private:
    void Describe(const SourceRow& there, const QString& description) const;
    void History(const QString& table, const QString& amountColumn, const HistoryLine& line) const;

    /// An article that a row of the run has claimed, in digests: it is small.
    struct Claimed {
        quint64 code;      ///< of the source code
        size_t values = 0; ///< of what the last row has written of it; 0: nothing yet
    };
    void TellOther(const Mapping& mapping, const TargetRow& target, const QString& article) const;

    ImportRun& m_run;
    mutable QHash<size_t, Claimed> m_claimed; ///< by the hash of the article's code
};

/// Writes the suppliers that the source tells of an article, all of them. It raises as `ArticleWriter` does.
class SupplierLinks {
public:
    SupplierLinks(ImportRun& run, QString article);

    /// Links a supplier. A link that an import has written is rewritten, one that somebody has entered stays as it is,
    /// and so does that of a supplier who has come already.
    void Add(const SupplierLink& link);
    /// Behind the last supplier: where a preferred one came, those that an import has linked and that have not come
    /// are it no longer.
    void Close() const;

private:
    /// A link that was there before.
    struct There {
        QString id;
        bool hasCome;
        bool isByImport;
        QString supplier;
        bool isPreferred;
        std::array<QVariant, SupplierLink::Values> values = {};
    };
    void ReadThere();
    void Insert(const SupplierLink& link) const;
    void Rewrite(const There& there, const SupplierLink& link) const;

    ImportRun& m_run;
    QString m_article;
    bool m_isRead = false;
    std::vector<There> m_there;
    QStringList m_new; ///< suppliers
    bool m_hasPreferred = false;
};

} // namespace contract
