#include "adapters/contract/kinds/Roles.h"

#include "adapters/contract/map/lookups.h"

#include <algorithm>

namespace contract {

namespace {

using Fits = std::function<bool(const QString& text, const QString& value)>;

/// What the values mean, in the operator's words, of those that the source has.
QString MeaningOf(const RoleValues& values) {
    const QList<QPair<QStringList, QString>> all{{values.customer, QStringLiteral("cliente")},
                                                 {values.supplier, QStringLiteral("fornitore")},
                                                 {values.both, QStringLiteral("cliente e fornitore")},
                                                 {values.carrier, QStringLiteral("vettore")}};
    QStringList meanings;
    for (const auto& [marks, role] : all) {
        if (!marks.isEmpty()) {
            meanings.append(QStringLiteral("%1 (%2)").arg(marks.join(QStringLiteral(" o ")), role));
        }
    }
    return meanings.join(QStringLiteral(" né "));
}

RoleTeller ByValues(const QString& column, const RoleValues& values, const Fits& fits) {
    const auto of = [=](const SourceRow& row) {
        const QString text = row.Text(column);
        const auto is = [&](const QStringList& marks) {
            return std::any_of(marks.begin(), marks.end(), [&](const QString& mark) { return fits(text, mark); });
        };
        const bool both = is(values.both);
        const Roles roles{both || is(values.customer), both || is(values.supplier), is(values.carrier)};
        if (!roles.customer && !roles.supplier && !roles.carrier) {
            throw ImportError(QStringLiteral("colonna '%1': '%2' non è %3").arg(column, text, MeaningOf(values)));
        }
        return roles;
    };
    return {{column}, of, !values.carrier.isEmpty()};
}

} // namespace

RoleTeller Always(const Roles& roles) {
    return {{}, [roles](const SourceRow&) { return roles; }, roles.carrier};
}

RoleTeller ByLetter(const QString& column, const RoleValues& letters) {
    return ByValues(column, letters, [](const QString& text, const QString& letter) {
        return text.compare(letter, Qt::CaseInsensitive) == 0;
    });
}

RoleTeller ByPrefix(const QString& column, const RoleValues& prefixes) {
    return ByValues(column, prefixes, [](const QString& text, const QString& prefix) {
        return text.startsWith(prefix, Qt::CaseInsensitive);
    });
}

RoleTeller ByFlags(const RoleFlags& columns) {
    QStringList names{columns.customer, columns.supplier, columns.carrier};
    names.removeAll(QString());
    const auto of = [columns, names](const SourceRow& row) {
        const auto is = [&row](const QString& column) {
            static const QStringList set{"S", "Y", "T", "TRUE", "1", "-1"};
            return !column.isEmpty() && set.contains(row.Text(column).toUpper());
        };
        const Roles roles{is(columns.customer), is(columns.supplier), is(columns.carrier)};
        if (!roles.customer && !roles.supplier && !roles.carrier) {
            QStringList texts;
            for (const QString& name : names) {
                texts.append(u'\'' + row.Text(name) + u'\'');
            }
            throw ImportError(QStringLiteral("colonne '%1': %2 non dicono né cliente né fornitore")
                                  .arg(names.join(QStringLiteral("', '")), texts.join(QStringLiteral(", "))));
        }
        return roles;
    };
    return {names, of, !columns.carrier.isEmpty()};
}

std::function<void(ImportRun&, const QString&)> TellingUntyped(const SourceTable& source, const QString& type,
                                                               const QString& name) {
    return [source, type, name](ImportRun& run, const QString& singleCode) {
        const QString query =
            QStringLiteral("SELECT * FROM %1 WHERE (%2 IS NULL OR %2 <= ' ')%3 ORDER BY %4")
                .arg(source.table, type, run.OnlyCode(QStringLiteral(" AND"), source.key, singleCode), source.key);
        ForEachChild(run.GetSession(), query, source.table, source.key, [&](const SourceRow& row) {
            run.Log(QStringLiteral("CONTROPARTE NON LETTA: %1 '%2': %3 è vuota, non dice se è cliente o fornitore")
                        .arg(NameOf(row, source.table, source.key), row.Text(name), type));
        });
    };
}

} // namespace contract
