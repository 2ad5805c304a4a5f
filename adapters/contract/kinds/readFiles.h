#pragma once

#include "adapters/contract/kinds/ImportTable.h"

namespace contract {

/// A part whose rows stand in files that the log names before they are read.
ImportPart ReadingFiles(ImportPart part, const QStringList& names);
/// The same with the file that the operator has chosen as source.
ImportPart ReadingChosenFile(ImportPart part);

/// The procedure of one declaration of a kind, as `ProcedureOf` makes it, whose log names the files.
template<class Declared>
Procedure ProcedureReading(const QStringList& names, std::optional<Button> button, const Declared& declared) {
    return ProcedureOf(button, FrameOf(declared), {ReadingFiles(PartOf(declared), names)});
}
/// The same with the file that the operator has chosen.
template<class Declared>
Procedure ProcedureReadingChosenFile(std::optional<Button> button, const Declared& declared) {
    return ProcedureOf(button, FrameOf(declared), {ReadingChosenFile(PartOf(declared))});
}

} // namespace contract
