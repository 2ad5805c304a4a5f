#include "sql/engines/mysql/mySqlCatalog.h"

#include "sql/errors.h"
#include "sql/mod_ovTools.h"

namespace {

constexpr QLatin1String NoSuchTable("1146");

QString Literal(const QString& text) { return mod_ovTools::FormatSqlValue(text, DataType::Char, Provider::MySql); }

/// One trigger as it must be written back.
struct Trigger {
    QString name;
    QString mode; ///< sql_mode that its text was written under
    QString text;
};

QVector<Trigger> ReadTriggers(Engine& engine, const QString& table) {
    QVector<Trigger> triggers;
    const auto list = engine.Query(QStringLiteral("SHOW TRIGGERS WHERE `Table` = ") + Literal(table));
    while (list->Next()) {
        triggers.append({list->Value(0).toString(), {}, {}});
    }
    for (Trigger& trigger : triggers) {
        const auto row = engine.Query(QStringLiteral("SHOW CREATE TRIGGER ") + MySqlName(trigger.name));
        if (row->Next()) {
            trigger.mode = row->Value(1).toString();
            trigger.text = row->Value(2).toString();
        }
    }
    return triggers;
}

void StoreTriggers(Engine& engine, const QString& table) {
    for (const Trigger& trigger : ReadTriggers(engine, table)) {
        engine.Run(QStringLiteral("REPLACE INTO QDX_TRIGGERS_OFF (NAME, TBL, MODE, DDL) VALUES (") +
                   Literal(trigger.name) + QStringLiteral(", ") + Literal(table) + QStringLiteral(", ") +
                   Literal(trigger.mode) + QStringLiteral(", ") + Literal(trigger.text) + u')');
        engine.Run(QStringLiteral("DROP TRIGGER ") + MySqlName(trigger.name));
    }
}

void RestoreTriggers(Engine& engine, const QString& table) {
    QVector<Trigger> triggers;
    const auto stored = engine.Query(
        QStringLiteral("SELECT NAME, MODE, DDL FROM QDX_TRIGGERS_OFF WHERE TBL = %1 ORDER BY ID").arg(Literal(table)));
    while (stored->Next()) {
        triggers.append({stored->Value(0).toString(), stored->Value(1).toString(), stored->Value(2).toString()});
    }
    for (const Trigger& trigger : triggers) {
        engine.Run(QStringLiteral("SET @quadrix_mode = @@SESSION.sql_mode, SESSION sql_mode = ") +
                   Literal(trigger.mode));
        try {
            engine.Run(trigger.text);
        } catch (...) {
            engine.Run(QStringLiteral("SET SESSION sql_mode = @quadrix_mode"));
            throw;
        }
        engine.Run(QStringLiteral("SET SESSION sql_mode = @quadrix_mode"));
        engine.Run(QStringLiteral("DELETE FROM QDX_TRIGGERS_OFF WHERE NAME = ") + Literal(trigger.name));
    }
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

void SwitchMySqlTriggers(Engine& engine, const QString& table, bool enabled) {
    engine.Run(QStringLiteral("CREATE TABLE IF NOT EXISTS QDX_TRIGGERS_OFF (ID BIGINT AUTO_INCREMENT PRIMARY KEY, "
                              "NAME VARCHAR(64) NOT NULL UNIQUE, TBL VARCHAR(64), MODE TEXT, DDL LONGTEXT) "
                              "CHARACTER SET utf8mb4"));
    enabled ? RestoreTriggers(engine, table) : StoreTriggers(engine, table);
}
