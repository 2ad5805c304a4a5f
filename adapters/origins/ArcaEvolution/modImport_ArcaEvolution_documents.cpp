// Documents of Arca Evolution: DOTes holds the heads, DORig the rows, DOTotali the totals, DO the kinds of document.

#include "adapters/origins/ArcaEvolution/modImport_ArcaEvolution.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/origins/ArcaEvolution/modImport_ArcaEvolution_links.h"
#include "core/modImport.h"
#include "core/modMain.h"
#include "core/schemaDefaults.h"
#include "core/wholeSettings.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_ArcaEvolution {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Testate = QStringLiteral("DOTes");
const QString Righe = QStringLiteral("DORig");
const QString Totali = QStringLiteral("DOTotali");

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

Rule Mark() {
    return {"il genere e il lato, \"C\" o \"F\"", [](const RuleInput& input) { return RuleValue(MarkOf(input.row)); }};
}

Rule Year() {
    return {"l'esercizio; vuoto: l'anno della data",
            [](const RuleInput& input) { return RuleValue(YearOf(input.row)); }};
}

Rule Party() {
    return {"CDCON della riga di CON_TRO di cui è COCGE se comincia per C, altrimenti COFGE",
            [](const RuleInput& input) -> RuleValue {
                const QString code = input.Text();
                return FoundParty(modImport_ArcaEvolution::PartyOf(input.session, code), code, {});
            }};
}

Rule WholeName() {
    return {"CORAS e CORA2 della controparte", [](const RuleInput& input) -> RuleValue {
                const QString party = modImport_ArcaEvolution::PartyOf(input.session, input.Text());
                return QString(LookUp(input.session, "CON_TRO", "CDCON", party, "CORAS") + u' ' +
                               LookUp(input.session, "CON_TRO", "CDCON", party, "CORA2"));
            }};
}

/// A rate of zero is none: the document is in euro.
Rule ExchangeRate() {
    return {"com'è, 1 se è zero o vuoto", [](const RuleInput& input) {
                const double rate = NumberOf(input.row, input.columns.first());
                return RuleValue(rate == 0 ? schema::defaults::ExchangeRate : rate);
            }};
}

/// Rows that only refer to another document are texts, and so are rows with neither an article nor an amount.
bool IsText(const SourceRow& row) {
    if (row.Text("TipoRigaRif").compare(u"R", Qt::CaseInsensitive) == 0) {
        return true;
    }
    return row.IsBlank("Cd_AR") && NumberOf(row, "PrezzoTotaleV") == 0 &&
           NumberOf(row, "Qta") * NumberOf(row, "PrezzoUnitarioV") == 0;
}

/// Whether a document has a row that is not delivered: one of goods or, where there are only texts, any.
bool HasOpenRow(Session& session, const QVariant& document) {
    ovConnection& source = session.SourceConnection();
    Recordset rows = source.ExecuteWC("SELECT * FROM DORig\rWHERE Id_DOTes = " + LiteralOf(source, document));
    bool hasGoods = false;
    bool hasOpenText = false;
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const bool isOpen = !mod_ovTools::ToBoolean(row.Value("Evasa"));
        const bool isText = IsText(row);
        if (isOpen && !isText) {
            return true;
        }
        hasGoods = hasGoods || !isText;
        hasOpenText = hasOpenText || (isOpen && isText);
    }
    return hasOpenText && !hasGoods;
}

/// A draft is still to be delivered, as is a document with a row that is not delivered.
Rule State() {
    return {"da consegnare finché è una bozza o ha una riga non evasa, i testi a parte; altrimenti chiuso",
            [](const RuleInput& input) -> RuleValue {
                const bool draft = !mod_ovTools::ToBoolean(input.row.Value("Esecutivo"));
                return draft || HasOpenRow(input.session, input.row.Value("Id_DOTes")) ? schema::defaults::ToDeliver
                                                                                       : schema::defaults::Closed;
            },
            Side::Both,
            {{Righe, {"Id_DOTes", "Cd_AR", "TipoRigaRif", "Evasa"}, {"Qta", "PrezzoUnitarioV", "PrezzoTotaleV"}}}};
}

Rule TypeOfRow() {
    return {"descrittiva se solo rimanda o non ha né articolo né importo, altrimenti normale",
            [](const RuleInput& input) {
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
    return {"tradotto con SYS_IMP (DORig, Cd_Aliquota), altrimenti com'è se TAB_IVA lo ha, altrimenti annotato e "
            "scritto nel log; nessuno per una riga descrittiva",
            [](const RuleInput& input) -> RuleValue {
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

void SetAddress(const SourceRow& place, TargetRow& target) {
    target.Set("DTRSS", place.Text("Descrizione"));
    target.Set("DTVIA", place.Text("Indirizzo"));
    target.Set("DTCAP", place.Text("Cap"));
    target.Set("DTCIT", place.Text("Localita"));
    target.Set("DTPRO", place.Text("Cd_Provincia"));
}

/// The destination of the source in place of the counterparty's address. Which branch it has become tells nothing: a
/// counterparty of two codes has numbered some of them anew.
void SetDestination(ImportRun& run, const SourceRow& row, TargetRow& target) {
    const QString destination = row.Text("Cd_CFDest");
    if (destination.isEmpty()) {
        return;
    }
    const ChildTable destinations{.table = Destinazioni, .on = {{"Cd_CF"}, {"Cd_CFDest"}}};
    bool isThere = false;
    destinations.First(run.GetSession(), row, [&](const SourceRow& place) {
        isThere = !place.IsBlank("Indirizzo");
        if (isThere) {
            SetAddress(place, target);
        }
    });
    if (!isThere) {
        run.Log(QStringLiteral("SEDE NON TROVATA: %1: '%2'").arg(run.RowKey(), destination));
    }
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
    QString causes = modMain::GetWholeConfig(session, "IMPORT", "DOC_Truncate", "");
    return causes.replace(u';', u',').remove(u' ').split(u',', Qt::SkipEmptyParts);
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
        {{Testate,
          {"Id_DOTes", "NumeroDoc", "EsAnno", "DataDoc", "Cd_DO", "Cd_CF", "TipoDocumento", "CliFor", "Cd_CFDest"}},
         {Righe, {"Id_DORig", "Riga", "Id_DORig_Evade", "TipoPC", "Omaggio", "PrezzoTotaleV"}},
         {Totali, {"Id_DOTes", "TotImponibileV", "TotImpostaV", "TotDocumentoV"}},
         {Destinazioni, {"Cd_CF", "Cd_CFDest", "Indirizzo"}, {"Descrizione", "Cap", "Localita", "Cd_Provincia"}}},
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
        .source = {.table = Testate, .key = "NumeroDoc", .order = "Id_DOTes", .naming = "Id_DOTes, NumeroDoc"},
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
                           {"DTRID", "DataDocRif", Day()},
                           {"DTCOR", "DataConsegna", Day()},
                           {"DTCOC", "DataConsegna", Day()},
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
                          {"DRTOT", "PrezzoTotaleV", NotBlank(RoundedTo(6))},
                          {"DRTTA", "PrezzoTotaleV", NotBlank(RoundedTo(6))},
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
