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
/// One of the values after the other.
Rule Each(const QVariantList& values);
Rule Whole(qint64 from, qint64 to);
Rule Number(double from, double to, int decimals);
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
/// One of the rules after the other, each for so many rows.
Rule Turn(qint64 rows, const QVector<Rule>& rules);
/// The value of any row of another table.
Rule AnyOf(const Count& count, const Rule& rule);

/// Articles with bills of materials in front: products, then what goes into them, then what is bought.
struct Stages {
    Count products;
    Count heads; ///< products among them
    Count articles;
};
/// The value of what a bill contains, so many of each, none twice: of a product one of the articles with a bill, for
/// the rest bought ones.
Rule Component(const Stages& stages, qint64 lines, const Rule& rule);

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
Count Sum(const Count& one, const Count& other);

// --- People -------------------------------------------------------------------------------------------------------

/// Customers first, suppliers behind them: of ten rows seven and three.
qint64 Customers(const Options& options);
qint64 Suppliers(const Options& options);
qint64 Counterparties(const Options& options);

/// Who the counterparties are. One supplier in so many is a customer as well.
Rule CompanyName(int length);
Rule VatNumber();
Rule TaxCode();
/// "S" for a person, "N" for a company.
Rule IsPerson();
/// The names of a person; Null for a company.
Rule PersonSurname();
Rule PersonFirstName();
/// The first and last name of somebody.
Rule FirstName();
Rule LastName();
Rule PersonName();
Rule Mobile();
/// An address of the Internet of the row's own. @param prefix "info@" or "www."
Rule OnInternet(const QString& prefix);

/// Where something is: all of a row from the same town.
class Address {
public:
    /// @param name tells the addresses of one table from those of another
    explicit Address(const QByteArray& name)
        : m_stream(StreamOf(name)) {}

    Rule Street() const; ///< with the house number
    Rule StreetName() const;
    Rule HouseNumber() const;
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
/// Suppliers that stand in a table of their own, by the rules of a table that has them behind the customers.
QVector<Field> OfSuppliers(QVector<Field> fields);

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
