#include "adapters/contract/write/Attachment.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/otherCompanies.h"
#include "adapters/sourceSettings.h"
#include "core/wholeSettings.h"
#include "sql/codeAsked.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

namespace contract {

namespace {

const QString AttachmentTable = QStringLiteral("SYS_ATT");
const QString KeyColumn = QStringLiteral("ATKEY");
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
    Emptying emptying = DeletedImports(AttachmentTable, QStringLiteral("ATTBL = '%1'").arg(table));
    emptying.front().child = KeyColumn;
    emptying.front().records = table;
    emptying.front().code = CodeOfRecords(table);
    return emptying;
}

QString CodeOfRecords(const QString& table) {
    return table == u"DIS_BAS" ? QStringLiteral("DBART") : schema::FindTable(table)->CodeColumn();
}

QString AttachmentFolder(Session& session) {
    const QString folder = modMain::GetWholeConfig(session, "IMPORT", "SourcePathAttachArticoli", "");
    return folder.isEmpty() ? folder : sourceSettings::FromSettingsFolder(session, folder).replace(u'\\', u'/');
}

QString PathIn(const QString& folder, const QString& name) {
    const auto portable = [](const QString& path) { return path.trimmed().replace(u'\\', u'/'); };
    return QDir::cleanPath(QString(portable(folder) + u'/' + portable(name)));
}

const QStringList& AttachmentWriter::Others(const QString& table) {
    const auto known = m_others.find(table);
    return known != m_others.end() ? known->second
                                   : m_others.emplace(table, TablesOfOthers(m_run.GetSession(), table)).first->second;
}

/// Whether another company has a record of that code, which is told once.
bool AttachmentWriter::IsOfOthers(const AttachedFile& file) {
    Session& session = m_run.GetSession();
    const QString code = CodeOfRecords(file.table);
    for (const QString& table : Others(file.table)) {
        Recordset rows = session.Quadrix.ExecuteWC(QStringLiteral("SELECT %1 FROM %2 WHERE ").arg(code, table) +
                                                   Equals(session, code, file.key));
        if (StepToCode(rows, code, file.key)) {
            m_run.Tell(QStringLiteral("ALLEGATI DI PIÙ AZIENDE: codici di %1 stanno anche in %2: i loro allegati si "
                                      "vedono in tutte e due le aziende, e nessuna riscrive o svuota quelli dell'altra")
                           .arg(m_run.FullName(file.table), table));
            return true;
        }
    }
    return false;
}

ImportingModules& AttachmentWriter::ModulesOf(const QString& table) {
    return m_modules.try_emplace(table, m_run, table, QStringLiteral("ALLEGATI")).first->second;
}

/// Whether a row of the source has attached it already.
bool AttachmentWriter::IsOfImport(qint64 id) const {
    return m_written.contains(id) || m_run.HasWrittenBefore(AttachmentTable, id);
}

AttachmentWriter::There AttachmentWriter::Known(const AttachedFile& file) {
    Session& session = m_run.GetSession();
    const QString name = QFileInfo(file.path).fileName();
    qint64 ofName = 0;
    Recordset rows = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT RECORD_ID, ATKEY, ATNAM, ATLNK FROM %1 WHERE ").arg(AttachmentTable) +
        Equals(session, "ATTBL", file.table) + QStringLiteral(" AND ") + Equals(session, KeyColumn, file.key) +
        QStringLiteral(" ORDER BY RECORD_ID"));
    for (const SourceRow row(rows); StepToCode(rows, KeyColumn, file.key); rows.MoveNext()) {
        const qint64 id = row.Value("RECORD_ID").toLongLong();
        if (row.Text("ATLNK") == file.path) {
            return {.ofPath = id};
        }
        if (ofName == 0 && IsSameCode(row.Text("ATNAM"), name) && !IsOfImport(id)) {
            ofName = id;
        }
    }
    rows.Close();
    return {.ofName = ofName != 0 && !IsOfOthers(file) ? ofName : 0};
}

/// What an earlier import has attached stays as it is: the source still tells it. What has its name alone may yet be
/// another file's.
RowOutcome AttachmentWriter::SkipFile(const AttachedFile& file, const QString& rule) {
    const There there = Known(file);
    m_run.Remember(m_written, there.ofPath);
    m_run.Remember(m_ofMissing, there.ofName);
    return m_run.Skip(rule);
}

RowOutcome AttachmentWriter::Write(const AttachedFile& file) {
    ModulesOf(file.table).Keep();
    if (!MayBeOpened(m_run, file, QStringLiteral("ALLEGATO"))) {
        return SkipFile(file, Elsewhere);
    }
    const QFileInfo info(file.path);
    if (!info.isFile()) {
        m_run.Log(QStringLiteral("ALLEGATO NON TROVATO: %1: '%2'").arg(m_run.RowKey(), file.path));
        return SkipFile(file, FileMissing);
    }
    const auto [ofPath, ofName] = Known(file);
    const qint64 known = ofPath != 0 ? ofPath : ofName;
    TargetRow row(m_run, AttachmentTable);
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
        if (IsOfImport(known)) {
            m_run.Log(QStringLiteral("ALLEGATO DOPPIO: %1: una riga di prima ha già collegato '%2': vale questa")
                          .arg(m_run.RowKey(), file.path));
        }
        row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", known));
        m_run.Remember(m_written, known);
        return RowOutcome::Updated;
    }
    row.Insert();
    m_run.Remember(m_written, m_run.LastId(AttachmentTable));
    IsOfOthers(file);
    return RowOutcome::Inserted;
}

void AttachmentWriter::TellLeft(const QString& table) {
    if (m_run.IsPart()) {
        return;
    }
    Session& session = m_run.GetSession();
    QStringList left;
    Recordset rows = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT RECORD_ID, ATKEY, ATNAM FROM %1 WHERE ").arg(AttachmentTable) +
        Equals(session, "ATTBL", table) + QStringLiteral(" AND ") + OfImports(session) + QStringLiteral(" AND ") +
        OfThisCompanyAlone(session, KeyColumn, table, CodeOfRecords(table), Others(table)) +
        QStringLiteral(" ORDER BY ATKEY, ATNAM, RECORD_ID"));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const qint64 id = row.Value("RECORD_ID").toLongLong();
        if (!m_written.contains(id) && !m_ofMissing.contains(id)) {
            left.append(QStringLiteral("%1 '%2', '%3'").arg(table, row.Text(KeyColumn), row.Text("ATNAM")));
        }
    }
    rows.Close();
    ModulesOf(table).TellLeft(QStringLiteral("ALLEGATI"), QStringLiteral("allegati"), left);
}

std::vector<TableNeed> ImageNeeds() { return {{"IMA_GES", {"TBNAM", "TBKEY", "IMIMG"}}}; }

RowOutcome StoreImage(ImportRun& run, const AttachedFile& file) {
    if (!MayBeOpened(run, file, QStringLiteral("IMMAGINE"))) {
        return run.Skip(Elsewhere);
    }
    if (!QFileInfo(file.path).isFile()) {
        run.Log(QStringLiteral("IMMAGINE NON TROVATA: %1: '%2'").arg(run.RowKey(), file.path));
        return run.Skip(FileMissing);
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
