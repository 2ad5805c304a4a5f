// Articles of Visual Space with their supplier, and their drawings.

#include "adapters/origins/VS/modImport_VS.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Attachment.h"
#include "core/modImport.h"
#include "core/modMain.h"
#include "core/schemaDefaults.h"
#include "core/wholeSettings.h"
#include "sql/mod_ovTools.h"

#include <QDir>
#include <QFileInfo>

using namespace contract;
using namespace contract::rules;

namespace modImport_VS {

namespace {

/// The supplier of a code, whatever it came from; one that is not there is logged.
Rule Supplier() {
    return {
        "controparte come la trova GetNewControparteFromVisual; se manca va nel log e non si scrive",
        [](const RuleInput& input) -> RuleValue {
            const QString code = GetNewControparteFromVisual(input.session, input.Value(), false);
            if (code.isEmpty() && !input.Text().isEmpty()) {
                modImport::LogNote(
                    input.session,
                    QStringLiteral("FORNITORE NON TROVATO: %1: '%2'").arg(input.session.Errors.RowKey(), input.Text()));
            }
            return code.isEmpty() ? RuleValue() : RuleValue(code);
        },
        Side::Both, RegisterReads(false)};
}

} // namespace

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliVSP"},
        .source = {.table = ArticoliTable, .key = "COD_ARTICOLO", .order = "COD_ARTICOLO"},
        .code = {"COD_ARTICOLO", Article()},
        .description = "DESCRIZIONE",
        .lines =
            {
                {"CDEXT", "COD_ARTICOLO", First(50)},
                {"ARDE2", "DESCRIZIONE_2", First(100)},
                {"ARCLA", "COD_CLASSE", Or(Translated(ArticoliTable, "COD_CLASSE"), "CM")},
                {"ARFAM", "COD_FAMIGLIA", Translated(ArticoliTable, "COD_FAMIGLIA")},
                {"ARMAT", "MATERIALE", TranslatedOrKnown(ArticoliTable, "MATERIALE", "TAB_MAT")},
                {"ARREV", "REVISIONE", Text()},
                {"ARDIS", "NUM_DISEGNO", NotBlank(Text())},
                {"ARANN", "ANNULLATO", Flag()},
                {"ARUMS", "UM", TranslatedOrUpper(ArticoliTable, "UM", schema::defaults::Unit)},
                {"ARUM2", "UM_2", TranslatedOrUpper(ArticoliTable, "UM", "")},
                {"ARCOE", "COEFFICIENTE", NotZero()},
                {"ARIVA", "COD_IVA", VatCode(ArticoliTable, "COD_IVA")},
                {"ARSMN", "SCORTA_MINIMA", RoundedTo(6)},
                {"ARLOR", "LOTTO_RIORDINO", RoundedTo(6)},
                {"ARGGA", "GIORNI_RIORDINO", RoundedTo(0)},
                {"ARPSN", "PESO", RoundedTo(3)},
                {"ARCOS", "COSTO_ULTIMO, COSTO_STANDARD", FirstNotZero()},
                {"ARPRZ", "PREZZO_VENDITA", RoundedTo(6)},
                {"ARRIC", "PREZZO_VENDITA, COSTO_ULTIMO, COSTO_STANDARD", MarkUp()},
            },
        .suppliers = {{.supplier = {CodFornitore, Supplier()},
                       .ownCode = "COD_ART_FORNITORE",
                       .price = {"COSTO_ULTIMO, COSTO_STANDARD", FirstNotZero()},
                       .leadDays = "GIORNI_RIORDINO",
                       .lot = "LOTTO_RIORDINO"}},
    };
}

// --- Drawings -----------------------------------------------------------------------------------------------------

namespace {

bool IsFullPath(const QString& path) {
    const bool hasDrive = path.size() > 1 && path.at(1) == u':';
    return hasDrive || path.startsWith(u'/') || path.startsWith(u'\\');
}

/// Where a drawing is: the source tells full paths; others count from the folder of the settings.
QString FileOf(Session& session, const SourceRow& row) {
    const QString path = row.Text("PERCORSO");
    if (path.isEmpty()) {
        throw ImportError("colonna 'PERCORSO': manca il percorso del file");
    }
    if (IsFullPath(path)) {
        return QDir::cleanPath(QString(path).replace(u'\\', u'/'));
    }
    const QString folder = AttachmentFolder(session);
    if (folder.isEmpty()) {
        throw ImportError(QStringLiteral("colonna 'PERCORSO': '%1' non è un percorso completo, e l'impostazione "
                                         "SourcePathAttachArticoli della sezione IMPORT non dice la cartella")
                              .arg(path));
    }
    return PathIn(folder, path);
}

/// Whether a revision comes before another one: of two numbers the lower, else by their letters.
bool IsOlder(const QString& revision, const QString& other) {
    const auto number = mod_ovTools::ReadNumber(revision);
    const auto otherNumber = mod_ovTools::ReadNumber(other);
    return number && otherNumber ? *number < *otherNumber : revision.compare(other, Qt::CaseInsensitive) < 0;
}

/// The drawings of an article come one after the other, by a revision that is a text: "10" before "9".
class DrawingImporter final : public Importer {
public:
    explicit DrawingImporter(ImportRun& run)
        : Importer(run),
          m_writer(run) {}

    RowOutcome Row(const SourceRow& row) override;
    bool End() override {
        m_writer.TellLeft("ART_ICO");
        return true;
    }

private:
    void NameDrawing(const QString& article, const QString& path, const QString& revision);
    std::optional<QString> RevisionBefore(const QString& article) const;

    AttachmentWriter m_writer;
    QString m_article;                 ///< of the drawing before
    std::optional<QString> m_revision; ///< of the drawing that it names; none: of none yet
};

/// The drawing of the last revision is the one that the article names.
void DrawingImporter::NameDrawing(const QString& article, const QString& path, const QString& revision) {
    TargetRow target(Run(), "ART_ICO");
    target.Set("ARATT", true);
    Run().Restores(m_article);
    Run().Restores(m_revision);
    if (article != m_article) {
        m_article = article;
        m_revision = RevisionBefore(article);
    }
    if (!m_revision || !IsOlder(revision, *m_revision)) {
        target.Set("ARDIS", QFileInfo(path).fileName());
        m_revision = revision;
    }
    target.Update("WHERE " + Equals(GetSession(), "CDART", article));
}

/// The last revision that came in front of an interruption; none without any.
std::optional<QString> DrawingImporter::RevisionBefore(const QString& article) const {
    std::optional<QString> last;
    if (!Run().GoesOn()) {
        return last;
    }
    Recordset rows = GetSession().Quadrix.ExecuteWC(QStringLiteral("SELECT RECORD_ID, ATREV FROM SYS_ATT WHERE ATTBL = "
                                                                   "'ART_ICO' AND ") +
                                                    Equals(GetSession(), "ATKEY", article));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const QString revision = row.Text("ATREV");
        if (Run().HasWrittenBefore("SYS_ATT", row.Value("RECORD_ID").toLongLong()) &&
            (!last || IsOlder(*last, revision))) {
            last = revision;
        }
    }
    return last;
}

RowOutcome DrawingImporter::Row(const SourceRow& row) {
    ImportRun& run = Run();
    Session& session = run.GetSession();
    const QString article = ArticleCodeOf(session, ArticoliTable, "COD_ARTICOLO", row.Text("COD_ARTICOLO"));
    if (!IsImported(run, article)) {
        return run.Skip(ArticleMissing);
    }
    const QString path = FileOf(session, row);
    const RowOutcome outcome = m_writer.Write({"ART_ICO", article, path, AttachmentFolder(session),
                                               row.Text("DESCRIZIONE"), row.Text("REVISIONE"), DateOf(row, "DATA")});
    if (outcome != RowOutcome::Skipped) {
        NameDrawing(article, path, row.Text("REVISIONE"));
    }
    return outcome;
}

} // namespace

Procedure Disegni() {
    const QString table = QStringLiteral("DISEGNI");
    const Frame frame{.module = Module,
                      .procedure = "ImportDisegniVSP",
                      .announcement = "Inizio importazione Disegni da Visual Space",
                      .completion = "Disegni importati correttamente!"};
    return ProcedureOf(
        Button::Disegni, frame,
        {{.step = "Disegni",
          .source = {.table = table, .key = "COD_ARTICOLO", .order = "COD_ARTICOLO, REVISIONE"},
          .needs = {{},
                    {{table, {"PERCORSO", "DESCRIZIONE", "DATA"}}},
                    AttachmentNeeds() + std::vector<TableNeed>{{"ART_ICO", {"CDART", "ARATT", "ARDIS"}}}},
          .empties = AttachmentEmptying("ART_ICO"),
          .make = [](ImportRun& run, const QString&) { return std::make_unique<DrawingImporter>(run); }}});
}

} // namespace modImport_VS
