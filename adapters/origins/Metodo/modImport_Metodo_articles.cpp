// Articles of Metodo: ANAGRAFICAARTICOLI with the commercial and production data of the last year; units, factors,
// prices and the codes that counterparties have for an article stand in tables of their own. CODCATEGORIASTAT has no
// place beside group and category. Of the price lists the first one is read, as the article's own price:
// what holds today, of the stock unit.

#include "adapters/origins/Metodo/modImport_Metodo.h"

#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Metodo {

namespace {

const QString Produzione = QStringLiteral("ANAGRAFICAARTICOLIPROD");
const QString Relazioni = QStringLiteral("RELAZIONICFV");
const QString UnitaPreferite = QStringLiteral("ARTICOLIUMPREFERITE");

constexpr int LongTextSize = 255;

/// An article has a row of these for each year.
Join LastYear(const QString& table, const QString& alias, const QStringList& columns) {
    return {.table = table,
            .on = {{"CODICEART", "CODICE"}},
            .columns = columns,
            .where = QStringLiteral("%1.ESERCIZIO = (SELECT MAX(E.ESERCIZIO) FROM %2 E WHERE E.CODICEART = T.CODICE)")
                         .arg(alias, table)};
}

/// What belongs to an article, in a table of its own.
ChildTable OfArticle(const QString& table, const QString& order, const QString& where = {}) {
    return {.table = table, .on = {{"CODART", "CODICE"}}, .order = order, .where = where};
}

/// The codes that customers ("C") or suppliers ("F") have for an article.
ChildTable RelationsOf(const QString& letter) {
    return {.table = Relazioni,
            .on = {{"ARTICOLO", "CODICE"}},
            .order = "CODCLIFOR",
            .where = QStringLiteral("CODCLIFOR LIKE '%1%'").arg(letter),
            .naming = "ARTICOLO, CODCLIFOR"};
}

/// The last prices that an article was bought at.
ChildTable PurchaseRows(const std::vector<Tie>& ties) {
    return {.table = "STORICOPREZZIARTICOLO", .on = ties, .order = "DATA DESC", .where = "CODCLIFOR LIKE 'F%'"};
}

Rule NotZeroTranslated(const QString& column) { return NotZeroCode(Translated(ArticoliTable, column)); }

/// The units of an article by their kind (TIPOUM): "1" stock unit, "2" second one.
class Units {
public:
    QHash<QString, QString> Of(const RuleInput& input) const {
        QHash<QString, QString> units;
        m_rows.ForEach(input.session, input.row,
                       [&](const SourceRow& unit) { units.insert(unit.Text("TIPOUM"), unit.Text("UM")); });
        return units;
    }
    std::vector<TableNeed> Reads() const {
        return std::vector<TableNeed>{{UnitaPreferite, {"UM"}}} + m_rows.OwnNeeds(ArticoliTable).reads;
    }

private:
    ChildTable m_rows = OfArticle(UnitaPreferite, "TIPOUM");
};

/// What a unit of the article is when no row tells it.
Rule NoUnit() {
    return {"nessuna, se nessuna riga di ARTICOLIUMPREFERITE la dice",
            [](const RuleInput&) { return RuleValue(QVariant()); }};
}

/// How much of the second unit a stock unit is.
Rule Factor() {
    const ChildTable factors = OfArticle("ARTICOLIFATTORICONVERSIONE", "UM1, UM2");
    Rule rule{
        "FATTORE della sua riga di ARTICOLIFATTORICONVERSIONE dall'unità di TIPOUM 1 a quella di TIPOUM 2; niente "
        "se manca o è zero",
        [units = Units(), factors, notZero = NotZero().apply](const RuleInput& input) {
            const QHash<QString, QString> of = units.Of(input);
            RuleValue factor;
            factors.ForEach(input.session, input.row, [&](const SourceRow& row) {
                if (of.contains("2") && row.Text("UM1") == of.value("1") && row.Text("UM2") == of.value("2")) {
                    factor = notZero({input.session, row, {"FATTORE"}, input.facts});
                }
            });
            return factor;
        },
        Side::Both,
        std::vector<TableNeed>{{factors.table, {}, {"FATTORE"}}} + Units().Reads() +
            factors.OwnNeeds(ArticoliTable).reads};
    return AlsoIn({{factors.table, {"FATTORE"}}}, std::move(rule));
}

/// The price of a stock unit that holds today.
Rule ListPrice() {
    const ChildTable prices = OfArticle("LISTINIARTICOLI", "NRLISTINO, DATAVALIDITA DESC");
    Rule rule{
        "PREZZOEURO, altrimenti PREZZO, della sua prima riga di LISTINIARTICOLI in ordine di NRLISTINO e, dall'ultima, "
        "di DATAVALIDITA, per l'unità di TIPOUM 1 o senza unità e non successiva al giorno dell'importazione",
        [units = Units(), prices, amount = FirstNotZero().apply, day = Day().apply](const RuleInput& input) {
            const QString unit = units.Of(input).value("1");
            RuleValue price;
            prices.ForEach(input.session, input.row, [&](const SourceRow& row) {
                const QVariant from = *day({input.session, row, {"DATAVALIDITA"}, input.facts});
                const bool holds = from.isNull() || from.toDate() <= input.session.UserManager.DataElaborazione;
                if (!price && holds && (row.IsBlank("UM") || row.Text("UM") == unit)) {
                    price = amount({input.session, row, {"PREZZOEURO", "PREZZO"}, input.facts});
                }
            });
            return price ? price : RuleValue(QVariant());
        },
        Side::Both,
        std::vector<TableNeed>{{prices.table, {}, {"PREZZOEURO", "PREZZO", "UM"}}} + Units().Reads() +
            prices.OwnNeeds(ArticoliTable).reads};
    return AlsoIn({{prices.table, {"PREZZOEURO", "PREZZO"}}}, std::move(rule));
}

/// A text that the long description does not hold.
Rule WhenLonger(int count) {
    return {QStringLiteral("solo se è più lungo di %1 caratteri").arg(count), [count](const RuleInput& input) {
                const QString text = input.Text();
                return FirstOf(text, count) == text ? RuleValue() : RuleValue(text);
            }};
}

/// A note that an import has made of a long description goes when that has become short; somebody's own stays.
void ClearLongText(ImportRun& run, const SourceRow& row, TargetRow& article) {
    if (article.Value("ARNOT").isValid()) {
        return;
    }
    Session& session = run.GetSession();
    const QString code = Field("CODICE", Article()).Text(session, row);
    const QString note = LookUp(session, "ART_ICO", "CDART", code, "ARNOT");
    const QString start = FirstOf(note, LongTextSize);
    if (start != note && start.trimmed() == LookUp(session, "ART_ICO", "CDART", code, "ARDEC")) {
        article.Set("ARNOT", QVariant());
    }
}

void Complete(ImportRun& run, const SourceRow& row, TargetRow& article) {
    SetMarkUp(run, row, article);
    ClearLongText(run, row, article);
}

/// The head of variants is no article of its own.
QString HeadOfVariants(const SourceRow& row) {
    return row.Text("ARTTIPOLOGIA") == u"1" ? QStringLiteral("tipologia di varianti") : QString();
}

} // namespace

Articles Articoli() {
    const ChildTable purchases = PurchaseRows({{"CODARTICOLO", "CODICE"}});
    const ChildTable fromUsual = PurchaseRows({{"CODARTICOLO", "CODICEART"}, {"CODCLIFOR", "FORNPREFACQ"}});
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliMetodo"},
        .source =
            {
                .table = ArticoliTable,
                .key = "CODICE",
                .order = "CODICE",
                .joins =
                    {
                        LastYear("ANAGRAFICAARTICOLICOMM", "J1",
                                 {"CODIVA", "SCGENVENDITEITA", "SCONTO1", "SCONTO2", "SCONTO3", "BARCODE", "CODICEALT1",
                                  "CODICEALT2", "ESAURITO", "INESAURIMENTO"}),
                        LastYear(Produzione, "J2",
                                 {"PROVENIENZA", "SCORTAMIN", "SCORTAMAX", "LIVRIORDINO", "LOTTORIORDINO",
                                  "QMINRIORDACQ", "TAPPROVVACQ", "FORNPREFACQ", "CODICEART"}),
                    },
            },
        .code = {"CODICE", Article()},
        .description = "DESCRIZIONE",
        .lines =
            {
                {"CDEXT", "CODICE", Text()},
                {"ARDEC", "DESCRESTESA", First(LongTextSize)},
                {"ARNOT", "DESCRESTESA", WhenLonger(LongTextSize)},
                {"ARFAM", "GRUPPO", NotZeroTranslated("GRUPPO")},
                {"ARTIP", "CATEGORIA", NotZeroTranslated("CATEGORIA")},
                {"ARUMS", "", Constant(schema::defaults::Unit)},
                {"ARUM2", "", NoUnit()},
                {"ARUMV", "", NoUnit()},
                {"ARUMP", "", NoUnit()},
                {"ARCOE", "", Factor()},
                {"ARIVA", "CODIVA", Or(NotZeroCode(ArticleVat()), schema::defaults::VatCode)},
                {"ARCAC", "SCGENVENDITEITA", Text()},
                {"ARSCO", "SCONTO1", RoundedTo(2)},
                {"ARSC2", "SCONTO2", RoundedTo(2)},
                {"ARSC3", "SCONTO3", RoundedTo(2)},
                {"ARANN", "ESAURITO", Flag()},
                {"AROBS", "INESAURIMENTO", Choice({{"1", "In esaurimento"}}, "")},
                {"ARCLA", "PROVENIENZA", Choice({{"1", "PF"}}, "CM")},
                {"ARSMN", "SCORTAMIN", RoundedTo(6)},
                {"ARSMX", "SCORTAMAX", RoundedTo(6)},
                {"ARPUR", "LIVRIORDINO", RoundedTo(6)},
                {"ARLOR", "LOTTORIORDINO", RoundedTo(6)},
                {"ARQMR", "QMINRIORDACQ", RoundedTo(6)},
                {"ARGGA", "TAPPROVVACQ", RoundedTo(0)},
                {"ARPSN", "PESONETTO", RoundedTo(3)},
                {"ARVOL", "CUBATURA", RoundedTo(6)},
                {"ARMAG", "AGGIORNAMAG", Flag()},
                {"DTINS", "DATAMODIFICA", NotBlank(AsRead())},
                {"ARCOS", "", Or(OfFirst(ArticoliTable, purchases, "PREZZOEURO", RoundedTo(6)), 0)},
                {"ARDUC", "", Or(OfFirst(ArticoliTable, purchases, "DATA", Day()), QVariant())},
                {"ARPRZ", "", ListPrice()},
            },
        .suppliers = {{.supplier = {"FORNPREFACQ", KnownSupplier()},
                       .price = {"FORNPREFACQ", OfFirst(Produzione, fromUsual, "PREZZOEURO", RoundedTo(6))},
                       .leadDays = "TAPPROVVACQ",
                       .lot = "LOTTORIORDINO",
                       .minimum = "QMINRIORDACQ",
                       .preferred = Fixed(true)},
                      {.rows = RelationsOf("F"),
                       .supplier = {"CODCLIFOR", KnownSupplier()},
                       .ownCode = "RIFERIMENTO",
                       .ownDescription = {"DESCRIZIONE", First(100)},
                       .preferred = Fixed(false)}},
        .aliases = {{.code = "BARCODE"},
                    {.code = "CODICEALT1"},
                    {.code = "CODICEALT2"},
                    {.rows = RelationsOf("C"),
                     .code = "RIFERIMENTO",
                     .counterparty = {"CODCLIFOR", KnownCustomer()},
                     .ownDescription = {"DESCRIZIONE", First(100)}}},
        .units = {{.rows = OfArticle(UnitaPreferite, "TIPOUM"),
                   .unit = {"UM", ArticleUnit(schema::defaults::Unit)},
                   .places = {"TIPOUM", Choice({{"1", "ARUMS"}, {"2", "ARUM2"}, {"3", "ARUMV"}, {"8", "ARUMP"}}, "")}}},
        .leavesOut = HeadOfVariants,
        .more = Complete,
        .further = {{}, {{ArticoliTable, {}, {"ARTTIPOLOGIA"}}}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

} // namespace modImport_Metodo
