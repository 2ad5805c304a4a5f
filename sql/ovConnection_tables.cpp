#include "sql/companyCode.h"
#include "sql/ovConnection.h"

// What a connection knows of tables: their names, columns, triggers, rights, and who holds them.

void ovConnection::SetCompany(const QString& code) {
    if (!code.isEmpty()) {
        CheckCompanyCode(code);
    }
    m_company = code;
}

QString ovConnection::GetFullTableName(const QString& table) const {
    static const QStringList shared{QStringLiteral("TAB_"), QStringLiteral("SYS_"), QStringLiteral("GEN_")};
    const QString prefix = m_company + u'_';
    const bool isShared = shared.contains(table.left(4).toUpper());
    // A bare name that only begins like the company ("CON_TRO" of a company CON) holds no second "_" behind it.
    const bool carriesCompany = table.startsWith(prefix, Qt::CaseInsensitive) && table.indexOf(u'_', prefix.size()) > 0;
    if (m_company.isEmpty() || isShared || carriesCompany) {
        return table;
    }
    return prefix + table;
}

QVector<ColumnInfo> ovConnection::GetColumns(const QString& table) {
    Engine& engine = Opened({});
    return Layout ? Layout->Columns(table, engine) : engine.Columns(table);
}

QStringList ovConnection::GetTables() {
    Engine& engine = Opened({});
    return Layout ? Layout->Tables(engine) : engine.Tables();
}

void ovConnection::Expect(const QString& table, const QString& index, const QList<int>& rows) {
    Opened({}).Expect(table, index, rows);
}

QStringList ovConnection::TriggerObstacles(const QString& table) { return Opened({}).TriggerObstacles(table); }

bool ovConnection::SeesTriggers(const QString& table) { return Opened({}).SeesTriggers(table); }

QStringList ovConnection::LackingRights(const QString& table, const QString& column, bool writes) {
    return Opened({}).LackingRights(table, column, writes);
}

void ovConnection::SetTriggersEnabled(const QString& table, bool enabled) {
    Opened(QStringLiteral("ALTER TABLE ") + table).SetTriggersEnabled(table, enabled);
}

bool ovConnection::TakeLock(const QString& name, const QString& holder) {
    if (!HasLock(name)) {
        if (!Opened({}).TakeLock(name, holder)) {
            return false;
        }
        m_locks.append(name);
    }
    return true;
}

QString ovConnection::LockHolder(const QString& name) { return Opened({}).LockHolder(name); }

void ovConnection::ReleaseLock(const QString& name) noexcept {
    if (m_engine != nullptr && m_locks.removeOne(name)) {
        m_engine->ReleaseLock(name);
    }
}
