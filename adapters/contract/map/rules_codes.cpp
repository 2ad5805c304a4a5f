// Rules that find codes: of units, works, articles and counterparties, and by the ids of the source.

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/rules.h"
#include "core/modImport.h"
#include "sql/mod_ovTools.h"

namespace contract::rules {

namespace {

/// CDCON of the counterparty whose code of the source stands in a column of CON_TRO; empty when there is none.
QString ImportedFrom(const RuleInput& input, const QString& codeColumn) {
    return LookUp(input.session, QStringLiteral("CON_TRO"), codeColumn, input.Text(), QStringLiteral("CDCON"));
}

Rule CounterpartyOf(const QString& who, const QString& codeColumn) {
    return {QStringLiteral("controparte importata da quel codice %1, riga abbandonata se manca").arg(who),
            [who, codeColumn](const RuleInput& input) -> RuleValue {
                if (input.Text().isEmpty()) {
                    return std::nullopt;
                }
                return FoundParty(ImportedFrom(input, codeColumn), input.Text(), who);
            }};
}

Rule KnownCounterparty(const QString& who, const QString& codeColumn, const QString& inLog) {
    return {
        QStringLiteral("controparte importata da quel codice %1; se manca va nel log e non si scrive").arg(who),
        [codeColumn, inLog](const RuleInput& input) -> RuleValue {
            if (input.Text().isEmpty()) {
                return std::nullopt;
            }
            const QString code = ImportedFrom(input, codeColumn);
            if (code.isEmpty()) {
                modImport::LogNote(
                    input.session,
                    QStringLiteral("%1 NON TROVATO: %2: '%3'").arg(inLog, input.session.Errors.RowKey(), input.Text()));
                return std::nullopt;
            }
            return code;
        }};
}

/// Whether a VAT code is there and its rate is zero; of one whose rate nobody has told that is not known.
bool IsExempt(Session& session, const QString& vatCode) {
    const QString rate = LookUp(session, "TAB_IVA", "CDIVA", vatCode, "IVALI");
    return !rate.isEmpty() && mod_ovTools::ToDouble(rate) == 0;
}

} // namespace

Rule Unit(const QString& table, const QString& field, const QString& blank) {
    return WithDefault(
        {QStringLiteral("tradotto con SYS_IMP (%1, %2), altrimenti com'è se TAB_UMS lo ha, altrimenti annotato e "
                        "scritto maiuscolo; \"%3\" se è vuoto")
             .arg(table, field, blank),
         [table, field, blank](const RuleInput& input) -> RuleValue {
             const QString text = input.Text();
             if (text.isEmpty()) {
                 return blank;
             }
             const QString code = TranslatedCode(input.session, table, field, text, QStringLiteral("TAB_UMS"));
             return code.isEmpty() ? text.toUpper() : code;
         }},
        !blank.isEmpty());
}

Rule Work(const QString& table, const QString& field) {
    return {QStringLiteral("tradotto con SYS_IMP (%1, %2), i codici che mancano vi si annotano e si scrivono come sono")
                .arg(table, field),
            [table, field](const RuleInput& input) -> RuleValue {
                const QString text = input.Text();
                const QString code = modImport::GetNewCode(input.session, table, field, text, true);
                return code.isEmpty() ? text : code;
            }};
}

Rule ArticleCode(const QString& table, const QString& field) {
    return {QStringLiteral("tradotto con SYS_IMP (%1, %2), altrimenti il codice stesso, al massimo 50 caratteri")
                .arg(table, field),
            [table, field](const RuleInput& input) -> RuleValue {
                const QString text = input.Text();
                return text.isEmpty() ? RuleValue() : RuleValue(ArticleCodeOf(input.session, table, field, text));
            }};
}

Rule Exemption(const Rule& vatCode) {
    return Around(vatCode, vatCode.text + QStringLiteral("; solo un codice di TAB_IVA con aliquota zero"),
                  [apply = vatCode.apply](const RuleInput& input) -> RuleValue {
                      const RuleValue code = apply(input);
                      return code && IsExempt(input.session, code->toString()) ? code : RuleValue();
                  });
}

Rule ExemptVat(const QString& table, const QString& field) {
    return Exemption(TranslatedOrKnown(table, field, "TAB_IVA"));
}

Rule CustomerOf() { return CounterpartyOf("cliente", "COCGE"); }

Rule SupplierOf() { return CounterpartyOf("fornitore", "COFGE"); }

Rule PartyOf() {
    return {"controparte importata da quel codice, cliente o fornitore come il documento; riga abbandonata se manca",
            [customer = CustomerOf().apply, supplier = SupplierOf().apply](const RuleInput& input) {
                return input.facts.roles.customer ? customer(input) : supplier(input);
            }};
}

Rule KnownSupplier() { return KnownCounterparty("fornitore", "COFGE", "FORNITORE"); }

Rule KnownCustomer() { return KnownCounterparty("cliente", "COCGE", "CLIENTE"); }

Rule OwnBank(const QString& table, const QString& field) {
    return {QStringLiteral("tradotto con SYS_IMP (%1, %2), altrimenti la banca di cui è il codice esterno; se manca si "
                           "annota e non si scrive")
                .arg(table, field),
            [table, field](const RuleInput& input) -> RuleValue {
                if (input.Text().isEmpty()) { // as is the external code of each bank that was entered by hand
                    return std::nullopt;
                }
                Session& session = input.session;
                const QString translated = modImport::FindNewCode(session, table, field, input.Text());
                const QString code =
                    translated.isEmpty() ? LookUp(session, "BAN_CHE", "BAEXT", input.Text(), "CDBAN") : translated;
                if (code.isEmpty()) {
                    modImport::GetNewCode(session, table, field, input.Text(), true);
                    return std::nullopt;
                }
                return code;
            }};
}

Rule Via(const QString& table, const QString& idColumn, const QString& column, const Rule& rule) {
    const auto textOf = [table, idColumn, column](const RuleInput& input) {
        const QString id = input.Text();
        if (id.isEmpty() || id == u"0") {
            return QString();
        }
        ovConnection& source = input.session.SourceConnection();
        const Recordset rows = source.ExecuteWC(QStringLiteral("SELECT %1 FROM %2 WHERE %3 = %4")
                                                    .arg(column, table, idColumn, LiteralOf(source, input.Value())));
        if (rows.Eof()) {
            modImport::LogNoteOnce(input.session, QStringLiteral("RIFERIMENTO NON TROVATO: %1: '%2' non è in %3.%4")
                                                      .arg(input.session.Errors.RowKey(), id, table, idColumn));
            return QString();
        }
        return SourceRow(rows).Text(column);
    };
    Rule via =
        Around(rule, QStringLiteral("%1 della riga di %2 con quel %3: %4").arg(column, table, idColumn, rule.text),
               [textOf, apply = rule.apply](const RuleInput& input) {
                   return apply({input.session, input.row, input.columns, input.facts, textOf(input)});
               });
    via.reads = std::vector<TableNeed>{{table, {idColumn, column}}} + rule.reads;
    return via;
}

} // namespace contract::rules
