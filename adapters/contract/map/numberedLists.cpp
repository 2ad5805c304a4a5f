#include "adapters/contract/map/numberedLists.h"

#include "adapters/contract/map/lookups.h"
#include "core/modImport.h"
#include "core/Schema.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"
#include "sql/textLiteral.h"

namespace contract::rules {

namespace {

const QString Numbers = QStringLiteral("codicilistino");

/// The list of SYS_IMP that keeps which numbers imports have given in a company.
QString OfCompany(const Session& session) { return session.Quadrix.GetFullTableName(QStringLiteral("LIS_TES")); }

/// "LISTS AND TBFLD = origin": rows of the list that all companies share, and of those of each.
QString OfOrigin(const Session& session, const QString& lists, const QString& origin) {
    return lists + QStringLiteral(" AND ") + Equals(session, "TBFLD", origin);
}

QString GivenNumbers() { return QStringLiteral("TBNAM LIKE '%LIS_TES'"); }

/// The number behind the highest of those that are told or given, in any company; texts would put 9 behind 10.
QString NextNumber(Session& session, const QString& origin) {
    qint64 highest = 0;
    const QString lists = QStringLiteral("(%1 OR %2)").arg(Equals(session, "TBNAM", Numbers), GivenNumbers());
    Recordset rows = session.Quadrix.ExecuteWC("SELECT TBNEW FROM SYS_IMP WHERE " + OfOrigin(session, lists, origin));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        highest = std::max(highest, row.Text("TBNEW").toLongLong()); // a code that is no number gives 0
    }
    QString next;
    do {
        next = QString::number(++highest);
    } while (IsThere(session, "LIS_TES", "CDLIS", next));
    return next;
}

/// Keeps the number of a code in a list of SYS_IMP: in the row that stands there, else in a new one. Raises
/// `ImportError` for a code that SYS_IMP cannot hold.
void Keep(Session& session, const QString& list, const QString& origin, const QString& code, const QString& number) {
    static const int size = schema::FindTable("SYS_IMP")->FindColumn("TBOLD")->size;
    if (code.size() > size) {
        throw ImportError(QStringLiteral("il codice del listino ha %1 caratteri, SYS_IMP.TBOLD ne tiene %2")
                              .arg(code.size())
                              .arg(size));
    }
    const qint64 known = IdOfCode(session.Quadrix, "SYS_IMP",
                                  OfOrigin(session, Equals(session, "TBNAM", list), origin) + QStringLiteral(" AND ") +
                                      Equals(session, "TBOLD", code),
                                  "TBOLD", code);
    const auto text = [&session](const QString& value) { return TextLiteral(session.Quadrix, value); };
    session.Quadrix.Execute(
        known == 0
            ? QStringLiteral("INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW) VALUES (%1, %2, %3, %4)")
                  .arg(text(list), text(origin), text(code), text(number))
            : QStringLiteral("UPDATE SYS_IMP SET TBNEW = %1 WHERE %2").arg(text(number), Equals("RECORD_ID", known)));
    modImport::RememberNewCode(session, list, origin, code, number);
}

/// What imports have given a code.
struct Given {
    QString here;        ///< in this company; empty for nothing
    QStringList numbers; ///< in any
};

Given GivenTo(Session& session, const QString& origin, const QString& code) {
    Given given;
    Recordset rows =
        session.Quadrix.ExecuteWC("SELECT TBNAM, TBOLD, TBNEW FROM SYS_IMP WHERE " +
                                  OfOrigin(session, GivenNumbers(), origin) + " AND " + Equals(session, "TBOLD", code));
    const QString own = OfCompany(session);
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        if (!IsCodeAsked(row.Value("TBOLD"), code)) {
            continue;
        }
        given.numbers.append(row.Text("TBNEW"));
        if (row.Text("TBNAM").compare(own, Qt::CaseInsensitive) == 0) {
            given.here = row.Text("TBNEW");
        }
    }
    return given;
}

/// Name of the list of a number that somebody has made by hand in this company; none when there is none.
std::optional<QString> NameOfHandsList(Session& session, const QString& number) {
    Recordset rows =
        session.Quadrix.ExecuteWC("SELECT LTDES, USINS FROM " + session.Quadrix.GetFullTableName("LIS_TES") +
                                  " WHERE " + Equals(session, "CDLIS", number));
    std::optional<QString> name;
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        if (IsImportUser(row.Text("USINS"))) {
            return std::nullopt;
        }
        name = row.Text("LTDES");
    }
    return name;
}

/// The number of a code in this company: the one that SYS_IMP tells, unless an import has given it and somebody has
/// made a list of that number here by hand: then one of the company's own. Empty when there is none.
QString NumberOf(Session& session, const QString& origin, const QString& code) {
    const QString number = modImport::GetNewCode(session, Numbers, origin, code, false);
    if (number.isEmpty()) {
        return number;
    }
    const auto [here, given] = GivenTo(session, origin, code);
    if (here == number || !given.contains(number)) { // else somebody has entered it
        return number;
    }
    if (!here.isEmpty()) {
        return here;
    }
    const auto hands = NameOfHandsList(session, number);
    if (!hands) {
        return number;
    }
    QString own = NextNumber(session, origin);
    Keep(session, OfCompany(session), origin, code, own);
    modImport::LogNote(
        session, QStringLiteral("LISTINO OCCUPATO: %1: il numero %2, che il listino '%3' ha in un'altra azienda, è qui "
                                "di '%4', inserito a mano: prende il numero %5")
                     .arg(session.Errors.RowKey(), number, code, *hands, own));
    return own;
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
                QString number = NumberOf(input.session, origin, code);
                if (number.isEmpty()) {
                    number = NextNumber(input.session, origin);
                    Keep(input.session, Numbers, origin, code, number);
                    Keep(input.session, OfCompany(input.session), origin, code, number);
                }
                return number;
            }};
}

Rule ListOfParty(const QString& origin, const QString& table, const QString& field) {
    const Rule told{
        QStringLiteral("numero che SYS_IMP (%1, %2) dà").arg(Numbers, origin),
        [origin](const RuleInput& input) { return RuleValue(NumberOf(input.session, origin, input.Text())); }};
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
