#pragma once

#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// What `RecodeArticle` writes.
std::vector<TableNeed> RecodingNeeds();

/// Gives an article that is there another code, which no article has yet, wherever it is referred to: in its own row,
/// whose search text follows, in the tables of the company that name articles, and in what hangs on it by the name of
/// its table, such as texts of languages, free attributes, images and attachments (those of its bill too). The table of
/// the attachments serves every company and does not tell them apart: all that bear the code go with it.
/// All of it is written or nothing. Raises `SqlError` or `RowGivenUp`.
void RecodeArticle(ImportRun& run, const QString& from, const QString& to);

} // namespace contract
