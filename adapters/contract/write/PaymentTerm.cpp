#include "adapters/contract/write/PaymentTerm.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"

#include <cmath>

namespace contract {

namespace {

const QString Terms = QStringLiteral("TAB_MOP");
const QString Instalments = QStringLiteral("TAB_MPR");

} // namespace

std::vector<TableNeed> InstalmentNeeds() {
    return {{Instalments, {"CDMOP", "NRRAT", "MPTIP", "MPGGF", "MPGGS", "MPINI", "MPPER"}}};
}

Emptying PaymentTermEmptying() { return DeletedImports(Instalments) + DeletedImports(Terms); }

std::vector<double> EqualShares(int count) {
    constexpr double whole = 100;
    std::vector<double> shares;
    double left = whole;
    for (int i = 1; i < count; ++i) {
        shares.push_back(std::floor(whole / count * 100) / 100);
        left -= shares.back();
    }
    if (count > 0) {
        shares.push_back(RoundedTo(left, 2));
    }
    return shares;
}

void WriteInstalments(ImportRun& run, const QString& term, const std::vector<Instalment>& instalments) {
    Session& session = run.GetSession();
    const QString ofTerm = Equals(session, "CDMOP", term);
    int number = 0;
    for (const Instalment& instalment : instalments) {
        ++number;
        const qint64 known = IdWhere(session, Instalments, ofTerm + QStringLiteral(" AND ") + Equals("NRRAT", number));
        TargetRow row(run, Instalments);
        row.Set("CDMOP", term);
        row.Set("NRRAT", number);
        if (!instalment.type.isEmpty()) {
            row.Set("MPTIP", instalment.type);
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
    run.DeleteRows(Instalments, QStringLiteral("%1 AND NRRAT > %2").arg(ofTerm, QString::number(number)));
}

} // namespace contract
