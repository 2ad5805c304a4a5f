#include "adapters/contract/run/targetBounds.h"

#include "core/Schema.h"

#include <limits>

namespace contract {

namespace {

/// Whether a column does not keep every number of its kind as it is written.
bool IsNarrow(const schema::Column& column, const ColumnBounds& bounds) {
    const auto holdsLess = [&bounds](auto largest) {
        return bounds.largest > 0 && bounds.largest < static_cast<double>(largest);
    };
    switch (column.type) {
    case DataType::Double:
        return bounds.isRounding;
    case DataType::TinyInt:
        return holdsLess(std::numeric_limits<qint8>::max());
    case DataType::Integer:
        return holdsLess(std::numeric_limits<qint32>::max());
    case DataType::Long:
        return holdsLess(std::numeric_limits<qint64>::max());
    default:
        return false;
    }
}

bool IsShorter(const schema::Column& column, const ColumnBounds& bounds) {
    return IsTextType(column.type) && bounds.length > 0 && (column.size == 0 || bounds.length < column.size);
}

} // namespace

void LookAtBounds(ovConnection& target, const NeededTables::Table& table, Lacks& lacks) {
    const schema::Table* known = schema::FindTable(table.name);
    if (known == nullptr) {
        return;
    }
    const QString name = target.GetFullTableName(table.name);
    for (const ColumnBounds& bounds : target.GetBounds(name)) {
        const bool isWritten = table.necessary.contains(bounds.name, Qt::CaseInsensitive);
        const schema::Column* column = known->FindColumn(bounds.name);
        if (column == nullptr && bounds.isDemanded && !isWritten) {
            lacks.demanded.append(QStringLiteral("%1.%2 %3").arg(name, bounds.name, bounds.type));
        }
        if (column != nullptr && isWritten && IsNarrow(*column, bounds)) {
            lacks.narrow.append(QStringLiteral("%1.%2 %3").arg(name, bounds.name, bounds.type));
        }
        if (column != nullptr && IsShorter(*column, bounds)) {
            lacks.lengths.insert(column, bounds.length);
        }
    }
}

QString NarrowLine(const Lacks& lacks) {
    return lacks.narrow.isEmpty()
               ? QString()
               : QStringLiteral("COLONNE DI QUADRIX CON MENO CIFRE: %1; il database arrotonda i numeri che non ci "
                                "stanno, o li rifiuta")
                     .arg(lacks.narrow.join(QStringLiteral(", ")));
}

QString DemandedLine(const Lacks& lacks) {
    return lacks.demanded.isEmpty()
               ? QString()
               : QStringLiteral("COLONNE DI QUADRIX OBBLIGATORIE: %1; nessuna importazione le scrive, e senza un "
                                "valore predefinito il database rifiuta le righe nuove")
                     .arg(lacks.demanded.join(QStringLiteral(", ")));
}

} // namespace contract
