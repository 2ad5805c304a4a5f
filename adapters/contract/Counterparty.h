#pragma once

#include "adapters/contract/ImportRun.h"

namespace contract {

/// The row that a telephone number or an address hangs on.
struct Owner {
    QString table; ///< bare name: "CON_TRO", "CON_RIF" or "CON_SED"
    QString key;   ///< its code or RECORD_ID
};

/// What the writer below writes.
std::vector<TableNeed> CounterpartyNeeds();

/// The tables of counterparties, in the order in which a reset empties them.
const QStringList& CounterpartyTables();

/// A text without "/", " ", "-" and "\": how telephone numbers and web addresses are stored.
QString WithoutSeparators(QString text);

/// What tells a counterparty of the source from others.
struct SourceIdentity {
    QString table; ///< source table and code column, as SYS_IMP knows them
    QString field;
    QString code;
    bool customer = false; ///< else a supplier
    QString vatNumber;
    QString taxCode;
    QString number = {}; ///< of a customer whose code is more than its number: the number
};

/// The Quadrix code of a counterparty of the source.
struct Placement {
    QString code;
    bool known = false; ///< the counterparty is there already: it only gains what the source row adds
};

/// Writes what hangs on a counterparty. It knows the target, never the origin.
/// Every operation raises `SqlError`, `RowGivenUp` or, for a value that does not fit, `ImportError`.
class CounterpartyWriter {
public:
    /// @param run the run under way @param created DTINS of the rows; Null for the moment of the import
    CounterpartyWriter(ImportRun& run, QVariant created)
        : m_run(run),
          m_created(std::move(created)) {}

    /// CDCON of the counterparty with that VAT number or, only when the VAT number is blank, with that tax code;
    /// empty when there is none.
    QString FindByIdentity(const QString& vatNumber, const QString& taxCode) const;
    /// Whether a counterparty has that code.
    bool Exists(const QString& code) const;
    /// The highest code present plus one, six digits. Raises `ImportError` when the highest is no number or the six
    /// digits are used up.
    QString NextCode() const;

    /// Finds the counterparty of a source row, or assigns it a code: the one with its VAT number or tax code; else the
    /// code that SYS_IMP tells, else a customer's numeric code where six digits hold it, else that of the one imported
    /// from the same code before, else the highest code plus one. A code that is taken is logged.
    Placement Place(const SourceIdentity& source) const;

    /// Writes a telephone number as "+39" and the number without separators. What is no number is written as a zero
    /// and the number that it begins with, and logged. A blank one writes nothing.
    void Telephone(const Owner& owner, const QString& label, const QString& number) const;
    /// Writes a web site, without separators. A blank one writes nothing.
    void WebSite(const Owner& owner, const QString& address) const;
    /// Writes an e-mail address in lower case, without "/", " " and "\". A blank one writes nothing.
    void Mail(const Owner& owner, const QString& label, const QString& address) const;
    /// Writes a contact person and returns the owner for what hangs on it.
    Owner Contact(const QString& code, const QString& name) const;
    /// Inserts a contact person that a mapping has filled and returns the owner for what hangs on it.
    Owner Contact(TargetRow& contact) const;
    /// Inserts a branch that a mapping has filled and returns the owner for what hangs on it.
    Owner Branch(TargetRow& branch) const;
    /// A row of a table that hangs on a counterparty, with its creation moment.
    TargetRow NewRow(const QString& table) const;

private:
    QString NewCode(const SourceIdentity& source) const;
    Owner InsertOwner(TargetRow& row, const QString& table) const;
    void Address(const Owner& owner, const QString& kind, const QString& label, const QString& address) const;

    ImportRun& m_run;
    QVariant m_created;
};

} // namespace contract
