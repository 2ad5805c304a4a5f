#include "app/report/TableWatch.h"

#include "app/report/sums.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

namespace proof {

namespace {

const QString Id = QStringLiteral("RECORD_ID");
const QStringList Marks{"USINS", "DTINS", "USMDF", "DTMDF"};

constexpr qsizetype MostRows = 200;  ///< of each kind of difference, whose values are shown
constexpr qsizetype MostSamples = 2; ///< of a table
constexpr size_t MostSampledValues = 6;
constexpr qsizetype IdsAtOnce = 100; ///< that one query asks for

} // namespace

TableWatch::TableWatch(Session& session, const schema::Table& table, QStringList leftOut, const SourceRows& sourceRows)
    : m_session(session),
      m_table(table),
      m_leftOut(std::move(leftOut)),
      m_sourceRows(sourceRows),
      m_name(session.Quadrix.GetFullTableName(table.name)) {
    m_figures.table = table.name;
}

// --- Reading --------------------------------------------------------------------------------------------------------

void TableWatch::Scan(const std::function<void(qint64 id, const Recordset& row)>& work) {
    Recordset rows = m_session.Quadrix.ExecuteWC(u"SELECT * FROM " + m_name);
    ReadColumns(rows);
    for (; !rows.Eof(); rows.MoveNext()) {
        work(rows.Fields(m_id).Value().toLongLong(), rows);
    }
}

void TableWatch::ReadColumns(const Recordset& rows) {
    if (m_id >= 0) {
        return;
    }
    m_columns = rows.Columns();
    for (const QString& column : std::as_const(m_columns)) {
        m_known.push_back(m_table.FindColumn(column));
        const auto is = [&column](const QStringList& names) { return names.contains(column, Qt::CaseInsensitive); };
        m_isCompared.push_back(!is(Marks) && !is(m_leftOut) && !is({Id}));
    }
    m_id = PositionOf(Id);
    if (m_id < 0) {
        throw ImportError(QStringLiteral("la tabella '%1' non ha la colonna RECORD_ID").arg(m_name));
    }
}

/// -1 for a column that the table lacks.
int TableWatch::PositionOf(const QString& column) const {
    const auto found = std::find_if(m_columns.cbegin(), m_columns.cend(), [&column](const QString& each) {
        return each.compare(column, Qt::CaseInsensitive) == 0;
    });
    return found == m_columns.cend() ? -1 : static_cast<int>(found - m_columns.cbegin());
}

bool TableWatch::IsCompared(int column) const { return m_isCompared[static_cast<size_t>(column)]; }

/// A value so that two of them are the same text exactly when nobody would call them different: engines give whole
/// numbers and dates now so, now otherwise, and a blank text is none.
QString TableWatch::Canonical(int column, const QVariant& value) const {
    const schema::Column* known = m_known[static_cast<size_t>(column)];
    if (known != nullptr && known->type == DataType::DateTime) {
        if (const auto day = mod_ovTools::ReadDate(value)) {
            return day->toString(Qt::ISODate);
        }
    }
    if (known != nullptr && known->type == DataType::Bit) {
        return mod_ovTools::ToBoolean(value) ? QStringLiteral("1") : QString();
    }
    return mod_ovTools::ToText(value);
}

TableWatch::Print TableWatch::PrintOf(const Recordset& row) const {
    Print print;
    for (int column = 0; column < m_columns.size(); ++column) {
        if (IsCompared(column)) {
            print.content = qHash(Canonical(column, row.Fields(column).Value()), print.content);
        } else if (Marks.contains(m_columns.at(column), Qt::CaseInsensitive)) {
            print.marks = qHash(Canonical(column, row.Fields(column).Value()), print.marks);
        }
    }
    return print;
}

std::vector<TableWatch::Image> TableWatch::Images(const QList<qint64>& ids) {
    std::vector<Image> images;
    for (qsizetype first = 0; first < ids.size(); first += IdsAtOnce) {
        QStringList some;
        for (const qint64 id : ids.mid(first, IdsAtOnce)) {
            some.append(QString::number(id));
        }
        Recordset rows = m_session.Quadrix.ExecuteWC(u"SELECT * FROM " + m_name + u" WHERE RECORD_ID IN (" +
                                                     some.join(u',') + u") ORDER BY RECORD_ID");
        for (; !rows.Eof(); rows.MoveNext()) {
            Image image{rows.Fields(m_id).Value().toLongLong(), {}};
            for (int column = 0; column < m_columns.size(); ++column) {
                image.values.append(rows.Fields(column).Value());
            }
            images.push_back(std::move(image));
        }
    }
    return images;
}

QVariant TableWatch::ValueIn(const Image& image, const QString& column) const {
    return image.values.value(PositionOf(column));
}

QString TableWatch::Title(const Image& image) const {
    return RowTitle(m_session, m_table, [&](const QString& column) { return ValueIn(image, column); });
}

// --- Before and after the trial -------------------------------------------------------------------------------------

void TableWatch::Before() {
    Scan([this](qint64 id, const Recordset& row) { m_before.insert(id, PrintOf(row)); });
}

void TableWatch::After() {
    Prints rest = m_before;
    QMultiHash<quint64, qint64> fresh; // by content
    Scan([&](qint64 id, const Recordset& row) { Place(id, row, rest, fresh); });
    m_before.clear();
    Pair(rest, fresh);
    m_figures.missing = fresh.size();
    QList<qint64> missing = fresh.values();
    std::sort(missing.begin(), missing.end());
    for (const Image& image : Images(missing.mid(0, MostRows))) {
        m_figures.differences.push_back(
            {.kind = Difference::Kind::Missing, .table = m_table.name, .row = Title(image)});
    }
    m_after = Images(m_different + m_sampled.values());
}

/// Puts a row as the trial leaves it into its class. @param rest the rows that were there, without those that still are
/// @param fresh gets the rows that were not there
void TableWatch::Place(qint64 id, const Recordset& row, Prints& rest, QMultiHash<quint64, qint64>& fresh) {
    const Print now = PrintOf(row);
    const auto before = rest.constFind(id);
    if (before == rest.cend()) {
        fresh.insert(now.content, id);
        AddTo(TotalOf(row), row, true);
        return;
    }
    const bool isSame = before->content == now.content;
    // A mark without a time of day is the same after a second import on its day.
    const bool isWritten = !isSame || before->marks != now.marks || m_sourceRows.IsRewritten(m_name, id);
    rest.erase(before);
    if (!isWritten) {
        const bool isImported = row.HasColumn(Marks.first()) &&
                                mod_ovTools::ToText(row.Value(Marks.first())).trimmed() == schema::defaults::ImportUser;
        ++(isImported ? m_figures.kept : m_figures.others);
        return;
    }
    ++(isSame ? m_figures.equal : m_figures.different);
    m_states.insert(id, isSame ? State::Equal : State::Different);
    AddTo(TotalOf(row), row, true);
    if (isSame) {
        NoteSample(id, now.content);
    } else if (m_different.size() < MostRows) {
        m_different.append(id);
    }
}

/// A row that was removed and written anew is the same row.
void TableWatch::Pair(const Prints& rest, QMultiHash<quint64, qint64>& fresh) {
    for (const auto& [id, print] : rest.asKeyValueRange()) {
        const auto again = fresh.constFind(print.content);
        const bool isThere = again != fresh.cend();
        ++(isThere ? m_figures.equal : m_figures.surplus);
        m_states.insert(id, isThere ? State::Equal : State::Surplus);
        if (isThere) {
            fresh.erase(again);
        } else if (m_surplus.size() < MostRows) {
            m_surplus.append(id);
        }
    }
    std::sort(m_surplus.begin(), m_surplus.end());
}

/// The rows with the smallest numbers are as good as drawn by lot, and the same ones as long as they stay as they are.
void TableWatch::NoteSample(qint64 id, quint64 content) {
    m_sampled.insert(content, id);
    if (m_sampled.size() > MostSamples) {
        m_sampled.erase(std::prev(m_sampled.end()));
    }
}

void TableWatch::Since() {
    Scan([this](qint64 id, const Recordset& row) {
        if (m_states.contains(id)) {
            AddTo(TotalOf(row), row, false);
        }
    });
    CompareKept();
    AddSurplus();
    std::sort(m_figures.totals.begin(), m_figures.totals.end(),
              [](const Total& one, const Total& other) { return one.group < other.group; });
}

qint64 TableWatch::DifferentOf(const QSet<qint64>& rows) const {
    return std::count_if(rows.begin(), rows.end(),
                         [this](qint64 row) { return m_states.value(row) == State::Different; });
}

// --- Rows side by side ----------------------------------------------------------------------------------------------

void TableWatch::CompareKept() {
    QHash<qint64, Image> targets;
    for (Image& image : Images(m_different + m_sampled.values())) {
        const qint64 id = image.id;
        targets.insert(id, std::move(image));
    }
    for (const Image& source : m_after) {
        const auto target = targets.constFind(source.id);
        if (target == targets.cend()) {
            continue; // somebody has removed it since
        }
        if (m_states.value(source.id) == State::Equal) {
            m_figures.samples.push_back(SampleOf(source, *target));
            continue;
        }
        for (int column = 0; column < m_columns.size(); ++column) {
            const QVariant& gives = source.values.at(column);
            const QVariant& stands = target->values.at(column);
            if (!IsCompared(column) || Canonical(column, gives) == Canonical(column, stands)) {
                continue;
            }
            const schema::Column* known = m_known[static_cast<size_t>(column)];
            m_figures.differences.push_back({Difference::Kind::Value, m_table.name, Title(*target),
                                             m_sourceRows.Of(m_name, source.id), m_columns.at(column),
                                             Shown(known, gives), Shown(known, stands), source.id});
        }
    }
}

void TableWatch::AddSurplus() {
    for (const Image& image : Images(m_surplus)) {
        m_figures.differences.push_back(
            {.kind = Difference::Kind::Surplus, .table = m_table.name, .row = Title(image)});
    }
}

/// Of the columns that are not empty those come first that have a name which says something.
Sample TableWatch::SampleOf(const Image& source, const Image& target) const {
    std::vector<Sample::Value> named;
    std::vector<Sample::Value> others;
    for (int column = 0; column < m_columns.size(); ++column) {
        const schema::Column* known = m_known[static_cast<size_t>(column)];
        const QString gives = Shown(known, source.values.at(column));
        const QString& name = m_columns.at(column);
        if (IsCompared(column) && !gives.isEmpty() && !name.startsWith(u"ID")) { // a link to another row says nothing
            (ColumnTitle(name) == name ? others : named)
                .push_back({name, gives, Shown(known, target.values.at(column))});
        }
    }
    named.insert(named.end(), others.begin(), others.end());
    named.resize(std::min(named.size(), MostSampledValues));
    return {Title(target), named};
}

// --- Sums -----------------------------------------------------------------------------------------------------------

/// The total of the group that a row belongs to.
Total& TableWatch::TotalOf(const Recordset& row) {
    const Summed* summed = SummedOf(m_table.name);
    QStringList parts;
    for (const QString& column : summed == nullptr ? QStringList() : summed->groups) {
        parts.append(mod_ovTools::ToText(row.Value(column)).trimmed());
    }
    const QString group = parts.join(u' ');
    const auto known = m_groups.constFind(group);
    if (known != m_groups.cend()) {
        return m_figures.totals[*known];
    }
    m_groups.insert(group, m_figures.totals.size());
    Total& total = m_figures.totals.emplace_back();
    total.group = group;
    for (const QString& column : summed == nullptr ? QStringList() : summed->amounts) {
        total.amounts.push_back({column, {}, {}});
    }
    return total;
}

void TableWatch::AddTo(Total& total, const Recordset& row, bool isSource) {
    ++(isSource ? total.sourceRows : total.targetRows);
    for (Total::Amount& amount : total.amounts) {
        const QVariant value = row.Value(amount.column);
        (isSource ? amount.source : amount.target).Add(value.isNull() ? 0 : mod_ovTools::ToDouble(value));
    }
}

} // namespace proof
