#pragma once

#include "core/Record.h"
#include "core/Session.h"

/// Calculations of the production component on articles.
namespace qdxProduction {

/// Inserts an article, as valid from the processing date and not cancelled, or updates the one of that code.
/// @param code its CDART
/// @param article a row of ART_ICO that holds nothing yet
/// @param fill sets the values of the article in that row; what it sets wins
/// @return true when the article is a new one. Raises `SqlError`, `RowGivenUp` or what `fill` raises.
bool qdxInsertUpdateArticolo(Session& session, const QString& code, Record& article, const std::function<void()>& fill);

/// Cost, mark-up in percent and price of an article as it stands; each may be Null.
struct ArticleAmounts {
    QVariant cost;
    QVariant markUp;
    QVariant price;
};

/// Those of the article of that code. Raises `ImportError` naming an article that is not there.
ArticleAmounts AmountsOf(Session& session, const QString& code);

} // namespace qdxProduction
