#include "adapters/contract/run/Emptying.h"

#include "adapters/contract/run/ImportRun.h"
#include "adapters/contract/run/otherCompanies.h"
#include "core/schemaDefaults.h"

#include <QRegularExpression>

#include <algorithm>

namespace contract {

namespace {

const QString ImportedRows = QStringLiteral("USINS = '%1'").arg(schema::defaults::ImportUser);

/// A condition with the physical names of its tables.
QString WithTableNames(Session& session, QString condition) {
    static const QRegularExpression name(QStringLiteral("\\{(\\w+)\\}"));
    for (auto match = name.match(condition); match.hasMatch(); match = name.match(condition)) {
        condition.replace(match.capturedStart(), match.capturedLength(),
                          session.Quadrix.GetFullTableName(match.captured(1)));
    }
    return condition;
}

QString WithoutParent(const Emptied& one) {
    return QStringLiteral("%1 NOT IN (SELECT RECORD_ID FROM {%2})").arg(one.child, one.parent);
}

/// Before the emptying, the rows whose parents go have them still.
QString BeforeParentsGo(const Emptied& one, const Emptying& emptying) {
    const auto parent = std::find_if(emptying.begin(), emptying.end(),
                                     [&one](const Emptied& other) { return other.table == one.parent; });
    if (parent == emptying.end()) {
        return WithoutParent(one);
    }
    return QStringLiteral("%1 IN (SELECT RECORD_ID FROM {%2}%3) OR %4")
        .arg(one.child, one.parent, parent->where.isEmpty() ? QString() : QString(u" WHERE " + parent->where),
             WithoutParent(one));
}

/// Where no other company could have a record of that code, all of them.
QString OfThisCompany(Session& session, const Emptied& one) {
    const QStringList others = TablesOfOthers(session, one.records);
    return others.isEmpty()
               ? one.where
               : QString(one.where + u" AND " + OfThisCompanyAlone(session, one.child, one.records, one.code, others));
}

/// Rows of records that other companies have too stay: nobody can tell whose they are.
void TellShared(ImportRun& run, const Emptied& one) {
    Session& session = run.GetSession();
    if (one.records.isEmpty() || TablesOfOthers(session, one.records).isEmpty()) {
        return;
    }
    const qint64 rows = session.Quadrix.ExecuteCommand(
        QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2 AND ").arg(run.FullName(one.table), one.where) +
        OfThisCompanyAlone(session, one.child, one.records, one.code, {}));
    if (rows > 0) {
        run.Tell(
            QStringLiteral("RIGHE DI PIÙ AZIENDE: %1: ne restano %2, di codici di %3 che ha anche un'altra azienda")
                .arg(run.FullName(one.table), QString::number(rows), one.records));
    }
}

} // namespace

Emptying operator+(Emptying first, const Emptying& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Emptying Truncated(const QStringList& tables) {
    Emptying emptying;
    std::transform(tables.begin(), tables.end(), std::back_inserter(emptying),
                   [](const QString& table) { return Emptied{.table = table}; });
    return emptying;
}

Emptying Deleted(const QStringList& tables) {
    Emptying emptying;
    std::transform(tables.begin(), tables.end(), std::back_inserter(emptying),
                   [](const QString& table) { return Emptied{.table = table, .way = Emptied::Way::Delete}; });
    return emptying;
}

Emptying DeletedImports(const QString& table, const QString& further) {
    const QString where = further.isEmpty() ? ImportedRows : QString(ImportedRows + u" AND " + further);
    return {{.table = table, .way = Emptied::Way::DeleteFrom, .where = where}};
}

Emptying DeletedOrphans(const QStringList& tables, const QString& child, const QString& parent) {
    Emptying emptying = Deleted(tables);
    for (Emptied& one : emptying) {
        one.way = Emptied::Way::DeleteFrom;
        one.child = child;
        one.parent = parent;
    }
    return emptying;
}

Emptying AtMost(Emptying emptying) {
    for (Emptied& one : emptying) {
        one.atMost = true;
    }
    return emptying;
}

void Empty(ImportRun& run, bool reset, const Emptying& emptying) {
    if (!reset) {
        return;
    }
    for (const Emptied& one : emptying) {
        if (one.way == Emptied::Way::Truncate) {
            run.Truncate(reset, {one.table});
            continue;
        }
        const QString where = !one.records.isEmpty() ? OfThisCompany(run.GetSession(), one)
                              : one.child.isEmpty()  ? one.where
                                                     : WithoutParent(one);
        run.Delete(QString::fromLatin1(one.way == Emptied::Way::DeleteFrom ? "DELETE FROM" : "DELETE"),
                   run.FullName(one.table), WithTableNames(run.GetSession(), where));
        TellShared(run, one);
    }
}

std::vector<RowsToDelete> RowsOf(Session& session, const Emptying& emptying) {
    std::vector<RowsToDelete> rows;
    for (const Emptied& one : emptying) {
        const QString where = !one.records.isEmpty() ? OfThisCompany(session, one)
                              : one.child.isEmpty()  ? one.where
                                                     : BeforeParentsGo(one, emptying);
        rows.push_back({session.Quadrix.GetFullTableName(one.table), WithTableNames(session, where), one.atMost});
    }
    return rows;
}

} // namespace contract
