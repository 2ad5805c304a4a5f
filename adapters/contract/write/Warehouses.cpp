#include "adapters/contract/write/Warehouses.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/RowSelection.h"
#include "core/schemaDefaults.h"

namespace contract {

Rule WarehouseWritten(const QString& table, const QString& field) {
    return {QStringLiteral("tradotto con SYS_IMP (%1, %2), altrimenti com'è se MAG_AZZ lo ha, altrimenti annotato, "
                           "scritto nel log e \"%3\"")
                .arg(table, field, schema::defaults::Warehouse),
            [](const RuleInput&) { return RuleValue(); }};
}

QString Warehouses::CodeOf(const QString& code) {
    using schema::defaults::Warehouse;
    if (code.isEmpty()) {
        return Warehouse;
    }
    const QString known = TranslatedCode(m_run.GetSession(), m_table, m_field, code, "MAG_AZZ");
    if (known.isEmpty() && !m_told.contains(code)) {
        m_run.Remember(m_told, code);
        m_run.Log(QStringLiteral("MAGAZZINO NON TROVATO: '%1' non è in MAG_AZZ né tradotto in SYS_IMP, si usa '%2'")
                      .arg(code, Warehouse));
    }
    return known.isEmpty() ? Warehouse : known;
}

QString Warehouses::LeftBy(const QString& code) const {
    const RowSelection* rows = m_run.GetSession().Selection;
    return rows != nullptr && rows->FillsCode(m_table, m_field, code) ? schema::defaults::Warehouse : QString();
}

} // namespace contract
