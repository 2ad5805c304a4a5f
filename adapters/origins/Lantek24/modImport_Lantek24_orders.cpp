// Production orders of Lantek 24: MMNN_MMOO holds the orders and their operations. The bill of a product is written
// with the first of its orders.

#include "adapters/origins/Lantek24/modImport_Lantek24.h"

#include "adapters/contract/kinds/ImportTable.h"
#include "adapters/contract/kinds/ProductionOrders.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/run/tiedRows.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/missingCodes.h"
#include "adapters/contract/write/noLongerThere.h"
#include "core/italianText.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

using namespace contract;

namespace modImport_Lantek24 {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString ManufacturingOrders = QStringLiteral("MMNN_MMOO_00000100");
const QString Operations = QStringLiteral("MMNN_MMOO_00000300");
const QString OrderNumber = QStringLiteral("MnORef");
const QString OperationKey = QStringLiteral("MnORef, OOrder");

// --- Production orders --------------------------------------------------------------------------------------------

QString OperationsOf(const ImportRun& run, const SourceRow& order) {
    return "SELECT * FROM " + Operations + "\rWHERE " +
           TiedTo(run.GetSession().SourceConnection(), OrderNumber, order) + "\rORDER BY OOrder";
}

/// An operation is over when it has an end.
bool IsOver(const SourceRow& operation) { return !DayOf(operation, "EDate").isNull(); }

/// What an order takes from its operations: dates and quantity of the first; it is closed when all are over.
struct OrderFacts {
    QVariant day;
    QVariant due;
    double quantity = 0;
    bool over = false;
};

OrderFacts FactsOf(ImportRun& run, const SourceRow& order) {
    OrderFacts facts;
    bool first = true;
    ForEachChild(run.GetSession(), OperationsOf(run, order), Operations, OperationKey, [&](const SourceRow& row) {
        if (std::exchange(first, false)) {
            facts = {DayOf(row, "CDate"), DayOf(row, "RDate"), NumberOf(row, "Quantity"), true};
        }
        facts.over = facts.over && IsOver(row);
    });
    return facts;
}

QString StateOf(bool over) { return over ? schema::defaults::Closed : schema::defaults::ToDeliver; }

class OrderImporter final : public Importer {
public:
    explicit OrderImporter(ImportRun& run)
        : Importer(run),
          m_run(run),
          m_bills(run) {}

    RowOutcome Row(const SourceRow& row) override;
    bool End() override {
        m_bills.LinkSubAssemblies();
        TellOrdersLeft();
        return true;
    }

private:
    qint64 BillOf(const SourceRow& order);
    QString ImportedOrders() const;
    void ReadKept();
    qint64 KeptOrder(const QString& code, qint64 bill);
    qint64 OrderOfBefore(qint64 bill, const OrderFacts& facts);
    void WriteOrder(const SourceRow& row, qint64 bill, const OrderFacts& facts, qint64& order);
    void WriteOperations(const SourceRow& row, qint64 order, bool isNew);
    void WriteOperation(const SourceRow& row, qint64 order, int sequence);
    void TakeOffOperations(qint64 order, const QSet<int>& written);
    void TellOrdersLeft();

    ImportRun& m_run;
    BillWriter m_bills;
    QHash<QString, qint64> m_billIds;              ///< of this run, by product
    std::optional<QMap<qint64, QString>> m_kept{}; ///< what SYS_IMP said before this run: RECORD_ID, MnORef
    QSet<qint64> m_shared;                         ///< of those, the ones of several MnORef
    QSet<QString> m_met;                           ///< MnORef of the rows of this run
    QSet<qint64> m_replaced;                       ///< orders whose MnORef another one has got in this run
    QSet<qint64> m_written;                        ///< orders of this run
};

/// The bill of a product, written once in a run; 0 when its article is not there.
qint64 OrderImporter::BillOf(const SourceRow& order) {
    const QString product = order.Text("PrdRef");
    const auto known = m_billIds.constFind(product);
    if (known != m_billIds.cend()) {
        return *known;
    }
    const bool written = qdxImportDistintaFromLantek24(m_run, m_bills, order) != RowOutcome::Skipped;
    m_run.WhenTakenBack([this, product] { m_billIds.remove(product); });
    return *m_billIds.insert(product, written ? m_bills.BillId() : 0);
}

/// The condition on orders that an import has written.
QString OrderImporter::ImportedOrders() const {
    const Session& session = m_run.GetSession();
    return Equals(session, "OPTPD", schema::defaults::OrderOfBill) + " AND " + OfImports(session);
}

/// An order has no code of its own in Quadrix: SYS_IMP keeps which one that of the source has become.
void OrderImporter::ReadKept() {
    Session& session = m_run.GetSession();
    m_kept.emplace();
    Recordset rows = session.Quadrix.ExecuteWC("SELECT TBOLD, TBNEW FROM SYS_IMP WHERE " +
                                               Equals(session, "TBNAM", m_run.FullName("ORD_PRO")) + " AND " +
                                               Equals(session, "TBFLD", OrderNumber));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const qint64 id = row.Text("TBNEW").toLongLong();
        if (m_kept->contains(id)) {
            m_shared.insert(id);
        }
        m_kept->insert(id, row.Text("TBOLD"));
    }
}

/// The order that an earlier import has made of one of the source; 0 when it is gone: its number may be another's then.
/// One that is of another product now goes with it, unless somebody has written in it: he has planned that product.
qint64 OrderImporter::KeptOrder(const QString& code, qint64 bill) {
    const qint64 id =
        modImport::GetNewCode(m_run.GetSession(), m_run.FullName("ORD_PRO"), OrderNumber, code, false).toLongLong();
    if (id == 0 || m_written.contains(id)) {
        return 0;
    }
    const QString imported = Equals("RECORD_ID", id) + " AND " + ImportedOrders();
    const qint64 ofBill = IdWhere(m_run.GetSession(), "ORD_PRO",
                                  imported + " AND (" + Equals("OPIDD", bill) +
                                      " OR OPIDD NOT IN (SELECT RECORD_ID FROM " + m_run.FullName("DIS_BAS") + "))");
    const bool isOther = ofBill == 0 && !m_shared.contains(id) && IdWhere(m_run.GetSession(), "ORD_PRO", imported) != 0;
    if (isOther && !FillsCodes(m_run) && IsOrderOfImports(m_run, id)) {
        return id;
    }
    if (isOther) {
        m_run.Remember(m_replaced, id);
    }
    return ofBill;
}

/// One that an earlier import has written while SYS_IMP kept none: bill, day and quantity tell it apart from others, of
/// which those alike are taken in the order in which they were written. 0 when there is none.
qint64 OrderImporter::OrderOfBefore(qint64 bill, const OrderFacts& facts) {
    Session& session = m_run.GetSession();
    Recordset rows = session.Quadrix.ExecuteWC(
        "SELECT RECORD_ID FROM " + m_run.FullName("ORD_PRO") + " WHERE " + Equals("OPIDD", bill) + " AND " +
        OnDay(session, "OPDAT", facts.day) +
        " AND OPQTA = " + mod_ovTools::FormatSqlValue(facts.quantity, DataType::Double, session.Quadrix.ProviderType) +
        " AND " + ImportedOrders() + " ORDER BY RECORD_ID");
    for (; !rows.Eof(); rows.MoveNext()) {
        const qint64 id = rows.Fields(0).Value().toLongLong();
        if (!m_kept->contains(id) && !m_written.contains(id)) {
            return id;
        }
    }
    return 0;
}

/// @param order RECORD_ID of the one that is known; 0: it is inserted, and gets its own
void OrderImporter::WriteOrder(const SourceRow& row, qint64 bill, const OrderFacts& facts, qint64& order) {
    TargetRow target(m_run, "ORD_PRO");
    target.Set("OPDAT", facts.day);
    target.Set("OPDTC", facts.due);
    target.Set("OPQTA", facts.quantity);
    target.Set("OPSTA", StateOf(facts.over));
    target.Set("OPTPD", schema::defaults::OrderOfBill);
    target.Set("OPIDD", bill);
    if (order != 0) {
        target.Update("WHERE " + Equals("RECORD_ID", order));
    } else {
        target.Insert();
        order = m_run.LastId("ORD_PRO");
    }
    m_run.Remember(m_written, order);
    const QString code = row.Text(OrderNumber);
    if (m_kept->value(order) != code) {
        StoreNewCode(m_run, m_run.FullName("ORD_PRO"), OrderNumber, code, QString::number(order));
    }
}

void OrderImporter::WriteOperation(const SourceRow& row, qint64 order, int sequence) {
    Session& session = m_run.GetSession();
    const qint64 known = IdWhere(session, "ORD_FAS", Equals("IDOPR", order) + " AND " + Equals("FLSEQ", sequence));
    TargetRow target(m_run, "ORD_FAS");
    target.Set("IDOPR", order);
    target.Set("FLSEQ", sequence);
    target.Set("FLLAV", WorkOf(m_run, row));
    target.Set("FLQTA", NumberOf(row, "Quantity"));
    target.Set("FLQTM", NumberOf(row, "MQ"));
    target.Set("FLSTA", StateOf(IsOver(row)));
    target.Set("FLACT", true);
    if (known != 0) {
        target.Update("WHERE " + Equals("RECORD_ID", known));
    } else {
        target.Insert();
    }
}

/// @param row the order
void OrderImporter::WriteOperations(const SourceRow& row, qint64 order, bool isNew) {
    QSet<int> written;
    int sequence = 0;
    ForEachChild(m_run.GetSession(), OperationsOf(m_run, row), Operations, OperationKey,
                 [&](const SourceRow& operation) {
                     sequence = NumberBehind(m_run, sequence, WholeNumberOf(operation, "OOrder"), cam::OperationStep,
                                             [&operation] { return NameOf(operation, Operations, OperationKey); });
                     WriteOperation(operation, order, sequence);
                     written.insert(sequence);
                 });
    if (!isNew && !FillsCodes(m_run)) {
        TakeOffOperations(order, written);
    }
}

/// Operations that an import has written and the source has no more go; one that somebody has changed since is told.
/// @param written sequences of those that it has
void OrderImporter::TakeOffOperations(qint64 order, const QSet<int>& written) {
    Session& session = m_run.GetSession();
    QList<qint64> gone;
    QStringList left;
    {
        Recordset rows = session.Quadrix.ExecuteWC("SELECT RECORD_ID, FLSEQ, FLLAV, USMDF FROM " +
                                                   m_run.FullName("ORD_FAS") + " WHERE " + Equals("IDOPR", order) +
                                                   " AND " + OfImports(session) + " ORDER BY FLSEQ, RECORD_ID");
        for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
            if (written.contains(row.Value("FLSEQ").toInt())) {
                continue;
            }
            if (row.IsBlank("USMDF") || IsImportUser(row.Text("USMDF"))) {
                gone.append(row.Value("RECORD_ID").toLongLong());
            } else {
                left.append(QStringLiteral("'%1 %2'").arg(row.Text("FLSEQ"), row.Text("FLLAV")));
            }
        }
    }
    for (const qint64 id : gone) {
        m_run.DeleteRows("ORD_FAS", Equals("RECORD_ID", id));
    }
    if (!gone.isEmpty()) {
        m_run.Log(QStringLiteral("RIGHE DI PRODUZIONE TOLTE: %1: %2 di ORD_FAS che l'origine non ha più")
                      .arg(m_run.RowKey(), QString::number(gone.size())));
    }
    TellNoLongerThere(m_run, QStringLiteral("FASI"),
                      m_run.RowKey() + QStringLiteral(", ") + left.join(QStringLiteral(", ")), left.size());
}

RowOutcome OrderImporter::Row(const SourceRow& row) {
    if (!m_kept) {
        ReadKept();
    }
    m_run.Remember(m_met, row.Text(OrderNumber));
    const qint64 bill = BillOf(row);
    if (bill == 0) {
        return FillsCodes(m_run) ? SkipGone(m_run) : m_run.Skip(ArticleMissing);
    }
    const OrderFacts facts = FactsOf(m_run, row);
    qint64 order = KeptOrder(row.Text(OrderNumber), bill);
    order = order != 0 ? order : OrderOfBefore(bill, facts);
    const bool known = order != 0;
    if (!known && FillsCodes(m_run)) {
        return SkipGone(m_run);
    }
    WriteOrder(row, bill, facts, order);
    WriteOperations(row, order, !known);
    return known ? RowOutcome::Updated : RowOutcome::Inserted;
}

/// Tells the orders of earlier imports whose order the source has no more. One that SYS_IMP does not keep is told where
/// this run has met its bill.
void OrderImporter::TellOrdersLeft() {
    if (m_run.IsPart() || !m_kept) {
        return;
    }
    Session& session = m_run.GetSession();
    const QSet<qint64> bills(m_billIds.cbegin(), m_billIds.cend());
    Recordset rows = session.Quadrix.ExecuteWC("SELECT O.RECORD_ID, O.OPIDD, O.OPDAT, O.OPQTA, D.DBART FROM " +
                                               m_run.FullName("ORD_PRO") + " O LEFT JOIN " + m_run.FullName("DIS_BAS") +
                                               " D ON D.RECORD_ID = O.OPIDD WHERE " +
                                               Equals(session, "O.OPTPD", schema::defaults::OrderOfBill) + " AND " +
                                               OfImports(session, "O.USINS") + " ORDER BY O.RECORD_ID");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const qint64 id = row.Value("RECORD_ID").toLongLong();
        const QString code = m_kept->value(id);
        const bool isTheirs = code.isEmpty() ? bills.contains(row.Value("OPIDD").toLongLong())
                                             : m_replaced.contains(id) || !m_met.contains(code);
        if (isTheirs && !m_written.contains(id)) {
            TellNotMetAgain(m_run, QStringLiteral("ORDINI DI PRODUZIONE"),
                            QStringLiteral("%1'%2' del %3, quantità %4")
                                .arg(code.isEmpty() ? QString() : code + QStringLiteral(" di "), row.Text("DBART"),
                                     italian::DayText(row.Value("OPDAT").toDate()),
                                     mod_ovTools::NumberText(NumberOf(row, "OPQTA"))),
                            1);
        }
    }
}

} // namespace

ImportPart OrdiniProduzione() {
    const Needs own{
        {},
        {{ManufacturingOrders, {"PrdRef"}},
         {Operations, {"MnORef", "OOrder", "WrkRef", "OprRef", "Quantity", "MQ", "CDate", "RDate", "EDate"}}},
        {{"ORD_PRO", {"OPDAT", "OPDTC", "OPQTA", "OPSTA", "OPTPD", "OPIDD"}},
         {"ORD_FAS", {"IDOPR", "FLSEQ", "FLLAV", "FLQTA", "FLQTM", "FLSTA", "FLACT"}},
         LookedUp("ORD_COM", {"IDORD"}),
         {"SYS_IMP", {"TBNAM", "TBFLD", "TBOLD", "TBNEW"}}}};
    return {.step = "Ordini di produzione",
            .source = {.table = ManufacturingOrders,
                       .key = OrderNumber,
                       .order = OrderNumber,
                       .where = "(DIS_IsQuote = 0 OR DIS_IsQuote IS NULL)",
                       .naming = "MnORef, PrdRef"},
            .needs = CamBillNeeds() + own,
            .empties = DeletedImports("ORD_PRO") + DeletedOrphans({"ORD_FAS"}, "IDOPR", "ORD_PRO"),
            .make = [](ImportRun& run, const QString&) { return std::make_unique<OrderImporter>(run); },
            .ofSingleCode = false};
}

} // namespace modImport_Lantek24
