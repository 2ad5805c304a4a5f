// Rules on the shape of a value: dates, numbers and discounts that a source writes as texts, streets.

#include "adapters/contract/map/emptyDays.h"
#include "adapters/contract/map/rules.h"
#include "adapters/contract/map/wholeNumbers.h"
#include "sql/mod_ovTools.h"

#include <QRegularExpression>

#include <cmath>

namespace contract {

namespace {

constexpr int UnitDecimals = 6;

/// A text of zeros, blanks and separators alone stands for no day.
bool IsNoDay(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c == u'0' || !c.isLetterOrNumber(); });
}

/// The day of a text; not valid when it tells none. Of two digits of a year 50 is 1950, 49 is 2049. The century is put
/// in front of them: 29/02/00 is a day of 2000 and none of 1900.
QDate DayOf(QString text, QString format) {
    constexpr int turn = 2050;
    constexpr int century = 100;
    const qsizetype year = format.contains(QLatin1String("yyyy")) ? -1 : format.indexOf(QLatin1String("yy"));
    if (year < 0 || text.size() < year) {
        return QDate::fromString(text, format);
    }
    const QDate day =
        QDate::fromString(text.insert(year, QLatin1String("20")), format.insert(year, QLatin1String("yy")));
    return day.year() < turn ? day : day.addYears(-century);
}

QRegularExpressionMatch NumberOfStreet(const QString& street) {
    static const QRegularExpression number(QStringLiteral("^(.*?\\S)[\\s,]+(?:n\\.?\\s*|n°\\s*)?(\\d\\S{0,9})$"),
                                           QRegularExpression::CaseInsensitiveOption);
    return number.match(street);
}

} // namespace

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

Rule Around(Rule rule, QString what, Rule::Work how) {
    rule.text = std::move(what);
    rule.apply = std::move(how);
    return rule;
}

Rule AlsoIn(std::vector<TableNeed> columns, Rule rule) {
    rule.elsewhere = std::move(columns);
    return rule;
}

Rule Needing(int columns, Rule rule) {
    rule.vital = columns;
    return rule;
}

Rule WithDefault(Rule rule, bool has) {
    rule.hasDefault = has;
    return rule;
}

namespace rules {

Rule FirstNotBlank(const Rule& rule) {
    return Around(
        rule, QStringLiteral("della prima non vuota: ") + rule.text, [apply = rule.apply](const RuleInput& input) {
            const auto column = std::find_if(input.columns.begin(), input.columns.end(),
                                             [&input](const QString& one) { return !input.row.IsBlank(one); });
            const QStringList chosen{column == input.columns.end() ? input.columns.first() : *column};
            return apply({input.session, input.row, chosen, input.facts});
        });
}

Rule DigitsAsNumber() {
    return {"le sole cifre, come numero intero", [](const RuleInput& input) -> RuleValue {
                QString digits = input.Text();
                digits.removeIf([](QChar character) { return !character.isDigit(); });
                bool isNumber = false;
                const qint64 number = digits.toLongLong(&isNumber);
                if (!isNumber) {
                    throw ImportError(QStringLiteral("'%1' non ha un numero").arg(input.Text()));
                }
                return QString::number(number);
            }};
}

Rule DateText(const QString& format) {
    return {QStringLiteral("giorno scritto \"%1\"; nessuno se è vuoto o tutto zeri").arg(format),
            [format](const RuleInput& input) -> RuleValue {
                const QString text = input.Text();
                if (IsNoDay(text)) {
                    return QVariant();
                }
                const QDate day = DayOf(text, format);
                if (!day.isValid()) {
                    throw ImportError(QStringLiteral("'%1' non è una data scritta %2").arg(text, format));
                }
                return QVariant(day);
            }};
}

Rule Day(const QDate& none) {
    const QString own = none.isValid() ? QStringLiteral("il %1, ").arg(none.toString(Qt::ISODate)) : QString();
    return {QStringLiteral("data, nessuna %1il 1899-12-30 e il 1900-01-01").arg(own),
            [none](const RuleInput& input) -> RuleValue {
                if (input.Text().isEmpty()) {
                    return QVariant();
                }
                const auto day = mod_ovTools::ReadDate(input.Value());
                if (!day) {
                    throw ImportError(QStringLiteral("'%1' non è una data").arg(input.Text()));
                }
                return day->date() == none ? QVariant() : WithoutEmptyDay(*day);
            }};
}

Rule DayThere(const QDate& none) { return NotNull(Day(none)); }

Rule DayOrToday() {
    return WithDefault(
        {"data, giorno dell'importazione se è vuota", [day = Day().apply](const RuleInput& input) -> RuleValue {
             const QVariant told = day(input).value_or(QVariant());
             return told.isNull() ? QVariant(input.session.UserManager.DataElaborazione) : told;
         }});
}

Rule HasExpired() {
    return {"vero per una data non successiva al giorno dell'importazione",
            [day = Day().apply](const RuleInput& input) -> RuleValue {
                const QVariant date = day(input).value_or(QVariant());
                return !date.isNull() && date.toDate() <= input.session.UserManager.DataElaborazione;
            }};
}

Rule Implied(int decimals) {
    return {QStringLiteral("le ultime %1 cifre sono decimali").arg(decimals),
            [decimals](const RuleInput& input) -> RuleValue {
                const QString text = input.Text();
                if (text.isEmpty()) {
                    return QVariant();
                }
                const auto number = ReadWholeNumber(text);
                if (!number) {
                    throw ImportError(QStringLiteral("'%1' non è un numero intero").arg(text));
                }
                return QVariant(static_cast<double>(*number) / std::pow(10, decimals));
            }};
}

Rule UnitFactor() {
    return Needing(2, {"fattore, \"*\" il numero e \"/\" il suo inverso, di 1 anche senza segno; niente se è zero",
                       [](const RuleInput& input) -> RuleValue {
                           const double number = NumberOf(input.row, input.columns.last());
                           const QString how = input.row.Text(input.columns.first());
                           if (number == 0) {
                               return std::nullopt;
                           }
                           if (how != u"*" && how != u"/" && (number != 1 || !how.isEmpty())) {
                               throw ImportError(QStringLiteral("'%1' non è né * né /").arg(how));
                           }
                           return ::RoundedTo(how == u"/" ? 1 / number : number, UnitDecimals);
                       }});
}

Rule NotZero() {
    return {QStringLiteral("arrotondato a %1 decimali, niente se è zero").arg(UnitDecimals),
            [](const RuleInput& input) -> RuleValue {
                const QString text = input.Text();
                const auto number = text.isEmpty() ? std::optional(0.0) : mod_ovTools::ReadNumber(input.Value());
                if (!number) {
                    throw ImportError(QStringLiteral("'%1' non è un numero").arg(text));
                }
                return *number == 0 ? RuleValue() : RuleValue(::RoundedTo(*number, UnitDecimals));
            }};
}

Rule Street() {
    return {"via senza il numero civico", [](const RuleInput& input) {
                const QString text = input.Text();
                const auto match = NumberOfStreet(text);
                QString street = match.hasMatch() ? match.captured(1) : text;
                while (street.endsWith(u',')) {
                    street.chop(1);
                }
                return RuleValue(street.trimmed());
            }};
}

Rule StreetNumber() {
    return {"numero civico, niente se manca", [](const RuleInput& input) {
                const auto match = NumberOfStreet(input.Text());
                return match.hasMatch() ? RuleValue(match.captured(2)) : RuleValue();
            }};
}

} // namespace rules

} // namespace contract
