#include "adapters/contract/Stock.h"

#include "adapters/contract/lookups.h"
#include "adapters/contract/TargetRow.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

namespace contract {

using namespace schema::defaults;

namespace {

/// What a line may have beyond its article and quantity.
void SetParticulars(TargetRow& row, const StockLine& line) {
    const auto setText = [&row](const QString& column, const QString& text) {
        if (!text.isEmpty()) {
            row.Set(column, text);
        }
    };
    setText("MRUBI", line.location);
    setText("MRFMT", line.format);
    setText("MRSFR", line.offcut);
    if (line.length != 0 || line.width != 0) {
        row.Set("MRLMX", line.length);
        row.Set("MRLMY", line.width);
    }
}

} // namespace

std::vector<TableNeed> StockNeeds() {
    return {
        {"MOV_MAG", {"MMANN", "MMNUM", "MMDAT", "MMMAG", "MMTPM", "MMSTA", "MMINV", "MMESR"}},
        {"MOV_MAR",
         {"MRTES", "MRNUM", "MRART", "MRDES", "MRUMS", "MRQTA", "MRQTI", "MRPRZ", "MRVAL", "MRMAG", "MRTPM", "MRSTA"}}};
}

void EmptyStock(ImportRun& run, bool reset) {
    for (const QString& table : {QStringLiteral("ART_MAG"), QStringLiteral("MOV_MAR"), QStringLiteral("MOV_MAG")}) {
        if (reset) {
            run.Delete(run.FullName(table), QStringLiteral("DELETE ") + run.FullName(table));
        }
    }
}

StockWriter::Movement& StockWriter::MovementOf(const StockLine& line) {
    const QPair<QString, bool> key{line.warehouse, line.sheet};
    if (const auto known = m_movements.find(key); known != m_movements.end()) {
        return *known;
    }
    Session& session = m_run.GetSession();
    const QDate today = session.Now().date();
    const QString year = QStringLiteral("WHERE ") + Equals("MMANN", today.year());
    TargetRow row(m_run, "MOV_MAG");
    row.Set("MMANN", today.year());
    row.Set("MMNUM", session.Quadrix.GetMaxValue("MOV_MAG", "MMNUM", year).toLongLong() + 1);
    row.Set("MMDAT", today);
    row.Set("MMMAG", line.warehouse);
    row.Set("MMTPM", LoadMovement);
    row.Set("MMSTA", Closed);
    row.Set("MMINV", true);
    row.Set("MMESR", today.year());
    if (line.sheet) {
        row.Set("MMLAM", true);
    }
    row.Insert();
    m_run.WhenTakenBack([this, key] { m_movements.remove(key); });
    return *m_movements.insert(key, {LastId(session, "MOV_MAG"), 0});
}

RowOutcome StockWriter::Balance(const StockLine& line) {
    if (line.quantity == 0) {
        return RowOutcome::Skipped;
    }
    const Recordset found = m_run.GetSession().Quadrix.ExecuteWC(QStringLiteral("SELECT * FROM ") +
                                                                 m_run.FullName("ART_ICO") + QStringLiteral(" WHERE ") +
                                                                 Equals(m_run.GetSession(), "CDART", line.article));
    if (found.Eof()) {
        m_run.Log(QStringLiteral("ARTICOLO NON TROVATO: %1: '%2'").arg(m_run.RowKey(), line.article));
        return RowOutcome::Skipped;
    }
    const double price = mod_ovTools::ToDouble(line.price.isNull() ? found.Value("ARCOS") : line.price);
    Movement& movement = MovementOf(line);
    TargetRow row(m_run, "MOV_MAR");
    row.Set("MRTES", movement.id);
    row.Set("MRNUM", movement.rows + 1);
    row.Set("MRART", line.article);
    row.Set("MRDES", found.Value("ARDES"));
    row.Set("MRUMS", line.unit.isEmpty() ? found.Value("ARUMS") : QVariant(line.unit));
    row.Set("MRQTA", line.quantity);
    row.Set("MRQTI", line.quantity);
    row.Set("MRPRZ", price);
    row.Set("MRVAL", RoundedTo(line.quantity * price, 2));
    row.Set("MRMAG", line.warehouse);
    row.Set("MRTPM", LoadMovement);
    row.Set("MRSTA", Closed);
    SetParticulars(row, line);
    row.Insert();
    m_run.WhenTakenBack([&movement] { --movement.rows; });
    ++movement.rows;
    return RowOutcome::Inserted;
}

} // namespace contract
