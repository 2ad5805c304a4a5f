#include "adapters/contract/map/carrierCodes.h"

#include "adapters/contract/map/joinedParty.h"
#include "adapters/contract/map/lookups.h"
#include "core/modImport.h"
#include "core/Schema.h"
#include "sql/codeAsked.h"

namespace contract {

CarrierList CarriersOf(const Session& session, const QString& table, const QString& field) {
    static const int size = schema::FindTable("SYS_IMP")->FindColumn("TBFLD")->size;
    return {JoinedPartyList(session), QString(table + u'.' + field).left(size)};
}

QString ToldCode(Session& session, const QString& table, const QString& field, const QString& code) {
    Recordset rows =
        session.Quadrix.ExecuteWC("SELECT TBOLD, TBNEW, USINS FROM SYS_IMP WHERE " + Equals(session, "TBNAM", table) +
                                  " AND " + Equals(session, "TBFLD", field) + " AND " + Equals(session, "TBOLD", code));
    const bool isTold = StepToCode(rows, "TBOLD", code) && !IsImportUser(rows.Value("USINS").toString());
    return isTold ? rows.Value("TBNEW").toString().trimmed() : QString();
}

bool IsOnlyCompany(Session& session) { return session.Quadrix.ExecuteCommand("SELECT COUNT(*) FROM SYS_AZI") <= 1; }

QString CarrierCode(Session& session, const QString& table, const QString& field, const QString& code) {
    if (code.isEmpty() || session.Quadrix.IsAbsent("SYS_IMP", "TBOLD", code)) {
        return {};
    }
    const QString told = ToldCode(session, table, field, code);
    if (!told.isEmpty()) {
        return told;
    }
    const auto [list, ofList] = CarriersOf(session, table, field);
    const QString given = StoredNewCode(session, list, ofList, code).value_or(QString());
    return given.isEmpty() && IsOnlyCompany(session) ? StoredNewCode(session, table, field, code).value_or(QString())
                                                     : given;
}

namespace rules {

Rule Carrier(const QString& table, const QString& field) {
    return {
        QStringLiteral("codice che una persona gli ha dato in SYS_IMP (%1, %2), altrimenti quello dell'importazione "
                       "dei vettori nell'azienda; i codici che mancano vi si annotano")
            .arg(table, field),
        [table, field](const RuleInput& input) -> RuleValue {
            const QString text = input.Text();
            const QString code = CarrierCode(input.session, table, field, text);
            if (code.isEmpty()) {
                modImport::GetNewCode(input.session, table, field, text, true); // notes it
            }
            return code.isEmpty() ? RuleValue() : RuleValue(code);
        }};
}

} // namespace rules

} // namespace contract
