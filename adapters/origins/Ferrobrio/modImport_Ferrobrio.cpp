// Ferrobrio, the store of one customer: a SQL Server database, FERROBRIO unless the setting Databasename names another.
// Materials with the new codes of the sheet articles, stock.
// Tables and columns are this system's own reading; they stand in this file alone.

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/Mapping.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "adapters/contract/run/Origin.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/ArticleRecoding.h"
#include "adapters/contract/write/BaseTable.h"
#include "adapters/contract/write/missingCodes.h"
#include "adapters/contract/write/SheetFormat.h"
#include "adapters/contract/write/Stock.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/qdxProduction_sheets.h"
#include "core/schemaDefaults.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"

#include <cmath>

using namespace contract;
using namespace contract::rules;

namespace modImport_Ferrobrio {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Ferrobrio");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString MaterialiTable = QStringLiteral("Materiali");
const QString Lamiere = QStringLiteral("Lamiere");
const QString Giacenze = QStringLiteral("Giacenze");

// --- Mappings -----------------------------------------------------------------------------------------------------

const Mapping& Materiali() {
    static const Mapping mapping{
        "TAB_MAT",
        MaterialiTable,
        {
            {"CDMAT", "CodMateriale", Code()},
            {"MADES", "Descrizione", First(100)},
            {"MAEXT", "CodMateriale", Text()},
        },
    };
    return mapping;
}

/// The search text of an article whose description is its code.
Rule CodeTwice() {
    return {"codice, \" - \" e codice",
            [](const RuleInput& input) { return RuleValue(SearchText(input.facts.code, input.facts.code)); }};
}

/// A sheet article that is new: what its code, material and measures leave open.
const Mapping& Articoli() {
    static const Mapping mapping{
        "ART_ICO",
        Lamiere,
        {
            {"CDEXT", "CodLamiera", Text()},
            {"ARDES", "CodLamiera", Code()},
            {"ARCDR", "CodLamiera", CodeTwice()},
            {"ARCLA", "", Constant("LM")},
            {"ARTPG", "", Constant(schema::defaults::ArticleKind)},
            {"ARUMS", "", Constant(schema::defaults::Unit)},
            {"ARIVA", "", Constant(schema::defaults::VatCode)},
            {"ARMAG", "", Constant(true)},
            {"ARMAD", "", Constant(schema::defaults::Warehouse)},
        },
    };
    return mapping;
}

// --- Materials ----------------------------------------------------------------------------------------------------

QString CutMaterial(const QString& material) {
    return FirstOf(material, schema::FindTable("TAB_MAT")->FindColumn("CDMAT")->size);
}

/// CDMAT of a material of the source: translated, else its code cut to the key.
QString MaterialOf(Session& session, const QString& material) {
    const QString known = modImport::GetNewCode(session, "TAB_MAT", "CDMAT", material, true);
    return known.isEmpty() ? CutMaterial(material) : known;
}

RowOutcome ImportMateriale(ImportRun& run, const SourceRow& row) {
    return WriteByCode(run, Materiali(), row, {MaterialOf(run.GetSession(), row.Text("CodMateriale"))});
}

/// A sheet with its material.
struct Sheet {
    QString oldCode;
    QString before; ///< the article that an import has made of it; empty when none has
    QString code;   ///< the new one; empty when neither the source has one nor material and thickness make one
    QString material;
    QString ownMaterial; ///< as the source calls it
    QString family;
    double density = 0; ///< kg/dm3
    qdxProduction::SheetSize size = {};
};

Sheet SheetOf(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    Sheet sheet;
    sheet.oldCode = row.Text("CodLamiera");
    sheet.before = modImport::GetNewCode(session, "ART_ICO", "CDART", sheet.oldCode, false);
    sheet.ownMaterial = row.Text("CodMateriale");
    sheet.material = MaterialOf(session, sheet.ownMaterial);
    sheet.size = {NumberOf(row, "Lunghezza"), NumberOf(row, "Larghezza"), NumberOf(row, "Spessore")};
    sheet.family = row.Text("Famiglia");
    sheet.density = NumberOf(row, "PesoSpecifico");
    const QString own = row.Text("CodErp");
    if (!own.isEmpty()) {
        sheet.code = modImport::FormatKeyField(session, own);
    } else if (!sheet.material.isEmpty() && sheet.size.thickness != 0) {
        sheet.code = qdxProduction::qdxAnaGetCodeArtSheet(sheet.material, sheet.size.thickness);
    }
    return sheet;
}

/// An article of the old code beside that of the new one: what hangs on the two cannot be told to be one.
void TellOldArticle(ImportRun& run, const QString& old, const QString& code) {
    run.Log(QStringLiteral("LAMIERA NON RICODIFICATA: %1: '%2' sarebbe '%3', che c'è già: resta, con ciò che lo usa")
                .arg(run.RowKey(), old, code));
}

/// What only sheets have of the columns of an article.
void SetSheet(Session& session, const Sheet& sheet, TargetRow& article) {
    article.Set("ARMAT", sheet.material);
    article.Set("ARDMZ", sheet.size.thickness);
    article.Set("ARLAM", true);
    const QString family = modImport::GetNewCode(session, MaterialiTable, "Famiglia", sheet.family, true);
    if (!family.isEmpty()) {
        article.Set("ARFAM", family);
    }
}

/// The article that an import has made of the sheet gets the codes that it lacks. It keeps its own: a material that has
/// been translated since would make another one.
RowOutcome FillArticle(ImportRun& run, const Sheet& sheet) {
    Session& session = run.GetSession();
    const MissingCodes missing(run, "ART_ICO", {sheet.before.isEmpty() ? sheet.code : sheet.before});
    if (!missing.IsThere()) {
        return SkipGone(run);
    }
    TargetRow given(run, "ART_ICO");
    SetSheet(session, sheet, given);
    TargetRow target(run, "ART_ICO");
    missing.Take(given, {}, target, {{"ARMAT", {CutMaterial(sheet.ownMaterial)}}});
    return missing.Write(target);
}

/// Whether a material of Quadrix is that of the source: translated, not translated yet, or translated otherwise before.
bool IsMaterialOf(Session& session, const QString& material, const Sheet& sheet) {
    return IsSameCode(material, sheet.material) || IsSameCode(material, CutMaterial(sheet.ownMaterial)) ||
           (!sheet.ownMaterial.isEmpty() &&
            IdWhere(session, "TAB_MAT",
                    Equals(session, "CDMAT", material) + " AND " + Equals(session, "MAEXT", sheet.ownMaterial)) != 0);
}

/// Whether there is an article of the material and the thickness of a sheet.
bool IsThereForSheet(ImportRun& run, const QString& article, const Sheet& sheet) {
    static constexpr double sameThickness = 0.001; // mm; columns keep more or fewer digits
    Session& session = run.GetSession();
    Recordset found = session.Quadrix.ExecuteWC("SELECT ARMAT, ARDMZ FROM " + run.FullName("ART_ICO") + " WHERE " +
                                                Equals(session, "CDART", article));
    if (found.Eof()) {
        return false;
    }
    const SourceRow row(found);
    const QString material = row.Text("ARMAT");
    const double thickness = mod_ovTools::ToDouble(row.Value("ARDMZ"));
    found.Close();
    return std::abs(thickness - sheet.size.thickness) < sameThickness && IsMaterialOf(session, material, sheet);
}

/// The sheet with the code that an import has given its article before, where another follows from the translation of
/// its material or from its own code now: what hangs on the article, and its stock, would come twice. A sheet of
/// another material or thickness is another article: other sheets may share that of before.
Sheet WithCodeOfBefore(ImportRun& run, Sheet sheet) {
    const auto was = [&sheet](const QString& code) { return sheet.before.compare(code, Qt::CaseInsensitive) == 0; };
    if (sheet.before.isEmpty() || was(sheet.code) || was(sheet.oldCode) || !IsThereForSheet(run, sheet.before, sheet)) {
        return sheet;
    }
    run.Log(QStringLiteral("LAMIERA NON RICODIFICATA: %1: '%2' è già l'articolo '%3', e non diventa '%4'")
                .arg(run.RowKey(), sheet.oldCode, sheet.before, sheet.code));
    sheet.code = sheet.before;
    return sheet;
}

/// The article of the sheet under its new code: the old one recoded, unless the new one is there already.
RowOutcome WriteArticle(ImportRun& run, const SourceRow& row, const Sheet& sheet) {
    Session& session = run.GetSession();
    const QString old = modImport::FormatKeyField(session, sheet.oldCode);
    const bool there = IsThere(session, "ART_ICO", "CDART", sheet.code);
    const bool hasOld = old.compare(sheet.code, Qt::CaseInsensitive) != 0 && IsThere(session, "ART_ICO", "CDART", old);
    const bool recoded = !there && hasOld;
    if (there && hasOld) {
        TellOldArticle(run, old, sheet.code);
    }
    if (recoded) {
        RecodeArticle(run, old, sheet.code);
    }
    const auto setSheet = [&](TargetRow& target) { SetSheet(session, sheet, target); };
    if (!there && !recoded) {
        return ArticleWriter(run).Write(Articoli(), row, {sheet.code}, setSheet);
    }
    TargetRow target(run, "ART_ICO");
    SetSheet(session, sheet, target);
    target.Update("WHERE " + Equals(session, "CDART", sheet.code));
    return RowOutcome::Updated;
}

/// Takes the code of the source off the formats that it has had with other measures, or of the article that it was
/// before: stock would still find them.
void LeaveFormats(ImportRun& run, const SheetFormat& format, const QString& before) {
    struct Format {
        qint64 id;
        QString name; ///< for the log
    };
    Session& session = run.GetSession();
    std::vector<Format> others;
    Recordset rows = session.Quadrix.ExecuteWC(
        "SELECT RECORD_ID, CDART, CDFMT FROM " + run.FullName("ART_FMT") + " WHERE (" +
        Equals(session, "CDART", format.article) + " OR " + Equals(session, "CDART", before) + ") AND " +
        Equals(session, "LMEXT", format.external) + " AND " + OfImports(session) + " ORDER BY RECORD_ID");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const QString article = row.Text("CDART");
        const QString code = row.Text("CDFMT");
        if (!IsSameCode(article, format.article) || !IsSameCode(code, format.code)) {
            others.push_back({row.Value("RECORD_ID").toLongLong(), QStringLiteral("'%1' di '%2'").arg(code, article)});
        }
    }
    rows.Close();
    for (const auto& [id, name] : others) {
        TargetRow other(run, "ART_FMT");
        other.Set("LMEXT", QVariant());
        other.Update("WHERE " + Equals("RECORD_ID", id));
        run.Log(QStringLiteral("FORMATO LASCIATO: %1: '%2' era il formato %3, ora è '%4' di '%5'")
                    .arg(run.RowKey(), format.external, name, format.code, format.article));
    }
}

/// Two sheets of the same measures are two formats.
void WriteFormat(ImportRun& run, const Sheet& sheet) {
    if (sheet.size.length <= 0 || sheet.size.width <= 0) {
        run.Log(QStringLiteral("FORMATO SENZA MISURE: %1").arg(run.RowKey()));
        return;
    }
    SheetFormat format;
    format.article = sheet.code;
    format.code = qdxProduction::qdxCalcolaCodiceFormatoArticolo(sheet.size.length, sheet.size.width);
    format.length = sheet.size.length;
    format.width = sheet.size.width;
    format.density = sheet.density;
    format.old = sheet.oldCode;
    format.external = sheet.oldCode;
    format.code = FreeFormatCode(run, format, [&run](const QString& code) {
        ovConnection& source = run.GetSession().SourceConnection();
        return source.ExecuteCommand("SELECT COUNT(*) FROM Lamiere\rWHERE CodLamiera = " + LiteralOf(source, code)) !=
               0;
    });
    LeaveFormats(run, format, sheet.before);
    WriteSheetFormat(run, format);
}

RowOutcome ImportLamiera(ImportRun& run, const SourceRow& row) {
    Sheet sheet = SheetOf(run, row);
    if (sheet.code.isEmpty()) {
        run.Log(QStringLiteral("LAMIERA NON RICODIFICATA: %1: '%2' non ha materiale o spessore")
                    .arg(run.RowKey(), sheet.oldCode));
        return run.Skip("lamiera senza materiale o spessore");
    }
    if (FillsCodes(run)) {
        return FillArticle(run, sheet);
    }
    sheet = WithCodeOfBefore(run, sheet);
    const RowOutcome outcome = WriteArticle(run, row, sheet);
    WriteFormat(run, sheet);
    ArticleWriter(run).InternalCode(sheet.code, sheet.oldCode);
    StoreNewCode(run, "ART_ICO", "CDART", sheet.oldCode, sheet.code);
    return outcome;
}

const Needs& MaterialiNeeds() {
    static const Needs needs = [] {
        Needs all{{&Materiali(), &Articoli()},
                  {{MaterialiTable, {"CodMateriale", "PesoSpecifico", "Famiglia"}},
                   {Lamiere, {"CodLamiera", "CodMateriale", "Spessore", "Lunghezza", "Larghezza", "CodErp"}}},
                  ArticleNeeds(),
                  {{.list = "TAB_MAT", .field = "CDMAT", .table = "TAB_MAT", .column = "CDMAT"},
                   {.list = MaterialiTable, .field = "Famiglia", .table = "ART_ICO", .column = "ARFAM"}}};
        all.writes = all.writes + SheetFormatNeeds() + RecodingNeeds();
        all.writes.push_back({"ART_ICO", {"ARMAT", "ARDMZ", "ARLAM", "ARFAM"}});
        all.writes.push_back({"ART_COD", {"CDART", "CDCOD", "COTIP"}});
        all.writes.push_back({"SYS_IMP", {"TBNAM", "TBFLD", "TBOLD", "TBNEW"}});
        return all;
    }();
    return needs;
}

/// A single code is that of a sheet. A reset empties the formats alone: the articles keep what hangs on them.
void ImportMaterialiFerrobrio(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportMaterialiFerrobrio", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio sistemazione codifiche lamiera");
        run.Preflight(MaterialiNeeds());
        run.Truncate(reset, {"ART_FMT"});
        if (!run.IsSingle() && !run.Rows({"Materiali", MaterialiTable, "CodMateriale", "SELECT COUNT(*) FROM Materiali",
                                          "SELECT * FROM Materiali\rORDER BY CodMateriale"},
                                         [&](const SourceRow& row) { return ImportMateriale(run, row); })) {
            return;
        }
        const QString from =
            "Lamiere L\rLEFT JOIN Materiali M ON M.CodMateriale = L.CodMateriale" +
            (singleCode.isEmpty() ? QString() : QString("\rWHERE L.CodLamiera = " + run.Quoted(singleCode)));
        run.Rows({"Lamiere", Lamiere, "CodLamiera", "SELECT COUNT(*) FROM " + from,
                  "SELECT L.*, M.PesoSpecifico, M.Famiglia FROM " + from + "\rORDER BY L.CodLamiera"},
                 [&](const SourceRow& row) { return ImportLamiera(run, row); });
        run.Complete("Codifiche lamiera sistemate correttamente!");
    });
}

// --- Stock --------------------------------------------------------------------------------------------------------

/// The format of a sheet with its measures: the one that has its code, else the one of these measures alone; empty when
/// there is neither.
QString FormatOf(ImportRun& run, const StockLine& line, const QString& sheet) {
    Session& session = run.GetSession();
    const QString ofMeasures = qdxProduction::qdxCalcolaCodiceFormatoArticolo(line.length, line.width);
    const QString ofArticle = Equals(session, "CDART", line.article) + " AND ";
    Recordset rows = session.Quadrix.ExecuteWC("SELECT CDFMT FROM " + run.FullName("ART_FMT") + " WHERE " + ofArticle +
                                               Equals(session, "LMEXT", sheet) + " ORDER BY RECORD_ID");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        if (const QString code = row.Text("CDFMT"); code.startsWith(ofMeasures + u'-')) {
            return code;
        }
    }
    return IdWhere(session, "ART_FMT", ofArticle + Equals(session, "CDFMT", ofMeasures)) != 0 ? ofMeasures : QString();
}

RowOutcome ImportGiacenza(ImportRun& run, StockWriter& writer, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString warehouse = TranslatedCode(session, "FERROBRIO", "MAGAZZINO", row.Text("Magazzino"), "MAG_AZZ");
    StockLine line;
    line.warehouse = warehouse.isEmpty() ? schema::defaults::Warehouse : warehouse;
    line.article = ArticleWriter(run).CodeOf("ART_ICO", "CDART", row.Text("Codice"));
    line.quantity = NumberOf(row, "Quantita");
    line.price = row.IsBlank("Costo") ? QVariant() : QVariant(NumberOf(row, "Costo"));
    line.location = row.Text("Ubicazione");
    line.length = NumberOf(row, "Lunghezza");
    line.width = NumberOf(row, "Larghezza");
    line.sheet = line.length != 0;
    if (line.sheet) {
        line.format = FormatOf(run, line, row.Text("Codice"));
    }
    if (mod_ovTools::ToBoolean(row.Value("Sfrido"))) {
        line.offcut = row.Text("Codice");
    }
    return writer.Balance(line);
}

const Needs& SaldiNeeds() {
    static const Needs needs = [] {
        Needs all{{},
                  {{Giacenze, {"Codice", "Magazzino", "Quantita", "Ubicazione", "Sfrido", "Costo"}},
                   {Lamiere, {"CodLamiera", "Lunghezza", "Larghezza"}}},
                  StockNeeds(),
                  {{.list = "FERROBRIO", .field = "MAGAZZINO", .table = "MOV_MAR", .column = "MRMAG"}}};
        all.writes.push_back({"MOV_MAG", {"MMLAM"}});
        all.writes.push_back({"MOV_MAR", {"MRUBI", "MRFMT", "MRSFR", "MRLMX", "MRLMY"}});
        all.writes.push_back({"ART_FMT", {"CDART", "CDFMT", "LMEXT"}});
        return all;
    }();
    return needs;
}

/// What the log holds stays.
void ImportSaldiFerrobrio(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportSaldiFerrobrio", singleCode);
    run.Guard([&] {
        run.AnnounceAppending("Inizio importazione saldi di magazzino");
        run.Preflight(SaldiNeeds());
        Empty(run, reset, StockEmptying());
        StockWriter writer(run);
        writer.WritesAll();
        const QString from = "Giacenze G\rLEFT JOIN Lamiere L ON L.CodLamiera = G.Codice\rWHERE G.Quantita <> 0" +
                             (singleCode.isEmpty() ? QString() : QString(" AND G.Codice = " + run.Quoted(singleCode)));
        const bool toTheEnd =
            run.Rows({"Saldi di magazzino", Giacenze, "Magazzino, Codice", "SELECT COUNT(*) FROM " + from,
                      "SELECT G.*, L.Lunghezza, L.Larghezza FROM " + from + "\rORDER BY G.Magazzino, G.Codice"},
                     [&](const SourceRow& row) { return ImportGiacenza(run, writer, row); });
        if (toTheEnd) {
            writer.TellRowsLeft();
        }
        run.Complete("Saldi di magazzino Ferrobrio importati correttamente!");
    });
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Ferrobrio",
        Module,
        {"SQL Server", sourceSettings::Server("FERROBRIO")},
        Buttons("NNNNNYN-", {{Button::Saldi, "Sistema Codifiche Lamiera"}}),
        Shown::Keep,
        {
            {Button::Saldi,
             "ImportMaterialiFerrobrio",
             ImportMaterialiFerrobrio,
             MaterialiNeeds(),
             Truncated({"ART_FMT"}),
             {},
             "Sistemare le codifiche delle lamiere?"},
            {std::nullopt, "ImportSaldiFerrobrio", ImportSaldiFerrobrio, SaldiNeeds(), StockEmptying()},
        },
    };
    return origin;
}

} // namespace modImport_Ferrobrio
