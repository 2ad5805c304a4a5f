// WinProgest: bills of materials. Heads stand in NFTDIS, components in NFCODIS; both and their columns are known from
// installations.

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Bill.h"
#include "adapters/origins/WinProgest/modImport_WinProgest.h"

using namespace contract;

namespace modImport_WinProgest {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Nftdis = QStringLiteral("NFTDIS");
const QString Nfcodis = QStringLiteral("NFCODIS");

// --- Bills --------------------------------------------------------------------------------------------------------

/// A counterparty code of digits is told in six of them.
QString SixDigits(const QString& code) {
    bool isNumber = false;
    const qint64 number = code.toLongLong(&isNumber);
    return isNumber ? QStringLiteral("%1").arg(number, 6, 10, QLatin1Char('0')) : code;
}

QString SupplierNote(ImportRun& run, const SourceRow& row) {
    if (row.IsBlank("CODFOR")) {
        return {};
    }
    Session& session = run.GetSession();
    const QString supplier = FindCounterparty(session, row.Text("CODFOR"), true);
    if (supplier.isEmpty()) {
        run.Log(
            QStringLiteral("FORNITORE NON TROVATO: %1: '%2'").arg(NameOf(row, Nfcodis, "FIGLIO"), row.Text("CODFOR")));
        return {};
    }
    return "Fornitore: " + SixDigits(supplier) + " - " + LookUp(session, "CON_TRO", "CDCON", supplier, "CORAS");
}

void ImportComponente(ImportRun& run, BillWriter& writer, const SourceRow& row, qint64 phase) {
    const QString article = ArticleWriter(run).CodeOf(Articoli, "CODART", row.Text("FIGLIO"));
    if (writer.HasArticle(article)) {
        writer.Write(Component{article, NumberOf(row, "QTA"), SupplierNote(run, row)}, phase);
    }
}

RowOutcome ImportDistinta(ImportRun& run, BillWriter& writer, const SourceRow& row) {
    const QString parent = row.Text("PADRE");
    const QString article = ArticleWriter(run).CodeOf(Articoli, "CODART", parent);
    if (!writer.HasArticle(article)) {
        return run.Skip(ArticleMissing);
    }
    constexpr int keySize = 50;
    const RowOutcome outcome = writer.Begin(article, FirstOf(parent, keySize));
    const qint64 phase = writer.Write(Phase{});
    ForEachChild(run.GetSession(), "SELECT * FROM NFCODIS\rWHERE PADRE = " + run.Quoted(parent) + "\rORDER BY NINS",
                 Nfcodis, "FIGLIO",
                 [&](const SourceRow& component) { ImportComponente(run, writer, component, phase); });
    writer.TellComponentsLeft();
    return outcome;
}

} // namespace

const Needs& DistinteNeeds() {
    static const Needs needs = [] {
        Needs all{{}, {{Nftdis, {"PADRE"}}, {Nfcodis, {"PADRE", "FIGLIO", "QTA", "CODFOR", "NINS"}}}, BillNeeds()};
        all.writes.push_back(CounterpartyNeed());
        return all;
    }();
    return needs;
}

void ImportDistinteWinProgest(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportDistinteWinProgest", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.AnnounceAppending("Inizio importazione Distinte Base da WinProgest");
        run.Preflight(DistinteNeeds());
        Empty(run, reset, BillEmptying());
        const QString where = run.OnlyCode("\rWHERE", "PADRE", singleCode);
        const ImportRun::Loop heads{"Distinte Base", Nftdis, "PADRE", "SELECT COUNT(*) FROM NFTDIS" + where,
                                    "SELECT * FROM NFTDIS" + where + "\rORDER BY PADRE"};
        ImportBills(run, heads, singleCode, "Distinte Base WinProgest importate correttamente: %1(Fasi: %2, Comp.: %3",
                    [&](BillWriter& writer, const SourceRow& row) { return ImportDistinta(run, writer, row); });
    });
}

} // namespace modImport_WinProgest
