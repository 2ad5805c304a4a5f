// Orders of Visual Space, of customers and to suppliers: those registered from a day on and not settled, with what is
// still to be delivered.

#include "adapters/origins/VS/modImport_VS.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/OpenDocument.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;

namespace modImport_VS {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

/// Orders of one kind. The causes are none of other origins, whose orders may stand in the same company.
struct Orders {
    const Family* family;
    QString heads;
    QString rows;
    QString counterparties;
    QString counterparty; ///< column of the head
    QString cause;
    QString step; ///< for the progress dialog and messages
};
const Orders Sold{&Sales,
                  QStringLiteral("T_ORDINI_CLI"),
                  QStringLiteral("R_ORDINI_CLI"),
                  Clienti,
                  QStringLiteral("COD_CLIENTE"),
                  QStringLiteral("ORDCV"),
                  QStringLiteral("Ordini di Vendita")};
const Orders Bought{&Purchases,
                    QStringLiteral("T_ORDINI_FOR"),
                    QStringLiteral("R_ORDINI_FOR"),
                    Fornitori,
                    QStringLiteral("COD_FORNITORE"),
                    QStringLiteral("ORDFV"),
                    QStringLiteral("Ordini di Acquisto")};

/// Type of the orders when CAU_DOC lacks their cause.
const QString OrderType = QStringLiteral("ORD");

QString ColumnsOf(const Orders& orders) {
    return "T.ANNO, T.NUM_ORDINE, T.DATA_REG, T." + orders.counterparty +
           ", T.RIF_ORDINE, T.DATA_RIF, T.COD_PAGAMENTO, T.COD_VALUTA, T.NOTE, R.NUM_RIGA, R.COD_ARTICOLO, "
           "R.DESCRIZIONE, R.UM, R.QTA, R.QTA_EVASA, R.PREZZO, R.SCONTO_1, R.SCONTO_2, R.COD_IVA, R.DATA_CONSEGNA";
}

// --- Orders -------------------------------------------------------------------------------------------------------

OpenDocument::Head HeadOf(ImportRun& run, const Orders& orders, const SourceRow& row, OpenDocument& document) {
    Session& session = run.GetSession();
    const bool customer = orders.family->number == Sales.number;
    const QString code = row.Text(orders.counterparty);
    const QString counterparty = GetNewControparteFromVisual(run, code, customer);
    if (counterparty.isEmpty()) {
        throw ImportError(
            QStringLiteral("colonna '%1': nessuna controparte ha il codice %2 '%3', né la sua partita IVA")
                .arg(orders.counterparty, customer ? QStringLiteral("cliente") : QStringLiteral("fornitore"), code));
    }
    const DocumentHead head{document.Writer().CauseOf(orders.cause, OrderType),
                            schema::defaults::NoSeries,
                            row.Text("NUM_ORDINE"),
                            DateOf(row, "DATA_REG"),
                            static_cast<int>(NumberOf(row, "ANNO")),
                            counterparty,
                            LookUp(session, "CON_TRO", "CDCON", counterparty, "CORAS"),
                            schema::defaults::ToDeliver};
    const auto more = [&session, &row, &orders](TargetRow& target) {
        target.Set("DTRIC", row.Text("RIF_ORDINE"));
        target.Set("DTRID", DateOf(row, "DATA_RIF"));
        target.Set("DTNOT", row.Text("NOTE"));
        const QString& list = orders.counterparties;
        if (const QString term = modImport::GetNewCode(session, list, "COD_PAGAMENTO", row.Text("COD_PAGAMENTO"), true);
            !term.isEmpty()) {
            target.Set("DTMOP", term);
        }
        target.Set("DTVAL", CurrencyOf(session, list, "COD_VALUTA", row.Text("COD_VALUTA")));
    };
    return {head, more};
}

DocumentRow RowOf(ImportRun& run, const SourceRow& row) {
    using namespace schema::defaults;
    Session& session = run.GetSession();
    const QString unit = row.Text("UM");
    const QString knownUnit = modImport::GetNewCode(session, Articoli, "UM", unit, true);
    DocumentRow values;
    values.number = static_cast<int>(NumberOf(row, "NUM_RIGA"));
    values.article = row.IsBlank("COD_ARTICOLO") ? QString() : ArticleOf(run, row.Text("COD_ARTICOLO"));
    values.type = values.article.isEmpty() ? DescriptionRow : NormalRow;
    values.description = row.Text("DESCRIZIONE");
    values.unit = knownUnit.isEmpty() ? unit.toUpper() : knownUnit;
    values.quantity = NumberOf(row, "QTA");
    values.delivered = NumberOf(row, "QTA_EVASA");
    values.price = NumberOf(row, "PREZZO");
    values.discounts = {NumberOf(row, "SCONTO_1"), NumberOf(row, "SCONTO_2"), 0};
    values.vatCode = VatCodeOf(session, Articoli, "COD_IVA", row.Text("COD_IVA"));
    values.state = values.delivered > 0 ? PartlyDelivered : ToDeliver;
    return values;
}

/// Rows that are delivered in full stay behind; a text has no quantity and comes along.
bool IsDelivered(const SourceRow& row) {
    return !row.IsBlank("COD_ARTICOLO") && NumberOf(row, "QTA_EVASA") >= NumberOf(row, "QTA");
}

RowOutcome ImportRow(ImportRun& run, const Orders& orders, const SourceRow& row, OpenDocument& document) {
    if (IsDelivered(row)) {
        return run.Skip("riga già consegnata");
    }
    const QString key = row.Text("ANNO") + '/' + row.Text("NUM_ORDINE");
    return document.Row(
        key, [&] { return HeadOf(run, orders, row, document); }, [&] { return RowOf(run, row); },
        [&row](TargetRow& target) {
            if (!row.IsBlank("DATA_CONSEGNA")) {
                target.Set("DRCOR", DateOf(row, "DATA_CONSEGNA"));
            }
        });
}

Needs NeedsOf(const Orders& orders) {
    Needs needs{{},
                {{orders.heads,
                  {"ANNO", "NUM_ORDINE", "DATA_REG", orders.counterparty, "RIF_ORDINE", "DATA_RIF", "COD_PAGAMENTO",
                   "COD_VALUTA", "NOTE", "SALDATO"}},
                 {orders.rows,
                  {"ANNO", "NUM_ORDINE", "NUM_RIGA", "COD_ARTICOLO", "DESCRIZIONE", "UM", "QTA", "QTA_EVASA", "PREZZO",
                   "SCONTO_1", "SCONTO_2", "COD_IVA", "DATA_CONSEGNA"}},
                 {orders.counterparties, {orders.counterparty, "PARTITA_IVA", "CODICE_FISCALE"}}},
                DocumentNeeds(*orders.family)};
    needs.writes.push_back({orders.family->head, {"DTRIC", "DTRID", "DTNOT", "DTMOP"}});
    needs.writes.push_back({orders.family->row, {"DRCOR"}});
    return needs;
}

void ImportOrders(ImportRun& run, const Orders& orders, const Needs& needs, const QString& singleCode, bool reset) {
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        Session& session = run.GetSession();
        run.Announce("Inizio importazione " + orders.step + " da Visual Space");
        run.Preflight(needs);
        const DocumentSettings settings = ReadDocumentSettings(session);
        const TriggersOff triggers(run);
        RemoveImportedDocuments(run, reset, {orders.cause});
        OpenDocument document(run, *orders.family, {settings.checkArticles, false});
        const QString same = "O.ANNO = L.ANNO AND O.NUM_ORDINE = L.NUM_ORDINE";
        TellUnmatched(run, {orders.rows, orders.heads, same, "NUM_ORDINE", {}});
        TellUnmatched(run, {orders.heads, orders.rows, same, "NUM_ORDINE", "L.SALDATO = 0"});
        const QString from = "FROM " + orders.heads + " T INNER JOIN " + orders.rows +
                             " R ON R.ANNO = T.ANNO AND R.NUM_ORDINE = T.NUM_ORDINE WHERE T.DATA_REG >= " +
                             LiteralOf(session.SourceConnection(), settings.from) + " AND T.SALDATO = 0" +
                             run.OnlyCode(" AND", "T.NUM_ORDINE", singleCode);
        const ImportRun::Loop loop{orders.step,
                                   orders.heads,
                                   "ANNO, NUM_ORDINE, NUM_RIGA",
                                   "SELECT COUNT(*) " + from,
                                   "SELECT " + ColumnsOf(orders) + " " + from +
                                       " ORDER BY T.ANNO, T.NUM_ORDINE, R.NUM_RIGA",
                                   {"ANNO", "NUM_ORDINE"}};
        const bool toTheEnd = run.Rows(
            loop, [&](const SourceRow& row) { return ImportRow(run, orders, row, document); }, [&] { document.End(); });
        if (toTheEnd) {
            document.TellDocumentsLeft({orders.cause}, settings.from);
            run.Complete(
                QStringLiteral("%1 Visual Space importati correttamente: %2").arg(orders.step).arg(document.Count()));
        }
    });
}

} // namespace

const Needs& DocVenNeeds() {
    static const Needs needs = NeedsOf(Sold);
    return needs;
}

void ImportDocVenVSP(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportDocVenVSP", singleCode);
    ImportOrders(run, Sold, DocVenNeeds(), singleCode, reset);
}

const Needs& DocAcqNeeds() {
    static const Needs needs = NeedsOf(Bought);
    return needs;
}

void ImportDocAcqVSP(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportDocAcqVSP", singleCode);
    ImportOrders(run, Bought, DocAcqNeeds(), singleCode, reset);
}

} // namespace modImport_VS
