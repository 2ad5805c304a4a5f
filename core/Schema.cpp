#include "core/Schema.h"

#include "core/schemaLines.h"

#include <QHash>

#include <algorithm>

namespace schema {

namespace {

using Catalogue = std::vector<Table>;

Column ColumnOf(const Line& line) {
    Column column;
    column.name = QString::fromLatin1(line.name);
    column.type = line.type;
    column.size = line.size;
    column.words = line.words;
    column.foreign = line.foreign;
    column.languageText = line.languageText;
    column.indexed = line.indexed;
    column.essential = line.essential;
    column.refersTo = QString::fromLatin1(line.refersTo);
    column.refersToColumn = QString::fromLatin1(line.refersToColumn);
    column.conditionColumn = QString::fromLatin1(line.conditionColumn);
    return column;
}

const Table& Named(const Catalogue& tables, const QString& name) {
    return *std::find_if(tables.begin(), tables.end(), [&name](const Table& table) { return table.name == name; });
}

Table TableOf(const Line& line, const Catalogue& earlier) {
    Table table;
    if (*line.like != 0) {
        table = Named(earlier, QString::fromLatin1(line.like));
    } else {
        table.Add(ColumnOf({.name = "RECORD_ID", .type = DataType::AutoIncrement}));
    }
    table.name = QString::fromLatin1(line.name);
    table.shared = line.shared;
    table.key = QString::fromLatin1(line.key).split(u' ', Qt::SkipEmptyParts);
    return table;
}

void AddTables(std::span<const Line> lines, Catalogue& tables) {
    for (const Line& line : lines) {
        if (line.isTable) {
            tables.push_back(TableOf(line, tables));
        } else {
            tables.back().Add(ColumnOf(line));
        }
    }
}

/// The columns that tell who wrote a row, and when.
void AddAudit(Table& table) {
    static constexpr Line Audit[] = {Text("USINS", 20), Day("DTINS"), Text("USMDF", 20), Day("DTMDF")};
    for (const Line& line : Audit) {
        table.Add(ColumnOf(line));
    }
}

/// Completes a reference from the code that it refers to; a text of a size of its own keeps that.
void Resolve(Column& column, const Catalogue& tables) {
    const Table& target = Named(tables, column.refersTo);
    if (column.refersToColumn.isEmpty()) {
        column.refersToColumn = target.CodeColumn();
    }
    if (column.size == 0) {
        const Column* code = target.FindColumn(column.refersToColumn);
        column.type = code->type;
        column.size = code->size;
    }
}

bool HoldsCodes(const Table& table, const Column& column) {
    const bool isCode = !column.refersTo.isEmpty() || (column.name.startsWith(QStringLiteral("CD")) &&
                                                       table.key.contains(column.name) && !column.foreign);
    return isCode && IsTextType(column.type);
}

Catalogue MakeTables() {
    Catalogue tables;
    for (const auto& subject :
         {Counterparties(), Articles(), Warehouse(), PriceLists(), BillsOfMaterials(), Production(), Documents(),
          StockMovements(), Accounting(), BaseTables(), SystemTables()}) {
        AddTables(subject, tables);
    }
    for (Table& table : tables) {
        AddAudit(table);
        for (Column& column : table.columns) {
            if (!column.refersTo.isEmpty()) {
                Resolve(column, tables);
            }
            column.holdsCodes = HoldsCodes(table, column);
        }
    }
    return tables;
}

QHash<QString, int> Positions() {
    QHash<QString, int> positions;
    for (const Table& table : Tables()) {
        positions.insert(table.name, static_cast<int>(positions.size()));
    }
    return positions;
}

} // namespace

void Table::Add(Column column) {
    m_positions.Insert(column.name, columns.size());
    columns.push_back(std::move(column));
}

const Column* Table::FindColumn(QAnyStringView column) const {
    const std::size_t* position = m_positions.Find(column);
    if (position == nullptr) {
        position = m_positions.Find(column.toString().toUpper());
    }
    return position == nullptr ? nullptr : &columns[*position];
}

const std::vector<Table>& Tables() {
    static const Catalogue tables = MakeTables();
    return tables;
}

const Table* FindTable(const QString& bareName) {
    static const QHash<QString, int> positions = Positions();
    const int position = positions.value(bareName.toUpper(), -1);
    return position < 0 ? nullptr : &Tables()[static_cast<std::size_t>(position)];
}

} // namespace schema
