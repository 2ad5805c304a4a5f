#pragma once

#include "adapters/contract/map/Mapping.h"
#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// Logs the texts of a source row that a mapping has cut to the size of their columns, each with the characters that
/// are written and those that there were (`TESTO RIDOTTO`). One whose rest stands in another column of the row is not
/// lost.
/// @param target the row as it will be written
void TellCut(ImportRun& run, const Mapping& mapping, const SourceRow& row, const TargetRow& target);

/// The same of one text. @param columns of the source, for the message @param written what is left of `all`
void TellCut(ImportRun& run, const QStringList& columns, const QString& written, const QString& all);

/// Logs the VAT number, numeric tax code and postal code of a counterparty of Italy that have fewer digits than such
/// have
/// (`ZERI PERSI`): a sheet that was opened and saved writes 184 for 00184. They are written as they are, for nobody
/// knows what was lost.
void TellLostZeros(ImportRun& run, const TargetRow& target);

} // namespace contract
