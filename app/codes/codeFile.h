#pragma once

#include "app/codes/changes.h"
#include "app/codes/suggestions.h"

namespace codes {

/// Writes codes into a file that the operator fills in: a workbook of texts (.xlsx), or texts with ";" between (.csv,
/// in UTF-8 with its mark). Raises `ImportError` naming a file that cannot be written, or whose name ends otherwise.
void WriteFile(Worklist& worklist, const std::vector<Code>& codes, const QString& path);

/// Whether a file of codes was filled in with some that Quadrix does not have, as nobody has read it back: writing over
/// it loses them. False for what is no such file.
bool HoldsWork(Worklist& worklist, const QString& path);

/// What a file that was filled in asks for.
struct FilePlan {
    std::vector<Change> changes;
    int unchanged = 0;    ///< rows whose code is what it was
    int leftOpen = 0;     ///< rows without a new code: they stay as they are
    QStringList mistakes; ///< "Riga 7, colonna 'Nuovo codice': ..."; nothing is to be saved while there are any

    QString Text() const;
};

/// Reads a file back, by the names of its columns, whatever their order; columns that it does not know are passed over.
/// Nothing is saved. Raises `ImportError` for a file that cannot be read, or lacks a column.
FilePlan ReadFile(Worklist& worklist, const QString& path);

} // namespace codes
