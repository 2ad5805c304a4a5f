#pragma once

#include "sql/nameMap.h"
#include "sql/types.h"

#include <QString>
#include <QStringList>

#include <algorithm>
#include <vector>

/// The tables of the Quadrix database that the imports read and write.
namespace schema {

/// A column of a table.
struct Column {
    QString name;
    DataType type = DataType::NVarChar;
    int size = 0;              ///< characters of a text; 0 for every other type
    bool words = false;        ///< a text that people read: a name, a description, an address; not a code
    bool foreign = false;      ///< codes of somebody else, that are kept as they come
    bool languageText = false; ///< its texts are kept by language in SYS_LNG too
    bool indexed = false;      ///< has an index of its own, beside that of the table's key
    bool essential = false;    ///< a row says nothing without it: its code, name, description or quantity
    bool holdsCodes = false;   ///< codes of Quadrix: of the table itself ("CD..." in its key), or of another
    QString refersTo;          ///< bare name of the table whose codes it holds; empty for none
    QString refersToColumn;    ///< the column of those codes
    QString conditionColumn;   ///< column that names the table referred to, when one column serves several; else empty
};

/// A table, with the identity and audit columns that every table has.
class Table {
public:
    QString name;                ///< bare name, "CON_TRO"
    bool shared = false;         ///< one for all companies: carries no company code
    QStringList key;             ///< columns of its key, in order; a key of one column is unique; may be empty
    std::vector<Column> columns; ///< in the order in which the table is created

    /// The column of that name, compared without case; null when there is none.
    const Column* FindColumn(QAnyStringView column) const;
    /// Name of the column that holds the table's own code: its key of one column; empty when it has none.
    QString CodeColumn() const { return key.size() == 1 ? key.front() : QString(); }
    /// Whether no row is to be written without what the source has for a column: it is part of the key, or essential.
    bool Needs(const Column& column) const { return column.essential || key.contains(column.name); }
    /// Whether texts of it are kept by language in SYS_LNG too.
    bool HasLanguageTexts() const {
        return std::any_of(columns.begin(), columns.end(), [](const Column& column) { return column.languageText; });
    }
    /// Adds a column after the last.
    void Add(Column column);

private:
    NameMap<std::size_t> m_positions; ///< by name in upper case
};

/// All tables, by subject.
const std::vector<Table>& Tables();
/// The table of that bare name, compared without case; null when there is none.
const Table* FindTable(const QString& bareName);

} // namespace schema
