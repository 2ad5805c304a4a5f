#include "adapters/contract/kinds/ProductionOrders.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Document.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

const QString Orders = QStringLiteral("ORD_PRO");
const QString Parts = QStringLiteral("ORD_COM");
const QString Phases = QStringLiteral("ORD_FAS");
const QString PartOwner = QStringLiteral("IDORD");
const QString PartArticle = QStringLiteral("OCART");
const QString PhaseOwner = QStringLiteral("IDOPR");

/// The rows that an earlier import wrote for an owner: rewritten one after the other, the rest is deleted.
class Rewriter {
public:
    Rewriter(ImportRun& run, const Mapping& mapping, const QString& condition)
        : m_run(run),
          m_table(mapping.targetTable),
          m_columns(WrittenColumns(run.GetSession(), mapping)) {
        Recordset rows = run.GetSession().Quadrix.ExecuteWC("SELECT RECORD_ID FROM " + run.FullName(m_table) +
                                                            " WHERE " + condition + " AND " +
                                                            OfImports(run.GetSession()) + " ORDER BY RECORD_ID");
        for (; !rows.Eof(); rows.MoveNext()) {
            m_known.append(rows.Fields(0).Value().toLongLong());
        }
    }

    /// Writes the row and returns its RECORD_ID.
    qint64 Write(TargetRow& row) {
        if (m_known.isEmpty()) {
            row.Insert();
            return m_run.LastId(m_table);
        }
        EmptyOthers(row, m_columns); // what has stood there may have been another
        const qint64 id = m_known.takeFirst();
        row.Update("WHERE " + Equals("RECORD_ID", id));
        return id;
    }
    QList<qint64> Rest() const { return m_known; }

private:
    ImportRun& m_run;
    QString m_table;
    QStringList m_columns;
    QList<qint64> m_known;
};

/// A component is written without its article as well: what the order needs would be wrong without it.
void TellMissingArticle(ImportRun& run, const TargetRow& part, const QString& name) {
    const QString article = mod_ovTools::ToText(part.Value(PartArticle));
    if (!article.isEmpty() && !IsThere(run.GetSession(), "ART_ICO", "CDART", article)) {
        run.Log(QStringLiteral("COMPONENTE SENZA ARTICOLO: %1: '%2'").arg(name, article));
    }
}

} // namespace

ProductionOrderWriter::ProductionOrderWriter(ProductionOrders declared)
    : m_declared(std::move(declared)),
      m_order{Orders, m_declared.rows.table,
              m_declared.lines.Over({{"OPTPD", "", rules::Constant(schema::defaults::OrderOfDocument)}})},
      m_part{Parts, m_declared.parts.rows.table, m_declared.parts.lines.Over({})},
      m_phase{Phases, m_declared.phases.rows.table, m_declared.phases.lines.Over({})} {}

Needs ProductionOrderWriter::NeedsUnder(const QString& parent) const {
    const QString& orders = m_declared.rows.table;
    Needs needs = m_declared.rows.OwnNeeds(parent) + m_declared.parts.rows.OwnNeeds(orders) +
                  m_declared.phases.rows.OwnNeeds(orders) + NeedsOf(m_order) + NeedsOf(m_part) + NeedsOf(m_phase);
    needs.writes = {{Orders, {"OPIDD", "OPTPD"}}, {Parts, {PartOwner}}, {Phases, {PhaseOwner}}};
    return needs;
}

void ProductionOrderWriter::Write(ImportRun& run, const SourceRow& row, qint64 document) const {
    Session& session = run.GetSession();
    Rewriter known(run, m_order,
                   Equals("OPIDD", document) + " AND " + Equals(session, "OPTPD", schema::defaults::OrderOfDocument));
    m_declared.rows.ForEach(session, row, [&](const SourceRow& order) {
        TargetRow target(run, Orders);
        m_order.Apply(target, session, order, {});
        target.Set("OPIDD", document);
        const qint64 id = known.Write(target);
        WriteChildren(run, order, id, m_declared.parts.rows, m_part, PartOwner);
        WriteChildren(run, order, id, m_declared.phases.rows, m_phase, PhaseOwner);
    });
    for (const qint64 rest : known.Rest()) {
        run.DeleteRows(Parts, Equals(PartOwner, rest));
        run.DeleteRows(Phases, Equals(PhaseOwner, rest));
        run.DeleteRows(Orders, Equals("RECORD_ID", rest));
    }
}

void ProductionOrderWriter::WriteChildren(ImportRun& run, const SourceRow& order, qint64 id, const ChildTable& rows,
                                          const Mapping& mapping, const QString& owner) const {
    Rewriter known(run, mapping, Equals(owner, id));
    rows.ForEach(run.GetSession(), order, [&](const SourceRow& row) {
        TargetRow target(run, mapping.targetTable);
        target.Set(owner, id);
        mapping.Apply(target, run.GetSession(), row, {});
        if (mapping.targetTable == Parts) {
            TellMissingArticle(run, target, rows.Name(row));
        }
        known.Write(target);
    });
    for (const qint64 rest : known.Rest()) {
        run.DeleteRows(mapping.targetTable, Equals("RECORD_ID", rest));
    }
}

Emptying ProductionOrderEmptying() { return DeletedImports(Parts) + DeletedImports(Phases) + DeletedImports(Orders); }

} // namespace contract
