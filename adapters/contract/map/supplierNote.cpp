#include "adapters/contract/map/supplierNote.h"

#include "adapters/contract/map/lookups.h"
#include "core/modImport.h"

namespace contract {

namespace {

/// A counterparty code of digits is told in six of them.
QString SixDigits(const QString& code) {
    bool isNumber = false;
    const qint64 number = code.toLongLong(&isNumber);
    return isNumber ? QStringLiteral("%1").arg(number, 6, 10, QLatin1Char('0')) : code;
}

/// Empty for a blank code, and for a supplier who is not there, which the log tells.
QString NoteOf(Session& session, const QString& code, const QString& row) {
    const QString supplier = code.isEmpty() ? QString() : PartyOrSurvivor(session, code, true);
    if (supplier.isEmpty()) {
        if (!code.isEmpty()) {
            modImport::LogNote(session, QStringLiteral("FORNITORE NON TROVATO: %1: '%2'").arg(row, code));
        }
        return {};
    }
    return "Fornitore: " + SixDigits(supplier) + " - " + LookUp(session, "CON_TRO", "CDCON", supplier, "CORAS");
}

} // namespace

QString PartyOrSurvivor(Session& session, const QString& code, bool supplier) {
    const QString found = LookUp(session, "CON_TRO", SourceCodeColumn(!supplier), code, "CDCON");
    if (!found.isEmpty()) {
        return found;
    }
    const QString survivor =
        modImport::GetNewCode(session, "UNIFICATI", supplier ? "F-CODICECF" : "C-CODICECF", code, false);
    return IsThere(session, "CON_TRO", "CDCON", survivor) ? survivor : QString();
}

namespace rules {

Rule SupplierNote(const QString& table, const QString& naming) {
    return {"\"Fornitore: \", codice e nome del fornitore, di uno fuso il superstite di SYS_IMP (UNIFICATI, "
            "F-CODICECF); uno che manca va nel log e non si scrive; poi gli altri testi, uno per riga",
            [table, naming](const RuleInput& input) {
                QStringList lines{
                    NoteOf(input.session, input.row.Text(input.columns.first()), NameOf(input.row, table, naming))};
                for (const QString& column : input.columns.mid(1)) {
                    lines.append(input.row.Text(column));
                }
                lines.removeAll(QString());
                return RuleValue(lines.join(u'\n'));
            }};
}

} // namespace rules

} // namespace contract
