#include "adapters/contract/map/rules.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "adapters/contract/map/wholeNumbers.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"
#include "sql/variantText.h"

namespace contract {

QString RuleInput::Text() const {
    if (found) {
        return *found;
    }
    if (columns.size() == 1) {
        return row.Text(columns.first());
    }
    QStringList texts;
    for (const QString& column : columns) {
        if (const QString text = row.Text(column); !text.isEmpty()) {
            texts.append(text);
        }
    }
    return texts.join(u' ');
}

namespace {

/// The number that a text begins with, with "." as decimal mark; none when it begins with no digit.
std::optional<double> ReadLeadingNumber(const QString& text) {
    qsizetype end = text.startsWith(u'-') ? 1 : 0;
    bool decimals = false;
    while (end < text.size() && (text.at(end).isDigit() || (text.at(end) == u'.' && !decimals))) {
        decimals = decimals || text.at(end) == u'.';
        ++end;
    }
    bool valid = false;
    const double number = text.left(end).toDouble(&valid);
    return valid ? std::optional(number) : std::nullopt;
}

/// The number of a source column; the error does not name the column.
double NumberIn(const SourceRow& row, const QString& column) {
    const QVariant value = row.Value(column);
    if (!HoldsNumber(value) && row.IsBlank(column)) {
        return 0;
    }
    if (const auto number = mod_ovTools::ReadNumber(value)) {
        return *number;
    }
    throw ImportError(QStringLiteral("'%1' non è un numero").arg(row.Text(column)));
}

} // namespace

namespace {

/// What some work makes of a column, whose errors name it.
template<class Work>
auto OfColumn(const QString& column, const Work& work) {
    try {
        return work();
    } catch (ImportError& error) {
        error.AddContext(QStringLiteral("colonna '%1'").arg(column));
        throw;
    }
}

} // namespace

double NumberOf(const SourceRow& row, const QString& column) {
    return OfColumn(column, [&] { return NumberIn(row, column); });
}

int WholeNumberOf(const SourceRow& row, const QString& column) {
    return OfColumn(column, [&] { return WholePartOf(NumberIn(row, column)); });
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
    return Around(rule, rule.text.isEmpty() ? words : rule.text + QStringLiteral("; ") + words,
                  [condition = std::move(condition), apply = rule.apply](const RuleInput& input) {
                      return condition(input) ? apply(input) : RuleValue();
                  });
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
    return {"com'è letto", [](const RuleInput& input) { return RuleValue(input.Value()); }};
}

Rule Text() {
    return OnText("senza spazi ai bordi", [](const QString& text) { return text; });
}

Rule First(int count) {
    return OnText(QStringLiteral("primi %1 caratteri").arg(count),
                  [count](const QString& text) { return FirstOf(text, count); });
}

Rule From(int position) {
    return OnText(QStringLiteral("dal carattere %1 in poi").arg(position),
                  [position](const QString& text) { return RestOf(text, position - 1); });
}

Rule SecondName(int count) {
    return {QStringLiteral("dal carattere %1 in poi della prima, e la seconda").arg(count + 1),
            [count](const RuleInput& input) {
                const QString rest = RestOf(input.row.Text(input.columns.first()), count).trimmed();
                return RuleValue(QString(rest + ' ' + input.row.Text(input.columns.last())).trimmed());
            }};
}

Rule FirstUpper(int count) {
    return OnText(QStringLiteral("primi %1 caratteri, senza spazi ai bordi, maiuscoli").arg(count),
                  [count](const QString& text) { return FirstOf(text, count).trimmed().toUpper(); });
}

Rule Part(int position, int count) {
    return OnText(
        QStringLiteral("dal carattere %1 in poi, senza spazi ai bordi, primi %2").arg(position).arg(count),
        [position, count](const QString& text) { return FirstOf(RestOf(text, position - 1).trimmed(), count); });
}

Rule Digits(int count) {
    return OnText(QStringLiteral("%1 cifre se è un numero intero").arg(count), [count](const QString& text) {
        const auto number = ReadWholeNumber(text);
        return number && *number >= 0 ? QStringLiteral("%1").arg(*number, count, 10, QLatin1Char('0')) : text;
    });
}

Rule WithoutBlanks() {
    return OnText("senza spazi", [](QString text) { return text.remove(u' '); });
}

Rule LeadingNumber() {
    return {"il numero con cui comincia", [](const RuleInput& input) -> RuleValue {
                const QString text = input.Text();
                if (text.isEmpty()) {
                    return QVariant();
                }
                if (const auto number = mod_ovTools::ReadNumber(text)) {
                    return QVariant(*number);
                }
                const auto number = ReadLeadingNumber(text);
                if (!number) {
                    throw ImportError(QStringLiteral("'%1' non è un numero").arg(text));
                }
                const QString what = IsDiscountChain(text) ? QStringLiteral("SCONTO RIDOTTO A UN SOLO VALORE")
                                                           : QStringLiteral("NUMERO RIDOTTO");
                modImport::LogNote(input.session, QStringLiteral("%1: %2, colonna '%3': '%4' letto come %5")
                                                      .arg(what, input.session.Errors.RowKey(), input.columns.first(),
                                                           text, mod_ovTools::NumberText(*number)));
                return QVariant(*number);
            }};
}

Rule RoundedTo(int decimals) {
    return {QStringLiteral("arrotondato a %1 decimali").arg(decimals), [decimals](const RuleInput& input) {
                return RuleValue(input.Text().isEmpty()
                                     ? QVariant()
                                     : ::RoundedTo(NumberIn(input.row, input.columns.first()), decimals));
            }};
}

Rule FirstNotZero() {
    return {"la prima diversa da zero",
            [](const RuleInput& input) { return RuleValue(::RoundedTo(FirstNumber(input, 0), UnitDecimals)); }};
}

Rule MarkUp() {
    return Needing(
        1,
        {"ricarico percentuale della prima sulla successiva diversa da zero, 2 decimali", [](const RuleInput& input) {
             return RuleValue(MarkUpOf(NumberIn(input.row, input.columns.first()), FirstNumber(input, 1)));
         }});
}

Rule CodeAndText(int count) {
    return {QStringLiteral("codice, \" - \" e testo, primi %1 caratteri").arg(count), [count](const RuleInput& input) {
                return RuleValue(FirstOf(input.facts.code + QStringLiteral(" - ") + input.Text(), count));
            }};
}

Rule Times(double factor) {
    return {QStringLiteral("per %1, arrotondato a %2 decimali").arg(factor).arg(UnitDecimals),
            [factor](const RuleInput& input) {
                return RuleValue(input.Text().isEmpty()
                                     ? QVariant()
                                     : ::RoundedTo(NumberIn(input.row, input.columns.first()) * factor, UnitDecimals));
            }};
}

Rule Discount(int position) {
    return {QStringLiteral("numero %1 di quelli uniti da \"+\"").arg(position), [position](const RuleInput& input) {
                const double discount = DiscountsOf(input.Text())[static_cast<size_t>(position - 1)];
                return RuleValue(discount == 0 ? QVariant() : discount);
            }};
}

Rule Not(const Rule& rule) {
    return Around(rule, QStringLiteral("il contrario: ") + rule.text,
                  [apply = rule.apply](const RuleInput& input) -> RuleValue {
                      const RuleValue value = apply(input);
                      return value ? RuleValue(!mod_ovTools::ToBoolean(*value)) : value;
                  });
}

Rule Is(const QString& text) {
    return {QStringLiteral("vero per \"%1\"").arg(text),
            [text](const RuleInput& input) { return RuleValue(input.Text().compare(text, Qt::CaseInsensitive) == 0); }};
}

Rule Flag() {
    return {"vero per \"S\", \"Y\", \"T\", \"True\", \"1\" e \"-1\"", [](const RuleInput& input) {
                static const QStringList set{"S", "Y", "T", "TRUE", "1", "-1"};
                return RuleValue(set.contains(input.Text().toUpper()));
            }};
}

Rule UpperOr(int count, const QString& blank) {
    return WithDefault({QStringLiteral("primi %1 caratteri maiuscoli, \"%2\" se è vuoto").arg(count).arg(blank),
                        [count, blank](const RuleInput& input) {
                            const QString text = FirstOf(input.Text(), count).toUpper();
                            return RuleValue(text.isEmpty() ? blank : text);
                        }},
                       !blank.isEmpty());
}

Rule Choice(const QList<QPair<QString, QString>>& choices, const QString& otherwise) {
    QStringList words;
    for (const auto& [from, to] : choices) {
        words.append(QStringLiteral("\"%1\" per \"%2\"").arg(to, from));
    }
    words.append(QStringLiteral("altrimenti \"%1\"").arg(otherwise));
    const auto choose = [choices, otherwise](const QString& text) {
        for (const auto& [from, to] : choices) {
            if (text.compare(from, Qt::CaseInsensitive) == 0) {
                return to;
            }
        }
        return otherwise;
    };
    return WithDefault(OnText(words.join(QStringLiteral(", ")), choose), !choose({}).isEmpty());
}

Rule Constant(const QVariant& value) {
    return WithDefault({QStringLiteral("costante \"%1\"").arg(mod_ovTools::ToText(value)),
                        [value](const RuleInput&) { return RuleValue(value); }},
                       !value.isNull());
}

Rule Today() {
    return WithDefault({"giorno dell'importazione",
                        [](const RuleInput& input) { return RuleValue(input.session.UserManager.DataElaborazione); }});
}

Rule MomentOrNow() {
    return WithDefault({"com'è letto, momento dell'importazione se è vuoto", [](const RuleInput& input) {
                            return RuleValue(input.Text().isEmpty() ? QVariant(input.session.Now()) : input.Value());
                        }});
}

Rule Code() {
    return {"codice assegnato alla riga", [](const RuleInput& input) { return RuleValue(input.facts.code); }};
}

Rule IsCustomer() {
    return {"vero per un cliente", [](const RuleInput& input) { return RuleValue(input.facts.roles.customer); }};
}

Rule IsSupplier() {
    return {"vero per un fornitore", [](const RuleInput& input) { return RuleValue(input.facts.roles.supplier); }};
}

Rule IsCarrier() {
    return {"vero per un vettore", [](const RuleInput& input) { return RuleValue(input.facts.roles.carrier); }};
}

Rule Translated(const QString& table, const QString& field) {
    return {QStringLiteral("tradotto con SYS_IMP (%1, %2), i codici che mancano vi si annotano").arg(table, field),
            [table, field](const RuleInput& input) -> RuleValue {
                const QString code = NewCode(input, table, field);
                return code.isEmpty() ? RuleValue() : RuleValue(code);
            }};
}

Rule TranslatedOr(const QString& table, const QString& field, const QString& blank) {
    const Rule translated = Translated(table, field);
    return WithDefault({QStringLiteral("%1, \"%2\" se è vuoto").arg(translated.text, blank),
                        [translated, blank](const RuleInput& input) {
                            return input.Text().isEmpty() ? RuleValue(blank) : translated.apply(input);
                        }},
                       !blank.isEmpty());
}

Rule TranslatedOrUpper(const QString& table, const QString& field, const QString& blank) {
    return WithDefault(
        {QStringLiteral("tradotto con SYS_IMP (%1, %2), i codici che mancano vi si annotano e si scrivono "
                        "maiuscoli, \"%3\" se è vuoto")
             .arg(table, field, blank),
         [table, field, blank](const RuleInput& input) -> RuleValue {
             const QString text = input.Text();
             if (text.isEmpty()) {
                 return blank;
             }
             const QString code = NewCode(input, table, field);
             return code.isEmpty() ? text.toUpper() : code;
         }},
        !blank.isEmpty());
}

Rule TranslatedOrKnown(const QString& table, const QString& field, const QString& codeTable) {
    return {QStringLiteral("tradotto con SYS_IMP (%1, %2); altrimenti com'è se %3 ha quel codice, altrimenti annotato")
                .arg(table, field, codeTable),
            [table, field, codeTable](const RuleInput& input) -> RuleValue {
                const QString code = TranslatedCode(input.session, table, field, input.Text(), codeTable);
                return code.isEmpty() ? RuleValue() : RuleValue(code);
            }};
}

Rule LookedUp(const QString& table, const QString& keyColumn, const QString& column) {
    return {QStringLiteral("%1 della riga di %2 di cui è %3, niente se manca").arg(column, table, keyColumn),
            [table, keyColumn, column](const RuleInput& input) -> RuleValue {
                const QString text = input.Text();
                const QString found = text.isEmpty() ? text : LookUp(input.session, table, keyColumn, text, column);
                return found.isEmpty() ? RuleValue() : RuleValue(found);
            }};
}

Rule VatCode(const QString& table, const QString& field) {
    return WithDefault(
        {QStringLiteral("\"%3\" se è vuoto; altrimenti tradotto con SYS_IMP (%1, %2), altrimenti com'è se TAB_IVA "
                        "lo ha, altrimenti annotato, scritto nel log e \"%3\"")
             .arg(table, field, schema::defaults::VatCode),
         [table, field](const RuleInput& input) {
             const QString code = VatCodeOf(input.session, table, field, input.Text());
             return RuleValue(code.isEmpty() ? schema::defaults::VatCode : code);
         }});
}

Rule Currency(const QString& table, const QString& field) {
    return WithDefault(
        {QStringLiteral("\"%3\" se è vuoto; altrimenti tradotto con SYS_IMP (%1, %2), altrimenti com'è se TAB_VAL "
                        "lo ha, altrimenti annotato, scritto nel log e \"%3\"")
             .arg(table, field, schema::defaults::Currency),
         [table, field](const RuleInput& input) {
             return RuleValue(CurrencyOf(input.session, table, field, input.Text()));
         }});
}

Rule Country(const QString& table, const QString& field) {
    return WithDefault(
        {QStringLiteral("tradotto con SYS_IMP (%1, %2), i codici che mancano vi si annotano; altrimenti \"ITA\" per "
                        "vuoto e Italia, altrimenti un testo di tre lettere com'è")
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
             const bool isCode = text.size() == codeSize && // a number is one of the source's own
                                 std::all_of(text.begin(), text.end(), [](QChar c) { return c.isLetter(); });
             return isCode ? RuleValue(text) : RuleValue();
         }});
}

Rule Or(const Rule& rule, const QVariant& otherwise) {
    const QString words =
        otherwise.isNull() ? QStringLiteral("vuoto") : QString(u'"' + mod_ovTools::ToText(otherwise) + u'"');
    Rule whole =
        Around(rule, QStringLiteral("%1; %2 se manca").arg(rule.text, words),
               [apply = rule.apply, otherwise](const RuleInput& input) -> RuleValue {
                   RuleValue value = apply(input);
                   return value && !mod_ovTools::ToText(*value).trimmed().isEmpty() ? value : RuleValue(otherwise);
               });
    whole.hasDefault = rule.hasDefault || !otherwise.isNull();
    return whole;
}

Rule Or(const Rule& rule, const Rule& otherwise) {
    Rule whole = Around(rule, QStringLiteral("%1; se manca %2").arg(rule.text, otherwise.text),
                        [apply = rule.apply, other = otherwise.apply](const RuleInput& input) -> RuleValue {
                            RuleValue value = apply(input);
                            return value && !mod_ovTools::ToText(*value).trimmed().isEmpty() ? value : other(input);
                        });
    whole.reads = rule.reads + otherwise.reads;
    whole.elsewhere = rule.elsewhere + otherwise.elsewhere;
    whole.isElsewhere = rule.isElsewhere && otherwise.isElsewhere;
    whole.hasDefault = rule.hasDefault || otherwise.hasDefault;
    return whole;
}

Rule NotNull(const Rule& rule) {
    return Around(rule, rule.text + QStringLiteral("; niente se manca"),
                  [apply = rule.apply](const RuleInput& input) -> RuleValue {
                      RuleValue value = apply(input);
                      return value && value->isNull() ? RuleValue() : value;
                  });
}

Rule NotBlank(const Rule& rule) {
    return WithDefault(Only(
                           "solo se non è vuoto", [](const RuleInput& input) { return !input.Text().isEmpty(); }, rule),
                       false);
}

Rule WhenNotBlank(const QString& column, const Rule& rule) {
    return Only(
        QStringLiteral("solo se %1 non è vuota").arg(column),
        [column](const RuleInput& input) { return !input.row.IsBlank(column); }, rule);
}

Rule CustomerOnly(const Rule& rule) {
    Rule only = Only(
        "solo clienti", [](const RuleInput& input) { return input.facts.roles.customer; }, rule);
    only.side = Side::Customer;
    return only;
}

Rule SupplierOnly(const Rule& rule) {
    Rule only = Only(
        "solo fornitori", [](const RuleInput& input) { return input.facts.roles.supplier; }, rule);
    only.side = Side::Supplier;
    return only;
}

} // namespace rules

} // namespace contract
