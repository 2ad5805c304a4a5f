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

/// What is noted, by kind, with the first of each.
QStringList NoteLines(const MergeResult& result);

/// Which companies a merge with references has joined, when and by whom; of one that was interrupted also that it is.
QString EarlierMergeText(const EarlierMerge& earlier);
/// The same, and whose codes the rows of the source have since.
QString ForeignCodesText(const EarlierMerge& earlier);

/// Why a merge is refused because of an earlier one with references, and what to do; empty when it is not. Without
/// references it depends on the matches.
QString RefusalText(const MergeResult& merge, bool updateReferences);

/// What is to be known of a destination that was itself merged into another company; empty of any other.
QString IntoMergedText(const MergeResult& merge);
/// Why a merge into such a company is refused, and what to do; empty when nobody would be copied.
QString IntoMergedRefusal(const MergeResult& merge);

} // namespace modMain
