#pragma once

#include "examples/DbfWriter.h"
#include "examples/examples.h"
#include "examples/quadrixScript.h"

namespace examples::arca2000 {

/// Numbers of people beyond those of the rows, for rows that are no counterparty of an import.
constexpr qint64 HighestPerson = 2399999;

/// The codes of an example: seven in ten rows are customers. Other examples refer to the same codes.
class Codes {
public:
    explicit Codes(qint64 rows)
        : m_customers(rows - rows * 3 / 10),
          m_suppliers(rows * 3 / 10),
          m_digits(CodeDigits(m_customers, 5)) {}

    qint64 Customers() const { return m_customers; }
    qint64 Suppliers() const { return m_suppliers; }
    /// @param number from 1
    QString Customer(qint64 number) const { return MakeCode(u'C', number, m_digits); }
    QString Supplier(qint64 number) const { return MakeCode(u'F', number, m_digits); }
    /// Characters of a code.
    int Length() const { return m_digits + 1; }

private:
    qint64 m_customers;
    qint64 m_suppliers;
    int m_digits;
};

struct PaymentTerm {
    QString code;
    QString description;
    QString type; ///< "B" for bank receipts
};

// The coded values of the counterparties. Those that begin with ZZ have no translation.
const QVector<PaymentTerm>& PaymentTerms();
const QStringList& VatCodes();
const QStringList& BankCodes();
const QStringList& CategoryCodes();

/// Writes articles and price lines; returns what an import of them must give.
Totals WriteArticles(Store& store, const Options& options, QuadrixScript& script);
/// Writes the chart of accounts.
Totals WriteAccounts(Store& store);

} // namespace examples::arca2000
