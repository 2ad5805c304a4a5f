#pragma once

#include "examples/examples.h"
#include "examples/random.h"

namespace examples {

/// What a row of a document is worth. Prices and discounts are such that the amount is a whole number of cents: the
/// totals of a document do not depend on how a program rounds.
struct Amount {
    qint64 quantity = 1;
    double price = 0;             ///< of one, in euro
    int discounts[3] = {0, 0, 0}; ///< percent, taken one after the other
    qint64 cents = 0;             ///< of the row, without VAT
};

/// @param hasDiscounts whether some rows have up to three discounts
Amount MakeAmount(Random& random, bool hasDiscounts);

/// Sums over the documents of one kind, to check an import by hand.
class DocumentSums {
public:
    explicit DocumentSums(QString kind)
        : m_kind(std::move(kind)) {}

    void AddDocument() { ++m_documents; }
    /// @param isUnknown the article is not there: an import may leave such rows out
    void AddRow(const Amount& amount, bool isUnknown);
    void AddTextRow() { ++m_all.rows; }
    qint64 Documents() const { return m_documents; }
    /// Documents, rows, sum of quantities and sum of amounts; then the sums of the rows whose article is not there.
    Totals Counted() const;

private:
    struct Sums {
        qint64 rows = 0;
        qint64 quantity = 0;
        qint64 cents = 0;

        void Add(const Amount& amount);
        Totals Counted(const QString& what) const;
    };

    QString m_kind;
    qint64 m_documents = 0;
    Sums m_all;
    Sums m_unknown;
};

} // namespace examples
