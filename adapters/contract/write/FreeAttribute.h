#pragma once

#include "adapters/contract/run/Emptying.h"
#include "adapters/contract/run/ImportRun.h"

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

/// Writes a free attribute: inserted when the record lacks it, else updated. With a blank value the record has it no
/// more: one that an import has written goes, and is logged, one that somebody has entered stays.
/// Raises `SqlError`, `RowGivenUp` or, for a value that does not fit, `ImportError`.
void WriteFreeAttribute(ImportRun& run, const FreeAttribute& attribute);

/// Tells the free attributes that imports have written for a record and that are not among those of now: they stay.
/// @param table,key as of a `FreeAttribute` @param names those that the source has of the record, blank ones too
void TellAttributesLeft(ImportRun& run, const QString& table, const QString& key, const QStringList& names);

} // namespace contract
