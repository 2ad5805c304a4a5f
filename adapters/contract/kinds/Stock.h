#pragma once

#include "adapters/contract/kinds/ImportTable.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Stock.h"

namespace contract {

/// An import of opening balances. A warehouse of the source is translated through SYS_IMP, else known to MAG_AZZ, else
/// the principal one, which the log tells once for each.
struct Balances {
    Frame frame = {};
    SourceTable source;
    Field warehouse = {}; ///< code in the source; without it the principal one
    Field article;        ///< its CDART: `rules::ArticleCode` makes it
    Field quantity;
    Field unit = {};  ///< without it that of the article
    Field price = {}; ///< without it the cost of the article
    Field location = {};
    LeavesOut leavesOut = {};
};

/// An import of the locations of articles. A row without a location, or of an article that is not there, is left out.
struct Locations {
    Frame frame = {};
    SourceTable source;
    Field article; ///< its CDART: `rules::ArticleCode` makes it
    Field location;
    Field description = {};
};

/// What carries one row over where an origin writes its balances by a hand of its own, such as those of sheets. In the
/// end what earlier imports have left of that kind is told.
/// @param like a balance such as the origin writes, see `StockWriter::WritesLike`
using EachBalance = std::function<RowOutcome(ImportRun&, StockWriter&, const SourceRow&)>;
MakeImporter ImportingStock(EachBalance row, const StockLine& like);

/// The declaration as part of a procedure, and what the procedure tells of itself: see `ProcedureOf`.
ImportPart PartOf(const Balances& declared);
Frame FrameOf(const Balances& declared);
ImportPart PartOf(const Locations& declared);
Frame FrameOf(const Locations& declared);

} // namespace contract
