#pragma once

#include "adapters/contract/kinds/ImportTable.h"
#include "adapters/contract/write/PriceList.h"

namespace contract {

/// A price for a range of quantities: up to one or, in sources that tell it so, from one on. One whose price the rule
/// leaves out (`rules::NotZero`) is none: how numbered columns that are not used are told.
struct ScaleFields {
    Field quantity = {}; ///< up to which it holds; blank and 0: any quantity
    /// In place of it, the one that it holds from: then the rows come by list, article, first day and quantity.
    Field quantityFrom = {};
    Field price;
    std::vector<Field> discounts = {}; ///< at most three
};

/// Scales of a price in rows of another table.
struct ScaleRows {
    ChildTable rows;
    ScaleFields scale;
};

/// A price of an article in a list, as one source row tells it.
struct PriceFields {
    Field list;
    /// CDCON of the counterparty whose own list it is (`rules::CustomerOf`): its code is the list's then, its name the
    /// description, and it is given the list. Blank: the list is nobody's.
    Field owner = {};
    Field direction; ///< "V" sales or "A" purchases; any other text raises `ImportError`
    Field description = {};
    Field currency = {}; ///< without it the euro
    Field since = {};    ///< day from which the list itself holds; without it that of the import
    Field from = {};
    Field to = {};
    Field note = {};
    std::vector<ScaleFields> scales = {};
    std::optional<ScaleRows> scaleRows = {}; ///< in place of the scales, for a price that has some there
};

/// An import of price lists. A row holds one price or several: the quantities of a list, or, in numbered columns, the
/// prices of several lists. A price that is there is rewritten, and another one that it had is logged; a price of an
/// article that is not there is left out, and logged.
struct PriceLists {
    Frame frame = {};
    SourceTable source;
    Field article; ///< its CDART: `rules::ArticleCode` makes it
    std::vector<PriceFields> prices;
    LeavesOut leavesOut = {};
};

/// The prices of numbered columns: `of` makes the one of each number from first to last.
std::vector<PriceFields> Numbered(int first, int last, const std::function<PriceFields(const QString& number)>& of);

/// The declaration as part of a procedure, and what the procedure tells of itself: see `ProcedureOf`.
ImportPart PartOf(const PriceLists& declared);
Frame FrameOf(const PriceLists& declared);

} // namespace contract
