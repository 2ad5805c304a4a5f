// Access: an Access file, ACCESS unless the setting Databasename names another; where that is none, one that the
// operator chooses. Customers and suppliers (T_clienti_fornitori), articles (T_prodotti), bills (T_prodotti_servizi),
// whose rows are components ('P') or services ('S'), which become phases. The name of T_prodotti_servizi is known; all
// other tables and every column are this system's own reading, fitted to an installation by "Tracciati/Access.ini".
// Known gaps: branches, price lists, stock, documents.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Access {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Access");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Parties = QStringLiteral("T_clienti_fornitori");
const QString Products = QStringLiteral("T_prodotti");
const QString BillRows = QStringLiteral("T_prodotti_servizi");
const QString Terms = QStringLiteral("T_pagamenti");

// --- Rules --------------------------------------------------------------------------------------------------------

/// Whether a flag says that something is no longer in use; a blank one says nothing.
Rule NoLongerActive() { return Or(NotBlank(Not(Flag())), false); }

/// CDART of the product of an id.
Rule ProductOf() { return Via(Products, "id", "codice", ArticleCode(Products, "codice")); }

/// The same of a component, whose row says that it is one.
Rule Component() {
    const Rule product = ProductOf();
    return {product.text + QStringLiteral("; riga abbandonata se l'ultima colonna non è \"P\""),
            [product](const RuleInput& input) {
                const QString kind = input.row.Text(input.columns.last());
                if (kind.compare(u"P", Qt::CaseInsensitive) != 0) {
                    throw ImportError(QStringLiteral("'%1' non è P (componente) né S (servizio)").arg(kind));
                }
                return product.apply({input.session, input.row, {input.columns.first()}, input.facts});
            },
            Side::Both, product.reads};
}

// --- Counterparties -----------------------------------------------------------------------------------------------

const PartyColumns Columns{
    .name = "ragione_sociale",
    .name2 = "ragione_sociale2",
    .street = "indirizzo",
    .postCode = "cap",
    .town = "citta",
    .province = "provincia",
    .country = "nazione",
    .vatNumber = "partita_iva",
    .taxCode = "codice_fiscale",
    .ownBank = "banca",
    .abi = "abi",
    .cab = "cab",
    .account = "conto",
    .iban = "iban",
    .discount1 = "sconto",
    .agent = "agente",
    .note = "note",
};

Counterparties Controparti() {
    const LineGroup usual(PartyLines(Parties, Columns).Over({}));
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiAccess"},
        .source = {.table = Parties, .key = "codice", .order = "codice"},
        .roles = ByFlags({.customer = "cliente", .supplier = "fornitore"}),
        .name = "ragione_sociale, ragione_sociale2",
        .vatNumber = "partita_iva",
        .taxCode = "codice_fiscale",
        .lines =
            {
                usual,
                ByRole("COMOP", "COMOA", "id_pagamento", Via(Terms, "id", "codice", Translated(Terms, "codice"))),
                {"COLSC", "listino", CustomerOnly(Translated(Parties, "listino"))},
                {"COANN", "attivo", NoLongerActive()},
            },
        .numbers = {.office = "telefono",
                    .office2 = "telefono2",
                    .fax = "fax",
                    .mobile = "cellulare",
                    .mail = "email",
                    .web = "sito_web"},
        .contacts = {{.lines = {{"RFNOM", "referente", Text()}}}},
        .more = SetIban,
    };
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliAccess"},
        .source = {.table = Products, .key = "codice", .order = "codice"},
        .code = {"codice", ArticleCode(Products, "codice")},
        .description = "descrizione",
        .lines =
            {
                {"CDEXT", "codice", First(50)},
                {"IDEST", "id", Text()},
                {"ARDE2", "descrizione2", First(100)},
                {"ARUMS", "um", Unit(Products, "um", schema::defaults::Unit)},
                {"ARUM2", "um2", Unit(Products, "um2", "")},
                {"ARCOE", "coefficiente", NotZero()},
                {"ARIVA", "iva", VatCode(Products, "iva")},
                {"ARCLA", "tipo", Choice({{"Prodotto", "PF"}, {"Semilavorato", "SL"}}, "CM")},
                {"ARFAM", "categoria", TranslatedOrKnown(Products, "categoria", "FAM_PRO")},
                {"ARCOS", "costo", RoundedTo(6)},
                {"ARPRZ", "prezzo", RoundedTo(6)},
                {"ARPSN", "peso", RoundedTo(3)},
                {"ARSMN", "scorta_minima", RoundedTo(6)},
                {"ARLOR", "lotto", RoundedTo(6)},
                {"ARGGA", "giorni", RoundedTo(0)},
                {"ARNOT", "note", Text()},
                {"ARANN", "attivo", NoLongerActive()},
            },
        .suppliers = {{.supplier = {"id_fornitore", Via(Parties, "id", "codice", KnownSupplier())},
                       .ownCode = "codice_fornitore",
                       .price = "costo",
                       .leadDays = "giorni",
                       .lot = "lotto"}},
        .more = SetMarkUp,
        .further = {{}, {}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

// --- Bills --------------------------------------------------------------------------------------------------------

/// The rows of a bill that are services, or those that are not.
ChildTable RowsOf(const QString& where) {
    return {.table = BillRows,
            .on = {{"id_prodotto"}},
            .order = "progressivo",
            .where = where,
            .naming = "id_prodotto, progressivo"};
}

Bills Distinte() {
    return {
        .frame = {.module = Module, .procedure = "ImportDistinteAccess", .log = LogStart::Behind},
        .source = {.table = BillRows, .key = "id_prodotto", .order = "id_prodotto", .distinct = true},
        .article = {"id_prodotto", ProductOf()},
        .components = {.rows = RowsOf("(tipo IS NULL OR tipo <> 'S')"),
                       .article = {"id_componente, tipo", Component()},
                       .quantity = "quantita",
                       .note = "note",
                       .position = "progressivo"},
        .phases = BillPhases{.rows = RowsOf("tipo = 'S'"),
                             .key = "progressivo",
                             .number = {"progressivo", Times(10)},
                             .work = {"servizio",
                                      Or(Translated("Lavorazioni", "Descrizione"), schema::defaults::GenericWork)},
                             .note = "note",
                             .unitTime = {"quantita", Times(60)}, // hours
                             .cost = "costo"},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Access",
        Module,
        {.kind = "Access", .prepare = sourceSettings::ChosenAccessFile("ACCESS"), .names = Naming::OurReading},
        Buttons("YYYNN---"),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti()),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Dis, Distinte()),
        },
    };
    return origin;
}

} // namespace modImport_Access
