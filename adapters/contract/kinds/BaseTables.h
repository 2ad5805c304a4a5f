#pragma once

#include "adapters/contract/kinds/ImportTable.h"
#include "adapters/contract/write/PaymentTerm.h"

namespace contract {

/// An import of a table whose rows one code column tells apart, such as VAT codes, units, payment types, agents or
/// families, or several columns: letters of intent, checks of articles. A row that is there is rewritten. The code of
/// the source is kept where the table has a column for it ("IVEXT"); a row whose keys name an article that is not there
/// is left out, and logged.
struct BaseTable {
    Frame frame = {};
    SourceTable source;
    QString target;   ///< bare name
    Field code = {};  ///< of the code column
    Lines lines = {}; ///< of the other columns
    Emptying empties = {};
    QStringList keys = {}; ///< in place of the code: target columns, which the lines write
    LeavesOut leavesOut = {};
};

/// One as a part of a procedure of several, whose rows come by their code.
/// @param step what the part is called @param key code column of the source
BaseTable CodeTable(const QString& step, const QString& table, const QString& key, const QString& target,
                    const Lines& lines);

/// An import of the company's own banks (BAN_CHE). A bank is known by its code of the source, which BAEXT keeps, else
/// by its IBAN; a new one gets the next code of five digits.
struct Banks {
    Frame frame = {};
    SourceTable source;
    Field code;       ///< of the source
    Field iban = {};  ///< without blanks: `rules::WithoutBlanks`
    Lines lines = {}; ///< of the other columns
    Emptying empties = {};
};

/// Instalments of a payment term, in rows of another table or in the term's own row. One without days, start and
/// percent is none.
struct InstalmentFields {
    ChildTable rows = {};
    Field type = {}; ///< CDMPT
    Field days = {};
    Field fixedDay = {}; ///< of the month that a due date is moved to; blank and 0: none
    Field start = {};    ///< "DF" date of the invoice, "FM" end of its month; without it that of the term
    Field percent = {};  ///< where no instalment has one they are equal shares
};

/// Instalments that the source tells by their number: the first after so many days, each further one so many later.
/// They hold for a term that has no others.
struct InstalmentSeries {
    Field count;
    Field firstDays = {};
    Field everyDays = {};
    Field type = {};
    Field fixedDay = {}; ///< as above
    Field start = {};    ///< as above
};

/// An import of payment terms, which serve every company: a reset deletes only those that an import wrote, and a term
/// for which the source has no instalments keeps its own. The number of instalments (MPRAT) is that of those there are,
/// unless a line tells it; one that is told and is another is logged.
struct PaymentTerms {
    Frame frame = {};
    SourceTable source;
    Field code;
    Lines lines = {}; ///< of TAB_MOP
    Field start = {}; ///< of the instalments that tell none; without it "DF"
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
ImportPart PartOf(const Banks& declared);
Frame FrameOf(const Banks& declared);
ImportPart PartOf(const PaymentTerms& declared);
Frame FrameOf(const PaymentTerms& declared);

/// The procedure of a chart of accounts.
Procedure ProcedureOf(std::optional<Button> button, const Accounts& declared);

} // namespace contract
