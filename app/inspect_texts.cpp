#include "app/inspect_texts.h"

#include "adapters/contract/run/SourceMemory.h"
#include "app/inspect_draft.h"
#include "core/italianText.h"

#include <algorithm>

namespace inspection {

namespace {

constexpr qsizetype ShownValues = 5;
constexpr qsizetype LongestValue = 50;

qsizetype MissingNecessary(const Table& table) {
    return std::count_if(table.columns.begin(), table.columns.end(),
                         [](const Column& column) { return column.isNecessary && column.IsMissing(); });
}

QString Question(const Suggestion* proposed) {
    return proposed == nullptr ? QString() : QStringLiteral("%1? (%2)").arg(proposed->name, GroundText(*proposed));
}

} // namespace

Mark MarkOf(const Column& column) {
    return !column.IsMissing() ? Mark::Found : column.isNecessary ? Mark::Missing : Mark::Optional;
}

Mark MarkOf(const Table& table) {
    if (!table.isFound || MissingNecessary(table) > 0) {
        return Mark::Missing;
    }
    return std::any_of(table.columns.begin(), table.columns.end(),
                       [](const Column& column) { return column.IsMissing() && !column.isMarkedMissing; })
               ? Mark::Optional
               : Mark::Found;
}

QString StateText(const Column& column) {
    if (!column.IsMissing()) {
        return QStringLiteral("trovata");
    }
    if (column.isMarkedMissing) {
        return QStringLiteral("segnata come mancante");
    }
    return column.isNecessary ? QStringLiteral("manca, necessaria") : QStringLiteral("manca, facoltativa");
}

QString StateText(const Table& table) {
    if (!table.trouble.isEmpty()) {
        return table.trouble;
    }
    const qsizetype missing = table.isFound ? MissingNecessary(table) : 0;
    const QString state = !table.isFound ? QStringLiteral("manca")
                          : missing == 0 ? QStringLiteral("trovata")
                          : missing == 1 ? QStringLiteral("manca 1 colonna necessaria")
                                         : QStringLiteral("mancano %1 colonne necessarie").arg(missing);
    const QString other = OtherText(table);
    const QString change = ChangeText(table);
    return state + (other.isEmpty() ? QString() : QStringLiteral("; ") + other) +
           (change.isEmpty() ? QString() : QStringLiteral("; cambiata: ") + change);
}

QString SourceText(const Column& column) {
    return column.isMarkedMissing ? QString()
           : column.IsMissing()   ? Question(Proposed(column.suggestions))
                                  : column.inSource;
}

QString SourceText(const Table& table) {
    return table.isFound ? table.inSource : Question(Proposed(table.suggestions));
}

QString OtherText(const Table& table) {
    return table.isRather.isEmpty() ? QString()
                                    : QStringLiteral("il file ha le colonne di %1: le proposte per %2 non si accettano "
                                                     "in blocco")
                                          .arg(table.isRather.join(QStringLiteral(" o ")), table.name);
}

QString ChangeText(const Table& table) {
    QVector<ColumnInfo> now;
    for (const OwnColumn& column : table.own) {
        now.append({column.name, column.type});
    }
    return table.isFound && !table.lastTime.isEmpty() ? contract::ChangeText(table.lastTime, now) : QString();
}

QString ValuesText(const Table& table, const QString& own) {
    const OwnColumn* column = own.isEmpty() ? nullptr : table.Own(own);
    return column == nullptr ? QString() : ExamplesText(column->values.mid(0, ShownValues), LongestValue);
}

QString ExamplesText(const QStringList& values, qsizetype longest) {
    QStringList texts;
    for (const QString& value : values) {
        texts.append(u'\'' + (value.size() > longest ? value.left(longest) + u'…' : value) + u'\'');
    }
    return texts.join(QStringLiteral(", "));
}

QString RowsText(qint64 rows) { return rows < 0 ? QString() : italian::NumberText(rows); }

QString Summary(const Inspection& inspection) {
    qsizetype found = 0;
    qsizetype necessary = 0;
    qsizetype optional = 0;
    for (const Table& table : inspection.tables) {
        found += table.isFound ? 1 : 0;
        for (const Column& column : table.columns) {
            const bool isOpen = column.IsMissing() && !column.isMarkedMissing;
            necessary += isOpen && column.isNecessary ? 1 : 0;
            optional += isOpen && !column.isNecessary ? 1 : 0;
        }
    }
    return QStringLiteral("Tabelle trovate: %1 su %2. Colonne che mancano: %3 necessarie, %4 facoltative.")
        .arg(QString::number(found), QString::number(inspection.tables.size()), QString::number(necessary),
             QString::number(optional));
}

QStringList ProposalLines(const Inspection& inspection) {
    const QMap<QString, QString> names = ProposedNames(inspection);
    QStringList lines;
    for (const Table& table : inspection.tables) {
        const auto add = [&](const QString& key, const std::vector<Suggestion>& suggestions) {
            if (names.contains(key)) {
                lines.append(QStringLiteral("%1 = %2 (%3)").arg(key, names[key], GroundText(suggestions.front())));
            }
        };
        add(table.name, table.suggestions);
        for (const Column& column : table.columns) {
            add(table.name + u'.' + column.name, column.suggestions);
        }
    }
    return lines;
}

} // namespace inspection
