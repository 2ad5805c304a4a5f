// Orders of Visual Space, of customers and to suppliers: those registered from a day on and not settled, with what is
// still to be delivered.

#include "adapters/origins/VS/modImport_VS.h"

#include "adapters/contract/map/lookups.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_VS {

namespace {

/// Orders of one kind. The causes are none of other origins, whose orders may stand in the same company.
struct Orders {
    QString procedure;
    QString heads;
    QString rows;
    bool sold;
    QString cause;
    QString step; ///< for the progress dialog and messages
};

/// The counterparty of a code, whatever it came from.
Rule Counterparty(bool customer) {
    return {"controparte come la trova GetNewControparteFromVisual; riga abbandonata se manca",
            [customer](const RuleInput& input) -> RuleValue {
                const QString code = input.Text();
                return FoundParty(GetNewControparteFromVisual(input.session, input.Value(), customer), code,
                                  RoleText(customer));
            },
            Side::Both, RegisterReads(customer)};
}

/// Rows that are delivered in full stay behind, and so do returns, of which less than nothing is ordered; a text, which
/// has no amount, comes along.
QString LeftOut(const SourceRow& row) {
    const double ordered = NumberOf(row, "QTA");
    const double delivered = NumberOf(row, "QTA_EVASA");
    const bool isText = row.IsBlank("COD_ARTICOLO") && (ordered == 0 || NumberOf(row, "PREZZO") == 0);
    if (isText || delivered < ordered) {
        return {};
    }
    return ordered < 0 && delivered > ordered ? QStringLiteral("riga di reso, con quantità negativa")
                                              : QStringLiteral("riga già consegnata");
}

Documents OrdersOf(const Orders& orders) {
    const QString& parties = orders.sold ? Clienti : Fornitori;
    return {
        .frame = {.module = Module,
                  .procedure = orders.procedure,
                  .announcement = QString("Inizio importazione " + orders.step + " da Visual Space"),
                  .step = orders.step,
                  .completion = QString(orders.step + " Visual Space importati correttamente: %1")},
        .source = {.table = orders.heads,
                   .key = "NUM_ORDINE",
                   .order = "ANNO, NUM_ORDINE, NUM_RIGA",
                   .where = "(T.SALDATO = 0 OR T.SALDATO IS NULL)",
                   .naming = "ANNO, NUM_ORDINE, NUM_RIGA",
                   .group = {"ANNO", "NUM_ORDINE"}},
        .rows = {.table = orders.rows, .on = {{"ANNO"}, {"NUM_ORDINE"}}, .order = "NUM_RIGA"},
        .kinds = {{.cause = orders.cause, .type = "ORD", .family = orders.sold ? Sales : Purchases}},
        .head =
            {
                .number = "NUM_ORDINE",
                .day = "DATA_REG",
                .year = "ANNO",
                .counterparty = {orders.sold ? CodCliente : CodFornitore, Counterparty(orders.sold)},
                .lines =
                    {
                        {"DTRIC", "RIF_ORDINE", Text()},
                        {"DTRID", "DATA_RIF", Day()},
                        {"DTNOT", "NOTE", Text()},
                        {"DTMOP", "COD_PAGAMENTO", Translated(parties, "COD_PAGAMENTO")},
                        {"DTVAL", "COD_VALUTA", Currency(parties, "COD_VALUTA")},
                    },
            },
        .row =
            {
                .number = "NUM_RIGA",
                .article = {"COD_ARTICOLO", Article()},
                .description = "DESCRIZIONE",
                .unit = {"UM", TranslatedOrUpper(ArticoliTable, "UM", "")},
                .quantity = "QTA",
                .delivered = "QTA_EVASA",
                .price = "PREZZO",
                .discounts = {"SCONTO_1", "SCONTO_2"},
                .vatCode = {"COD_IVA", NotBlank(VatCode(ArticoliTable, "COD_IVA"))},
                .lines = {{"DRCOR", "DATA_CONSEGNA", NotBlank(Day())}},
            },
        .leavesOut = LeftOut,
        .further = {{}, {{orders.heads, {"SALDATO"}}}, {}},
    };
}

} // namespace

Documents DocVen() {
    return OrdersOf({"ImportDocVenVSP", "T_ORDINI_CLI", "R_ORDINI_CLI", true, "ORDCV", "Ordini di Vendita"});
}

Documents DocAcq() {
    return OrdersOf({"ImportDocAcqVSP", "T_ORDINI_FOR", "R_ORDINI_FOR", false, "ORDFV", "Ordini di Acquisto"});
}

} // namespace modImport_VS
