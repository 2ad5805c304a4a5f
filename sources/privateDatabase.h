#pragma once

#include "sql/engine.h"

#include <QByteArrayView>

#include <atomic>
#include <functional>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace sources {

/// The number of a row in its file, from 1: first column of every table read from a file, so that an error can name
/// the row. Sheets and text files count their rows and lines, the others their records.
inline const QString RecordNumberColumn = QStringLiteral("_RECNO");
inline const QString RowNumberColumn = QStringLiteral("_RIGA");

/// A temporary SQLite database that a file source is loaded into. Nothing of it remains when its engine is closed,
/// whatever way the program ends.
class PrivateDatabase {
public:
    /// Raises `ImportError` when no temporary file can be made, as do the other operations when it cannot grow.
    PrivateDatabase();

    /// The engine that reads the database, and that closes it: nothing can be loaded once it is gone.
    Engine& Reader() { return *m_reader; }
    /// Runs a load of a table as one unit of work; queries may be under way meanwhile. One that fails leaves no table.
    void Load(const QString& table, const std::function<void()>& load);
    /// Ends the load that is under way with `SqlError`; safe from another thread.
    void InterruptLoad() noexcept { m_isInterrupted = true; }
    /// A column with values that cannot be read.
    struct Unreadable {
        QString table;
        QString column;
        qint64 rows = 0;
        QString first; ///< the reason of the first one, with its row
    };
    /// Those of the tables that have been loaded; empty when all can be read.
    const std::vector<Unreadable>& UnreadableColumns() const { return m_unreadable; }
    /// Lets later queries find rows by a column fast.
    void AddIndex(const QString& table, const QString& column);
    /// Looks at some of the rows, so that a query takes the index that finds the fewest.
    void Analyze(const QString& table);

private:
    friend class PrivateTable;

    void Run(const QString& statement);
    [[noreturn]] void Fail() const;

    sqlite3* m_database = nullptr;
    std::unique_ptr<Engine> m_reader;
    std::atomic<bool> m_isInterrupted = false;
    std::vector<Unreadable> m_unreadable;
};

/// Makes one table of a private database and fills it row by row.
/// The declared type of a column tells its kind when rows are read back: "DATE TEXT" (values "yyyyMMdd"),
/// "DATETIME TEXT" ("yyyyMMdd hh:mm:ss"), "BIT" (0, 1), any other type in SQLite's own sense. Dates compare as texts,
/// with a literal of the same form. A text that is no such value is kept as it is.
class PrivateTable {
public:
    /// @param columns without the number of the row, which comes first by itself; texts compare without case
    /// @param numberColumn what that one is called
    PrivateTable(PrivateDatabase& database, QString name, const QVector<ColumnInfo>& columns,
                 QString numberColumn = RecordNumberColumn);

    // The values of the row under way, by column (from 0); a column that is not set is Null.
    void SetText(int column, QByteArrayView utf8);
    void SetInteger(int column, qint64 value);
    void SetReal(int column, double value);
    void SetBytes(int column, QByteArrayView bytes);
    /// @param reason what is raised when the value is asked for, with file, row and column
    void SetUnreadable(int column, const QString& reason);
    /// Adds the row and starts an empty one. @param number the row's number in its file, from 1
    void AddRow(qint64 number);

    // What is known of a column only when its values are.
    const QVector<ColumnInfo>& Columns() const { return m_columns; }
    /// Adds columns to the table; between two rows.
    void AddColumns(const QVector<ColumnInfo>& columns);
    /// Gives the columns other types, by which their values are not changed; after the last row.
    void Retype(const QVector<ColumnInfo>& columns);
    /// Turns the numbers in a column into their texts; after the last row.
    void NumbersToTexts(int column);
    /// Takes a mark out of the texts in a column that are such as ask for it; after the last row.
    void RemoveMark(int column, char mark, const std::function<bool(QByteArrayView text)>& isOne);

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const noexcept;
    };
    using Prepared = std::unique_ptr<sqlite3_stmt, Finalize>;
    void Check(int code) const;
    QString Statement() const;
    void PrepareInsert();
    Prepared Prepare(const QString& statement) const;

    PrivateDatabase& m_database;
    QString m_name;
    QString m_numberColumn;
    QVector<ColumnInfo> m_columns;
    Prepared m_insert;
    QHash<int, size_t> m_unreadable; ///< where the database notes those of a column
};

} // namespace sources
