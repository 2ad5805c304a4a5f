// Purchase documents of Lantek 24: SSHH_PPOO holds heads and rows of the orders to suppliers. The production orders
// follow them.

#include "adapters/origins/Lantek24/modImport_Lantek24.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Document.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

#include <cmath>

using namespace contract;
using namespace contract::rules;

namespace modImport_Lantek24 {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Orders = QStringLiteral("SSHH_PPOO_00000100");
const QString OrderRows = QStringLiteral("SSHH_PPOO_00000200");
/// How SYS_IMP names the codes of orders.
const QString OrderCodes = QStringLiteral("SSHH_PPOO");
/// The cause of an order to a supplier, and its type when CAU_DOC lacks it.
const QString OrderCause = QStringLiteral("ORDFL");
const QString OrderType = QStringLiteral("ORD");
/// Delivery state of a row that has been received.
const QString Received = QStringLiteral("20");

// --- Mappings -----------------------------------------------------------------------------------------------------

Rule DayOrNull() {
    return {"com'è letto; Null se è vuoto o 1 gennaio 1900",
            [](const RuleInput& input) { return RuleValue(DayOf(input.row, input.columns.first())); }};
}

const Mapping& Testata() {
    static const Mapping mapping{
        "DOC_ACQ",
        Orders,
        {
            {"DTMOP", "PymName", TranslatedOrKnown(OrderCodes, "PymName", "TAB_MOP")},
            {"DTVAL", "CurName", Currency(OrderCodes, "CurName")},
            {"DTRIC", "OrdRef", Text()},
            {"DTCOR", "DDate", DayOrNull()},
            {"DTSCO", "DDisc", RoundedTo(2)},
            {"DTNOT", "Descrip", Text()},
        },
    };
    return mapping;
}

// --- Documents ----------------------------------------------------------------------------------------------------

QString NumberOfOrder(const SourceRow& row) {
    QString digits = row.Text("OrdRef");
    digits.removeIf([](QChar character) { return !character.isDigit(); });
    bool isNumber = false;
    const qint64 number = digits.toLongLong(&isNumber);
    if (!isNumber) {
        throw ImportError(QStringLiteral("colonna 'OrdRef': '%1' non ha un numero").arg(row.Text("OrdRef")));
    }
    return QString::number(number);
}

QString StateOfRow(const SourceRow& row) {
    using namespace schema::defaults;
    if (row.Text("DlvStatus") == Received) {
        return Delivered;
    }
    return NumberOf(row, "RcvdQuantity") > 0 ? PartlyDelivered : ToDeliver;
}

/// A document under way.
struct Document {
    qint64 id = 0;
    DocumentHead head = {};
    bool wasThere = false;       ///< an earlier import has written it
    qint64 rows = 0;             ///< written by this run
    QSet<qint64> rewritten = {}; ///< of its rows, when it was there
};

class DocumentImporter {
public:
    explicit DocumentImporter(ImportRun& run)
        : m_run(run),
          m_settings(ReadDocumentSettings(run.GetSession())) {}

    RowOutcome Head(const SourceRow& row);
    const DocumentSettings& Settings() const { return m_settings; }
    int Count() const { return m_count; }
    void TellLeft() const { m_writer.TellDocumentsLeft({OrderCause}, m_settings.from); }

private:
    DocumentHead HeadOf(const SourceRow& row);
    QString StateOf(const SourceRow& row);
    void WriteRow(const SourceRow& row, Document& document);
    void SetSheet(const SourceRow& row, TargetRow& target);
    void CheckTotal(const SourceRow& row, const Document& document);

    ImportRun& m_run;
    DocumentSettings m_settings;
    DocumentWriter m_writer{m_run, Purchases};
    int m_count = 0;
};

/// An order is closed when every row of it has been received.
QString DocumentImporter::StateOf(const SourceRow& row) {
    const qint64 open = m_run.GetSession().SourceConnection().ExecuteCommand(
        "SELECT COUNT(*) FROM " + OrderRows + "\rWHERE OrdRef = " + m_run.Quoted(row.Text("OrdRef")) +
        " AND DlvStatus <> " + Received);
    return open > 0 ? schema::defaults::ToDeliver : schema::defaults::Closed;
}

DocumentHead DocumentImporter::HeadOf(const SourceRow& row) {
    const QString supplier = row.Text("SuppRef");
    const QString counterparty = LookUp(m_run.GetSession(), "CON_TRO", "COFGE", supplier, "CDCON");
    if (counterparty.isEmpty()) {
        throw ImportError(
            QStringLiteral("colonna 'SuppRef': nessuna controparte ha il codice fornitore '%1'").arg(supplier));
    }
    const QVariant day = DayOf(row, "CDate");
    return {m_writer.CauseOf(OrderCause, OrderType),
            schema::defaults::NoSeries,
            NumberOfOrder(row),
            day,
            day.toDate().year(),
            counterparty,
            row.Text("SuppName"),
            StateOf(row)};
}

RowOutcome DocumentImporter::Head(const SourceRow& row) {
    Session& session = m_run.GetSession();
    Document document;
    document.head = HeadOf(row);
    document.id = m_writer.Find(document.head.number, OrderCause, document.head.year,
                                Equals(session, "DTRIC", row.Text("OrdRef")));
    document.wasThere = document.id != 0;
    TargetRow target = m_writer.Head(document.head);
    Testata().Apply(target, session, row, {});
    if (document.wasThere) {
        m_writer.Update(target, document.id);
    } else {
        document.id = m_writer.Insert(target);
    }
    ForEachChild(session,
                 "SELECT * FROM " + OrderRows + "\rWHERE OrdRef = " + m_run.Quoted(row.Text("OrdRef")) +
                     "\rORDER BY LineNum",
                 OrderRows, "LineNum", [&](const SourceRow& each) { WriteRow(each, document); });
    if (document.wasThere) {
        m_writer.TellRowsLeft(document.id, document.rows);
    }
    m_writer.Total(document.id);
    CheckTotal(row, document);
    m_run.Restores(m_count);
    ++m_count;
    return document.wasThere ? RowOutcome::Updated : RowOutcome::Inserted;
}

void DocumentImporter::WriteRow(const SourceRow& row, Document& document) {
    Session& session = m_run.GetSession();
    DocumentRow values;
    values.article = row.IsBlank("PrdRef") ? QString() : ArticleOf(m_run, row.Text("PrdRef"));
    const bool there = IsThere(session, "ART_ICO", "CDART", values.article);
    if (m_settings.checkArticles && !values.article.isEmpty() && !there) {
        m_run.Log(QStringLiteral("ARTICOLO NON TROVATO: %1, LineNum '%2': '%3'")
                      .arg(m_run.RowKey(), row.Text("LineNum"), values.article));
        return;
    }
    values.number = static_cast<int>(NumberOf(row, "LineNum"));
    values.type = values.article.isEmpty() ? schema::defaults::DescriptionRow : schema::defaults::NormalRow;
    values.description = row.Text("PrdName");
    values.unit = UnitOf(session, row.Text("QUANUntName"));
    values.quantity = NumberOf(row, "Quantity");
    values.quantity2 = NumberOf(row, "TotalUnits");
    values.delivered = NumberOf(row, "RcvdQuantity");
    values.price = NumberOf(row, "UPrice");
    values.discounts = {NumberOf(row, "Disc"), 0, 0};
    values.vatCode =
        values.article.isEmpty() ? QString() : VatCodeOf(session, OrderCodes, "TaxRef", row.Text("TaxRef"));
    values.state = StateOfRow(row);
    TargetRow target = m_writer.Row(document.id, document.head, values);
    target.Set("DRUM2", UnitOf(session, row.Text("UntName")));
    target.Set("DRTOT", NumberOf(row, "TPrice"));
    target.Set("DRTTA", NumberOf(row, "TPrice"));
    target.Set("DRNOT", row.Text("Descrip"));
    SetSheet(row, target);
    m_writer.PutRow(target, document.id, values.number, document.wasThere, document.rewritten);
    ++document.rows;
    if (there && !row.IsBlank("SPrdRef")) {
        ArticleWriter(m_run).CodeAtCounterparty(values.article, row.Text("SPrdRef"), document.head.counterparty);
    }
}

/// The measures of a sheet stand with its product.
void DocumentImporter::SetSheet(const SourceRow& row, TargetRow& target) {
    const Recordset found = m_run.GetSession().SourceConnection().ExecuteWC(
        "SELECT * FROM " + Products + "\rWHERE PrdRef = " + m_run.Quoted(row.Text("PrdRef")) +
        " AND DIS_PClass = " + SheetClass);
    if (!found.Eof()) {
        const SourceRow product(found);
        target.Set("DRLAM", true);
        target.Set("DRLMX", NumberOf(product, "DIS_Length"));
        target.Set("DRLMY", NumberOf(product, "DIS_Width"));
    }
}

/// The total of the source is there to be compared with.
void DocumentImporter::CheckTotal(const SourceRow& row, const Document& document) {
    const Recordset found = m_run.GetSession().Quadrix.ExecuteWC("SELECT DTTOT FROM " + m_run.FullName("DOC_ACQ") +
                                                                 " WHERE " + Equals("RECORD_ID", document.id));
    const double here = found.Eof() ? 0 : NumberOf(SourceRow(found), "DTTOT");
    const double there = NumberOf(row, "TotalA");
    constexpr double cent = 0.01;
    if (there != 0 && std::abs(here - there) > cent) {
        m_run.Log(QStringLiteral("TOTALE DIVERSO: %1: qui %2, nell'origine %3")
                      .arg(m_run.RowKey(), QString::number(here, 'f', 2), QString::number(there, 'f', 2)));
    }
}

} // namespace

const Needs& DocumentiNeeds() {
    static const Needs needs = [] {
        Needs all{{&Testata()},
                  {{Orders, {"OrdRef", "RQPrice", "CDate", "SuppRef", "SuppName", "TotalA"}},
                   {OrderRows,
                    {"OrdRef", "LineNum", "PrdRef", "PrdName", "Descrip", "Quantity", "QUANUntName", "TotalUnits",
                     "UntName", "UPrice", "Disc", "TPrice", "TaxRef", "RcvdQuantity", "DlvStatus", "SPrdRef"}},
                   {Products, {"DIS_PClass", "DIS_Length", "DIS_Width"}}},
                  DocumentNeeds(Purchases)};
        all.writes.push_back({"DOC_ACR", {"DRNOT", "DRLAM", "DRLMX", "DRLMY"}});
        all.writes.push_back({"ART_COD", {"CDART", "CDCOD", "COTIP", "COTPC", "COCON"}});
        for (const Needs* more : {&CamBillNeeds(), &OrdiniNeeds()}) {
            all.reads.insert(all.reads.end(), more->reads.begin(), more->reads.end());
            all.writes.insert(all.writes.end(), more->writes.begin(), more->writes.end());
        }
        return all;
    }();
    return needs;
}

/// With the production orders.
Emptying DocumentiEmptying() {
    return DocumentEmptying() + DeletedImports("ORD_PRO") + DeletedOrphans({"ORD_FAS"}, "IDOPR", "ORD_PRO");
}

void ImportDocumentiLantek24(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportDocumentiLantek24", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione Documenti da Lantek 24");
        run.Preflight(DocumentiNeeds());
        DocumentImporter importer(run);
        const TriggersOff triggers(run);
        Empty(run, reset, DocumentiEmptying());
        const QString from = " FROM " + Orders + "\rWHERE RQPrice = 0 AND CDate >= " +
                             LiteralOf(session.SourceConnection(), importer.Settings().from) +
                             run.OnlyCode("\rAND", "OrdRef", singleCode);
        bool toTheEnd = run.Rows(
            {"Documenti", Orders, "OrdRef", "SELECT COUNT(*)" + from, "SELECT *" + from + "\rORDER BY CDate, OrdRef"},
            [&](const SourceRow& row) { return importer.Head(row); });
        if (toTheEnd) {
            importer.TellLeft();
        }
        if (toTheEnd && !run.IsSingle()) {
            toTheEnd = ImportOrdiniProduzione(run);
        }
        if (toTheEnd) {
            run.Complete("Documenti Lantek 24 importati correttamente: " + QString::number(importer.Count()));
        }
    });
}

} // namespace modImport_Lantek24
