#pragma once

#include "core/RunResult.h"

#include <QVariant>

/// A code that a source row has and SYS_IMP does not translate.
struct OpenCode {
    QString list;  ///< TBNAM
    QString field; ///< TBFLD
    QString code;  ///< TBOLD
};

/// A source row that was given up, as its source has it.
struct RejectedRow {
    QString row;   ///< its name in messages
    QString table; ///< of the source
    QString key;   ///< what tells it from others (`contract::KeyOf`)
    qint64 number; ///< its number in a file; 0: the source has none
    QString reason;
    QStringList columns;
    QVector<QVariant> values; ///< one that cannot be read is Null
    int loop = 0;             ///< of the procedure that read it, from 0
    qint64 place = 0;         ///< how many source rows that one had read with it
};

/// A row of a target table that was written, by its identity.
struct TargetChange {
    enum class Kind { Inserted, Updated, Deleted };
    Kind kind;
    QString table;            ///< physical name
    qint64 id;                ///< RECORD_ID
    QString row = {};         ///< name of the source row under way, for who wants it (`NamesRows`); empty outside one
    QVariantMap before = {};  ///< of the columns that an update writes, or of all of a deleted row
    QStringList columns = {}; ///< that were written
    qint64 digest = 0;        ///< of what was written into them (`RowDigest`)
};

/// Is told what the procedures of a press do, at the moment it stands in the database: what a row told comes with its
/// commit, and not at all when the row is taken back. What it does not look at it leaves out. Whatever trouble it
/// has is its own: nothing is raised.
class RunObserver {
public:
    virtual ~RunObserver() = default;
    virtual void ProcedureBegins(const QString& /*module*/, const QString& /*procedure*/) noexcept {}
    /// A line that the log tells of a row. @param row its name; empty for one of the whole run
    virtual void NoteStands(const QString& /*row*/, const QString& /*note*/) noexcept {}
    /// @param row name of the source row that waits for the code, or of the one that it is part of
    virtual void CodeIsOpen(const QString& /*row*/, const OpenCode& /*code*/) noexcept {}
    /// Rows that are there keep the codes that they have, and what they waited for before this run they wait for still.
    virtual void CodesAreLeft() noexcept {}
    /// Whether it wants to be told what rows were before they were updated or deleted.
    virtual bool KeepsImages() const noexcept { return false; }
    /// Whether each change is to name the source row under way.
    virtual bool NamesRows() const noexcept { return false; }
    virtual void TargetChanges(const TargetChange& /*change*/) noexcept {}
    /// The rows of a table are about to be deleted without being told one by one.
    /// @param table physical name @param condition on those that go; empty: all of them
    virtual void TableIsEmptied(const QString& /*table*/, const QString& /*condition*/ = {}) noexcept {}
    virtual void RowIsGivenUp(const RejectedRow& /*row*/) noexcept {}
    /// Everything told so far is committed.
    /// @param loop of the procedure, from 0 @param rows source rows of it that are done @param last name of the last
    /// one
    virtual void RowsStand(int /*loop*/, qint64 /*rows*/, const QString& /*last*/) noexcept {}
    virtual void ProcedureEnds(const RunResult& /*result*/) noexcept {}
};
