#pragma once

#include "adapters/contract/run/Emptying.h"

/// Rows that refer by their codes to rows that go: whoever is given such a code next gets them too.
namespace brokenReferences {

/// A column that holds codes of another table.
struct Reference {
    QString table; ///< bare name
    QString column;
    QString of;    ///< the column of those codes, in the other table
    QString owner; ///< column that names the other table; empty: it is always that one
};
/// The columns of the schema that hold codes of a table (bare name).
std::vector<Reference> ReferencesTo(const QString& table);

/// The physical name of a table (bare name) in a company.
QString PhysicalName(const QString& table, const QString& company);
/// The tables in which rows may refer to a table (bare name) of a company, by their physical names: to one that all
/// companies share those of all of them, to counterparties also those of companies that were merged into this one with
/// their references. They need not be there. Raises `SqlError`.
QStringList ReferringTables(ovConnection& quadrix, const Reference& reference, const QString& table,
                            const QString& company);

/// Rows left referring to what is not there.
struct Broken {
    QString table; ///< physical name
    QString column;
    qint64 rows = 0;
    bool isOfMerged = false; ///< of a company that was merged into this one; its own where it was filled anew since
};
/// What would be left in all those tables when those rows of the company under work are deleted, and of attachments,
/// whichever company has them. A table that cannot be read is left out: it is not there, or the check before the run
/// tells it.
std::vector<Broken> LeftBy(Session& session, const std::vector<contract::RowsToDelete>& rows);

/// "X01_DOC_ACQ (DTCON): 92, X01_ART_FOR (AFFOR): 147", and what is to be known of merged companies; empty when nothing
/// is left.
QString TextOf(const std::vector<Broken>& broken);

} // namespace brokenReferences
