#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <memory>
#include <stdexcept>

/// Made-up data in the file formats of other programs, for trials, tests and measurements.
namespace examples {

/// An example that cannot be made as asked, or a file that cannot be written. The text is Italian, UTF-8.
class ExampleError : public std::runtime_error {
public:
    explicit ExampleError(const QString& message)
        : std::runtime_error(message.toStdString()) {}
    QString Message() const { return QString::fromUtf8(what()); }
};

/// A column of a table, in the terms of dBase.
struct Column {
    QByteArray name;
    char type;        ///< C text, N number, D date, T date and time, L logical, I integer, B double, Y money, M memo
    int length = 0;   ///< characters of C, digits of N; the other types have one length
    int decimals = 0; ///< of N
};

/// A table that is filled row by row, whatever kind of file it stands in.
class TableWriter {
public:
    TableWriter(QString name, QVector<Column> columns);
    virtual ~TableWriter() = default;
    TableWriter(const TableWriter&) = delete;
    TableWriter& operator=(const TableWriter&) = delete;

    const QString& Name() const { return m_name; }
    const QVector<Column>& Columns() const { return m_columns; }

    /// Sets a column of the row under way; one that is not set is Null, which dBase writes as blanks. A text in a
    /// column of numbers, dates or logical values is written as it is, so that impossible values can be made.
    /// Raises `ExampleError` when there is no such column.
    TableWriter& Set(const char* column, const QVariant& value);
    TableWriter& Set(const char* column, const QString& text) { return Set(column, QVariant(text)); }
    /// Adds the row and starts an empty one. Raises `ExampleError` for a value that the column cannot hold.
    void Add();
    /// As `Add`, but the row is marked as deleted; a format without such marks leaves it out.
    void AddDeleted();
    /// Rows added, without the deleted ones.
    qint64 Count() const { return m_count; }
    /// Completes the table; nothing can be added after that. Raises `ExampleError`.
    virtual void Finish() = 0;

protected:
    virtual void Write(const QVector<QVariant>& row, bool isDeleted) = 0;

private:
    void WriteRow(bool isDeleted);

    QString m_name;
    QVector<Column> m_columns;
    QVector<QVariant> m_row;
    int m_next = 0; ///< where the next column is looked for first: rows are filled in the order of the columns
    qint64 m_count = 0;
};

/// Where the tables of an example are written.
class Store {
public:
    virtual ~Store() = default;
    /// Starts a table; one of that name that is there already is replaced. Raises `ExampleError`.
    virtual std::unique_ptr<TableWriter> Create(const QString& table, const QVector<Column>& columns) = 0;
    /// Lets rows be found by these columns, where the kind of store has indexes.
    virtual void AddIndex(const QString& table, const QStringList& columns) = 0;
    /// Completes the store, after its tables. Raises `ExampleError`.
    virtual void Finish() = 0;
};

} // namespace examples
