#pragma once

#include "sql/engine.h"
#include "sql/errors.h"

#include <QTemporaryFile>

#include <exception>

class SpoolingCursor;

/// A connection's line to its server, which carries one result at a time: knows the cursor whose rows are still on it.
struct ResultLine {
    SpoolingCursor* cursor = nullptr;
    /// Frees the line for the next statement: the rows that are still on it are put aside for their cursor.
    void Free();
};

/// A cursor over rows that come straight from the server, until another statement needs the connection: then the rest
/// waits here, the first rows in memory and the others in a temporary file, so that memory stays flat, one connection
/// (and its transaction) serves every statement, and a slow reader never makes the server give up.
class SpoolingCursor final : public Cursor {
public:
    /// Takes over a cursor that reads from the line; the line must be free.
    /// @param statement makes its text, which an error alone needs
    SpoolingCursor(std::unique_ptr<Cursor> live, std::shared_ptr<ResultLine> line, std::function<QString()> statement);
    ~SpoolingCursor() override;

    bool Next() override;
    const QStringList& Columns() const override { return m_live != nullptr ? m_live->Columns() : m_columns; }
    int IndexOf(QAnyStringView name) const override {
        return m_live != nullptr ? m_live->IndexOf(name) : Cursor::IndexOf(name);
    }
    QVariant Value(int column) const override;

    /// Puts the rest of the rows aside. An error on the way is raised, as it is, when the reader gets there: behind
    /// every row that came before it.
    void PutAside() noexcept;

private:
    using Row = QVector<QVariant>;
    void ReadRest();
    void BackToFirst() noexcept;
    SqlError FileError() const;
    void Append(const Row& row);
    Row LiveRow() const;
    bool NextAside();
    void LeaveLine();

    std::unique_ptr<Cursor> m_live;
    std::shared_ptr<ResultLine> m_line;
    std::function<QString()> m_statement;
    QStringList m_columns; ///< once nothing is live
    bool m_hasRow = false; ///< the live cursor stands on one
    Row m_row;
    QVector<Row> m_first;
    qsizetype m_nextOfFirst = 0;
    std::unique_ptr<QTemporaryFile> m_file;
    qint64 m_rowsInFile = 0;
    std::exception_ptr m_failure;
};
