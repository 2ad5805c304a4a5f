#include "adapters/contract/map/numberedLists.h"

#include "adapters/contract/map/lookups.h"
#include "core/modImport.h"
#include "core/Schema.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"

namespace contract::rules {

namespace {

const QString Numbers = QStringLiteral("codicilistino");

QString ConditionOf(const Session& session, const QString& origin) {
    return Equals(session, "TBNAM", Numbers) + QStringLiteral(" AND ") + Equals(session, "TBFLD", origin);
}

/// The number behind the highest of those that are told; texts would put 9 behind 10.
QString NextNumber(Session& session, const QString& origin) {
    qint64 highest = 0;
    Recordset rows = session.Quadrix.ExecuteWC("SELECT TBNEW FROM SYS_IMP WHERE " + ConditionOf(session, origin));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        highest = std::max(highest, row.Text("TBNEW").toLongLong()); // a code that is no number gives 0
    }
    QString next;
    do {
        next = QString::number(++highest);
    } while (IsThere(session, "LIS_TES", "CDLIS", next));
    return next;
}

/// Keeps the number of a code: in the row that waits for one, else in a new one. Raises `ImportError` for a code that
/// SYS_IMP cannot hold.
void Keep(Session& session, const QString& origin, const QString& code, const QString& number) {
    static const int size = schema::FindTable("SYS_IMP")->FindColumn("TBOLD")->size;
    if (code.size() > size) {
        throw ImportError(QStringLiteral("il codice del listino ha %1 caratteri, SYS_IMP.TBOLD ne tiene %2")
                              .arg(code.size())
                              .arg(size));
    }
    const qint64 waiting = IdOfCode(
        session.Quadrix, "SYS_IMP",
        ConditionOf(session, origin) + QStringLiteral(" AND ") + Equals(session, "TBOLD", code), "TBOLD", code);
    const auto text = [&session](const QString& value) {
        return mod_ovTools::FormatSqlValue(value, DataType::NVarChar, session.Quadrix.ProviderType);
    };
    session.Quadrix.Execute(
        waiting == 0
            ? QStringLiteral("INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW) VALUES (%1, %2, %3, %4)")
                  .arg(text(Numbers), text(origin), text(code), text(number))
            : QStringLiteral("UPDATE SYS_IMP SET TBNEW = %1 WHERE %2").arg(text(number), Equals("RECORD_ID", waiting)));
    modImport::RememberNewCode(session, Numbers, origin, code, number);
}

} // namespace

Rule NumberedList(const QString& origin) {
    return {QStringLiteral("numero che SYS_IMP (%1, %2) dà; un codice senza numero prende il prossimo")
                .arg(Numbers, origin),
            [origin](const RuleInput& input) -> RuleValue {
                const QString code = input.Text();
                if (code.isEmpty()) {
                    return std::nullopt;
                }
                QString number = modImport::GetNewCode(input.session, Numbers, origin, code, false);
                if (number.isEmpty()) {
                    number = NextNumber(input.session, origin);
                    Keep(input.session, origin, code, number);
                }
                return number;
            }};
}

Rule ListOfParty(const QString& origin, const QString& table, const QString& field) {
    const Rule told{QStringLiteral("numero che SYS_IMP (%1, %2) dà").arg(Numbers, origin),
                    [origin](const RuleInput& input) {
                        return RuleValue(modImport::GetNewCode(input.session, Numbers, origin, input.Text(), false));
                    }};
    return Or(told, Translated(table, field));
}

Rule KeptList(const QString& origin) {
    return {QStringLiteral("tradotto con SYS_IMP (%1, %2), altrimenti il codice stesso").arg(Numbers, origin),
            [origin](const RuleInput& input) -> RuleValue {
                const QString code = input.Text();
                const QString told = modImport::GetNewCode(input.session, Numbers, origin, code, false);
                return code.isEmpty() ? RuleValue() : RuleValue(told.isEmpty() ? code : told);
            }};
}

} // namespace contract::rules
