#include "adapters/contract/write/Attachment.h"

#include "adapters/contract/map/lookups.h"
#include "sql/codeAsked.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

namespace contract {

namespace {

const QString AttachmentTable = QStringLiteral("SYS_ATT");
const QString Elsewhere = QStringLiteral("file su un altro computer");

bool IsWithin(const QString& folder, const QString& path) {
    const QString whole = QDir::cleanPath(QString(folder).replace(u'\\', u'/'));
    return !folder.isEmpty() && path.startsWith(QString(whole + u'/'), Qt::CaseInsensitive);
}

/// Whether a file may be looked at, as far as its place goes; an odd place is logged. @param what what the file is
bool MayBeOpened(ImportRun& run, const AttachedFile& file, const QString& what) {
    if (IsWithin(file.folder, file.path)) {
        return true;
    }
    const bool isElsewhere = file.path.startsWith(u"//");
    if (isElsewhere || !file.folder.isEmpty()) {
        const QString text = isElsewhere
                                 ? QStringLiteral("%1 SU UN ALTRO COMPUTER: %2: '%3' non si apre: non sta nella "
                                                  "cartella che le impostazioni dicono")
                                 : QStringLiteral("%1 FUORI DALLA CARTELLA: %2: '%3' non sta in quella che le "
                                                  "impostazioni dicono");
        run.Log(text.arg(what, run.RowKey(), file.path));
    }
    return !isElsewhere;
}

/// The picture as JPEG; none when it cannot be read, which is logged.
std::optional<QByteArray> JpegOf(ImportRun& run, const QString& path) {
    const QTemporaryDir folder;
    const QString picture = folder.filePath(QStringLiteral("image.jpg"));
    try {
        ovDatabase::ConvertToJpeg(path, picture);
    } catch (const PictureError& error) {
        run.Log(QStringLiteral("IMMAGINE NON LETTA: %1: %2").arg(run.RowKey(), error.Message()));
        return std::nullopt;
    }
    return ovDatabase::FileToBinary(picture);
}

} // namespace

std::vector<TableNeed> AttachmentNeeds() {
    return {{AttachmentTable, {"ATTBL", "ATKEY", "ATNAM", "ATDES", "ATLNK", "ATTYP", "ATSIZ", "ATDAT", "ATREV"}}};
}

Emptying AttachmentEmptying(const QString& table) {
    return DeletedImports(AttachmentTable, QStringLiteral("ATTBL = '%1'").arg(table));
}

QString PathIn(const QString& folder, const QString& name) {
    const auto portable = [](const QString& path) { return path.trimmed().replace(u'\\', u'/'); };
    return QDir::cleanPath(QString(portable(folder) + u'/' + portable(name)));
}

RowOutcome WriteAttachment(ImportRun& run, const AttachedFile& file) {
    if (!MayBeOpened(run, file, QStringLiteral("ALLEGATO"))) {
        return run.Skip(Elsewhere);
    }
    const QFileInfo info(file.path);
    if (!info.isFile()) {
        run.Log(QStringLiteral("ALLEGATO NON TROVATO: %1: '%2'").arg(run.RowKey(), file.path));
        return run.Skip(QStringLiteral("file non trovato"));
    }
    const Session& session = run.GetSession();
    const qint64 known =
        IdOfCode(run.GetSession().Quadrix, AttachmentTable,
                 Equals(session, "ATTBL", file.table) + QStringLiteral(" AND ") + Equals(session, "ATKEY", file.key) +
                     QStringLiteral(" AND ") + Equals(session, "ATNAM", info.fileName()),
                 "ATNAM", info.fileName());
    TargetRow row(run, AttachmentTable);
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
    if (!MayBeOpened(run, file, QStringLiteral("IMMAGINE"))) {
        return run.Skip(Elsewhere);
    }
    if (!QFileInfo(file.path).isFile()) {
        run.Log(QStringLiteral("IMMAGINE NON TROVATA: %1: '%2'").arg(run.RowKey(), file.path));
        return run.Skip(QStringLiteral("file non trovato"));
    }
    const auto picture = JpegOf(run, file.path);
    if (!picture) {
        return run.Skip(QStringLiteral("immagine non leggibile"));
    }
    const Session& session = run.GetSession();
    const qint64 known =
        IdWhere(run.GetSession(), "IMA_GES",
                Equals(session, "TBNAM", file.table) + QStringLiteral(" AND ") + Equals(session, "TBKEY", file.key));
    TargetRow row(run, "IMA_GES");
    row.Set("TBNAM", file.table);
    row.Set("TBKEY", file.key);
    row.Set("IMIMG", *picture);
    if (known != 0) {
        row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", known));
        return RowOutcome::Updated;
    }
    row.Insert();
    return RowOutcome::Inserted;
}

} // namespace contract
