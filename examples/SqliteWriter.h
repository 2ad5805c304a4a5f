#pragma once

#include "examples/TableWriter.h"

struct sqlite3;

namespace examples {

/// A SQLite file in the place of a database server's: the same tables, and indexes on the columns that rows are looked
/// up by. Dates stand in it as texts "yyyyMMdd hh:mm:ss", which compare as those of the server do. Deleted rows are
/// left out.
class SqliteFile final : public Store {
public:
    /// @param path a file that is there already is replaced. Raises `ExampleError`.
    explicit SqliteFile(const QString& path);
    ~SqliteFile() override;
    SqliteFile(const SqliteFile&) = delete;
    SqliteFile& operator=(const SqliteFile&) = delete;

    std::unique_ptr<TableWriter> Create(const QString& table, const QVector<Column>& columns) override;
    void AddIndex(const QString& table, const QStringList& columns) override;
    void Finish() override;

private:
    void Run(const QString& statement);

    sqlite3* m_database = nullptr;
    QStringList m_indexes; ///< made last, over the whole tables
};

} // namespace examples
