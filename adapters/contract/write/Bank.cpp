#include "adapters/contract/write/Bank.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/SourceRow.h"

namespace contract {

namespace {

const QString BankTable = QStringLiteral("BAN_CHE");
const QString BankCode = QStringLiteral("CDBAN");

QString NextBankCode(Session& session) {
    constexpr int digits = 5;
    constexpr int last = 99999;
    int highest = 0;
    for (Recordset rows = session.Quadrix.ExecuteWC("SELECT CDBAN FROM " + session.Quadrix.GetFullTableName(BankTable));
         !rows.Eof(); rows.MoveNext()) {
        highest = std::max(highest, SourceRow(rows).Text(BankCode).toInt()); // a code that is no number gives 0
    }
    if (highest >= last) {
        throw ImportError(QStringLiteral("i codici delle banche (BAN_CHE) sono esauriti: l'ultimo è %1").arg(highest));
    }
    return QStringLiteral("%1").arg(highest + 1, digits, 10, QLatin1Char('0'));
}

} // namespace

QString BankOfIban(Session& session, const QString& iban) {
    const QString without = QString(iban).remove(u' ');
    if (without.isEmpty()) {
        return {};
    }
    const Recordset found =
        session.Quadrix.ExecuteWC("SELECT CDBAN FROM " + session.Quadrix.GetFullTableName(BankTable) + "\rWHERE " +
                                  Equals(session, "REPLACE(BAIBA, ' ', '')", without));
    return found.Eof() ? QString() : SourceRow(found).Text(BankCode);
}

QString BankCodeOf(Session& session, const QString& code, const QString& iban) {
    const QString known = code.isEmpty() ? QString() : LookUp(session, BankTable, "BAEXT", code, BankCode);
    const QString same = known.isEmpty() ? BankOfIban(session, iban) : known;
    return same.isEmpty() ? NextBankCode(session) : same;
}

} // namespace contract
