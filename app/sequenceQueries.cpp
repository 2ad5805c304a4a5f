#include "app/sequenceQueries.h"

#include "adapters/contract/write/Document.h"
#include "core/rowDigest.h"
#include "core/Schema.h"

namespace {

/// A statement that puts rows of a table right.
struct Righting {
    QString table;            ///< bare name
    QString condition;        ///< of its rows
    QString values = {};      ///< what an UPDATE sets; empty: the rows are deleted
    QStringList columns = {}; ///< that it sets
};

std::vector<Righting> Rightings(const ovConnection& quadrix) {
    std::vector<Righting> all;
    for (const contract::Family* family : {&contract::Sales, &contract::Purchases, &contract::WorkAccount}) {
        const QString heads = quadrix.GetFullTableName(family->head);
        const QString rows = quadrix.GetFullTableName(family->row);
        all.push_back(
            {family->head,
             QStringLiteral("(SELECT COUNT(RECORD_ID) FROM %2 WHERE IDTES = %1.RECORD_ID) = 0").arg(heads, rows)});
        all.push_back({family->row, QStringLiteral("IDTES NOT IN (SELECT RECORD_ID FROM %1)").arg(heads)});
    }
    const QString bills = quadrix.GetFullTableName("DIS_BAS");
    const QString parts = quadrix.GetFullTableName("DIS_COM");
    const QString hasBill = "EXISTS (SELECT 1 FROM " + bills + " WHERE DBART = CDART)";
    const QString isPart = "EXISTS (SELECT 1 FROM " + parts + " WHERE DCART = CDART)";
    const auto article = [&all](const QString& condition, const QString& values, const QStringList& columns) {
        all.push_back({"ART_ICO", condition, values, columns});
    };
    article(hasBill + " AND NOT " + isPart, "ARCLA = 'PF'", {"ARCLA"});
    article(hasBill + " AND " + isPart + " AND (ARCLA IS NULL OR ARCLA <> 'FA')", "ARCLA = 'SL'", {"ARCLA"});
    article("NOT " + hasBill + " AND " + isPart + " AND (ARCLA IS NULL OR ARCLA NOT IN ('FA', 'CL'))", "ARCLA = 'CM'",
            {"ARCLA"});
    // Of several revisions of a bill the article has the last.
    const QString bill = " FROM " + bills + " WHERE DBART = CDART";
    article(hasBill, "ARDBA = CDART, ARDRV = (SELECT MAX(DBREV)" + bill + ")", {"ARDBA", "ARDRV"});
    article(hasBill, "ARDRI = (SELECT MAX(DBREI)" + bill + " AND (DBREV = ARDRV OR (DBREV IS NULL AND ARDRV IS NULL)))",
            {"ARDRI"});
    all.push_back({"DIS_BAS", "NOT EXISTS (SELECT 1 FROM " + parts + " WHERE DCART = DBART)", "DBMAN = 1", {"DBMAN"}});
    return all;
}

qint64 DigestOf(const schema::Table& table, const QStringList& columns, const QVariantMap& values) {
    RowDigest digest;
    for (const QString& column : columns) {
        digest.Add(values.value(column), table.FindColumn(column)->type);
    }
    return digest.Value();
}

/// Rows of a table as they are, by number.
QMap<qint64, QVariantMap> RowsOf(ovConnection& quadrix, const QString& table, const QString& columns,
                                 const QString& condition) {
    static const QString id = QStringLiteral("RECORD_ID");
    QMap<qint64, QVariantMap> found;
    Recordset rows = quadrix.ExecuteWC(QStringLiteral("SELECT %1 FROM %2 WHERE %3").arg(columns, table, condition));
    for (; !rows.Eof(); rows.MoveNext()) {
        QVariantMap values;
        for (const QString& column : rows.Columns()) {
            values.insert(column, rows.Value(column));
        }
        const qint64 number = values.take(id).toLongLong();
        found.insert(number, values);
    }
    return found;
}

/// Tells of the rows that an UPDATE has changed; what it left as it was is not told.
void TellChanged(Session& session, const Righting& righting, const QString& name,
                 const QMap<qint64, QVariantMap>& before) {
    constexpr qsizetype most = 500;
    const schema::Table& table = *schema::FindTable(righting.table);
    const QString columns = "RECORD_ID, " + righting.columns.join(", ");
    const QList<qint64> numbers = before.keys();
    for (qsizetype first = 0; first < numbers.size(); first += most) {
        QStringList some;
        for (const qint64 number : numbers.mid(first, most)) {
            some += QString::number(number);
        }
        const auto after = RowsOf(session.Quadrix, name, columns, "RECORD_ID IN (" + some.join(", ") + ')');
        for (const auto& [number, values] : after.asKeyValueRange()) {
            const qint64 digest = DigestOf(table, righting.columns, values);
            if (digest != DigestOf(table, righting.columns, before.value(number))) {
                session.Observer->TargetChanges(
                    {TargetChange::Kind::Updated, name, number, {}, before.value(number), righting.columns, digest});
            }
        }
    }
}

qint64 PutRight(Session& session, const Righting& righting) {
    ovConnection& quadrix = session.Quadrix;
    const bool isKept = session.Observer != nullptr && session.Observer->KeepsImages();
    const bool deletes = righting.values.isEmpty();
    const QString name = quadrix.GetFullTableName(righting.table);
    QMap<qint64, QVariantMap> before;
    if (isKept) {
        const QString columns = "RECORD_ID, " + righting.columns.join(", ");
        before = RowsOf(quadrix, name, deletes ? QString("*") : columns, righting.condition);
    }
    const QString change =
        deletes ? QString("DELETE FROM " + name) : QString("UPDATE " + name + " SET " + righting.values);
    const qint64 rows = quadrix.Execute(change + " WHERE " + righting.condition);
    if (!deletes) {
        TellChanged(session, righting, name, before);
        return rows;
    }
    for (const auto& [number, values] : before.asKeyValueRange()) {
        session.Observer->TargetChanges({TargetChange::Kind::Deleted, name, number, {}, values});
    }
    return rows;
}

} // namespace

qint64 PutImportedRowsRight(Session& session) {
    qint64 rows = 0;
    for (const Righting& righting : Rightings(session.Quadrix)) {
        rows += PutRight(session, righting);
    }
    return rows;
}
