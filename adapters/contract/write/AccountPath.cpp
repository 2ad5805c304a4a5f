#include "adapters/contract/write/AccountPath.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

/// An account, as far as its path goes.
struct ChartLine {
    QString code;
    QString ledger;
    QString path;
};

using Chart = QMap<QString, ChartLine>; ///< by code in upper case

Chart ReadAccounts(ImportRun& run) {
    Chart accounts;
    Recordset rows = run.GetSession().Quadrix.ExecuteWC("SELECT CDCNT, PCMAS, PCPTH FROM " + run.FullName("PIA_CON"));
    for (; !rows.Eof(); rows.MoveNext()) {
        const auto text = [&rows](const QString& column) { return mod_ovTools::ToText(rows.Value(column)).trimmed(); };
        accounts.insert(text("CDCNT").toUpper(), {text("CDCNT"), text("PCMAS"), text("PCPTH")});
    }
    return accounts;
}

/// The ledgers above an account, from the top; none when it stands above itself.
std::optional<QStringList> LedgersAbove(const Chart& accounts, const ChartLine& account) {
    QStringList ledgers;
    QString ledger = account.ledger;
    for (auto above = accounts.find(ledger.toUpper()); above != accounts.end() && !ledger.isEmpty();
         above = accounts.find(ledger.toUpper())) {
        if (ledgers.size() > accounts.size()) {
            return std::nullopt;
        }
        ledgers.prepend(above->code);
        ledger = above->ledger;
    }
    return ledgers;
}

} // namespace

void WriteAccountPaths(ImportRun& run) {
    const Chart accounts = ReadAccounts(run);
    for (const ChartLine& account : accounts) {
        const auto ledgers = LedgersAbove(accounts, account);
        if (!ledgers) {
            run.Log(QStringLiteral("CICLO NEL PIANO DEI CONTI: '%1' sta sopra sé stesso").arg(account.code));
            continue;
        }
        const QString path = ledgers->join(u'\\');
        if (path != account.path) {
            TargetRow row(run, "PIA_CON");
            row.Set("PCPTH", path);
            row.Update("WHERE " + Equals(run.GetSession(), "CDCNT", account.code));
        }
    }
}

} // namespace contract
