// Articles of Ad Hoc Revolution: ART_ICOL with PAR_RIOR (reorder), KEY_ARTI (further codes), LIS_TINI and LIS_SCAG
// (prices) and SALDIART (last costs); and the sheets among them, whose formats are articles of their own there.
// Left out: homogeneous category and brand (ARCATOMO, ARCODMAR), which Quadrix has no column for; unit and kind of a
// further code (CAUNIMIS, CA__TIPO), which are those of the article.

#include "adapters/origins/AdHoc/modImport_AdHoc.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/tiedRows.h"
#include "adapters/contract/write/missingCodes.h"
#include "adapters/contract/write/SheetFormat.h"
#include "core/modMain.h"
#include "core/qdxProduction_sheets.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_AdHoc {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString ParRior = QStringLiteral("PAR_RIOR");
const QString KeyArti = QStringLiteral("KEY_ARTI");
const QString LisTini = QStringLiteral("LIS_TINI");
const QString LisScag = QStringLiteral("LIS_SCAG");

// --- Rules --------------------------------------------------------------------------------------------------------

/// What has a bill is made here, whatever its kind says.
Rule ArticleClass() {
    return WithDefault(Needing(
        2,
        {"\"PF\" se la prima colonna è \"PF\" o la seconda non è vuota, altrimenti \"CM\"", [](const RuleInput& input) {
             const bool isMade = input.row.Text(input.columns.first()).compare(u"PF", Qt::CaseInsensitive) == 0 ||
                                 !input.row.IsBlank(input.columns.last());
             return RuleValue(isMade ? "PF" : "CM");
         }}));
}

/// Families and groups are two lists of codes: each is translated under its own name.
Rule FamilyOrGroup() {
    return {"la prima non vuota: una famiglia tradotta con SYS_IMP (ART_ICOL, ARCODFAM), un gruppo con SYS_IMP "
            "(ART_ICOL, ARGRUMER), i codici che mancano vi si annotano",
            [](const RuleInput& input) -> RuleValue {
                for (const QString& column : input.columns) {
                    if (!input.row.IsBlank(column)) {
                        return Translated(ArtIcol, column).apply({input.session, input.row, {column}, input.facts});
                    }
                }
                return {};
            }};
}

// --- Amounts ------------------------------------------------------------------------------------------------------

/// The cost of an article: the last one, else that of its balances, else the standard cost.
double CostOf(Session& session, const SourceRow& row) {
    if (const double last = NumberOf(row, "ARULTCOS"); last != 0) {
        return last;
    }
    ovConnection& source = session.SourceConnection();
    const Recordset balances = source.ExecuteWC("SELECT MAX(SLVALUCA) AS SLVALUCA FROM SALDIART\rWHERE " +
                                                TiedTo(source, "SLCODICE", row, "ARCODART"));
    const double ofBalance = balances.Eof() ? 0 : NumberOf(SourceRow(balances), "SLVALUCA");
    return ofBalance != 0 ? ofBalance : NumberOf(row, "PRCOSSTA");
}

/// The same, for what the usual supplier asks.
Rule Cost() {
    return AlsoIn(
        {{SaldiArt, {"SLVALUCA"}}, {ParRior, {"PRCOSSTA"}}},
        {"la prima; se è zero il SLVALUCA più alto di SALDIART, altrimenti PRCOSSTA di PAR_RIOR",
         [](const RuleInput& input) { return RuleValue(RoundedTo(CostOf(input.session, input.row), UnitDecimals)); },
         Side::Both,
         {{SaldiArt, {"SLCODICE", "SLVALUCA"}}, {ParRior, {}, {"PRCOSSTA"}}}});
}

/// The price that holds today: of the first list, and of its quantities the dearest, which is that of few pieces. One
/// that holds no more is cleared with its discounts.
void SetPrice(ImportRun& run, const SourceRow& row, TargetRow& target) {
    ovConnection& source = run.GetSession().SourceConnection();
    const QDate today = run.GetSession().UserManager.DataElaborazione;
    const Recordset prices = source.ExecuteWC(
        "SELECT S.LIPREZZO, S.LISCONT1, S.LISCONT2, S.LISCONT3\rFROM LIS_TINI L\rINNER JOIN LIS_SCAG S ON "
        "S.LICODART = L.LICODART AND S.LIROWNUM = L.CPROWNUM\rWHERE " +
        TiedTo(source, "L.LICODART", row, "ARCODART") + "\r  AND " + NoDayOr(source, "L.LIDATATT", "<=", today) +
        "\r  AND " + NoDayOr(source, "L.LIDATDIS", ">=", today) + "\rORDER BY L.LICODLIS, L.CPROWNUM, S.LIPREZZO DESC");
    if (prices.Eof()) {
        for (const char* column : {"ARPRZ", "ARSCO", "ARSC2", "ARSC3"}) {
            target.Set(column, QVariant());
        }
        return;
    }
    const SourceRow price(prices);
    target.Set("ARPRZ", RoundedTo(NumberOf(price, "LIPREZZO"), UnitDecimals));
    for (const auto& [column, discount] :
         {std::pair{"ARSCO", "LISCONT1"}, std::pair{"ARSC2", "LISCONT2"}, std::pair{"ARSC3", "LISCONT3"}}) {
        const double number = RoundedTo(NumberOf(price, discount), 2);
        price.IsMissing(discount) ? target.SetWhenNew(column, number) : target.Set(column, number);
    }
}

void SetAmounts(ImportRun& run, const SourceRow& row, TargetRow& target) {
    const double cost = RoundedTo(CostOf(run.GetSession(), row), UnitDecimals);
    const bool isTold = cost != 0 || (!row.IsMissing("ARULTCOS") && !row.IsMissing("PRCOSSTA"));
    isTold ? target.Set("ARCOS", cost) : target.SetWhenNew("ARCOS", cost);
    SetPrice(run, row, target);
    SetMarkUp(run, row, target);
}

// --- Further codes ------------------------------------------------------------------------------------------------

/// A code with an account is that of a customer or supplier for the article; any other is the company's own.
std::vector<Aliases> FurtherCodes() {
    const auto rows = [](const char* where) {
        return ChildTable{
            .table = KeyArti, .on = {{"CACODART", "ARCODART"}}, .order = "CACODICE", .where = QLatin1String(where)};
    };
    return {
        {.rows = rows("CATIPCON = 'F'"),
         .code = "CACODICE",
         .counterparty = {"CACODCON", KnownSupplier()},
         .ownDescription = {"CADESART", First(100)}},
        {.rows = rows("CATIPCON = 'C'"),
         .code = "CACODICE",
         .counterparty = {"CACODCON", KnownCustomer()},
         .ownDescription = {"CADESART", First(100)}},
        {.rows = rows("(CACODCON IS NULL OR CACODCON = '') AND CACODICE <> CACODART"), .code = "CACODICE"},
    };
}

Needs AmountNeeds() {
    return {{},
            {{ArtIcol, {}, {"ARULTCOS"}},
             {ParRior, {}, {"PRCOSSTA"}},
             {SaldiArt, {"SLCODICE", "SLVALUCA"}},
             {.table = LisTini,
              .columns = {"LICODART", "CPROWNUM", "LICODLIS", "LIDATATT", "LIDATDIS"},
              .days = {"LIDATATT", "LIDATDIS"}},
             {LisScag, {"LICODART", "LIROWNUM", "LIPREZZO"}, {"LISCONT1", "LISCONT2", "LISCONT3"}}},
            {{"ART_ICO", {"ARCOS", "ARPRZ", "ARSCO", "ARSC2", "ARSC3", "ARRIC"}}}};
}

} // namespace

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliAhr"},
        .source = {.table = ArtIcol,
                   .key = "ARCODART",
                   .order = "ARCODART",
                   .group = {"ARCODART"},
                   .joins = {{.table = ParRior,
                              .on = {{"PRCODART", "ARCODART"}},
                              .columns = {"PRSCOMIN", "PRSCOMAX", "PRPUNRIO", "PRLOTRIO", "PRQTAMIN", "PRGIOAPP",
                                          "PRCODFOR", "PRCOSSTA"}}}},
        .code = {"ARCODART", Article()},
        .description = "ARDESART",
        .lines =
            {
                {"CDEXT", "ARCODART", Text()},
                {"ARDEC", "ARDESSUP", First(255)},
                {"ARUMS", "ARUNMIS1", Unit(ArtIcol, "ARUNMIS1", schema::defaults::Unit)},
                {"ARUM2", "ARUNMIS2", Unit(ArtIcol, "ARUNMIS2", "")},
                {"ARCOE", "AROPERAT, ARMOLTIP", UnitFactor()},
                {"ARCLA", "ARTIPART, ARCODDIS", ArticleClass()},
                {"ARTIP", "ARTIPART", Translated(ArtIcol, "ARTIPART")},
                {"ARFAM", "ARCODFAM, ARGRUMER", FamilyOrGroup()},
                {"ARIVA", "ARCODIVA", VatCode(ArtIcol, "ARCODIVA")},
                {"ARPSN", "ARPESNET", RoundedTo(3)},
                {"ARPSL", "ARPESLOR", RoundedTo(3)},
                {"ARANN", "ARDTOBSO", HasExpired()},
                {"ARINV", "ARDTINVA", NotBlank(Day())},
                {"DTINS", "utdc", NotBlank(MomentOrNow())},
                {"ARSMN", "PRSCOMIN", RoundedTo(6)},
                {"ARSMX", "PRSCOMAX", RoundedTo(6)},
                {"ARPUR", "PRPUNRIO", RoundedTo(6)},
                {"ARLOR", "PRLOTRIO", RoundedTo(6)},
                {"ARQMR", "PRQTAMIN", RoundedTo(6)},
                {"ARGGA", "PRGIOAPP", RoundedTo(0)},
            },
        .suppliers = {{.supplier = {"PRCODFOR", KnownSupplier()},
                       .price = {"ARULTCOS", Cost()},
                       .leadDays = "PRGIOAPP",
                       .lot = "PRLOTRIO",
                       .minimum = "PRQTAMIN"}},
        .aliases = FurtherCodes(),
        .furtherRows = "altri parametri di riordino dello stesso articolo",
        .more = SetAmounts,
        .further = AmountNeeds(),
    };
}

// --- Sheets -------------------------------------------------------------------------------------------------------

namespace {

const QString FormatsQuestion = QStringLiteral("Creare anche i formati lamiera?");

/// The code of the sheet that a format belongs to.
QString SheetOf(const QString& format) {
    const qsizetype dash = format.lastIndexOf(u'-');
    return dash > 0 ? format.first(dash) : format;
}

Rule SheetCode() {
    return {"fino all'ultimo \"-\"", [](const RuleInput& input) { return RuleValue(SheetOf(input.Text())); }};
}

const Mapping& LamieraMapping() {
    static const Mapping mapping{
        "ART_ICO",
        ArtIcol,
        {
            {"CDEXT", "ARCODART", SheetCode()},
            {"ARDES", "ARDESART", First(100)},
            {"ARCDR", "ARDESART", CodeAndText(100)},
            {"ARCLA", "", Constant("LM")},
            {"ARMAT", "ARGRUMER", TranslatedOrKnown(ArtIcol, "ARGRUMER", "TAB_MAT")},
            {"ARTPG", "", Constant(schema::defaults::ArticleKind)},
            {"ARLAM", "", Constant(true)},
            {"ARUMS", "ARUNMIS1", Unit(ArtIcol, "ARUNMIS1", schema::defaults::Unit)},
            {"ARIVA", "ARCODIVA", VatCode(ArtIcol, "ARCODIVA")},
            {"ARMAG", "", Constant(true)},
            {"ARMAD", "", Constant(schema::defaults::Warehouse)},
            {"ARDMZ", "ARDIMAL1", RoundedTo(3)},
            {"ARCOS", "ARULTCOS", RoundedTo(6)},
        },
    };
    return mapping;
}

const Mapping& FormatoMapping() {
    static const Mapping mapping = FieldMapping("ART_FMT", ArtIcol,
                                                {{"LMDES", "ARDESART"},
                                                 {"LMDMX", "ARDIMLU1"},
                                                 {"LMDMY", "ARDIMLA1"},
                                                 {"LMPES", "ARPESLOR"},
                                                 {"LMEXT", "ARCODART"}});
    return mapping;
}

class SheetImporter final : public Importer {
public:
    explicit SheetImporter(ImportRun& run)
        : Importer(run),
          m_withFormats(run.Ask(FormatsQuestion)) {}

    QString Condition() const override {
        return QStringLiteral("ARCODFAM = ") +
               Run().Quoted(modMain::GetAppConfig(GetSession(), "IMPORT", "AHR_FAMIGLIA_LAMIERE", "LAM"));
    }
    RowOutcome Row(const SourceRow& row) override;

private:
    RowOutcome WriteSheet(const SourceRow& row, const QString& article);
    RowOutcome WriteFormat(const SourceRow& row, const QString& article);

    bool m_withFormats;
    QSet<QString> m_sheets; ///< written by this run
};

/// A sheet is told by the first of its formats.
RowOutcome SheetImporter::Row(const SourceRow& row) {
    const QString article = ArticleCodeOf(GetSession(), ArtIcol, "ARCODART", SheetOf(row.Text("ARCODART")));
    const bool isFirst = !m_sheets.contains(article) && !IsWrittenBefore(Run(), article);
    RowOutcome outcome = RowOutcome::Inserted;
    if (isFirst) {
        outcome = WriteSheet(row, article);
        Run().Remember(m_sheets, article);
    }
    if (FillsCodes(Run()) && isFirst) {
        return outcome;
    }
    const RowOutcome ofFormat = m_withFormats && !FillsCodes(Run())
                                    ? WriteFormat(row, article)
                                    : Run().Skip(QStringLiteral("altro formato della stessa lamiera"));
    return isFirst ? outcome : ofFormat;
}

RowOutcome SheetImporter::WriteSheet(const SourceRow& row, const QString& article) {
    if (FillsCodes(Run())) {
        return FillCodesOf(Run(), LamieraMapping(), row, {article});
    }
    const ArticleWriter writer(Run());
    const RowOutcome outcome = writer.Write(LamieraMapping(), row, {article});
    writer.Texts(article, row.Text("ARDESART"));
    return outcome;
}

RowOutcome SheetImporter::WriteFormat(const SourceRow& row, const QString& article) {
    const double length = NumberOf(row, "ARDIMLU1");
    const double width = NumberOf(row, "ARDIMLA1");
    if (length <= 0 || width <= 0) {
        Run().Log(QStringLiteral("FORMATO SENZA MISURE: %1").arg(Run().RowKey()));
        return Run().Skip(QStringLiteral("formato senza misure"));
    }
    SheetFormat format{.article = article,
                       .code = qdxProduction::qdxCalcolaCodiceFormatoArticolo(length, width),
                       .length = length,
                       .width = width,
                       .weight = NumberOf(row, "ARPESLOR"),
                       .description = row.Text("ARDESART"),
                       .external = row.Text("ARCODART")};
    format.code = FreeFormatCode(Run(), format, [this](const QString& code) {
        ovConnection& source = GetSession().SourceConnection();
        return source.ExecuteCommand("SELECT COUNT(*) FROM ART_ICOL\rWHERE ARCODART = " + LiteralOf(source, code)) != 0;
    });
    return WriteSheetFormat(Run(), format);
}

} // namespace

Procedure Lamiere() {
    Needs needs = NeedsOf(LamieraMapping()) + NeedsOf(FormatoMapping());
    needs.reads.push_back({ArtIcol, {"ARCODFAM"}});
    needs.writes = ArticleNeeds() + SheetFormatNeeds();
    return ProcedureOf(Button::Disegni,
                       {.module = Module,
                        .procedure = "ImportLamiereAhr",
                        .announcement = "Inizio importazione lamiere",
                        .errors = "Errore: ",
                        .step = "Lamiere",
                        .completion = "Lamiere importate correttamente!",
                        .confirmation = "Importare gli Articoli Lamiera?",
                        .asksReset = false},
                       {{.step = "Lamiere",
                         .source = {.table = ArtIcol, .key = "ARCODART", .order = "ARCODART"},
                         .needs = needs,
                         .asks = {{FormatsQuestion}},
                         .make = [](ImportRun& run, const QString&) { return std::make_unique<SheetImporter>(run); }}});
}

} // namespace modImport_AdHoc
