#include "adapters/contract/kinds/ProductionOrders.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Document.h"
#include "adapters/contract/write/noLongerThere.h"
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
          m_columns(EmptiedColumns(run.GetSession(), mapping)) {
        Recordset rows = run.GetSession().Quadrix.ExecuteWC("SELECT RECORD_ID FROM " + run.FullName(m_table) +
                                                            " WHERE " + condition + " AND " +
                                                            OfImports(run.GetSession()) + " ORDER BY RECORD_ID");
        for (; !rows.Eof(); rows.MoveNext()) {
            m_known.append(rows.Fields(0).Value().toLongLong());
        }
    }

    /// Writes the row and returns its RECORD_ID.
    qint64 Write(TargetRow& row) { return WriteOver(row, m_known.value(0)); }
    /// @param id of the row that it goes over; 0: it is a new one
    qint64 WriteOver(TargetRow& row, qint64 id) {
        if (id == 0) {
            row.Insert();
            return m_run.LastId(m_table);
        }
        EmptyOthers(row, m_columns); // what has stood there may have been another
        m_known.removeOne(id);
        row.Update("WHERE " + Equals("RECORD_ID", id));
        return id;
    }
    const QList<qint64>& Rest() const { return m_known; }

private:
    ImportRun& m_run;
    QString m_table;
    QStringList m_columns;
    QList<qint64> m_known;
};

/// Which production order of a document row has which number in the source: ORD_PRO has no column for it.
class KeptNumbers {
public:
    /// @param field column of the source with the numbers
    KeptNumbers(ImportRun& run, QString field, qint64 document)
        : m_run(run),
          m_field(std::move(field)),
          m_document(QString::number(document) + u'/') {}

    void Read() {
        Session& session = m_run.GetSession();
        Recordset rows = session.Quadrix.ExecuteWC(
            "SELECT TBOLD, TBNEW FROM SYS_IMP WHERE " + Equals(session, "TBNAM", m_run.FullName(Orders)) + " AND " +
            Equals(session, "TBFLD", m_field) + " AND TBOLD LIKE " + m_run.Quoted(m_document + u'%'));
        for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
            m_ids.insert(row.Text("TBOLD").mid(m_document.size()), row.Text("TBNEW").toLongLong());
        }
    }
    /// The order that has the number, else, of those that an import has written while none was kept, the first; 0 for
    /// none. @param there those that are there and have not been written
    qint64 Find(const QString& number, const QList<qint64>& there) const {
        if (const qint64 id = m_ids.value(number); there.contains(id)) {
            return id;
        }
        const QList<qint64> kept = m_ids.values();
        const auto other = std::ranges::find_if(there, [&kept](qint64 id) { return !kept.contains(id); });
        return other == there.end() ? 0 : *other;
    }
    void Keep(const QString& number, qint64 id) {
        if (!number.isEmpty() && m_ids.value(number) != id) {
            StoreNewCode(m_run, m_run.FullName(Orders), m_field, m_document + number, QString::number(id));
            m_ids.insert(number, id);
        }
    }
    /// "NUMBER 'n'", for messages.
    QString NameOf(qint64 id) const { return QStringLiteral("%1 '%2'").arg(m_field, m_ids.key(id)); }

private:
    ImportRun& m_run;
    QString m_field;
    QString m_document; ///< what its numbers begin with in SYS_IMP
    QHash<QString, qint64> m_ids;
};

/// A component is written without its article as well: what the order needs would be wrong without it.
void TellMissingArticle(ImportRun& run, const TargetRow& part, const QString& name) {
    const QString article = mod_ovTools::ToText(part.Value(PartArticle));
    if (!article.isEmpty() && !IsThere(run.GetSession(), "ART_ICO", "CDART", article)) {
        run.Log(QStringLiteral("COMPONENTE SENZA ARTICOLO: %1: '%2'").arg(name, article));
    }
}

/// The rows of an order, by table and condition.
std::array<std::pair<QString, QString>, 3> RowsOf(qint64 order) {
    return {
        {{Parts, Equals(PartOwner, order)}, {Phases, Equals(PhaseOwner, order)}, {Orders, Equals("RECORD_ID", order)}}};
}

/// The condition on rows that somebody has entered or changed.
QString ByHand(const Session& session) {
    return "NOT (" + OfImports(session, "COALESCE(USINS, '')") + " AND (COALESCE(USMDF, '') = '' OR " +
           OfImports(session, "USMDF") + "))";
}

} // namespace

bool IsOrderOfImports(ImportRun& run, qint64 order) {
    Session& session = run.GetSession();
    return std::ranges::all_of(RowsOf(order), [&session](const auto& rows) {
        return IdWhere(session, rows.first, rows.second + " AND " + ByHand(session)) == 0;
    });
}

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
    needs.reads.push_back({m_declared.rows.table, {m_declared.number}});
    needs.writes = {{Orders, {"OPIDD", "OPTPD"}},
                    {Parts, {PartOwner}},
                    {Phases, {PhaseOwner}},
                    {"SYS_IMP", {"TBNAM", "TBFLD", "TBOLD", "TBNEW"}}};
    return needs;
}

void ProductionOrderWriter::Write(ImportRun& run, const SourceRow& row, qint64 document) const {
    Session& session = run.GetSession();
    Rewriter known(run, m_order,
                   Equals("OPIDD", document) + " AND " + Equals(session, "OPTPD", schema::defaults::OrderOfDocument));
    KeptNumbers numbers(run, m_declared.number, document);
    if (!known.Rest().isEmpty()) {
        numbers.Read();
    }
    m_declared.rows.ForEach(session, row, [&](const SourceRow& order) {
        TargetRow target(run, Orders);
        m_order.Apply(target, session, order, {});
        target.Set("OPIDD", document);
        const QString number = order.Text(m_declared.number);
        const qint64 id = known.WriteOver(target, numbers.Find(number, known.Rest()));
        numbers.Keep(number, id);
        WriteChildren(run, order, id, m_declared.parts.rows, m_part, PartOwner);
        WriteChildren(run, order, id, m_declared.phases.rows, m_phase, PhaseOwner);
    });
    for (const qint64 rest : known.Rest()) {
        TakeAway(run, rest, QStringLiteral("%1, %2").arg(run.RowKey(), numbers.NameOf(rest)));
    }
}

/// @param order one that the source has no more
void ProductionOrderWriter::TakeAway(ImportRun& run, qint64 order, const QString& name) const {
    if (!IsOrderOfImports(run, order)) {
        TellNoLongerThere(run, QStringLiteral("ORDINI DI PRODUZIONE"), name, 1);
        return;
    }
    for (const auto& [table, condition] : RowsOf(order)) {
        run.DeleteRows(table, condition);
    }
    run.Log(QStringLiteral("ORDINE DI PRODUZIONE TOLTO: %1: l'origine non lo ha più").arg(name));
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
    if (!known.Rest().isEmpty()) {
        run.Log(QStringLiteral("RIGHE DI PRODUZIONE TOLTE: %1: %2 di %3 che l'origine non ha più")
                    .arg(run.RowKey(), QString::number(known.Rest().size()), mapping.targetTable));
    }
}

Emptying ProductionOrderEmptying() { return DeletedImports(Parts) + DeletedImports(Phases) + DeletedImports(Orders); }

} // namespace contract
