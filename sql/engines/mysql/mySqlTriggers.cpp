#include "sql/engines/mysql/mySqlTriggers.h"

#include "sql/engines/mysql/mySqlCatalog.h"
#include "sql/engines/mysql/mySqlRights.h"
#include "sql/errors.h"
#include "sql/mod_ovTools.h"
#include "sql/text/triggerText.h"

#include <QRegularExpression>

namespace {

const QString NotWithin = QStringLiteral("i trigger di '%1' non si possono cambiare dentro una transazione");

QString MySqlLiteral(const QString& text) { return mod_ovTools::FormatSqlValue(text, DataType::Char, Provider::MySql); }

/// One trigger as it must be made again.
struct Trigger {
    QString name;
    QString mode; ///< sql_mode that its text was written under
    QString text;
    QString definer = {}; ///< "anna@%"
};

/// Keeps two programs from the table of waiting triggers at once: one would drop it under the other.
class TableInUse {
public:
    explicit TableInUse(Engine& engine)
        : m_engine(engine) {
        const auto answer = engine.Query(QStringLiteral("SELECT GET_LOCK(") + Name + QStringLiteral(", 60)"));
        if (!answer->Next() || answer->Value(0).toInt() != 1) {
            throw SqlError({}, QStringLiteral("un altro programma sta cambiando i trigger del database: riprovare"));
        }
    }
    ~TableInUse() {
        try {
            m_engine.Query(QStringLiteral("SELECT RELEASE_LOCK(") + Name + u')');
        } catch (const Error&) { // it goes with the connection
            return;
        }
    }
    TableInUse(const TableInUse&) = delete;
    TableInUse& operator=(const TableInUse&) = delete;

private:
    static inline const QString Name = QStringLiteral("CONCAT('quadrix.', LEFT(SHA1(DATABASE()), 32), '.triggers')");

    Engine& m_engine;
};

QVector<Trigger> ReadTriggers(Engine& engine, const QString& table) {
    QVector<Trigger> triggers;
    const auto list = engine.Query(QStringLiteral("SHOW TRIGGERS WHERE `Table` = ") + MySqlLiteral(table));
    const int definer = list->IndexOf(QStringLiteral("Definer"));
    while (list->Next()) {
        triggers.append({list->Value(0).toString(), {}, {}, list->Value(definer).toString()});
    }
    return triggers;
}

/// In the order in which they fire: a text does not tell which other one it follows.
void ReadTexts(Engine& engine, QVector<Trigger>& triggers) {
    for (Trigger& trigger : triggers) {
        const auto row = engine.Query(QStringLiteral("SHOW CREATE TRIGGER ") + MySqlName(trigger.name));
        if (row->Next()) {
            trigger.mode = row->Value(1).toString();
            trigger.text = row->Value(2).toString();
        }
    }
}

bool IsTableThere(Engine& engine) {
    return engine
        .Query(QStringLiteral("SELECT 1 FROM information_schema.TABLES WHERE TABLE_SCHEMA = DATABASE() AND "
                              "TABLE_NAME = 'QDX_TRIGGERS_OFF'"))
        ->Next();
}

void MakeTable(Engine& engine) {
    engine.Run(QStringLiteral("CREATE TABLE IF NOT EXISTS QDX_TRIGGERS_OFF (ID BIGINT AUTO_INCREMENT PRIMARY KEY, "
                              "NAME VARCHAR(64) NOT NULL UNIQUE, TBL VARCHAR(64), MODE TEXT, DDL LONGTEXT) "
                              "CHARACTER SET utf8mb4"));
}

/// A user who may not drop it leaves it behind, empty.
void DropEmptyTable(Engine& engine) noexcept {
    try {
        if (!engine.Query(QStringLiteral("SELECT 1 FROM QDX_TRIGGERS_OFF LIMIT 1"))->Next()) {
            engine.Run(QStringLiteral("DROP TABLE QDX_TRIGGERS_OFF"));
        }
    } catch (const Error&) {
        return;
    }
}

/// "`anna`@`%`" for "anna@%"; a role has no host.
QString DefinerName(const QString& definer) {
    const qsizetype at = definer.lastIndexOf(u'@');
    const auto quoted = [](QString name) { return QString(u'`' + name.replace(u'`', QLatin1String("``")) + u'`'); };
    return at < 0 ? quoted(definer) : QString(quoted(definer.left(at)) + u'@' + quoted(definer.mid(at + 1)));
}

/// "SET USER" of "Access denied; you need (at least one of) the SUPER, SET USER privilege(s) for this operation".
QString LackingPrivilege(const SqlError& error) {
    static const QRegularExpression named(QStringLiteral("the ([A-Z_, ]+) privilege"));
    const QString names = named.match(error.EngineMessage()).captured(1);
    return names.section(u',', -1).trimmed();
}

QString GrantOfTriggers(Engine& engine) {
    return QStringLiteral("GRANT CREATE, TRIGGER, DROP ON %1.* TO %2")
        .arg(mySqlRights::Database(engine), mySqlRights::CurrentUser(engine));
}

QString Obstacle(Engine& engine, const QString& table, const Trigger& trigger, const SqlError& error) {
    const QString lacking = LackingPrivilege(error);
    const QString grant = lacking.isEmpty()
                              ? GrantOfTriggers(engine)
                              : QStringLiteral("GRANT %1 ON *.* TO %2").arg(lacking, mySqlRights::CurrentUser(engine));
    return QStringLiteral("il trigger '%1' di '%2' (definer %3) non si potrebbe riattivare: %4. Importare come %3, o "
                          "eseguire %5")
        .arg(trigger.name, table, trigger.definer, error.EngineMessage(), grant);
}

/// Makes and drops a trigger that does nothing, on a table of this program, in the name of the definer.
void TryDefiner(Engine& engine, const QString& definer) {
    const QString name = QStringLiteral("QDX_TRIGGERS_OFF_TRY");
    engine.Run(QStringLiteral("DROP TRIGGER IF EXISTS ") + name);
    engine.Run(QStringLiteral("CREATE DEFINER=%1 TRIGGER %2 BEFORE INSERT ON QDX_TRIGGERS_OFF FOR EACH ROW "
                              "SET @quadrix_try = 1")
                   .arg(DefinerName(definer), name));
    engine.Run(QStringLiteral("DROP TRIGGER ") + name);
}

QStringList Obstacles(Engine& engine, const QString& table, const QVector<Trigger>& triggers) {
    QStringList obstacles;
    QStringList tried;
    for (const Trigger& trigger : triggers) {
        if (tried.contains(trigger.definer)) {
            continue;
        }
        tried.append(trigger.definer);
        if (trigger.definer.isEmpty()) { // the server tells that there is one, and no more
            obstacles.append(QStringLiteral("il trigger '%1' di '%2' non si può leggere: eseguire %3")
                                 .arg(trigger.name, table, GrantOfTriggers(engine)));
            continue;
        }
        try {
            MakeTable(engine);
            TryDefiner(engine, trigger.definer);
        } catch (const SqlError& error) {
            if (error.MayPass()) {
                throw;
            }
            obstacles.append(Obstacle(engine, table, trigger, error));
        }
    }
    return obstacles;
}

/// It would end with the first statement.
void RefuseWithin(bool inTransaction, const QString& table) {
    if (inTransaction) {
        throw SqlError(QStringLiteral("ALTER TABLE ") + table, NotWithin.arg(table));
    }
}

void StoreTriggers(Engine& engine, const QString& table, bool inTransaction) {
    QVector<Trigger> triggers = ReadTriggers(engine, table);
    if (triggers.isEmpty()) {
        return;
    }
    RefuseWithin(inTransaction, table);
    const TableInUse alone(engine);
    const QStringList obstacles = Obstacles(engine, table, triggers);
    if (!obstacles.isEmpty()) {
        DropEmptyTable(engine);
        throw SqlError({}, QStringLiteral("i trigger di '%1' restano attivi, e non si importa: ").arg(table) +
                               obstacles.join(QStringLiteral("; ")));
    }
    ReadTexts(engine, triggers);
    for (const Trigger& trigger : std::as_const(triggers)) {
        if (!IsTriggerText(trigger.text, trigger.name, table)) {
            throw SqlError({}, QStringLiteral("il testo del trigger '%1' di '%2' non si legge: resta attivo")
                                   .arg(trigger.name, table));
        }
        engine.Run(QStringLiteral("REPLACE INTO QDX_TRIGGERS_OFF (NAME, TBL, MODE, DDL) VALUES (") +
                   MySqlLiteral(trigger.name) + QStringLiteral(", ") + MySqlLiteral(table) + QStringLiteral(", ") +
                   MySqlLiteral(trigger.mode) + QStringLiteral(", ") + MySqlLiteral(trigger.text) + u')');
        engine.Run(QStringLiteral("DROP TRIGGER ") + MySqlName(trigger.name));
    }
}

void MakeAgain(Engine& engine, const Trigger& trigger) {
    engine.Run(QStringLiteral("SET @quadrix_mode = @@SESSION.sql_mode, SESSION sql_mode = ") +
               MySqlLiteral(trigger.mode));
    try {
        engine.Run(trigger.text);
    } catch (...) {
        engine.Run(QStringLiteral("SET SESSION sql_mode = @quadrix_mode"));
        throw;
    }
    engine.Run(QStringLiteral("SET SESSION sql_mode = @quadrix_mode"));
    engine.Run(QStringLiteral("DELETE FROM QDX_TRIGGERS_OFF WHERE NAME = ") + MySqlLiteral(trigger.name));
}

/// Whoever may write the table may write any text there: what makes no trigger of that name on that table is not run.
void RestoreTriggers(Engine& engine, const QString& table, bool inTransaction) {
    if (!IsTableThere(engine)) {
        return;
    }
    const TableInUse alone(engine);
    QVector<Trigger> triggers;
    const auto stored =
        engine.Query(QStringLiteral("SELECT NAME, MODE, DDL FROM QDX_TRIGGERS_OFF WHERE TBL = %1 ORDER BY ID")
                         .arg(MySqlLiteral(table)));
    while (stored->Next()) {
        triggers.append({stored->Value(0).toString(), stored->Value(1).toString(), stored->Value(2).toString()});
    }
    RefuseWithin(inTransaction && !triggers.isEmpty(), table);
    QStringList refused;
    for (const Trigger& trigger : std::as_const(triggers)) {
        if (IsTriggerText(trigger.text, trigger.name, table)) {
            MakeAgain(engine, trigger);
        } else {
            refused.append(trigger.name);
        }
    }
    if (!refused.isEmpty()) {
        throw SqlError({},
                       QStringLiteral("tabella QDX_TRIGGERS_OFF, NAME '%1': il testo non crea quel trigger su '%2' e "
                                      "non viene eseguito; verificare la riga e toglierla")
                           .arg(refused.join(QStringLiteral("', '")), table));
    }
    if (!inTransaction) {
        DropEmptyTable(engine);
    }
}

} // namespace

void SwitchMySqlTriggers(Engine& engine, const QString& table, bool enabled, bool inTransaction) {
    enabled ? RestoreTriggers(engine, table, inTransaction) : StoreTriggers(engine, table, inTransaction);
}

QStringList MySqlTriggerObstacles(Engine& engine, const QString& table, bool inTransaction) {
    const QVector<Trigger> triggers = ReadTriggers(engine, table);
    if (triggers.isEmpty()) {
        return {};
    }
    if (inTransaction) {
        return {NotWithin.arg(table)};
    }
    const TableInUse alone(engine);
    const QStringList obstacles = Obstacles(engine, table, triggers);
    DropEmptyTable(engine);
    return obstacles;
}

bool SeesMySqlTriggers(Engine& engine, const QString& table) {
    return mySqlRights::IsGranted(engine, QStringLiteral("TRIGGER"), table);
}
