#pragma once

#include "sql/text/statementShape.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

class ovQueryConstructor;

/// Knows of values that columns do not hold, so that they need not be looked for: most look-ups of a first import find
/// nothing. Each column that is often asked for is read once into a Bloom filter, which every row written since is
/// added to: what it does not hold is not there, and of what it holds the database is asked. A row that is deleted or
/// taken back stays in it, which costs a question and no more; what a deletion that is taken back brings again is in it
/// when it was read before. Within a transaction the highest value of a column is known in the same way.
///
/// It holds only for as long as nothing but the statements that it is told of can change the columns: the owner says
/// when that ends. An owner who cannot say lets it assume: what it has said since is then made sure of in the end, with
/// what the columns hold of it (`Assumed`, `Holds`).
class AbsentValues {
public:
    /// Reads a column: hands each of its values to `take`. False, without doing so, for one that does not keep texts
    /// as they are written, or that an INSERT may fill without naming it.
    using Reader = std::function<bool(const QString& table, const QString& column,
                                      const std::function<void(const QVariant&)>& take)>;
    /// A point that what was written since is taken back to.
    struct Point {
        qint64 readings = 0;
        size_t written = 0;
    };
    /// What was said of a column since `BeginAssuming`.
    struct Assumption {
        QString table;
        QString column;
        QStringList absent; ///< values that it was said not to hold
    };

    /// Whether no row of a table (physical name) has that text in a column, in any case; false when that is not known.
    bool IsAbsent(const QString& table, const QString& column, const QString& value, const Reader& read);
    /// The highest value of a column; none when it is not known.
    std::optional<QString> Highest(const QString& table, const QString& column) const;
    /// A column has been asked for its highest value. Only texts of digits, all of one length, are kept.
    void SetHighest(const QString& table, const QString& column, const QVariant& highest);
    /// A statement is run: what an INSERT or UPDATE writes into the columns is added; a column that it writes in
    /// another way is read anew.
    void Runs(const StatementShape& statement);
    /// The same of the INSERT of a row.
    void Inserts(const ovQueryConstructor& row, const StatementShape& statement);
    /// A column was written with what is not known: it is read anew.
    void Forget(const QString& table, const QString& column);
    /// Forgets everything.
    void Clear();
    /// Forgets the highest values, which others may have changed.
    void ForgetHighest();
    /// Whether no column is known or asked for, so that it need not be told of statements.
    bool IsEmpty() const { return m_columns.empty(); }
    Point Now() const { return {m_readings, m_written.size()}; }
    /// What was written since a point is taken back: columns that were read behind it are read anew, as they lack what
    /// had been deleted or changed by then.
    void TakenBack(const Point& point);

    /// What is said from now on is to be made sure of.
    void BeginAssuming();
    void EndAssuming();
    /// What was said since.
    std::vector<Assumption> Assumed() const;
    /// Whether an assumption holds: everything that its column holds of the absent values was written since.
    /// @param found those of its absent values that the column holds, as often as it does
    bool Holds(const Assumption& assumption, const QStringList& found) const;

private:
    struct Column {
        QString tableName;
        QString columnName;
        QByteArray table; ///< in upper case
        QByteArray name;
        int asked = 0;
        bool isUseless = false; ///< holds what is no text, which compares in other ways
        qint64 reading = 0;     ///< that filled it
        std::vector<quint64> filter = {};
        std::optional<QByteArray> highest = {};
        QSet<QString> assumed = {}; ///< absent values that somebody was told of

        void Add(const QByteArray& text);
        bool MayHold(const QByteArray& text) const;
        void Unclear();
    };
    /// A column that a statement writes, and the place of its value.
    struct Written {
        qsizetype column;
        qsizetype place;
    };
    Column& Known(const QString& table, const QString& name);
    bool Fill(Column& column, const QString& table, const QString& name, const Reader& read);
    using KnownShapes = QHash<QByteArray, std::vector<Written>>;
    std::optional<std::vector<Written>> WritesOf(const StatementShape& statement) const;
    std::vector<Written> WritesOf(const ovQueryConstructor& row) const;
    KnownShapes::const_iterator Keep(const QByteArray& shape, const std::vector<Written>& writes);
    const std::vector<Written>* KnownWrites(const StatementShape& statement);
    void Take(const std::vector<Written>& writes, const StatementShape& statement);
    void Take(const Written& written, const StatementShape::Value* value);
    void Forget();

    QHash<std::pair<QString, QString>, qsizetype> m_positions;
    std::vector<Column> m_columns;
    qint64 m_readings = 0;
    KnownShapes m_known;
    bool m_isAssuming = false;
    bool m_hasDeleted = false;                               ///< since then: what was written may not be there
    std::vector<std::pair<qsizetype, QByteArray>> m_written; ///< column and value, since `BeginAssuming`
};
