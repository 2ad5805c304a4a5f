#include "sql/engines/mysql/mySqlCatalog.h"

#include "sql/engines/mysql/mySqlRights.h"
#include "sql/errors.h"

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
