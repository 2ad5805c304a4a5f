#pragma once

#include "sql/ovQueryConstructor.h"

#include <functional>
#include <memory>
#include <vector>

/// New rows that the database has not been given yet, in their order. Those of a table go as one statement, whatever
/// columns each has: a round to a server takes longer than many rows.
class PendingRows {
public:
    /// Identity value of a new row; 0 until the database has given it.
    using Id = std::shared_ptr<qint64>;
    /// A column that takes the identity value of another new row, in place of the value that its row has for it.
    struct Link {
        QString column;
        Id id;
    };
    using Links = std::vector<Link>;
    /// Runs an INSERT of rows of one table, which gives back their identity values, and fills them in.
    using Sender = std::function<void(const QString& statement, const std::vector<Id>& ids)>;

    /// Takes in the row of an INSERT. @param identity column that the database numbers
    Id Add(const ovQueryConstructor& row, const QString& identity, const Links& links);
    bool IsEmpty() const { return m_rows.empty(); }
    size_t Count() const { return m_rows.size(); }
    /// Whether there are as many as should go together. @param longest statement, in bytes
    bool IsFull(qsizetype longest) const;
    /// Whether a statement may read one of their tables.
    bool AreNamedIn(const QByteArray& statement) const;
    /// Sends the first `count` rows, which are no longer pending then: the tables in the order of their first rows, but
    /// behind those that they take identity values of, and the rows of each in theirs. @param longest statement, in
    /// bytes
    void Send(size_t count, qsizetype longest, const Sender& send);
    /// Drops all but the first `count` rows.
    void Drop(size_t count);
    void Clear() { Drop(0); }

private:
    struct Row {
        QString table;
        QString identity;
        QStringList columns;
        QStringList values; ///< literals
        Links links;
        Id id;

        bool IsReady() const;
        qsizetype Size() const;
        QString Value(const QString& column, qsizetype usualPlace) const;
    };
    using Rows = std::vector<Row>;
    void Erase(Rows::iterator first, Rows::iterator last);
    static QStringList ColumnsOf(const Row* first, const Row* last);
    static QString Together(const Row* first, const Row* last);
    static void SendTable(Rows& rows, qsizetype longest, const Sender& send);

    Rows m_rows;
    QByteArrayList m_tables; ///< of the rows, in upper case; some that were sent may be among them
    qsizetype m_size = 0;    ///< bytes of all values
};
