#include "adapters/contract/write/Attachment.h"

#include "adapters/contract/map/lookups.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

namespace contract {

namespace {

const QString Table = QStringLiteral("SYS_ATT");

} // namespace

std::vector<TableNeed> AttachmentNeeds() {
    return {{Table, {"ATTBL", "ATKEY", "ATNAM", "ATDES", "ATLNK", "ATTYP", "ATSIZ", "ATDAT", "ATREV"}}};
}

void RemoveImportedAttachments(ImportRun& run, const QString& table, bool reset) {
    if (reset) {
        run.Delete(Table, QStringLiteral("DELETE SYS_ATT WHERE ATTBL = %1 AND USINS = %2")
                              .arg(run.Quoted(table), run.Quoted("SYSTEM_IMPORT")));
    }
}

QString PathIn(const QString& folder, const QString& name) {
    const auto portable = [](const QString& path) { return path.trimmed().replace(u'\\', u'/'); };
    return QDir::cleanPath(QString(portable(folder) + u'/' + portable(name)));
}

RowOutcome WriteAttachment(ImportRun& run, const AttachedFile& file) {
    const QFileInfo info(file.path);
    if (!info.isFile()) {
        run.Log(QStringLiteral("ALLEGATO NON TROVATO: %1: '%2'").arg(run.RowKey(), file.path));
        return run.Skip(QStringLiteral("file non trovato"));
    }
    const Session& session = run.GetSession();
    const qint64 known =
        IdWhere(run.GetSession(), Table,
                Equals(session, "ATTBL", file.table) + QStringLiteral(" AND ") + Equals(session, "ATKEY", file.key) +
                    QStringLiteral(" AND ") + Equals(session, "ATNAM", info.fileName()));
    TargetRow row(run, Table);
    row.Set("ATTBL", file.table);
    row.Set("ATKEY", file.key);
    row.Set("ATNAM", info.fileName());
    row.Set("ATDES", file.description.isEmpty() ? info.fileName() : file.description);
    row.Set("ATLNK", file.path);
    row.Set("ATTYP", info.suffix().toUpper());
    row.Set("ATSIZ", info.size());
    row.Set("ATDAT", file.day.isNull() ? QVariant(info.lastModified()) : file.day);
    row.Set("ATREV", file.revision);
    if (known != 0) {
        row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", known));
        return RowOutcome::Updated;
    }
    row.Insert();
    return RowOutcome::Inserted;
}

std::vector<TableNeed> ImageNeeds() { return {{"IMA_GES", {"TBNAM", "TBKEY", "IMIMG"}}}; }

RowOutcome StoreImage(ImportRun& run, const AttachedFile& file) {
    if (!QFileInfo(file.path).isFile()) {
        run.Log(QStringLiteral("IMMAGINE NON TROVATA: %1: '%2'").arg(run.RowKey(), file.path));
        return run.Skip(QStringLiteral("file non trovato"));
    }
    const QTemporaryDir folder;
    const QString picture = folder.filePath(QStringLiteral("image.jpg"));
    ovDatabase::ConvertToJpeg(file.path, picture);
    const Session& session = run.GetSession();
    const qint64 known =
        IdWhere(run.GetSession(), "IMA_GES",
                Equals(session, "TBNAM", file.table) + QStringLiteral(" AND ") + Equals(session, "TBKEY", file.key));
    TargetRow row(run, "IMA_GES");
    row.Set("TBNAM", file.table);
    row.Set("TBKEY", file.key);
    row.Set("IMIMG", ovDatabase::FileToBinary(picture));
    if (known != 0) {
        row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", known));
        return RowOutcome::Updated;
    }
    row.Insert();
    return RowOutcome::Inserted;
}

} // namespace contract
