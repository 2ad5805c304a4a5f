#include "adapters/contract/run/SourceLayout.h"

#include "adapters/contract/run/Origin.h"

#include "adapters/contract/map/ruleNames.h"
#include "core/nearNames.h"
#include "sql/mod_ovTools.h"
#include "sql/statementTokens.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>

namespace contract {

namespace {

using sources::LayoutFile;

const QString ConstantMark = QStringLiteral("costante:");
const QString RuleMark = QStringLiteral("->");

bool IsSame(const QString& left, const QString& right) { return left.compare(right, Qt::CaseInsensitive) == 0; }

/// "table.column", cut at the last point.
std::pair<QString, QString> Cut(const QString& name) {
    const qsizetype point = name.lastIndexOf(u'.');
    return point < 0 ? std::pair{name, QString()}
                     : std::pair{name.first(point).trimmed(), name.mid(point + 1).trimmed()};
}

/// The same of a source, where either may have points of its own: cut behind one of its tables, where it begins so.
std::pair<QString, QString> Cut(const QString& name, const QMap<QString, QStringList>& known) {
    for (auto table = known.keyBegin(); table != known.keyEnd(); ++table) {
        if (name.startsWith(*table + u'.', Qt::CaseInsensitive)) {
            return {*table, name.mid(table->size() + 1).trimmed()};
        }
    }
    return Cut(name);
}

/// Where the mark in front of a rule stands, behind a column that may be in brackets; the end without one.
qsizetype RuleMarkIn(const QString& value) {
    const qsizetype open = value.indexOf(QLatin1String(".["));
    const qsizetype first = value.indexOf(RuleMark);
    const bool isInBrackets = open >= 0 && first > open && value.indexOf(u']', open) > first;
    const qsizetype mark = isInBrackets ? value.indexOf(RuleMark, value.indexOf(u']', open)) : first;
    return mark < 0 ? value.size() : mark;
}

QString LineKey(const QString& target, const QString& source) { return target.toUpper() + u'|' + source.toUpper(); }

/// What is wrong with a condition as a text; empty when nothing is. What it names, the source judges.
QString WrongCondition(const QString& condition) {
    int depth = 0;
    for (const StatementToken& token : TokensOf(condition)) {
        const QStringView text = QStringView(condition).mid(token.begin, token.end - token.begin);
        depth += text == u'(' ? 1 : text == u')' ? -1 : 0;
        const bool isComment = token.kind == StatementToken::Kind::Blank && !text.trimmed().isEmpty();
        if (token.kind == StatementToken::Kind::Open || isComment || text == u';' || depth < 0) {
            return QStringLiteral("la condizione non si legge da '%1'").arg(text);
        }
    }
    return depth > 0             ? QStringLiteral("nella condizione una parentesi non è chiusa")
           : condition.isEmpty() ? QStringLiteral("manca la condizione")
                                 : QString();
}

// What a yes and a no are called; the first as in a column of the source.
const QStringList SetFlags{"1", "-1", "S", "Y", "T", "True"};
const QStringList UnsetFlags{"0", "N", "F", "False", "No"};

/// A yes or a no; none when it is neither.
std::optional<bool> FlagOf(const QString& value) {
    const bool isSet = SetFlags.contains(value, Qt::CaseInsensitive);
    return isSet || UnsetFlags.contains(value, Qt::CaseInsensitive) ? std::optional(isSet) : std::nullopt;
}

/// What keeps a constant from standing in a column; empty when nothing does.
QString WrongConstant(const schema::Column& column, const QString& value) {
    const bool isNumber = column.type == DataType::Integer || column.type == DataType::Long ||
                          column.type == DataType::Double || column.type == DataType::TinyInt;
    if (isNumber && !mod_ovTools::ReadNumber(value)) {
        return QStringLiteral("'%1' non è un numero").arg(value);
    }
    if (column.type == DataType::DateTime && !mod_ovTools::ReadDate(value)) {
        return QStringLiteral("'%1' non è una data").arg(value);
    }
    if (column.type == DataType::Bit && !FlagOf(value)) {
        return QStringLiteral("'%1' non è né un sì (%2) né un no (%3)")
            .arg(value, SetFlags.join(QStringLiteral(", ")), UnsetFlags.join(QStringLiteral(", ")));
    }
    return column.size > 0 && value.size() > column.size
               ? QStringLiteral("'%1' ha %2 caratteri, la colonna ne tiene %3")
                     .arg(value, QString::number(value.size()), QString::number(column.size))
               : QString();
}

QVariant ConstantOf(const schema::Column& column, const QString& value) {
    return column.type == DataType::Bit ? QVariant(FlagOf(value).value_or(false)) : QVariant(value);
}

} // namespace

SourceLayout::SourceLayout(LayoutFile file, const Origin& origin)
    : m_file(std::move(file)) {
    for (const Procedure& procedure : origin.procedures) {
        if (procedure.opensSource && SourceOf(origin, procedure) != &origin) { // it has a layout of its own
            continue;
        }
        for (const NeededTables::Table& table : NeededTables::Read(procedure.needs).Tables()) {
            m_known[table.name] += table.necessary + table.optional;
        }
        m_mappings.insert(m_mappings.end(), procedure.needs.mappings.begin(), procedure.needs.mappings.end());
    }
}

void SourceLayout::Take(Session& session, const Origin& origin, ovConnection& source) {
    session.Layout.reset();
    const QString folder = QFileInfo(session.Config.ConfigFile()).path() + QStringLiteral("/Tracciati");
    auto file = LayoutFile::Read(LayoutFile::PathOf(folder, origin.name));
    if (!file && !origin.source.company) {
        return;
    }
    const std::shared_ptr<SourceLayout> taken(new SourceLayout(file.value_or(LayoutFile()), origin));
    sources::Layout& layout = LayoutOf(source);
    for (const auto& [table, columns] : taken->m_known.asKeyValueRange()) {
        layout.Know(table, columns);
    }
    if (origin.source.company) {
        taken->m_company.emplace(session, *origin.source.company);
        taken->m_company->CallTables(layout, taken->m_known.keys());
    }
    taken->TakeTables(layout);
    taken->TakeColumns(layout);
    taken->TakeFilters(layout);
    taken->TakeAdded(layout);
    source.SourceTables = layout.InSource(source.SourceTables);
    source.LookupColumns = layout.InSource(source.LookupColumns);
    session.Layout = taken;
}

// --- The entries

const QString& SourceLayout::KnownTable(const QString& section, const Entry& entry, const QString& table) const {
    for (auto known = m_known.keyBegin(); known != m_known.keyEnd(); ++known) {
        if (IsSame(*known, table)) {
            return *known;
        }
    }
    throw m_file.Wrong(
        section, entry,
        QStringLiteral("l'origine non legge nessuna tabella '%1'%2; legge %3")
            .arg(table, GroundedSuggestions(table, m_known.keys()), m_known.keys().join(QStringLiteral(", "))));
}

void SourceLayout::TakeTables(sources::Layout& layout) const {
    for (const Entry& entry : m_file.Entries(LayoutFile::Tables)) {
        const QString& table = KnownTable(LayoutFile::Tables, entry, entry.key);
        if (entry.value.isEmpty()) {
            throw m_file.Wrong(LayoutFile::Tables, entry, QStringLiteral("manca il nome che ha nell'origine"));
        }
        layout.CallTable(table, entry.value);
    }
}

void SourceLayout::TakeColumns(sources::Layout& layout) const {
    for (const Entry& entry : m_file.Entries(LayoutFile::Columns)) {
        const auto [table, column] = Cut(entry.key, m_known);
        const QString& known = KnownTable(LayoutFile::Columns, entry, table);
        const QStringList& columns = m_known[known];
        if (!columns.contains(column, Qt::CaseInsensitive)) {
            throw m_file.Wrong(LayoutFile::Columns, entry,
                               QStringLiteral("della tabella '%1' non si legge nessuna colonna '%2'%3")
                                   .arg(known, column, GroundedSuggestions(column, columns)));
        }
        layout.CallColumn(known, column, sources::NameParts(entry.value).join(u'.'));
    }
}

void SourceLayout::TakeFilters(sources::Layout& layout) const {
    for (const Entry& entry : m_file.Entries(LayoutFile::Filters)) {
        const QString& table = KnownTable(LayoutFile::Filters, entry, entry.key);
        if (const QString wrong = WrongCondition(entry.value); !wrong.isEmpty()) {
            throw m_file.Wrong(LayoutFile::Filters, entry, wrong);
        }
        layout.Filter(table, entry.value);
    }
}

// --- Further columns of the target

void SourceLayout::TakeAdded(sources::Layout& layout) {
    for (const Entry& entry : m_file.Entries(LayoutFile::Added)) {
        const Added added = AddedOf(entry);
        Place(added);
        if (!added.column.isEmpty()) {
            layout.ReadAlso(added.table, added.column);
        }
        m_added.push_back(added);
    }
}

/// The name under which the rows have a column: the logical one of a column that is called otherwise.
QString SourceLayout::SourceColumn(const QString& table, const QString& column) const {
    for (const Entry& entry : m_file.Entries(LayoutFile::Columns)) {
        const auto [ofTable, logical] = Cut(entry.key, m_known);
        if (IsSame(ofTable, table) && IsSame(sources::NameParts(entry.value).join(u'.'), column)) {
            return logical;
        }
    }
    return column;
}

SourceLayout::Added SourceLayout::AddedOf(const Entry& entry) const {
    const auto wrong = [&](const QString& what) { return m_file.Wrong(LayoutFile::Added, entry, what); };
    const auto [table, column] = Cut(entry.key);
    const schema::Table* target = schema::FindTable(table);
    const schema::Column* found = target == nullptr ? nullptr : target->FindColumn(column);
    if (found == nullptr) {
        throw wrong(QStringLiteral("Quadrix non ha la colonna '%1'").arg(entry.key));
    }
    if (entry.value.startsWith(ConstantMark, Qt::CaseInsensitive)) {
        const QString value = entry.value.mid(ConstantMark.size()).trimmed();
        if (const QString what = WrongConstant(*found, value); !what.isEmpty()) {
            throw wrong(what);
        }
        return {entry, target->name, {}, {}, MapLine(found->name, {}, rules::Constant(ConstantOf(*found, value)))};
    }
    const qsizetype mark = RuleMarkIn(entry.value);
    const auto [sourceTable, written] = Cut(entry.value.first(mark).trimmed(), m_known);
    const QString rule = entry.value.sliced(mark).mid(RuleMark.size()).trimmed();
    const QString& known = KnownTable(LayoutFile::Added, entry, sourceTable);
    const QString sourceColumn = written.startsWith(u'[') ? sources::NameParts(written).join(u'.') : written;
    if (sourceColumn.isEmpty()) {
        throw wrong(QStringLiteral("manca la colonna: 'TABELLA.Colonna' o 'costante:valore'"));
    }
    const QString read = SourceColumn(known, sourceColumn);
    try {
        return {entry, target->name, known, read,
                MapLine(found->name, read, rule.isEmpty() ? UsualRule(*found) : RuleOf(rule, known, read))};
    } catch (const ImportError& error) {
        throw wrong(error.Message());
    }
}

void SourceLayout::Place(const Added& added) {
    const auto wrong = [&](const QString& what) { return m_file.Wrong(LayoutFile::Added, added.entry, what); };
    if (schema::FindTable(added.target)->key.contains(added.line.target)) {
        throw wrong(QStringLiteral("'%1' è la chiave della tabella").arg(added.line.target));
    }
    const auto writes = [&](const Mapping* mapping) { return mapping->targetTable == added.target; };
    QSet<QString> placed;
    for (const Mapping* mapping : m_mappings) {
        const bool fits =
            !mapping->isPart && writes(mapping) && (added.table.isEmpty() || IsSame(mapping->sourceTable, added.table));
        const QString key = LineKey(mapping->targetTable, mapping->sourceTable);
        if (!fits || placed.contains(key)) {
            continue;
        }
        if (mapping->isOfKeys && !added.column.isEmpty()) {
            throw wrong(QStringLiteral("di '%1' si legge la chiave sola, una volta per più righe: una riga di '%2' non "
                                       "può prenderne un'altra colonna")
                            .arg(added.table, added.target));
        }
        for (const MapLine& line : mapping->lines) {
            if (line.target == added.line.target && !line.sources.isEmpty()) {
                throw wrong(QStringLiteral("viene già da '%1.%2': per leggerla da un'altra colonna darne il nome in "
                                           "[COLONNE]")
                                .arg(mapping->sourceTable, line.sources.join(QStringLiteral("', '"))));
            }
        }
        m_lines[key].push_back(added.line);
        placed.insert(key);
    }
    if (placed.isEmpty()) {
        const bool isWithOthers = std::any_of(m_mappings.begin(), m_mappings.end(), writes) &&
                                  std::none_of(m_mappings.begin(), m_mappings.end(), [&](const Mapping* mapping) {
                                      return writes(mapping) && !mapping->isPart;
                                  });
        if (isWithOthers) {
            throw wrong(QStringLiteral("le righe di '%1' si scrivono insieme a quelle di un'altra tabella, e non "
                                       "prendono colonne in più")
                            .arg(added.target));
        }
        throw wrong(
            added.table.isEmpty()
                ? QStringLiteral("l'origine non scrive '%1' da una tabella di corrispondenze").arg(added.target)
                : QStringLiteral("l'origine non scrive '%1' dalla tabella '%2'").arg(added.target, added.table));
    }
}

const std::vector<MapLine>& SourceLayout::AddedTo(const Mapping& mapping) const {
    static const std::vector<MapLine> none;
    const auto lines =
        mapping.isPart ? m_lines.constEnd() : m_lines.constFind(LineKey(mapping.targetTable, mapping.sourceTable));
    return lines == m_lines.constEnd() ? none : *lines;
}

// --- The open source

bool SourceLayout::IsMarkedMissing(const QString& table, const QString& column) const {
    const auto& entries = m_file.Entries(LayoutFile::Columns);
    return std::any_of(entries.begin(), entries.end(), [&](const Entry& entry) {
        return entry.value.isEmpty() && IsSame(entry.key, table + u'.' + column);
    });
}

void SourceLayout::Check(ovConnection& source, const QString& table, const QStringList& columns) const {
    for (const Entry& entry : m_file.Entries(LayoutFile::Tables)) {
        if (IsSame(entry.key, table) && columns.isEmpty()) {
            throw m_file.Wrong(LayoutFile::Tables, entry,
                               QStringLiteral("l'origine non ha la tabella '%1'%2")
                                   .arg(entry.value, GroundedSuggestions(entry.value, source.GetTables())));
        }
    }
    const auto checkColumn = [&](const QString& section, const Entry& entry, const QString& name,
                                 const QString& inSource) {
        if (!columns.contains(name, Qt::CaseInsensitive)) {
            throw m_file.Wrong(section, entry,
                               QStringLiteral("la tabella '%1' dell'origine non ha la colonna '%2'%3")
                                   .arg(table, inSource, GroundedSuggestions(inSource, columns)));
        }
    };
    for (const Entry& entry : m_file.Entries(LayoutFile::Columns)) {
        const auto [ofTable, column] = Cut(entry.key);
        if (IsSame(ofTable, table) && !entry.value.isEmpty() && !columns.isEmpty()) {
            checkColumn(LayoutFile::Columns, entry, column, entry.value);
        }
    }
    for (const Added& added : m_added) {
        if (IsSame(added.table, table) && !columns.isEmpty()) {
            checkColumn(LayoutFile::Added, added.entry, added.column, added.column);
        }
    }
    for (const Entry& entry : m_file.Entries(LayoutFile::Filters)) {
        if (IsSame(entry.key, table) && !columns.isEmpty()) {
            CheckFilter(source, entry);
        }
    }
}

QString SourceLayout::TakeCompany(ovConnection& source) const {
    return m_company ? m_company->Take(source, LayoutOf(source), m_known.keys()) : QString();
}

QStringList SourceLayout::CompanyLines(ovConnection& source, const QStringList& tables) const {
    if (!m_company) {
        return {};
    }
    QStringList lines = m_company->Lines(tables);
    for (const Entry& entry : m_file.Entries(LayoutFile::Tables)) {
        const QString name = sources::NameParts(entry.value).last();
        if (tables.contains(entry.key, Qt::CaseInsensitive) &&
            m_company->IsOfAnother(name, source.GetTables(), m_known.keys())) {
            lines.append(QStringLiteral("Tabella di un'altra azienda: '%1' si legge da '%2', che il tracciato nomina")
                             .arg(entry.key, name));
        }
    }
    return lines;
}

QStringList SourceLayout::WithoutOthers(const QStringList& tables) const {
    QStringList own = tables;
    own.removeIf(
        [&](const QString& name) { return m_company && m_company->IsOfAnother(name, tables, m_known.keys()); });
    return own;
}

/// The source itself is asked, for no row.
void SourceLayout::CheckFilter(ovConnection& source, const Entry& entry) const {
    ovErrors* const errors = std::exchange(source.Errors, nullptr);
    const auto restore = qScopeGuard([&] { source.Errors = errors; });
    try {
        source.ExecuteWC(QStringLiteral("SELECT COUNT(*) FROM [%1] WHERE 1 = 0").arg(entry.key));
    } catch (const SqlError& error) {
        throw m_file.Wrong(
            LayoutFile::Filters, entry,
            QStringLiteral("l'origine non accetta la condizione '%1': %2").arg(entry.value, error.Message()));
    }
}

QString SourceLayout::FilterOf(const QString& table) const {
    for (const Entry& entry : m_file.Entries(LayoutFile::Filters)) {
        if (IsSame(entry.key, table)) {
            return entry.value;
        }
    }
    return {};
}

QString SourceLayout::OwnNames(const QString& row, const QString& message) const {
    const auto names = [](const QString& text, const QString& name) {
        return text.contains(u'\'' + name + u'\'', Qt::CaseInsensitive);
    };
    QStringList called;
    for (const Entry& entry : m_file.Entries(LayoutFile::Columns)) {
        const auto [table, column] = Cut(entry.key, m_known);
        const QString own = sources::NameParts(entry.value).join(u'.');
        if (!own.isEmpty() && !IsSame(own, column) && names(row + message, table) && names(message, column)) {
            called.append(QStringLiteral("%1 si chiama '%2'").arg(column, own));
        }
    }
    return called.join(QStringLiteral(", "));
}

QStringList FilterLines(Session& session, const Needs& needs) {
    if (session.Layout == nullptr) {
        return {};
    }
    QStringList tables;
    QStringList filters;
    for (const NeededTables::Table& table : NeededTables::Read(needs).Tables()) {
        tables.append(table.name);
        if (const QString filter = session.Layout->FilterOf(table.name); !filter.isEmpty()) {
            filters.append(QStringLiteral("Filtro del tracciato: della tabella '%1' si leggono le righe con %2")
                               .arg(table.name, filter));
        }
    }
    return tables.isEmpty() ? filters : session.Layout->CompanyLines(session.SourceConnection(), tables) + filters;
}

const std::vector<MapLine>& AddedLines(const Session& session, const Mapping& mapping) {
    static const std::vector<MapLine> none;
    return session.Layout == nullptr ? none : session.Layout->AddedTo(mapping);
}

bool IsLeftOut(Session& session, const QString& table, const QString& column) {
    const auto* layout = dynamic_cast<const sources::Layout*>(session.SourceConnection().Layout.get());
    const sources::LayoutTable* known = layout == nullptr ? nullptr : layout->Find(table);
    const sources::LayoutTable::Column* found = known == nullptr ? nullptr : known->Find(column);
    return found != nullptr && found->inSource.isEmpty();
}

sources::Layout& LayoutOf(ovConnection& source) {
    if (source.Layout == nullptr) {
        source.Layout = std::make_shared<sources::Layout>();
    }
    return dynamic_cast<sources::Layout&>(*source.Layout);
}

} // namespace contract
