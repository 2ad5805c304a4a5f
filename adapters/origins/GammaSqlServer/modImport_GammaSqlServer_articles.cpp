// Articles and price lists of Gamma: MG66 holds a row for each article, MG87 its descriptions, PD18 what production
// knows of it; LI10 the prices of the numbered lists, which hold from LI10_QTA on, LI16 those of single customers and
// suppliers. A supplier of an article has its cost, days and lot. Left out: prices of a single warehouse
// (LI10_DEPOS_MG58), which Quadrix does not know; LI10_LASTCHANGE.

#include "adapters/origins/GammaSqlServer/modImport_GammaSqlServer.h"

#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/map/emptyDays.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_GammaSqlServer {

namespace {

// --- Hooks and rules ----------------------------------------------------------------------------------------------

/// PF is a product; what is bought (provenance 2) a component, SL a part made here. Other kinds are a matter of
/// SYS_IMP.
Rule ArticleClass() {
    const Rule translated = Translated(Artprod, "PD18_TIPOPROD_PD20");
    Rule rule{
        "\"PF\" com'è; provenienza 2 \"CM\"; \"SL\" com'è; altrimenti " + translated.text,
        [translated](const RuleInput& input) -> RuleValue {
            const QString kind = input.row.Text(input.columns.first()).toUpper();
            if (kind == u"PF") {
                return kind;
            }
            if (input.row.Text(input.columns.last()) == u"2") {
                return QStringLiteral("CM");
            }
            const QStringList only{input.columns.first()};
            return kind == u"SL" ? RuleValue(kind) : translated.apply({input.session, input.row, only, input.facts});
        }};
    return WithDefault(Needing(2, std::move(rule)));
}

/// Prices of the first sales list.
ChildTable FirstListPrices() {
    return {.table = Listartic,
            .on = {{"LI10_DITTA_CG18", "MG66_DITTA_CG18"}, {"LI10_CODART_MG66", "MG66_CODART"}},
            .order = "LI10_DATAINIZIOVAL",
            .where = "LI10_NUMLIST = 1 AND LI10_FLGVENDACQ = 0 AND (LI10_OPZIONE_MG5E = '' OR LI10_OPZIONE_MG5E IS "
                     "NULL) AND (LI10_DEPOS_MG58 = '' OR LI10_DEPOS_MG58 IS NULL)"};
}

/// A price of the first sales list that holds on the day of the import.
struct HeldPrice {
    double quantity; ///< of its scale; 0 also for one piece
    QDate begin;
    double price;
};

/// Whether it is the price of the article rather than another one: by the smaller quantity, of equal ones the newer, of
/// those that begin on one day, which the source has in no order, the dearest.
bool IsBefore(const HeldPrice& one, const HeldPrice& other) {
    if (one.quantity != other.quantity) {
        return one.quantity < other.quantity;
    }
    return one.begin != other.begin ? one.begin > other.begin : one.price > other.price;
}

/// The sales price of an article is that of the first list that holds on the day of the import; without one it is
/// cleared.
void SetPrice(ImportRun& run, const SourceRow& row, TargetRow& article) {
    Session& session = run.GetSession();
    const QDate today = session.UserManager.DataElaborazione;
    const Field from("LI10_DATAINIZIOVAL");
    const Field to("LI10_DATAFINEVAL");
    std::optional<HeldPrice> best;
    FirstListPrices().ForEach(session, row, [&](const SourceRow& price) {
        const QVariant begin = from.Day(session, price);
        const QVariant end = WithoutEmptyDay(to.Day(session, price));
        const bool holds = (begin.isNull() || begin.toDate() <= today) && (end.isNull() || end.toDate() >= today);
        const double quantity = NumberOf(price, "LI10_QTA");
        const HeldPrice own{quantity <= 1 ? 0 : quantity, begin.toDate(), RoundedTo(NumberOf(price, "LI10_PREZZO"), 6)};
        if (holds && (!best || IsBefore(own, *best))) {
            best = own;
        }
    });
    article.Set("ARPRZ", best ? QVariant(best->price) : QVariant());
    SetMarkUp(run, row, article);
}

Needs PriceNeeds() {
    Needs needs = FirstListPrices().OwnNeeds(Anagrart);
    needs.reads.push_back({Listartic, {"LI10_PREZZO", "LI10_DATAFINEVAL"}, {"LI10_QTA"}});
    needs.writes.push_back({"ART_ICO", {"ARPRZ", "ARCOS", "ARRIC"}});
    return needs;
}

const QString Artclifor = QStringLiteral("MG73_ARTCLIFOR");

/// Rows of the article in another table. @param table,code its name and the code of its columns
ChildTable OfArticle(const QString& table, const QString& code, const QString& order, const QString& where) {
    return {.table = table,
            .on = {{code + "_DITTA_CG18", "MG66_DITTA_CG18"}, {code + "_CODART_MG66", "MG66_CODART"}},
            .order = order,
            .where = where};
}

ChildTable CodesOf(const QString& where) {
    return OfArticle(Artclifor, "MG73", "MG73_TIPOCF_CG44, MG73_CLIFOR_CG44", where);
}

ChildTable Languages() {
    return OfArticle(Artdesc, "MG87", "MG87_LINGUA_MG52",
                     "MG87_LINGUA_MG52 <> '' AND (MG87_OPZIONE_MG5E = '' OR MG87_OPZIONE_MG5E IS NULL)");
}

Field Language() { return {"MG87_LINGUA_MG52", TranslatedOrKnown(Artdesc, "MG87_LINGUA_MG52", "TAB_LNG")}; }

/// Long descriptions in other languages.
void WriteLongTexts(ImportRun& run, const SourceRow& row, const QString& article) {
    Session& session = run.GetSession();
    Languages().ForEach(session, row, [&](const SourceRow& text) {
        const QString language = Language().Text(session, text);
        if (!language.isEmpty() && !text.IsBlank("MG87_DESCARTEST")) {
            ArticleWriter(run).Text(article, "ARDEC", text.Text("MG87_DESCARTEST"), language);
        }
    });
}

/// What the article itself tells, for one of its suppliers.
Field OfItsArticle(const QString& columns, const Rule& rule) {
    const ChildTable article{.table = Anagrart,
                             .on = {{"MG66_DITTA_CG18", "MG73_DITTA_CG18"}, {"MG66_CODART", "MG73_CODART_MG66"}}};
    return {"MG73_CODART_MG66", OfFirst(Artclifor, article, columns, rule)};
}

/// A price with its two surcharges in percent.
Rule WithSurcharges() {
    return {"la prima, aumentata delle percentuali delle altre; arrotondato a 6 decimali", [](const RuleInput& input) {
                double price = NumberOf(input.row, input.columns.first());
                for (const QString& column : input.columns.mid(1)) {
                    price *= 1 + NumberOf(input.row, column) / 100;
                }
                return RuleValue(RoundedTo(price, 6));
            }};
}

} // namespace

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    const QString own = QStringLiteral("(J1.MG87_OPZIONE_MG5E = '' OR J1.MG87_OPZIONE_MG5E IS NULL) AND "
                                       "(J1.MG87_LINGUA_MG52 = '' OR J1.MG87_LINGUA_MG52 IS NULL)");
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliGammaSqlServer"},
        .source = {.table = Anagrart,
                   .key = "MG66_CODART",
                   .order = "MG66_DITTA_CG18, MG66_CODART",
                   .naming = "MG66_CODART",
                   .joins = {{.table = Artdesc,
                              .on = {{"MG87_DITTA_CG18", "MG66_DITTA_CG18"}, {"MG87_CODART_MG66", "MG66_CODART"}},
                              .columns = {"MG87_DESCART", "MG87_DESCARTEST"},
                              .where = own},
                             {.table = Artprod,
                              .on = {{"PD18_DITTA_CG18", "MG66_DITTA_CG18"}, {"PD18_CODART_MG66", "MG66_CODART"}},
                              .columns = {"PD18_TIPOPROD_PD20", "PD18_CODPROV_PD21"}}}},
        .code = {"MG66_CODART", Article()},
        .description = "MG87_DESCART",
        .lines =
            {
                {"CDEXT", "MG66_CODART", First(50)},
                {"ARDEC", "MG87_DESCARTEST", First(255)},
                {"ARUMS", "MG66_UM1", Unit(Anagrart, "MG66_UM1", schema::defaults::Unit)},
                {"ARUM2", "MG66_UM2", Unit(Anagrart, "MG66_UM1", "")},
                {"ARCOE", "MG66_FATTCONV", NotZero()},
                {"ARFAM", "MG66_FAM_MG53", Translated(Anagrart, "MG66_FAM_MG53")},
                {"ARTIP", "MG66_GRUPPO_MG55", Translated(Anagrart, "MG66_GRUPPO_MG55")},
                {"ARCLA", "PD18_TIPOPROD_PD20, PD18_CODPROV_PD21", ArticleClass()},
                {"ARIVA", "MG66_CODIVA_CG28", VatCode(Anagrart, "MG66_CODIVA_CG28")},
                {"ARPSN", "MG66_PESONETTO", RoundedTo(3)},
                {"ARPSL", "MG66_PESOLORDO", RoundedTo(3)},
                {"ARCOS", "MG66_COSTOSTD, MG66_COSTOULT", FirstNotZero()},
                {"ARSMN", "MG66_SCORTAMIN", RoundedTo(6)},
                {"ARSMX", "MG66_SCORTAMAX", RoundedTo(6)},
                {"ARLOR", "MG66_LOTTORIOR", RoundedTo(6)},
                {"ARGGA", "MG66_GGAPPROV", RoundedTo(0)},
                {"ARANN", "MG66_FLGOBSOLETO", Flag()},
            },
        .suppliers = {{.rows = CodesOf("MG73_TIPOCF_CG44 = 1"),
                       .supplier = {"MG73_CLIFOR_CG44", KnownSupplier()},
                       .ownCode = "MG73_CODARTCF",
                       .price = OfItsArticle("MG66_COSTOSTD, MG66_COSTOULT", FirstNotZero()),
                       .leadDays = OfItsArticle("MG66_GGAPPROV", RoundedTo(0)),
                       .lot = OfItsArticle("MG66_LOTTORIOR", RoundedTo(6)),
                       .preferred = {"MG73_FLGFORPREF", Flag()}}},
        .aliases = {{.rows = CodesOf("MG73_TIPOCF_CG44 = 0"),
                     .code = "MG73_CODARTCF",
                     .counterparty = {"MG73_CLIFOR_CG44", KnownCustomer()}}},
        .languages = {{.rows = Languages(), .language = Language(), .text = "MG87_DESCART"}},
        .more = SetPrice,
        .after = WriteLongTexts,
        .further = PriceNeeds() + Needs{{}, {{Artdesc, {}, {"MG87_DESCARTEST"}}}, {}},
    };
}

// --- Price lists --------------------------------------------------------------------------------------------------

PriceLists Listini() {
    return {
        .frame = {.module = Module, .procedure = "ImportListiniGammaSqlServer"},
        .source = {.table = Listartic,
                   .key = "LI10_NUMLIST",
                   .order = "LI10_DITTA_CG18, LI10_NUMLIST, LI10_CODART_MG66, LI10_DATAINIZIOVAL, LI10_DEPOS_MG58",
                   .where = "(LI10_OPZIONE_MG5E = '' OR LI10_OPZIONE_MG5E IS NULL)",
                   .naming = "LI10_NUMLIST, LI10_CODART_MG66"},
        .article = {"LI10_CODART_MG66", Article()},
        .prices = {{
            .list = {"LI10_NUMLIST", PriceList()},
            .direction = {"LI10_FLGVENDACQ", Choice({{"0", "V"}, {"1", "A"}}, "?")},
            .from = "LI10_DATAINIZIOVAL",
            .to = "LI10_DATAFINEVAL",
            .scales = {{.quantityFrom = "LI10_QTA", .price = "LI10_PREZZO"}},
        }},
        .leavesOut =
            [](const SourceRow& row) {
                return row.IsBlank("LI10_DEPOS_MG58") ? QString() : QStringLiteral("prezzo di un solo deposito");
            },
    };
}

PriceLists ListiniPersonali(bool customers) {
    return {
        .frame = {.module = Module,
                  .procedure = customers ? QStringLiteral("ImportListiniClientiGammaSqlServer")
                                         : QStringLiteral("ImportListiniFornitoriGammaSqlServer"),
                  .log = LogStart::Behind},
        .source = {.table = Listartcf,
                   .key = "LI16_CLIFOR_CG44",
                   .order = "LI16_DITTA_CG18, LI16_CLIFOR_CG44, LI16_CODART_MG66, LI16_DATAINIZIOVAL",
                   .where = QStringLiteral("LI16_TIPOCF_CG44 = %1").arg(customers ? 0 : 1),
                   .naming = "LI16_CLIFOR_CG44, LI16_CODART_MG66"},
        .article = {"LI16_CODART_MG66", Article()},
        .prices = {{
            .list = {},
            .owner = {"LI16_CLIFOR_CG44", customers ? CustomerOf() : SupplierOf()},
            .direction = Fixed(customers ? "V" : "A"),
            .from = "LI16_DATAINIZIOVAL",
            .scales = {{.price = {"LI16_PREZZO, LI16_MAG1PER, LI16_MAG2PER", WithSurcharges()},
                        .discounts = {"LI16_SC1PER", "LI16_SC2PER", "LI16_SC3PER"}}},
        }},
    };
}

} // namespace modImport_GammaSqlServer
