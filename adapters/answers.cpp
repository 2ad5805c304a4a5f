#include "adapters/answers.h"

#include "adapters/contract/write/Document.h"

#include <algorithm>

namespace contract {

namespace {

using Needed = std::vector<AnswerNeed>;

/// By the origin's name.
const QHash<QString, Needed>& OfSources() {
    static const QHash<QString, Needed> needed{
        {"WinProgest", {{"Mi collego a WinProgest sui file di dati?\n[SI] file\n[NO] SQLServer"}}},
    };
    return needed;
}

/// By the procedure's name.
const QHash<QString, Needed>& OfProcedures() {
    static const QHash<QString, Needed> needed{
        {"ImportContropartiArca2000", {{"Vuoi riportare gli indirizzi mail della controparte nei riferimenti?"}}},
        {"ImportDocAcqTessera", {{StartDateQuestion, AnswerKind::Text}, {SkipImportedQuestion}}},
        {"CorreggiDistinteVSP", {{"Correggere le distinte?"}}},
        {"ImportDocumentiWinProgest", {{SkipImportedQuestion}}},
        {"RiallineaDRORIWinProgest",
         {{"Riallineare Ordini?"}, {"Riallineare DDT?"}, {"Riallineare Fatture?"}, {"Riallineare Fatture Pro Forma?"}}},
        {"FusioneControparti",
         {{"Codice Azienda di Partenza:", AnswerKind::Text},
          {"Codice Azienda di Destinazione:", AnswerKind::Text},
          {"Aggiornare i Riferimenti alle tabelle esistenti?"},
          {"Fondere le controparti così abbinate?"}}},
    };
    return needed;
}

} // namespace

std::vector<AnswerNeed> AnswersNeeded(const Origin& origin, const std::vector<const Procedure*>& procedures) {
    const bool opens =
        std::any_of(procedures.begin(), procedures.end(), [](const auto* each) { return each->opensSource; });
    Needed needed = opens ? OfSources().value(origin.name) : Needed();
    for (const Procedure* procedure : procedures) {
        const Needed own = OfProcedures().value(procedure->name);
        needed.insert(needed.end(), own.begin(), own.end());
    }
    return needed;
}

} // namespace contract
