// Orders of Tessera: OrdCliT and OrdCliR hold the customers', OrdForT and OrdForR the suppliers'; OrdProT, OrdProR and
// OrdProF the production orders of the customers' rows.

#include "adapters/origins/Tessera/modImport_Tessera.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/OpenDocument.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;

namespace modImport_Tessera {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString OrdProT = QStringLiteral("OrdProT");
const QString OrdProR = QStringLiteral("OrdProR");
const QString OrdProF = QStringLiteral("OrdProF");

/// The orders of one side.
struct Side {
    QString heads;
    QString rows;
    QString id;        ///< of the head, in both tables
    QString rowId;     ///< of the row
    QString reference; ///< the counterparty's own number of the order
    QString cause;
    const Family& family;
    QString counterpartyColumn; ///< of CON_TRO, that holds the code of the source
};

const Side& Customers() {
    static const Side side{"OrdCliT", "OrdCliR", "IdOrdCli", "IdOrdCliR", "RifCli", "ORDCL", Sales, "COCGE"};
    return side;
}

const Side& Suppliers() {
    static const Side side{"OrdForT", "OrdForR", "IdOrdFor", "IdOrdForR", "RifFor", "ORDFO", Purchases, "COFGE"};
    return side;
}

/// Kind of a document whose cause CAU_DOC lacks.
const QString Order = QStringLiteral("ORD");
/// State of an order that the counterparty has confirmed.
const QString Confirmed = QStringLiteral("CO");
/// Customer orders before that day are history that the installation left behind.
const QDate OldestOrder(2006, 1, 1);

std::vector<TableNeed> SourceNeeds(const Side& side) {
    std::vector<TableNeed> needs = LookupNeeds();
    needs.push_back(
        {side.heads,
         {side.id, "AnnOrd", "NumOrd", "DatOrd", "IdCliFor", side.reference, "DatRif", "IdPag", "StatOrd", "Note"}});
    needs.push_back({side.rows,
                     {side.id, side.rowId, "NumRig", "CodArt", "DesArt", "UniMis", "Qta", "QtaEva", "Prezzo", "Sconto1",
                      "Sconto2", "IdIva", "DatCons"}});
    return needs;
}

QString FromJoin(const Side& side, const QString& where) {
    return "FROM " + side.heads + " T INNER JOIN " + side.rows + " R ON R." + side.id + " = T." + side.id + "\rWHERE " +
           where;
}

void TellLeftOut(ImportRun& run, const Side& side) {
    const QString on = "O." + side.id + " = L." + side.id;
    TellUnmatched(run, {side.rows, side.heads, on, side.id, {}});
    TellUnmatched(run, {side.heads, side.rows, on, side.id, {}});
}

ImportRun::Loop LoopOf(const Side& side, const QString& step, const QString& where) {
    const QString columns = "T.AnnOrd, T.NumOrd, T.DatOrd, T.IdCliFor, T." + side.reference +
                            ", T.DatRif, T.IdPag, T.StatOrd, T.Note, R." + side.rowId +
                            ", R.NumRig, R.CodArt, R.DesArt, R.UniMis, R.Qta, R.QtaEva, R.Prezzo, R.Sconto1, "
                            "R.Sconto2, R.IdIva, R.DatCons";
    return {step,
            side.heads,
            "AnnOrd, NumOrd, NumRig",
            "SELECT COUNT(*) " + FromJoin(side, where),
            "SELECT " + columns + "\r" + FromJoin(side, where) + "\rORDER BY T.AnnOrd, T.NumOrd, R.NumRig",
            {"AnnOrd", "NumOrd"}};
}

// --- Orders -------------------------------------------------------------------------------------------------------

QString StateOf(const SourceRow& row) {
    const auto state = static_cast<int>(NumberOf(row, "StatOrd"));
    static const QHash<int, QString> states{
        {0, schema::defaults::ToDeliver}, {1, Confirmed}, {4, schema::defaults::PartlyDelivered}};
    return states.value(state, schema::defaults::Delivered); // every other state is closed
}

QString RowState(double quantity, double delivered) {
    using namespace schema::defaults;
    return delivered <= 0 ? ToDeliver : delivered < quantity ? PartlyDelivered : Delivered;
}

QString CounterpartyOf(Session& session, const SourceRow& row, const Side& side) {
    const QString code = GetCodContropartiTessera(session, row, "IdCliFor");
    const QString found =
        code.isEmpty() ? QString() : LookUp(session, "CON_TRO", side.counterpartyColumn, code, "CDCON");
    if (found.isEmpty()) {
        throw ImportError(QStringLiteral("colonna 'IdCliFor': la controparte '%1' (codice '%2') non è stata importata")
                              .arg(row.Text("IdCliFor"), code));
    }
    return found;
}

/// Writes the orders of one side.
class Orders {
public:
    Orders(ImportRun& run, const Side& side, const OpenDocument::Options& options)
        : m_run(run),
          m_side(side),
          m_documents(run, side.family, options) {}

    RowOutcome Row(const SourceRow& row, qint64* id = nullptr);
    void End() { m_documents.End(); }
    int Count() const { return m_documents.Count(); }
    void TellLeft(const QDate& from) const { m_documents.TellDocumentsLeft({m_side.cause}, from); }

private:
    OpenDocument::Head HeadOf(const SourceRow& row);
    DocumentRow RowOf(const SourceRow& row);

    ImportRun& m_run;
    const Side& m_side;
    OpenDocument m_documents;
};

OpenDocument::Head Orders::HeadOf(const SourceRow& row) {
    Session& session = m_run.GetSession();
    const QString counterparty = CounterpartyOf(session, row, m_side);
    const DocumentHead head{m_documents.Writer().CauseOf(m_side.cause, Order),
                            schema::defaults::NoSeries,
                            row.Text("NumOrd"),
                            DateOf(row, "DatOrd"),
                            static_cast<int>(NumberOf(row, "AnnOrd")),
                            counterparty,
                            LookUp(session, "CON_TRO", "CDCON", counterparty, "CORAS"),
                            StateOf(row)};
    return {head, [&session, &row, this](TargetRow& target) {
                target.Set("DTRIC", row.Text(m_side.reference));
                target.Set("DTRID", DateOf(row, "DatRif"));
                target.Set("DTNOT", row.Text("Note"));
                const QString term = modImport::GetNewCode(session, "Pagam", "CodPag",
                                                           GetCodPagamentoTessera(session, row, "IdPag"), true);
                if (!term.isEmpty()) {
                    target.Set("DTMOP", term);
                }
            }};
}

DocumentRow Orders::RowOf(const SourceRow& row) {
    Session& session = m_run.GetSession();
    DocumentRow values;
    values.number = static_cast<int>(NumberOf(row, "NumRig"));
    values.article = row.IsBlank("CodArt") ? QString() : ArticleOf(m_run, row.Text("CodArt"));
    values.type = values.article.isEmpty() ? schema::defaults::DescriptionRow : schema::defaults::NormalRow;
    values.description = row.Text("DesArt");
    values.unit = UnitOf(session, row.Text("UniMis"));
    values.quantity = NumberOf(row, "Qta");
    values.delivered = NumberOf(row, "QtaEva");
    values.price = NumberOf(row, "Prezzo");
    values.discounts = {NumberOf(row, "Sconto1"), NumberOf(row, "Sconto2"), 0};
    values.vatCode = VatCodeOf(session, "Iva", "CodIva", GetCodIvaTessera(session, row, "IdIva"));
    values.state = RowState(values.quantity, values.delivered);
    return values;
}

RowOutcome Orders::Row(const SourceRow& row, qint64* id) {
    return m_documents.Row(
        row.Text("AnnOrd") + '/' + row.Text("NumOrd"), [&] { return HeadOf(row); }, [&] { return RowOf(row); },
        [&row](TargetRow& target) { target.Set("DRCOR", DateOf(row, "DatCons")); }, id);
}

// --- Production orders --------------------------------------------------------------------------------------------

/// The rows that an earlier import wrote for an owner: rewritten one after the other, the rest is deleted.
class Rewriter {
public:
    Rewriter(ImportRun& run, const QString& table, const QString& condition)
        : m_run(run),
          m_table(table) {
        Recordset rows =
            run.GetSession().Quadrix.ExecuteWC("SELECT RECORD_ID FROM " + run.FullName(table) + " WHERE " + condition +
                                               " AND USINS = " + run.Quoted("SYSTEM_IMPORT") + " ORDER BY RECORD_ID");
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
        const qint64 id = m_known.takeFirst();
        row.Update("WHERE " + Equals("RECORD_ID", id));
        return id;
    }
    QList<qint64> Rest() const { return m_known; }

private:
    ImportRun& m_run;
    QString m_table;
    QList<qint64> m_known;
};

void Delete(ImportRun& run, const QString& table, const QString& condition) {
    run.GetSession().Quadrix.Execute("DELETE " + run.FullName(table) + " WHERE " + condition);
}

/// Rows of a production order: where they are read and where they go.
struct Children {
    QString source;
    QString number; ///< column of the source that orders them
    QString target;
    QString owner; ///< column of the target that holds the order's RECORD_ID
};

void WriteChildren(ImportRun& run, const SourceRow& order, qint64 id, const Children& of,
                   const std::function<void(const SourceRow&, TargetRow&)>& fill) {
    Session& session = run.GetSession();
    Rewriter known(run, of.target, Equals(of.owner, id));
    ForEachChild(session,
                 "SELECT * FROM " + of.source + " WHERE IdOrdPro = " +
                     LiteralOf(session.SourceConnection(), order.Value("IdOrdPro")) + " ORDER BY " + of.number,
                 of.source, of.number, [&](const SourceRow& row) {
                     TargetRow target(run, of.target);
                     target.Set(of.owner, id);
                     fill(row, target);
                     known.Write(target);
                 });
    for (const qint64 rest : known.Rest()) {
        Delete(run, of.target, Equals("RECORD_ID", rest));
    }
}

void WriteParts(ImportRun& run, const SourceRow& order, qint64 id) {
    WriteChildren(run, order, id, {OrdProR, "NumRig", "ORD_COM", "IDORD"},
                  [&run](const SourceRow& row, TargetRow& target) {
                      target.Set("OCART", ArticleOf(run, row.Text("CodArt")));
                      target.Set("OCDES", row.Text("DesArt"));
                      target.Set("OCQTA", NumberOf(row, "Qta"));
                      target.Set("OCUMP", UnitOf(run.GetSession(), row.Text("UniMis")));
                      target.Set("OCPOS", NumberOf(row, "NumRig"));
                      target.Set("OCSEQ", NumberOf(row, "NumFas"));
                  });
}

void WriteSteps(ImportRun& run, const SourceRow& order, qint64 id) {
    WriteChildren(run, order, id, {OrdProF, "NumFas", "ORD_FAS", "IDOPR"},
                  [&run](const SourceRow& row, TargetRow& target) {
                      target.Set("FLSEQ", NumberOf(row, "NumFas"));
                      target.Set("FLLAV", WorkOf(run.GetSession(), row.Text("CodLav")));
                      target.Set("FLQTA", NumberOf(row, "Qta"));
                      target.Set("FLQTM", NumberOf(row, "QtaFat"));
                      target.Set("FLSTA", row.Text("Stato"));
                  });
}

/// The production orders of a row of a customer order.
void WriteProduction(ImportRun& run, const SourceRow& orderRow, qint64 documentRow) {
    Session& session = run.GetSession();
    Rewriter known(run, "ORD_PRO",
                   Equals("OPIDD", documentRow) + " AND " +
                       Equals(session, "OPTPD", schema::defaults::OrderOfDocument));
    ForEachChild(session,
                 "SELECT * FROM OrdProT P WHERE P.IdOrdCliR = " +
                     LiteralOf(session.SourceConnection(), orderRow.Value("IdOrdCliR")) + " ORDER BY P.NumOrdP",
                 OrdProT, "NumOrdP", [&](const SourceRow& row) {
                     TargetRow target(run, "ORD_PRO");
                     target.Set("OPDAT", DateOf(row, "DatOrdP"));
                     target.Set("OPDTC", DateOf(row, "DatCons"));
                     target.Set("OPQTA", NumberOf(row, "Qta"));
                     target.Set("OPSTA", row.Text("Stato"));
                     target.Set("OPTPD", schema::defaults::OrderOfDocument);
                     target.Set("OPIDD", documentRow);
                     const qint64 id = known.Write(target);
                     WriteParts(run, row, id);
                     WriteSteps(run, row, id);
                 });
    for (const qint64 rest : known.Rest()) {
        Delete(run, "ORD_COM", Equals("IDORD", rest));
        Delete(run, "ORD_FAS", Equals("IDOPR", rest));
        Delete(run, "ORD_PRO", Equals("RECORD_ID", rest));
    }
}

/// The triggers of the production orders, off from here: those of phases and orders until `SwitchPhasesOn`, those of
/// the components to the end of the run, so that they are written without them.
class OrderTriggersOff {
public:
    explicit OrderTriggersOff(ImportRun& run)
        : m_run(run) {
        try {
            for (const char* table : {"ORD_COM", "ORD_FAS", "ORD_PRO"}) {
                m_off.append(table);
                Database().AlterTriggersStatus(m_run.FullName(table), false);
            }
        } catch (...) {
            SwitchOn();
            throw;
        }
    }
    ~OrderTriggersOff() { SwitchOn(); }
    OrderTriggersOff(const OrderTriggersOff&) = delete;
    OrderTriggersOff& operator=(const OrderTriggersOff&) = delete;

    void SwitchPhasesOn() {
        while (m_off.size() > 1) {
            Database().AlterTriggersStatus(m_run.FullName(m_off.at(1)), true);
            m_off.removeAt(1);
        }
    }

private:
    ovConnection& Database() { return m_run.GetSession().Quadrix; }
    void SwitchOn() noexcept {
        for (const QString& table : std::as_const(m_off)) {
            m_run.SwitchTriggersOn(table);
        }
    }

    ImportRun& m_run;
    QStringList m_off; ///< bare names
};

void RemoveImportedOrders(ImportRun& run, bool reset) {
    RemoveImportedDocuments(run, reset, {Customers().cause});
    for (const QString& table : {QStringLiteral("ORD_COM"), QStringLiteral("ORD_FAS"), QStringLiteral("ORD_PRO")}) {
        if (reset) {
            run.Delete(run.FullName(table),
                       "DELETE " + run.FullName(table) + " WHERE USINS = " + run.Quoted("SYSTEM_IMPORT"));
        }
    }
}

QString SingleNumber(const ImportRun& run, const QString& singleCode) {
    return singleCode.isEmpty() ? QString() : QString("\rAND T.NumOrd = " + run.Quoted(singleCode));
}

} // namespace

const Needs& OrdCliNeeds() {
    static const Needs needs = [] {
        Needs all{{}, SourceNeeds(Customers()), DocumentNeeds(Sales)};
        all.reads.push_back({OrdProT, {"IdOrdPro", "IdOrdCliR", "NumOrdP", "DatOrdP", "DatCons", "Qta", "Stato"}});
        all.reads.push_back({OrdProR, {"IdOrdPro", "NumRig", "CodArt", "DesArt", "Qta", "UniMis", "NumFas"}});
        all.reads.push_back({OrdProF, {"IdOrdPro", "NumFas", "CodLav", "Qta", "QtaFat", "Stato"}});
        all.writes.push_back({"DOC_VEN", {"DTRIC", "DTRID", "DTNOT", "DTMOP"}});
        all.writes.push_back({"DOC_VER", {"DRCOR"}});
        all.writes.push_back({"ORD_PRO", {"OPDAT", "OPDTC", "OPQTA", "OPSTA", "OPTPD", "OPIDD"}});
        all.writes.push_back({"ORD_COM", {"IDORD", "OCART", "OCDES", "OCQTA", "OCUMP", "OCPOS", "OCSEQ"}});
        all.writes.push_back({"ORD_FAS", {"IDOPR", "FLSEQ", "FLLAV", "FLQTA", "FLQTM", "FLSTA"}});
        return all;
    }();
    return needs;
}

void ImportOrdCliTessera(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportOrdCliTessera", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione Ordini Clienti da Tessera");
        run.Preflight(OrdCliNeeds());
        const OpenDocument::Options options{ReadDocumentSettings(session).checkArticles, false};
        const TriggersOff documentTriggers(run);
        OrderTriggersOff orderTriggers(run);
        RemoveImportedOrders(run, reset);
        orderTriggers.SwitchPhasesOn();
        TellLeftOut(run, Customers());
        Orders orders(run, Customers(), options);
        const QString where = "T.DatOrd >= " + LiteralOf(session.SourceConnection(), OldestOrder) +
                              " AND T.StatOrd IN (0, 1, 4)" + SingleNumber(run, singleCode);
        const bool toTheEnd = run.Rows(
            LoopOf(Customers(), "Ordini Clienti", where),
            [&](const SourceRow& row) {
                qint64 id = 0;
                const RowOutcome outcome = orders.Row(row, &id);
                if (id != 0) {
                    WriteProduction(run, row, id);
                }
                return outcome;
            },
            [&] { orders.End(); });
        if (toTheEnd) {
            orders.TellLeft(OldestOrder);
            run.Complete(QStringLiteral("Ordini Clienti Tessera importati correttamente: %1").arg(orders.Count()));
        }
    });
}

const Needs& DocAcqNeeds() {
    static const Needs needs = [] {
        Needs all{{}, SourceNeeds(Suppliers()), DocumentNeeds(Purchases)};
        all.writes.push_back({"DOC_ACQ", {"DTRIC", "DTRID", "DTNOT", "DTMOP"}});
        all.writes.push_back({"DOC_ACR", {"DRCOR"}});
        return all;
    }();
    return needs;
}

void ImportDocAcqTessera(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportDocAcqTessera", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione Documenti di Acquisto da Tessera");
        run.Preflight(DocAcqNeeds());
        const QDate from = AskStartDate(run);
        const OpenDocument::Options options{ReadDocumentSettings(session).checkArticles, AskSkipImported(run)};
        const TriggersOff triggers(run);
        RemoveImportedDocuments(run, reset, {Suppliers().cause});
        TellLeftOut(run, Suppliers());
        Orders orders(run, Suppliers(), options);
        const QString where =
            "T.DatOrd >= " + LiteralOf(session.SourceConnection(), from) + SingleNumber(run, singleCode);
        const bool toTheEnd = run.Rows(
            LoopOf(Suppliers(), "Documenti di Acquisto", where), [&](const SourceRow& row) { return orders.Row(row); },
            [&] { orders.End(); });
        if (toTheEnd) {
            orders.TellLeft(from);
            run.Complete(
                QStringLiteral("Documenti di Acquisto Tessera importati correttamente: %1").arg(orders.Count()));
        }
    });
}

} // namespace modImport_Tessera
