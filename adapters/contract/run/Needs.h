#pragma once

#include "adapters/contract/map/Mapping.h"

namespace contract {

/// What a procedure reads and writes: its mappings and what it touches beyond them.
struct Needs {
    std::vector<const Mapping*> mappings;
    std::vector<TableNeed> reads;
    std::vector<TableNeed> writes;
};

/// Every table and column of the needs, and of the translations, that the open source and the company's tables lack,
/// and the rights on the company's tables that the user lacks, one line each, each once; empty when nothing is missing.
/// Raises `SqlError` when a database cannot be asked.
QStringList Missing(Session& session, const Needs& needs);

} // namespace contract
