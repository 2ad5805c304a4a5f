#pragma once

#include "adapters/contract/run/Emptying.h"
#include "adapters/contract/write/CounterpartyRegister.h"

namespace contract {

inline const QString BranchTable = QStringLiteral("CON_SED");
inline const QString ContactTable = QStringLiteral("CON_RIF");

/// The row that a telephone number or an address hangs on.
struct Owner {
    QString table;           ///< bare name: "CON_TRO", "CON_RIF" or "CON_SED"
    QString key;             ///< its code or RECORD_ID
    bool known = false;      ///< whether it was there before the source row
    PendingRows::Id id = {}; ///< RECORD_ID in place of the key; null: the key is known
    bool isAgain = false;    ///< as `Placement::isAgain`
};

/// The counterparty itself as owner.
inline Owner OwnerOf(const Placement& place) {
    return {QStringLiteral("CON_TRO"), place.code, place.known, {}, place.isAgain};
}

/// What the writer below writes, and what the register reads.
std::vector<TableNeed> CounterpartyNeeds();

/// What a reset of the counterparties empties.
Emptying CounterpartyEmptying();

/// What earlier imports have hung on counterparties: nothing that is written while the object lives.
class EarlierImports {
public:
    /// Raises `SqlError`.
    explicit EarlierImports(ImportRun& run);

    /// Deletes the branches and contacts of a counterparty, with their numbers and addresses, and the numbers and
    /// addresses of the counterparty itself. What was entered by hand stays. Raises `SqlError`. @param party its CDCON
    void Drop(const QString& party) const;

private:
    void DropNumbers(const QString& owner, const QString& key, const QString& further) const;
    QString Earlier(const QString& table, const QString& rows) const;

    ImportRun& m_run;
    QHash<QString, qint64> m_last; ///< highest RECORD_ID of each table
};

/// Sets the IBAN of an Italian account in a row of CON_TRO that has none but the other coordinates of its bank; those
/// that cannot be of one are told.
void SetIban(ImportRun& run, const SourceRow& row, TargetRow& party);

/// A text without "/", " ", "-" and "\": how telephone numbers and web addresses are stored.
QString WithoutSeparators(QString text);

/// A telephone number as it is stored: without separators; of what is no number a zero and the number that it begins
/// with. Empty for a blank one.
QString StoredNumber(const QString& number);

/// Source columns of the numbers and addresses of a counterparty; an empty one the source does not have.
struct NumberColumns {
    QString office = {};
    QString office2 = {};
    QString fax = {};
    QString mobile = {};
    QString mail = {};
    QString web = {};
    QString home = {};
    QString telex = {};
    bool zeroIsNone = false; ///< in columns of numbers

    /// Those that the source has.
    QStringList Names() const;
};

/// How a source row becomes a row of CON_TRO: whole for a new counterparty; for one that is there the columns of its
/// roles alone (`CustomerOnly` and `SupplierOnly`, and the mark of the role), of which a discount that the source does
/// not tell is cleared (unless `CounterpartyRegister::KeepDiscounts` takes that back).
class CounterpartyMapping {
public:
    explicit CounterpartyMapping(Mapping whole);

    const Mapping& Whole() const { return m_whole; }
    /// What a role adds.
    const Mapping& Role(bool customer) const { return customer ? m_customer : m_supplier; }
    /// The marks that hold for all roles, COANN and COBLK, as far as the source tells them.
    const Mapping& Marks() const { return m_marks; }
    /// What it tells of discounts.
    const Mapping& Discounts() const { return m_discounts; }
    /// The whole and the roles, for `Needs`.
    std::vector<const Mapping*> All() const { return {&m_whole, &m_customer, &m_supplier}; }

private:
    Mapping m_whole;
    Mapping m_customer;
    Mapping m_supplier;
    Mapping m_marks;
    Mapping m_discounts;
};

/// Where the row of a branch comes from.
struct BranchSource {
    const Mapping& mapping;
    const SourceRow& row;
};

/// Writes the counterparty of a source row and what hangs on it. It knows the target, never the origin.
/// Every operation raises `SqlError`, `RowGivenUp` or, for a value that does not fit, `ImportError`.
class CounterpartyWriter {
public:
    /// Children that were there and stand for a row of the source already, as table and RECORD_ID.
    using MetChildren = QSet<QString>;

    /// @param run the run under way @param created DTINS of the rows; Null for the moment of the import
    /// @param met outlives the writer, where children of one counterparty come in several rows of the source; null: all
    /// of them come in one
    CounterpartyWriter(ImportRun& run, QVariant created, MetChildren* met = nullptr)
        : m_run(run),
          m_created(std::move(created)),
          m_met(met == nullptr ? m_ownMet : *met) {}

    /// Inserts a new counterparty, or updates the columns of its roles on one that is there.
    /// @param more sets what the mapping cannot tell, after it
    RowOutcome Write(const CounterpartyMapping& mapping, const SourceRow& row, const Placement& place,
                     const Roles& roles, const std::function<void(TargetRow&)>& more = {}) const;

    /// Applies a further mapping of a counterparty: whole for a new one, else its roles' columns.
    void Apply(const CounterpartyMapping& mapping, const SourceRow& row, const Placement& place, const Roles& roles,
               TargetRow& target) const;

    // What hangs on an owner that was there before is written unless it hangs there already. Numbers, addresses and
    // contacts of one that the source row has made before are not: they may have been mended or deleted since; the log
    // names those that do not hang there. An owner without a table is none, on which nothing is written.

    /// Writes the numbers and addresses of the columns, each under its usual label.
    void Numbers(const Owner& owner, const SourceRow& row, const NumberColumns& columns) const;
    /// Writes a telephone number as "+39" and the number without separators. What is no number is written as a zero
    /// and the number that it begins with, and logged, as is one with a prefix of a country or of more than 15 digits.
    /// A blank one writes nothing.
    void Telephone(const Owner& owner, const QString& label, const QString& number) const;
    /// Writes a web site, without separators. A blank one writes nothing.
    void WebSite(const Owner& owner, const QString& address,
                 const QString& label = QStringLiteral("Indirizzo Web")) const;
    /// Writes an e-mail address in lower case, without "/", " " and "\". A blank one writes nothing; of several in one
    /// text each is written, those behind the first under "@ Ufficio" where its label is "@ Principale".
    void Mail(const Owner& owner, const QString& label, const QString& address) const;
    /// Writes a contact person of a counterparty and returns the owner for what hangs on it; none for a contact that is
    /// not written again.
    Owner Contact(const Owner& counterparty, const QString& name);
    /// Inserts a contact person of a counterparty, which a mapping has filled, unless one of that name is there, and
    /// returns the owner for what hangs on it.
    Owner Contact(const Owner& counterparty, TargetRow& contact);
    /// Inserts a branch of a counterparty, which a mapping has filled, unless one of that kind, name and address is
    /// there, and returns the owner for what hangs on it. A code that another branch has is changed, and logged. One
    /// that is there gets the codes of Quadrix that it lacks.
    /// @param from null: a code of the source that stands in for one of Quadrix is not known as that
    Owner Branch(const Owner& counterparty, TargetRow& branch, const BranchSource* from = nullptr);
    /// Gives a branch that is there the codes of Quadrix that it lacks; false when it lacks none, or is not there.
    bool FillBranch(const Owner& counterparty, const TargetRow& branch, const BranchSource& from);
    /// A row of a table that hangs on a counterparty, with its creation moment.
    TargetRow NewRow(const QString& table) const;
    TargetRow NewRow(const QString& table, const Owner& owner) const;

private:
    std::optional<Owner> Met(const Owner& counterparty, const TargetRow& row, const QString& table,
                             const QStringList& alike);
    void MeetChild(const QString& child);
    bool FillMet(const Owner& met, const TargetRow& branch, const BranchSource* from) const;
    QString ChildrenOf(const Owner& counterparty, const QString& table) const;
    Owner Insert(TargetRow& row, const QString& table, const Owner& counterparty);
    bool Hangs(const Owner& owner, const QString& table, const QString& column,
               const std::function<bool(const QString&)>& isIt) const;
    void TellSecondDefault(const Owner& counterparty, const TargetRow& branch) const;
    QString FreeBranchCode(const Owner& counterparty, const QString& code);
    void Address(const Owner& owner, const QString& kind, const QString& label, const QString& address) const;
    bool IsLeft(const Owner& owner, const QString& what, const QString& value) const;

    ImportRun& m_run;
    QVariant m_created;
    MetChildren m_ownMet;
    MetChildren& m_met;
    std::optional<QSet<QString>> m_branchCodes; ///< of the counterparty under way, in upper case
};

} // namespace contract
