#include "adapters/contract/map/Mapping.h"

#include "adapters/contract/run/SourceLayout.h"
#include "adapters/contract/run/TargetRow.h"

namespace contract {

namespace {

void ApplyLines(const std::vector<MapLine>& lines, TargetRow& target, Session& session, const SourceRow& row,
                const Facts& facts) {
    for (const MapLine& line : lines) {
        try {
            if (const RuleValue value = line.rule.apply({session, row, line.sources, facts})) {
                target.Set(line.target, *value);
            }
        } catch (ImportError& error) {
            if (!line.sources.isEmpty()) {
                error.AddContext(QStringLiteral("colonna '%1'").arg(line.sources.join(QStringLiteral("', '"))));
            }
            throw;
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

void Mapping::Apply(TargetRow& target, Session& session, const SourceRow& row, const Facts& facts) const {
    ApplyLines(lines, target, session, row, facts);
    ApplyLines(AddedLines(session, *this), target, session, row, facts);
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
