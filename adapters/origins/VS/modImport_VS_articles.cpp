// Articles of Visual Space with their supplier, and their drawings.

#include "adapters/origins/VS/modImport_VS.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Attachment.h"
#include "core/modMain.h"
#include "core/schemaDefaults.h"

#include <QDir>
#include <QFileInfo>

using namespace contract;
using namespace contract::rules;

namespace modImport_VS {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Disegni = QStringLiteral("DISEGNI");

// --- Mappings -----------------------------------------------------------------------------------------------------

const Mapping& Articolo() {
    static const Mapping mapping{
        "ART_ICO",
        Articoli,
        {
            {"CDEXT", "COD_ARTICOLO", First(50)},
            {"ARDES", "DESCRIZIONE", First(100)},
            {"ARDE2", "DESCRIZIONE_2", First(100)},
            {"ARCDR", "DESCRIZIONE", CodeAndText(100)},
            {"ARCLA", "COD_CLASSE", Or(Translated(Articoli, "COD_CLASSE"), "CM")},
            {"ARFAM", "COD_FAMIGLIA", Translated(Articoli, "COD_FAMIGLIA")},
            {"ARMAT", "MATERIALE", TranslatedOrKnown(Articoli, "MATERIALE", "TAB_MAT")},
            {"ARTPG", "", Constant(schema::defaults::ArticleKind)},
            {"ARLAM", "", Constant(false)},
            {"ARREV", "REVISIONE", Text()},
            {"ARDIS", "NUM_DISEGNO", NotBlank(Text())},
            {"ARANN", "ANNULLATO", Flag()},
            {"ARUMS", "UM", TranslatedOrUpper(Articoli, "UM", schema::defaults::Unit)},
            {"ARUM2", "UM_2", TranslatedOrUpper(Articoli, "UM", "")},
            {"ARCOE", "COEFFICIENTE", RoundedTo(6)},
            {"ARIVA", "COD_IVA", VatCode(Articoli, "COD_IVA")},
            {"ARMAG", "", Constant(true)},
            {"ARMAD", "", Constant(schema::defaults::Warehouse)},
            {"ARSMN", "SCORTA_MINIMA", RoundedTo(6)},
            {"ARLOR", "LOTTO_RIORDINO", RoundedTo(6)},
            {"ARGGA", "GIORNI_RIORDINO", RoundedTo(0)},
            {"ARPSN", "PESO", RoundedTo(3)},
            {"ARCOS", "COSTO_ULTIMO, COSTO_STANDARD", FirstNotZero()},
            {"ARPRZ", "PREZZO_VENDITA", RoundedTo(6)},
            {"ARRIC", "PREZZO_VENDITA, COSTO_ULTIMO, COSTO_STANDARD", MarkUp()},
        },
    };
    return mapping;
}

} // namespace

QString ArticleOf(ImportRun& run, const QString& sourceCode) {
    return ArticleWriter(run).CodeOf(Articoli, "COD_ARTICOLO", sourceCode);
}

// --- Articles -----------------------------------------------------------------------------------------------------

namespace {

void LinkSupplier(ImportRun& run, const ArticleWriter& writer, const SourceRow& row, const QString& article) {
    const QString code = row.Text("COD_FORNITORE");
    if (code.isEmpty()) {
        return;
    }
    const QString supplier = GetNewControparteFromVisual(run, code, false);
    if (supplier.isEmpty()) {
        run.Log(QStringLiteral("FORNITORE NON TROVATO: %1: '%2'").arg(run.RowKey(), code));
        return;
    }
    const double lastCost = NumberOf(row, "COSTO_ULTIMO");
    writer.Link(article, supplier, lastCost != 0 ? lastCost : NumberOf(row, "COSTO_STANDARD"));
    if (const QString own = row.Text("COD_ART_FORNITORE"); !own.isEmpty()) {
        writer.CodeAtCounterparty(article, own, supplier);
    }
}

RowOutcome ImportArticolo(ImportRun& run, const SourceRow& row) {
    const ArticleWriter writer(run);
    const Facts facts{ArticleOf(run, row.Text("COD_ARTICOLO"))};
    const RowOutcome outcome = writer.Write(Articolo(), row, facts);
    writer.Texts(facts.code, row.Text("DESCRIZIONE"));
    LinkSupplier(run, writer, row, facts.code);
    return outcome;
}

} // namespace

const Needs& ArticoliNeeds() {
    static const Needs needs = [] {
        Needs all{{&Articolo()},
                  {{Articoli, {"COD_FORNITORE", "COD_ART_FORNITORE"}},
                   {Fornitori, {"COD_FORNITORE", "PARTITA_IVA", "CODICE_FISCALE"}}},
                  ArticleNeeds()};
        all.writes.push_back({"ART_COD", {"CDART", "CDCOD", "COTIP", "COTPC", "COCON"}});
        return all;
    }();
    return needs;
}

void ImportArticoliVSP(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportArticoliVSP", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione articoli");
        run.Preflight(ArticoliNeeds());
        EmptyArticles(run, reset);
        const QString from = " FROM " + Articoli + run.OnlyCode(" WHERE", "COD_ARTICOLO", singleCode);
        run.Rows({"Articoli", Articoli, "COD_ARTICOLO", "SELECT COUNT(*)" + from,
                  "SELECT *" + from + " ORDER BY COD_ARTICOLO"},
                 [&](const SourceRow& row) { return ImportArticolo(run, row); });
        run.Complete("Articoli importati correttamente!");
    });
}

// --- Drawings -----------------------------------------------------------------------------------------------------

namespace {

bool IsFullPath(const QString& path) {
    const bool hasDrive = path.size() > 1 && path.at(1) == u':';
    return hasDrive || path.startsWith(u'/') || path.startsWith(u'\\');
}

QString FolderOf(Session& session) { return modMain::GetAppConfig(session, "IMPORT", "SourcePathAttachArticoli", ""); }

/// Where a drawing is: the source tells full paths; others count from the folder of the settings.
QString FileOf(Session& session, const SourceRow& row) {
    const QString path = row.Text("PERCORSO");
    if (path.isEmpty()) {
        throw ImportError("colonna 'PERCORSO': manca il percorso del file");
    }
    if (IsFullPath(path)) {
        return QDir::cleanPath(QString(path).replace(u'\\', u'/'));
    }
    const QString folder = FolderOf(session);
    if (folder.isEmpty()) {
        throw ImportError(QStringLiteral("colonna 'PERCORSO': '%1' non è un percorso completo, e l'impostazione "
                                         "SourcePathAttachArticoli della sezione IMPORT non dice la cartella")
                              .arg(path));
    }
    return PathIn(folder, path);
}

/// The drawing of the last revision, which comes last, is the one that the article names.
RowOutcome ImportDisegno(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString article = ArticleOf(run, row.Text("COD_ARTICOLO"));
    if (!IsImported(run, article)) {
        return run.Skip(ArticleMissing);
    }
    const QString path = FileOf(session, row);
    const RowOutcome outcome =
        WriteAttachment(run, {"ART_ICO", article, path, FolderOf(session), row.Text("DESCRIZIONE"),
                              row.Text("REVISIONE"), DateOf(row, "DATA")});
    if (outcome != RowOutcome::Skipped) {
        TargetRow target(run, "ART_ICO");
        target.Set("ARATT", true);
        target.Set("ARDIS", QFileInfo(path).fileName());
        target.Update("WHERE " + Equals(session, "CDART", article));
    }
    return outcome;
}

} // namespace

const Needs& DisegniNeeds() {
    static const Needs needs = [] {
        Needs all{{}, {{Disegni, {"COD_ARTICOLO", "PERCORSO", "DESCRIZIONE", "REVISIONE", "DATA"}}}, AttachmentNeeds()};
        all.writes.push_back({"ART_ICO", {"CDART", "ARATT", "ARDIS"}});
        return all;
    }();
    return needs;
}

void ImportDisegniVSP(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportDisegniVSP", singleCode);
    run.Guard([&] {
        run.Announce("Inizio importazione Disegni da Visual Space");
        run.Preflight(DisegniNeeds());
        RemoveImportedAttachments(run, "ART_ICO", reset);
        const QString from = " FROM " + Disegni + run.OnlyCode(" WHERE", "COD_ARTICOLO", singleCode);
        run.Rows({"Disegni", Disegni, "COD_ARTICOLO", "SELECT COUNT(*)" + from,
                  "SELECT *" + from + " ORDER BY COD_ARTICOLO, REVISIONE"},
                 [&](const SourceRow& row) { return ImportDisegno(run, row); });
        run.Complete("Disegni importati correttamente!");
    });
}

} // namespace modImport_VS
