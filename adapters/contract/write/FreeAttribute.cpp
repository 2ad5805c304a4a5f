#include "adapters/contract/write/FreeAttribute.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/ImportingModules.h"
#include "adapters/contract/write/noLongerThere.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

const QString AttributeTable = QStringLiteral("FLD_VAL");

} // namespace

std::vector<TableNeed> FreeAttributeNeeds() {
    return {{AttributeTable, {"FLTAB", "FLKEY", "FLFLD", "FLVAL", "FLDEF"}}};
}

Emptying FreeAttributeEmptying(const QString& table) {
    return {{.table = AttributeTable, .way = Emptied::Way::Delete, .where = QStringLiteral("FLTAB = '%1'").arg(table)}};
}

namespace {

QString OfRecord(const Session& session, const QString& table, const QString& key) {
    return Equals(session, "FLTAB", table) + QStringLiteral(" AND ") + Equals(session, "FLKEY", key);
}

QString KeyOf(const FreeAttribute& attribute) {
    return mod_ovTools::UpperChars(QStringList{attribute.table, attribute.key, attribute.name}.join(u'\n'));
}

} // namespace

void FreeAttributeWriter::TakeAway(const FreeAttribute& attribute, qint64 known) const {
    const QString condition = Equals("RECORD_ID", known) + QStringLiteral(" AND ") + OfImports(m_run.GetSession());
    const bool isOfImport = m_written.contains(KeyOf(attribute)) || m_run.HasWrittenBefore(AttributeTable, known);
    if (known != 0 && !isOfImport && m_run.DeleteRows(AttributeTable, condition) != 0) {
        m_run.Log(QStringLiteral("ATTRIBUTO TOLTO: %1: '%2' di '%3' nell'origine è vuoto")
                      .arg(m_run.RowKey(), attribute.name, attribute.key));
    }
}

void FreeAttributeWriter::Write(const FreeAttribute& attribute) {
    Session& session = m_run.GetSession();
    if (attribute.value.isEmpty() && session.Quadrix.IsAbsent(AttributeTable, "FLKEY", attribute.key)) {
        return;
    }
    const qint64 known = IdOfCode(session.Quadrix, AttributeTable,
                                  OfRecord(session, attribute.table, attribute.key) + QStringLiteral(" AND ") +
                                      Equals(session, "FLFLD", attribute.name),
                                  "FLFLD", attribute.name);
    if (attribute.value.isEmpty()) {
        TakeAway(attribute, known);
        return;
    }
    TargetRow row(m_run, AttributeTable);
    row.Set("FLTAB", attribute.table);
    row.Set("FLKEY", attribute.key);
    row.Set("FLFLD", attribute.name);
    row.Set("FLVAL", attribute.value);
    row.Set("FLDEF", attribute.description);
    if (known != 0) {
        row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", known));
    } else {
        row.Insert();
    }
    m_run.Remember(m_written, KeyOf(attribute));
}

void FreeAttributeWriter::TellLeft(const QString& table, const QString& key, const QStringList& names) const {
    Session& session = m_run.GetSession();
    if (session.Quadrix.IsAbsent(AttributeTable, "FLKEY", key)) {
        return;
    }
    Recordset rows =
        session.Quadrix.ExecuteWC(QStringLiteral("SELECT FLFLD FROM %1 WHERE ").arg(m_run.FullName(AttributeTable)) +
                                  OfRecord(session, table, key) + QStringLiteral(" AND ") + OfImports(session));
    QStringList left;
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        if (const QString name = row.Text("FLFLD"); !names.contains(name, Qt::CaseInsensitive)) {
            left.append(name);
        }
    }
    rows.Close();
    if (left.isEmpty() || !ImportingModules(m_run, table).IsAlone(QStringLiteral("attributi"))) {
        return;
    }
    for (const QString& name : std::as_const(left)) {
        TellNoLongerThere(m_run, QStringLiteral("ATTRIBUTI"), QStringLiteral("'%1' di '%2'").arg(name, key), 1);
    }
}

} // namespace contract
