#include "adapters/contract/map/Mapping.h"

#include "adapters/contract/run/SourceLayout.h"
#include "adapters/contract/run/TargetRow.h"

namespace contract {

namespace {

/// What is wrong with a row, told in one: who mends it sees all of it.
class Faults {
public:
    /// Takes a fault, unless another line that reads the column too has told it; raises those so far where nobody would
    /// read more, and by itself what the operator has seen or a failed look-up has made.
    void Take(ImportError fault, const MapLine& line) {
        const bool isTold = std::any_of(m_told.begin(), m_told.end(), [&](const auto& told) {
            return (told.first.endsWith(fault.Message()) || fault.Message().endsWith(told.first)) &&
                   std::any_of(line.sources.begin(), line.sources.end(),
                               [&told](const QString& source) { return told.second.contains(source); });
        });
        m_told.emplace_back(fault.Message(), line.sources);
        if (!line.sources.isEmpty()) {
            fault.AddContext(QStringLiteral("colonna '%1'").arg(line.sources.join(QStringLiteral("', '"))));
        }
        if (fault.WasShown() || fault.IsOfLookUp()) {
            throw ImportError(fault);
        }
        m_faults += isTold ? QStringList() : QStringList(fault.Message());
        if (m_faults.size() == Most) {
            Raise();
        }
    }
    void Raise() const {
        if (!m_faults.isEmpty()) {
            throw ImportError(m_faults.join(QStringLiteral("; ")));
        }
    }

private:
    static constexpr qsizetype Most = 5;

    QStringList m_faults;
    std::vector<std::pair<QString, QStringList>> m_told; ///< what each said, with the columns of its line
};

void ApplyLines(const std::vector<MapLine>& lines, TargetRow& target, Session& session, const SourceRow& row,
                const Facts& facts, Faults& faults) {
    for (const MapLine& line : lines) {
        try {
            if (const RuleValue value = line.ValueOf(session, row, facts)) {
                line.IsLackingIn(row) ? target.SetWhenNew(line.target, *value) : target.Set(line.target, *value);
            }
        } catch (const ImportError& fault) {
            faults.Take(fault, line);
        }
    }
}

} // namespace

MapLine::MapLine(QString targetColumn, const QString& sourceColumns, Rule how)
    : target(std::move(targetColumn)),
      sources(sourceColumns.split(QStringLiteral(", "), Qt::SkipEmptyParts)),
      rule(std::move(how)) {}

MapLine::MapLine(const char* targetColumn, const char* sourceColumns, Rule how)
    : MapLine(QString::fromUtf8(targetColumn), QString::fromUtf8(sourceColumns), std::move(how)) {}

MapLine::~MapLine() = default;
MapLine::MapLine(const MapLine&) = default;
MapLine::MapLine(MapLine&&) noexcept = default;
MapLine& MapLine::operator=(const MapLine&) = default;
MapLine& MapLine::operator=(MapLine&&) noexcept = default;

bool MapLine::IsLacking(const QString& table, const IsMissing& isMissing) const {
    const auto isGone = [&](const QString& column) { return isMissing(table, column); };
    const auto isAllGone = [&isMissing](const TableNeed& need) {
        return std::all_of(need.columns.begin(), need.columns.end(),
                           [&](const QString& column) { return isMissing(need.table, column); });
    };
    const QStringList needed = sources.first(std::min<qsizetype>(rule.vital, sources.size()));
    return !sources.isEmpty() && (std::all_of(sources.begin(), sources.end(), isMissing) ||
                                  std::any_of(needed.begin(), needed.end(), isMissing));
}

bool MapLine::IsLackingIn(const SourceRow& row) const {
    return row.HasMissing() && IsLacking([&row](const QString& column) { return row.IsMissing(column); });
}

RuleValue MapLine::ValueOf(Session& session, const SourceRow& row, const Facts& facts) const {
    return IsLackingIn(session, row) && !rule.hasDefault ? RuleValue() : rule.apply({session, row, sources, facts});
}

void Mapping::Apply(TargetRow& target, Session& session, const SourceRow& row, const Facts& facts) const {
    Faults faults;
    ApplyLines(lines, target, session, row, facts, faults);
    ApplyLines(AddedLines(session, *this), target, session, row, facts, faults);
    faults.Raise();
}

QStringList Mapping::SourceColumns() const {
    QStringList columns;
    for (const MapLine& line : lines) {
        columns += line.sources;
    }
    columns.removeDuplicates();
    return columns;
}

QStringList Mapping::TargetColumns() const {
    QStringList columns;
    for (const MapLine& line : lines) {
        columns.append(line.target);
    }
    return columns;
}

QString Mapping::Page() const {
    QString page = QStringLiteral("### %1 da %2\n\n| Quadrix | Sorgente | Regola |\n|---|---|---|\n")
                       .arg(targetTable, sourceTable);
    for (const MapLine& line : lines) {
        page += QStringLiteral("| `%1` | %2 | %3 |\n")
                    .arg(line.target,
                         line.sources.isEmpty() ? QStringLiteral("nessuna")
                                                : u'`' + line.sources.join(QStringLiteral("`, `")) + u'`',
                         line.rule.text);
    }
    return page;
}

} // namespace contract
