#pragma once

#include "adapters/contract/kinds/ImportTable.h"

namespace contract {

/// The components that a production order consumes (ORD_COM).
struct OrderParts {
    ChildTable rows;
    Lines lines = {};
};

/// The phases of a production order (ORD_FAS).
struct OrderPhases {
    ChildTable rows;
    Lines lines = {};
};

/// The production orders of the rows of a document (ORD_PRO). What an earlier import wrote for a row is rewritten, and
/// what the source no longer has of it deleted and logged; an order in which somebody has entered or changed something
/// stays, and is told.
struct ProductionOrders {
    ChildTable rows;
    QString number;   ///< column of the rows that tells an order from the others of its document row: SYS_IMP keeps it
    Lines lines = {}; ///< of ORD_PRO, beside the link to the row of the document
    OrderParts parts;
    OrderPhases phases;
};

/// A declaration of production orders, ready to be written; it must live as long as its needs.
class ProductionOrderWriter {
public:
    explicit ProductionOrderWriter(ProductionOrders declared);

    /// What it reads and writes. @param parent source table of the rows of the documents
    Needs NeedsUnder(const QString& parent) const;
    /// Writes the production orders of a row of a document. Raises `SqlError`, `RowGivenUp` or `ImportError`.
    /// @param document RECORD_ID of the row
    void Write(ImportRun& run, const SourceRow& row, qint64 document) const;

private:
    void TakeAway(ImportRun& run, qint64 order, const QString& name) const;
    void WriteChildren(ImportRun& run, const SourceRow& order, qint64 id, const ChildTable& rows,
                       const Mapping& mapping, const QString& owner) const;

    ProductionOrders m_declared;
    Mapping m_order;
    Mapping m_part;
    Mapping m_phase;
};

/// Whether imports alone have written a production order (RECORD_ID of ORD_PRO), its components and its phases.
bool IsOrderOfImports(ImportRun& run, qint64 order);

/// What a reset of production orders deletes: those that an import wrote.
Emptying ProductionOrderEmptying();

} // namespace contract
