#pragma once

#include "adapters/contract/run/Emptying.h"
#include "adapters/contract/run/ImportRun.h"

#include <optional>

namespace contract {

/// What the writer below writes, beside the mapping of TAB_MOP.
std::vector<TableNeed> InstalmentNeeds();

/// What a reset of the payment terms deletes: those that an import wrote, with their instalments, as the tables serve
/// every company.
Emptying PaymentTermEmptying();

/// An instalment of a payment term.
struct Instalment {
    /// Payment type, empty for none; absent where the source does not tell, or its code is not known: what stands there
    /// stays.
    std::optional<QString> type;
    double days = 0;    ///< after the start, whole
    QString start;      ///< "DF" date of the invoice, "FM" end of its month
    double percent = 0; ///< of the document's total
    /// Of the month that a due date is moved to, 0 for none; absent where the source does not tell: what stands there
    /// stays.
    std::optional<double> fixedDay = {};
};

/// The percentages of so many equal instalments: of three 33.33, 33.33 and 33.34, as the last takes what is left.
std::vector<double> EqualShares(int count);

/// How many instalments a payment term has, whoever wrote them.
int CountInstalments(Session& session, const QString& term);

/// Writes the instalments of a payment term, numbered from 1: those that imports wrote are rewritten, further ones of
/// them removed. One that somebody has entered stays, and is told where it keeps one of the source out; so are shares
/// that do not make 100 within a cent. Without instalments nothing is done. Raises `SqlError`, `RowGivenUp` or, for a
/// value that does not fit, `ImportError`.
void WriteInstalments(ImportRun& run, const QString& term, const std::vector<Instalment>& instalments);

} // namespace contract
