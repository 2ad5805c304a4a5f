// Open orders of Brantel's customers, and its price lists, which Quadrix numbers for sales and for purchases apart:
// SYS_IMP tells the number of each (codicilistino, V and A).

#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/kinds/PriceLists.h"
#include "adapters/contract/map/numberedLists.h"
#include "adapters/origins/Brantel/modImport_Brantel.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Brantel {

namespace {

const QString ListHeads = QStringLiteral("Listini");
const QString ListRows = QStringLiteral("ListiniRighe");

/// Rows of which nothing is left stay behind, and so do returns, of which less than nothing is ordered.
QString Settled(const SourceRow& row) {
    const double ordered = NumberOf(row, "Qta");
    if (row.IsBlank("QtaEvasa") || NumberOf(row, "QtaEvasa") < ordered) {
        return {};
    }
    return ordered < 0 ? QStringLiteral("riga di reso, con quantità negativa")
                       : QStringLiteral("riga senza quantità da consegnare");
}

/// What is still to be delivered of an order is imported, and what has been delivered in part.
Documents Ordini() {
    const QString heads = QStringLiteral("OrdiniTestata");
    return {
        .frame = {.module = Module,
                  .procedure = "ImportOrdiniBrantel",
                  .announcement = "Inizio importazione Ordini Aperti da Brantel",
                  .step = "Ordini aperti",
                  .completion = "Ordini Aperti Brantel importati correttamente: %1",
                  .confirmation = "Importare gli Ordini Aperti?"},
        .source =
            {.table = heads, .key = "Numero", .order = "Anno, Numero", .where = "Tipo = 'C'", .naming = "Anno, Numero"},
        .rows = {.table = "OrdiniRighe", .on = {{"IdOrdine"}}, .order = "Riga"},
        .reading = Reading::HeadThenRows,
        .kinds = {{.cause = "ORDCL", .type = "ORD", .family = Sales}},
        .head =
            {
                .number = "Numero",
                .day = "Data",
                .year = "Anno",
                .series = "Serie",
                .counterparty = {"CodCliente", CustomerOf()},
                .lines =
                    {
                        {"DTRIC", "RifCliente", Text()},
                        {"DTRID", "DataRif", Day()},
                        {"DTMOP", "CodPagamento", Translated(Anagrafiche, "CodPagamento")},
                        {"DTVAL", "CodValuta", Currency(Anagrafiche, "CodValuta")},
                        {"DTPOR", "Porto", Translated(heads, "Porto")},
                        {"DTNOT", "Note", Text()},
                    },
            },
        .row =
            {
                .number = "Riga",
                .article = {"CodArticolo", Article()},
                .description = "Descrizione",
                .unit = {"Um", ArticleUnit("")},
                .quantity = "Qta",
                .delivered = "QtaEvasa",
                .price = "Prezzo",
                .discounts = {"Sconto1", "Sconto2"},
                .vatCode = {"CodIva", NotBlank(VatCode(Articoli, "CodIva"))},
                .lines = {{"DRCOR", "DataConsegna", Day()}, {"DRNOT", "Note", Text()}},
            },
        .leavesOut = Settled,
    };
}

/// Lists of sales and of purchases count apart.
Rule ListCode() {
    const Rule sales = NumberedList(SalesLists);
    return {QStringLiteral("%1, per gli acquisti (ultima colonna) %2").arg(sales.text, PurchaseLists),
            [sales = sales.apply, purchases = NumberedList(PurchaseLists).apply](const RuleInput& input) {
                const bool isPurchase =
                    input.row.Text(input.columns.last()).compare(PurchaseLists, Qt::CaseInsensitive) == 0;
                const QStringList column{input.columns.first()};
                return (isPurchase ? purchases : sales)({input.session, input.row, column, input.facts});
            }};
}

PriceLists Listini() {
    const std::vector<Tie> ofList{{"CodListino"}};
    return {
        .frame = {.module = Module, .procedure = "ImportListiniBrantel", .confirmation = "Importare i Listini?"},
        .source = {.table = ListRows,
                   .key = "CodListino",
                   .order = "CodListino, CodArticolo, DataInizio, QtaDa",
                   .naming = "CodListino, CodArticolo, QtaDa",
                   .joins = {{.table = ListHeads, .on = ofList, .columns = {"Descrizione", "Tipo", "Valuta"}}}},
        .article = {"CodArticolo", Article()},
        .prices = {{
            .list = {"CodListino, Tipo", ListCode()},
            .direction = "Tipo",
            .description = "Descrizione",
            .currency = {"Valuta", Currency(Anagrafiche, "CodValuta")},
            .since = {"CodListino", OfFirst(ListRows, {.table = ListHeads, .on = ofList}, "DataInizio", Day())},
            .from = "DataInizio",
            .to = "DataFine",
            .scales = {{.quantityFrom = "QtaDa", .price = "Prezzo", .discounts = {"Sconto1", "Sconto2", "Sconto3"}}},
        }},
    };
}

} // namespace

Procedure ImportOrdiniBrantel() { return ProcedureOf(Button::Doc, Ordini()); }

Procedure ImportListiniBrantel() { return ProcedureOf(Button::Piano, Listini()); }

} // namespace modImport_Brantel
