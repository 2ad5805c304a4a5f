#include "adapters/contract/kinds/Field.h"

#include "adapters/contract/map/codesOfRule.h"
#include "adapters/contract/map/wholeNumbers.h"
#include "sql/mod_ovTools.h"

#include <algorithm>

namespace contract {

Field::Field() = default;
Field::Field(const char* columns)
    : Field(QString::fromUtf8(columns)) {}
Field::Field(const QString& columns)
    : Field(columns, columns.contains(u',') ? rules::Text() : rules::AsRead()) {}
Field::Field(const QString& columns, Rule rule)
    : m_line(MapLine({}, columns, std::move(rule))) {}
Field::Field(const char* columns, Rule rule)
    : Field(QString::fromUtf8(columns), std::move(rule)) {}
Field::~Field() = default;
Field::Field(const Field&) = default;
Field::Field(Field&&) noexcept = default;
Field& Field::operator=(const Field&) = default;
Field& Field::operator=(Field&&) noexcept = default;

LineGroup::LineGroup(const QString& target, const QString& sources, Rule rule)
    : lines{MapLine(target, sources, std::move(rule))} {}
LineGroup::LineGroup(const char* target, const char* sources, Rule rule)
    : lines{MapLine(target, sources, std::move(rule))} {}
LineGroup::LineGroup(std::vector<MapLine> several)
    : lines(std::move(several)) {}
LineGroup::~LineGroup() = default;
LineGroup::LineGroup(const LineGroup&) = default;
LineGroup::LineGroup(LineGroup&&) noexcept = default;
LineGroup& LineGroup::operator=(const LineGroup&) = default;
LineGroup& LineGroup::operator=(LineGroup&&) noexcept = default;

void Field::Refuse(const QString& why) const {
    ImportError error(why);
    if (!Columns().isEmpty()) {
        error.AddContext(QStringLiteral("colonna '%1'").arg(Columns().join(QStringLiteral("', '"))));
    }
    throw error;
}

QVariant Field::Value(Session& session, const SourceRow& row, const Facts& facts) const {
    return Apply(session, row, facts).value_or(QVariant());
}

bool Field::IsLeftOut(Session& session, const SourceRow& row) const { return !Apply(session, row, {}); }

RuleValue Field::Apply(Session& session, const SourceRow& row, const Facts& facts) const {
    if (!m_line) {
        return std::nullopt;
    }
    try {
        return m_line->ValueOf(session, row, facts);
    } catch (const ImportError& error) {
        Refuse(error.Message());
    }
    return std::nullopt;
}

QString Field::Text(Session& session, const SourceRow& row, const Facts& facts) const {
    return mod_ovTools::ToText(Value(session, row, facts)).trimmed();
}

QString Field::RequiredText(Session& session, const SourceRow& row) const {
    QString text = Text(session, row);
    if (text.isEmpty()) {
        Refuse(QStringLiteral("il codice manca"));
    }
    return text;
}

double Field::Number(Session& session, const SourceRow& row, const Facts& facts) const {
    const QVariant value = Value(session, row, facts);
    const QString text = mod_ovTools::ToText(value).trimmed();
    if (text.isEmpty()) {
        return 0;
    }
    const auto number = mod_ovTools::ReadNumber(value);
    if (!number) {
        Refuse(QStringLiteral("'%1' non è un numero").arg(text));
    }
    return *number;
}

int Field::WholeNumber(Session& session, const SourceRow& row) const {
    const double number = Number(session, row);
    try {
        return WholePartOf(number);
    } catch (const ImportError& error) {
        Refuse(error.Message());
    }
}

QVariant Field::NumberOrNull(Session& session, const SourceRow& row) const {
    return Text(session, row).isEmpty() ? QVariant() : QVariant(Number(session, row));
}

QVariant Field::Day(Session& session, const SourceRow& row) const {
    const QVariant value = Value(session, row);
    const QString text = mod_ovTools::ToText(value).trimmed();
    if (text.isEmpty()) {
        return {};
    }
    const auto day = mod_ovTools::ReadDate(value);
    if (!day) {
        Refuse(QStringLiteral("'%1' non è una data").arg(text));
    }
    return *day;
}

bool Field::IsBlank(const SourceRow& row) const {
    const QStringList columns = Columns();
    return std::all_of(columns.begin(), columns.end(), [&row](const QString& column) { return row.IsBlank(column); });
}

QStringList Field::Columns() const { return m_line ? m_line->sources : QStringList(); }

std::vector<TableNeed> Field::Reads() const { return m_line ? m_line->rule.reads : std::vector<TableNeed>(); }

std::vector<CodeUse> Field::Codes() const { return m_line ? CodesOf(m_line->rule) : std::vector<CodeUse>(); }

MapLine Field::LineTo(const QString& target) const {
    MapLine line = m_line.value_or(MapLine({}, {}, rules::AsRead()));
    line.target = target;
    return line;
}

std::vector<MapLine> ByRole(const QString& customer, const QString& supplier, const QString& sources,
                            const Rule& rule) {
    return {{customer, sources, rules::CustomerOnly(rule)}, {supplier, sources, rules::SupplierOnly(rule)}};
}

std::vector<MapLine> DiscountsByRole(const QString& source) {
    std::vector<MapLine> lines;
    for (const int position : {1, 2, 3}) {
        const QString number = QString::number(position);
        for (MapLine& line : ByRole("COSC" + number, "COSF" + number, source, rules::Discount(position))) {
            lines.push_back(std::move(line));
        }
    }
    return lines;
}

Lines::Lines() = default;
Lines::~Lines() = default;
Lines::Lines(const Lines&) = default;
Lines::Lines(Lines&&) noexcept = default;
Lines& Lines::operator=(const Lines&) = default;
Lines& Lines::operator=(Lines&&) noexcept = default;

Lines::Lines(std::initializer_list<LineGroup> groups) {
    for (const LineGroup& group : groups) {
        m_lines.insert(m_lines.end(), group.lines.begin(), group.lines.end());
    }
}

std::vector<MapLine> Lines::Over(const std::vector<MapLine>& usual) const {
    std::vector<MapLine> all;
    std::copy_if(usual.begin(), usual.end(), std::back_inserter(all), [this](const MapLine& line) {
        return std::none_of(m_lines.begin(), m_lines.end(),
                            [&line](const MapLine& own) { return own.target == line.target; });
    });
    all.insert(all.end(), m_lines.begin(), m_lines.end());
    return all;
}

QStringList Lines::SourcesOf(const QString& target) const {
    const auto line =
        std::find_if(m_lines.begin(), m_lines.end(), [&](const MapLine& one) { return one.target == target; });
    return line == m_lines.end() ? QStringList() : line->sources;
}

Mapping FieldMapping(const QString& target, const QString& source,
                     const std::vector<std::pair<QString, Field>>& fields) {
    Mapping mapping{.targetTable = target, .sourceTable = source, .lines = {}, .isPart = true};
    for (const auto& [column, field] : fields) {
        if (field.IsSet()) {
            mapping.lines.push_back(field.LineTo(column));
        }
    }
    return mapping;
}

std::vector<TableNeed> ReadsOf(const Mapping& mapping) {
    std::vector<TableNeed> reads;
    for (const MapLine& line : mapping.lines) {
        reads = reads + line.rule.reads;
    }
    return reads;
}

Needs operator+(Needs first, const Needs& second) {
    first.mappings.insert(first.mappings.end(), second.mappings.begin(), second.mappings.end());
    first.reads = first.reads + second.reads;
    first.writes = first.writes + second.writes;
    first.codes.insert(first.codes.end(), second.codes.begin(), second.codes.end());
    return first;
}

Needs NeedsOf(const Mapping& mapping) { return {{&mapping}, ReadsOf(mapping), {}}; }

} // namespace contract
