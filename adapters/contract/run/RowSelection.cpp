#include "adapters/contract/run/RowSelection.h"

namespace contract {

namespace {

/// A row whose code is blank is known by its number alone.
QString PlaceOf(const RowSelection::Row& row) {
    const bool isBlank =
        std::all_of(row.key.begin(), row.key.end(), [](QChar c) { return c == u'\x1f' || c.isSpace(); });
    return row.table + u'\x1e' + (isBlank ? QString(u'#' + QString::number(row.number)) : row.key);
}

} // namespace

QString KeyOf(const SourceRow& row, const QString& keyColumn) {
    return GroupText(row, keyColumn.split(QStringLiteral(", ")));
}

qint64 NumberOf(const SourceRow& row) {
    for (const char* number : {"_RIGA", "_RECNO"}) {
        if (row.HasColumn(QLatin1String(number))) {
            return row.Value(QLatin1String(number)).toLongLong();
        }
    }
    return 0;
}

void RowSelection::Add(const Row& row) {
    std::vector<Wanted>& rows = m_rows[row.procedure];
    m_places[row.procedure].insert(row.name, rows.size());
    if (!row.table.isEmpty()) {
        m_places[row.procedure].insert(PlaceOf(row), rows.size());
    }
    rows.push_back({row});
}

std::optional<RowSelection::Reached> RowSelection::ReachedBefore() const {
    const auto reached = m_reached.constFind(m_procedure);
    return reached == m_reached.constEnd() ? std::nullopt : std::optional(*reached);
}

/// Of several rows with one key, that of the same number; in a source without numbers all of them stand for each other.
const RowSelection::Row* RowSelection::Find(const Row& met) {
    const auto rows = m_rows.find(m_procedure);
    if (rows == m_rows.end()) {
        return nullptr;
    }
    const auto& ofProcedure = *m_places.constFind(m_procedure);
    QList<size_t> places = ofProcedure.values(met.name);
    if (places.isEmpty()) { // the row may have moved in its file
        places = ofProcedure.values(PlaceOf(met));
    }
    if (places.isEmpty()) {
        return nullptr;
    }
    const auto same = std::find_if(places.begin(), places.end(),
                                   [&](size_t place) { return (*rows)[place].row.number == met.number; });
    const auto unmet = std::find_if(places.begin(), places.end(), [&](size_t place) { return !(*rows)[place].isMet; });
    Wanted& wanted = (*rows)[same != places.end() ? *same : unmet != places.end() ? *unmet : places.first()];
    wanted.isMet = true;
    return &wanted.row;
}

qint64 RowSelection::Count() const {
    qint64 count = 0;
    for (const std::vector<Wanted>& rows : m_rows) {
        count += static_cast<qint64>(rows.size());
    }
    return count;
}

QStringList RowSelection::NotMet() const {
    QStringList names;
    for (const Wanted& wanted : m_rows.value(m_procedure)) {
        if (!wanted.isMet) {
            names.append(wanted.row.name);
        }
    }
    return names;
}

} // namespace contract
