// Articles of Lantek 24: the products, parts, assemblies and sheets; a sheet is a format of its own article.

#include "adapters/origins/Lantek24/modImport_Lantek24.h"

#include "adapters/contract/map/wholeCharacters.h"
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
    return {"\"LM\" for class 51; \"CM\" without a class; else \"PF\" for an assembly, \"SL\" for a part",
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
}

Rule Unit() {
    return {"translated through SYS_IMP (PPRR_PPRR, UntName); \"NR\" for blank and \"unt\"; else in upper case",
            [](const RuleInput& input) { return RuleValue(UnitOf(input.session, input.Text())); }};
}

/// The family is that of the product's group, else of its cost group.
Rule FamilyOfArticle() {
    return {"the first that is not blank, translated through SYS_IMP (PPRR_PPRR and its column)",
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

Rule DayOrNone() {
    return {"as read; left out when blank or 1 January 1900", [](const RuleInput& input) -> RuleValue {
                const QVariant day = DayOf(input.row, input.columns.first());
                return day.isNull() ? RuleValue() : RuleValue(day);
            }};
}

const Mapping& Articoli() {
    static const Mapping mapping{
        "ART_ICO",
        Products,
        {
            {"CDEXT", "PrdRef", Text()},
            {"ARINV", "CDate", DayOrNone()},
            {"ARDES", "PrdName", First(100)},
            {"ARCDR", "PrdName", CodeAndText(100)},
            {"ARNOT", "Descrip", Text()},
            {"ARCLA", "DIS_PClass, Assembly", ArticleClass()},
            {"ARFAM", "PGroup, CGroup", FamilyOfArticle()},
            {"ARMAT", "DIS_MatRef", LookedUp("TAB_MAT", "MAEXT", "CDMAT")},
            {"ARTPG", "", Constant(schema::defaults::ArticleKind)},
            {"ARLAM", "DIS_PClass", Is(SheetClass)},
            {"ARANN", "", Constant(false)},
            {"ARUMS", "UntName", Unit()},
            {"ARIVA", "", Constant(schema::defaults::VatCode)},
            {"ARMAG", "", Constant(true)},
            {"ARMAD", "", Constant(schema::defaults::Warehouse)},
            {"ARGGA", "LeadTime", RoundedTo(0)},
            {"ARDMX", "DIS_Length", RoundedTo(6)},
            {"ARDMY", "DIS_Width", RoundedTo(6)},
            {"ARDMZ", "DIS_Thickness", RoundedTo(6)},
            {"ARPSN", "Weight", RoundedTo(6)},
            {"ARPSL", "DIS_ExtWeight", RoundedTo(6)},
            {"ARCOS", "CurCost, StdCost", FirstNotZero()},
            {"ARPRZ", "DIS_Price", RoundedTo(6)},
            {"ARRIC", "DIS_Price, CurCost, StdCost", MarkUp()},
        },
    };
    return mapping;
}

// --- Articles -----------------------------------------------------------------------------------------------------

double DensityOf(ImportRun& run, const QString& material) {
    const Recordset found = run.GetSession().SourceConnection().ExecuteWC("SELECT Density FROM " + Materials +
                                                                          "\rWHERE MatRef = " + run.Quoted(material));
    return found.Eof() ? 0 : NumberOf(SourceRow(found), "Density");
}

/// A sheet has its own format, which weighs what the source says, else what its measures do.
void WriteFormat(ImportRun& run, const SourceRow& row, const QString& article) {
    const double length = NumberOf(row, "DIS_Length");
    const double width = NumberOf(row, "DIS_Width");
    WriteSheetFormat(run, {article, qdxProduction::qdxCalcolaCodiceFormatoArticolo(length, width), length, width,
                           NumberOf(row, "Weight"), DensityOf(run, row.Text("DIS_MatRef")),
                           FirstOf(row.Text("PrdName"), 100), QString(), row.Text("PrdRef")});
}

RowOutcome ImportArticolo(ImportRun& run, const SourceRow& row, const QString& folder) {
    const ArticleWriter writer(run);
    const Facts facts{ArticleOf(run, row.Text("PrdRef"))};
    const RowOutcome outcome = writer.Write(Articoli(), row, facts);
    writer.Texts(facts.code, row.Text("PrdName"));
    if (row.Text("DIS_PClass") == SheetClass) {
        WriteFormat(run, row, facts.code);
    }
    if (!folder.isEmpty() && !row.IsBlank("Image")) {
        StoreImage(run, {"ART_ICO", facts.code, PathIn(folder, row.Text("Image")), folder});
    }
    for (const QString& column : UserColumns()) {
        WriteFreeAttribute(run, {"ART_ICO", facts.code, column, row.Text(column)});
    }
    return outcome;
}

} // namespace

QString UnitOf(Session& session, const QString& name) {
    const QString known = modImport::GetNewCode(session, ProductCodes, "UntName", name, true);
    if (!known.isEmpty()) {
        return known;
    }
    const bool piece = name.isEmpty() || name.compare(u"unt", Qt::CaseInsensitive) == 0;
    return piece ? schema::defaults::Unit : name.toUpper();
}

const Needs& ArticoliNeeds() {
    static const Needs needs = [] {
        Needs all{{&Articoli()},
                  {{Products, QStringList{"IsActive", "Image", "DIS_PClass"} + UserColumns()},
                   {Materials, {"MatRef", "Density"}}},
                  ArticleNeeds()};
        for (const auto& more : {SheetFormatNeeds(), FreeAttributeNeeds(), ImageNeeds()}) {
            all.writes.insert(all.writes.end(), more.begin(), more.end());
        }
        return all;
    }();
    return needs;
}

/// With the formats of the articles that are emptied.
Emptying ArticoliEmptying() { return ArticleEmptying() + Truncated({"ART_FMT"}) + FreeAttributeEmptying("ART_ICO"); }

void ImportArticoliLantek24(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportArticoliLantek24", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione articoli");
        run.Preflight(ArticoliNeeds());
        Empty(run, reset, ArticoliEmptying());
        const QString folder = CamProductsFolder(session);
        const QString from = Products + "\rWHERE IsActive = " + LiteralOf(session.SourceConnection(), true) +
                             run.OnlyCode("\rAND", "PrdRef", singleCode);
        run.Rows({"Articoli", Products, "PrdRef", "SELECT COUNT(*) FROM " + from,
                  "SELECT * FROM " + from + "\rORDER BY PrdRef"},
                 [&](const SourceRow& row) { return ImportArticolo(run, row, folder); });
        run.Complete("Articoli importati correttamente!");
    });
}

} // namespace modImport_Lantek24
