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
    const auto begins = [&table](QStringView with) { return table.startsWith(with, Qt::CaseInsensitive); };
    const bool isShared = begins(u"TAB_") || begins(u"SYS_") || begins(u"GEN_");
    // A bare name that only begins like the company ("CON_TRO" of a company CON) holds no second "_" behind it.
    const qsizetype mark = m_company.size();
    const bool carriesCompany =
        mark < table.size() && table.at(mark) == u'_' && begins(m_company) && table.indexOf(u'_', mark + 1) > 0;
    if (m_company.isEmpty() || isShared || carriesCompany) {
        return table;
    }
    return m_company + u'_' + table;
}

QVector<ColumnInfo> ovConnection::GetColumns(const QString& table) {
    Engine& engine = Opened({});
    return Layout ? Layout->Columns(table, engine) : engine.Columns(table);
}

QVector<ColumnBounds> ovConnection::GetBounds(const QString& table) { return Opened({}).Bounds(table); }

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
