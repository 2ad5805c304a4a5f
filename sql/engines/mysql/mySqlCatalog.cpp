#include "sql/engines/mysql/mySqlCatalog.h"

#include "sql/engines/columnBounds.h"
#include "sql/engines/mysql/mySqlRights.h"
#include "sql/engines/mysql/mySqlTriggers.h"
#include "sql/errors.h"
#include "sql/text/catalogLiteral.h"

#include <QVersionNumber>

namespace {

constexpr QLatin1String NoSuchTable("1146");

/// The first value of a query.
QString Answer(Engine& engine, const QString& query) {
    QString answer;
    const auto rows = engine.Query(query);
    while (rows->Next()) {
        answer = rows->Value(0).toString();
    }
    return answer;
}

/// Whether a trigger may give values to columns that the INSERT leaves out; true also where none would be seen.
bool MayBeFilled(Engine& engine, const QString& table) {
    return !SeesMySqlTriggers(engine, table) ||
           Answer(engine, QStringLiteral("SELECT COUNT(*) FROM information_schema.TRIGGERS WHERE TRIGGER_SCHEMA = "
                                         "DATABASE() AND EVENT_MANIPULATION = 'INSERT' AND ACTION_TIMING = 'BEFORE' "
                                         "AND EVENT_OBJECT_TABLE = ") +
                              CatalogLiteral(table)) != QLatin1String("0");
}

/// A column as SHOW COLUMNS has it. An ENUM takes its first value where it has no default.
ColumnBounds BoundsFrom(const Cursor& row) {
    ColumnBounds bounds = BoundsOf(row.Value(0).toString(), row.Value(1).toString());
    const QString extra = row.Value(5).toString();
    const bool isGiven = extra.contains(u"auto_increment", Qt::CaseInsensitive) ||
                         extra.contains(u"GENERATED", Qt::CaseInsensitive) ||
                         bounds.type.startsWith(u"enum", Qt::CaseInsensitive);
    bounds.isDemanded = row.Value(2).toString() == u"NO" && row.Value(4).isNull() && !isGiven;
    return bounds;
}

} // namespace

QString MySqlName(const QString& name) {
    QString text = name;
    text.remove(u'`').replace(u'.', QLatin1String("`.`"));
    return u'`' + text + u'`';
}

QVector<ColumnInfo> MySqlColumns(Engine& engine, const QString& table) {
    QVector<ColumnInfo> columns;
    try {
        const auto rows = engine.Query(QStringLiteral("SHOW COLUMNS FROM ") + MySqlName(table));
        while (rows->Next()) {
            columns.append({rows->Value(0).toString(), rows->Value(1).toString()});
        }
    } catch (const SqlError& error) {
        if (error.EngineCode() != NoSuchTable) {
            throw;
        }
    }
    return columns;
}

QVector<ColumnBounds> MySqlBounds(Engine& engine, const QString& table) {
    QVector<ColumnBounds> all;
    try {
        const auto rows = engine.Query(QStringLiteral("SHOW COLUMNS FROM ") + MySqlName(table));
        while (rows->Next()) {
            all.append(BoundsFrom(*rows));
        }
    } catch (const SqlError& error) {
        if (error.EngineCode() != NoSuchTable) {
            throw;
        }
    }
    const bool isAnyDemanded =
        std::any_of(all.cbegin(), all.cend(), [](const ColumnBounds& each) { return each.isDemanded; });
    if (isAnyDemanded && MayBeFilled(engine, table)) {
        for (ColumnBounds& each : all) {
            each.isDemanded = false;
        }
    }
    return all;
}

QString MySqlIdentityColumn(Engine& engine, const QString& table) {
    QString name;
    const auto rows = engine.Query(QStringLiteral("SHOW COLUMNS FROM ") + MySqlName(table) +
                                   QStringLiteral(" WHERE Extra LIKE '%auto_increment%'"));
    while (rows->Next()) {
        name = rows->Value(0).toString();
    }
    return name;
}

bool IsMySqlReturning(Engine& engine) {
    const QVersionNumber first(10, 5);
    const QString version = Answer(engine, QStringLiteral("SELECT VERSION()")); // "10.11.6-MariaDB-0+deb12u1"
    return version.contains(QLatin1String("MariaDB"), Qt::CaseInsensitive) &&
           QVersionNumber::fromString(version) >= first;
}

bool KeepsMySqlView(Engine& engine) {
    return Answer(engine, QStringLiteral("SELECT @@tx_isolation")) == QLatin1String("REPEATABLE-READ") &&
           Answer(engine, QStringLiteral("SELECT COUNT(*) FROM information_schema.TRIGGERS WHERE TRIGGER_SCHEMA = "
                                         "DATABASE()")) == QLatin1String("0") &&
           mySqlRights::IsGranted(engine, QStringLiteral("TRIGGER"), QString());
}
