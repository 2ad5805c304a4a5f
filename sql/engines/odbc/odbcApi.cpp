#include "sql/engines/odbc/odbcApi.h"

#include "sql/connectionParts.h"
#include "sql/engines/meaning.h"
#include "sql/engines/odbc/odbcMeaning.h"

#include <QStringList>

#include <algorithm>

namespace odbc {

namespace {

/// Of the codes of a lost connection, those which say that the statement has not reached the server: of MariaDB and
/// MySQL, and of FreeTDS.
const QStringList NotSent{"2006", "20047"};

} // namespace

QVector<Diagnosis> Diagnoses(SQLSMALLINT type, SQLHANDLE handle) {
    constexpr SQLSMALLINT Longest = 2048;
    constexpr int StateLength = 5;
    QVector<Diagnosis> diagnoses;
    SQLWCHAR state[StateLength + 1] = {};
    SQLWCHAR message[Longest] = {};
    SQLINTEGER code = 0;
    SQLSMALLINT length = 0;
    for (SQLSMALLINT record = 1;
         SQL_SUCCEEDED(SQLGetDiagRecW(type, handle, record, state, &code, message, Longest, &length)); ++record) {
        const auto units = std::clamp<SQLSMALLINT>(length, 0, Longest - 1);
        diagnoses.append({Text(state, StateLength), QString::number(code), Text(message, units)});
    }
    return diagnoses;
}

bool IsLost(const QVector<Diagnosis>& diagnoses) {
    // MariaDB and MySQL; SQL Server through FreeTDS and through its own driver; Oracle.
    static const QStringList codes{"2006",  "2013",  "20003", "20004", "20006", "20047",
                                   "10053", "10054", "10060", "3113",  "3114",  "1012"};
    return std::any_of(diagnoses.begin(), diagnoses.end(), [](const Diagnosis& diagnosis) {
        return codes.contains(diagnosis.code) || diagnosis.state == QLatin1String("08S01");
    });
}

SqlError PlainError(const QVector<Diagnosis>& diagnoses, const QString& statement) {
    QStringList messages;
    for (const Diagnosis& diagnosis : diagnoses) {
        messages.append(diagnosis.message);
    }
    messages.removeDuplicates();
    const QString code = diagnoses.isEmpty() ? QString() : diagnoses.first().code;
    return {statement, WithoutPassword(messages.join(u' ').simplified()), code};
}

SqlError MakeError(const QVector<Diagnosis>& diagnoses, const QString& statement) {
    SqlError error = PlainError(diagnoses, statement);
    if (IsLost(diagnoses)) {
        error.Explain(QString::fromUtf8(meaning::HasFallen));
        error.SetMayPass(true);
        error.SetAnswerLost(!NotSent.contains(error.EngineCode()));
    } else {
        Explain(error);
    }
    return error;
}

} // namespace odbc
