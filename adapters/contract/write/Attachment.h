#pragma once

#include "adapters/contract/run/Emptying.h"
#include "adapters/contract/run/ImportRun.h"
#include "adapters/contract/write/ImportingModules.h"

#include <QSet>

#include <map>

namespace contract {

/// What the writer below writes.
std::vector<TableNeed> AttachmentNeeds();

/// What a reset of the attachments of a table (bare name) deletes: those that an import wrote. Those attached by hand
/// stay, and so do those of a record whose code another company has too. Comes before that table is emptied.
Emptying AttachmentEmptying(const QString& table);

/// A file that belongs to a record.
struct AttachedFile {
    QString table; ///< bare name of the record's table
    QString key;   ///< code of the record
    QString path;
    QString folder = {};      ///< of the settings, where the files of the source are; empty when they tell none
    QString description = {}; ///< the file's name when empty
    QString revision = {};
    QVariant day = {}; ///< Null: that of the file
};

/// The column with the code that files hang on in a table (bare name): a bill has none but that of its article. Empty
/// for a table whose rows have no code.
QString CodeOfRecords(const QString& table);

/// The folder of the settings (SourcePathAttachArticoli) in which the files of the source are; empty when they tell
/// none.
QString AttachmentFolder(Session& session);

/// Path of a file that the source names by a path within a folder of the settings; either may be written with "\".
QString PathIn(const QString& folder, const QString& name);

/// Attaches files to their records. All companies share the attachments: of a record whose code another company has
/// too, only the path tells that one is the same. Raises `SqlError`, `RowGivenUp` or, for a value that does not fit,
/// `ImportError`.
class AttachmentWriter {
public:
    explicit AttachmentWriter(ImportRun& run)
        : m_run(run) {}

    /// Attaches a file with its name, whole path, kind, size and date. Rewritten is the attachment of that path, else
    /// one of that name that the run has not written. A file that is not there is logged and skipped. One outside its
    /// folder is logged, and skipped when another computer has it: looking at it would sign on there, wherever the
    /// source says.
    RowOutcome Write(const AttachedFile& file);
    /// Behind the last row of a whole run: tells what earlier imports have attached to records of the table (bare name)
    /// and the source has no more.
    void TellLeft(const QString& table);

private:
    bool IsOfImport(qint64 id) const;
    /// RECORD_IDs of what a file may be already; 0 for none.
    struct There {
        qint64 ofPath = 0;
        qint64 ofName = 0; ///< where none has the path: one of its name
    };
    There Known(const AttachedFile& file);
    RowOutcome SkipFile(const AttachedFile& file, const QString& rule);
    const QStringList& Others(const QString& table);
    bool IsOfOthers(const AttachedFile& file);
    ImportingModules& ModulesOf(const QString& table);

    ImportRun& m_run;
    std::map<QString, ImportingModules> m_modules; ///< by table
    std::map<QString, QStringList> m_others;       ///< the same: see `TablesOfOthers`
    QSet<qint64> m_written;                        ///< and what belongs to a file that is not there
    QSet<qint64> m_ofMissing;                      ///< what has the name of such a file, so that it may be its own
};

/// What the images below are written into.
std::vector<TableNeed> ImageNeeds();

/// Stores a picture file as the image of a record, as JPEG, in place of the one that is there. A file that is not there
/// or no picture that can be read is logged and skipped, as is what `AttachmentWriter` skips. Raises as that does.
RowOutcome StoreImage(ImportRun& run, const AttachedFile& file);

} // namespace contract
