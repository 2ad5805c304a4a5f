#pragma once

#include "adapters/contract/map/TableNeed.h"
#include "adapters/contract/run/SourceRow.h"
#include "core/amounts.h"
#include "core/Session.h"

#include <array>

namespace contract {

/// What a counterparty is in the source: one of them, or several.
struct Roles {
    bool customer = false;
    bool supplier = false;
    bool carrier = false;
};

/// The roles of a source that keeps customers and suppliers apart.
inline Roles RoleOf(bool customer) { return {customer, !customer}; }

/// What a procedure knows of the row under way before its mapping is applied.
struct Facts {
    QString code;     ///< the Quadrix code assigned to the row
    Roles roles = {}; ///< of a counterparty
};

/// What a rule works on.
struct RuleInput {
    Session& session;
    const SourceRow& row;
    const QStringList& columns; ///< source columns of the mapping line
    const Facts& facts;
    /// What a rule around this one has found in place of what the source columns hold.
    std::optional<QString> found = {};

    /// The texts of the source columns, without surrounding blanks, joined with one blank; empty ones are left out.
    QString Text() const;
    /// The value of the first source column, as read.
    QVariant Value() const { return found ? QVariant(*found) : row.Value(columns.first()); }
};

/// Value of a target column; none leaves the column out.
using RuleValue = std::optional<QVariant>;

/// The role that a column of a counterparty belongs to.
enum class Side { Both, Customer, Supplier };

/// A small conversion with a name that the mapping pages show. Declarations hold hundreds: what makes and destroys one
/// is compiled once, in one place.
struct Rule {
    using Work = std::function<RuleValue(const RuleInput&)>;

    Rule(QString what, Work how, Side whose = Side::Both, std::vector<TableNeed> needs = {});
    ~Rule();
    Rule(const Rule&);
    Rule(Rule&&) noexcept;
    Rule& operator=(const Rule&);
    Rule& operator=(Rule&&) noexcept;

    QString text; ///< what it does, in a few words
    Work apply;
    Side side;
    std::vector<TableNeed> reads; ///< of the source, beyond the row under way
    /// Columns beyond those of its line, of this table or another, that the value is found in as well.
    std::vector<TableNeed> elsewhere = {};
    bool isElsewhere = false; ///< the value is found there alone: the line's own columns lead to it
    int vital = 0;            ///< where the source lacks one of so many first columns, it says nothing
    bool hasDefault = false;  ///< a row that says nothing gets a value of Quadrix's own, such as the usual currency
};

/// A rule around another: what is known of that one, such as the columns that it reads and whether it has a value of
/// Quadrix's own, is known of the whole.
Rule Around(Rule rule, QString what, Rule::Work how);
/// A rule that finds its value in further columns as well.
Rule AlsoIn(std::vector<TableNeed> columns, Rule rule);
/// A rule that says nothing where the source lacks one of its first columns, whatever the others hold.
Rule Needing(int columns, Rule rule);
/// A rule that has a value of Quadrix's own for a row that says nothing. @param has false where that value is blank
Rule WithDefault(Rule rule, bool has = true);

/// The rules of the mapping tables. Texts come without surrounding blanks.
namespace rules {

/// The value as it was read.
Rule AsRead();
/// The whole text.
Rule Text();
/// The first n characters.
Rule First(int count);
/// The characters from the n-th (from 1) onward.
Rule From(int position);
/// The second line of a name: what the first n characters leave of the first source column, and the last one.
Rule SecondName(int count);
/// The first n characters, without surrounding blanks, in upper case.
Rule FirstUpper(int count);
/// At most `count` characters from the n-th (from 1) onward, without blanks in front and behind.
Rule Part(int position, int count);
/// A whole number in so many digits (with 3, "7" gives "007"); any other text as it is.
Rule Digits(int count);
/// The digits of a text, as a whole number: "20/A" gives 20. Raises `ImportError` when it has none.
Rule DigitsAsNumber();
/// The text without any blanks.
Rule WithoutBlanks();
/// The number that the text is, or begins with: "10+5" gives 10, and what is left behind is logged. Blank is Null.
/// Raises `ImportError` when the text begins with none.
Rule LeadingNumber();
/// A number rounded to a count of decimals; blank is Null. Raises `ImportError` when it is no number.
Rule RoundedTo(int decimals);
/// The first of the source columns that holds a number other than zero, rounded to 6 decimals; 0 when none does.
Rule FirstNotZero();
/// Mark-up in percent of a price (first source column) over a cost (the first other column that is not zero), rounded
/// to 2 decimals; 0 without a cost.
Rule MarkUp();
/// The first of the source columns that is not blank, by another rule.
Rule FirstNotBlank(const Rule& rule);
/// The day that a text of a format tells, such as "yyyyMMdd" or "dd/MM/yyyy"; Null when it is blank or all zeros.
/// Raises `ImportError` for any other text.
Rule DateText(const QString& format);
/// The date as read; Null when it is blank or a day that stands for none, everywhere (`IsEmptyDay`) or in the source.
/// Raises `ImportError` when it is no date.
Rule Day(const QDate& none = {});
/// The same, left out when there is none.
Rule DayThere(const QDate& none = {});
/// The same; the day of the import when there is none. Raises `ImportError` when it is no date.
Rule DayOrToday();
/// Whether there is a date, and it is not after the day of the import: that from which something no longer holds.
/// Raises `ImportError` when it is no date.
Rule HasExpired();
/// The factor of a second unit, told by an operator (first source column) and a number (the other one): "*" by the
/// number, "/" by one over it; zero and blank are left out. Raises `ImportError` for another operator.
Rule UnitFactor();
/// A number without its point: with 2 decimals "12345" gives 123.45; blank is Null. Raises `ImportError` when it is no
/// whole number.
Rule Implied(int decimals);
/// A number other than zero, rounded to 6 decimals; zero and blank are left out. Raises `ImportError` when it is none.
Rule NotZero();
/// A street without its number, and the number alone, left out where there is none: "Via Roma, 12/a" is "Via Roma" and
/// "12/a". Only what stands behind the last comma or blank and begins with a digit is a number.
Rule Street();
Rule StreetNumber();
/// The code assigned to the row, " - " and the text; the first n characters of it all.
Rule CodeAndText(int count);
/// A number times a factor, rounded to 6 decimals; blank is Null. Raises `ImportError` when it is no number.
Rule Times(double factor);
/// The n-th (from 1) of the discounts that a text joins with "+": of "10+4" the second is 4; Null when there is none.
/// Raises `ImportError` when a part is no number, or there are more than three.
Rule Discount(int position);
/// Whether the text is the given one, compared without case.
Rule Is(const QString& text);
/// The opposite of a yes or no.
Rule Not(const Rule& rule);
/// Whether a flag of the source is set: "S", "Y", "T", "True", "1" or "-1", in any case.
Rule Flag();
/// The first n characters in upper case; `blank` when there is none.
Rule UpperOr(int count, const QString& blank);
/// Another text in place of each of the given ones, compared without case; `otherwise` for the rest.
Rule Choice(const QList<QPair<QString, QString>>& choices, const QString& otherwise);
/// The same value for every row.
Rule Constant(const QVariant& value);
/// The day of the import.
Rule Today();
/// The moment in the source column; the moment of the import when it is blank.
Rule MomentOrNow();
/// The code assigned to the row.
Rule Code();
/// Whether the row is a customer.
Rule IsCustomer();
/// Whether the row is a supplier.
Rule IsSupplier();
/// Whether the row is a carrier.
Rule IsCarrier();
/// The Quadrix code of SYS_IMP (a missing one is recorded there); left out when there is none.
Rule Translated(const QString& table, const QString& field);
/// As `Translated`; `blank` when the text is blank.
Rule TranslatedOr(const QString& table, const QString& field, const QString& blank);
/// As `Translated`; the text in upper case when there is no Quadrix code, `blank` when the text is blank.
Rule TranslatedOrUpper(const QString& table, const QString& field, const QString& blank);
/// As `Translated`; without a Quadrix code the text itself when a Quadrix table has it as its code.
Rule TranslatedOrKnown(const QString& table, const QString& field, const QString& codeTable);
/// The code of a unit: translated through SYS_IMP, else as it is when TAB_UMS has it, else recorded, and the text in
/// upper case; `blank` when the text is blank.
Rule Unit(const QString& table, const QString& field, const QString& blank);
/// The code of a work: translated through SYS_IMP, missing ones recorded, else the text itself.
Rule Work(const QString& table, const QString& field);
/// CDART of an article of the source, as `ArticleCodeOf` finds it, whether it is there or not; left out when blank.
Rule ArticleCode(const QString& table, const QString& field);
/// CDCON of the customer (supplier) that was imported from the code; left out when blank. Raises `ImportError` when
/// there is none.
Rule CustomerOf();
Rule SupplierOf();
/// The one of the two that the roles of the row ask for: of a document those of its family.
Rule PartyOf();
/// As `SupplierOf`; one that is not there is logged, and left out.
Rule KnownSupplier();
/// The same of a customer.
Rule KnownCustomer();
/// CDBAN of the company's own bank that has the code of the source: translated through SYS_IMP, else the one whose
/// BAEXT it is; left out, and the code recorded, when there is none.
Rule OwnBank(const QString& table, const QString& field);
/// Another table of the source by an id: the text of one of its columns in the row that has the id, by another rule.
/// A blank id or 0 names none, and one that is not there is logged: the rule then gets a blank text.
Rule Via(const QString& table, const QString& idColumn, const QString& column, const Rule& rule);
/// One column of the row of a Quadrix table whose key column has the text as its value; left out when there is none.
Rule LookedUp(const QString& table, const QString& keyColumn, const QString& column);
/// A VAT code, as `VatCodeOf` finds it; the ordinary rate when the text is blank.
Rule VatCode(const QString& table, const QString& field);
/// A currency, as `CurrencyOf` finds it.
Rule Currency(const QString& table, const QString& field);
/// Left out unless the rule gives a VAT code of TAB_IVA with rate zero: an exemption.
Rule Exemption(const Rule& vatCode);
/// The exemption that a VAT code of the source is, as `TranslatedOrKnown` finds it in TAB_IVA.
Rule ExemptVat(const QString& table, const QString& field);

/// A country: as `Translated`; without a translation "ITA" for blank, "I", "IT", "ITA" and "ITALIA", else the text when
/// it has three letters, else left out.
Rule Country(const QString& table, const QString& field);

/// `otherwise` when the rule gives no value, or a blank one.
Rule Or(const Rule& rule, const QVariant& otherwise);
/// Another rule where the rule gives no value, or a blank one.
Rule Or(const Rule& rule, const Rule& otherwise);
/// Left out when the rule gives Null.
Rule NotNull(const Rule& rule);
/// Left out when the source column is blank.
Rule NotBlank(const Rule& rule);
/// Left out when another source column is blank.
Rule WhenNotBlank(const QString& column, const Rule& rule);
/// A column of the role of customer: left out for who is none.
Rule CustomerOnly(const Rule& rule);
/// A column of the role of supplier: left out for who is none.
Rule SupplierOnly(const Rule& rule);

} // namespace rules

/// The number of a source column, 0 when it is blank. Raises `ImportError` naming the column when it is no number.
double NumberOf(const SourceRow& row, const QString& column);

/// What it has in front of the decimal mark. Raises `ImportError` naming the column also where 32 bits do not hold it.
int WholeNumberOf(const SourceRow& row, const QString& column);

/// The discounts that a text joins with "+", 0 for those that are not there: "10+4" gives 10, 4, 0. Raises
/// `ImportError` when a part is no number, or there are more than three.
std::array<double, 3> DiscountsOf(const QString& text);

using ::MarkUpOf;
using ::RoundedTo;

} // namespace contract
