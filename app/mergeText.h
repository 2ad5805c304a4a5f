#pragma once

#include "app/merge.h"

/// What a merge of counterparties says to the operator.
namespace modMain {

/// "X01 Prova Uno S.r.l.".
QString CompanyText(const Company& company);

/// "000001 Rossi --> 000007 Rossi & C. (PARTITA IVA)".
QString MatchLine(const MergeMatch& match);

/// "Controparti: 5" and how they were matched, one line for each way; the matches that want a look are counted.
QStringList MatchCounts(const MergeResult& result);

/// Which companies a merge with references has joined, when and by whom; of one that was interrupted also that it is.
QString EarlierMergeText(const EarlierMerge& earlier);

/// Why a merge is refused because of an earlier one with references, and what to do; empty when it is not. Without
/// references it depends on the matches.
QString RefusalText(const MergeResult& merge, bool updateReferences);

} // namespace modMain
