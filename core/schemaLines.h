#pragma once

#include "sql/types.h"

#include <span>

/// The words in which the schema is written down: a table, then its columns, one a line.
namespace schema {

/// A table, or a column of the table above it.
struct Line {
    const char* name = "";
    DataType type = DataType::NVarChar;
    int size = 0;
    bool isTable = false;
    bool shared = false;              ///< of a table
    const char* key = "";             ///< of a table: its key columns, with a blank between
    const char* like = "";            ///< of a table: an earlier table whose columns it has too
    const char* refersTo = "";        ///< of a reference: the table whose codes the column holds
    const char* refersToColumn = "";  ///< of a reference: the column of those codes; empty for the table's code column
    const char* conditionColumn = ""; ///< of a reference: column that names the table referred to
    bool words = false;
    bool foreign = false;
    bool languageText = false;
    bool indexed = false;
    bool essential = false;

    /// Of a table: it has the columns of an earlier one.
    constexpr Line Like(const char* table) const {
        Line line = *this;
        line.like = table;
        return line;
    }
    /// Rows are looked up by this column.
    constexpr Line Indexed() const {
        Line line = *this;
        line.indexed = true;
        return line;
    }
    /// A row says nothing without it, or cannot be found again: its code, name, description or quantity.
    constexpr Line Essential() const {
        Line line = *this;
        line.essential = true;
        return line;
    }
    /// The codes are somebody else's, such as a customer's for an article.
    constexpr Line Foreign() const {
        Line line = *this;
        line.foreign = true;
        return line;
    }
    /// The text is kept by language too.
    constexpr Line Translated() const {
        Line line = *this;
        line.languageText = true;
        return line;
    }
    /// The column holds codes of `table` in the rows whose `condition` column names that table.
    constexpr Line Names(const char* table, const char* condition) const {
        Line line = *this;
        line.refersTo = table;
        line.conditionColumn = condition;
        return line;
    }
};

constexpr Line CompanyTable(const char* name, const char* key = "") {
    return {.name = name, .isTable = true, .key = key};
}
constexpr Line SharedTable(const char* name, const char* key = "") {
    return {.name = name, .isTable = true, .shared = true, .key = key};
}
/// A text of that many characters: a code, a number, a mark.
constexpr Line Text(const char* name, int size) { return {.name = name, .size = size}; }
/// A text of that many characters that people read: a name, a description, an address.
constexpr Line Words(const char* name, int size) { return {.name = name, .size = size, .words = true}; }
/// A text of any length.
constexpr Line Notes(const char* name) { return {.name = name, .type = DataType::NText}; }
/// Yes or no.
constexpr Line Flag(const char* name) { return {.name = name, .type = DataType::Bit}; }
/// A date, with its time.
constexpr Line Day(const char* name) { return {.name = name, .type = DataType::DateTime}; }
/// A whole number.
constexpr Line Whole(const char* name) { return {.name = name, .type = DataType::Integer}; }
/// A whole number that may be a large one.
constexpr Line Large(const char* name) { return {.name = name, .type = DataType::Long}; }
/// A quantity, an amount, a measure or a percentage.
constexpr Line Number(const char* name) { return {.name = name, .type = DataType::Double}; }
/// A file's bytes.
constexpr Line Bytes(const char* name) { return {.name = name, .type = DataType::Object}; }
/// RECORD_ID of a row of another table.
constexpr Line Link(const char* name) { return {.name = name, .type = DataType::Long, .indexed = true}; }
/// A code of another table (or of another row of the same), with the type and size that the code has there.
constexpr Line Code(const char* name, const char* table, const char* column = "") {
    return {.name = name, .refersTo = table, .refersToColumn = column};
}

// The schema, by subject.
std::span<const Line> Counterparties();
std::span<const Line> Articles();
std::span<const Line> Warehouse();
std::span<const Line> PriceLists();
std::span<const Line> BillsOfMaterials();
std::span<const Line> Production();
std::span<const Line> Documents();
std::span<const Line> StockMovements();
std::span<const Line> Accounting();
std::span<const Line> BaseTables();
std::span<const Line> SystemTables();

} // namespace schema
