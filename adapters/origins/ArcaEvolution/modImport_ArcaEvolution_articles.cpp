// Articles of Arca Evolution: AR holds a row for each article, and its companions the units, the prices, the codes at
// counterparties, other codes and the texts of other languages.

#include "adapters/origins/ArcaEvolution/modImport_ArcaEvolution.h"

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/run/tiedRows.h"
#include "adapters/contract/write/Attachment.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/modMain.h"
#include "core/schemaDefaults.h"
#include "core/wholeSettings.h"
#include "sql/CodePage.h"
#include "sql/mod_ovTools.h"

#include <QDir>

using namespace contract;
using namespace contract::rules;

namespace modImport_ArcaEvolution {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Misure = QStringLiteral("ARARMisura");
const QString CodiciCf = QStringLiteral("ARCodCF");
const QString AliasTable = QStringLiteral("ARAlias");
const QString Lingue = QStringLiteral("ARLingua");

// --- Mappings -----------------------------------------------------------------------------------------------------

/// An article that heads a bill, of a kit or a phantom, is a product.
Rule HeadsBill() {
    Rule rule{"\"PF\" se una è vera, altrimenti \"CM\"", [](const RuleInput& input) {
                  const bool heads =
                      std::any_of(input.columns.begin(), input.columns.end(), [&](const QString& column) {
                          return mod_ovTools::ToBoolean(input.row.Value(column));
                      });
                  return RuleValue(heads ? "PF" : "CM");
              }};
    return WithDefault(Needing(2, std::move(rule)));
}

/// The point at which an article is ordered again: its minimum stock, for the articles that are reordered below it.
Rule ReorderPoint() {
    return {"la seconda se la prima è 2, altrimenti 0", [](const RuleInput& input) {
                constexpr double belowMinimum = 2;
                return RuleValue(
                    NumberOf(input.row, "MrpPuntoRiordino") == belowMinimum ? NumberOf(input.row, "ScortaMinima") : 0);
            }};
}

// --- Articles -----------------------------------------------------------------------------------------------------

/// Files of a folder by the code that they are named after, in upper case.
using FilesByCode = QMultiHash<QString, QString>;

FilesByCode FilesIn(const QString& folder, const QString& pattern) {
    FilesByCode files;
    if (!folder.isEmpty()) {
        for (const QFileInfo& file : QDir(folder).entryInfoList({pattern}, QDir::Files, QDir::Name)) {
            files.insert(file.completeBaseName().toUpper(), file.filePath());
        }
    }
    return files;
}

const QString Section = QStringLiteral("IMPORT");

/// The files that the settings name; they are looked for at the beginning of a run.
struct Files {
    FilesByCode attachments;
    FilesByCode notes;
    std::shared_ptr<AttachmentWriter> writer = {};
};

Files ReadFolders(ImportRun& run) {
    Session& session = run.GetSession();
    const QString notes = modMain::GetWholeConfig(session, Section, "SourcePathFileDBCNote", "");
    return {FilesIn(AttachmentFolder(session), "*"),
            FilesIn(notes.isEmpty() ? notes : sourceSettings::FromSettingsFolder(session, notes), "*.txt"),
            std::make_shared<AttachmentWriter>(run)};
}

/// The text of a note file: UTF-8, or the code page of Windows when it is none.
QString ReadNote(const QString& path) {
    const QByteArray bytes = ovDatabase::FileToBinary(path);
    QByteArray text;
    return CodePage("UTF-8").AppendUtf8(bytes, text) ? QString::fromUtf8(text) : DecodeText(bytes, CodePage());
}

bool AreUnitsAsked(Session& session) { return modMain::IsAppConfigOn(session, Section, "ARARMisura", "1"); }

/// Where a unit goes: the one by default is the stock unit, another one the second; of kind V it is that of sales, of
/// kind A of purchases, of kind E of both.
Rule UnitPlaces() {
    return {"con l'impostazione ARARMisura: \"ARUMS\" per quella predefinita, altrimenti \"ARUM2\"; \"ARUMV\" per V ed "
            "E, \"ARUMP\" per A ed E",
            [](const RuleInput& input) -> RuleValue {
                if (!AreUnitsAsked(input.session)) {
                    return QString();
                }
                const QString kind = input.row.Text("TipoARMisura").toUpper();
                QStringList places{mod_ovTools::ToBoolean(input.row.Value("DefaultMisura")) ? "ARUMS" : "ARUM2"};
                if (kind == "V" || kind == "E") {
                    places.append("ARUMV");
                }
                if (kind == "A" || kind == "E") {
                    places.append("ARUMP");
                }
                return places.join(' ');
            }};
}

Rule LanguageCode() {
    return {
        "1040 \"IT\", 1033 \"EN\", 1031 \"DE\", 1036 \"FR\", 3082 \"ES\"; altrimenti tradotto con SYS_IMP (CF, "
        "Id_Lingua), scritto nel log se manca",
        [](const RuleInput& input) -> RuleValue {
            const QString language = LanguageOf(input.session, input.Text());
            if (language.isEmpty()) {
                modImport::LogNote(
                    input.session,
                    QStringLiteral("LINGUA NON TROVATA: %1: '%2'").arg(input.session.Errors.RowKey(), input.Text()));
            }
            return language;
        }};
}

/// The sale price: of the list of prices (kind 1, else 0) that was published last, of those that have one.
double SalePrice(ImportRun& run, const SourceRow& article) {
    Session& session = run.GetSession();
    Recordset prices = session.SourceConnection().ExecuteWC(
        "SELECT A.Prezzo, R.DataPubblicazione FROM LSArticolo A\r"
        "JOIN LSRevisione R ON R.Id_LSRevisione = A.Id_LSRevisione\r"
        "JOIN LS L ON L.Cd_LS = R.Cd_LS\rWHERE " +
        TiedTo(session.SourceConnection(), "A.Cd_AR", article, "Cd_AR") +
        " AND L.TipoLS IN (0, 1)\rORDER BY L.TipoLS DESC, R.DataPubblicazione DESC");
    const QDateTime now = session.Now();
    for (const SourceRow row(prices); !prices.Eof(); prices.MoveNext()) {
        const QVariant since = DateOf(row, "DataPubblicazione");
        const double price = NumberOf(row, "Prezzo");
        if (price != 0 && (since.isNull() || since.toDateTime() <= now)) {
            return price;
        }
    }
    return 0;
}

void SetPrice(ImportRun& run, const SourceRow& row, TargetRow& target) {
    const double price = SalePrice(run, row);
    target.Set("ARPRZ", price);
    target.Set("ARRIC", MarkUpOf(price, NumberOf(row, "CostoStandard")));
}

/// A note file of the article follows the note of its row.
void SetNote(const Files& files, const SourceRow& row, TargetRow& target) {
    const QString file = files.notes.value(row.Text("Cd_AR").toUpper());
    if (!file.isEmpty()) {
        const QString own = row.Text("Note_AR");
        target.Set("ARNOT", QString(own + (own.isEmpty() ? "" : "\n") + ReadNote(file).trimmed()));
    }
}

void Attach(ImportRun& run, const Files& files, const SourceRow& row, const QString& article) {
    QStringList own = files.attachments.values(row.Text("Cd_AR").toUpper());
    own.sort();
    for (const QString& file : own) {
        files.writer->Write({"ART_ICO", article, file});
        if (modMain::IsAppConfigOn(run.GetSession(), Section, "DebugAttach", "0")) {
            run.Log(QStringLiteral("ALLEGATO: %1: '%2'").arg(article, file));
        }
    }
}

// --- Declarations -------------------------------------------------------------------------------------------------

ChildTable OfArticle(const QString& table, const QString& order, const QString& key, const QString& where = {}) {
    return {.table = table, .on = {{"Cd_AR"}}, .order = order, .where = where, .naming = "Cd_AR, " + key};
}

/// @param files those of the run
Articles Articoli(const std::shared_ptr<const Files>& files) {
    const QString ofSupplier = QStringLiteral("Cd_CF LIKE 'F%'");
    const QString ofOther = QStringLiteral("(Cd_CF IS NULL OR NOT %1)").arg(ofSupplier);
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliArcaEvolution"},
        .source = {.table = Ar, .key = "Cd_AR", .order = "Cd_AR"},
        .code = {"Cd_AR", Article()},
        .description = "Descrizione",
        .lines = {{"CDEXT", "Cd_AR", Text()},
                  {"IDEST", "Id_AR", Text()},
                  {"DTINS", "TimeIns", NotBlank(AsRead())},
                  {"ARANN", "Obsoleto", Flag()},
                  {"ARDE2", "DescrizioneBreve", First(100)},
                  {"ARNOT", "Note_AR", Text()},
                  {"AROBS", "Cd_ARStato", Text()},
                  {"ARCLA", "DBFantasma, DBKit", HeadsBill()},
                  {"ARTIP", "Cd_ARClasse1", Translated(Ar, "Cd_ARClasse1")},
                  {"ARFAM", "Cd_ARGruppo1", Translated(Ar, "Cd_ARGruppo1")},
                  {"ARUMS", "Cd_ARMisura", TranslatedOrUpper(Ar, "Cd_ARMisura", schema::defaults::Unit)},
                  {"ARIVA", "Cd_Aliquota_V", VatCode(Ar, "Cd_Aliquota_V")},
                  {"ARCAC", "Cd_CGConto_VI", Text()},
                  {"ARMAG", "Fittizio", WithDefault(Not(Flag()))},
                  {"ARSMN", "ScortaMinima", RoundedTo(6)},
                  {"ARSMX", "ScortaMassima", RoundedTo(6)},
                  {"ARPUR", "MrpPuntoRiordino, ScortaMinima", ReorderPoint()},
                  {"ARQMR", "LottoMinimo", RoundedTo(6)},
                  {"ARLOR", "LottoRiordino", RoundedTo(6)},
                  {"ARGGA", "MrpGiorniRiordino", RoundedTo(0)},
                  // Arca Evolution measures in metres, Quadrix in millimetres.
                  {"ARDMX", "LunghezzaMks", Times(1000)},
                  {"ARDMY", "LarghezzaMks", Times(1000)},
                  {"ARDMZ", "AltezzaMks", Times(1000)},
                  {"ARVOL", "VolumeMks", RoundedTo(6)},
                  {"ARPSN", "PesoNettoMks, PesoNetto", FirstNotZero()},
                  {"ARPSL", "PesoLordoMks, PesoLordo", FirstNotZero()},
                  {"ARCOS", "CostoStandard", RoundedTo(6)},
                  {"ARSCO", "Sconto", Discount(1)},
                  {"ARSC2", "Sconto", Discount(2)},
                  {"ARSC3", "Sconto", Discount(3)}},
        // The first supplier is the preferred one.
        .suppliers = {{.rows = OfArticle(CodiciCf, "FornitorePreferenziale DESC, Cd_CF", "Cd_CF", ofSupplier),
                       .supplier = {"Cd_CF", KnownSupplier()},
                       .ownCode = "CodiceAlternativo",
                       .price = {"Cd_AR", Via(Ar, "Cd_AR", "CostoStandard", Text())}}},
        .aliases = {{.rows = OfArticle(CodiciCf, "Cd_CF", "Cd_CF", ofOther),
                     .code = "CodiceAlternativo",
                     .counterparty = {"Cd_CF", KnownCustomer()}},
                    {.rows = OfArticle(AliasTable, "Riga", "Riga"), .code = "Alias"}},
        .units = {{.rows = OfArticle(Misure, "DefaultMisura DESC, Cd_ARMisura", "Cd_ARMisura"),
                   .unit = {"Cd_ARMisura", TranslatedOrUpper(Ar, "Cd_ARMisura", "")},
                   .factor = {"UMFatt", NotZero()},
                   .places = {"DefaultMisura, TipoARMisura", UnitPlaces()},
                   .areAsked = AreUnitsAsked}},
        .languages = {{.rows = OfArticle(Lingue, "Id_Lingua", "Id_Lingua"),
                       .language = {"Id_Lingua", LanguageCode()},
                       .text = "Descrizione"}},
        .empties = AttachmentEmptying("ART_ICO") + ArticleEmptying(),
        .condition = sourceSettings::ArticleCondition,
        .more =
            [files](ImportRun& run, const SourceRow& row, TargetRow& target) {
                SetPrice(run, row, target);
                SetNote(*files, row, target);
            },
        .after = [files](ImportRun& run, const SourceRow& row,
                         const QString& article) { Attach(run, *files, row, article); },
        .further = {{},
                    {{"LS", {"Cd_LS", "TipoLS"}},
                     {"LSRevisione", {"Id_LSRevisione", "Cd_LS", "DataPubblicazione"}},
                     {"LSArticolo", {"Id_LSRevisione", "Cd_AR", "Prezzo"}}},
                    AttachmentNeeds() + std::vector<TableNeed>{{"ART_ICO", {"ARPRZ", "ARRIC"}}}},
    };
}

// --- Price lists --------------------------------------------------------------------------------------------------

/// A price of zero is none: the discount beside it is on the price of the article.
Rule PriceOrNone() {
    return Needing(2, {"la prima; vuota se è zero e la seconda non è vuota, niente se lo sono entrambe",
                       [](const RuleInput& input) -> RuleValue {
                           const double price = NumberOf(input.row, input.columns.first());
                           if (price != 0) {
                               return RuleValue(price);
                           }
                           return input.row.IsBlank(input.columns.last()) ? std::nullopt : RuleValue(QVariant());
                       }});
}

QString WithoutRevision(const SourceRow& row) {
    return row.IsBlank("Cd_LS") ? QStringLiteral("prezzo di una revisione che LSRevisione non ha") : QString();
}

// --- Locations ----------------------------------------------------------------------------------------------------

/// The locations of the warehouses, for the articles to be put into.
RowOutcome ImportUbicazione(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString warehouse = TranslatedCode(session, "MG", "Cd_MG", row.Text("Cd_MG"), "MAG_AZZ");
    const QString code = warehouse.isEmpty() ? schema::defaults::Warehouse : warehouse;
    const QString location = row.Text("Cd_MGUbicazione");
    if (IdWhere(session, "UBI_MAG", Equals(session, "CDMAG", code) + " AND " + Equals(session, "CDUBI", location)) !=
        0) {
        return run.Skip("ubicazione già presente");
    }
    TargetRow target(run, "UBI_MAG");
    target.Set("CDMAG", code);
    target.Set("CDUBI", location);
    target.Set("UBDES", location);
    target.Insert();
    return RowOutcome::Inserted;
}

ImportPart Ubicazioni() {
    return {.step = "Ubicazioni",
            .source = {.table = "MGUbicazione",
                       .key = "Cd_MGUbicazione",
                       .order = "Cd_MG, Cd_MGUbicazione",
                       .naming = "Cd_MG, Cd_MGUbicazione"},
            .needs = {{}, {}, {{"UBI_MAG", {"CDMAG", "CDUBI", "UBDES"}}}},
            .make = Importing(ImportUbicazione)};
}

} // namespace

Procedure ArticoliProcedure() {
    const auto files = std::make_shared<Files>();
    const Articles articles = Articoli(files);
    ImportPart part = PartOf(articles);
    part.make = [make = part.make, files](ImportRun& run, const QString& singleCode) {
        *files = ReadFolders(run);
        return make(run, singleCode);
    };
    return ProcedureOf(Button::Art, FrameOf(articles), {part, Ubicazioni()});
}

Rule PriceListCode() { return NotBlank(TranslatedOrUpper(Cf, "Cd_LS_1", "")); }

/// A price of each revision of a list, from the day of its publication on.
PriceLists Listini() {
    const Rule direction = Choice({{"0", "V"}, {"1", "V"}, {"2", "A"}}, "");
    return {
        .frame = {.module = Module, .procedure = "ImportListiniArcaEvolution"},
        .source = {.table = "LSArticolo",
                   .key = "Cd_AR",
                   .order = "Cd_LS, Cd_AR, DataPubblicazione",
                   .naming = "Cd_LS, Cd_AR",
                   .joins = {{.table = "LSRevisione",
                              .on = {{"Id_LSRevisione"}},
                              .columns = {"Cd_LS", "DataPubblicazione"}}}},
        .article = {"Cd_AR", Article()},
        .prices = {{.list = {"Cd_LS", PriceListCode()},
                    .direction = {"Cd_LS", Via("LS", "Cd_LS", "TipoLS", direction)},
                    .from = "DataPubblicazione",
                    .scales = {{.price = {"Prezzo, Sconto", PriceOrNone()}, .discounts = DiscountFields("Sconto")}}}},
        .leavesOut = WithoutRevision,
    };
}

} // namespace modImport_ArcaEvolution
