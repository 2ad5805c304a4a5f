#include "adapters/contract/run/TriggersOff.h"

#include <algorithm>

namespace contract {

TriggersOff::TriggersOff(ImportRun& run, const QStringList& tables)
    : m_run(run) {
    try {
        for (const QString& table : tables) {
            SwitchOff(table);
        }
    } catch (...) {
        SwitchAllOn();
        throw;
    }
    m_run.BeforeCompletion([this] { SwitchAllOn(); });
}

void TriggersOff::SwitchOff(const QString& table) {
    ovConnection& target = m_run.GetSession().Quadrix;
    const QString name = m_run.FullName(table);
    if (!target.SeesTriggers(name)) {
        m_run.Log(QStringLiteral("TRIGGER NON VISIBILI: tabella '%1', all'utente manca il diritto TRIGGER; se ne ha, "
                                 "restano attivi durante l'importazione")
                      .arg(name));
    }
    m_off.push_back({table});
    target.AlterTriggersStatus(name, false);
    m_off.back().waiting = Waiting(name);
    if (m_off.back().waiting && m_off.back().waiting->isEmpty()) {
        m_off.pop_back();
    }
}

/// The triggers of a table (physical name) that are to be made again, where the database has no switch for them; none
/// where it has one.
std::optional<QStringList> TriggersOff::Waiting(const QString& table) const {
    ovConnection& target = m_run.GetSession().Quadrix;
    if (!target.Embedded && target.ProviderType != Provider::MySql) {
        return std::nullopt;
    }
    QStringList names;
    if (!target.GetColumns(QStringLiteral("QDX_TRIGGERS_OFF")).isEmpty()) {
        for (Recordset rows = target.ExecuteWC(QStringLiteral("SELECT NAME FROM QDX_TRIGGERS_OFF WHERE TBL = ") +
                                               m_run.Quoted(table));
             !rows.Eof(); rows.MoveNext()) {
            names.append(rows.Fields(0).Value().toString());
        }
    }
    return names;
}

TriggersOff::~TriggersOff() {
    m_run.BeforeCompletion({});
    SwitchAllOn();
}

void TriggersOff::SwitchOn(const QString& table) {
    const auto off = std::find_if(m_off.begin(), m_off.end(), [&table](const Off& one) { return one.table == table; });
    if (off != m_off.end()) {
        m_run.GetSession().Quadrix.AlterTriggersStatus(m_run.FullName(table), true);
        m_off.erase(off);
    }
}

void TriggersOff::SwitchAllOn() noexcept {
    for (const Off& off : std::exchange(m_off, {})) {
        m_run.SwitchTriggersOn(off.table, off.waiting);
    }
}

} // namespace contract
