#pragma once

#include "adapters/contract/kinds/ImportTable.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/FreeAttribute.h"

namespace contract {

/// A supplier of an article, or several in rows of another table. A link that an import has written is rewritten; one
/// that somebody has entered stays as it is.
struct SupplierOfArticle {
    ChildTable rows = {};
    Field supplier;            ///< its CDCON: `rules::KnownSupplier` finds it by its code
    Field ownCode = {};        ///< that the article has there
    Field ownDescription = {}; ///< the same of its description
    Field price = {};
    Field leadDays = {};
    Field lot = {};     ///< of a reorder
    Field minimum = {}; ///< order quantity
    /// A yes or no; without it the first of the article is. The links that imports have written and that the source no
    /// longer has are it no more.
    Field preferred = {};
};

/// A supplier as a hook finds it. One without CDCON the source names, and it is not there.
struct FoundSupplier {
    SupplierLink link;
    QString ownCode = {};        ///< that the article has there
    QString ownDescription = {}; ///< the same
};

/// Codes that an article has beside its own, in the row itself or in rows of another table.
struct Aliases {
    ChildTable rows = {};
    Field code;
    /// CDCON of the counterparty that calls the article so (`rules::KnownCustomer`): without one nothing is written,
    /// and a blank one is logged. Without the field the code is one of the company's own.
    Field counterparty = {};
    Field ownDescription = {}; ///< that the article has there
};

/// Units of an article in rows of another table, beside those that its own lines write.
struct UnitsOfArticle {
    ChildTable rows;
    Field unit;        ///< `rules::Unit`
    Field factor = {}; ///< of the second unit (ARCOE)
    /// Where the unit goes: columns with a blank between, "ARUMS" (stock), "ARUM2" (second), "ARUMP" (purchases) and
    /// "ARUMV" (sales); blank: nowhere. Without the field each is a second unit. An article has one second unit, and
    /// further ones are logged. What neither rows nor lines tell goes, unless an article has no rows or is a hand's.
    Field places = {};
    /// Whether the settings ask for them; empty: always.
    std::function<bool(Session&)> areAsked = {};
};

/// Descriptions of an article in another language.
struct LanguageTexts {
    ChildTable rows = {};
    Field language; ///< CDLNG, e.g. "EN"
    Field text;
};

/// What becomes of an article that is there.
enum class ArticleThere { Rewritten, Kept };

/// An import of articles, with what hangs on them. A row without a code is given up, and so is one whose code differs
/// from that of an earlier row only behind its 50th character.
struct Articles {
    Frame frame = {};
    SourceTable source;
    Field code;        ///< its CDART: `rules::ArticleCode` makes it
    Field description; ///< of the company's own language, also as text of ARDES and ARDEC
    /// Of ART_ICO, over the usual ones: descriptions, kind, stock and warehouse.
    Lines lines = {};
    std::vector<SupplierOfArticle> suppliers = {};
    /// Further ones, which fields do not tell; the hook reads columns that the source cannot lack.
    std::function<std::vector<FoundSupplier>(ImportRun&, const SourceRow&)> foundSuppliers = {};
    std::vector<Aliases> aliases = {};
    std::vector<UnitsOfArticle> units = {};
    Field location = {};
    std::vector<LanguageTexts> languages = {};
    /// Why the rows of an article behind the first are left out, in the operator's words; empty: they rewrite it.
    QString furtherRows = {};
    ArticleThere there = ArticleThere::Rewritten;
    Emptying empties = ArticleEmptying();

    // What is odd about an origin.
    /// A condition on the rows that only the run knows, without WHERE; an empty text asks for every row.
    std::function<QString(Session&)> condition = {};
    LeavesOut leavesOut = {};
    /// The same of a row that the source has cancelled: an article that is there and in use is told.
    LeavesOut cancelled = {};
    /// Sets what the lines cannot tell, behind them.
    std::function<void(ImportRun&, const SourceRow&, TargetRow&)> more = {};
    /// Is shown each row that is not left out, whether its article is written or stays.
    std::function<void(ImportRun&, const SourceRow&)> each = {};
    /// Writes what hangs on the article beyond the declaration. @param article its CDART
    std::function<void(ImportRun&, const SourceRow&, const QString& article)> after = {};
    /// Writes the free attributes of the article. @param article its CDART
    std::function<void(ImportRun&, FreeAttributeWriter&, const SourceRow&, const QString& article)> attributes = {};
    Needs further = {}; ///< what the hooks read and write
};

/// A hook for `more`: sets ARRIC, the mark-up in percent of the price over the cost that the article has been given; 0
/// for a price or a cost of 0, Null for a blank price, nothing where the source tells none.
void SetMarkUp(ImportRun& run, const SourceRow& row, TargetRow& article);

/// The declaration as part of a procedure, and what the procedure tells of itself: see `ProcedureOf`.
ImportPart PartOf(const Articles& declared);
Frame FrameOf(const Articles& declared);

} // namespace contract
