#pragma once

#include "adapters/contract/kinds/ImportTable.h"
#include "adapters/contract/write/Article.h"

namespace contract {

/// A supplier of an article; one that is linked already stays as it is.
struct SupplierOfArticle {
    Field supplier;     ///< its CDCON: `rules::KnownSupplier` finds it by its code
    Field ownCode = {}; ///< that the article has there
    Field price = {};
    Field leadDays = {};
    Field lot = {};     ///< of a reorder
    Field minimum = {}; ///< order quantity
    bool preferred = true;
};

/// Codes that an article has beside its own, in the row itself or in rows of another table.
struct Aliases {
    ChildTable rows = {};
    Field code;
};

/// Descriptions of an article in another language.
struct LanguageTexts {
    ChildTable rows = {};
    Field language; ///< CDLNG, e.g. "EN"
    Field text;
};

/// An import of articles, with what hangs on them. An article that is there is rewritten.
struct Articles {
    Frame frame = {};
    SourceTable source;
    Field code;        ///< its CDART: `rules::ArticleCode` makes it
    Field description; ///< of the company's own language, also as text of ARDES and ARDEC
    /// Of ART_ICO, over the usual ones: descriptions, kind, stock and warehouse.
    Lines lines = {};
    std::vector<SupplierOfArticle> suppliers = {};
    std::vector<Aliases> aliases = {};
    Field location = {};
    std::vector<LanguageTexts> languages = {};
    /// Why the rows of an article behind the first are left out, in the operator's words; empty: they rewrite it.
    QString furtherRows = {};
    Emptying empties = ArticleEmptying();

    // What is odd about an origin.
    LeavesOut leavesOut = {};
    /// Sets what the lines cannot tell, behind them.
    std::function<void(ImportRun&, const SourceRow&, TargetRow&)> more = {};
    /// Writes what hangs on the article beyond the declaration. @param article its CDART
    std::function<void(ImportRun&, const SourceRow&, const QString& article)> after = {};
    Needs further = {}; ///< what the hooks read and write
};

/// The declaration as part of a procedure, and what the procedure tells of itself: see `ProcedureOf`.
ImportPart PartOf(const Articles& declared);
Frame FrameOf(const Articles& declared);

} // namespace contract
