#include "adapters/contract/write/ImportedLists.h"

#include "adapters/contract/map/lookups.h"
#include "core/Schema.h"

#include <algorithm>

namespace contract {

namespace {

const QString Heads = QStringLiteral("LIS_TES");
const QString ListField = QStringLiteral("LISTINO");
const QString KeptIn = QStringLiteral("SYS_IMP");

} // namespace

ImportedLists::ImportedLists(ImportRun& run, const QString& part)
    : m_run(run),
      m_owner(part.isEmpty() ? run.ProcedureName() : QString(run.ProcedureName() + u'/' + part)) {
    m_owner.replace(u' ', u'_'); // what stands in front of it may have blanks
}

QString ImportedLists::OfCompany() const {
    return Equals(m_run.GetSession(), "TBNAM", m_run.FullName(Heads)) + QStringLiteral(" AND ") +
           Equals(m_run.GetSession(), "TBFLD", ListField);
}

QHash<QString, QStringList>& ImportedLists::Owners() {
    if (!m_owners) {
        m_owners.emplace();
        Recordset rows =
            m_run.GetSession().Quadrix.ExecuteWC(QStringLiteral("SELECT TBOLD FROM SYS_IMP WHERE ") + OfCompany());
        for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
            const QString kept = row.Text("TBOLD");
            const qsizetype blank = kept.lastIndexOf(u' ');
            (*m_owners)[kept.first(std::max<qsizetype>(blank, 0))].append(kept.mid(blank + 1));
        }
    }
    return *m_owners;
}

void ImportedLists::ForgetWithoutLists() {
    m_run.Restores(m_hasBegun);
    m_hasBegun = true;
    Session& session = m_run.GetSession();
    if (!Owners().isEmpty() &&
        session.Quadrix.ExecuteCommand(QStringLiteral("SELECT COUNT(*) FROM %1 WHERE ").arg(m_run.FullName(Heads)) +
                                       OfImports(session)) == 0) {
        m_run.DeleteRows(KeptIn, OfCompany());
        m_run.WhenTakenBack([this] { m_owners.reset(); });
        Owners().clear();
    }
}

void ImportedLists::Keep(const QString& list) {
    if (!m_hasBegun) {
        ForgetWithoutLists();
    }
    static const int size = schema::FindTable(KeptIn)->FindColumn("TBOLD")->size;
    const QString kept = list + u' ' + m_owner;
    if (Owners().value(list).contains(m_owner) || kept.size() > size) {
        return;
    }
    m_run.RestoresEntry(Owners(), list);
    Owners()[list].append(m_owner);
    StoreNewCode(m_run, m_run.FullName(Heads), ListField, kept, m_run.Module());
}

QStringList ImportedLists::Own() {
    QStringList own;
    for (auto list = Owners().cbegin(); list != Owners().cend(); ++list) {
        if (*list == QStringList(m_owner)) {
            own.append(list.key());
        }
    }
    std::ranges::sort(own);
    return own;
}

} // namespace contract
