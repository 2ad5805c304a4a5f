#include "adapters/contract/write/PaymentTerm.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/noLongerThere.h"
#include "sql/mod_ovTools.h"

#include <cmath>

namespace contract {

namespace {

const QString Terms = QStringLiteral("TAB_MOP");
const QString Instalments = QStringLiteral("TAB_MPR");
constexpr double Whole = 100;
constexpr double Cent = 0.01;

QString OfTerm(const ImportRun& run, const QString& term) { return Equals(run.GetSession(), "CDMOP", term); }

void Write(ImportRun& run, const QString& term, int number, const Instalment& instalment) {
    Session& session = run.GetSession();
    const QString same = OfTerm(run, term) + QStringLiteral(" AND ") + Equals("NRRAT", number);
    const qint64 known = IdWhere(session, Instalments, same + QStringLiteral(" AND ") + OfImports(session));
    if (known == 0 && IdWhere(session, Instalments, same) != 0) {
        run.Log(QStringLiteral("RATA NON RISCRITTA: %1: la rata %2 di '%3' non è di un'importazione, e resta")
                    .arg(run.RowKey(), QString::number(number), term));
        return;
    }
    TargetRow row(run, Instalments);
    row.Set("CDMOP", term);
    row.Set("NRRAT", number);
    if (instalment.type && (known != 0 || !instalment.type->isEmpty())) {
        row.Set("MPTIP", instalment.type->isEmpty() ? QVariant() : QVariant(*instalment.type));
    }
    row.Set("MPGGF", instalment.days);
    if (instalment.fixedDay) {
        row.Set("MPGGS", *instalment.fixedDay == 0 ? QVariant() : QVariant(*instalment.fixedDay));
    }
    row.Set("MPINI", instalment.start);
    row.Set("MPPER", instalment.percent);
    if (known != 0) {
        row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", known));
    } else {
        row.Insert();
    }
}

/// What falls due of an invoice is what the instalments make together, whoever wrote them.
void TellShares(ImportRun& run, const QString& term) {
    double sum = 0;
    Recordset rows =
        run.GetSession().Quadrix.ExecuteWC(QStringLiteral("SELECT MPPER FROM ") + run.FullName(Instalments) +
                                           QStringLiteral(" WHERE ") + OfTerm(run, term));
    for (; !rows.Eof(); rows.MoveNext()) {
        sum += mod_ovTools::ToDouble(rows.Fields(0).Value());
    }
    if (std::abs(sum - Whole) > Cent + Cent / 100) {
        run.Log(QStringLiteral("RATE DIVERSE DA CENTO: %1: '%2' arriva a %3")
                    .arg(run.RowKey(), term, mod_ovTools::NumberText(RoundedTo(sum, 2))));
    }
}

} // namespace

std::vector<TableNeed> InstalmentNeeds() {
    return {{Instalments, {"CDMOP", "NRRAT", "MPTIP", "MPGGF", "MPGGS", "MPINI", "MPPER"}}};
}

Emptying PaymentTermEmptying() { return DeletedImports(Instalments) + DeletedImports(Terms); }

std::vector<double> EqualShares(int count) {
    std::vector<double> shares;
    double left = Whole;
    for (int i = 1; i < count; ++i) {
        shares.push_back(std::floor(Whole / count * 100) / 100);
        left -= shares.back();
    }
    if (count > 0) {
        shares.push_back(RoundedTo(left, 2));
    }
    return shares;
}

int CountInstalments(Session& session, const QString& term) {
    return static_cast<int>(session.Quadrix.ExecuteCommand(
        QStringLiteral("SELECT COUNT(*) FROM %1 WHERE ").arg(session.Quadrix.GetFullTableName(Instalments)) +
        Equals(session, "CDMOP", term)));
}

void WriteInstalments(ImportRun& run, const QString& term, const std::vector<Instalment>& instalments) {
    if (instalments.empty()) { // they may be of another origin
        TellNoLongerThere(run, QStringLiteral("RATE"), QStringLiteral("pagamento '%1'").arg(term),
                          run.GetSession().Quadrix.ExecuteCommand(
                              QStringLiteral("SELECT COUNT(*) FROM %1 WHERE ").arg(run.FullName(Instalments)) +
                              OfTerm(run, term) + QStringLiteral(" AND ") + OfImports(run.GetSession())));
        return;
    }
    int number = 0;
    for (const Instalment& instalment : instalments) {
        Write(run, term, ++number, instalment);
    }
    run.DeleteRows(Instalments, OfTerm(run, term) + QStringLiteral(" AND NRRAT > %1 AND ").arg(number) +
                                    OfImports(run.GetSession()));
    TellShares(run, term);
}

} // namespace contract
