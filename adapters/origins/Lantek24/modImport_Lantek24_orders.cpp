// Production orders of Lantek 24: MMNN_MMOO holds the orders and their operations. The bill of a product is written
// with the first of its orders.

#include "adapters/origins/Lantek24/modImport_Lantek24.h"

#include "adapters/contract/kinds/ImportTable.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/missingCodes.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

using namespace contract;

namespace modImport_Lantek24 {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString ManufacturingOrders = QStringLiteral("MMNN_MMOO_00000100");
const QString Operations = QStringLiteral("MMNN_MMOO_00000300");
const QString OperationKey = QStringLiteral("MnORef, OOrder");

// --- Production orders --------------------------------------------------------------------------------------------

QString OperationsOf(const ImportRun& run, const SourceRow& order) {
    return "SELECT * FROM " + Operations + "\rWHERE MnORef = " + run.Quoted(order.Text("MnORef")) + "\rORDER BY OOrder";
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

/// An order has no code of its own in Quadrix: bill, day and quantity tell it apart from others.
using OrderIdentity = std::tuple<qint64, qint64, double>;

OrderIdentity IdentityOf(qint64 bill, const OrderFacts& facts) {
    return {bill, facts.day.isNull() ? 0 : facts.day.toDateTime().toMSecsSinceEpoch(), facts.quantity};
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
        return true;
    }

private:
    qint64 BillOf(const QString& product);
    qint64 FindOrder(qint64 bill, const OrderFacts& facts);
    void WriteOperation(const SourceRow& row, qint64 order, int sequence);

    ImportRun& m_run;
    BillWriter m_bills;
    QHash<QString, qint64> m_billIds;      ///< of this run, by product
    QMap<OrderIdentity, qint64> m_written; ///< last of the orders of this run that are alike
};

/// The bill of a product, written once in a run; 0 when its article is not there.
qint64 OrderImporter::BillOf(const QString& product) {
    const auto known = m_billIds.constFind(product);
    if (known != m_billIds.cend()) {
        return *known;
    }
    const bool written = qdxImportDistintaFromLantek24(m_run, m_bills, product) != RowOutcome::Skipped;
    m_run.WhenTakenBack([this, product] { m_billIds.remove(product); });
    return *m_billIds.insert(product, written ? m_bills.BillId() : 0);
}

/// The order that an earlier import has written; 0 when there is none. Those alike are taken one after the other, in
/// the order in which they were written: a run that comes again finds each where it was.
qint64 OrderImporter::FindOrder(qint64 bill, const OrderFacts& facts) {
    Session& session = m_run.GetSession();
    const Provider provider = session.Quadrix.ProviderType;
    return session.Quadrix.ExecuteCommand(
        "SELECT MIN(RECORD_ID) FROM " + m_run.FullName("ORD_PRO") + " WHERE " + Equals("OPIDD", bill) + " AND " +
        Equals(session, "OPTPD", schema::defaults::OrderOfBill) + " AND " + OnDay(session, "OPDAT", facts.day) +
        " AND OPQTA = " + mod_ovTools::FormatSqlValue(facts.quantity, DataType::Double, provider) + " AND " +
        OfImports(session) + " AND RECORD_ID > " + QString::number(m_written.value(IdentityOf(bill, facts))));
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

RowOutcome OrderImporter::Row(const SourceRow& row) {
    Session& session = m_run.GetSession();
    const qint64 bill = BillOf(row.Text("PrdRef"));
    if (bill == 0) {
        return FillsCodes(m_run) ? SkipGone(m_run) : m_run.Skip(ArticleMissing);
    }
    const OrderFacts facts = FactsOf(m_run, row);
    qint64 order = FindOrder(bill, facts);
    const bool known = order != 0;
    if (!known && FillsCodes(m_run)) {
        return SkipGone(m_run);
    }
    TargetRow target(m_run, "ORD_PRO");
    target.Set("OPDAT", facts.day);
    target.Set("OPDTC", facts.due);
    target.Set("OPQTA", facts.quantity);
    target.Set("OPSTA", StateOf(facts.over));
    target.Set("OPTPD", schema::defaults::OrderOfBill);
    target.Set("OPIDD", bill);
    if (known) {
        target.Update("WHERE " + Equals("RECORD_ID", order));
    } else {
        target.Insert();
        order = m_run.LastId("ORD_PRO");
    }
    int sequence = 0;
    ForEachChild(session, OperationsOf(m_run, row), Operations, OperationKey, [&](const SourceRow& operation) {
        sequence = NumberBehind(m_run, sequence, WholeNumberOf(operation, "OOrder"), cam::OperationStep,
                                [&operation] { return NameOf(operation, Operations, OperationKey); });
        WriteOperation(operation, order, sequence);
    });
    qint64& last = m_written[IdentityOf(bill, facts)];
    m_run.Restores(last);
    last = order;
    return known ? RowOutcome::Updated : RowOutcome::Inserted;
}

} // namespace

ImportPart OrdiniProduzione() {
    const Needs own{
        {},
        {{ManufacturingOrders, {"PrdRef"}},
         {Operations, {"MnORef", "OOrder", "WrkRef", "OprRef", "Quantity", "MQ", "CDate", "RDate", "EDate"}}},
        {{"ORD_PRO", {"OPDAT", "OPDTC", "OPQTA", "OPSTA", "OPTPD", "OPIDD"}},
         {"ORD_FAS", {"IDOPR", "FLSEQ", "FLLAV", "FLQTA", "FLQTM", "FLSTA", "FLACT"}}}};
    return {.step = "Ordini di produzione",
            .source = {.table = ManufacturingOrders,
                       .key = "MnORef",
                       .order = "MnORef",
                       .where = "(DIS_IsQuote = 0 OR DIS_IsQuote IS NULL)",
                       .naming = "MnORef, PrdRef"},
            .needs = CamBillNeeds() + own,
            .empties = DeletedImports("ORD_PRO") + DeletedOrphans({"ORD_FAS"}, "IDOPR", "ORD_PRO"),
            .make = [](ImportRun& run, const QString&) { return std::make_unique<OrderImporter>(run); },
            .ofSingleCode = false};
}

} // namespace modImport_Lantek24
