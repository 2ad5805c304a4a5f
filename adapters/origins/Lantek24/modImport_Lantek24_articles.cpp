// Articles of Lantek 24: the products, parts, assemblies and sheets; a sheet is a format of its own article.

#include "adapters/origins/Lantek24/modImport_Lantek24.h"

#include "adapters/contract/map/wholeCharacters.h"
#include "adapters/contract/run/tiedRows.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Attachment.h"
#include "adapters/contract/write/FreeAttribute.h"
#include "adapters/contract/write/SheetFormat.h"
#include "core/modImport.h"
#include "core/qdxProduction_sheets.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Lantek24 {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Materials = QStringLiteral("DIS_MMTT_MMTT_00000100");
using contract::cam::ProductCodes;

/// Data of the user, which become free attributes.
const QStringList& UserColumns() {
    static const QStringList columns = [] {
        QStringList made;
        constexpr int last = 8;
        for (int i = 1; i <= last; ++i) {
            made.append(QStringLiteral("DIS_UData%1_Prt").arg(i));
        }
        return made;
    }();
    return columns;
}

// --- Mappings -----------------------------------------------------------------------------------------------------

/// A sheet is a sheet; what has no class in the CAM is bought; of the rest assemblies are products.
Rule ArticleClass() {
    Rule rule{"\"LM\" per la classe 51; \"CM\" senza classe; altrimenti \"PF\" per un assieme, \"SL\" per una parte",
              [](const RuleInput& input) -> RuleValue {
                  const QString code = input.row.Text("DIS_PClass");
                  if (code == SheetClass) {
                      return "LM";
                  }
                  if (code.isEmpty() || code == "0") {
                      return "CM";
                  }
                  return mod_ovTools::ToBoolean(input.row.Value("Assembly")) ? "PF" : "SL";
              }};
    return WithDefault(Needing(2, std::move(rule)));
}

/// The family is that of the product's group, else of its cost group.
Rule FamilyOfArticle() {
    return {"la prima non vuota: un gruppo tradotto con SYS_IMP (PPRR_PPRR, PGroup), un gruppo di costo con SYS_IMP "
            "(PPRR_PPRR, CGroup)",
            [](const RuleInput& input) -> RuleValue {
                for (const QString& column : input.columns) {
                    if (!input.row.IsBlank(column)) {
                        const QString code =
                            modImport::GetNewCode(input.session, ProductCodes, column, input.row.Text(column), true);
                        return code.isEmpty() ? RuleValue() : RuleValue(code);
                    }
                }
                return std::nullopt;
            }};
}

// --- Articles -----------------------------------------------------------------------------------------------------

double DensityOf(ImportRun& run, const SourceRow& product) {
    ovConnection& source = run.GetSession().SourceConnection();
    const Recordset found = source.ExecuteWC("SELECT Density FROM " + Materials + "\rWHERE " +
                                             TiedTo(source, "MatRef", product, "DIS_MatRef"));
    return found.Eof() ? 0 : NumberOf(SourceRow(found), "Density");
}

/// A sheet has its own format, which weighs what the source says, else what its measures do.
void WriteFormat(ImportRun& run, const SourceRow& row, const QString& article) {
    const double length = NumberOf(row, "DIS_Length");
    const double width = NumberOf(row, "DIS_Width");
    WriteSheetFormat(run, {article, qdxProduction::qdxCalcolaCodiceFormatoArticolo(length, width), length, width,
                           NumberOf(row, "Weight"), DensityOf(run, row), FirstOf(row.Text("PrdName"), 100), QString(),
                           row.Text("PrdRef")});
}

void WriteFurther(ImportRun& run, const SourceRow& row, const QString& article) {
    if (row.Text("DIS_PClass") == SheetClass) {
        WriteFormat(run, row, article);
    }
    const QString folder = CamProductsFolder(run.GetSession());
    if (!folder.isEmpty() && !row.IsBlank("Image")) {
        StoreImage(run, {"ART_ICO", article, PathIn(folder, row.Text("Image")), folder});
    }
}

void WriteAttributes(ImportRun& /*run*/, FreeAttributeWriter& writer, const SourceRow& row, const QString& article) {
    for (const QString& column : UserColumns()) {
        writer.Write({"ART_ICO", article, column, row.Text(column)});
    }
}

} // namespace

Rule UnitOfName() {
    return {"tradotto con SYS_IMP (PPRR_PPRR, UntName); \"NR\" per vuoto e \"unt\"; altrimenti maiuscolo",
            [](const RuleInput& input) { return RuleValue(cam::UnitOf(input.session, input.Text())); }};
}

/// A reset empties the formats of the articles too.
Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliLantek24"},
        .source = {.table = Products, .key = "PrdRef", .order = "PrdRef", .where = "IsActive = 1"},
        .code = {"PrdRef", ArticleCode(ProductCodes, "PrdRef")},
        .description = "PrdName",
        .lines = {{"CDEXT", "PrdRef", Text()},
                  {"ARINV", "CDate", DayThere()},
                  {"ARNOT", "Descrip", Text()},
                  {"ARCLA", "DIS_PClass, Assembly", ArticleClass()},
                  {"ARFAM", "PGroup, CGroup", FamilyOfArticle()},
                  {"ARMAT", "DIS_MatRef", LookedUp("TAB_MAT", "MAEXT", "CDMAT")},
                  {"ARLAM", "DIS_PClass", Is(SheetClass)},
                  {"ARANN", "", Constant(false)},
                  {"ARUMS", "UntName", UnitOfName()},
                  {"ARIVA", "", Constant(schema::defaults::VatCode)},
                  {"ARGGA", "LeadTime", RoundedTo(0)},
                  {"ARDMX", "DIS_Length", RoundedTo(6)},
                  {"ARDMY", "DIS_Width", RoundedTo(6)},
                  {"ARDMZ", "DIS_Thickness", RoundedTo(6)},
                  {"ARPSN", "Weight", RoundedTo(6)},
                  {"ARPSL", "DIS_ExtWeight", RoundedTo(6)},
                  {"ARCOS", "CurCost, StdCost", FirstNotZero()},
                  {"ARPRZ", "DIS_Price", RoundedTo(6)},
                  {"ARRIC", "DIS_Price, CurCost, StdCost", MarkUp()}},
        .empties = ArticleEmptying() + Truncated({"ART_FMT"}) + FreeAttributeEmptying("ART_ICO"),
        .after = WriteFurther,
        .attributes = WriteAttributes,
        .further = {{},
                    {{Products, QStringList{"Image"} + UserColumns()}, {Materials, {"MatRef", "Density"}}},
                    SheetFormatNeeds() + FreeAttributeNeeds() + ImageNeeds()},
    };
}

} // namespace modImport_Lantek24
