#pragma once

#include "adapters/contract/kinds/ImportTable.h"
#include "adapters/contract/kinds/Roles.h"
#include "adapters/contract/write/Counterparty.h"

namespace contract {

/// Branches of a counterparty. A row without a street (the source of SEIND) is none.
struct Branches {
    ChildTable rows = {};
    Lines lines = {}; ///< of CON_SED, over the usual ones: destination of goods, Italy, not the default
    NumberColumns numbers = {};
};

/// Contact persons of a counterparty. A row without a name (the source of RFNOM) is none.
struct Contacts {
    ChildTable rows = {};
    Lines lines = {}; ///< of CON_RIF
    NumberColumns numbers = {};
};

/// What an import does with counterparties.
enum class PartyWriting {
    Imported,
    /// Those that an earlier import has written are found by their code of the source and get every column of the lines
    /// anew; what an import has hung on them is deleted and written again. Others are left out, and logged.
    Refreshed,
};

/// An import of customers, suppliers and carriers. A counterparty that is there (by its code of the source, else its
/// VAT number, else its tax code) gains the columns of its roles; what hangs on it is written unless it hangs there
/// already. A row without a code is given up.
struct Counterparties {
    Frame frame = {};
    SourceTable source;
    RoleTeller roles; ///< a row that is nobody of them is left out, and logged
    Field name;       ///< the whole name
    Field vatNumber = {};
    Field taxCode = {};
    /// What tells it apart is the code column of the source; SYS_IMP knows it by this name when it is another one.
    QString codeName = {};
    QString codeTable = {}; ///< the same of the table
    /// CDCON that SYS_IMP tells of another code of the source, before that one: it does not record what is missing.
    Field told = {};
    Field number = {}; ///< a customer's number, where the code is more than that
    /// CDCON of the counterparty that the source itself says it is, whatever their numbers; blank: it is looked for.
    Field sameAs = {};
    /// Whether the source links the two by its own word, so that they are one whatever names and numbers say; else a
    /// stranger is not taken for the one.
    bool sameIsTold = false;
    /// Of CON_TRO, over the usual ones: code, day of the import, marks and codes of the roles, Italy, euro and the
    /// like.
    Lines lines = {};
    NumberColumns numbers = {};
    Field created = {}; ///< moment of what is written; without it that of the import
    std::vector<Branches> branches = {};
    std::vector<Contacts> contacts = {};
    PartyWriting writing = PartyWriting::Imported;
    bool empties = true; ///< whether a reset empties the counterparties; a second import of a source must not

    // What is odd about an origin.
    LeavesOut leavesOut = {};
    /// The same of a row that the source has cancelled: who is there and in use is told.
    LeavesOut cancelled = {};
    /// Sets what the lines cannot tell, behind them.
    std::function<void(ImportRun&, const SourceRow&, TargetRow&)> more = {};
    /// Writes what hangs on the counterparty beyond the declaration.
    std::function<void(ImportRun&, CounterpartyWriter&, const SourceRow&, const Owner&)> after = {};
    /// What runs behind the emptying, before the first row.
    std::function<void(ImportRun&, const QString& singleCode)> before = {};
    Needs further = {}; ///< what the hooks read and write
};

/// The declaration as part of a procedure, and what the procedure tells of itself: see `ProcedureOf`.
ImportPart PartOf(const Counterparties& declared);
Frame FrameOf(const Counterparties& declared);

} // namespace contract
