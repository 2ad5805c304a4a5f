#include "adapters/contract/map/codeRules.h"

namespace contract::rules {

Rule NotZeroCode(const Rule& rule) {
    return {rule.text + QStringLiteral("; only when neither blank nor zero"),
            [apply = rule.apply](const RuleInput& input) {
                const QString code = input.Text();
                return code.isEmpty() || code == u"0" ? RuleValue() : apply(input);
            },
            rule.side, rule.reads};
}

Rule BalanceSection(const QString& economic) {
    QList<QPair<QString, QString>> sections{{"A", "SP"}, {"P", "SP"}};
    for (const QChar letter : economic) {
        sections.append({letter, "CE"});
    }
    return Choice(sections, {});
}

Rule FlagAs(const QVariant& set, const QVariant& otherwise) {
    const Rule flag = Flag();
    return {QStringLiteral("\"%1\" where %2, else \"%3\"").arg(set.toString(), flag.text, otherwise.toString()),
            [set, otherwise, isSet = flag.apply](const RuleInput& input) {
                return RuleValue(isSet(input)->toBool() ? set : otherwise);
            }};
}

Rule PartyByMark(const QString& supplier) {
    return {QStringLiteral("counterparty imported from the first, of a supplier where the last begins with \"%1\"; "
                           "given up without one")
                .arg(supplier),
            [supplier, ofCustomer = CustomerOf().apply, ofSupplier = SupplierOf().apply](const RuleInput& input) {
                const bool isSupplier = input.row.Text(input.columns.last()).startsWith(supplier, Qt::CaseInsensitive);
                return (isSupplier ? ofSupplier : ofCustomer)(
                    {input.session, input.row, input.columns, input.facts, input.row.Text(input.columns.first())});
            }};
}

} // namespace contract::rules
