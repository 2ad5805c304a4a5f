// Documents of Gescom, to look at: RIEMOV holds a row for each document row, MOVMAG its work phase.

#include "adapters/origins/Gescom/modImport_Gescom.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Document.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;

namespace modImport_Gescom {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Riemov = QStringLiteral("RIEMOV");
const QString Movmag = QStringLiteral("MOVMAG");

/// The VAT code of every row: what was delivered is there to be looked at, not to be invoiced again.
const QString VatCode = QStringLiteral("22");
/// Kind of a document whose cause CAU_DOC lacks.
const QString DeliveryNote = QStringLiteral("DDT");

/// What a movement kind becomes.
struct Kind {
    const char* movement;
    const char* cause;
    const Family& family;
};

const std::array<Kind, 4> Kinds{{
    {"BV", "DTGES", Sales},
    {"97", "DAGES", Purchases},
    {"LE", "RSGES", WorkAccount},
    {"LEB", "RSGES", WorkAccount},
}};

QStringList Causes() {
    QStringList causes;
    for (const Kind& kind : Kinds) {
        causes.append(QString::fromLatin1(kind.cause));
    }
    causes.removeDuplicates();
    return causes;
}

/// The kind of a movement; null for one that is not imported.
const Kind* KindOf(const QString& movement) {
    const auto found = std::find_if(Kinds.begin(), Kinds.end(), [&](const Kind& kind) {
        return movement.compare(QLatin1String(kind.movement), Qt::CaseInsensitive) == 0;
    });
    return found == Kinds.end() ? nullptr : &*found;
}

// --- Documents ----------------------------------------------------------------------------------------------------

/// A document under way.
struct Document {
    qint64 id = 0;
    DocumentHead head = {};
    bool wasThere = false; ///< an earlier import, or a hand, has written it
    qint64 rows = 0;
    QSet<qint64> rewritten = {}; ///< of its rows, when it was there
};

/// Writes the documents. Rows of one number come together; they may belong to several documents, as every family and
/// every year counts from one.
class Importer {
public:
    explicit Importer(ImportRun& run)
        : m_run(run) {}

    RowOutcome Row(const SourceRow& row);
    /// Ends the documents of a number: their totals follow from their rows.
    void EndNumber();
    int Count() const { return m_count; }
    void TellLeft(const QDate& from) const {
        for (const DocumentWriter& writer : m_writers) {
            writer.TellDocumentsLeft(Causes(), from);
        }
    }

private:
    DocumentWriter& WriterOf(const Family& family) { return m_writers[static_cast<size_t>(family.number)]; }
    Document Begin(const SourceRow& row, const Kind& kind);
    DocumentHead HeadOf(const SourceRow& row, const Kind& kind);
    RowOutcome WriteRow(const SourceRow& row, const Kind& kind, Document& document);
    void SetPhase(const SourceRow& row, TargetRow& target);

    ImportRun& m_run;
    std::array<DocumentWriter, 3> m_writers{DocumentWriter(m_run, Sales), DocumentWriter(m_run, Purchases),
                                            DocumentWriter(m_run, WorkAccount)};
    QString m_number;
    QMap<QPair<int, int>, Document> m_documents; ///< of the number, by family and year
    int m_count = 0;
};

int YearOf(const SourceRow& row) {
    const int year = static_cast<int>(NumberOf(row, "ESRIEMOV"));
    if (year <= 0) {
        throw ImportError(QStringLiteral("colonna 'ESRIEMOV': '%1' non è un anno").arg(row.Text("ESRIEMOV")));
    }
    return year;
}

RowOutcome Importer::Row(const SourceRow& row) {
    const Kind* kind = KindOf(row.Text("CSRIEMOV"));
    if (kind == nullptr) {
        return m_run.Skip("genere di movimento che non si importa");
    }
    if (m_number != row.Text("RDRIEMOV")) {
        m_run.Restores(m_number);
        m_run.Restores(m_documents);
        m_number = row.Text("RDRIEMOV");
        m_documents.clear();
    }
    const QPair<int, int> key{kind->family.number, YearOf(row)};
    // A row that fails leaves nothing behind, here as in the tables.
    Document document = m_documents.contains(key) ? m_documents.value(key) : Begin(row, *kind);
    const RowOutcome outcome = WriteRow(row, *kind, document);
    ++document.rows;
    m_run.Restores(m_documents);
    m_documents.insert(key, document);
    return outcome;
}

void Importer::EndNumber() {
    for (auto document = m_documents.cbegin(); document != m_documents.cend(); ++document) {
        const DocumentWriter& writer = m_writers[static_cast<size_t>(document.key().first)];
        if (document->wasThere) {
            writer.TellRowsLeft(document->id, document->rows);
        }
        writer.Total(document->id);
    }
    m_run.Restores(m_count);
    m_run.Restores(m_documents);
    m_count += static_cast<int>(m_documents.size());
    m_documents.clear();
}

DocumentHead Importer::HeadOf(const SourceRow& row, const Kind& kind) {
    Session& session = m_run.GetSession();
    const QString code = row.Text("CLRIEMOV");
    QString name;
    {
        const Recordset found =
            session.SourceConnection().ExecuteWC("SELECT * FROM ARCLFR\rWHERE CODCLFOR = " + m_run.Quoted(code) +
                                                 "\r  AND FLAGCLFR = " + m_run.Quoted(row.Text("FLRIEMOV")));
        if (found.Eof()) {
            throw ImportError(
                QStringLiteral("colonne 'CLRIEMOV', 'FLRIEMOV': ARCLFR non ha la controparte '%1' di tipo '%2'")
                    .arg(code, row.Text("FLRIEMOV")));
        }
        name = SourceRow(found).Text("RAGCLFOR");
    }
    // Customers and suppliers of one number are two counterparties.
    const bool supplier = row.Text("FLRIEMOV").compare(u"F", Qt::CaseInsensitive) == 0;
    const QString counterparty = LookUp(session, "CON_TRO", supplier ? "COFGE" : "COCGE", code, "CDCON");
    if (counterparty.isEmpty()) {
        throw ImportError(QStringLiteral("colonna 'CLRIEMOV': nessuna controparte ha il codice %1 '%2'")
                              .arg(supplier ? QStringLiteral("fornitore") : QStringLiteral("cliente"), code));
    }
    return {WriterOf(kind.family).CauseOf(QString::fromLatin1(kind.cause), DeliveryNote),
            schema::defaults::NoSeries,
            row.Text("RDRIEMOV"),
            DateOf(row, "DTRIEMOV"),
            YearOf(row),
            counterparty,
            name,
            schema::defaults::Delivered};
}

Document Importer::Begin(const SourceRow& row, const Kind& kind) {
    DocumentWriter& writer = WriterOf(kind.family);
    Document document;
    document.head = HeadOf(row, kind);
    document.id = writer.Find(document.head.number, document.head.cause.code, document.head.year);
    document.wasThere = document.id != 0;
    TargetRow target = writer.Head(document.head);
    if (document.wasThere) {
        writer.Update(target, document.id);
    } else {
        document.id = writer.Insert(target);
    }
    return document;
}

RowOutcome Importer::WriteRow(const SourceRow& row, const Kind& kind, Document& document) {
    DocumentRow values;
    values.number = static_cast<int>(NumberOf(row, "RGRIEMOV"));
    values.type = schema::defaults::NormalRow;
    values.article = ArticleOf(m_run, row.Text("CDRIEMOV"));
    values.quantity = NumberOf(row, "QSRIEMOV");
    values.quantity2 = NumberOf(row, "QTRIEMOV");
    values.delivered = values.quantity;
    values.price = NumberOf(row, "IRRIEMOV");
    values.vatCode = VatCode;
    values.state = schema::defaults::Delivered;
    const DocumentWriter& writer = WriterOf(kind.family);
    TargetRow target = writer.Row(document.id, document.head, values);
    SetPhase(row, target);
    const qint64 known = document.wasThere ? writer.FindRow(document.id, values.number, document.rewritten) : 0;
    if (known == 0) {
        target.Insert();
        return RowOutcome::Inserted;
    }
    target.Update("WHERE " + Equals("RECORD_ID", known));
    document.rewritten.insert(known);
    return RowOutcome::Updated;
}

/// The work phase that the movement of the row names, with the work centre that it is done at.
void Importer::SetPhase(const SourceRow& row, TargetRow& target) {
    Session& session = m_run.GetSession();
    const QString article = m_run.Quoted(row.Text("CDRIEMOV"));
    QString phase;
    {
        const Recordset movement = session.SourceConnection().ExecuteWC(
            "SELECT FSMOVMAG FROM MOVMAG WHERE NDMOVMAG = " + m_run.Quoted(row.Text("RDRIEMOV")) +
            "   AND ARMOVMAG = " + article);
        phase = movement.Eof() ? QString() : SourceRow(movement).Text("FSMOVMAG");
    }
    if (phase.isEmpty()) {
        return;
    }
    const QString known = modImport::GetNewCode(session, Arcfas, "CODFASEL", phase, false);
    const QString work = known.isEmpty() ? phase : known;
    if (!IsThere(session, "LAV_ORA", "CDLAV", work)) {
        m_run.Log(QStringLiteral("LAVORAZIONE NON TROVATA: %1: '%2' manca in LAV_ORA").arg(m_run.RowKey(), work));
        return;
    }
    target.Set("DRLAV", work);
    target.Set("DRLDS", LookUp(session, "LAV_ORA", "CDLAV", work, "LVDES"));
    const Recordset sequence = session.SourceConnection().ExecuteWC(
        "SELECT SQARCFAS FROM arcfas WHERE ARARCFAS = " + article + " AND CODFASEL = " + m_run.Quoted(phase));
    if (!sequence.Eof()) {
        target.Set("DRSEQ", NumberOf(SourceRow(sequence), "SQARCFAS"));
    }
}

/// The totals need the rate of the rows' VAT code: without it every document would be given up.
void RequireVatCode(Session& session) {
    if (!IsThere(session, "TAB_IVA", "CDIVA", VatCode)) {
        throw ImportError(
            QStringLiteral("Non è stato scritto nulla: in TAB_IVA manca il codice IVA '%1', che hanno le righe "
                           "dei documenti; inserirlo con la sua aliquota e ripetere")
                .arg(VatCode));
    }
}

} // namespace

const Needs& DocumentiNeeds() {
    static const Needs needs = [] {
        Needs all{{},
                  {{Riemov,
                    {"RDRIEMOV", "CSRIEMOV", "DTRIEMOV", "ESRIEMOV", "CLRIEMOV", "FLRIEMOV", "RGRIEMOV", "CDRIEMOV",
                     "QSRIEMOV", "QTRIEMOV", "IRRIEMOV"}},
                   {Arclfr, {"CODCLFOR", "FLAGCLFR", "RAGCLFOR"}},
                   {Movmag, {"FSMOVMAG", "NDMOVMAG", "ARMOVMAG"}},
                   {Arcfas, {"CODFASEL", "ARARCFAS", "SQARCFAS"}}},
                  {}};
        for (const Family* family : {&Sales, &Purchases, &WorkAccount}) {
            const std::vector<TableNeed> writes = DocumentNeeds(*family);
            all.writes.insert(all.writes.end(), writes.begin(), writes.end());
            all.writes.push_back({family->row, {"DRLAV", "DRLDS", "DRSEQ"}});
        }
        return all;
    }();
    return needs;
}

void ImportDocumentiGescom(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportDocumentiGescom", singleCode);
    run.LogErrorsAs("Errore durante importazione Documenti : ");
    run.Guard([&] {
        run.Announce("Inizio Importazione Documenti da Gescom");
        run.Preflight(DocumentiNeeds());
        RequireVatCode(session);
        const QDate from(ReadDocumentSettings(session).from.year(), 1, 1);
        const TriggersOff triggers(run);
        RemoveImportedDocuments(run, reset);
        const QString where = "WHERE DTRIEMOV >= " + LiteralOf(session.SourceConnection(), from) +
                              (singleCode.isEmpty() ? QString() : QString(" AND RDRIEMOV = " + run.Quoted(singleCode)));
        Importer importer(run);
        const ImportRun::Loop loop{"Documenti",
                                   Riemov,
                                   "RDRIEMOV, RGRIEMOV",
                                   "SELECT COUNT(*) FROM RIEMOV " + where,
                                   "SELECT * FROM RIEMOV " + where + " ORDER BY RDRIEMOV, ESRIEMOV, CSRIEMOV, RGRIEMOV",
                                   {"RDRIEMOV"}};
        const bool toTheEnd = run.Rows(
            loop, [&](const SourceRow& row) { return importer.Row(row); }, [&] { importer.EndNumber(); });
        if (toTheEnd) {
            importer.TellLeft(from);
            run.Complete("Documenti Gescom importati correttamente: " + QString::number(importer.Count()));
        }
    });
}

} // namespace modImport_Gescom
