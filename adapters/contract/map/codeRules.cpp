#include "adapters/contract/map/codeRules.h"

#include "adapters/contract/map/lookups.h"
#include "core/modImport.h"

namespace contract::rules {

Rule NotZeroCode(const Rule& rule) {
    return WithDefault(Around(rule, rule.text + QStringLiteral("; solo se non è vuoto né zero"),
                              [apply = rule.apply](const RuleInput& input) {
                                  const QString code = input.Text();
                                  return code.isEmpty() || code == u"0" ? RuleValue() : apply(input);
                              }),
                       false);
}

Rule ZeroAsBlank(const Rule& rule) {
    return Around(rule, QStringLiteral("0 vale vuoto; ") + rule.text, [apply = rule.apply](const RuleInput& input) {
        const QString text = input.Text();
        return apply({input.session, input.row, input.columns, input.facts, text == u"0" ? QString() : text});
    });
}

Rule ClearedWhenBlank(const Rule& rule) {
    return WithDefault(Around(rule, rule.text + QStringLiteral("; vuoto se è vuoto"),
                              [apply = rule.apply](const RuleInput& input) {
                                  return input.Text().isEmpty() ? RuleValue(QVariant()) : apply(input);
                              }),
                       false);
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
    return WithDefault(
        {QStringLiteral("\"%1\" dove è %2, altrimenti \"%3\"").arg(set.toString(), flag.text, otherwise.toString()),
         [set, otherwise, isSet = flag.apply](const RuleInput& input) {
             return RuleValue(isSet(input)->toBool() ? set : otherwise);
         }},
        !otherwise.toString().isEmpty());
}

Rule VatRate() {
    const Rule rounded = RoundedTo(2);
    return WithDefault( // where the column lacks nobody knows the rate
        Around(rounded, rounded.text + QStringLiteral("; 0 se è vuota, e lo si annota"),
               [apply = rounded.apply](const RuleInput& input) -> RuleValue {
                   if (!input.Text().isEmpty()) {
                       return apply(input);
                   }
                   modImport::LogNote(input.session, QStringLiteral("ALIQUOTA VUOTA: %1: scritta 0, come di un esente")
                                                         .arg(input.session.Errors.RowKey()));
                   return QVariant(0);
               }),
        false);
}

Rule PartyByMark(const QString& supplier) {
    return {QStringLiteral("controparte importata dalla prima, di un fornitore se l'ultima comincia con \"%1\"; riga "
                           "abbandonata se manca")
                .arg(supplier),
            [supplier, ofCustomer = CustomerOf().apply, ofSupplier = SupplierOf().apply](const RuleInput& input) {
                const bool isSupplier = input.row.Text(input.columns.last()).startsWith(supplier, Qt::CaseInsensitive);
                return (isSupplier ? ofSupplier : ofCustomer)(
                    {input.session, input.row, input.columns, input.facts, input.row.Text(input.columns.first())});
            }};
}

Rule KnownParty() {
    return {"controparte importata da quel codice, di un cliente, altrimenti di un fornitore; se manca va nel log e "
            "non si scrive",
            [](const RuleInput& input) -> RuleValue {
                const QString text = input.Text();
                QString code;
                for (const char* column : {"COCGE", "COFGE"}) {
                    code = code.isEmpty() && !text.isEmpty() ? LookUp(input.session, "CON_TRO", column, text, "CDCON")
                                                             : code;
                }
                if (code.isEmpty() && !text.isEmpty()) {
                    modImport::LogNote(
                        input.session,
                        QStringLiteral("CONTROPARTE NON TROVATA: %1: '%2'").arg(input.session.Errors.RowKey(), text));
                }
                return code.isEmpty() ? RuleValue() : RuleValue(code);
            }};
}

} // namespace contract::rules
