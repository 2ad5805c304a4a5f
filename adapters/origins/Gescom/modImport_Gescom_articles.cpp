// Articles and price lists of Gescom: ARTICOLI holds a row for each article, LISTINI one for each price.

#include "adapters/origins/Gescom/modImport_Gescom.h"

#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/PriceList.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Gescom {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Articoli = QStringLiteral("ARTICOLI");
const QString ListiniTable = QStringLiteral("LISTINI");

// --- Mappings -----------------------------------------------------------------------------------------------------

const Mapping& ArticoliMapping() {
    static const Mapping mapping{
        "ART_ICO",
        Articoli,
        {
            {"ARDES", "DSARTICO", First(100)},
            {"ARDE2", "D2ARTICO", First(100)},
            {"ARCDR", "DSARTICO", CodeAndText(100)},
            {"ARNOT", "NTARTICO", Text()},
            {"ARCLA", "TPARTICO", Choice({{"P", "PF"}, {"S", "SL"}}, "CM")},
            {"ARFAM", "FMARTICO", Translated(Articoli, "FMARTICO")},
            {"ARTPG", "", Constant(schema::defaults::ArticleKind)},
            {"ARLAM", "", Constant(false)},
            {"ARANN", "ANARTICO", Is("S")},
            {"ARUMS", "UMARTICO", TranslatedOrUpper(Articoli, "UMARTICO", schema::defaults::Unit)},
            {"ARUM2", "U2ARTICO", TranslatedOrUpper(Articoli, "UMARTICO", "")},
            {"ARCOE", "FCARTICO", RoundedTo(6)},
            {"ARIVA", "IVARTICO", VatCode(Articoli, "IVARTICO")},
            {"ARMAG", "", Constant(true)},
            {"ARMAD", "", Constant(schema::defaults::Warehouse)},
            {"ARSMN", "SMARTICO", RoundedTo(6)},
            {"ARLOR", "LRARTICO", RoundedTo(6)},
            {"ARGGA", "GGARTICO", RoundedTo(0)},
            {"ARPSN", "PSARTICO", RoundedTo(3)},
            {"ARCOS", "CSARTICO, CUARTICO", FirstNotZero()},
            {"ARPRZ", "PVARTICO", RoundedTo(6)},
            {"ARRIC", "PVARTICO, CSARTICO, CUARTICO", MarkUp()},
            {"ARSCO", "S1ARTICO", RoundedTo(2)},
        },
    };
    return mapping;
}

} // namespace

QString ArticleOf(ImportRun& run, const QString& sourceCode) {
    return ArticleWriter(run).CodeOf(Articoli, "CDARTICO", sourceCode);
}

// --- Articles -----------------------------------------------------------------------------------------------------

namespace {

void LinkSupplier(ImportRun& run, const ArticleWriter& writer, const SourceRow& row, const QString& article) {
    const QString code = row.Text("FOARTICO");
    if (code.isEmpty()) {
        return;
    }
    const double cost = NumberOf(row, "CSARTICO");
    const QString supplier = writer.Supplier(article, code, cost != 0 ? cost : NumberOf(row, "CUARTICO"));
    if (supplier.isEmpty()) {
        run.Log(QStringLiteral("FORNITORE NON TROVATO: %1: '%2'").arg(run.RowKey(), code));
    } else if (!row.IsBlank("CFARTICO")) {
        writer.CodeAtCounterparty(article, row.Text("CFARTICO"), supplier);
    }
}

RowOutcome ImportArticolo(ImportRun& run, const SourceRow& row) {
    const ArticleWriter writer(run);
    const Facts facts{ArticleOf(run, row.Text("CDARTICO"))};
    const RowOutcome outcome = writer.Write(ArticoliMapping(), row, facts);
    writer.Texts(facts.code, row.Text("DSARTICO"));
    LinkSupplier(run, writer, row, facts.code);
    if (!row.IsBlank("UBARTICO")) {
        writer.Location(facts.code, row.Text("UBARTICO"));
    }
    return outcome;
}

} // namespace

const Needs& ArticoliNeeds() {
    static const Needs needs = [] {
        Needs all{{&ArticoliMapping()}, {{Articoli, {"CDARTICO", "FOARTICO", "CFARTICO", "UBARTICO"}}}, ArticleNeeds()};
        all.writes.push_back({"ART_COD", {"CDART", "CDCOD", "COTIP", "COTPC", "COCON"}});
        all.writes.push_back({"UBI_MAG", {"CDMAG", "CDUBI", "UBDES"}});
        all.writes.push_back({"UBI_ART", {"CDART", "CDUBI", "UAMAG", "UADEF"}});
        return all;
    }();
    return needs;
}

void ImportArticoliGescom(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportArticoliGescom", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione articoli");
        run.Preflight(ArticoliNeeds());
        EmptyArticles(run, reset);
        const QString where = run.OnlyCode("\rWHERE", "CDARTICO", singleCode);
        run.Rows({"Articoli", Articoli, "CDARTICO", "SELECT COUNT(*) FROM ARTICOLI" + where,
                  "SELECT * FROM ARTICOLI" + where + "\rORDER BY CDARTICO"},
                 [&](const SourceRow& row) { return ImportArticolo(run, row); });
        run.Complete("Articoli importati correttamente!");
    });
}

// --- Price lists --------------------------------------------------------------------------------------------------

namespace {

QString DirectionOf(const SourceRow& row) {
    const QString direction = row.Text("TPLISTIN").toUpper();
    if (direction != schema::defaults::SalesList && direction != schema::defaults::PurchaseList) {
        throw ImportError(QStringLiteral("colonna 'TPLISTIN': '%1' non è V (vendite) né A (acquisti)").arg(direction));
    }
    return direction;
}

RowOutcome ImportPrezzo(ImportRun& run, const SourceRow& row) {
    const auto number = [&row](const QString& column) {
        return row.IsBlank(column) ? QVariant() : QVariant(NumberOf(row, column));
    };
    const QString list = row.Text("CDLISTIN");
    const QString direction = DirectionOf(row);
    const Validity validity{DateOf(row, "DILISTIN"), DateOf(row, "DFLISTIN")};
    const Scale scale{number("QTLISTIN"), number("PRLISTIN"), {number("S1LISTIN"), number("S2LISTIN"), {}}};
    const PriceListWriter writer(run);
    writer.Head(list, direction, row.Text("DSLISTIN"));
    return writer.AddScale(writer.Article(list, ArticleOf(run, row.Text("ARLISTIN")), validity), scale);
}

} // namespace

const Needs& ListiniNeeds() {
    static const Needs needs{{},
                             {{ListiniTable,
                               {"CDLISTIN", "DSLISTIN", "TPLISTIN", "ARLISTIN", "DILISTIN", "DFLISTIN", "QTLISTIN",
                                "PRLISTIN", "S1LISTIN", "S2LISTIN"}}},
                             PriceListNeeds()};
    return needs;
}

void ImportListiniGescom(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportListiniGescom", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione listini");
        run.Preflight(ListiniNeeds());
        EmptyPriceLists(run, reset);
        const QString where = run.OnlyCode("\rWHERE", "CDLISTIN", singleCode);
        run.Rows({"Listini", ListiniTable, "CDLISTIN, ARLISTIN", "SELECT COUNT(*) FROM LISTINI" + where,
                  "SELECT * FROM LISTINI" + where + "\rORDER BY CDLISTIN, ARLISTIN, DILISTIN"},
                 [&](const SourceRow& row) { return ImportPrezzo(run, row); });
        run.Complete("Listini importati correttamente!");
    });
}

} // namespace modImport_Gescom
