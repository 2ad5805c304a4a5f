#pragma once

#include "core/Session.h"

/// Puts right what the imports of the second sequence leave in the company under work: documents without rows and rows
/// without a document go, articles get their class and their bill. Whoever keeps what rows were is told of each.
/// Returns how many rows the statements changed. Raises `SqlError`.
qint64 PutImportedRowsRight(Session& session);
