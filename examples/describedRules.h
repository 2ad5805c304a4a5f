#pragma once

#include "examples/amounts.h"
#include "examples/described.h"

#include <QDate>

/// The rules that the described tables are put together from.
namespace examples::described {

// --- Values -------------------------------------------------------------------------------------------------------

Rule Fixed(const QVariant& value);
/// A prefix and the number of the row with leading zeros. @param first number of row 0
Rule Code(const QString& prefix, int digits, qint64 first = 1);
Rule OneOf(const QVariantList& values);
/// One value for each row, from the first on and again behind the last.
Rule Each(const QVariantList& values);
/// The number of the row, from 1.
Rule RowNumber();
Rule Whole(qint64 from, qint64 to);
Rule Number(double from, double to, int decimals);
/// The text that another rule makes with blanks behind it, as databases of fixed width have it.
Rule Padded(int length, const Rule& rule);
/// What another rule makes, so many times as much.
Rule Scaled(double factor, int decimals, const Rule& rule);
Rule Chance(int percent, const Rule& then, const Rule& otherwise = {});
Rule Flag(int percent);
/// A day within so many from 2 January 2024 on.
Rule Day(int days);
/// What an article is called.
Rule ArticleText();

/// The value that the rule draws under a name, for columns of several tables that say the same.
Rule Named(const QByteArray& name, const Rule& rule);

/// Columns that the example leaves Null.
QVector<Field> Unused(const QVector<QByteArray>& columns);

// --- Rows that belong to others -----------------------------------------------------------------------------------

/// The value that the rule makes for another row. @param row gives its number by that of this row
Rule With(const std::function<qint64(qint64)>& row, const Rule& rule);
/// The value of the row's parent, each having so many rows.
Rule OfParent(qint64 rows, const Rule& rule);
/// Number of the row among those of its parent, from 1.
Rule Line(qint64 rows);
/// For the rows of documents that stand in sets, one of each kind: the number of a row that those of a set share.
std::function<qint64(qint64)> RowOfSet(qint64 kinds, qint64 lines);
/// One of the rules after the other, each for so many rows.
Rule Turn(qint64 rows, const QVector<Rule>& rules);
/// The value of any row of another table. @param first rows of it that are none of them
Rule AnyOf(const Count& count, const Rule& rule, const Count& first = {});

/// Rows of several kinds, one kind behind the other; each counts its rows from 0. The last one takes what is left.
struct Kind {
    Count rows;
    Rule rule;
};
Rule Kinds(const QVector<Kind>& kinds);

/// So many rows for each of something.
Count Times(qint64 factor, const Count& count);
Count Exactly(qint64 count);
/// One for each so many of the example's rows, and one more.
Count EachOf(qint64 rows);

// --- People -------------------------------------------------------------------------------------------------------

/// Customers first, suppliers behind them: of ten rows seven and three.
qint64 Customers(const Options& options);
qint64 Suppliers(const Options& options);
qint64 Counterparties(const Options& options);

/// Who the counterparties are. One supplier in so many is a customer as well.
Rule CompanyName(int length);
/// Number from 1, the same for the supplier and the customer that he is as well: he has that of the customer.
Rule IdentityNumber();
/// What a rule makes for counterparties, in a table of the suppliers alone.
Rule OfSupplier(const Rule& rule);
Rule VatNumber();
Rule TaxCode();
/// The first and last name of somebody.
Rule FirstName();
Rule LastName();
/// An address of the Internet of the row's own. @param prefix "info@" or "www."
Rule OnInternet(const QString& prefix);

/// Where something is: all of a row from the same town.
class Address {
public:
    /// @param name tells the addresses of one table from those of another
    explicit Address(const QByteArray& name)
        : m_stream(StreamOf(name)) {}

    Rule Street() const;
    Rule PostCode() const;
    Rule Town() const;
    Rule Province() const;
    Rule Telephone() const;
    /// The columns of street with house number, post code, town and province, as their names are given.
    QVector<Field> Columns(const QByteArray& street, const QByteArray& postCode, const QByteArray& town,
                           const QByteArray& province) const;

private:
    quint64 m_stream;
};

/// The bank of the row: IBAN, and "ABI" and "CAB" as one code.
Rule Iban();

/// An account with a bank: all of a row belong together.
class Account {
public:
    /// @param name tells the accounts of one table from those of another
    /// @param banks so many there are, one after the other for the rows; each row has a bank of its own without it
    explicit Account(const QByteArray& name, qint64 banks = 0)
        : m_stream(StreamOf(name)),
          m_banks(banks) {}

    Rule Abi() const;
    Rule Cab() const;
    Rule Bic() const;
    Rule Number() const;
    Rule Check() const; ///< CIN
    Rule Iban() const;
    /// The value of the bank of the row.
    Rule OfBank(const Rule& rule) const;

private:
    quint64 m_stream;
    qint64 m_banks;
};

// --- Amounts ------------------------------------------------------------------------------------------------------

/// What the rows of documents are worth; the totals of their heads follow.
class Amounts {
public:
    /// @param lines rows of a document @param key the row whose amount a row repeats; each has its own without it
    Amounts(const QByteArray& name, qint64 lines, std::function<qint64(qint64)> key = {});

    Rule Quantity() const;
    Rule Price() const;
    Rule RowTotal() const;
    // Of a head.
    Rule Net() const;
    Rule Vat() const;
    Rule Gross() const;

private:
    Amount Of(const Options& options, qint64 row) const;
    qint64 NetCents(const Options& options, qint64 head) const;

    quint64 m_stream;
    qint64 m_lines;
    std::function<qint64(qint64)> m_key;
};

} // namespace examples::described
