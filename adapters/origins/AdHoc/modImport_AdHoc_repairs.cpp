// What is put right in Quadrix alone, beside Ad Hoc Revolution: pictures of offcuts, quantities of packing lists.

#include "adapters/origins/AdHoc/modImport_AdHoc.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/Attachment.h"
#include "adapters/contract/write/Cam.h"
#include "core/schemaDefaults.h"

using namespace contract;

namespace modImport_AdHoc {

namespace {

// --- Pictures of offcuts ------------------------------------------------------------------------------------------

const QString OffcutPrompt = QStringLiteral("Codice Sfrido (lasciare vuoto per correggerli tutti):");

const Needs& AllegatiNeeds() {
    static const Needs needs{
        {}, {}, std::vector<TableNeed>{{"ART_FMT", {"CDFMT", "LMOLD", "LMSFR", "LMANN"}}} + ImageNeeds()};
    return needs;
}

/// The pictures of the CAM products.
class OffcutPictures {
public:
    /// Raises `ImportError` without a folder, `SqlError` when the CAM database cannot be opened.
    explicit OffcutPictures(ImportRun& run)
        : m_run(run),
          m_folder(CamProductsFolder(run.GetSession())),
          m_cam(qdxCamOpenConnection(run.GetSession())) {
        if (m_folder.isEmpty()) {
            throw ImportError(QStringLiteral("Manca la cartella dei disegni del CAM: scriverla nella chiave CAM_Path, "
                                             "sezione [IMPORT] delle impostazioni"));
        }
    }

    /// Gives the format of an offcut the picture of its product, and puts it back into use.
    RowOutcome Correct(const SourceRow& format) {
        const QString product = QStringLiteral("RIT-") + format.Text("LMSFR");
        if (!HasProduct(product)) {
            m_run.Log(
                QStringLiteral("PRODOTTO NON TROVATO: %1: '%2' nel database del CAM").arg(m_run.RowKey(), product));
            return m_run.Skip(CamProductMissing);
        }
        const QString id = format.Text("RECORD_ID");
        const RowOutcome stored =
            StoreImage(m_run, {"ART_FMT", id, PathIn(m_folder, product + QStringLiteral(".bmp")), m_folder});
        if (stored == RowOutcome::Skipped) {
            return stored;
        }
        TargetRow row(m_run, "ART_FMT");
        row.Set("LMANN", false);
        row.Update(QStringLiteral("WHERE RECORD_ID = ") + id);
        return RowOutcome::Updated;
    }

private:
    bool HasProduct(const QString& product) {
        return !m_cam
                    ->ExecuteWC("SELECT PrdRef FROM " + cam::Products + " WHERE PrdRef = " + LiteralOf(*m_cam, product))
                    .Eof();
    }

    ImportRun& m_run;
    QString m_folder;
    std::unique_ptr<ovConnection> m_cam;
};

void CorreggiFormati(ImportRun& run, const QString& offcut) {
    Session& session = run.GetSession();
    const QString offcuts = QStringLiteral("LMOLD <> '' AND LMSFR <> ''") + run.OnlyCode(" AND", "LMSFR", offcut);
    if (!offcut.isEmpty() && IdWhere(session, "ART_FMT", offcuts) == 0) {
        session.Person.Message("Impossibile trovare il formato!", Icon::Exclamation);
        return;
    }
    OffcutPictures pictures(run);
    const QString from = run.FullName("ART_FMT") + " WHERE " + offcuts;
    run.Rows({.step = "Disegni Ritagli",
              .table = "ART_FMT",
              .keyColumn = "CDART, CDFMT",
              .count = "SELECT COUNT(*) FROM " + from,
              .select = "SELECT * FROM " + from + " ORDER BY RECORD_ID",
              .database = &session.Quadrix},
             [&](const SourceRow& row) { return pictures.Correct(row); });
    run.Complete("Correzzione eseguita correttamente!");
}

/// A single code is that of an offcut, which is not asked for then.
void CorreggiAllegatiLantek(Session& session, const QString& singleCode, bool /*reset*/) {
    ImportRun run(session, Module, "CorreggiAllegatiLantek", singleCode);
    run.Guard([&] {
        run.Announce("Inizio correzione disegni ritagli");
        run.Preflight(AllegatiNeeds());
        CorreggiFormati(run, singleCode.isEmpty() ? run.Input(OffcutPrompt, "Correggi Disegni Ritagli", {}).trimmed()
                                                  : singleCode);
    });
}

// --- Packing lists ------------------------------------------------------------------------------------------------

const Needs& PackingNeeds() {
    static const Needs needs{{},
                             {},
                             {{"DOC_VEN", {"DTNUM", "DTANN", "DTTPD"}},
                              {"DOC_VER", {"IDTES", "DRNUM", "DRTIP", "DRORI", "DREVA", "DRRPS"}}}};
    return needs;
}

/// What a row of a packing list ships of the row that it comes from: nothing for a text, and for a row of its own.
double ShippedBy(const SourceRow& row) {
    const bool isShipped = row.Text("DRTIP") == schema::defaults::NormalRow && row.Value("DRORI").toLongLong() != 0;
    return isShipped ? NumberOf(row, "DREVA") : 0;
}

RowOutcome SistemaDocumento(ImportRun& run, qint64 document) {
    Session& session = run.GetSession();
    bool hasChanged = false;
    Recordset rows =
        session.Quadrix.ExecuteWC("SELECT RECORD_ID, DRNUM, DRTIP, DRORI, DREVA, DRRPS FROM " +
                                  run.FullName("DOC_VER") + " WHERE " + Equals("IDTES", document) + " ORDER BY DRNUM");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const double shipped = ShippedBy(row);
        if (!row.IsBlank("DRRPS") && NumberOf(row, "DRRPS") == shipped) {
            continue;
        }
        TargetRow target(run, "DOC_VER");
        target.Set("DRRPS", shipped);
        target.Update(QStringLiteral("WHERE RECORD_ID = ") + row.Text("RECORD_ID"));
        hasChanged = true;
    }
    return hasChanged ? RowOutcome::Updated : run.Skip(QStringLiteral("documento già a posto"));
}

/// A single code is the number of a document.
void CorreggiPackingList2(Session& session, const QString& singleCode, bool /*reset*/) {
    ImportRun run(session, Module, "CorreggiPackingList2", singleCode);
    run.Guard([&] {
        run.Announce("Inizio correzione packing list");
        run.Preflight(PackingNeeds());
        const QString from =
            run.FullName("DOC_VEN") + " WHERE DTTPD = 'DDT'" + run.OnlyCode(" AND", "DTNUM", singleCode);
        run.Rows({.step = "Packing List",
                  .table = "DOC_VEN",
                  .keyColumn = "DTNUM, DTANN",
                  .count = "SELECT COUNT(*) FROM " + from,
                  .select = "SELECT RECORD_ID, DTNUM, DTANN FROM " + from + " ORDER BY DTNUM",
                  .database = &session.Quadrix},
                 [&](const SourceRow& row) { return SistemaDocumento(run, row.Value("RECORD_ID").toLongLong()); });
        run.Complete("Documenti Sistemati, si spera...");
    });
}

} // namespace

Procedure AllegatiLantek() {
    return {.button = std::nullopt,
            .name = "CorreggiAllegatiLantek",
            .run = CorreggiAllegatiLantek,
            .needs = AllegatiNeeds(),
            .asks = {{OffcutPrompt, AnswerKind::Text}},
            .confirmation = "Correggere i disegni dei ritagli?",
            .opensSource = false,
            .asksReset = false};
}

Procedure PackingList() {
    return {.button = std::nullopt,
            .name = "CorreggiPackingList2",
            .run = CorreggiPackingList2,
            .needs = PackingNeeds(),
            .confirmation = "Sistemare i packing list?",
            .opensSource = false,
            .asksReset = false};
}

} // namespace modImport_AdHoc
