// Documents of Arca Evolution: DOTes holds the heads, DORig the rows, DOTotali the totals, DO the kinds of document.

#include "adapters/origins/ArcaEvolution/modImport_ArcaEvolution.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Document.h"
#include "core/modImport.h"
#include "core/modMain.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_ArcaEvolution {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Testate = QStringLiteral("DOTes");
const QString Righe = QStringLiteral("DORig");
const QString Totali = QStringLiteral("DOTotali");

// --- Mappings -----------------------------------------------------------------------------------------------------

/// A rate of zero is none: the document is in euro.
Rule ExchangeRate() {
    return {"com'è, 1 se è zero o vuoto", [](const RuleInput& input) {
                const double rate = NumberOf(input.row, input.columns.first());
                return RuleValue(rate == 0 ? schema::defaults::ExchangeRate : rate);
            }};
}

/// What the columns of a head tell, beyond what tells documents apart.
const Mapping& Testata() {
    static const Mapping mapping{
        "DOC_VEN",
        Testate,
        {
            {"DTMOP", "Cd_PG", TranslatedOrKnown(Cf, "Cd_PG", "TAB_MOP")},
            {"DTVAL", "Cd_VL", Currency(Cf, "Cd_VL")},
            {"DTCMB", "Cambio", ExchangeRate()},
            {"DTRIC", "NumeroDocRif", Text()},
            {"DTRID", "DataDocRif", AsRead()},
            {"DTCOR", "DataConsegna", AsRead()},
            {"DTCOC", "DataConsegna", AsRead()},
            {"DTPOR", "Cd_DOPorto", Translated(Cf, "Cd_DOPorto")},
            {"DTSCO", "ScontoCassa", RoundedTo(2)},
            {"DTNOT", "NotePiede", Text()},
        },
    };
    return mapping;
}

// --- Kinds --------------------------------------------------------------------------------------------------------

/// The document type of a kind of document; empty for one that is not imported: returns, reports, pro-forma invoices,
/// production, transfers and inventories.
QString TypeOf(const SourceRow& row) {
    static const QHash<QString, QString> types{{"P", "OFF"}, {"O", "ORD"}, {"B", "DDT"}, {"F", "FAT"},
                                               {"A", "FAT"}, {"N", "NDC"}, {"L", "ORD"}};
    return types.value(row.Text("TipoDocumento").toUpper());
}

const Family& FamilyOf(const SourceRow& row) {
    const QString side = row.Text("CliFor").toUpper();
    if (row.Text("TipoDocumento").compare(u"L", Qt::CaseInsensitive) == 0) {
        return WorkAccount;
    }
    if (side != "C" && side != "F") {
        throw ImportError(QStringLiteral("colonna 'CliFor': '%1' non è C (cliente) né F (fornitore)").arg(side));
    }
    return side == "C" ? Sales : Purchases;
}

/// The number of a document: its digits, and behind the "/" its series.
struct DocumentNumber {
    QString digits;
    QString series;
};

DocumentNumber NumberIn(const SourceRow& row) {
    const QString text = row.Text("NumeroDoc");
    QString digits = text.section(u'/', 0, 0);
    digits.removeIf([](QChar character) { return !character.isDigit(); });
    bool isNumber = false;
    const qint64 number = digits.toLongLong(&isNumber);
    if (!isNumber) {
        throw ImportError(QStringLiteral("colonna 'NumeroDoc': '%1' non ha un numero").arg(text));
    }
    return {QString::number(number), text.section(u'/', 1).trimmed()};
}

/// The accounting year, that of the date when the source has none.
int YearOf(const SourceRow& row) {
    return row.IsBlank("EsAnno") ? DateOf(row, "DataDoc").toDate().year() : static_cast<int>(NumberOf(row, "EsAnno"));
}

QString StateOfRow(const SourceRow& row) {
    if (mod_ovTools::ToBoolean(row.Value("Evasa"))) {
        return schema::defaults::Delivered;
    }
    return NumberOf(row, "QtaEvasa") > 0 ? schema::defaults::PartlyDelivered : schema::defaults::ToDeliver;
}

/// Rows that only refer to another document, and rows without an article, are texts.
bool IsText(const SourceRow& row) {
    return row.IsBlank("Cd_AR") || row.Text("TipoRigaRif").compare(u"R", Qt::CaseInsensitive) == 0;
}

// --- Documents ----------------------------------------------------------------------------------------------------

/// A document under way.
struct Document {
    qint64 id = 0;
    DocumentHead head = {};
    const Family* family = nullptr;
    bool wasThere = false;       ///< an earlier import, or a hand, has written it
    QSet<qint64> rewritten = {}; ///< of its rows, when it was there
    qint64 rows = 0;             ///< written by this run
    double gifts = 0;            ///< amount of the rows that are given away
};

/// A row whose origin row has not been there yet.
struct OpenLink {
    const Family* family;
    qint64 row;
    qint64 origin; ///< Id_DORig
};

class Importer {
public:
    explicit Importer(ImportRun& run)
        : m_run(run),
          m_settings(ReadDocumentSettings(run.GetSession())) {}

    RowOutcome Head(const SourceRow& row);
    /// Links the rows whose origin came behind them, and tells how many have none.
    void LinkRest();
    const DocumentSettings& Settings() const { return m_settings; }
    int Count() const { return m_count; }
    void TellLeft() const {
        const QStringList causes = Causes();
        for (const DocumentWriter& writer : m_writers) {
            writer.TellDocumentsLeft(causes, m_settings.from);
        }
    }

private:
    QStringList Causes() const;
    DocumentWriter& WriterOf(const Family& family) { return m_writers[static_cast<size_t>(family.number)]; }
    Cause CauseOf(const Family& family, const QString& code, const QString& type);
    qint64 Find(const Family& family, const SourceRow& head, const QString& cause, const QString& ownSeries);
    DocumentHead HeadOf(const SourceRow& row, const Family& family, const Cause& cause);
    QString StateOf(const SourceRow& row);
    void SetDestination(const SourceRow& row, const Document& document, TargetRow& target);
    void WriteRow(const SourceRow& row, Document& document);
    void SetRow(const SourceRow& row, const Document& document, TargetRow& target);
    qint64 OriginRow(const Family& family, qint64 sourceRow);
    void SetTotals(const SourceRow& row, const Document& document);

    ImportRun& m_run;
    DocumentSettings m_settings;
    std::array<DocumentWriter, 3> m_writers{DocumentWriter(m_run, Sales), DocumentWriter(m_run, Purchases),
                                            DocumentWriter(m_run, WorkAccount)};
    std::vector<OpenLink> m_openLinks;
    int m_count = 0;
};

/// What the kinds of document have become, whether this run has met them or not.
QStringList Importer::Causes() const {
    const Session& session = m_run.GetSession();
    Recordset rows = m_run.GetSession().Quadrix.ExecuteWC(
        "SELECT DISTINCT TBNEW FROM SYS_IMP WHERE " + Equals(session, "TBNAM", "DO") + " AND " +
        Equals(session, "TBFLD", "Cd_DO") + " AND TBNEW > '' ORDER BY TBNEW");
    QStringList causes;
    for (; !rows.Eof(); rows.MoveNext()) {
        causes.append(mod_ovTools::ToText(rows.Fields(0).Value()).trimmed());
    }
    return causes;
}

/// The cause, with the document type of its own when it has one.
Cause Importer::CauseOf(const Family& family, const QString& code, const QString& type) {
    Cause cause = WriterOf(family).CauseOf(code, type);
    if (!cause.kind.isEmpty()) {
        cause.type = cause.kind;
    }
    return cause;
}

/// The head of that number, year, cause and series; 0 when there is none.
qint64 Importer::Find(const Family& family, const SourceRow& head, const QString& cause, const QString& ownSeries) {
    const DocumentNumber number = NumberIn(head);
    return WriterOf(family).Find(
        number.digits, cause, YearOf(head),
        Equals(m_run.GetSession(), "COALESCE(DTSER, '')", number.series.isEmpty() ? ownSeries : number.series));
}

/// A draft is still to be delivered, as is a document with a row that is not delivered.
QString Importer::StateOf(const SourceRow& row) {
    const qint64 open = m_run.GetSession().SourceConnection().ExecuteCommand(
        "SELECT COUNT(*) FROM DORig\rWHERE Id_DOTes = " +
        LiteralOf(m_run.GetSession().SourceConnection(), row.Value("Id_DOTes")) + " AND COALESCE(Evasa, 0) = 0");
    const bool draft = !mod_ovTools::ToBoolean(row.Value("Esecutivo"));
    return draft || open > 0 ? schema::defaults::ToDeliver : schema::defaults::Closed;
}

DocumentHead Importer::HeadOf(const SourceRow& row, const Family& family, const Cause& cause) {
    Session& session = m_run.GetSession();
    const QString code = row.Text("Cd_CF");
    const bool customer = code.startsWith(u'C', Qt::CaseInsensitive);
    const QString counterparty = LookUp(session, "CON_TRO", customer ? "COCGE" : "COFGE", code, "CDCON");
    if (counterparty.isEmpty()) {
        throw ImportError(
            QStringLiteral("colonna 'Cd_CF': nessuna controparte di %1 ha il codice '%2'").arg(family.head, code));
    }
    const QString name = LookUp(session, "CON_TRO", "CDCON", counterparty, "CORAS") + ' ' +
                         LookUp(session, "CON_TRO", "CDCON", counterparty, "CORA2");
    const DocumentNumber number = NumberIn(row);
    return {cause,          number.series.isEmpty() ? cause.series : number.series,
            number.digits,  DateOf(row, "DataDoc"),
            YearOf(row),    counterparty,
            name.trimmed(), StateOf(row)};
}

/// The destination of the source in place of the counterparty's address.
void Importer::SetDestination(const SourceRow& row, const Document& document, TargetRow& target) {
    const QString destination = row.Text("Cd_CFDest");
    if (destination.isEmpty()) {
        return;
    }
    Session& session = m_run.GetSession();
    const Recordset found = session.Quadrix.ExecuteWC(
        "SELECT * FROM " + m_run.FullName("CON_SED") + "\rWHERE " +
        Equals(session, "CDCON", document.head.counterparty) + " AND SETIP = 'CO' AND " +
        Equals(session, "CDSED", Digits(3).apply({session, row, {"Cd_CFDest"}, {}})->toString()));
    if (found.Eof()) {
        m_run.Log(QStringLiteral("SEDE NON TROVATA: %1: '%2'").arg(m_run.RowKey(), destination));
        return;
    }
    const SourceRow branch(found);
    target.Set("DTRSS", branch.Text("SERAS"));
    target.Set("DTVIA", branch.Text("SEIND"));
    target.Set("DTCAP", branch.Text("SECAP"));
    target.Set("DTCIT", branch.Text("SECIT"));
    target.Set("DTPRO", branch.Text("SEPRO"));
}

RowOutcome Importer::Head(const SourceRow& row) {
    Session& session = m_run.GetSession();
    const QString type = TypeOf(row);
    if (type.isEmpty()) {
        return m_run.Skip("tipo di documento che non si importa");
    }
    const QString causeCode = modImport::GetNewCode(session, "DO", "Cd_DO", row.Text("Cd_DO"), true);
    if (causeCode.isEmpty()) {
        m_run.Log(QStringLiteral("CAUSALE NON TRADOTTA: %1: '%2'").arg(m_run.RowKey(), row.Text("Cd_DO")));
        return m_run.Skip("causale non tradotta");
    }
    Document document;
    document.family = &FamilyOf(row);
    const Cause cause = CauseOf(*document.family, causeCode, type);
    document.head = HeadOf(row, *document.family, cause);
    document.id = Find(*document.family, row, causeCode, cause.series);
    document.wasThere = document.id != 0;
    DocumentWriter& writer = WriterOf(*document.family);
    TargetRow target = writer.Head(document.head);
    Testata().Apply(target, session, row, {});
    SetDestination(row, document, target);
    if (document.wasThere) {
        writer.Update(target, document.id);
    } else {
        document.id = writer.Insert(target);
    }
    ForEachChild(session,
                 "SELECT * FROM DORig\rWHERE Id_DOTes = " +
                     LiteralOf(session.SourceConnection(), row.Value("Id_DOTes")) + "\rORDER BY Riga",
                 Righe, "Riga", [&](const SourceRow& each) { WriteRow(each, document); });
    SetTotals(row, document);
    m_run.Restores(m_count);
    ++m_count;
    return document.wasThere ? RowOutcome::Updated : RowOutcome::Inserted;
}

/// What a row has beyond what the writer sets.
void Importer::SetRow(const SourceRow& row, const Document& document, TargetRow& target) {
    Session& session = m_run.GetSession();
    if (!row.IsBlank("QtaEvadibile")) {
        target.Set("DRQTD", NumberOf(row, "QtaEvadibile"));
    }
    target.Set("DRTOT", NumberOf(row, "PrezzoTotaleV"));
    target.Set("DRTTA", NumberOf(row, "PrezzoTotaleV"));
    target.Set("DRCON", DateOf(row, "DataConsegna"));
    target.Set("DRCOR", DateOf(row, "DataConsegna"));
    target.Set("DRNOT", row.Text("NoteRiga"));
    // What is sold leaves a warehouse, what is bought arrives in one.
    const QString warehouse = TranslatedCode(
        session, "MG", "Cd_MG", row.Text(document.family->number == Sales.number ? "Cd_MG_P" : "Cd_MG_A"), "MAG_AZZ");
    if (!warehouse.isEmpty()) {
        target.Set("DRMAG", warehouse);
    }
}

void Importer::WriteRow(const SourceRow& row, Document& document) {
    Session& session = m_run.GetSession();
    if (row.Text("TipoPC").compare(u"C", Qt::CaseInsensitive) == 0) {
        return; // the parts of an article whose own row stands above
    }
    DocumentRow values;
    values.article = row.IsBlank("Cd_AR") ? QString() : ArticleWriter(m_run).CodeOf(Ar, "Cd_AR", row.Text("Cd_AR"));
    if (m_settings.checkArticles && !values.article.isEmpty() &&
        !IsThere(session, "ART_ICO", "CDART", values.article)) {
        m_run.Log(QStringLiteral("ARTICOLO NON TROVATO: %1, Riga '%2': '%3'")
                      .arg(m_run.RowKey(), row.Text("Riga"), values.article));
        return;
    }
    const bool text = IsText(row);
    values.number = static_cast<int>(NumberOf(row, "Riga"));
    values.type = text ? schema::defaults::DescriptionRow : schema::defaults::NormalRow;
    values.description = row.Text("Descrizione");
    const QString unit = row.Text("Cd_ARMisura");
    const QString known = modImport::GetNewCode(session, Ar, "Cd_ARMisura", unit, true);
    values.unit = known.isEmpty() ? unit.toUpper() : known;
    values.quantity = NumberOf(row, "Qta");
    values.quantity2 =
        contract::RoundedTo(values.quantity * (row.IsBlank("FattoreToUM1") ? 1 : NumberOf(row, "FattoreToUM1")), 6);
    values.delivered = NumberOf(row, "QtaEvasa");
    values.price = NumberOf(row, "PrezzoUnitarioV");
    values.discounts = DiscountsOf(row, "ScontoRiga");
    values.vatCode = text ? QString() : VatCodeOf(session, Righe, "Cd_Aliquota", row.Text("Cd_Aliquota"));
    values.state = StateOfRow(row);
    const DocumentWriter& writer = WriterOf(*document.family);
    TargetRow target = writer.Row(document.id, document.head, values);
    SetRow(row, document, target);
    constexpr double noGift = 1;
    document.gifts += NumberOf(row, "Omaggio") > noGift ? NumberOf(row, "PrezzoTotaleV") : 0;
    const auto origin = static_cast<qint64>(NumberOf(row, "Id_DORig_Evade"));
    const qint64 originRow = origin == 0 ? 0 : OriginRow(*document.family, origin);
    if (originRow != 0) {
        target.Set("DRORI", originRow);
    }
    qint64 id = document.wasThere ? writer.FindRow(document.id, values.number, document.rewritten) : 0;
    if (id != 0) {
        target.Update("WHERE " + Equals("RECORD_ID", id));
        document.rewritten.insert(id);
    } else {
        target.Insert();
        id = m_run.LastId(document.family->row);
    }
    ++document.rows;
    if (origin != 0 && originRow == 0) {
        m_openLinks.push_back({document.family, id, origin});
        m_run.WhenTakenBack([this] { m_openLinks.pop_back(); });
    }
}

/// The Quadrix row of a row of the source; 0 when it is not there.
qint64 Importer::OriginRow(const Family& family, qint64 sourceRow) {
    Session& session = m_run.GetSession();
    const Recordset found = session.SourceConnection().ExecuteWC(
        QStringLiteral("SELECT T.NumeroDoc, T.EsAnno, T.DataDoc, T.Cd_DO, T.TipoDocumento, R.Riga FROM DORig R\r"
                       "JOIN DOTes T ON T.Id_DOTes = R.Id_DOTes\rWHERE R.Id_DORig = %1")
            .arg(sourceRow));
    if (found.Eof()) {
        return 0;
    }
    const SourceRow row(found);
    const QString cause = modImport::GetNewCode(session, "DO", "Cd_DO", row.Text("Cd_DO"), false);
    if (cause.isEmpty()) {
        return 0;
    }
    const qint64 head = Find(family, row, cause, CauseOf(family, cause, TypeOf(row)).series);
    return head == 0 ? 0 : WriterOf(family).FindRow(head, static_cast<int>(NumberOf(row, "Riga")));
}

void Importer::LinkRest() {
    int missing = 0;
    for (const OpenLink& link : m_openLinks) {
        const qint64 origin = OriginRow(*link.family, link.origin);
        if (origin == 0) {
            ++missing;
            continue;
        }
        TargetRow target(m_run, link.family->row);
        target.Set("DRORI", origin);
        target.Update("WHERE " + Equals("RECORD_ID", link.row));
    }
    if (missing > 0) {
        m_run.Log(QStringLiteral("Righe la cui riga d'origine non è tra i documenti importati: %1").arg(missing));
    }
}

/// Totals follow from the rows; those of the source stand in their place where it has them, as they are on the paper,
/// unless rows that it has no more still stand in the document.
void Importer::SetTotals(const SourceRow& row, const Document& document) {
    Session& session = m_run.GetSession();
    DocumentWriter& writer = WriterOf(*document.family);
    const qint64 left = document.wasThere ? writer.TellRowsLeft(document.id, document.rows) : 0;
    writer.Total(document.id);
    const Recordset found = session.SourceConnection().ExecuteWC(
        "SELECT * FROM DOTotali\rWHERE Id_DOTes = " + LiteralOf(session.SourceConnection(), row.Value("Id_DOTes")));
    TargetRow target(m_run, document.family->head);
    target.Set("DTOMA", document.gifts);
    if (left == 0 && !found.Eof()) {
        const SourceRow totals(found);
        target.Set("DTIMP", NumberOf(totals, "TotImponibileV"));
        target.Set("DTIVA", NumberOf(totals, "TotImpostaV"));
        target.Set("DTTOT", NumberOf(totals, "TotDocumentoV"));
    }
    target.Update("WHERE " + Equals("RECORD_ID", document.id));
}

/// The causes whose documents a reset removes, of the setting DOC_Truncate; none for all.
QStringList CausesToRemove(Session& session) {
    QString causes = modMain::GetAppConfig(session, "IMPORT", "DOC_Truncate", "");
    return causes.replace(u';', u',').remove(u' ').split(u',', Qt::SkipEmptyParts);
}

} // namespace

const Needs& DocumentiNeeds() {
    static const Needs needs = [] {
        Needs all{{&Testata()},
                  {{Testate,
                    {"Id_DOTes", "Cd_DO", "CliFor", "TipoDocumento", "NumeroDoc", "DataDoc", "EsAnno", "Cd_CF",
                     "Cd_CFDest", "Esecutivo"}},
                   {"DO", {"Cd_DO"}},
                   {Righe,
                    {"Id_DORig",      "Id_DOTes",   "Riga",         "TipoRigaRif",    "Cd_AR",        "Descrizione",
                     "Cd_ARMisura",   "Qta",        "FattoreToUM1", "QtaEvasa",       "QtaEvadibile", "PrezzoUnitarioV",
                     "PrezzoTotaleV", "ScontoRiga", "Omaggio",      "Cd_Aliquota",    "DataConsegna", "NoteRiga",
                     "Evasa",         "Cd_MG_P",    "Cd_MG_A",      "Id_DORig_Evade", "TipoPC"}},
                   {Totali, {"Id_DOTes", "TotImponibileV", "TotImpostaV", "TotDocumentoV"}}},
                  {}};
        for (const Family* family : {&Sales, &Purchases, &WorkAccount}) {
            const std::vector<TableNeed> writes = DocumentNeeds(*family);
            all.writes.insert(all.writes.end(), writes.begin(), writes.end());
            all.writes.push_back({family->head, {"DTMOP", "DTRIC", "DTRID", "DTCOR", "DTCOC", "DTPOR", "DTOMA"}});
            all.writes.push_back({family->row, {"DRORI", "DRCON", "DRCOR", "DRNOT"}});
        }
        return all;
    }();
    return needs;
}

void ImportDocumentiArcaEvolution(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportDocumentiArcaEvolution", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione Documenti da Arca Evolution");
        run.Preflight(DocumentiNeeds());
        Importer importer(run);
        const TriggersOff triggers(run);
        Empty(run, reset, DocumentEmptying(CausesToRemove(session)));
        const QString from =
            " FROM DOTes T\rJOIN DO D ON D.Cd_DO = T.Cd_DO\rWHERE T.DataDoc >= " +
            LiteralOf(session.SourceConnection(), importer.Settings().from) +
            (singleCode.isEmpty() ? QString() : QString(" AND T.NumeroDoc = " + run.Quoted(singleCode)));
        const bool toTheEnd = run.Rows({"Documenti", Testate, "Id_DOTes, NumeroDoc", "SELECT COUNT(*)" + from,
                                        "SELECT T.*" + from + "\rORDER BY T.Id_DOTes"},
                                       [&](const SourceRow& row) { return importer.Head(row); });
        if (toTheEnd) {
            importer.LinkRest();
            importer.TellLeft();
            run.Complete("Documenti Arca Evolution importati correttamente: " + QString::number(importer.Count()));
        }
    });
}

} // namespace modImport_ArcaEvolution
