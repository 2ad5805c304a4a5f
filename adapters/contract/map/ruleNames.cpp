#include "adapters/contract/map/ruleNames.h"

#include "core/nearNames.h"
#include "sql/mod_ovTools.h"

#include <algorithm>

namespace contract {

namespace {

constexpr int Decimals = 6;

/// The arguments of a rule under way, and what its codes are translated under.
struct Arguments {
    QStringList texts;
    QString table;
    QString column;

    int Whole(int index) const {
        bool isNumber = false;
        const int number = texts.at(index).toInt(&isNumber);
        if (!isNumber) {
            throw ImportError(QStringLiteral("'%1' non è un numero intero").arg(texts.at(index)));
        }
        return number;
    }
    double Number(int index) const {
        const auto number = mod_ovTools::ReadNumber(texts.at(index));
        if (!number) {
            throw ImportError(QStringLiteral("'%1' non è un numero").arg(texts.at(index)));
        }
        return *number;
    }
};

struct NamedRule {
    const char* name;
    const char* function; ///< of `rules`, by which layout files may call it as well
    int arguments;
    Rule (*make)(const Arguments&);

    bool IsCalled(const QString& text) const {
        return text.compare(QLatin1String(name), Qt::CaseInsensitive) == 0 ||
               text.compare(QLatin1String(function), Qt::CaseInsensitive) == 0;
    }
};

const NamedRule NamedRules[] = {
    {"ComeLetto", "AsRead", 0, [](const Arguments&) { return rules::AsRead(); }},
    {"Testo", "Text", 0, [](const Arguments&) { return rules::Text(); }},
    {"Primi", "First", 1, [](const Arguments& of) { return rules::First(of.Whole(0)); }},
    {"Dal", "From", 1, [](const Arguments& of) { return rules::From(of.Whole(0)); }},
    {"Parte", "Part", 2, [](const Arguments& of) { return rules::Part(of.Whole(0), of.Whole(1)); }},
    {"PrimiMaiuscoli", "FirstUpper", 1, [](const Arguments& of) { return rules::FirstUpper(of.Whole(0)); }},
    {"Cifre", "Digits", 1, [](const Arguments& of) { return rules::Digits(of.Whole(0)); }},
    {"SenzaSpazi", "WithoutBlanks", 0, [](const Arguments&) { return rules::WithoutBlanks(); }},
    {"NumeroIniziale", "LeadingNumber", 0, [](const Arguments&) { return rules::LeadingNumber(); }},
    {"Arrotonda", "RoundedTo", 1, [](const Arguments& of) { return rules::RoundedTo(of.Whole(0)); }},
    {"Per", "Times", 1, [](const Arguments& of) { return rules::Times(of.Number(0)); }},
    {"Sconto", "Discount", 1, [](const Arguments& of) { return rules::Discount(of.Whole(0)); }},
    {"Vale", "Is", 1, [](const Arguments& of) { return rules::Is(of.texts.at(0)); }},
    {"SiNo", "Flag", 0, [](const Arguments&) { return rules::Flag(); }},
    {"DataOAdesso", "MomentOrNow", 0, [](const Arguments&) { return rules::MomentOrNow(); }},
    {"Tradotto", "Translated", 0, [](const Arguments& of) { return rules::Translated(of.table, of.column); }},
    {"TradottoO", "TranslatedOr", 1,
     [](const Arguments& of) { return rules::TranslatedOr(of.table, of.column, of.texts.at(0)); }},
    {"CodiceIva", "VatCode", 0, [](const Arguments& of) { return rules::VatCode(of.table, of.column); }},
    {"Valuta", "Currency", 0, [](const Arguments& of) { return rules::Currency(of.table, of.column); }},
    {"Nazione", "Country", 0, [](const Arguments& of) { return rules::Country(of.table, of.column); }},
};

[[noreturn]] void FailUnknown(const QString& name) {
    QStringList names;
    QStringList known;
    for (const NamedRule& rule : NamedRules) {
        names.append(QString::fromLatin1(rule.name));
        known += {QString::fromLatin1(rule.name), QString::fromLatin1(rule.function)};
    }
    throw ImportError(QStringLiteral("la regola '%1' non c'è%2; ci sono %3")
                          .arg(name, DidYouMean(name, known), names.join(QStringLiteral(", "))));
}

} // namespace

QStringList RuleForms() {
    QStringList forms;
    for (const NamedRule& rule : NamedRules) {
        const QStringList arguments(rule.arguments, QStringLiteral("n"));
        const QString inner = arguments.join(QStringLiteral(", "));
        forms.append(QString::fromLatin1(rule.name) + (inner.isEmpty() ? inner : QString(u'(' + inner + u')')));
    }
    return forms;
}

Rule RuleOf(const QString& text, const QString& sourceTable, const QString& sourceColumn) {
    const QString name = text.section(u'(', 0, 0).trimmed();
    const QString inner = text.contains(u'(') ? text.section(u'(', 1).trimmed() : QStringLiteral(")");
    const auto rule = std::find_if(std::begin(NamedRules), std::end(NamedRules),
                                   [&name](const NamedRule& each) { return each.IsCalled(name); });
    if (rule == std::end(NamedRules)) {
        FailUnknown(name);
    }
    if (!inner.endsWith(u')')) {
        throw ImportError(QStringLiteral("la regola '%1' non è chiusa da ')'").arg(text));
    }
    Arguments arguments{{}, sourceTable, sourceColumn};
    for (const QString& argument : inner.chopped(1).split(u',', Qt::SkipEmptyParts)) {
        arguments.texts.append(argument.trimmed());
    }
    if (arguments.texts.size() != rule->arguments) {
        throw ImportError(QStringLiteral("la regola '%1' vuole %2 argomenti, non %3")
                              .arg(name, QString::number(rule->arguments), QString::number(arguments.texts.size())));
    }
    return rule->make(arguments);
}

Rule UsualRule(const schema::Column& target) {
    switch (target.type) {
    case DataType::Integer:
    case DataType::Long:
    case DataType::TinyInt:
        return rules::RoundedTo(0);
    case DataType::Double:
        return rules::RoundedTo(Decimals);
    case DataType::Bit:
        return rules::Flag();
    default:
        return IsTextType(target.type) ? rules::Text() : rules::AsRead();
    }
}

} // namespace contract
