#include "adapters/contract/kinds/company.h"

#include "core/modMain.h"

namespace contract {

namespace {

QStringList CompaniesOf(Session& session, const CompanyOfSource& company) {
    QStringList codes;
    Recordset rows = session.SourceConnection().ExecuteWC(
        QStringLiteral("SELECT DISTINCT %1 FROM %2 ORDER BY %1").arg(company.column, company.table));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        codes.append(row.Text(company.column));
    }
    return codes;
}

} // namespace

std::function<QString(ImportRun&)> RowsOfCompany(const CompanyOfSource& company, const QString& column) {
    return [company, column](ImportRun& run) -> QString {
        Session& session = run.GetSession();
        const QString code = modMain::GetAppConfig(session, "IMPORT", company.setting, company.usual);
        const QStringList present = CompaniesOf(session, company);
        if (!present.isEmpty() && !present.contains(code, Qt::CaseInsensitive)) {
            throw ImportError(
                QStringLiteral("impostazione %1 della sezione IMPORT: l'azienda '%2' non è in %3; ci sono '%4'")
                    .arg(company.setting, code, company.table, present.join(QStringLiteral("', '"))));
        }
        return column + QStringLiteral(" = ") + LiteralOf(session.SourceConnection(), code);
    };
}

} // namespace contract
