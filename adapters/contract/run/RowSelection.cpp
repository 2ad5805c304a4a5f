#include "adapters/contract/run/RowSelection.h"

#include "sql/mod_ovTools.h"

namespace contract {

namespace {

/// A row whose code is blank is known by its number alone.
QString PlaceOf(const RowSelection::Row& row) {
    const bool isBlank =
        std::all_of(row.key.begin(), row.key.end(), [](QChar c) { return c == u'\x1f' || c.isSpace(); });
    return row.table + u'\x1e' + (isBlank ? QString(u'#' + QString::number(row.number)) : row.key);
}

/// Codes are compared without case, and without the blanks of a column of a fixed length.
QString PlaceOfCode(const QString& list, const QString& field, const QString& code) {
    return mod_ovTools::UpperChars(list + u'\x1f' + field + u'\x1f' + code.trimmed());
}

/// A value that cannot be read is as good as none.
QString ReadableText(const QVariant& value) {
    return value.metaType() == QMetaType::fromType<ImportError>() ? QString() : mod_ovTools::ToText(value);
}

qsizetype KeyParts(const RowSelection::Row& row) { return row.key.count(u'\x1f') + 1; }

enum class Likeness { Other, ButForMended, Same };

/// How much a source row is still what a wanted row was. Its place in its file is none of its values.
Likeness LikenessOf(const RowSelection::Row& wanted, const RowSelection::Row& met) {
    if (wanted.columns.isEmpty()) {
        return Likeness::Other;
    }
    auto likeness = Likeness::Same;
    for (qsizetype column = 0; column < wanted.columns.size(); ++column) {
        const QString& name = wanted.columns.at(column);
        if (!RowNumberColumns().contains(name) &&
            ReadableText(wanted.values.at(column)) != ReadableText(met.values.value(met.columns.indexOf(name)))) {
            if (!wanted.mended.contains(name)) {
                return Likeness::Other;
            }
            likeness = Likeness::ButForMended;
        }
    }
    return likeness;
}

} // namespace

QString KeyOf(const SourceRow& row, const QString& keyColumn) {
    return GroupText(row, keyColumn.split(QStringLiteral(", ")));
}

qint64 NumberOf(const SourceRow& row) {
    for (const QString& number : RowNumberColumns()) {
        if (row.HasColumn(number)) {
            return row.Value(number).toLongLong();
        }
    }
    return 0;
}

QString RowSelection::Row::MendedText() const {
    QStringList texts;
    for (const auto& [column, mending] : mended.asKeyValueRange()) {
        texts.append(column.toUpper() + u'=' + mod_ovTools::ToText(mending.now));
    }
    return texts.isEmpty() ? QStringLiteral("") : texts.join(u'\x1f');
}

void RowSelection::Add(const Row& row) {
    std::vector<Wanted>& rows = m_rows[row.procedure];
    m_places[row.procedure].insert(row.name, rows.size());
    if (!row.table.isEmpty()) {
        m_places[row.procedure].insert(PlaceOf(row), rows.size());
    }
    rows.push_back({row});
}

void RowSelection::FillCode(const QString& list, const QString& field, const QString& code) {
    m_codes.insert(PlaceOfCode(list, field, code));
}

bool RowSelection::FillsCode(const QString& list, const QString& field, const QString& code) const {
    return m_codes.contains(PlaceOfCode(list, field, code));
}

std::optional<RowSelection::Reached> RowSelection::ReachedBefore() const {
    const auto reached = m_reached.constFind(m_procedure);
    return reached == m_reached.constEnd() ? std::nullopt : std::optional(*reached);
}

bool RowSelection::HasWritten(const QString& table, qint64 id) const {
    const auto reached = m_reached.constFind(m_procedure);
    return reached != m_reached.constEnd() && reached->hasWritten && reached->hasWritten(table, id);
}

/// What was mended goes to one source row alone, whichever of its twins comes first.
bool RowSelection::Wanted::IsTaken(const Row& met) const {
    return isMet && !row.mended.isEmpty() && metNumber != met.number;
}

/// Of several rows with one name or key, the one that is most like it, then that of the same number, then one that has
/// not been met; null without any.
RowSelection::Wanted* RowSelection::MostLike(const Row& met, const QString& place) {
    std::vector<Wanted>& rows = m_rows[m_procedure];
    const auto rank = [&met](const Wanted& wanted) {
        return std::tuple(!wanted.IsTaken(met), LikenessOf(wanted.row, met),
                          met.number != 0 && wanted.row.number == met.number, !wanted.isMet);
    };
    Wanted* best = nullptr;
    for (const size_t each : m_places[m_procedure].values(place)) {
        if (best == nullptr || rank(*best) < rank(rows[each])) {
            best = &rows[each];
        }
    }
    return best;
}

const RowSelection::Row* RowSelection::Find(const Row& met) {
    if (!Limits()) {
        return nullptr;
    }
    m_keyParts.insert(met.table, KeyParts(met));
    const auto isLike = [&met](const Wanted& wanted) { return LikenessOf(wanted.row, met) != Likeness::Other; };
    const auto mayBe = [&](const Wanted* wanted) {
        return wanted != nullptr && !wanted->IsTaken(met) && (wanted->row.mended.isEmpty() || isLike(*wanted));
    };
    Wanted* wanted = MostLike(met, met.name);
    if (!mayBe(wanted)) { // the row may have moved in its file, to where another one stood that is wanted too
        const bool isOther = wanted != nullptr;
        wanted = MostLike(met, PlaceOf(met));
        if (!mayBe(wanted) || (isOther && !isLike(*wanted))) {
            return nullptr;
        }
    }
    wanted->isMet = true;
    wanted->metNumber = met.number;
    return &wanted->row;
}

QVector<const RowSelection::Row*> RowSelection::Awaited(const QString& name) const {
    QVector<const Row*> rows;
    if (const auto awaited = m_awaited.constFind(m_procedure); awaited != m_awaited.cend()) {
        for (auto [row, end] = awaited->equal_range(name); row != end; ++row) {
            rows.append(&*row);
        }
    }
    return rows;
}

qint64 RowSelection::Count() const {
    qint64 count = 0;
    for (const std::vector<Wanted>& rows : m_rows) {
        count += static_cast<qint64>(rows.size());
    }
    return count;
}

std::vector<RowSelection::Row> RowSelection::NotMet() const {
    std::vector<Row> rows;
    for (const Wanted& wanted : m_rows.value(m_procedure)) {
        if (!wanted.isMet) {
            rows.push_back(wanted.row);
        }
    }
    return rows;
}

QStringList RowSelection::DoneNames() const {
    QStringList names;
    for (const Row* row : m_done) {
        if (row->procedure == m_procedure) {
            names.append(row->name);
        }
    }
    return names;
}

QVector<const RowSelection::Row*> RowSelection::DoneRejects() const {
    QVector<const Row*> rejects;
    std::copy_if(m_done.begin(), m_done.end(), std::back_inserter(rejects),
                 [](const Row* row) { return row->reject > 0; });
    return rejects;
}

bool RowSelection::IsToldOtherwise(const Row& row) const {
    const auto parts = m_keyParts.constFind(row.table);
    return !row.key.isEmpty() && parts != m_keyParts.cend() && *parts != KeyParts(row);
}

} // namespace contract
