#pragma once

#include "adapters/contract/run/Emptying.h"
#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// What the writer below writes.
std::vector<TableNeed> ArticleNeeds();

/// What a reset of the articles empties: their tables and the texts of their languages.
Emptying ArticleEmptying();

/// Why a source row is left out whose article is not there.
inline const QString ArticleMissing = QStringLiteral("articolo non trovato");

/// Whether an article is there. One that is not is logged.
/// @param rowName the source row that names it; empty for the row under way
bool IsImported(ImportRun& run, const QString& article, const QString& rowName = {});

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

/// A supplier of an article, a counterparty that is there.
struct SupplierLink {
    QString supplier; ///< CDCON
    double price = 0;
    bool preferred = true;
    QVariant leadDays = {}; ///< Null: not told
    QVariant lot = {};      ///< of a reorder
    QVariant minimum = {};  ///< order quantity
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
    /// Writes the article of `facts.code`: a new one is inserted as valid from today, an existing one is updated.
    /// @param more sets what the mapping cannot tell, after it
    RowOutcome Write(const Mapping& mapping, const SourceRow& row, const Facts& facts,
                     const std::function<void(TargetRow&)>& more = {}) const;
    /// Stores a text of ARDES or ARDEC in a language; a new one goes when the row under way is given up.
    void Text(const QString& article, const QString& column, const QString& text, const QString& language = "IT") const;
    /// Stores the description as language text of ARDES and ARDEC: 100 characters in upper case.
    void Texts(const QString& article, const QString& description) const;
    /// Links a supplier, found by its code in the source.
    /// @return the supplier's CDCON; empty when there is none, and nothing is written
    QString Supplier(const QString& article, const QString& supplierSourceCode, double price) const;
    /// Links a supplier, a counterparty that is there; one that is linked already stays as it is.
    void Link(const QString& article, const QString& supplier, double price, bool preferred = true) const {
        Link(article, SupplierLink{supplier, price, preferred});
    }
    /// The same, with what the supplier asks.
    void Link(const QString& article, const SupplierLink& link) const;
    /// Writes the code that an article has at a counterparty, unless it is there.
    /// @param description that it has there; empty for none
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

private:
    void History(const QString& table, const QString& amountColumn, const HistoryLine& line) const;

    ImportRun& m_run;
};

} // namespace contract
