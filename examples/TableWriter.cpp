#include "examples/TableWriter.h"

namespace examples {

TableWriter::TableWriter(QString name, QVector<Column> columns)
    : m_name(std::move(name)),
      m_columns(std::move(columns)),
      m_row(m_columns.size()) {}

TableWriter& TableWriter::Set(const char* column, const QVariant& value) {
    const auto count = static_cast<int>(m_columns.size());
    for (int step = 0; step < count; ++step) {
        const int index = (m_next + step) % count;
        if (m_columns[index].name == column) {
            m_row[index] = value;
            m_next = (index + 1) % count;
            return *this;
        }
    }
    throw ExampleError(QStringLiteral("la tabella '%1' non ha la colonna '%2'").arg(m_name, QLatin1String(column)));
}

void TableWriter::Add() {
    WriteRow(false);
    ++m_count;
}

void TableWriter::AddDeleted() { WriteRow(true); }

void TableWriter::WriteRow(bool isDeleted) {
    Write(m_row, isDeleted);
    m_row.fill(QVariant());
    m_next = 0;
}

} // namespace examples
