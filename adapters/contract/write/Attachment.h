#pragma once

#include "adapters/contract/run/Emptying.h"
#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// What the writer below writes.
std::vector<TableNeed> AttachmentNeeds();

/// What a reset of the attachments of a table (bare name) deletes: those that an import wrote. Those attached by hand
/// stay.
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

/// Path of a file that the source names by a path within a folder of the settings; either may be written with "\".
QString PathIn(const QString& folder, const QString& name);

/// Attaches a file to its record, with its name, whole path, kind, size and date; a file of that name that is attached
/// already is rewritten. A file that is not there is logged and skipped. One outside its folder is logged, and skipped
/// when another computer has it: looking at it would sign on there, wherever the source says. Raises `SqlError`,
/// `RowGivenUp` or, for a value that does not fit, `ImportError`.
RowOutcome WriteAttachment(ImportRun& run, const AttachedFile& file);

/// What the images below are written into.
std::vector<TableNeed> ImageNeeds();

/// Stores a picture file as the image of a record, as JPEG, in place of the one that is there. A file that is not there
/// or no picture that can be read is logged and skipped, as is what `WriteAttachment` skips. Raises as that does.
RowOutcome StoreImage(ImportRun& run, const AttachedFile& file);

} // namespace contract
