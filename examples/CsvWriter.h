#pragma once

#include "examples/TableWriter.h"

namespace examples {

/// A folder of text files, a table each: ";" between the fields, decimal comma, dates "dd/MM/yyyy", Latin-1. Deleted
/// rows are left out.
class CsvFolder final : public Store {
public:
    explicit CsvFolder(QString folder)
        : m_folder(std::move(folder)) {}

    std::unique_ptr<TableWriter> Create(const QString& table, const QVector<Column>& columns) override;
    void AddIndex(const QString&, const QStringList&) override {}
    void Finish() override {}

private:
    QString m_folder;
};

} // namespace examples
