// AUTOMA, an automatic warehouse: a SQL Server database of the settings AUTOMA_Servername, AUTOMA_Databasename
// (AUTOMA), AUTOMA_Username, AUTOMA_Password and AUTOMA_NetworkCredential. It has no entry in the list of origins: the
// import sequence opens it beside Lantek 24. Storage cells and stock.
// CELLE is known from an installation; its columns and GIACENZE are this system's own reading.
// Known gaps: batches and load dates of the cells.

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/Mapping.h"
#include "adapters/contract/run/Origin.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/noLongerThere.h"
#include "adapters/contract/write/SheetFormat.h"
#include "adapters/contract/write/Stock.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_AUTOMA {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_AUTOMA");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Celle = QStringLiteral("CELLE");
const QString Giacenze = QStringLiteral("GIACENZE");

// --- Mappings -----------------------------------------------------------------------------------------------------

/// The volume of a cell in cubic metres: its measures are in millimetres.
Rule Volume() {
    return {"prodotto delle tre diviso 1.000.000.000, arrotondato a 6 decimali", [](const RuleInput& input) {
                constexpr double cubicMillimetres = 1e9; // of a cubic metre
                double volume = 1;
                for (const QString& column : input.columns) {
                    volume *= NumberOf(input.row, column);
                }
                return RuleValue(contract::RoundedTo(volume / cubicMillimetres, 6));
            }};
}

/// The description, the code of the cell when it has none.
Rule Description() {
    return {"la prima, la seconda se è vuota", [](const RuleInput& input) {
                const QString text = input.row.Text("DESCRIZIONE");
                return RuleValue(text.isEmpty() ? input.row.Text("COD_CELLA") : text);
            }};
}

const Mapping& Ubicazioni() {
    static const Mapping mapping{
        "UBI_MAG",
        Celle,
        {
            {"CDMAG", "", Constant(schema::defaults::Warehouse)},
            {"CDUBI", "COD_CELLA", Text()},
            {"UBDES", "DESCRIZIONE, COD_CELLA", Description()},
            {"UBARE", "AREA", Text()},
            {"UBCAT", "CATEGORIA", Text()},
            {"UBSTB", "STABILIMENTO", Text()},
            {"UBCOR", "CORRIDOIO", Text()},
            {"UBPOS", "POSIZIONE", Text()},
            {"UBCEL", "RIPIANO", Text()},
            {"UBUDC", "FL_UDC", Flag()},
            {"UBDMX", "DIM_X", RoundedTo(6)},
            {"UBDMY", "DIM_Y", RoundedTo(6)},
            {"UBDMZ", "DIM_Z", RoundedTo(6)},
            {"UBVOL", "DIM_X, DIM_Y, DIM_Z", Volume()},
            {"UBPES", "PORTATA", RoundedTo(6)},
        },
    };
    return mapping;
}

// --- Locations ----------------------------------------------------------------------------------------------------

RowOutcome ImportCella(ImportRun& run, const SourceRow& row) {
    if (mod_ovTools::ToBoolean(row.Value("FL_DISABILITATA"))) {
        return run.Skip("cella disabilitata");
    }
    Session& session = run.GetSession();
    const qint64 known = IdWhere(session, "UBI_MAG",
                                 Equals(session, "CDMAG", schema::defaults::Warehouse) + " AND " +
                                     Equals(session, "CDUBI", row.Text("COD_CELLA")));
    TargetRow target(run, "UBI_MAG");
    Ubicazioni().Apply(target, session, row, {});
    if (known != 0) {
        target.Update("WHERE " + Equals("RECORD_ID", known));
        return RowOutcome::Updated;
    }
    target.Insert();
    return RowOutcome::Inserted;
}

bool ImportCelle(ImportRun& run) {
    return run.Rows(
        {"Ubicazioni", Celle, "COD_CELLA", "SELECT COUNT(*) FROM CELLE", "SELECT * FROM CELLE\rORDER BY COD_CELLA"},
        [&](const SourceRow& row) { return ImportCella(run, row); });
}

const Needs& UbicazioniNeeds() {
    static const Needs needs{{&Ubicazioni()}, {{Celle, {"FL_DISABILITATA"}}}, {}};
    return needs;
}

/// The locations alone; a reset empties them with those of the articles.
void ImportUbicazioniAUTOMA(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportUbicazioniAUTOMA", singleCode);
    run.Guard([&] {
        run.AnnounceAppending("Inizio importazione ubicazioni");
        run.Preflight(UbicazioniNeeds());
        Empty(run, reset, LocationEmptying());
        ImportCelle(run);
        run.Complete("Ubicazioni importate correttamente!");
    });
}

// --- Stock --------------------------------------------------------------------------------------------------------

/// A handling unit that stands in a cell.
void WriteHandlingUnit(ImportRun& run, const SourceRow& row) {
    const QString unit = row.Text("ID_UDC");
    if (unit.isEmpty()) {
        return;
    }
    Session& session = run.GetSession();
    const bool known = IsThere(session, "UDC_MAG", "CDUDC", unit);
    TargetRow target(run, "UDC_MAG");
    target.Set("CDUDC", unit);
    target.Set("CDUBI", row.Text("COD_CELLA"));
    if (known) {
        target.Update("WHERE " + Equals(session, "CDUDC", unit));
    } else {
        target.Insert();
    }
}

/// Tells which handling units earlier imports have written and this one has not met: they have left the warehouse.
/// @param met their codes, in capitals
void TellUnitsLeft(ImportRun& run, const QSet<QString>& met) {
    if (run.IsPart()) {
        return;
    }
    Session& session = run.GetSession();
    Recordset units = session.Quadrix.ExecuteWC("SELECT CDUDC, CDUBI FROM " + run.FullName("UDC_MAG") + " WHERE " +
                                                OfImports(session) + " ORDER BY CDUDC");
    for (const SourceRow unit(units); !units.Eof(); units.MoveNext()) {
        if (!met.contains(unit.Text("CDUDC").toUpper())) {
            TellNotMetAgain(run, QStringLiteral("UNITÀ DI CARICO"),
                            QStringLiteral("'%1', ubicazione '%2'").arg(unit.Text("CDUDC"), unit.Text("CDUBI")), 1);
        }
    }
}

/// The thickness is not carried over: that of the article counts, and another one is told.
void CheckThickness(ImportRun& run, const SourceRow& row, const QString& article) {
    const double here =
        mod_ovTools::ToDouble(run.GetSession().Quadrix.GetDbValue("ART_ICO", "CDART", article, "ARDMZ"));
    const double there = NumberOf(row, "SPESSORE");
    if (there != 0 && here != 0 && here != there) {
        run.Log(QStringLiteral("SPESSORE DIVERSO: %1: qui %2, nell'origine %3")
                    .arg(run.RowKey(), mod_ovTools::NumberText(here), mod_ovTools::NumberText(there)));
    }
}

/// Stock counts wherever it lies: a cell that is not there, or that is no location, is told.
void CheckLocation(ImportRun& run, const SourceRow& row, const QString& location) {
    Session& session = run.GetSession();
    if (location.isEmpty()) {
        run.Log(QStringLiteral("CELLA NON TROVATA: %1: '%2', giacenza senza ubicazione")
                    .arg(run.RowKey(), row.Text("ID_CELLA")));
    } else if (IdWhere(session, "UBI_MAG",
                       Equals(session, "CDMAG", schema::defaults::Warehouse) + " AND " +
                           Equals(session, "CDUBI", location)) == 0) {
        run.Log(QStringLiteral("UBICAZIONE NON TROVATA: %1: '%2' non è in UBI_MAG").arg(run.RowKey(), location));
    }
}

RowOutcome ImportGiacenza(ImportRun& run, StockWriter& writer, const SourceRow& row) {
    const QString code = row.Text("COD_ARTICOLO");
    const KnownFormat format = FindFormat(run, code);
    StockLine line;
    line.warehouse = schema::defaults::Warehouse;
    line.article = format.article.isEmpty() ? ArticleWriter(run).CodeOf("ART_ICO", "CDART", code) : format.article;
    line.quantity = NumberOf(row, "QTA");
    line.unit = row.Text("UM").toUpper();
    line.location = row.Text("COD_CELLA");
    line.sheet = !format.article.isEmpty();
    line.format = format.code;
    if (mod_ovTools::ToBoolean(row.Value("FL_SFRIDO"))) {
        line.offcut = format.offcut.isEmpty() ? code : format.offcut;
    }
    line.length = NumberOf(row, "LUNGHEZZA");
    line.width = NumberOf(row, "LARGHEZZA");
    const RowOutcome outcome = writer.Balance(line);
    if (outcome != RowOutcome::Skipped) {
        CheckThickness(run, row, line.article);
        CheckLocation(run, row, line.location);
        WriteHandlingUnit(run, row);
    }
    return outcome;
}

const Needs& InventarioNeeds() {
    static const Needs needs = [] {
        Needs all{
            {&Ubicazioni()},
            {{Celle, {"ID_CELLA", "COD_CELLA", "FL_DISABILITATA"}},
             {Giacenze,
              {"COD_ARTICOLO", "ID_CELLA", "QTA", "UM", "LUNGHEZZA", "LARGHEZZA", "SPESSORE", "FL_SFRIDO", "ID_UDC"}}},
            StockNeeds()};
        all.writes.push_back({"MOV_MAG", {"MMLAM"}});
        all.writes.push_back({"MOV_MAR", {"MRUBI", "MRFMT", "MRSFR", "MRLMX", "MRLMY"}});
        all.writes.push_back({"UDC_MAG", {"CDUDC", "CDUBI"}});
        return all;
    }();
    return needs;
}

/// Stock follows the locations that it lies in. What the log holds stays.
void ImportInventarioAUTOMA(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportInventarioAUTOMA", singleCode);
    run.Guard([&] {
        run.AnnounceAppending("Inizio importazione saldi di magazzino");
        run.Preflight(InventarioNeeds());
        Empty(run, reset, StockEmptying());
        if (!run.IsSingle() && !ImportCelle(run)) {
            return;
        }
        StockWriter writer(run);
        writer.WritesAll();
        QSet<QString> units; // of the source
        const QString from =
            "GIACENZE G\rLEFT JOIN CELLE C ON C.ID_CELLA = G.ID_CELLA\rWHERE G.QTA > 0" +
            (singleCode.isEmpty() ? QString() : QString(" AND G.COD_ARTICOLO = " + run.Quoted(singleCode)));
        const bool toTheEnd =
            run.Rows({"Saldi di magazzino", Giacenze, "COD_ARTICOLO, COD_CELLA", "SELECT COUNT(*) FROM " + from,
                      "SELECT G.*, C.COD_CELLA FROM " + from + "\rORDER BY G.COD_ARTICOLO, C.COD_CELLA, G.ID_CELLA"},
                     [&](const SourceRow& row) {
                         run.Remember(units, row.Text("ID_UDC").toUpper());
                         return ImportGiacenza(run, writer, row);
                     });
        if (toTheEnd) {
            writer.TellRowsLeft();
            TellUnitsLeft(run, units);
        }
        run.Complete("Saldi di magazzino AUTOMA importati correttamente!");
    });
}

// --- Entry --------------------------------------------------------------------------------------------------------

const sourceSettings::ServerKeys& Keys() {
    static const sourceSettings::ServerKeys keys{"IMPORT",
                                                 "0",
                                                 "AUTOMA_Username",
                                                 "AUTOMA_Password",
                                                 "AUTOMA_Servername",
                                                 "AUTOMA_Databasename",
                                                 "AUTOMA_NetworkCredential",
                                                 "AUTOMA_Driver",
                                                 "AUTOMA_Encryption",
                                                 "AUTOMA_EncryptionCA"};
    return keys;
}

} // namespace

const Origin& Entry() {
    static const Origin origin{
        "AUTOMA",
        Module,
        {"SQL Server", sourceSettings::Server("AUTOMA", Keys())},
        {},
        Shown::Keep,
        {
            {std::nullopt, "ImportInventarioAUTOMA", ImportInventarioAUTOMA, InventarioNeeds(), StockEmptying()},
            {.button = {},
             .name = "ImportUbicazioniAUTOMA",
             .run = ImportUbicazioniAUTOMA,
             .needs = UbicazioniNeeds(),
             .empties = LocationEmptying(),
             .takesCode = false},
        },
    };
    return origin;
}

} // namespace modImport_AUTOMA
