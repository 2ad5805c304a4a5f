#include "adapters/contract/Stock.h"

#include "adapters/contract/lookups.h"
#include "adapters/contract/TargetRow.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

namespace contract {

using namespace schema::defaults;

std::vector<TableNeed> StockNeeds() {
    return {
        {"MOV_MAG", {"MMANN", "MMNUM", "MMDAT", "MMMAG", "MMTPM", "MMSTA", "MMINV", "MMESR"}},
        {"MOV_MAR",
         {"MRTES", "MRNUM", "MRART", "MRDES", "MRUMS", "MRQTA", "MRQTI", "MRPRZ", "MRVAL", "MRMAG", "MRTPM", "MRSTA"}}};
}

void EmptyStock(ImportRun& run, bool reset) {
    for (const QString& table : {QStringLiteral("ART_MAG"), QStringLiteral("MOV_MAR"), QStringLiteral("MOV_MAG")}) {
        if (reset) {
            run.GetSession().Quadrix.Execute(QStringLiteral("DELETE ") + run.FullName(table));
        }
    }
}

StockWriter::Movement& StockWriter::MovementOf(const QString& warehouse) {
    if (const auto known = m_movements.find(warehouse); known != m_movements.end()) {
        return *known;
    }
    Session& session = m_run.GetSession();
    const QDate today = session.Now().date();
    const QString year = QStringLiteral("WHERE ") + Equals("MMANN", today.year());
    TargetRow row(m_run, "MOV_MAG");
    row.Set("MMANN", today.year());
    row.Set("MMNUM", session.Quadrix.GetMaxValue("MOV_MAG", "MMNUM", year).toLongLong() + 1);
    row.Set("MMDAT", today);
    row.Set("MMMAG", warehouse);
    row.Set("MMTPM", LoadMovement);
    row.Set("MMSTA", Closed);
    row.Set("MMINV", true);
    row.Set("MMESR", today.year());
    row.Insert();
    m_run.KeepWritten();
    return *m_movements.insert(warehouse, {LastId(session, "MOV_MAG"), 0});
}

RowOutcome StockWriter::Balance(const QString& warehouse, const QString& article, double quantity) {
    if (quantity == 0) {
        return RowOutcome::Skipped;
    }
    const Recordset found =
        m_run.GetSession().Quadrix.ExecuteWC(QStringLiteral("SELECT * FROM ") + m_run.FullName("ART_ICO") +
                                             QStringLiteral(" WHERE ") + Equals(m_run.GetSession(), "CDART", article));
    if (found.Eof()) {
        m_run.Log(QStringLiteral("ARTICOLO NON TROVATO: %1: '%2'").arg(m_run.RowKey(), article));
        return RowOutcome::Skipped;
    }
    const double cost = mod_ovTools::ToDouble(found.Value("ARCOS"));
    Movement& movement = MovementOf(warehouse);
    TargetRow row(m_run, "MOV_MAR");
    row.Set("MRTES", movement.id);
    row.Set("MRNUM", movement.rows + 1);
    row.Set("MRART", article);
    row.Set("MRDES", found.Value("ARDES"));
    row.Set("MRUMS", found.Value("ARUMS"));
    row.Set("MRQTA", quantity);
    row.Set("MRQTI", quantity);
    row.Set("MRPRZ", cost);
    row.Set("MRVAL", RoundedTo(quantity * cost, 2));
    row.Set("MRMAG", warehouse);
    row.Set("MRTPM", LoadMovement);
    row.Set("MRSTA", Closed);
    row.Insert();
    ++movement.rows;
    return RowOutcome::Inserted;
}

} // namespace contract
