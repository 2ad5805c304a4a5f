#include "adapters/contract/kinds/Attachments.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Attachment.h"
#include "core/modMain.h"
#include "core/wholeSettings.h"

#include <QFileInfo>

namespace contract {

namespace {

const QString Table = QStringLiteral("SYS_ATT");
const QString Section = QStringLiteral("IMPORT");

/// The declaration with what follows from it; the procedure and its needs live on it.
class AttachmentsKind {
public:
    explicit AttachmentsKind(Attachments attachments)
        : declared(std::move(attachments)) {
        for (const AttachedRecords& records : declared.records) {
            pages.push_back(FieldMapping(Table, declared.source.table,
                                         {{"ATKEY", records.key},
                                          {"ATDES", declared.description},
                                          {"ATREV", declared.revision},
                                          {"ATDAT", declared.day}}));
        }
    }

    contract::Needs Needs() const {
        contract::Needs needs = declared.source.NeedsOf({declared.kind, declared.path, declared.name});
        for (const Mapping& page : pages) {
            needs = needs + NeedsOf(page);
        }
        for (const AttachedRecords& records : declared.records) {
            QStringList columns{records.keyColumn, records.flag};
            columns.removeAll(QString());
            needs.writes.push_back({records.table, columns});
        }
        needs.writes = needs.writes + AttachmentNeeds();
        return needs;
    }

    contract::Emptying Emptying() const {
        contract::Emptying emptying;
        for (const AttachedRecords& records : declared.records) {
            emptying = emptying + AttachmentEmptying(records.table);
        }
        return emptying;
    }

    const AttachedRecords* RecordsOf(const QString& mark) const {
        const auto found =
            std::find_if(declared.records.begin(), declared.records.end(), [&mark](const AttachedRecords& one) {
                return one.marks.isEmpty() || one.marks.contains(mark, Qt::CaseInsensitive);
            });
        return found == declared.records.end() ? nullptr : &*found;
    }

    Attachments declared;
    std::vector<Mapping> pages; ///< one for each kind of record
};

/// Raises `ImportError` when the settings tell no folder.
QString FolderOf(Session& session) {
    const QString folder = AttachmentFolder(session);
    if (folder.isEmpty()) {
        throw ImportError(
            "impostazione SourcePathAttachArticoli della sezione IMPORT: manca la cartella degli allegati");
    }
    return folder;
}

class AttachmentImporter final : public Importer {
public:
    AttachmentImporter(ImportRun& run, std::shared_ptr<const AttachmentsKind> kind)
        : Importer(run),
          m_kind(std::move(kind)),
          m_folder(FolderOf(run.GetSession())),
          m_writer(run),
          m_logsEach(modMain::IsAppConfigOn(run.GetSession(), Section, "DebugAttach", "0")) {}

    RowOutcome Row(const SourceRow& row) override;
    bool End() override {
        for (const AttachedRecords& records : Declared().records) {
            m_writer.TellLeft(records.table);
        }
        return true;
    }

private:
    const Attachments& Declared() const { return m_kind->declared; }
    bool IsThere(const AttachedRecords& records, const QString& key, const SourceRow& row) const;
    QString PathOf(const SourceRow& row) const;
    void MarkRecord(const AttachedRecords& records, const QString& key) const;

    std::shared_ptr<const AttachmentsKind> m_kind;
    QString m_folder;
    AttachmentWriter m_writer;
    bool m_logsEach;
};

RowOutcome AttachmentImporter::Row(const SourceRow& row) {
    Session& session = GetSession();
    const QString mark = Declared().kind.Text(session, row);
    const AttachedRecords* records = m_kind->RecordsOf(mark);
    if (records == nullptr) {
        throw ImportError(QStringLiteral("colonna '%1': '%2' non dice a che cosa appartiene il file")
                              .arg(Declared().kind.Columns().value(0), mark));
    }
    const QString key = records->key.Text(session, row);
    if (!IsThere(*records, key, row)) {
        return Run().Skip(records->table == u"ART_ICO" ? ArticleMissing : RecordMissing);
    }
    const QString path = PathIn(m_folder, PathOf(row));
    const RowOutcome outcome =
        m_writer.Write({records->table, key, path, m_folder, Declared().description.Text(session, row),
                        Declared().revision.Text(session, row), Declared().day.Day(session, row)});
    if (m_logsEach) {
        Run().Log(QStringLiteral("ALLEGATO: %1: '%2'").arg(key, path));
    }
    if (outcome != RowOutcome::Skipped) {
        MarkRecord(*records, key);
    }
    return outcome;
}

/// A record that is not there is logged: here, unless the rule of its key has told it.
bool AttachmentImporter::IsThere(const AttachedRecords& records, const QString& key, const SourceRow& row) const {
    if (records.table == u"ART_ICO") {
        return IsImported(Run(), key);
    }
    if (!key.isEmpty() && contract::IsThere(GetSession(), records.table, records.keyColumn, key)) {
        return true;
    }
    if (!key.isEmpty() || records.key.IsBlank(row)) {
        Run().Log(QStringLiteral("RECORD NON TROVATO: %1: %2 non ha '%3'").arg(Run().RowKey(), records.table, key));
    }
    return false;
}

QString AttachmentImporter::PathOf(const SourceRow& row) const {
    const QString name = row.Text(Declared().name);
    const QString path = row.Text(Declared().path);
    if (name.isEmpty() && path.isEmpty()) {
        throw ImportError(QStringLiteral("colonne '%1', '%2': manca il file").arg(Declared().path, Declared().name));
    }
    const bool isWhole =
        name.isEmpty() || QFileInfo(PathIn({}, path)).fileName().compare(name, Qt::CaseInsensitive) == 0;
    return isWhole ? path : QString(path + u'/' + name);
}

void AttachmentImporter::MarkRecord(const AttachedRecords& records, const QString& key) const {
    if (!records.flag.isEmpty()) {
        TargetRow target(Run(), records.table);
        target.Set(records.flag, true);
        target.Update("WHERE " + Equals(GetSession(), records.keyColumn, key));
    }
}

const Frame UsualAttachments{.module = {},
                             .procedure = {},
                             .announcement = "Inizio importazione Allegati",
                             .step = "Allegati",
                             .completion = "Allegati importati correttamente!",
                             .confirmation = "Importare gli Allegati?"};

} // namespace

Frame FrameOf(const Attachments& declared) { return Over(declared.frame, UsualAttachments); }

ImportPart PartOf(const Attachments& declared) {
    const auto kind = std::make_shared<const AttachmentsKind>(declared);
    return {.step = FrameOf(declared).step,
            .source = declared.source,
            .needs = kind->Needs(),
            .empties = kind->Emptying(),
            .make = [kind](ImportRun& run, const QString&) { return std::make_unique<AttachmentImporter>(run, kind); }};
}

} // namespace contract
