// Carriers of Metodo (TABSPEDIZ), and the one that a counterparty usually has.

#include "adapters/origins/Metodo/modImport_Metodo.h"

#include "adapters/contract/map/carrierCodes.h"
#include "adapters/contract/map/lookups.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Metodo {

namespace {

const QString Spedizionieri = QStringLiteral("TABSPEDIZ");

const Mapping& Vettore() {
    static const Mapping mapping{"CON_TRO", Riservati, {{"COVEP", "CODSPED", Carrier(Spedizionieri, "CODICE")}}, true};
    return mapping;
}

RowOutcome AssegnaVettore(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString party = ImportedParty(session, row);
    if (party.isEmpty()) {
        return run.Skip(PartyMissing);
    }
    TargetRow target(run, "CON_TRO");
    Vettore().Apply(target, session, row, {});
    const QString carrier = target.Value("COVEP").toString();
    if (carrier.isEmpty() || carrier == LookUp(session, "CON_TRO", "CDCON", party, "COVEP")) {
        return run.Skip(carrier.isEmpty() ? "vettore non importato" : "vettore già assegnato");
    }
    target.Update("WHERE CDCON = " + run.Quoted(party));
    return RowOutcome::Updated;
}

} // namespace

/// They come behind the counterparties, whose numbers they must not take.
Counterparties Vettori() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiMetodo", .step = "Vettori"},
        .source = {.table = Spedizionieri, .key = "CODICE", .order = "CODICE"},
        .roles = Always({.carrier = true}),
        .name = "RAGIONESOCIALE",
        .vatNumber = "PartitaIva",
        .lines =
            {
                {"CORAS", "RAGIONESOCIALE", First(35)},
                {"CORA2", "RAGIONESOCIALE", From(36)},
                {"COIND", "INDIRIZZO", Text()},
                {"COCAP", "CAP", Text()},
                {"COCIT", "LOCALITA", First(60)},
                {"COPRO", "PROVINCIA", Text()},
                {"COIVA", "PartitaIva", NotBlank(Text())},
            },
        .numbers = {.office = "TELEFONO", .mail = "EMAIL"},
        .empties = false,
    };
}

/// The carrier that a counterparty usually has, once carriers have their codes.
ImportPart VettoriAbituali() {
    return {
        .step = "Vettori delle controparti",
        .source = {.table = Anagrafica,
                   .key = "CODCONTO",
                   .order = "CODCONTO",
                   .where = "T.TIPOCONTO IN ('C', 'F') AND J1.CODSPED > 0",
                   .joins = {LastYear({"CODSPED"})}},
        .needs = {{&Vettore()}, {{Anagrafica, {"TIPOCONTO"}}}, {{"CON_TRO", {"CDCON", "COCGE", "COFGE"}}}},
        .make = Importing(AssegnaVettore),
    };
}

} // namespace modImport_Metodo
