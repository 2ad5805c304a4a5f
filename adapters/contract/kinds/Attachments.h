#pragma once

#include "adapters/contract/kinds/ImportTable.h"

namespace contract {

/// The records that files belong to.
struct AttachedRecords {
    QStringList marks = {}; ///< values of the field that tells the kind, compared without case; none: every row
    QString table;          ///< bare name
    QString keyColumn;      ///< whose value the files are attached to
    Field key;              ///< its value: a record that is not there is left out, and logged
    QString flag = {};      ///< column of the records that tells that they have files; empty for none
};

/// An import of the files of records. They are looked for in the folder that the setting SourcePathAttachArticoli of
/// the section IMPORT tells; without it nothing is imported. A file that is attached already is rewritten, one that is
/// not there is left out, and logged. The setting DebugAttach logs each.
struct Attachments {
    Frame frame = {};
    SourceTable source;
    std::vector<AttachedRecords> records;
    Field kind = {}; ///< tells which records are meant, where there are several
    QString path;    ///< column with the path within the folder: of the file itself, or of the folder that it is in
    QString name;    ///< column with the name of the file
    Field description = {}; ///< without it, or blank, the name of the file
    Field revision = {};
    Field day = {}; ///< without it, or blank, that of the file
};

/// The declaration as part of a procedure, and what the procedure tells of itself: see `ProcedureOf`.
ImportPart PartOf(const Attachments& declared);
Frame FrameOf(const Attachments& declared);

} // namespace contract
