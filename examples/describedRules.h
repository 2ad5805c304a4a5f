#pragma once

#include "examples/amounts.h"
#include "examples/described.h"
#include "examples/italian.h"

/// The rules that the described tables are put together from.
namespace examples::described {

// --- Values -------------------------------------------------------------------------------------------------------

Rule Fixed(const QVariant& value);
/// A prefix and the number of the row with leading zeros. @param first number of row 0
Rule Code(const QString& prefix, int digits, qint64 first = 1);
/// The number of the row, from 1.
Rule RowNumber();
Rule OneOf(const QVariantList& values);
/// One of the values after the other, and again from the first.
Rule Each(const QVariantList& values);
Rule Whole(qint64 from, qint64 to);
Rule Number(double from, double to, int decimals);
/// So many times the number of another rule; Null where that is.
Rule Scaled(double factor, int decimals, const Rule& number);
/// A text with blanks behind it, as columns of fixed width have them; Null stays Null.
Rule Padded(int length, const Rule& text);
Rule Chance(int percent, const Rule& then, const Rule& otherwise = {});
Rule Flag(int percent);
/// A day within so many from 2 January 2024 on.
Rule Day(int days);
/// A day that is so many after another.
Rule After(const Rule& day, qint64 from, qint64 to);
/// What an article is called.
Rule ArticleText();
/// A bar code (EAN 13), none twice.
Rule BarCode();

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
/// The value of any row of another table; Null where that has none.
Rule AnyOf(const Count& count, const Rule& rule);
/// The value of any row of another table behind its first ones. @param count of all rows
Rule AnyBehind(const Count& first, const Count& count, const Rule& rule);
/// The value, or the fields, of a row so many further on: the table holds what stands behind those of a greater whole.
Rule Behind(const Count& first, const Rule& rule);
QVector<Field> Behind(const Count& first, QVector<Field> fields);

/// Rows of several kinds, one kind behind the other; each counts its rows from 0. The last one takes what is left.
struct Kind {
    Count rows;
    Rule rule;
};
Rule Kinds(const QVector<Kind>& kinds);

/// Articles with bills of materials in front: products, then what goes into them, then what is bought.
struct Stages {
    Count products;
    Count heads; ///< products among them
    Count articles;
};
/// The value of what a bill contains, so many of each, none twice: of a product one of the articles with a bill, for
/// the rest bought ones.
Rule Component(const Stages& stages, qint64 lines, const Rule& rule);

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
/// The value of a customer or of a supplier; each side counts its rows from 0.
Rule BySide(const Rule& customer, const Rule& supplier);

/// Who the counterparties are. One supplier in so many is a customer as well.
Rule CompanyName(int length);
/// The name over two columns, broken between words. @param length of the first one
Rule NameBegin(int length);
Rule NameRest(int length);
Rule VatNumber();
Rule TaxCode();
/// Number of who it is, from 1; that of the customer where a supplier is one.
Rule IdentityNumber();
/// One value for a private person, another one for a company.
Rule IfPerson(const Rule& person, const Rule& company);
/// The names that the name of a private person is made of; Null for a company.
Rule OwnSurname();
Rule OwnFirstName();
/// The first and last name of somebody, and both.
Rule FirstName();
Rule LastName();
Rule FullName();
Rule Mobile();
/// An address of the Internet of the row's own. @param prefix "info@" or "www."
Rule OnInternet(const QString& prefix);

/// Where something is: all of a row from the same town.
class Address {
public:
    /// @param name tells the addresses of one table from those of another
    explicit Address(const QByteArray& name)
        : m_stream(StreamOf(name)) {}

    /// With the house number.
    Rule Street() const;
    Rule StreetName() const;
    Rule HouseNumber() const;
    Rule PostCode() const;
    Rule Town() const;
    Rule Province() const;
    /// The town as the land register calls it, e.g. "H501".
    Rule LandCode() const;
    Rule Telephone() const;
    /// The columns of street with house number, post code, town and province, as their names are given.
    QVector<Field> Columns(const QByteArray& street, const QByteArray& postCode, const QByteArray& town,
                           const QByteArray& province) const;

private:
    quint64 m_stream;
};

/// An IBAN of the row's own.
Rule Iban();

/// The account at a bank that a row has: all of a row agree.
class BankAccount {
public:
    /// @param name tells the accounts of one table from those of another @param percent rows that have one
    /// @param banks so many there are, one after the other for the rows; each row has a bank of its own without it
    explicit BankAccount(const QByteArray& name, int percent = 100, qint64 banks = 0)
        : m_stream(StreamOf("bank " + name)),
          m_percent(percent),
          m_banks(banks) {}

    Rule Abi() const;
    Rule Cab() const;
    Rule Check() const; ///< CIN
    Rule Number() const;
    Rule Iban() const;
    Rule Bic() const;
    /// The value of the bank of the row.
    Rule OfBank(const Rule& rule) const;

private:
    Rule Part(const std::function<QString(const italian::Bank&)>& part) const;

    quint64 m_stream;
    int m_percent;
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
