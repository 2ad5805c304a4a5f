#include "adapters/contract/kinds/PartyColumns.h"

#include "core/schemaDefaults.h"

namespace contract {

namespace {

using namespace rules;

constexpr int NameSize = 35;
constexpr int BankDigits = 5;

const LineGroup NoLines{std::vector<MapLine>()};

LineGroup Line(const QString& target, const QString& source, const Rule& rule) {
    return source.isEmpty() ? NoLines : LineGroup(target, source, rule);
}

LineGroup RoleLines(const QString& customer, const QString& supplier, const QString& source, const Rule& rule) {
    return source.isEmpty() ? NoLines : LineGroup(ByRole(customer, supplier, source, rule));
}

/// The company's own language where the source tells none.
Rule Language(const QString& table, const QString& column) {
    const Rule known = TranslatedOrKnown(table, column, "TAB_LNG");
    return WithDefault(Around(known, known.text + QStringLiteral("; \"%1\" se è vuoto").arg(schema::defaults::Language),
                              [apply = known.apply](const RuleInput& input) {
                                  return input.Text().isEmpty() ? RuleValue(schema::defaults::Language) : apply(input);
                              }));
}

LineGroup SecondNameOf(const PartyColumns& of) {
    if (of.name.isEmpty()) { // the table of the conditions alone
        return NoLines;
    }
    return of.name2.isEmpty() ? LineGroup("CORA2", of.name, From(NameSize + 1))
                              : LineGroup("CORA2", of.name + ", " + of.name2, SecondName(NameSize));
}

Lines IdentityLines(const QString& table, const PartyColumns& of) {
    return {
        Line("CORAS", of.name, First(NameSize)),
        SecondNameOf(of),
        Line("COPER", of.isPerson, Flag()),
        Line("COCOG", of.surname, Text()),
        Line("CONOM", of.firstName, Text()),
        Line("COIND", of.street, Text()),
        Line("CONRC", of.houseNumber, Text()),
        Line("COCAP", of.postCode, Text()),
        Line("COCIT", of.town, Text()),
        Line("COPRO", of.province, Text()),
        Line("CONAZ", of.country, Country(table, of.country)),
        Line("COIVA", of.vatNumber, NotBlank(Text())),
        Line("COFIS", of.taxCode, NotBlank(Text())),
        Line("COCFE", of.recipientCode, NotBlank(Text())),
        Line("COPEC", of.certifiedMail, NotBlank(Text())),
        Line("COLNG", of.language, Language(table, of.language)),
        Line("COBLK", of.isBlocked, Flag()),
        Line("COANN", of.isCancelled, Flag()),
        Line("CONOT", of.note, Text()),
        Line("DTINS", of.created, NotBlank(MomentOrNow())),
    };
}

Lines Conditions(const QString& table, const PartyColumns& of) {
    return {
        RoleLines("COMOP", "COMOA", of.payment, Translated(table, of.payment)),
        Line("COBAN", of.ownBank, OwnBank(table, of.ownBank)),
        Line("COABI", of.abi, NotBlank(Digits(BankDigits))),
        Line("COCAB", of.cab, NotBlank(Digits(BankDigits))),
        Line("COCIN", of.cin, NotBlank(Text())),
        Line("COCOC", of.account, NotBlank(Text())),
        Line("COIBA", of.iban, NotBlank(WithoutBlanks())),
        Line("COBIC", of.bic, NotBlank(Text())),
        RoleLines("COSC1", "COSF1", of.discount1, NotBlank(RoundedTo(2))),
        RoleLines("COSC2", "COSF2", of.discount2, NotBlank(RoundedTo(2))),
        RoleLines("COSC3", "COSF3", of.discount3, NotBlank(RoundedTo(2))),
        Line("COAGE", of.agent, TranslatedOrKnown(table, of.agent, "AGE_NTI")),
        RoleLines("COLSC", "COLSF", of.list, Translated(table, of.list)),
        Line("COVAL", of.currency, Currency(table, of.currency)),
        Line("COZON", of.zone, Translated(table, of.zone)),
        RoleLines("COCCC", "COCCF", of.category, Translated(table, of.category)),
        Line("COESE", of.exemption, ExemptVat(table, of.exemption)),
        Line("COPOR", of.port, Translated(table, of.port)),
        Line("COVEP", of.carrier, Translated(table, of.carrier)),
        Line("COFID", of.credit, NotZero()),
        RoleLines("COMAC", "COMAF", of.ledger, NotBlank(Text())),
    };
}

} // namespace

Lines PartyLines(const QString& table, const PartyColumns& columns) {
    return {LineGroup(IdentityLines(table, columns).Over({})), LineGroup(Conditions(table, columns).Over({}))};
}

Lines BranchLines(const QString& table, const BranchColumns& of) {
    return {
        Line("CDSED", of.number, Digits(3)),
        Line("SERAS", of.name, Text()),
        Line("SEIND", of.street, Text()),
        Line("SENRC", of.houseNumber, Text()),
        Line("SECAP", of.postCode, WhenNotBlank(of.town, Text())),
        Line("SECIT", of.town, WhenNotBlank(of.town, Text())),
        Line("SEPRO", of.province, Text()),
        Line("SENAZ", of.country, Country(table, of.country)),
        Line("SERIF", of.person, Text()),
        Line("SEDEF", of.isDefault, Flag()),
        Line("SENOT", of.note, Text()),
    };
}

} // namespace contract
