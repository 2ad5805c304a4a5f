// The recoding of Borgo's sheets: each gets the code that Quadrix makes from its material and thickness, in its own row
// and wherever it is referred to. SYS_IMP keeps what became of the old code, so that later imports find the sheet.

#include "adapters/contract/kinds/ImportTable.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/ArticleRecoding.h"
#include "adapters/contract/write/SheetFormat.h"
#include "adapters/origins/Borgo/modImport_Borgo.h"
#include "core/modImport.h"
#include "core/qdxProduction_sheets.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Borgo {

namespace {

Needs NeedsOfRecoding() {
    Needs needs{{}, {{Articoli, {"CodArt", "Lamiera"}}}, RecodingNeeds()};
    needs.writes.push_back({CodesOf, {"ARMAT", "ARDMZ"}});
    return needs;
}

/// A sheet as Quadrix has it.
struct Sheet {
    QString article; ///< its CDART; empty when there is none
    QString material;
    double thickness = 0; ///< mm
};

Sheet FindSheet(Session& session, const QString& article) {
    const Recordset found =
        session.Quadrix.ExecuteWC("SELECT CDART, ARMAT, ARDMZ FROM " + session.Quadrix.GetFullTableName(CodesOf) +
                                  " WHERE " + Equals(session, CodeField, article));
    if (found.Eof()) {
        return {};
    }
    const SourceRow row(found);
    return {row.Text("CDART"), row.Text("ARMAT"), mod_ovTools::ToDouble(row.Value("ARDMZ"))};
}

/// A sheet of the source, by the code that it has been given, or by its own where no article has that one.
Sheet SheetOf(Session& session, const QString& source) {
    const Sheet given = FindSheet(session, ArticleCodeOf(session, CodesOf, CodeField, source));
    return given.article.isEmpty() ? FindSheet(session, modImport::FormatKeyField(session, source)) : given;
}

RowOutcome Recode(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString source = Field("CodArt").RequiredText(session, row);
    const auto [article, material, thickness] = SheetOf(session, source);
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
    RecodeArticle(run, article, code);
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
                         .needs = NeedsOfRecoding(),
                         .make = Importing(Recode)}});
}

} // namespace modImport_Borgo
