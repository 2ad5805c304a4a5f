#pragma once

#include "adapters/contract/run/Emptying.h"
#include "adapters/contract/run/ImportRun.h"

#include <QSet>

namespace contract {

/// What the writer below writes.
std::vector<TableNeed> FreeAttributeNeeds();

/// What a reset of the free attributes of a table (bare name) deletes.
Emptying FreeAttributeEmptying(const QString& table);

/// A value of a record that has no column of its own.
struct FreeAttribute {
    QString table; ///< bare name of the record's table
    QString key;   ///< code of the record
    QString name;
    QString value;
    QString description = {};
};

/// Writes the free attributes of a run. Every operation raises `SqlError`, `RowGivenUp` or, for a value that does not
/// fit, `ImportError`.
class FreeAttributeWriter {
public:
    explicit FreeAttributeWriter(ImportRun& run)
        : m_run(run) {}

    /// Writes a free attribute: inserted when the record lacks it, else updated. With a blank value the record has it
    /// no more, unless the run has written it of another row of the record: one that an earlier import has written
    /// goes, and is logged, one that somebody has entered stays.
    void Write(const FreeAttribute& attribute);
    /// Tells the free attributes that imports have written for a record and that are not among those of now: they stay.
    /// Nothing where another module imports such records too, as they may be of that one.
    /// @param table,key as of a `FreeAttribute` @param names those that the source has of the record, blank ones too
    void TellLeft(const QString& table, const QString& key, const QStringList& names) const;

private:
    void TakeAway(const FreeAttribute& attribute, qint64 known) const;

    ImportRun& m_run;
    QSet<QString> m_written; ///< table, key and name, in capitals
};

} // namespace contract
