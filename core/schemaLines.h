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
    bool shared = false;        ///< of a table
    const char* key = "";       ///< of a table: its key columns, with a blank between
    const char* refersTo = "";  ///< of a reference, which takes type and size of the code it refers to
    const char* condition = ""; ///< of a reference: column that names the table referred to
    bool languageText = false;
    bool indexed = false;

    /// Rows are looked up by this column.
    constexpr Line Indexed() const {
        Line line = *this;
        line.indexed = true;
        return line;
    }
    /// The text is kept by language too.
    constexpr Line Translated() const {
        Line line = *this;
        line.languageText = true;
        return line;
    }
    /// The column refers to the codes of a table in the rows whose `conditionColumn` names that table.
    constexpr Line Names(const char* table, const char* conditionColumn) const {
        Line line = *this;
        line.refersTo = table;
        line.condition = conditionColumn;
        return line;
    }
};

constexpr Line CompanyTable(const char* name, const char* key = "") {
    return {.name = name, .isTable = true, .key = key};
}
constexpr Line SharedTable(const char* name, const char* key = "") {
    return {.name = name, .isTable = true, .shared = true, .key = key};
}
/// A text of that many characters.
constexpr Line Text(const char* name, int size) { return {.name = name, .size = size}; }
/// A text of any length.
constexpr Line Notes(const char* name) { return {.name = name, .type = DataType::NText}; }
/// Yes or no.
constexpr Line Flag(const char* name) { return {.name = name, .type = DataType::Bit}; }
/// A date, with its time.
constexpr Line Day(const char* name) { return {.name = name, .type = DataType::DateTime}; }
/// A whole number.
constexpr Line Whole(const char* name) { return {.name = name, .type = DataType::Integer}; }
/// A quantity, an amount, a measure or a percentage.
constexpr Line Number(const char* name) { return {.name = name, .type = DataType::Double}; }
/// A file's bytes.
constexpr Line Bytes(const char* name) { return {.name = name, .type = DataType::Object}; }
/// RECORD_ID of a row of another table.
constexpr Line Link(const char* name) { return {.name = name, .type = DataType::Long, .indexed = true}; }
/// A code of another table, or of a row of its own.
constexpr Line Code(const char* name, const char* table) { return {.name = name, .refersTo = table}; }

// The schema, by subject.
std::span<const Line> Counterparties();

} // namespace schema
