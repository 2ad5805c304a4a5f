#include "core/Schema.h"

#include "core/schemaLines.h"

namespace schema {

namespace {

using Catalogue = std::vector<Table>;

Column ColumnOf(const Line& line) {
    Column column;
    column.name = QString::fromLatin1(line.name);
    column.type = line.type;
    column.size = line.size;
    column.languageText = line.languageText;
    column.indexed = line.indexed;
    column.refersTo = QString::fromLatin1(line.refersTo);
    column.condition = QString::fromLatin1(line.condition);
    return column;
}

Table TableOf(const Line& line) {
    Table table;
    table.name = QString::fromLatin1(line.name);
    table.shared = line.shared;
    table.key = QString::fromLatin1(line.key).split(u' ', Qt::SkipEmptyParts);
    table.Add(ColumnOf({.name = "RECORD_ID", .type = DataType::AutoIncrement}));
    return table;
}

/// The columns that tell who wrote a row, and when.
void AddAudit(Table& table) {
    static constexpr Line Audit[] = {Text("USINS", 20), Day("DTINS"), Text("USMDF", 20), Day("DTMDF")};
    for (const Line& line : Audit) {
        table.Add(ColumnOf(line));
    }
}

void AddTables(std::span<const Line> lines, Catalogue& tables) {
    for (const Line& line : lines) {
        if (!line.isTable) {
            tables.back().Add(ColumnOf(line));
            continue;
        }
        tables.push_back(TableOf(line));
    }
}

QHash<QString, int> PositionsOf(const Catalogue& tables) {
    QHash<QString, int> positions;
    for (const Table& table : tables) {
        positions.insert(table.name, static_cast<int>(positions.size()));
    }
    return positions;
}

/// A reference is as long as the code that it refers to. Masters that take their code from another master
/// come after it, so that one pass is enough.
void SizeReferences(Catalogue& tables) {
    const QHash<QString, int> positions = PositionsOf(tables);
    for (Table& table : tables) {
        for (Column& column : table.columns) {
            if (column.size > 0 || column.refersTo.isEmpty()) {
                continue;
            }
            const Table& target = tables.at(static_cast<std::size_t>(positions.value(column.refersTo)));
            const Column* code = target.FindColumn(target.CodeColumn());
            column.type = code->type;
            column.size = code->size;
        }
    }
}

Catalogue MakeTables() {
    Catalogue tables;
    for (const auto& subject : {Counterparties()}) {
        AddTables(subject, tables);
    }
    for (Table& table : tables) {
        AddAudit(table);
    }
    SizeReferences(tables);
    return tables;
}

} // namespace

void Table::Add(Column column) {
    m_positions.insert(column.name, static_cast<int>(columns.size()));
    columns.push_back(std::move(column));
}

const Column* Table::FindColumn(const QString& column) const {
    auto position = m_positions.constFind(column);
    if (position == m_positions.constEnd()) {
        position = m_positions.constFind(column.toUpper());
    }
    return position == m_positions.constEnd() ? nullptr : &columns[static_cast<std::size_t>(*position)];
}

const std::vector<Table>& Tables() {
    static const Catalogue tables = MakeTables();
    return tables;
}

const Table* FindTable(const QString& bareName) {
    static const QHash<QString, int> positions = PositionsOf(Tables());
    const int position = positions.value(bareName.toUpper(), -1);
    return position < 0 ? nullptr : &Tables()[static_cast<std::size_t>(position)];
}

} // namespace schema
