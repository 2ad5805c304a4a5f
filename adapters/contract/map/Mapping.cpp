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
            const bool isLacking = line.IsLackingIn(session, row);
            if (isLacking && !line.rule.hasDefault) {
                continue;
            }
            if (const RuleValue value = line.rule.apply({session, row, line.sources, facts})) {
                isLacking ? target.SetWhenNew(line.target, *value) : target.Set(line.target, *value);
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
    if (std::any_of(needed.begin(), needed.end(), isGone)) {
        return true;
    }
    const bool lacksOwn = std::all_of(sources.begin(), sources.end(), isGone);
    const bool lacksOthers = std::all_of(rule.elsewhere.begin(), rule.elsewhere.end(), isAllGone);
    if (rule.isElsewhere) {
        return lacksOthers || (!sources.isEmpty() && lacksOwn);
    }
    return (!sources.isEmpty() || !rule.elsewhere.empty()) && lacksOwn && lacksOthers;
}

bool MapLine::IsLackingIn(Session& session, const SourceRow& row) const {
    if (!row.HasMissing() && rule.elsewhere.empty()) {
        return false;
    }
    return IsLacking({}, [&](const QString& table, const QString& column) {
        return table.isEmpty() ? row.IsMissing(column) : IsLeftOut(session, table, column);
    });
}

bool MapLine::IsTouched(const QString& table, const IsMissing& isMissing) const {
    return std::any_of(sources.begin(), sources.end(), [&](const QString& one) { return isMissing(table, one); }) ||
           std::any_of(rule.elsewhere.begin(), rule.elsewhere.end(), [&](const TableNeed& need) {
               return std::any_of(need.columns.begin(), need.columns.end(),
                                  [&](const QString& one) { return isMissing(need.table, one); });
           });
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

QStringList Mapping::LackingColumns(Session& session) const {
    QStringList columns;
    for (const MapLine& line : lines) {
        const bool isLacking = line.IsLacking(sourceTable, [&session](const QString& table, const QString& column) {
            return IsLeftOut(session, table, column);
        });
        columns += isLacking ? QStringList(line.target) : QStringList();
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
