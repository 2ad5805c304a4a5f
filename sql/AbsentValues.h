#pragma once

#include "sql/text/statementShape.h"

#include <QHash>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

/// Knows of values that columns do not hold, so that they need not be looked for: most look-ups of a first import find
/// nothing. Each column that is often asked for is read once into a Bloom filter, which every row written since is
/// added to: what it does not hold is not there, and of what it holds the database is asked. A row that is deleted or
/// taken back stays in it, which costs a question and no more; what a deletion that is taken back brings again is in it
/// when it was read before.
///
/// It holds only for as long as nothing but the statements that it is told of can change the columns: the owner says
/// when that ends.
class AbsentValues {
public:
    /// Reads a column: hands each of its values to `take`. False, without doing so, for one that does not keep texts
    /// as they are written, or that an INSERT may fill without naming it.
    using Reader = std::function<bool(const QString& table, const QString& column,
                                      const std::function<void(const QVariant&)>& take)>;

    /// Whether no row of a table (physical name) has that text in a column, in any case; false when that is not known.
    bool IsAbsent(const QString& table, const QString& column, const QString& value, const Reader& read);
    /// A statement is run: what an INSERT or UPDATE writes into the columns is added; a column that it writes in
    /// another way is read anew.
    void Runs(const StatementShape& statement);
    /// Forgets everything.
    void Clear();
    /// Whether no column is known or asked for, so that it need not be told of statements.
    bool IsEmpty() const { return m_columns.empty(); }
    /// How often a column has been read: a point to go back to.
    qint64 Readings() const { return m_readings; }
    /// What was written since a point is taken back: columns that were read behind it are read anew, as they lack what
    /// had been deleted or changed by then. @param readings at that point
    void TakenBack(qint64 readings);

private:
    struct Column {
        QByteArray table; ///< in upper case
        QByteArray name;
        int asked = 0;
        bool isUseless = false; ///< holds what is no text, which compares in other ways
        qint64 reading = 0;     ///< that filled it
        std::vector<quint64> filter = {};

        void Add(const QByteArray& text);
        bool MayHold(const QByteArray& text) const;
    };
    /// A column that a statement writes, and the place of its value.
    struct Written {
        qsizetype column;
        qsizetype place;
    };
    bool Fill(Column& column, const QString& table, const QString& name, const Reader& read);
    std::optional<std::vector<Written>> WritesOf(const StatementShape& statement) const;
    const std::vector<Written>* KnownWrites(const StatementShape& statement);

    QHash<std::pair<QString, QString>, qsizetype> m_positions;
    std::vector<Column> m_columns;
    qint64 m_readings = 0;
    QHash<QByteArray, std::vector<Written>> m_known; ///< by shape
};
