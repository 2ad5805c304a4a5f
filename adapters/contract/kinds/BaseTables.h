#pragma once

#include "adapters/contract/kinds/ImportTable.h"
#include "adapters/contract/write/PaymentTerm.h"

namespace contract {

/// An import of a table whose key is one code column. A code that is there is rewritten.
struct BaseTable {
    Frame frame = {};
    SourceTable source;
    QString target;   ///< bare name
    Field code;       ///< of the code column
    Lines lines = {}; ///< of the other columns
    Emptying empties = {};
    LeavesOut leavesOut = {};
};

/// Instalments of a payment term, in rows of another table or in the term's own row. One without days, start and
/// percent is none.
struct InstalmentFields {
    ChildTable rows = {};
    Field type = {}; ///< CDMPT
    Field days = {};
    Field start = {};   ///< "DF" date of the invoice (without it), "FM" end of its month
    Field percent = {}; ///< where no instalment has one they are equal shares
};

/// Instalments that the source tells by their number: the first after so many days, each further one so many later.
struct InstalmentSeries {
    Field count;
    Field firstDays = {};
    Field everyDays = {};
    Field type = {};
    Field start = {};
};

/// An import of payment terms, which serve every company: a reset deletes only those that an import wrote.
struct PaymentTerms {
    Frame frame = {};
    SourceTable source;
    Field code;
    Lines lines = {}; ///< of TAB_MOP
    std::vector<InstalmentFields> instalments = {};
    std::optional<InstalmentSeries> series = {};
};

/// An import of a chart of accounts: PIA_CON in one table, MAS_TRI for ledgers and CON_CON for accounts in two. In one
/// table every account gets the path of the ledgers above it, which the lines name by PCMAS.
struct Accounts {
    Frame frame = {};
    BaseTable accounts;                    ///< of PIA_CON, or of CON_CON
    std::optional<BaseTable> ledgers = {}; ///< of MAS_TRI
};

/// The declarations as parts of a procedure, and what the procedure tells of itself: see `ProcedureOf`.
ImportPart PartOf(const BaseTable& declared);
Frame FrameOf(const BaseTable& declared);
ImportPart PartOf(const PaymentTerms& declared);
Frame FrameOf(const PaymentTerms& declared);

/// The procedure of a chart of accounts.
Procedure ProcedureOf(std::optional<Button> button, const Accounts& declared);

} // namespace contract
