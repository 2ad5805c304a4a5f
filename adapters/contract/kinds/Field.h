#pragma once

#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// A value that a declaration takes from the source row: the columns (several are joined, separated by ", ") and the
/// rule between, as in a line of a mapping. A field without either is one that the source does not have.
class Field {
public:
    Field();
    // A column alone is read as it is, several as their texts.
    Field(const char* columns);
    Field(const QString& columns);
    Field(const QString& columns, Rule rule);
    Field(const char* columns, Rule rule);
    ~Field();
    Field(const Field&);
    Field(Field&&) noexcept;
    Field& operator=(const Field&);
    Field& operator=(Field&&) noexcept;

    bool IsSet() const { return m_line.has_value(); }
    /// Whether the row tells it: it is set, and the source does not lack its columns.
    bool IsGiven(Session& session, const SourceRow& row) const { return IsSet() && !m_line->IsLackingIn(session, row); }
    /// The value; Null when the source does not have it, lacks its columns, or its rule leaves it out. Raises
    /// `ImportError` naming the columns when the rule does.
    QVariant Value(Session& session, const SourceRow& row, const Facts& facts = {}) const;
    /// The same as text without surrounding blanks; empty for Null.
    QString Text(Session& session, const SourceRow& row, const Facts& facts = {}) const;
    /// The same of a code. Raises `ImportError` naming the columns when it is blank.
    QString RequiredText(Session& session, const SourceRow& row) const;
    /// The same as number; 0 for blank and Null. Raises `ImportError` naming the columns when it is none.
    double Number(Session& session, const SourceRow& row, const Facts& facts = {}) const;
    /// What the number has in front of its decimal mark. Raises `ImportError` also where 32 bits do not hold it.
    int WholeNumber(Session& session, const SourceRow& row) const;
    /// The same as number; Null for blank.
    QVariant NumberOrNull(Session& session, const SourceRow& row) const;
    /// The same as date; Null for blank. Raises `ImportError` naming the columns when it is none.
    QVariant Day(Session& session, const SourceRow& row) const;
    /// Whether the rule leaves the value out, which is not the same as Null.
    bool IsLeftOut(Session& session, const SourceRow& row) const;
    /// Whether every column of the field is blank; true for one that the source does not have.
    bool IsBlank(const SourceRow& row) const;

    /// The columns that are read of the row.
    QStringList Columns() const;
    /// What it reads of other tables.
    std::vector<TableNeed> Reads() const;
    /// The codes that it translates.
    std::vector<CodeUse> Codes() const;
    /// The line of a mapping that writes it to a column of the target.
    MapLine LineTo(const QString& target) const;

private:
    RuleValue Apply(Session& session, const SourceRow& row, const Facts& facts) const;
    [[noreturn]] void Refuse(const QString& why) const;

    std::optional<MapLine> m_line;
};

/// The same value for every row.
inline Field Fixed(const QVariant& value) { return {QString(), rules::Constant(value)}; }

/// One line of a mapping, or several that come from the same columns.
struct LineGroup {
    LineGroup(const QString& target, const QString& sources, Rule rule);
    LineGroup(const char* target, const char* sources, Rule rule);
    LineGroup(std::vector<MapLine> several);
    ~LineGroup();
    LineGroup(const LineGroup&);
    LineGroup(LineGroup&&) noexcept;
    LineGroup& operator=(const LineGroup&);
    LineGroup& operator=(LineGroup&&) noexcept;

    std::vector<MapLine> lines;
};

/// A column of the customer and one of the supplier that come from the same columns by the same rule.
std::vector<MapLine> ByRole(const QString& customer, const QString& supplier, const QString& sources, const Rule& rule);
/// The three discounts that a text joins with "+", each into its column: of a customer into COSC1 to COSC3, of a
/// supplier into COSF1 to COSF3.
std::vector<MapLine> DiscountsByRole(const QString& source);

/// The lines that a declaration tells.
class Lines {
public:
    Lines();
    Lines(std::initializer_list<LineGroup> groups);
    ~Lines();
    Lines(const Lines&);
    Lines(Lines&&) noexcept;
    Lines& operator=(const Lines&);
    Lines& operator=(Lines&&) noexcept;

    /// All of them, behind those of the usual lines whose target none of them writes.
    std::vector<MapLine> Over(const std::vector<MapLine>& usual) const;
    /// The source columns of the line that writes a target column; empty without one.
    QStringList SourcesOf(const QString& target) const;
    bool IsEmpty() const { return m_lines.empty(); }

private:
    std::vector<MapLine> m_lines;
};

/// Fields that a writer writes as lines of a mapping, for the page and the check; those that the source does not have
/// are left out.
Mapping FieldMapping(const QString& target, const QString& source,
                     const std::vector<std::pair<QString, Field>>& fields);

/// What the rules of a mapping read of other tables than its own.
std::vector<TableNeed> ReadsOf(const Mapping& mapping);

/// Needs of a procedure that does what several do.
Needs operator+(Needs first, const Needs& second);
/// What a mapping reads and writes; it must live as long as the needs.
Needs NeedsOf(const Mapping& mapping);

} // namespace contract
