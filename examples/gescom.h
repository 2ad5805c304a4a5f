#pragma once

#include "examples/examples.h"
#include "examples/quadrixScript.h"

namespace examples::gescom {

inline const QString UnknownArticleCode = QStringLiteral("ZZ-NON-ESISTE");

/// The codes of an example: digits alone, customers from 1, suppliers from 5 and as many zeros.
class Codes {
public:
    explicit Codes(qint64 rows)
        : m_customers(rows - rows * 3 / 10),
          m_suppliers(rows * 3 / 10),
          m_digits(CodeDigits(rows, 5) + 1) {}

    qint64 Customers() const { return m_customers; }
    qint64 Suppliers() const { return m_suppliers; }
    /// @param number from 1
    QString Customer(qint64 number) const { return QStringLiteral("%1").arg(number, m_digits, 10, QLatin1Char('0')); }
    QString Supplier(qint64 number) const {
        return u'5' + QStringLiteral("%1").arg(number, m_digits - 1, 10, QLatin1Char('0'));
    }
    /// Digits of a code.
    int Length() const { return m_digits; }

private:
    qint64 m_customers;
    qint64 m_suppliers;
    int m_digits;
};

/// Codes of the work phases.
const QStringList& Phases();

/// Customers, suppliers, their destinations and carriers.
Totals WriteCounterparties(Store& store, const Options& options, QuadrixScript& script);
/// Articles and price lists.
Totals WriteArticles(Store& store, const Options& options, QuadrixScript& script);
/// Bills of materials with their phases.
Totals WriteBills(Store& store, const Options& options, QuadrixScript& script);
/// Delivery notes of sales, purchases and work for account.
Totals WriteDocuments(Store& store, const Options& options, QuadrixScript& script);

} // namespace examples::gescom
