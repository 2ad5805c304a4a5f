#pragma once

#include "adapters/contract/run/Origin.h"

/// What a procedure does, as the operator calls it: "Controparti da Arca 2000". One that imports nothing is called by
/// its button's caption, or else by its own name: "Riallinea DRORI (WinProgest)".
QString ProcedureTitle(const contract::Origin& origin, const contract::Procedure& procedure);
/// The same for a procedure of a result; its bare name when neither an origin of the list nor the program has it.
QString ProcedureTitle(const QString& module, const QString& procedure);
