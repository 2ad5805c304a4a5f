#include "adapters/contract/write/Cam.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Attachment.h"
#include "adapters/contract/write/SheetFormat.h"
#include "adapters/sourceSettings.h"
#include "core/lineSettings.h"
#include "core/modImport.h"
#include "core/modMain.h"
#include "core/qdxProduction_sheets.h"
#include "core/schemaDefaults.h"
#include "core/wholeSettings.h"

namespace contract {

std::unique_ptr<ovConnection> qdxCamOpenConnection(Session& session, const QString& prefix, CamAccess access) {
    auto connection = std::make_unique<ovConnection>();
    connection->Errors = &session.Errors;
    connection->Trace = session.TraceSource;
    sourceSettings::ServerKeys keys;
    keys.username = prefix + QStringLiteral("_Username");
    keys.password = prefix + QStringLiteral("_Password");
    keys.server = prefix + QStringLiteral("_Server");
    keys.database = prefix + QStringLiteral("_Database");
    keys.network = prefix + QStringLiteral("_NetworkCredential");
    keys.driver = prefix + QStringLiteral("_Driver");
    keys.encryption = prefix + QStringLiteral("_Encryption");
    keys.authorities = prefix + QStringLiteral("_EncryptionCA");
    sourceSettings::Server("LANTEK", keys)(session, *connection);
    connection->ReadOnly = access == CamAccess::Read;
    connection->OpenConnection();
    modMain::TellLine(session, *connection);
    return connection;
}

QString CamProductsFolder(Session& session, const QString& prefix) {
    const QString folder =
        modMain::GetWholeConfig(session, QStringLiteral("IMPORT"), prefix + QStringLiteral("_Path"), {});
    return folder.isEmpty() ? folder : sourceSettings::FromSettingsFolder(session, folder).replace(u'\\', u'/');
}

void qdxAggiornaImmagineRitagli(ImportRun& run, qint64 format, const QString& product) {
    const QString folder = CamProductsFolder(run.GetSession());
    if (!folder.isEmpty()) {
        StoreImage(run, {"ART_FMT", QString::number(format), PathIn(folder, product + QStringLiteral(".bmp")), folder});
    }
}

namespace cam {

QString ArticleOf(ImportRun& run, const QString& product) {
    return ArticleWriter(run).CodeOf(ProductCodes, "PrdRef", product);
}

QString MaterialOf(Session& session, const QString& material) {
    return material.isEmpty() ? material : LookUp(session, "TAB_MAT", "MAEXT", material, "CDMAT");
}

QString SheetOfRemnant(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString original = row.Text("DIS_ShtRefOrg");
    if (!original.isEmpty()) {
        const auto own = [&run, &original] { return ArticleOf(run, original); };
        const KnownFormat format = FindFormat(run, original, own);
        const QString article = format.article.isEmpty() ? own() : format.article;
        if (IsThere(session, "ART_ICO", "CDART", article)) {
            return article;
        }
    }
    return qdxProduction::qdxGetCodiceLamieraEsterno(session, MaterialOf(session, row.Text("DIS_MatRef")),
                                                     NumberOf(row, "DIS_Thickness"));
}

QString UnitOf(Session& session, const QString& name, bool recordsMissing) {
    const QString known = modImport::GetNewCode(session, ProductCodes, "UntName", name, recordsMissing);
    if (!known.isEmpty()) {
        return known;
    }
    const bool piece = name.isEmpty() || name.compare(u"unt", Qt::CaseInsensitive) == 0;
    return piece ? schema::defaults::Unit : name.toUpper();
}

QString WorkOf(const ImportRun& run, const SourceRow& row) {
    const QString operation = row.IsBlank("OprRef") ? row.Text("WrkRef") : row.Text("OprRef");
    const QString work = TranslatedCode(run.GetSession(), "MMNN_PPOO", "OprRef", operation, "LAV_ORA");
    return work.isEmpty() ? schema::defaults::GenericWork : work;
}

} // namespace cam

} // namespace contract
