// Stock balances and storage locations of Visual Space.

#include "adapters/origins/VS/modImport_VS.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Stock.h"
#include "core/schemaDefaults.h"

#include <QSet>

using namespace contract;

namespace modImport_VS {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Stock = QStringLiteral("STOCK");
const QString Magazzino = QStringLiteral("MAGAZZINO_1");

// --- Stock --------------------------------------------------------------------------------------------------------

/// The warehouse of its code in the source. One that Quadrix lacks is the principal one, which the log tells once.
QString WarehouseOf(ImportRun& run, const QString& code, QSet<QString>& told) {
    using schema::defaults::Warehouse;
    const QString known = TranslatedCode(run.GetSession(), Stock, "COD_MAGAZZINO", code, "MAG_AZZ");
    if (known.isEmpty() && !code.isEmpty() && !told.contains(code)) {
        run.Remember(told, code);
        run.Log(QStringLiteral("MAGAZZINO NON TROVATO: '%1' non è in MAG_AZZ né tradotto in SYS_IMP, si usa '%2'")
                    .arg(code, Warehouse));
    }
    return known.isEmpty() ? Warehouse : known;
}

} // namespace

const Needs& SaldiNeeds() {
    static const Needs needs = [] {
        Needs all{{}, {{Stock, {"COD_ARTICOLO", "COD_MAGAZZINO", "GIACENZA"}}}, StockNeeds()};
        all.writes.push_back({"MAG_AZZ", {"CDMAG"}});
        return all;
    }();
    return needs;
}

void ImportSaldiVSP(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportSaldiVSP", singleCode);
    run.Guard([&] {
        run.AnnounceAppending("Inizio importazione Saldi di Magazzino da Visual Space");
        run.Preflight(SaldiNeeds());
        EmptyStock(run, reset);
        StockWriter writer(run);
        QSet<QString> told;
        const QString from = " FROM " + Stock + run.OnlyCode(" WHERE", "COD_ARTICOLO", singleCode);
        const bool toTheEnd =
            run.Rows({"Saldi di Magazzino", Stock, "COD_MAGAZZINO, COD_ARTICOLO", "SELECT COUNT(*)" + from,
                      "SELECT *" + from + " ORDER BY COD_MAGAZZINO, COD_ARTICOLO"},
                     [&](const SourceRow& row) {
                         return writer.Balance(WarehouseOf(run, row.Text("COD_MAGAZZINO"), told),
                                               ArticleOf(run, row.Text("COD_ARTICOLO")), NumberOf(row, "GIACENZA"));
                     });
        if (toTheEnd) {
            writer.TellRowsLeft();
        }
        run.Complete("Saldi di Magazzino importati correttamente!");
    });
}

// --- Locations ----------------------------------------------------------------------------------------------------

namespace {

RowOutcome ImportUbicazione(ImportRun& run, const SourceRow& row) {
    const QString article = ArticleOf(run, row.Text("COD_ARTICOLO"));
    if (row.IsBlank("COD_UBICAZIONE")) {
        return run.Skip("riga senza ubicazione");
    }
    if (!IsImported(run, article)) {
        return run.Skip(ArticleMissing);
    }
    return ArticleWriter(run).Location(article, row.Text("COD_UBICAZIONE"), row.Text("DES_UBICAZIONE"));
}

} // namespace

const Needs& UbicazioniNeeds() {
    static const Needs needs{{}, {{Magazzino, {"COD_ARTICOLO", "COD_UBICAZIONE", "DES_UBICAZIONE"}}}, LocationNeeds()};
    return needs;
}

void ImportUbicazioniVSP(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportUbicazioniVSP", singleCode);
    run.Guard([&] {
        run.AnnounceAppending("Inizio importazione Ubicazioni Articolo da Visual Space");
        run.Preflight(UbicazioniNeeds());
        EmptyLocations(run, reset);
        const QString from = " FROM " + Magazzino + " WHERE COD_UBICAZIONE IS NOT NULL" +
                             run.OnlyCode(" AND", "COD_ARTICOLO", singleCode);
        run.Rows({"Ubicazioni Articolo", Magazzino, "COD_ARTICOLO", "SELECT COUNT(*)" + from,
                  "SELECT *" + from + " ORDER BY COD_ARTICOLO"},
                 [&](const SourceRow& row) { return ImportUbicazione(run, row); });
        run.Complete("Ubicazioni importate correttamente!");
    });
}

} // namespace modImport_VS
