// Orders of Tessera: OrdCliT and OrdCliR hold the customers', OrdForT and OrdForR the suppliers'; OrdProT, OrdProR and
// OrdProF the production orders of the customers' rows.

#include "adapters/origins/Tessera/modImport_Tessera.h"

#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Tessera {

namespace {

/// The orders of one side.
struct Side {
    QString heads;
    QString rows;
    QString id;        ///< of the head, in both tables
    QString reference; ///< the counterparty's own number of the order
    DocumentKind kind;
};

/// State of an order: one of state 1 has been confirmed, which leaves it to be delivered: "CO" would be a closed
/// document to Quadrix, whose rows nobody delivers. Every state that is not named is closed.
Rule State() {
    using namespace schema::defaults;
    return Choice({{"0", ToDeliver}, {"1", ToDeliver}, {"4", PartlyDelivered}}, Delivered);
}

Documents OrdersOf(const Side& side) {
    return {
        .source = {.table = side.heads,
                   .key = "NumOrd",
                   .order = "AnnOrd, NumOrd, NumRig",
                   .naming = "AnnOrd, NumOrd, NumRig",
                   .group = {"AnnOrd", "NumOrd"}},
        .rows = {.table = side.rows, .on = {{side.id}}, .order = "NumRig"},
        .kinds = {side.kind},
        .head =
            {
                .number = "NumOrd",
                .day = "DatOrd",
                .year = "AnnOrd",
                .counterparty = {"IdCliFor", GetCodContropartiTessera(PartyOf())},
                .state = {"StatOrd", State()},
                .lines = {{"DTRIC", side.reference, Text()},
                          {"DTRID", "DatRif", Day()},
                          {"DTNOT", "Note", Text()},
                          {"DTMOP", "IdPag", PaymentTerm()}},
            },
        .row = {.number = "NumRig",
                .article = {"CodArt", Article()},
                .description = "DesArt",
                .unit = {"UniMis", UnitOr("")},
                .quantity = "Qta",
                .delivered = "QtaEva",
                .price = "Prezzo",
                .discounts = {"Sconto1", "Sconto2"},
                .vatCode = {"IdIva", GetCodIvaTessera(NotBlank(VatCode("Iva", "CodIva")))},
                .lines = {{"DRCOR", "DatCons", Day()}}},
    };
}

ProductionOrders Produzione() {
    return {
        .rows = {.table = "OrdProT", .on = {{"IdOrdCliR"}}, .order = "NumOrdP"},
        .number = "NumOrdP",
        .lines = {{"OPDAT", "DatOrdP", Day()},
                  {"OPDTC", "DatCons", Day()},
                  {"OPQTA", "Qta", FirstNotZero()},
                  {"OPSTA", "Stato", Text()}},
        .parts = {.rows = {.table = "OrdProR", .on = {{"IdOrdPro"}}, .order = "NumRig", .naming = "IdOrdPro, NumRig"},
                  .lines =
                      {
                          {"OCART", "CodArt", Article()},
                          {"OCDES", "DesArt", Text()},
                          {"OCQTA", "Qta", FirstNotZero()},
                          {"OCUMP", "UniMis", UnitOr("")},
                          {"OCPOS", "NumRig", FirstNotZero()},
                          {"OCSEQ", "NumFas", FirstNotZero()},
                      }},
        .phases = {.rows = {.table = "OrdProF", .on = {{"IdOrdPro"}}, .order = "NumFas"},
                   .lines =
                       {
                           {"FLSEQ", "NumFas", FirstNotZero()},
                           {"FLLAV", "CodLav", Work(Lavorazioni, "CodLav")},
                           {"FLQTA", "Qta", FirstNotZero()},
                           {"FLQTM", "QtaFat", FirstNotZero()},
                           {"FLSTA", "Stato", Text()},
                       }},
    };
}

} // namespace

Documents OrdCli() {
    Documents orders =
        OrdersOf({"OrdCliT", "OrdCliR", "IdOrdCli", "RifCli", {.cause = "ORDCL", .type = "ORD", .family = Sales}});
    orders.frame = {.module = Module,
                    .procedure = "ImportOrdCliTessera",
                    .announcement = "Inizio importazione Ordini Clienti da Tessera",
                    .step = "Ordini Clienti",
                    .completion = "Ordini Clienti Tessera importati correttamente: %1"};
    orders.source.where = "T.StatOrd IN (0, 1, 4)";
    orders.oldest = QDate(2006, 1, 1); // what is older is history that the installation left behind
    orders.production = Produzione();
    return orders;
}

Documents DocAcq() {
    Documents orders =
        OrdersOf({"OrdForT", "OrdForR", "IdOrdFor", "RifFor", {.cause = "ORDFO", .type = "ORD", .family = Purchases}});
    orders.frame = {.module = Module,
                    .procedure = "ImportDocAcqTessera",
                    .announcement = "Inizio importazione Documenti di Acquisto da Tessera",
                    .step = "Documenti di Acquisto",
                    .completion = "Documenti di Acquisto Tessera importati correttamente: %1"};
    orders.since = Since::Asked;
    orders.imported = Imported::Asked;
    return orders;
}

} // namespace modImport_Tessera
