#pragma once

#include "sql/errors.h"
#include "sql/Recordset.h"

namespace contract {

/// Shows rows that were read from a recordset earlier, as often as they are wanted: the recordset itself goes forward
/// only.
class HeldRows {
public:
    using Row = QVector<QVariant>;

    /// @param source the recordset that the rows come from
    explicit HeldRows(const Recordset& source) {
        auto cursor = std::make_unique<HeldCursor>(source);
        m_cursor = cursor.get();
        m_shown = Recordset(std::move(cursor), source.Query());
    }

    const QStringList& Columns() const { return m_cursor->Columns(); }
    /// The values of the row that a recordset of the same columns stands on; one that its source cannot read is kept as
    /// the error, which is raised when it is asked for. Raises `SqlError`.
    Row Take(const Recordset& source) const {
        Row row;
        const int count = static_cast<int>(m_cursor->Columns().size());
        row.reserve(count);
        for (int column = 0; column < count; ++column) {
            try {
                row.append(source.ValueAt(column));
            } catch (const ImportError& error) {
                row.append(QVariant::fromValue(error));
            }
        }
        return row;
    }
    /// A recordset that stands on that row, which must outlive its use.
    const Recordset& Show(const Row& row) {
        m_cursor->row = &row;
        return m_shown;
    }

private:
    struct HeldCursor final : Cursor {
        explicit HeldCursor(const Recordset& source)
            : columns(source.Columns()) {
            for (const QString& column : source.HasMissing() ? columns : QStringList()) {
                missing.push_back(source.IsMissing(column));
            }
        }
        bool Next() override { return true; }
        const QStringList& Columns() const override { return columns; }
        QVariant Value(int column) const override {
            const QVariant& value = row->at(column);
            if (value.metaType() == QMetaType::fromType<ImportError>()) {
                throw ImportError(*static_cast<const ImportError*>(value.constData()));
            }
            return value;
        }
        bool HasMissing() const override { return !missing.empty(); }
        bool IsMissing(int column) const override { return HasMissing() && missing[static_cast<size_t>(column)]; }

        QStringList columns;
        std::vector<bool> missing; ///< by column; empty where none is
        const Row* row = nullptr;
    };

    HeldCursor* m_cursor = nullptr; ///< of `m_shown`
    Recordset m_shown;
};

} // namespace contract
