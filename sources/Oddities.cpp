#include "sources/Oddities.h"

#include "sources/privateDatabase.h"

namespace sources {

void Oddities::Add(const QString& kind, const QString& column, qint64 row, const QString& what) {
    const auto known = std::find_if(m_kinds.begin(), m_kinds.end(),
                                    [&](const Kind& other) { return other.column == column && other.name == kind; });
    if (known == m_kinds.end()) {
        m_kinds.push_back({kind, column, row, what, 1});
    } else {
        ++known->count;
    }
}

void Oddities::Tell() {
    for (const Kind& kind : m_kinds) {
        QString note = kind.name + QStringLiteral(": ") + m_place;
        note += kind.row > 0 ? QStringLiteral(", riga %1").arg(kind.row) : QString();
        note += kind.column.isEmpty() ? QString() : QStringLiteral(", colonna '%1'").arg(kind.column);
        note += QStringLiteral(": ") + kind.first;
        note += kind.count > 1 ? QStringLiteral(" (così %1 volte)").arg(kind.count) : QString();
        if (m_settings.note) {
            m_settings.note(note);
        }
    }
    m_kinds.clear();
}

QStringList DistinctNames(const QStringList& names, const QStringList& places, Oddities& oddities) {
    QHash<QString, int> counts;
    for (const QString& name : names) {
        ++counts[name.toUpper()];
    }
    QStringList distinct;
    for (qsizetype column = 0; column < names.size(); ++column) {
        const QString& name = names.at(column);
        const bool isKept = name.compare(RecordNumberColumn, Qt::CaseInsensitive) == 0 ||
                            name.compare(RowNumberColumn, Qt::CaseInsensitive) == 0;
        if (name.isEmpty()) {
            distinct.append(places.at(column));
        } else if (counts.value(name.toUpper()) > 1 || isKept) {
            distinct.append(QStringLiteral("%1 (%2)").arg(name, places.at(column)));
            oddities.Add(QStringLiteral("COLONNA RIPETUTA"), name, 0,
                         QStringLiteral("il nome non dice quale colonna è: si legge come '%1'").arg(distinct.last()));
        } else {
            distinct.append(name);
        }
    }
    return distinct;
}

} // namespace sources
