// The recoding of Borgo's sheets: each gets the code that Quadrix makes from its material and thickness, in its own row
// and wherever it is referred to. SYS_IMP keeps what became of the old code, so that later imports find the sheet.

#include "adapters/contract/kinds/ImportTable.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/SheetFormat.h"
#include "adapters/origins/Borgo/modImport_Borgo.h"
#include "core/modImport.h"
#include "core/qdxProduction_sheets.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Borgo {

namespace {

struct Reference {
    QString table;  ///< bare name
    QString column; ///< that holds codes of articles
    QString where;  ///< condition on its rows; empty for all
};

/// What holds codes of articles, the articles themselves first.
const QVector<Reference>& References() {
    static const QVector<Reference> references = [] {
        QVector<Reference> found{{CodesOf, CodeField, {}}};
        for (const schema::Table& table : schema::Tables()) {
            for (const schema::Column& column : table.columns) {
                const bool isCode = column.refersToColumn.isEmpty() ||
                                    column.refersToColumn.compare(CodeField, Qt::CaseInsensitive) == 0;
                if (column.refersTo == CodesOf && isCode && column.conditionColumn.isEmpty()) {
                    found.append({table.name, column.name, {}});
                }
            }
        }
        found.append({"SYS_ATT", "ATKEY", "ATTBL IN ('ART_ICO', 'DIS_BAS')"});
        found.append({"IMA_GES", "TBKEY", "TBNAM = 'ART_ICO'"});
        found.append({"FLD_VAL", "FLKEY", "FLTAB = 'ART_ICO'"});
        return found;
    }();
    return references;
}

Needs RecodingNeeds() {
    Needs needs{{},
                {{Articoli, {"CodArt", "Lamiera"}}},
                {{CodesOf, {"ARMAT", "ARDMZ", "ARDES", "ARCDR"}}, {"SYS_LNG", {"LNTBL", "LNKEY"}}}};
    for (const Reference& one : References()) {
        needs.writes.push_back({one.table, {one.column}});
    }
    return needs;
}

/// The texts of the article in other languages hang on the physical name of its table.
void MoveTexts(ImportRun& run, const QString& from, const QString& to) {
    TargetRow row(run, "SYS_LNG");
    row.Set("LNKEY", to);
    row.Update("WHERE LNTBL = " + run.Quoted(run.FullName(CodesOf)) + " AND LNKEY = " + run.Quoted(from));
}

/// @param searchText of the article under its new code
void MoveReferences(ImportRun& run, const QString& from, const QString& to, const QString& searchText) {
    for (const Reference& one : References()) {
        const QString where = Equals(run.GetSession(), one.column, from) +
                              (one.where.isEmpty() ? QString() : QString(" AND " + one.where));
        if (IdWhere(run.GetSession(), one.table, where) != 0) {
            TargetRow row(run, one.table);
            row.Set(one.column, to);
            if (one.table == CodesOf && one.column == CodeField) {
                row.Set("ARCDR", searchText);
            }
            row.Update("WHERE " + where);
        }
    }
    MoveTexts(run, from, to);
}

/// A sheet as Quadrix has it.
struct Sheet {
    QString article; ///< its CDART; empty when there is none
    QString material;
    double thickness = 0; ///< mm
    QString description = {};
};

Sheet FindSheet(Session& session, const QString& article) {
    const Recordset found = session.Quadrix.ExecuteWC("SELECT CDART, ARMAT, ARDMZ, ARDES FROM " +
                                                      session.Quadrix.GetFullTableName(CodesOf) + " WHERE " +
                                                      Equals(session, CodeField, article));
    if (found.Eof()) {
        return {};
    }
    const SourceRow row(found);
    return {row.Text("CDART"), row.Text("ARMAT"), mod_ovTools::ToDouble(row.Value("ARDMZ")), row.Text("ARDES")};
}

/// A sheet of the source, by the code that it has been given, or by its own where no article has that one.
Sheet SheetOf(Session& session, const QString& source) {
    const Sheet given = FindSheet(session, ArticleCodeOf(session, CodesOf, CodeField, source));
    return given.article.isEmpty() ? FindSheet(session, modImport::FormatKeyField(session, source)) : given;
}

RowOutcome Recode(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString source = Field("CodArt").RequiredText(session, row);
    const auto [article, material, thickness, description] = SheetOf(session, source);
    if (article.isEmpty()) {
        run.Log(QStringLiteral("ARTICOLO NON TROVATO: %1: '%2'").arg(run.RowKey(), source));
        return run.Skip(ArticleMissing);
    }
    if (material.isEmpty() || thickness == 0) {
        run.Log(QStringLiteral("LAMIERA NON RICODIFICATA: %1: '%2' non ha materiale o spessore")
                    .arg(run.RowKey(), article));
        return run.Skip("lamiera senza materiale o spessore");
    }
    const QString code = qdxProduction::qdxAnaGetCodeArtSheet(material, thickness);
    if (code.compare(article, Qt::CaseInsensitive) == 0) {
        return run.Skip("lamiera già ricodificata");
    }
    if (!FindSheet(session, code).article.isEmpty()) {
        run.Log(QStringLiteral("LAMIERA NON RICODIFICATA: %1: '%2' sarebbe '%3', che c'è già")
                    .arg(run.RowKey(), article, code));
        return run.Skip("codice di un altro articolo");
    }
    MoveReferences(run, article, code, SearchText(code, description));
    StoreNewCode(run, CodesOf, CodeField, article, code);
    if (source.compare(article, Qt::CaseInsensitive) != 0) {
        StoreNewCode(run, CodesOf, CodeField, source, code);
    }
    return RowOutcome::Updated;
}

} // namespace

Procedure RicodificaArticoliLamieraBorgo() {
    return ProcedureOf(Button::Piano,
                       Frame{.module = Module,
                             .procedure = "RicodificaArticoliLamieraBorgo",
                             .announcement = "Inizio ricodifica Articoli Lamiera",
                             .completion = "Articoli Lamiera ricodificati correttamente!",
                             .confirmation = "Ricodificare gli Articoli Lamiera?",
                             .asksReset = false},
                       {{.step = "Articoli Lamiera",
                         .source = {.table = Articoli, .key = "CodArt", .order = "CodArt", .where = "Lamiera = 1"},
                         .needs = RecodingNeeds(),
                         .make = Importing(Recode)}});
}

} // namespace modImport_Borgo
