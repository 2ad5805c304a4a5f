#include "adapters/contract/write/ImportingModules.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/SourceRow.h"
#include "adapters/contract/write/noLongerThere.h"

namespace contract {

namespace {

const QString Translations = QStringLiteral("SYS_IMP");

} // namespace

QString ImportingModules::OfList() const {
    const Session& session = m_run.GetSession();
    return Equals(session, "TBNAM", List()) + QStringLiteral(" AND ") + Equals(session, "TBFLD", m_field);
}

QStringList ImportingModules::Others() const {
    Session& session = m_run.GetSession();
    QStringList others;
    Recordset rows = session.Quadrix.ExecuteWC(QStringLiteral("SELECT TBOLD FROM SYS_IMP WHERE ") + OfList() +
                                               QStringLiteral(" ORDER BY TBOLD"));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        if (const QString module = row.Text("TBOLD"); module.compare(m_run.Module(), Qt::CaseInsensitive) != 0) {
            others.append(module);
        }
    }
    return others;
}

void ImportingModules::Keep() {
    if (m_isKept) {
        return;
    }
    m_run.Restores(m_isKept);
    m_isKept = true;
    Session& session = m_run.GetSession();
    if (!Others().isEmpty() &&
        session.Quadrix.ExecuteCommand(QStringLiteral("SELECT COUNT(*) FROM %1 WHERE ").arg(List()) +
                                       OfImports(session)) == 0) {
        m_run.DeleteRows(Translations, OfList() + QStringLiteral(" AND TBOLD <> ") + m_run.Quoted(m_run.Module()));
    }
    if (!StoredNewCode(session, List(), m_field, m_run.Module())) {
        StoreNewCode(m_run, List(), m_field, m_run.Module(), m_run.Module());
    }
}

bool ImportingModules::IsAlone(const QString& what) const {
    const QStringList others = Others();
    if (!others.isEmpty()) {
        m_run.Tell(
            QStringLiteral("RIMANENZE NON CERCATE: %1: ne importa qui anche %2, e ciò che l'origine non ha più non "
                           "si distingue da ciò che è di quella")
                .arg(what, others.join(QStringLiteral(", "))));
    }
    return others.isEmpty();
}

void ImportingModules::TellLeft(const QString& kind, const QString& what, const QStringList& left) const {
    if (left.isEmpty() || !IsAlone(what)) {
        return;
    }
    for (const QString& one : left) {
        TellNotMetAgain(m_run, kind, one, 1);
    }
}

} // namespace contract
