// Puzzle: an ODBC data source, PUZZLE unless the setting DSN names another. Customers, then suppliers, with their
// branches and contacts.
// Nothing is known of its tables: every name is this system's own reading in the style of the house. What an
// installation calls otherwise stands in "Tracciati/Puzzle.ini". Known gaps: articles, documents.

#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/sourceSettings.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Puzzle {

const contract::Origin& Entry();

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

/// What customers and suppliers do not have in common: two tables of the same columns, but for agent and zone.
struct Parties {
    QString table;
    const char* mark; ///< of their branches and contacts (tipo)
    const char* procedure;
    const char* announcement;
    const char* step;
    const char* completion;
    Roles roles;
    LogStart log;
    QString agent = {};
    QString zone = {};
};

Parties Clienti() {
    return {.table = "clienti",
            .mark = "C",
            .procedure = "ImportClientiPuzzle",
            .announcement = "Inizio importazione Clienti",
            .step = "Clienti",
            .completion = "Clienti importati correttamente!",
            .roles = {.customer = true},
            .log = LogStart::Anew,
            .agent = "cod_agente",
            .zone = "cod_zona"};
}

Parties Fornitori() {
    return {.table = "fornitori",
            .mark = "F",
            .procedure = "ImportFornitoriPuzzle",
            .announcement = "Inizio importazione Fornitori",
            .step = "Fornitori",
            .completion = "Fornitori importati correttamente!",
            .roles = {.supplier = true},
            .log = LogStart::Behind};
}

/// Rows of a counterparty in a table that customers and suppliers share.
ChildTable RowsOf(const Parties& parties, const QString& table) {
    return {.table = table,
            .on = {{"codice"}},
            .order = "progressivo",
            .where = QStringLiteral("tipo = '%1'").arg(QLatin1String(parties.mark)),
            .naming = "tipo, codice, progressivo"};
}

// --- Counterparties -----------------------------------------------------------------------------------------------

Branches Destinazioni(const Parties& parties) {
    const QString table = QStringLiteral("destinazioni");
    return {
        .rows = RowsOf(parties, table),
        .lines = BranchLines(table, {.number = "progressivo",
                                     .name = "ragione_sociale",
                                     .street = "indirizzo",
                                     .houseNumber = "civico",
                                     .postCode = "cap",
                                     .town = "citta",
                                     .province = "provincia",
                                     .country = "nazione",
                                     .person = "referente",
                                     .isDefault = "predefinita"}),
        .numbers = {.office = "telefono", .fax = "fax"},
    };
}

Contacts Referenti(const Parties& parties) {
    return {
        .rows = RowsOf(parties, "referenti"),
        .lines = {{"RFNOM", "nominativo", Text()}, {"RFQUA", "ruolo", Text()}, {"RFNOT", "note", Text()}},
        .numbers = {.office = "telefono", .mobile = "cellulare", .mail = "email"},
    };
}

Lines PartyLinesOf(const Parties& parties) {
    const Lines lines = PartyLines(parties.table, {.name = "ragione_sociale",
                                                   .name2 = "ragione_sociale2",
                                                   .isPerson = "persona_fisica",
                                                   .surname = "cognome",
                                                   .firstName = "nome",
                                                   .street = "indirizzo",
                                                   .postCode = "cap",
                                                   .town = "citta",
                                                   .province = "provincia",
                                                   .country = "nazione",
                                                   .vatNumber = "partita_iva",
                                                   .taxCode = "codice_fiscale",
                                                   .payment = "cod_pagamento",
                                                   .ownBank = "cod_banca_azienda",
                                                   .abi = "abi",
                                                   .cab = "cab_banca",
                                                   .cin = "cin",
                                                   .account = "conto_corrente",
                                                   .iban = "iban",
                                                   .bic = "bic",
                                                   .discount1 = "sconto1",
                                                   .discount2 = "sconto2",
                                                   .agent = parties.agent,
                                                   .list = "cod_listino",
                                                   .currency = "valuta",
                                                   .language = "lingua",
                                                   .zone = parties.zone,
                                                   .category = "cod_categoria",
                                                   .exemption = "cod_iva",
                                                   .port = "cod_porto",
                                                   .carrier = "cod_vettore",
                                                   .credit = "fido",
                                                   .ledger = "conto_contabile",
                                                   .isBlocked = "bloccato",
                                                   .isCancelled = "annullato",
                                                   .note = "note",
                                                   .created = "data_inserimento"});
    return {{lines.Over({})}, {"CONRC", "civico", Text()}, {"COPEC", "pec", NotBlank(Text())}};
}

/// Customers come first, and empty the tables.
Counterparties Controparti(const Parties& parties) {
    return {
        .frame = {.module = "modImport_Puzzle",
                  .procedure = parties.procedure,
                  .announcement = parties.announcement,
                  .log = parties.log,
                  .step = parties.step,
                  .completion = parties.completion},
        .source = {.table = parties.table, .key = "codice", .order = "codice"},
        .roles = Always(parties.roles),
        .name = "ragione_sociale, ragione_sociale2",
        .vatNumber = "partita_iva",
        .taxCode = "codice_fiscale",
        .lines = PartyLinesOf(parties),
        .numbers = {.office = "telefono",
                    .office2 = "telefono2",
                    .fax = "fax",
                    .mobile = "cellulare",
                    .mail = "email",
                    .web = "sito_web"},
        .created = "data_inserimento",
        .branches = {Destinazioni(parties)},
        .contacts = {{.lines = {{"RFNOM", "referente", Text()}}}, Referenti(parties)},
        .empties = parties.roles.customer,
        .more = SetIban,
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Puzzle",
        "modImport_Puzzle",
        {.kind = "ODBC", .prepare = sourceSettings::DataSource("PUZZLE"), .names = Naming::OurReading},
        Buttons("YNNNNN--"),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti(Clienti())),
            ProcedureOf(Button::Cli, Controparti(Fornitori())),
        },
    };
    return origin;
}

} // namespace modImport_Puzzle
