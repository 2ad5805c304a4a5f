#pragma once

#include "sql/errors.h"

#include <QLatin1String>

#include <span>

/// What the refusals of an engine mean for the operator, in a table for each engine.
namespace meaning {

/// One refusal. The meaning may hold "%1" to "%9", what the words have captured; "%V1" to "%V9", the value that the
/// statement writes into the column captured ("il valore 'x'", or "lo stesso valore"); and "%T", the table that it
/// writes into (" della tabella 'X'", or nothing).
struct Refusal {
    QLatin1String code;
    QLatin1String words; ///< regular expression found in the engine's words; empty: whatever they are
    const char* text;
    bool mayPass = false;  ///< the statement may succeed when it is tried again after a while
    bool isDenied = false; ///< the user lacks the right to what the statement does
};

// What several engines say, each in its words.
inline constexpr const char* NoAnswer = "il server non risponde: verificare nome, porta e che sia avviato";
inline constexpr const char* HasFallen = "la connessione con il server è caduta";
inline constexpr const char* InUse = "i dati sono in uso da un altro programma: riprovare";
inline constexpr const char* WrongPassword = "utente o password errati";
inline constexpr const char* NoRight = "all'utente manca il diritto %1 sulla tabella '%2'";

/// Puts what an error means in front of the engine's words, which stay behind it, and tells whether it may pass by
/// itself. False when the table does not know it.
bool Explain(SqlError& error, std::span<const Refusal> known);

} // namespace meaning
