// WinProgest: sales documents and orders to suppliers. Each kind has a head and a row table, joined by number and day
// of the document. The head tables are known from installations; the row tables, TESTORF and all columns are this
// system's own reading.

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Document.h"
#include "adapters/origins/WinProgest/modImport_WinProgest.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;
using namespace schema::defaults;

namespace modImport_WinProgest {

// --- Source tables ------------------------------------------------------------------------------------------------

const DocumentKind& Of(Kind kind) {
    static const Link offer{Kind::Offers, "NUMOFF", "DATOFF", "RIGOFF"};
    static const Link order{Kind::Orders, "NUMIMP", "DATIMP", "RIGIMP"};
    static const Link deliveryNote{Kind::DeliveryNotes, "NUMBO", "DATBO", "RIGBO"};
    static const std::array<DocumentKind, 6> kinds{{
        {"Offerte", "TESTOFF", "CORPOFF", Sales, "OFFWP", "OFF", true, {}},
        {"Ordini", "TESTIMP", "CORPIMP", Sales, "ORDWP", "ORD", true, {offer}},
        {"DDT", "TESTBO", "CORPBO", Sales, "DDTWP", "DDT", false, {order}},
        {"Fatture", "TESTFT", "CORPFT", Sales, "FATWP", "FAT", false, {deliveryNote, order}},
        {"Fatture Pro Forma", "TESTFP", "CORPFP", Sales, "PROWP", "FAT", false, {order}},
        {"Ordini a Fornitore", "TESTORF", "CORPORF", Purchases, "ORFWP", "ORD", true, {}},
    }};
    return kinds[static_cast<size_t>(kind)];
}

namespace {

/// The list of SYS_IMP that the payment terms of all kinds are translated by.
const QString Testate = QStringLiteral("TESTATE");

constexpr std::array AllKinds{Kind::Offers,   Kind::Orders,   Kind::DeliveryNotes,
                              Kind::Invoices, Kind::ProForma, Kind::SupplierOrders};

// --- Mappings -----------------------------------------------------------------------------------------------------

/// What a head has beyond number, day, counterparty and state.
Mapping MakeHeadMapping(const DocumentKind& kind) {
    return {kind.family.head,
            kind.head,
            {
                {"DTMOP", "CODPAG", Translated(Testate, "CODPAG")},
                {"DTRIC", "RIFCLI", Text()},
                {"DTRID", "DATRIF", NotBlank(AsRead())},
                {"DTPOR", "PORTO", Text()},
                {"DTSCO", "SCOCAS", RoundedTo(2)},
                {"DTNOT", "NOTE", Text()},
            }};
}

/// What a row has beyond article, quantities and prices.
Mapping MakeRowMapping(const DocumentKind& kind) {
    return {kind.family.row, kind.rows, {{"DRCOR", "DATCON", NotBlank(AsRead())}}};
}

struct KindMappings {
    Mapping head;
    Mapping row;
};

const KindMappings& MappingsOf(Kind kind) {
    static const std::vector<KindMappings> mappings = [] {
        std::vector<KindMappings> all;
        all.reserve(AllKinds.size());
        for (const Kind each : AllKinds) {
            all.push_back({MakeHeadMapping(Of(each)), MakeRowMapping(Of(each))});
        }
        return all;
    }();
    return mappings[static_cast<size_t>(kind)];
}

// --- Documents ----------------------------------------------------------------------------------------------------

/// What holds for every document of a run.
struct Answers {
    DocumentSettings settings;
    bool skipImported = false;
};

/// The rows of a document that are written.
struct Written {
    int rows = 0;
    int goods = 0; ///< those that are more than a text
    int delivered = 0;
    QSet<qint64> rewritten = {}; ///< RECORD_IDs of those that were there

    bool IsDelivered() const { return goods > 0 && delivered == goods; }
};

/// Imports the documents of one kind.
class KindImport {
public:
    KindImport(ImportRun& run, Kind kind, const Answers& answers)
        : m_run(run),
          m_kind(Of(kind)),
          m_mappings(MappingsOf(kind)),
          m_answers(answers),
          m_writer(run, m_kind.family) {}

    /// @return false when the operator cancelled
    bool Run(const QString& singleCode);

private:
    RowOutcome Import(const SourceRow& row);
    DocumentHead HeadOf(const SourceRow& row);
    qint64 FindHead(const DocumentHead& head) const;
    qint64 WriteHead(const SourceRow& row, const DocumentHead& head, qint64 known);
    void WriteRow(const SourceRow& row, qint64 id, const DocumentHead& head, bool again, Written& written) const;
    DocumentRow RowOf(const SourceRow& row) const;
    QString StateOf(const DocumentRow& row) const;
    QString VatOf(const SourceRow& row, const QString& article) const;
    QString UnitOf(const SourceRow& row) const;
    QString SourceLiteral(const QVariant& value) const {
        return LiteralOf(m_run.GetSession().SourceConnection(), value);
    }
    void FindTwins(const QString& where);
    void TellWithoutDay() const;

    ImportRun& m_run;
    const DocumentKind& m_kind;
    const KindMappings& m_mappings;
    const Answers& m_answers;
    DocumentWriter m_writer;
    QSet<QString> m_twins; ///< number and day that more than one head has
};

QString TwinKey(const QVariant& number, const QVariant& day) {
    return mod_ovTools::ToText(number) + u'|' + mod_ovTools::ToText(day);
}

bool KindImport::Run(const QString& singleCode) {
    QString where = "\rWHERE DATDOC >= " + SourceLiteral(m_answers.settings.from);
    if (!singleCode.isEmpty()) {
        where += " AND NUMDOC = " + m_run.Quoted(singleCode);
    }
    FindTwins(where);
    TellWithoutDay();
    const bool toTheEnd = m_run.Rows({m_kind.name, m_kind.head, "NUMDOC", "SELECT COUNT(*) FROM " + m_kind.head + where,
                                      "SELECT * FROM " + m_kind.head + where + "\rORDER BY DATDOC, NUMDOC"},
                                     [this](const SourceRow& row) { return Import(row); });
    if (toTheEnd) {
        m_writer.TellDocumentsLeft({m_kind.cause}, m_answers.settings.from);
    }
    return toTheEnd;
}

/// Two heads of the same number and day share their rows: nobody can tell whose they are.
void KindImport::FindTwins(const QString& where) {
    Recordset rows = m_run.GetSession().SourceConnection().ExecuteWC(
        "SELECT NUMDOC, DATDOC FROM " + m_kind.head + where + "\rGROUP BY NUMDOC, DATDOC\rHAVING COUNT(*) > 1");
    for (; !rows.Eof(); rows.MoveNext()) {
        m_twins.insert(TwinKey(rows.Value("NUMDOC"), rows.Value("DATDOC")));
    }
}

/// The start date leaves them behind, and nobody would know.
void KindImport::TellWithoutDay() const {
    const qint64 count = m_run.GetSession().SourceConnection().ExecuteCommand("SELECT COUNT(*) FROM " + m_kind.head +
                                                                              " WHERE DATDOC IS NULL");
    if (count > 0) {
        m_run.Log(QStringLiteral("DOCUMENTI SENZA DATA: tabella '%1', %2 non importati").arg(m_kind.head).arg(count));
    }
}

RowOutcome KindImport::Import(const SourceRow& row) {
    if (m_twins.contains(TwinKey(row.Value("NUMDOC"), row.Value("DATDOC")))) {
        throw ImportError(
            QStringLiteral("colonne 'NUMDOC', 'DATDOC': più testate hanno il numero '%1' del %2, le righe non "
                           "si possono distinguere")
                .arg(row.Text("NUMDOC"), row.Text("DATDOC")));
    }
    const DocumentHead head = HeadOf(row);
    const qint64 known = FindHead(head);
    m_writer.Saw(known);
    if (known != 0 && m_answers.skipImported) {
        return m_run.Skip(AlreadyImported);
    }
    const qint64 id = WriteHead(row, head, known);
    Written written;
    ForEachChild(m_run.GetSession(),
                 "SELECT * FROM " + m_kind.rows + "\rWHERE NUMDOC = " + SourceLiteral(row.Value("NUMDOC")) +
                     " AND DATDOC = " + SourceLiteral(row.Value("DATDOC")) + "\rORDER BY NRIGA",
                 m_kind.rows, "NRIGA", [&](const SourceRow& child) { WriteRow(child, id, head, known != 0, written); });
    if (m_kind.open && written.IsDelivered()) {
        TargetRow state(m_run, m_kind.family.head);
        state.Set("DTSTA", Delivered);
        m_writer.Update(state, id);
    }
    if (known != 0) {
        m_writer.TellRowsLeft(id, written.rows);
    }
    m_writer.Total(id);
    return known != 0 ? RowOutcome::Updated : RowOutcome::Inserted;
}

DocumentHead KindImport::HeadOf(const SourceRow& row) {
    const QVariant day = DateOf(row, "DATDOC");
    if (NumberOf(row, "NUMDOC") <= 0) {
        throw ImportError(
            QStringLiteral("colonna 'NUMDOC': '%1' non è il numero di un documento").arg(row.Text("NUMDOC")));
    }
    DocumentHead head;
    head.cause = m_writer.CauseOf(m_kind.cause, m_kind.type);
    head.series = NoSeries;
    head.number = row.Text("NUMDOC");
    head.day = day;
    head.year = day.toDate().year();
    head.state = m_kind.open ? ToDeliver : Delivered;
    try {
        head.counterparty =
            RequireCounterparty(m_run.GetSession(), row.Text(m_kind.Counterparty()), m_kind.IsSupplier());
    } catch (ImportError& error) {
        error.AddContext(QStringLiteral("colonna '%1'").arg(m_kind.Counterparty()));
        throw;
    }
    head.name = row.IsBlank("RAGSOC") ? LookUp(m_run.GetSession(), "CON_TRO", "CDCON", head.counterparty, "CORAS")
                                      : row.Text("RAGSOC");
    return head;
}

/// WinProgest counts some documents more than once in a year: the day tells them apart.
qint64 KindImport::FindHead(const DocumentHead& head) const {
    Session& session = m_run.GetSession();
    return IdWhere(
        session, m_kind.family.head,
        Equals(session, "DTNUM", head.number) + " AND " + Equals(session, "DTCAU", head.cause.code) +
            " AND DTDAT = " + mod_ovTools::FormatSqlValue(head.day, DataType::DateTime, session.Quadrix.ProviderType));
}

qint64 KindImport::WriteHead(const SourceRow& row, const DocumentHead& head, qint64 known) {
    TargetRow target = m_writer.Head(head);
    m_mappings.head.Apply(target, m_run.GetSession(), row, {});
    if (known == 0) {
        return m_writer.Insert(target);
    }
    m_writer.Update(target, known);
    return known;
}

/// @param again the document was imported before: its row of that number is rewritten, as others may be linked to it
void KindImport::WriteRow(const SourceRow& row, qint64 id, const DocumentHead& head, bool again,
                          Written& written) const {
    Session& session = m_run.GetSession();
    const DocumentRow values = RowOf(row);
    const bool missing = !values.article.isEmpty() && !IsThere(session, "ART_ICO", "CDART", values.article);
    if (missing && m_answers.settings.checkArticles) {
        m_run.Log(QStringLiteral("RIGA SALTATA: %1, %2: l'articolo '%3' non c'è")
                      .arg(m_run.RowKey(), NameOf(row, m_kind.rows, "NRIGA"), values.article));
        return;
    }
    if (values.type != DescriptionRow) {
        ++written.goods;
        written.delivered += values.state == Delivered ? 1 : 0;
    }
    ++written.rows;
    TargetRow target = m_writer.Row(id, head, values);
    m_mappings.row.Apply(target, session, row, {});
    const qint64 known = again ? m_writer.FindRow(id, values.number, written.rewritten) : 0;
    if (known != 0) {
        written.rewritten.insert(known);
        target.Update("WHERE " + Equals("RECORD_ID", known));
    } else {
        target.Insert();
    }
}

DocumentRow KindImport::RowOf(const SourceRow& row) const {
    DocumentRow values;
    values.number = static_cast<int>(NumberOf(row, "NRIGA"));
    values.type = row.Text("TIPRIG").toUpper() == DescriptionRow ? DescriptionRow : NormalRow;
    values.article =
        row.IsBlank("CODART") ? QString() : ArticleWriter(m_run).CodeOf(Articoli, "CODART", row.Text("CODART"));
    values.description = row.Text("DESCR");
    values.unit = UnitOf(row);
    values.quantity = NumberOf(row, "QTA");
    values.delivered = m_kind.open ? NumberOf(row, "QTAEVA") : values.quantity;
    values.price = NumberOf(row, "PREZZO");
    values.discounts = {NumberOf(row, "SCO1"), NumberOf(row, "SCO2"), NumberOf(row, "SCO3")};
    values.vatCode = values.type == DescriptionRow ? QString() : VatOf(row, values.article);
    values.state = StateOf(values);
    return values;
}

QString KindImport::StateOf(const DocumentRow& row) const {
    if (!m_kind.open || (row.delivered > 0 && row.delivered >= row.quantity)) {
        return Delivered;
    }
    return row.delivered > 0 ? PartlyDelivered : ToDeliver;
}

/// A row without a VAT code has that of its article. A code that Quadrix does not know would leave the tax short.
QString KindImport::VatOf(const SourceRow& row, const QString& article) const {
    Session& session = m_run.GetSession();
    if (row.IsBlank("IVA")) {
        const QString own = LookUp(session, "ART_ICO", "CDART", article, "ARIVA");
        return own.isEmpty() ? schema::defaults::VatCode : own;
    }
    return VatCodeOf(session, Articoli, "IVA", row.Text("IVA"));
}

/// Empty for a blank one: the row takes that of its article.
QString KindImport::UnitOf(const SourceRow& row) const {
    const QString unit = row.Text("UM");
    const QString code = modImport::GetNewCode(m_run.GetSession(), Articoli, "UM", unit, true);
    return code.isEmpty() ? unit.toUpper() : code;
}

} // namespace

const Needs& DocumentiNeeds() {
    static const Needs needs = [] {
        Needs all;
        for (const Kind kind : AllKinds) {
            all.mappings.push_back(&MappingsOf(kind).head);
            all.mappings.push_back(&MappingsOf(kind).row);
            all.reads.push_back({Of(kind).head, {"NUMDOC", "DATDOC", Of(kind).Counterparty(), "RAGSOC"}});
            all.reads.push_back({Of(kind).rows,
                                 {"NUMDOC", "DATDOC", "NRIGA", "TIPRIG", "CODART", "DESCR", "UM", "QTA", "QTAEVA",
                                  "PREZZO", "SCO1", "SCO2", "SCO3", "IVA"}});
        }
        for (const Family& family : {Sales, Purchases}) {
            const std::vector<TableNeed> writes = DocumentNeeds(family);
            all.writes.insert(all.writes.end(), writes.begin(), writes.end());
        }
        all.writes.push_back(CounterpartyNeed());
        return all;
    }();
    return needs;
}

void ImportDocumentiWinProgest(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportDocumentiWinProgest", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione Documenti da WinProgest");
        run.Preflight(DocumentiNeeds());
        Answers answers{ReadDocumentSettings(session)};
        answers.skipImported = AskSkipImported(run);
        const TriggersOff triggers(run);
        Empty(run, reset, DocumentEmptying());
        const bool toTheEnd = std::all_of(AllKinds.begin(), AllKinds.end(),
                                          [&](Kind kind) { return KindImport(run, kind, answers).Run(singleCode); });
        if (toTheEnd) {
            run.Complete("Documenti importati correttamente!");
        }
    });
}

} // namespace modImport_WinProgest
