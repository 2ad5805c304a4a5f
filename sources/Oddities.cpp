#include "sources/Oddities.h"

#include "sources/privateDatabase.h"

#include <QSet>

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

void Oddities::AddRepeatedHeader(qint64 row) {
    Add(QStringLiteral("INTESTAZIONE RIPETUTA"), QString(), row,
        QStringLiteral("ogni cella ha il nome della sua colonna: non si legge"));
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

void Oddities::Spoil(PrivateTable& table, int column, qint64 row, const QString& why) const {
    table.SetUnreadable(column, QStringLiteral("%1, riga %2, colonna '%3': %4")
                                    .arg(m_place, QString::number(row), table.Columns().at(column).name, why));
}

void Oddities::SpoilValue(PrivateTable& table, int column, qint64 row, const QString& why) {
    Add(UnreadableKind, table.Columns().at(column).name, row, why);
    Spoil(table, column, row, why);
}

void Oddities::SpoilRow(PrivateTable& table, qint64 row, const QString& why) {
    Add(QStringLiteral("RIGA NON LEGGIBILE"), QString(), row, why);
    for (int column = 0; column < table.Columns().size(); ++column) {
        Spoil(table, column, row, why);
    }
}

QStringList DistinctNames(const QStringList& names, const QStringList& places, Oddities& oddities) {
    QHash<QString, int> counts{{RecordNumberColumn, 2}, {RowNumberColumn, 2}};
    for (const QString& name : names) {
        ++counts[name.toUpper()];
    }
    const auto isClear = [&counts](const QString& name) {
        return !name.isEmpty() && counts.value(name.toUpper()) == 1;
    };
    QSet<QString> taken;
    for (const QString& name : names) {
        taken += isClear(name) ? QSet<QString>{name.toUpper()} : QSet<QString>();
    }
    QStringList distinct = names;
    for (qsizetype column = 0; column < names.size(); ++column) {
        if (isClear(names.at(column))) {
            continue;
        }
        const QString behind = QStringLiteral(" (%1)").arg(places.at(column));
        QString& name = distinct[column];
        name = name.isEmpty() ? places.at(column) : QString(name + behind);
        while (taken.contains(name.toUpper())) {
            name += behind;
        }
        taken.insert(name.toUpper());
        if (name != places.at(column)) {
            oddities.Add(QStringLiteral("COLONNA RIPETUTA"),
                         names.at(column).isEmpty() ? places.at(column) : names.at(column), 0,
                         QStringLiteral("il nome non dice quale colonna è: si legge come '%1'").arg(name));
        }
    }
    return distinct;
}

} // namespace sources
