// Documents of Arca Evolution: DOTes holds the heads, DORig the rows, DOTotali the totals, DO the kinds of document.

#include "adapters/origins/ArcaEvolution/modImport_ArcaEvolution.h"

#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
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

/// Of documents to subcontractors, whoever they stand with.
const QString WorkMark = QStringLiteral("L");

/// The kinds of document and what they become. Returns, reports, pro-forma invoices, production, transfers and
/// inventories are not imported.
std::vector<DocumentKind> Kinds() {
    std::vector<DocumentKind> kinds{{.marks = {WorkMark}, .type = "ORD", .family = WorkAccount}};
    for (const auto& [mark, type] : {std::pair("P", "OFF"), std::pair("O", "ORD"), std::pair("B", "DDT"),
                                     std::pair("F", "FAT"), std::pair("A", "FAT"), std::pair("N", "NDC")}) {
        kinds.push_back({.marks = {QString(mark) + 'C'}, .type = type, .family = Sales});
        kinds.push_back({.marks = {QString(mark) + 'F'}, .type = type, .family = Purchases});
    }
    return kinds;
}

// --- Mappings -----------------------------------------------------------------------------------------------------

/// Kind and side of a document.
QString MarkOf(const SourceRow& row) {
    static const QString sides = QStringLiteral("CF");
    const QString kind = row.Text("TipoDocumento").toUpper();
    if (kind == WorkMark || !QStringLiteral("POBFAN").contains(kind)) {
        return kind;
    }
    const QString side = row.Text("CliFor").toUpper();
    if (side.size() != 1 || !sides.contains(side)) {
        throw ImportError(QStringLiteral("'%1' non è C (cliente) né F (fornitore)").arg(side));
    }
    return kind + side;
}

/// The family of a document that is imported.
const Family& FamilyOf(const SourceRow& row) {
    const QString mark = MarkOf(row);
    return mark == WorkMark ? WorkAccount : mark.endsWith(u'C') ? Sales : Purchases;
}

Rule Mark() {
    return {"il genere e il lato, \"C\" o \"F\"", [](const RuleInput& input) { return RuleValue(MarkOf(input.row)); }};
}

Rule SeriesOfNumber() {
    return {"ciò che segue la barra",
            [](const RuleInput& input) { return RuleValue(input.Text().section(u'/', 1).trimmed()); }};
}

Rule NumberBeforeSlash() {
    return {"le sole cifre prima della barra, come numero intero", [](const RuleInput& input) -> RuleValue {
                const QString text = input.Text();
                return DigitsAsNumber().apply(
                    {input.session, input.row, input.columns, input.facts, text.section(u'/', 0, 0)});
            }};
}

/// The accounting year, that of the date when the source has none.
int YearOf(const SourceRow& row) {
    return row.IsBlank("EsAnno") ? DateOf(row, "DataDoc").toDate().year() : static_cast<int>(NumberOf(row, "EsAnno"));
}

Rule Year() {
    return {"l'esercizio; vuoto: l'anno della data",
            [](const RuleInput& input) { return RuleValue(YearOf(input.row)); }};
}

QString PartyOf(Session& session, const QString& code) {
    const bool isCustomer = code.startsWith(u'C', Qt::CaseInsensitive);
    return LookUp(session, "CON_TRO", isCustomer ? "COCGE" : "COFGE", code, "CDCON");
}

Rule Party() {
    return {"CDCON della riga di CON_TRO di cui è COCGE se comincia per C, altrimenti COFGE",
            [](const RuleInput& input) -> RuleValue {
                const QString party = modImport_ArcaEvolution::PartyOf(input.session, input.Text());
                if (party.isEmpty()) {
                    throw ImportError(QStringLiteral("nessuna controparte ha il codice '%1'").arg(input.Text()));
                }
                return party;
            }};
}

Rule WholeName() {
    return {"CORAS e CORA2 della controparte", [](const RuleInput& input) -> RuleValue {
                const QString party = modImport_ArcaEvolution::PartyOf(input.session, input.Text());
                return QString(LookUp(input.session, "CON_TRO", "CDCON", party, "CORAS") + u' ' +
                               LookUp(input.session, "CON_TRO", "CDCON", party, "CORA2"));
            }};
}

/// A draft is still to be delivered, as is a document with a row that is not delivered.
Rule State() {
    return {"da consegnare finché è una bozza o ha una riga non evasa; altrimenti chiuso",
            [](const RuleInput& input) -> RuleValue {
                const ovConnection& source = input.session.SourceConnection();
                const qint64 open = input.session.SourceConnection().ExecuteCommand(
                    "SELECT COUNT(*) FROM DORig\rWHERE Id_DOTes = " + LiteralOf(source, input.row.Value("Id_DOTes")) +
                    " AND COALESCE(Evasa, 0) = 0");
                const bool draft = !mod_ovTools::ToBoolean(input.row.Value("Esecutivo"));
                return draft || open > 0 ? schema::defaults::ToDeliver : schema::defaults::Closed;
            },
            Side::Both,
            {{Righe, {"Id_DOTes", "Evasa"}}}};
}

/// A rate of zero is none: the document is in euro.
Rule ExchangeRate() {
    return {"com'è, 1 se è zero o vuoto", [](const RuleInput& input) {
                const double rate = NumberOf(input.row, input.columns.first());
                return RuleValue(rate == 0 ? schema::defaults::ExchangeRate : rate);
            }};
}

/// Rows that only refer to another document, and rows without an article, are texts.
bool IsText(const SourceRow& row) {
    return row.IsBlank("Cd_AR") || row.Text("TipoRigaRif").compare(u"R", Qt::CaseInsensitive) == 0;
}

Rule TypeOfRow() {
    return {"descrittiva se non ha articolo o solo rimanda, altrimenti normale", [](const RuleInput& input) {
                using namespace schema::defaults;
                return RuleValue(IsText(input.row) ? DescriptionRow : NormalRow);
            }};
}

Rule StateOfRow() {
    return {"evasa, in parte o da evadere", [](const RuleInput& input) -> RuleValue {
                if (mod_ovTools::ToBoolean(input.row.Value("Evasa"))) {
                    return schema::defaults::Delivered;
                }
                return NumberOf(input.row, "QtaEvasa") > 0 ? schema::defaults::PartlyDelivered
                                                           : schema::defaults::ToDeliver;
            }};
}

Rule InSecondUnit() {
    return {"la quantità per il fattore, 1 se è vuoto", [](const RuleInput& input) {
                const SourceRow& row = input.row;
                const double factor = row.IsBlank("FattoreToUM1") ? 1 : NumberOf(row, "FattoreToUM1");
                return RuleValue(contract::RoundedTo(NumberOf(row, "Qta") * factor, 6));
            }};
}

Rule VatOfRow() {
    return {"codice IVA; nessuno per una riga descrittiva", [](const RuleInput& input) -> RuleValue {
                return IsText(input.row) ? QString() : VatCodeOf(input.session, Righe, "Cd_Aliquota", input.Text());
            }};
}

/// What is sold leaves a warehouse, what is bought arrives in one.
Rule Warehouse() {
    return {"quello di partenza di una vendita, quello di arrivo di un acquisto, tradotto con SYS_IMP (MG, Cd_MG)",
            [](const RuleInput& input) -> RuleValue {
                const QString code = input.row.Text(input.columns.at(input.facts.roles.customer ? 0 : 1));
                const QString warehouse = TranslatedCode(input.session, "MG", "Cd_MG", code, "MAG_AZZ");
                return warehouse.isEmpty() ? RuleValue() : RuleValue(warehouse);
            }};
}

// --- Hooks --------------------------------------------------------------------------------------------------------

/// The destination of the source in place of the counterparty's address.
void SetDestination(ImportRun& run, const SourceRow& row, TargetRow& target) {
    const QString destination = row.Text("Cd_CFDest");
    if (destination.isEmpty()) {
        return;
    }
    Session& session = run.GetSession();
    const Recordset found = session.Quadrix.ExecuteWC(
        "SELECT * FROM " + run.FullName("CON_SED") + "\rWHERE " +
        Equals(session, "CDCON", mod_ovTools::ToText(target.Value("DTCON"))) + " AND SETIP = 'CO' AND " +
        Equals(session, "CDSED", Digits(3).apply({session, row, {"Cd_CFDest"}, {}})->toString()));
    if (found.Eof()) {
        run.Log(QStringLiteral("SEDE NON TROVATA: %1: '%2'").arg(run.RowKey(), destination));
        return;
    }
    const SourceRow branch(found);
    target.Set("DTRSS", branch.Text("SERAS"));
    target.Set("DTVIA", branch.Text("SEIND"));
    target.Set("DTCAP", branch.Text("SECAP"));
    target.Set("DTCIT", branch.Text("SECIT"));
    target.Set("DTPRO", branch.Text("SEPRO"));
}

/// The parts of an article whose own row stands above.
QString LeftOut(const SourceRow& row) {
    return row.Text("TipoPC").compare(u"C", Qt::CaseInsensitive) == 0 ? QStringLiteral("parte di un articolo composto")
                                                                      : QString();
}

QString CauseOf(Session& session, const SourceRow& head) {
    return modImport::GetNewCode(session, "DO", "Cd_DO", head.Text("Cd_DO"), true);
}

QString LeftOut(ImportRun& run, const SourceRow& head) {
    if (!CauseOf(run.GetSession(), head).isEmpty()) {
        return {};
    }
    run.Log(QStringLiteral("CAUSALE NON TRADOTTA: %1: '%2'").arg(run.RowKey(), head.Text("Cd_DO")));
    return QStringLiteral("causale non tradotta");
}

QString OfSeries(const Session& session, const QString& series) {
    return Equals(session, "COALESCE(DTSER, '')", series);
}

/// The cause has a document type of its own, and a series that numbers without one count in.
QString Complete(const Session& session, DocumentHead& head) {
    head.cause.type = head.cause.kind.isEmpty() ? head.cause.type : head.cause.kind;
    head.series = head.series.isEmpty() ? head.cause.series : head.series;
    return OfSeries(session, head.series);
}

/// What the kinds of document have become.
QStringList CausesOf(Session& session) {
    Recordset rows =
        session.Quadrix.ExecuteWC("SELECT DISTINCT TBNEW FROM SYS_IMP WHERE " + Equals(session, "TBNAM", "DO") +
                                  " AND " + Equals(session, "TBFLD", "Cd_DO") + " AND TBNEW > '' ORDER BY TBNEW");
    QStringList causes;
    for (; !rows.Eof(); rows.MoveNext()) {
        causes.append(mod_ovTools::ToText(rows.Fields(0).Value()).trimmed());
    }
    return causes;
}

/// The causes whose documents a reset removes, of the setting DOC_Truncate; none for all.
QStringList CausesToRemove(Session& session) {
    QString causes = modMain::GetAppConfig(session, "IMPORT", "DOC_Truncate", "");
    return causes.replace(u';', u',').remove(u' ').split(u',', Qt::SkipEmptyParts);
}

/// The rows that rows of documents come from, and what a document gives away.
class RowsUnderWay {
public:
    explicit RowsUnderWay(ImportRun& run)
        : m_run(run) {}

    void Begin(const SourceRow& head) {
        m_family = &FamilyOf(head);
        m_gifts = 0;
    }
    void SetOrigin(const SourceRow& row, TargetRow& target);
    void Written(const SourceRow& row, const WrittenRow& written);
    void SetTotals(const SourceRow& head, const WrittenDocument& document);
    /// Links the rows whose origin came behind them, and tells how many have none.
    void LinkRest();

private:
    /// A row whose origin row has not been there yet.
    struct OpenLink {
        const Family& family;
        qint64 row;
        qint64 origin; ///< Id_DORig
    };
    qint64 OriginRow(const Family& family, qint64 sourceRow);

    ImportRun& m_run;
    const Family* m_family = nullptr; ///< of the document
    qint64 m_missing = 0;             ///< Id_DORig that the row under way comes from and that is not there yet; 0: none
    std::vector<OpenLink> m_openLinks;
    double m_gifts = 0; ///< amount of the rows of the document that are given away
};

/// The Quadrix row of a row of the source, in the tables of a family; 0 when it is not there.
qint64 RowsUnderWay::OriginRow(const Family& family, qint64 sourceRow) {
    Session& session = m_run.GetSession();
    const Recordset found = session.SourceConnection().ExecuteWC(
        QStringLiteral("SELECT T.NumeroDoc, T.EsAnno, T.DataDoc, T.Cd_DO, R.Riga FROM DORig R\rJOIN DOTes T ON "
                       "T.Id_DOTes = R.Id_DOTes\rWHERE R.Id_DORig = %1")
            .arg(sourceRow));
    if (found.Eof()) {
        return 0;
    }
    const SourceRow row(found);
    const QString cause = modImport::GetNewCode(session, "DO", "Cd_DO", row.Text("Cd_DO"), false);
    const QString before = row.Text("NumeroDoc").section(u'/', 0, 0);
    const bool hasNumber = std::any_of(before.begin(), before.end(), [](QChar each) { return each.isDigit(); });
    if (cause.isEmpty() || !hasNumber) { // its document is not imported
        return 0;
    }
    const QString series = Field("NumeroDoc", SeriesOfNumber()).Text(session, row);
    const DocumentWriter writer(m_run, family);
    const qint64 head =
        writer.Find(Field("NumeroDoc", NumberBeforeSlash()).Text(session, row), cause, YearOf(row),
                    OfSeries(session, series.isEmpty() ? LookUp(session, "CAU_DOC", "CDCAD", cause, "CDSER") : series));
    return head == 0 ? 0 : writer.FindRow(head, static_cast<int>(NumberOf(row, "Riga")));
}

void RowsUnderWay::SetOrigin(const SourceRow& row, TargetRow& target) {
    const auto origin = static_cast<qint64>(NumberOf(row, "Id_DORig_Evade"));
    const qint64 originRow = origin == 0 ? 0 : OriginRow(*m_family, origin);
    m_missing = originRow == 0 ? origin : 0;
    if (originRow != 0) {
        target.Set("DRORI", originRow);
    }
}

void RowsUnderWay::Written(const SourceRow& row, const WrittenRow& written) {
    constexpr double noGift = 1;
    m_gifts += NumberOf(row, "Omaggio") > noGift ? NumberOf(row, "PrezzoTotaleV") : 0;
    if (m_missing != 0) {
        m_openLinks.push_back({written.family, written.id, m_missing});
        m_run.WhenTakenBack([this] { m_openLinks.pop_back(); });
    }
}

/// Totals follow from the rows; those of the source stand in their place where it has them, as they are on the paper,
/// unless rows that it has no more still stand in the document.
void RowsUnderWay::SetTotals(const SourceRow& head, const WrittenDocument& document) {
    Session& session = m_run.GetSession();
    const Recordset found = session.SourceConnection().ExecuteWC(
        "SELECT * FROM DOTotali\rWHERE Id_DOTes = " + LiteralOf(session.SourceConnection(), head.Value("Id_DOTes")));
    TargetRow target(m_run, document.family.head);
    target.Set("DTOMA", m_gifts);
    if (document.rowsLeft == 0 && !found.Eof()) {
        const SourceRow totals(found);
        target.Set("DTIMP", NumberOf(totals, "TotImponibileV"));
        target.Set("DTIVA", NumberOf(totals, "TotImpostaV"));
        target.Set("DTTOT", NumberOf(totals, "TotDocumentoV"));
    }
    target.Update("WHERE " + Equals("RECORD_ID", document.id));
}

void RowsUnderWay::LinkRest() {
    int missing = 0;
    for (const OpenLink& link : m_openLinks) {
        const qint64 origin = OriginRow(link.family, link.origin);
        if (origin == 0) {
            ++missing;
            continue;
        }
        TargetRow target(m_run, link.family.row);
        target.Set("DRORI", origin);
        target.Update("WHERE " + Equals("RECORD_ID", link.row));
    }
    if (missing > 0) {
        m_run.Log(QStringLiteral("Righe la cui riga d'origine non è tra i documenti importati: %1").arg(missing));
    }
}

HeadHooks HooksOf(ImportRun& run) {
    const auto rows = std::make_shared<RowsUnderWay>(run);
    return {
        .leavesOut = [&run](const SourceRow& head) { return LeftOut(run, head); },
        .complete =
            [&run, rows](const SourceRow& source, DocumentHead& head) {
                rows->Begin(source);
                return Complete(run.GetSession(), head);
            },
        .moreOfRow = [rows](const SourceRow& row, TargetRow& target) { rows->SetOrigin(row, target); },
        .rowWritten = [rows](const SourceRow& row, const WrittenRow& written) { rows->Written(row, written); },
        .documentWritten = [rows](const SourceRow& head,
                                  const WrittenDocument& document) { rows->SetTotals(head, document); },
        .end = [rows] { rows->LinkRest(); },
        .causes = CausesOf(run.GetSession()),
        .empties = DocumentEmptying(CausesToRemove(run.GetSession())),
    };
}

Needs NeedsOfHooks() {
    Needs needs{
        {},
        {{Testate, {"Id_DOTes", "NumeroDoc", "EsAnno", "DataDoc", "Cd_DO", "TipoDocumento", "CliFor", "Cd_CFDest"}},
         {Righe, {"Id_DORig", "Riga", "Id_DORig_Evade", "TipoPC", "Omaggio", "PrezzoTotaleV"}},
         {Totali, {"Id_DOTes", "TotImponibileV", "TotImpostaV", "TotDocumentoV"}}},
        {}};
    for (const Family* family : {&Sales, &Purchases, &WorkAccount}) {
        needs.writes.push_back({family->head, {"DTOMA"}});
        needs.writes.push_back({family->row, {"DRORI"}});
    }
    return needs;
}

} // namespace

// --- Documents ----------------------------------------------------------------------------------------------------

Documents Documenti() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDocumentiArcaEvolution",
                  .announcement = "Inizio importazione Documenti da Arca Evolution",
                  .completion = "Documenti Arca Evolution importati correttamente: %1"},
        .source = {.table = Testate,
                   .key = "NumeroDoc",
                   .order = "Id_DOTes",
                   .naming = "Id_DOTes, NumeroDoc",
                   .joins = {{"DO", {{"Cd_DO"}}, {}, false}}},
        .rows = {.table = Righe, .on = {{"Id_DOTes"}}, .order = "Riga"},
        .reading = Reading::HeadThenRows,
        .withoutRows = WithoutRows::Written,
        .kinds = Kinds(),
        .kind = {"TipoDocumento, CliFor", Mark()},
        .cause = {"Cd_DO", Translated("DO", "Cd_DO")},
        .head = {.number = {"NumeroDoc", NumberBeforeSlash()},
                 .day = "DataDoc",
                 .year = {"EsAnno, DataDoc", Year()},
                 .series = {"NumeroDoc", SeriesOfNumber()},
                 .counterparty = {"Cd_CF", Party()},
                 .name = {"Cd_CF", WholeName()},
                 .state = {"Id_DOTes, Esecutivo", State()},
                 .lines = {{"DTMOP", "Cd_PG", TranslatedOrKnown(Cf, "Cd_PG", "TAB_MOP")},
                           {"DTVAL", "Cd_VL", Currency(Cf, "Cd_VL")},
                           {"DTCMB", "Cambio", ExchangeRate()},
                           {"DTRIC", "NumeroDocRif", Text()},
                           {"DTRID", "DataDocRif", AsRead()},
                           {"DTCOR", "DataConsegna", AsRead()},
                           {"DTCOC", "DataConsegna", AsRead()},
                           {"DTPOR", "Cd_DOPorto", Translated(Cf, "Cd_DOPorto")},
                           {"DTSCO", "ScontoCassa", RoundedTo(2)},
                           {"DTNOT", "NotePiede", Text()}}},
        .row = {.number = "Riga",
                .article = {"Cd_AR", Article()},
                .type = {"Cd_AR, TipoRigaRif", TypeOfRow()},
                .description = "Descrizione",
                .unit = {"Cd_ARMisura", TranslatedOrUpper(Ar, "Cd_ARMisura", {})},
                .quantity = "Qta",
                .quantity2 = {"Qta, FattoreToUM1", InSecondUnit()},
                .delivered = "QtaEvasa",
                .price = "PrezzoUnitarioV",
                .discounts = DiscountFields("ScontoRiga"),
                .vatCode = {"Cd_Aliquota", VatOfRow()},
                .state = {"Evasa, QtaEvasa", StateOfRow()},
                .lines = {{"DRQTD", "QtaEvadibile", NotBlank(RoundedTo(6))},
                          {"DRTOT", "PrezzoTotaleV", Or(RoundedTo(6), 0)},
                          {"DRTTA", "PrezzoTotaleV", Or(RoundedTo(6), 0)},
                          {"DRCON", "DataConsegna", Day()},
                          {"DRCOR", "DataConsegna", Day()},
                          {"DRNOT", "NoteRiga", Text()},
                          {"DRMAG", "Cd_MG_P, Cd_MG_A", Warehouse()}}},
        .empties = AtMost(DocumentEmptying()),
        .leavesOut = [](const SourceRow& row) { return LeftOut(row); },
        .moreOfHead = SetDestination,
        .ofHeads = HooksOf,
        .further = NeedsOfHooks(),
    };
}

} // namespace modImport_ArcaEvolution
