#include "app/CompanyLock.h"

#include "app/startUp.h"
#include "core/worker.h"

CompanyLock::CompanyLock(Session& session, const QStringList& companies, const QString& work)
    : m_session(session) {
    // In one order for all: of two that want the same ones, one gets them.
    QStringList ordered = companies;
    ordered.sort();
    ordered.removeDuplicates();
    try {
        for (const QString& company : std::as_const(ordered)) {
            Take(company, work);
        }
    } catch (...) {
        LetGo();
        throw;
    }
}

void CompanyLock::Take(const QString& company, const QString& work) {
    ovConnection& database = m_session.Quadrix;
    if (database.HasLock(company)) {
        return;
    }
    if (!database.TakeLock(company, WorkText(m_session.Now(), work))) {
        const QString holder = database.LockHolder(company);
        throw ImportError(
            QStringLiteral(
                "Azienda '%1': ci sta già lavorando %2. Non è stato scritto nulla: riprovare quando ha finito")
                .arg(company, holder.isEmpty() ? QStringLiteral("un altro programma") : holder));
    }
    m_taken.append(company);
}

void CompanyLock::LetGo() noexcept {
    while (!m_taken.isEmpty()) {
        m_session.Quadrix.ReleaseLock(m_taken.takeLast());
    }
}

QStringList AllCompanies(Session& session) {
    QStringList codes;
    for (const modMain::Company& company : modMain::GetCompanies(session)) {
        codes.append(company.code);
    }
    return codes;
}
