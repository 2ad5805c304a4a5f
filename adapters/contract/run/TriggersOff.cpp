#include "adapters/contract/run/TriggersOff.h"

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
    m_off.append(table);
    target.AlterTriggersStatus(name, false);
}

TriggersOff::~TriggersOff() {
    m_run.BeforeCompletion({});
    SwitchAllOn();
}

void TriggersOff::SwitchOn(const QString& table) {
    m_run.GetSession().Quadrix.AlterTriggersStatus(m_run.FullName(table), true);
    m_off.removeAll(table);
}

void TriggersOff::SwitchAllOn() noexcept {
    for (const QString& table : std::exchange(m_off, {})) {
        m_run.SwitchTriggersOn(table);
    }
}

} // namespace contract
