#pragma once

#include "examples/examples.h"
#include "examples/quadrixScript.h"
#include "examples/random.h"

#include <functional>

/// Tables that are described rather than programmed: columns, each with the rule that makes its values.
namespace examples::described {

/// Where a value stands. What a rule makes depends on nothing else, so that a row can tell what another one holds.
struct Place {
    const Options& options;
    qint64 row;     ///< of the table, from 0
    quint64 stream; ///< of random numbers, one for each column

    Random Draw() const { return Random(options.seed, stream, static_cast<quint64>(row)); }
    Place At(qint64 other) const { return {options, other, stream}; }
};

/// Makes a value; an empty rule makes Null.
using Rule = std::function<QVariant(const Place&)>;
/// How many there are of something.
using Count = std::function<qint64(const Options&)>;

struct Field {
    Column column;
    Rule rule;
};

/// A row beside those of the rules, which differs from what they would make by these values.
using OddRow = QVector<QPair<const char*, QVariant>>;

struct Table {
    QString name;
    QString group; ///< what `Options::tables` names
    Count rows;    ///< made by the rules; the odd ones follow
    QVector<Field> fields;
    QVector<OddRow> odd = {};
    QVector<QStringList> indexes = {};
};

/// The stream of random numbers of a name: the same on every machine, and whatever stands beside it.
quint64 StreamOf(const QByteArray& name);

/// Writes the tables that are asked for into a store, and the script into the folder. Returns the rows of each table.
/// Raises `ExampleError`.
Totals Write(Store& store, const QVector<Table>& tables, const Options& options, const QuadrixScript& script);
/// The same into a SQLite file of the folder.
Totals Write(const QString& file, const QVector<Table>& tables, const Options& options, const QuadrixScript& script);

/// Puts the rows of a table of the company into the script, as tables are described; the first column tells them apart.
void Prepare(QuadrixScript& script, const Table& table, const Options& options);

} // namespace examples::described
