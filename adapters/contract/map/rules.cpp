#include "adapters/contract/map/rules.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

#include <cmath>

namespace contract {

QString RuleInput::Text() const {
    if (found) {
        return *found;
    }
    QStringList texts;
    for (const QString& column : columns) {
        if (const QString text = row.Text(column); !text.isEmpty()) {
            texts.append(text);
        }
    }
    return texts.join(u' ');
}

std::optional<double> ReadLeadingNumber(const QString& text) {
    qsizetype end = 0;
    bool decimals = false;
    while (end < text.size() && (text.at(end).isDigit() || (text.at(end) == u'.' && !decimals))) {
        decimals = decimals || text.at(end) == u'.';
        ++end;
    }
    bool valid = false;
    const double number = text.left(end).toDouble(&valid);
    return valid ? std::optional(number) : std::nullopt;
}

namespace {

/// The number of a source column; the error does not name the column.
double NumberIn(const SourceRow& row, const QString& column) {
    if (row.IsBlank(column)) {
        return 0;
    }
    if (const auto number = mod_ovTools::ReadNumber(row.Value(column))) {
        return *number;
    }
    throw ImportError(QStringLiteral("'%1' non è un numero").arg(row.Text(column)));
}

} // namespace

double NumberOf(const SourceRow& row, const QString& column) {
    try {
        return NumberIn(row, column);
    } catch (ImportError& error) {
        error.AddContext(QStringLiteral("colonna '%1'").arg(column));
        throw;
    }
}

std::array<double, 3> DiscountsOf(const QString& text) {
    std::array<double, 3> discounts{};
    const QStringList parts = text.split(u'+', Qt::SkipEmptyParts);
    if (static_cast<size_t>(parts.size()) > discounts.size()) {
        throw ImportError(QStringLiteral("'%1' sono più di tre sconti").arg(text));
    }
    for (qsizetype i = 0; i < parts.size(); ++i) {
        const auto number = mod_ovTools::ReadNumber(parts.at(i).trimmed());
        if (!number) {
            throw ImportError(QStringLiteral("'%1' non è uno sconto").arg(text));
        }
        discounts[static_cast<size_t>(i)] = *number;
    }
    return discounts;
}

std::array<double, 3> DiscountsOf(const SourceRow& row, const QString& column) {
    try {
        return DiscountsOf(row.Text(column));
    } catch (ImportError& error) {
        error.AddContext(QStringLiteral("colonna '%1'").arg(column));
        throw;
    }
}

Rule::Rule(QString what, Work how, Side whose, std::vector<TableNeed> needs)
    : text(std::move(what)),
      apply(std::move(how)),
      side(whose),
      reads(std::move(needs)) {}

Rule::~Rule() = default;
Rule::Rule(const Rule&) = default;
Rule::Rule(Rule&&) noexcept = default;
Rule& Rule::operator=(const Rule&) = default;
Rule& Rule::operator=(Rule&&) noexcept = default;

namespace rules {

namespace {

/// The first number other than zero of the columns from an index on.
double FirstNumber(const RuleInput& input, qsizetype from) {
    for (qsizetype i = from; i < input.columns.size(); ++i) {
        if (const double number = NumberIn(input.row, input.columns.at(i)); number != 0) {
            return number;
        }
    }
    return 0;
}

/// A rule on the text of the source columns.
Rule OnText(const QString& words, std::function<QString(const QString&)> convert) {
    return {words, [convert = std::move(convert)](const RuleInput& input) { return RuleValue(convert(input.Text())); }};
}

/// A rule that is left out unless a condition holds.
Rule Only(const QString& words, std::function<bool(const RuleInput&)> condition, const Rule& rule) {
    return {rule.text.isEmpty() ? words : rule.text + QStringLiteral("; ") + words,
            [condition = std::move(condition), apply = rule.apply](const RuleInput& input) {
                return condition(input) ? apply(input) : RuleValue();
            },
            rule.side, rule.reads};
}

/// Whether a text is numbers joined with "+".
bool IsDiscountChain(const QString& text) {
    const QStringList parts = text.split(u'+');
    return parts.size() > 1 && std::all_of(parts.begin(), parts.end(), [](const QString& part) {
               return mod_ovTools::ReadNumber(part.trimmed()).has_value();
           });
}

QString NewCode(const RuleInput& input, const QString& table, const QString& field) {
    return modImport::GetNewCode(input.session, table, field, input.Text(), true);
}

} // namespace

Rule AsRead() {
    return {"as read", [](const RuleInput& input) { return RuleValue(input.Value()); }};
}

Rule Text() {
    return OnText("trimmed", [](const QString& text) { return text; });
}

Rule First(int count) {
    return OnText(QStringLiteral("first %1 characters").arg(count),
                  [count](const QString& text) { return FirstOf(text, count); });
}

Rule From(int position) {
    return OnText(QStringLiteral("from character %1 onward").arg(position),
                  [position](const QString& text) { return RestOf(text, position - 1); });
}

Rule SecondName(int count) {
    return {QStringLiteral("from character %1 onward of the first, and the second").arg(count + 1),
            [count](const RuleInput& input) {
                const QString rest = RestOf(input.row.Text(input.columns.first()), count).trimmed();
                return RuleValue(QString(rest + ' ' + input.row.Text(input.columns.last())).trimmed());
            }};
}

Rule FirstUpper(int count) {
    return OnText(QStringLiteral("first %1 characters, trimmed, upper case").arg(count),
                  [count](const QString& text) { return FirstOf(text, count).trimmed().toUpper(); });
}

Rule Part(int position, int count) {
    return OnText(
        QStringLiteral("from character %1 onward, trimmed, first %2").arg(position).arg(count),
        [position, count](const QString& text) { return FirstOf(RestOf(text, position - 1).trimmed(), count); });
}

Rule Digits(int count) {
    return OnText(QStringLiteral("%1 digits when it is a whole number").arg(count), [count](const QString& text) {
        const auto number = mod_ovTools::ReadNumber(text);
        const bool whole = number && *number >= 0 && *number == std::floor(*number);
        return whole ? QStringLiteral("%1").arg(qRound64(*number), count, 10, QLatin1Char('0')) : text;
    });
}

Rule ThreeDigits() { return Digits(3); }

Rule WithoutBlanks() {
    return OnText("without blanks", [](QString text) { return text.remove(u' '); });
}

Rule LeadingNumber() {
    return {"leading number, only when not blank", [](const RuleInput& input) -> RuleValue {
                const QString text = input.Text();
                if (text.isEmpty()) {
                    return std::nullopt;
                }
                const auto number = ReadLeadingNumber(text);
                if (!number) {
                    throw ImportError(QStringLiteral("'%1' non è un numero").arg(text));
                }
                bool whole = false;
                text.toDouble(&whole);
                if (!whole) {
                    const QString what = IsDiscountChain(text) ? QStringLiteral("SCONTO RIDOTTO A UN SOLO VALORE")
                                                               : QStringLiteral("NUMERO RIDOTTO");
                    modImport::LogNote(input.session,
                                       QStringLiteral("%1: %2, colonna '%3': '%4' letto come %5")
                                           .arg(what, input.session.Errors.RowKey(), input.columns.first(), text,
                                                mod_ovTools::NumberText(*number)));
                }
                return QVariant(*number);
            }};
}

Rule RoundedTo(int decimals) {
    return {QStringLiteral("rounded to %1 decimals").arg(decimals), [decimals](const RuleInput& input) {
                return RuleValue(input.Text().isEmpty()
                                     ? QVariant()
                                     : ::RoundedTo(NumberIn(input.row, input.columns.first()), decimals));
            }};
}

Rule FirstNotZero() {
    return {"the first that is not zero",
            [](const RuleInput& input) { return RuleValue(::RoundedTo(FirstNumber(input, 0), UnitDecimals)); }};
}

Rule MarkUp() {
    return {"mark-up in percent of the first over the next that is not zero, 2 decimals", [](const RuleInput& input) {
                return RuleValue(MarkUpOf(NumberIn(input.row, input.columns.first()), FirstNumber(input, 1)));
            }};
}

Rule CodeAndText(int count) {
    return {QStringLiteral("code, \" - \" and text, first %1 characters").arg(count), [count](const RuleInput& input) {
                return RuleValue(FirstOf(input.facts.code + QStringLiteral(" - ") + input.Text(), count));
            }};
}

Rule Times(double factor) {
    return {QStringLiteral("times %1, rounded to %2 decimals").arg(factor).arg(UnitDecimals),
            [factor](const RuleInput& input) {
                return RuleValue(input.Text().isEmpty()
                                     ? QVariant()
                                     : ::RoundedTo(NumberIn(input.row, input.columns.first()) * factor, UnitDecimals));
            }};
}

Rule Discount(int position) {
    return {QStringLiteral("number %1 of those joined with \"+\", left out when there is none").arg(position),
            [position](const RuleInput& input) -> RuleValue {
                const double discount = DiscountsOf(input.Text())[static_cast<size_t>(position - 1)];
                return discount == 0 ? RuleValue() : RuleValue(discount);
            }};
}

Rule Not(const Rule& rule) {
    return {QStringLiteral("not: ") + rule.text,
            [apply = rule.apply](const RuleInput& input) -> RuleValue {
                const RuleValue value = apply(input);
                return value ? RuleValue(!mod_ovTools::ToBoolean(*value)) : value;
            },
            rule.side, rule.reads};
}

Rule Is(const QString& text) {
    return {QStringLiteral("true for \"%1\"").arg(text),
            [text](const RuleInput& input) { return RuleValue(input.Text().compare(text, Qt::CaseInsensitive) == 0); }};
}

Rule Flag() {
    return {"true for \"S\", \"Y\", \"T\", \"True\", \"1\" and \"-1\"", [](const RuleInput& input) {
                static const QStringList set{"S", "Y", "T", "TRUE", "1", "-1"};
                return RuleValue(set.contains(input.Text().toUpper()));
            }};
}

Rule UpperOr(int count, const QString& blank) {
    return {QStringLiteral("first %1 characters in upper case, \"%2\" when blank").arg(count).arg(blank),
            [count, blank](const RuleInput& input) {
                const QString text = FirstOf(input.Text(), count).toUpper();
                return RuleValue(text.isEmpty() ? blank : text);
            }};
}

Rule Choice(const QList<QPair<QString, QString>>& choices, const QString& otherwise) {
    QStringList words;
    for (const auto& [from, to] : choices) {
        words.append(QStringLiteral("\"%1\" for \"%2\"").arg(to, from));
    }
    words.append(QStringLiteral("else \"%1\"").arg(otherwise));
    return OnText(words.join(QStringLiteral(", ")), [choices, otherwise](const QString& text) {
        for (const auto& [from, to] : choices) {
            if (text.compare(from, Qt::CaseInsensitive) == 0) {
                return to;
            }
        }
        return otherwise;
    });
}

Rule Constant(const QVariant& value) {
    return {QStringLiteral("constant \"%1\"").arg(mod_ovTools::ToText(value)),
            [value](const RuleInput&) { return RuleValue(value); }};
}

Rule Today() {
    return {"day of the import",
            [](const RuleInput& input) { return RuleValue(input.session.UserManager.DataElaborazione); }};
}

Rule MomentOrNow() {
    return {"as read, moment of the import when blank", [](const RuleInput& input) {
                return RuleValue(input.Text().isEmpty() ? QVariant(input.session.Now()) : input.Value());
            }};
}

Rule Code() {
    return {"code assigned to the row", [](const RuleInput& input) { return RuleValue(input.facts.code); }};
}

Rule IsCustomer() {
    return {"true for a customer", [](const RuleInput& input) { return RuleValue(input.facts.roles.customer); }};
}

Rule IsSupplier() {
    return {"true for a supplier", [](const RuleInput& input) { return RuleValue(input.facts.roles.supplier); }};
}

Rule IsCarrier() {
    return {"true for a carrier", [](const RuleInput& input) { return RuleValue(input.facts.roles.carrier); }};
}

Rule Translated(const QString& table, const QString& field) {
    return {QStringLiteral("translated through SYS_IMP (%1, %2), missing codes recorded").arg(table, field),
            [table, field](const RuleInput& input) -> RuleValue {
                const QString code = NewCode(input, table, field);
                return code.isEmpty() ? RuleValue() : RuleValue(code);
            }};
}

Rule TranslatedOr(const QString& table, const QString& field, const QString& blank) {
    const Rule translated = Translated(table, field);
    return {QStringLiteral("%1, \"%2\" when blank").arg(translated.text, blank),
            [translated, blank](const RuleInput& input) {
                return input.Text().isEmpty() ? RuleValue(blank) : translated.apply(input);
            }};
}

Rule TranslatedOrUpper(const QString& table, const QString& field, const QString& blank) {
    return {
        QStringLiteral("translated through SYS_IMP (%1, %2), missing codes recorded and written in upper case, \"%3\" "
                       "when blank")
            .arg(table, field, blank),
        [table, field, blank](const RuleInput& input) -> RuleValue {
            const QString text = input.Text();
            if (text.isEmpty()) {
                return blank;
            }
            const QString code = NewCode(input, table, field);
            return code.isEmpty() ? text.toUpper() : code;
        }};
}

Rule TranslatedOrKnown(const QString& table, const QString& field, const QString& codeTable) {
    return {QStringLiteral("translated through SYS_IMP (%1, %2); else as it is when %3 has that code, else recorded")
                .arg(table, field, codeTable),
            [table, field, codeTable](const RuleInput& input) -> RuleValue {
                const QString code = TranslatedCode(input.session, table, field, input.Text(), codeTable);
                return code.isEmpty() ? RuleValue() : RuleValue(code);
            }};
}

Rule LookedUp(const QString& table, const QString& keyColumn, const QString& column) {
    return {QStringLiteral("%1 of the %2 whose %3 it is, left out when there is none").arg(column, table, keyColumn),
            [table, keyColumn, column](const RuleInput& input) -> RuleValue {
                const QString text = input.Text();
                const QString found = text.isEmpty() ? text : LookUp(input.session, table, keyColumn, text, column);
                return found.isEmpty() ? RuleValue() : RuleValue(found);
            }};
}

Rule VatCode(const QString& table, const QString& field) {
    return {
        QStringLiteral("\"%3\" when blank; else translated through SYS_IMP (%1, %2), else as it is when TAB_IVA has "
                       "it, else recorded, logged and \"%3\"")
            .arg(table, field, schema::defaults::VatCode),
        [table, field](const RuleInput& input) {
            const QString code = VatCodeOf(input.session, table, field, input.Text());
            return RuleValue(code.isEmpty() ? schema::defaults::VatCode : code);
        }};
}

Rule Currency(const QString& table, const QString& field) {
    return {
        QStringLiteral("\"%3\" when blank; else translated through SYS_IMP (%1, %2), else as it is when TAB_VAL has "
                       "it, else recorded, logged and \"%3\"")
            .arg(table, field, schema::defaults::Currency),
        [table, field](const RuleInput& input) {
            return RuleValue(CurrencyOf(input.session, table, field, input.Text()));
        }};
}

Rule Exemption(const Rule& vatCode) {
    return {vatCode.text + QStringLiteral("; only a code of TAB_IVA with rate zero"),
            [apply = vatCode.apply](const RuleInput& input) -> RuleValue {
                const RuleValue code = apply(input);
                const QVariant rate =
                    code ? input.session.Quadrix.GetDbValue("TAB_IVA", "CDIVA", code->toString(), "IVALI") : QVariant();
                return rate.isNull() || rate.toDouble() != 0 ? RuleValue() : code;
            },
            vatCode.side, vatCode.reads};
}

Rule ExemptVat(const QString& table, const QString& field) {
    return Exemption(TranslatedOrKnown(table, field, "TAB_IVA"));
}

Rule Country(const QString& table, const QString& field) {
    return {
        QStringLiteral("translated through SYS_IMP (%1, %2), missing codes recorded; else \"ITA\" for blank and Italy, "
                       "else a text of three characters as it is")
            .arg(table, field),
        [table, field](const RuleInput& input) -> RuleValue {
            static const QStringList italy{QString(), "I", "IT", "ITA", "ITALIA"};
            const QString text = input.Text().toUpper();
            const QString code = NewCode(input, table, field);
            if (!code.isEmpty()) {
                return code;
            }
            if (italy.contains(text)) {
                return schema::defaults::Country;
            }
            constexpr int codeSize = 3;
            return text.size() == codeSize ? RuleValue(text) : RuleValue();
        }};
}

Rule Or(const Rule& rule, const QVariant& otherwise) {
    return {QStringLiteral("%1; \"%2\" when there is none").arg(rule.text, mod_ovTools::ToText(otherwise)),
            [apply = rule.apply, otherwise](const RuleInput& input) -> RuleValue {
                RuleValue value = apply(input);
                return value && !mod_ovTools::ToText(*value).trimmed().isEmpty() ? value : RuleValue(otherwise);
            },
            rule.side, rule.reads};
}

Rule Or(const Rule& rule, const Rule& otherwise) {
    return {QStringLiteral("%1; where there is none %2").arg(rule.text, otherwise.text),
            [apply = rule.apply, other = otherwise.apply](const RuleInput& input) -> RuleValue {
                RuleValue value = apply(input);
                return value && !mod_ovTools::ToText(*value).trimmed().isEmpty() ? value : other(input);
            },
            rule.side, rule.reads + otherwise.reads};
}

Rule NotNull(const Rule& rule) {
    return {rule.text + QStringLiteral("; left out when there is none"),
            [apply = rule.apply](const RuleInput& input) -> RuleValue {
                RuleValue value = apply(input);
                return value && value->isNull() ? RuleValue() : value;
            },
            rule.side, rule.reads};
}

Rule NotBlank(const Rule& rule) {
    return Only(
        "only when not blank", [](const RuleInput& input) { return !input.Text().isEmpty(); }, rule);
}

Rule WhenNotBlank(const QString& column, const Rule& rule) {
    return Only(
        QStringLiteral("only when %1 is not blank").arg(column),
        [column](const RuleInput& input) { return !input.row.IsBlank(column); }, rule);
}

Rule CustomerOnly(const Rule& rule) {
    Rule only = Only(
        "customers only", [](const RuleInput& input) { return input.facts.roles.customer; }, rule);
    only.side = Side::Customer;
    return only;
}

Rule SupplierOnly(const Rule& rule) {
    Rule only = Only(
        "suppliers only", [](const RuleInput& input) { return input.facts.roles.supplier; }, rule);
    only.side = Side::Supplier;
    return only;
}

} // namespace rules

} // namespace contract
