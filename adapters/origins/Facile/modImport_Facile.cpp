// Facile, one customer's own database: SQL Server, FACILE unless the setting Databasename names another.
// Customers and suppliers with destinations, articles, bills with phases, open orders of customers, price lists.
// Nothing is published: every table and column is this system's own reading, fitted to an installation by
// "Tracciati/Facile.ini". A price of LISTINIRIGHE holds from QTADA on; the phases of LAVORAZIONI count minutes, and
// components are consumed by the first of them, as nothing names another.
// Known gaps: orders to suppliers, whose button is hidden; stock.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/kinds/PriceLists.h"
#include "adapters/contract/map/numberedLists.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Facile {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Facile");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Clienti = QStringLiteral("CLIENTI");
const QString Fornitori = QStringLiteral("FORNITORI");
const QString ArticoliTable = QStringLiteral("ARTICOLI");
const QString DistinteTable = QStringLiteral("DISTINTE");
const QString ListRows = QStringLiteral("LISTINIRIGHE");

// --- Rules --------------------------------------------------------------------------------------------------------

Rule Article() { return ArticleCode(ArticoliTable, "CODICE"); }

Rule ArticleUnit(const QString& blank) { return Unit(ArticoliTable, "UM", blank); }

// --- Counterparties -----------------------------------------------------------------------------------------------

Branches Destinazioni() {
    const QString table = QStringLiteral("DESTINAZIONI");
    return {.rows = {.table = table, .on = {{"CODCLI", "CODICE"}}, .order = "PROG", .naming = "CODCLI, PROG"},
            .lines = BranchLines(table, {.number = "PROG",
                                         .name = "RAGSOC",
                                         .street = "INDIRIZZO",
                                         .postCode = "CAP",
                                         .town = "CITTA",
                                         .province = "PROVINCIA"})};
}

/// The two tables have the same columns.
Lines LinesOf(const QString& table) {
    const Lines lines = PartyLines(table, {.name = "RAGSOC",
                                           .name2 = "RAGSOC2",
                                           .street = "INDIRIZZO",
                                           .postCode = "CAP",
                                           .town = "CITTA",
                                           .province = "PROVINCIA",
                                           .country = "NAZIONE",
                                           .vatNumber = "PARTITAIVA",
                                           .taxCode = "CODFISCALE",
                                           .payment = "CODPAG",
                                           .abi = "ABI",
                                           .cab = "CAB",
                                           .cin = "CIN",
                                           .account = "CONTO",
                                           .iban = "IBAN",
                                           .discount1 = "SCONTO1",
                                           .discount2 = "SCONTO2",
                                           .agent = "CODAGE",
                                           .currency = "VALUTA",
                                           .exemption = "CODESE",
                                           .isCancelled = "DISATTIVO",
                                           .note = "NOTE"});
    return {{lines.Over({})}, ByRole("COLSC", "COLSF", "CODLIS", NotBlank(KeptList("CODLIS")))};
}

Counterparties Controparti(const QString& table, bool customers) {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportContropartiFacile",
                  .step = customers ? "Clienti" : "Fornitori"},
        .source = {.table = table, .key = "CODICE", .order = "CODICE"},
        .roles = Always(RoleOf(customers)),
        .name = "RAGSOC, RAGSOC2",
        .vatNumber = "PARTITAIVA",
        .taxCode = "CODFISCALE",
        .lines = LinesOf(table),
        .numbers = {.office = "TELEFONO",
                    .office2 = "TELEFONO2",
                    .fax = "FAX",
                    .mobile = "CELLULARE",
                    .mail = "EMAIL",
                    .web = "SITOWEB"},
        .branches = customers ? std::vector<Branches>{Destinazioni()} : std::vector<Branches>(),
        .contacts = {{.lines = {{"RFNOM", "REFERENTE", Text()}}}},
        .empties = customers,
        .more = SetIban,
    };
}

/// Customers come first, and empty the tables.
Procedure ImportControparti() {
    const Counterparties customers = Controparti(Clienti, true);
    return ProcedureOf(Button::Cli, FrameOf(customers), {PartOf(customers), PartOf(Controparti(Fornitori, false))});
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliFacile"},
        .source = {.table = ArticoliTable, .key = "CODICE", .order = "CODICE"},
        .code = {"CODICE", Article()},
        .description = "DESCRIZIONE",
        .lines =
            {
                {"CDEXT", "CODICE", Text()},
                {"ARDE2", "DESCRIZIONE2", First(100)},
                {"ARUMS", "UM", ArticleUnit(schema::defaults::Unit)},
                {"ARUM2", "UM2", ArticleUnit("")},
                {"ARCOE", "FATTORE", NotZero()},
                {"ARIVA", "CODIVA", VatCode(ArticoliTable, "CODIVA")},
                {"ARCLA", "TIPO", Choice({{"P", "PF"}, {"S", "SL"}}, "CM")},
                {"ARFAM", "CATEGORIA", TranslatedOrKnown(ArticoliTable, "CATEGORIA", "FAM_PRO")},
                {"ARCOS", "COSTO", RoundedTo(6)},
                {"ARPRZ", "PREZZO", RoundedTo(6)},
                {"ARPSN", "PESO", RoundedTo(3)},
                {"ARSMN", "SCORTAMIN", RoundedTo(6)},
                {"ARLOR", "LOTTO", RoundedTo(6)},
                {"ARGGA", "GGCONSEGNA", RoundedTo(0)},
                {"ARNOT", "NOTE", Text()},
                {"ARANN", "DISATTIVO", Flag()},
            },
        .suppliers = {{.supplier = {"CODFOR", KnownSupplier()},
                       .ownCode = "CODARTFOR",
                       .price = "COSTO",
                       .leadDays = "GGCONSEGNA",
                       .lot = "LOTTO"}},
        .location = "UBICAZIONE",
        .more = SetMarkUp,
        .further = {{}, {}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

// --- Bills --------------------------------------------------------------------------------------------------------

Bills Distinte() {
    const QString phases = QStringLiteral("LAVORAZIONI");
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistinteFacile",
                  .announcement = "Inizio importazione Distinte Base da Facile",
                  .completion = "Distinte Base Facile importate correttamente: %1 (Fasi: %2, Comp.: %3)"},
        .source = {.table = DistinteTable, .key = "CODPADRE", .order = "CODPADRE", .distinct = true},
        .article = {"CODPADRE", Article()},
        .components =
            {
                .rows = {.table = DistinteTable, .on = {{"CODPADRE"}}, .order = "RIGA", .naming = "CODPADRE, RIGA"},
                .article = {"CODFIGLIO", Article()},
                .quantity = "QTA",
                .note = "NOTE",
                .position = "RIGA",
            },
        .phases =
            BillPhases{
                .rows = {.table = phases, .on = {{"CODPADRE"}}, .order = "SEQ", .naming = "CODPADRE, SEQ"},
                .key = "SEQ",
                .number = "SEQ",
                .work = {"CODLAV", Or(Translated("Lavorazioni", "CODLAV"), schema::defaults::GenericWork)},
                .setUpTime = "TEMPOSET",
                .unitTime = "TEMPOUN",
                .cost = "COSTO",
            },
    };
}

// --- Orders of customers ------------------------------------------------------------------------------------------

Documents Ordini() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportOrdiniFacile",
                  .announcement = "Inizio importazione Ordini da Facile",
                  .step = "Ordini",
                  .completion = "Ordini Facile importati correttamente: %1",
                  .confirmation = "Importare gli Ordini?"},
        .source = {.table = "ORDINI",
                   .key = "NUMERO",
                   .order = "ANNO, NUMERO, RIGA",
                   .where = "T.TIPO = 'C' AND (T.EVASO = 0 OR T.EVASO IS NULL)",
                   .naming = "ANNO, NUMERO, RIGA",
                   .group = {"ANNO", "NUMERO"}},
        .rows = {.table = "ORDINIRIGHE", .on = {{"IDORDINE"}}, .order = "RIGA"},
        .kinds = {{.cause = "ORDCL", .type = "ORD", .family = Sales}},
        .head =
            {
                .number = "NUMERO",
                .day = "DATA",
                .year = "ANNO",
                .counterparty = {"CODCLI", CustomerOf()},
                .lines =
                    {
                        {"DTRIC", "RIFERIMENTO", Text()},
                        {"DTRID", "DATARIF", Day()},
                        {"DTMOP", "CODPAG", Translated(Clienti, "CODPAG")},
                        {"DTNOT", "NOTE", Text()},
                    },
            },
        .row =
            {
                .number = "RIGA",
                .article = {"CODART", Article()},
                .description = "DESCRIZIONE",
                .unit = {"UM", ArticleUnit("")},
                .quantity = "QTA",
                .delivered = "QTAEVASA",
                .price = "PREZZO",
                .discounts = {"SCONTO1", "SCONTO2"},
                .vatCode = {"CODIVA", NotBlank(VatCode(ArticoliTable, "CODIVA"))},
                .lines = {{"DRCOR", "DATACONS", Day()}},
            },
    };
}

// --- Price lists --------------------------------------------------------------------------------------------------

PriceLists Listini() {
    const std::vector<Tie> ofList{{"CODLIS"}};
    return {
        .frame = {.module = Module, .procedure = "ImportListiniFacile", .confirmation = "Importare i Listini?"},
        .source = {.table = ListRows,
                   .key = "CODLIS",
                   .order = "CODLIS, CODART, DATAINIZIO, QTADA",
                   .naming = "CODLIS, CODART, QTADA",
                   .joins = {{.table = "LISTINI", .on = ofList, .columns = {"DESCRIZIONE", "TIPO"}}}},
        .article = {"CODART", Article()},
        .prices = {{
            .list = {"CODLIS", KeptList("CODLIS")},
            .direction = "TIPO",
            .description = "DESCRIZIONE",
            .since = {"CODLIS", OfFirst(ListRows, {.table = "LISTINI", .on = ofList}, "DATAINIZIO", Day())},
            .from = "DATAINIZIO",
            .to = "DATAFINE",
            .scales = {{.quantityFrom = "QTADA", .price = "PREZZO", .discounts = {"SCONTO1", "SCONTO2", "SCONTO3"}}},
        }},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Facile",
        Module,
        {.kind = "SQL Server", .prepare = sourceSettings::Server("FACILE"), .names = Naming::OurReading},
        Buttons("YYYYN-Y-", {{Button::Cli, "Importa Controparti"},
                             {Button::Dis, "Importa Distinte"},
                             {Button::Doc, "Importa Ordini"},
                             {Button::Piano, "Importa Listini"}}),
        Shown::Keep,
        {
            ImportControparti(),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Dis, Distinte()),
            ProcedureOf(Button::Doc, Ordini()),
            ProcedureOf(Button::Piano, Listini()),
        },
    };
    return origin;
}

} // namespace modImport_Facile
