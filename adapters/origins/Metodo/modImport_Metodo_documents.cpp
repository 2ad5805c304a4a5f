// Documents of Metodo: TESTEDOCUMENTI with the parameters of their type (PARAMETRIDOC), RIGHEDOCUMENTI. The cause of a
// document is what SYS_IMP has for its type. A row knows the one that it was made from (IDTESTARP, IDRIGARP). Rows and
// totals are those of the source in euro, so that a document in another currency is one in euro here, and the log tells
// it; where a release does not have the totals they follow from the rows.

#include "adapters/origins/Metodo/modImport_Metodo.h"

#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/map/lookups.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Metodo {

namespace {

const QString Teste = QStringLiteral("TESTEDOCUMENTI");
const QString Righe = QStringLiteral("RIGHEDOCUMENTI");
const QString Parametri = QStringLiteral("PARAMETRIDOC");
const QString NumberQuestion = QStringLiteral("Numero documento:");

/// The kinds of documents by the letters of CLIFOR and TIPO.
std::vector<DocumentKind> Kinds() {
    std::vector<DocumentKind> kinds;
    for (const bool sold : {true, false}) {
        const QString party = sold ? "C " : "F ";
        const Family& family = sold ? Sales : Purchases;
        kinds.push_back({.marks = {party + "O"}, .cause = {}, .type = "ORD", .family = family});
        kinds.push_back({.marks = {party + "B"}, .cause = {}, .type = "DDT", .family = family, .isOpen = false});
        kinds.push_back({.marks = {party + "F"}, .cause = {}, .type = "FAT", .family = family, .isOpen = false});
        kinds.push_back({.marks = {party + "N"}, .cause = {}, .type = "NDC", .family = family, .isOpen = false});
        kinds.push_back({.marks = {party + "A"}, .cause = {}, .type = "INT", .family = family, .isOpen = false});
    }
    return kinds;
}

/// Without what is left of it nobody knows what was delivered, and the row stays open.
Rule Delivered() {
    return Needing(
        2, {"la prima meno ciò che ne resta; 0 se non si sa che cosa resta, e va nel log", [](const RuleInput& input) {
                const double quantity = NumberOf(input.row, input.columns.first());
                if (!input.row.IsBlank(input.columns.last())) {
                    return RuleValue(quantity - NumberOf(input.row, input.columns.last()));
                }
                if (quantity != 0) {
                    modImport::LogNote(input.session,
                                       QStringLiteral("QUANTITÀ RESIDUA MANCANTE: %1: scritta come tutta da "
                                                      "evadere")
                                           .arg(input.session.Errors.RowKey()));
                }
                return RuleValue(0);
            }});
}

/// The second and the third discount of a document, which has a place for one behind the first.
Rule FurtherDiscounts() {
    return {"il secondo di quelli uniti da \"+\"; un terzo vi si riunisce, e va nel log",
            [](const RuleInput& input) -> RuleValue {
                constexpr double whole = 100;
                constexpr int decimals = 6;
                const auto [first, second, third] = DiscountsOf(input.Text());
                if (third == 0) {
                    return second == 0 ? QVariant() : QVariant(second);
                }
                const double both = contract::RoundedTo(second + third - second * third / whole, decimals);
                modImport::LogNote(input.session,
                                   QStringLiteral("SCONTI RIUNITI: %1: '%2' scritto come %3 e %4")
                                       .arg(input.session.Errors.RowKey(), input.Text(), mod_ovTools::NumberText(first),
                                            mod_ovTools::NumberText(both)));
                return both;
            }};
}

/// The currency that a document was written in.
const Field& DocumentCurrency() {
    static const Field field("CODCAMBIO", CurrencyOfNumber(Teste, "CODCAMBIO"));
    return field;
}

/// The amounts that are read are those in euro, whatever the currency of the document.
void TellCurrency(ImportRun& run, const SourceRow& row, TargetRow& /*target*/) {
    const QString currency = DocumentCurrency().Text(run.GetSession(), row);
    if (currency != schema::defaults::Currency) {
        run.Log(QStringLiteral("DOCUMENTO IN VALUTA: %1: in %2 (cambio %3), importi scritti in %4")
                    .arg(run.RowKey(), currency, row.Text("VALCAMBIO"), schema::defaults::Currency));
    }
}

/// Texts and variants count nothing.
Rule KindOfRow() {
    using schema::defaults::DescriptionRow;
    return Choice({{"D", DescriptionRow}, {"R", DescriptionRow}, {"V", DescriptionRow}}, {});
}

// --- Origins of rows ----------------------------------------------------------------------------------------------

/// A row of a document as Quadrix has it.
struct ImportedRow {
    QString table;
    qint64 id = 0; ///< RECORD_ID; 0: it is not there
};

/// @param document PROGRESSIVO of its head @param number POSIZIONE
ImportedRow FindImported(ImportRun& run, const QVariant& document, int number) {
    Session& session = run.GetSession();
    ovConnection& source = session.SourceConnection();
    const Recordset heads =
        source.ExecuteWC("SELECT T.TIPODOC, T.NUMERODOC, T.ESERCIZIO, T.BIS, T.DATADOC, J1.CLIFOR FROM "
                         "TESTEDOCUMENTI T INNER JOIN PARAMETRIDOC J1 ON J1.CODICE = T.TIPODOC "
                         "WHERE T.PROGRESSIVO = " +
                         LiteralOf(source, document));
    if (heads.Eof()) {
        return {};
    }
    const SourceRow head(heads);
    const Family& family = head.Text("CLIFOR").compare(u"F", Qt::CaseInsensitive) == 0 ? Purchases : Sales;
    const QString cause = modImport::GetNewCode(session, Parametri, "CODICE", head.Text("TIPODOC"), true);
    const DocumentWriter writer(run, family);
    const qint64 id =
        writer.Find(head.Text("NUMERODOC"), cause, WholeNumberOf(head, "ESERCIZIO"),
                    OfSeries(session, head.Text("BIS")) + u" AND " + OnDay(session, "DTDAT", DateOf(head, "DATADOC")));
    return {family.row, id == 0 ? 0 : writer.FindRow(id, number)};
}

/// The row that a row was made from. @param row with IDTESTARP and IDRIGARP
ImportedRow FindOrigin(ImportRun& run, const SourceRow& row) {
    ovConnection& source = run.GetSession().SourceConnection();
    const Recordset origins = source.ExecuteWC(
        "SELECT POSIZIONE FROM RIGHEDOCUMENTI WHERE IDTESTA = " + LiteralOf(source, row.Value("IDTESTARP")) +
        " AND IDRIGA = " + LiteralOf(source, row.Value("IDRIGARP")));
    return origins.Eof() ? ImportedRow()
                         : FindImported(run, row.Value("IDTESTARP"), WholeNumberOf(SourceRow(origins), "POSIZIONE"));
}

QVariant LinkTo(const ImportedRow& origin) { return origin.id == 0 ? QVariant() : QVariant(origin.id); }

/// Links a row to the one that it was made from; one that has none any more has no link either.
RowOutcome LinkRow(ImportRun& run, const SourceRow& row) {
    const ImportedRow made = FindImported(run, row.Value("IDTESTA"), WholeNumberOf(row, "POSIZIONE"));
    if (made.id == 0) {
        return run.Skip("riga non importata");
    }
    const ImportedRow origin = FindOrigin(run, row);
    const QString link = LookUp(run.GetSession(), made.table, "RECORD_ID", QString::number(made.id), "DRORI");
    if (mod_ovTools::ToText(LinkTo(origin)) == link) {
        return run.Skip(origin.id == 0 ? QStringLiteral("riga d'origine non importata")
                                       : QStringLiteral("riga già collegata alla sua origine"));
    }
    TargetRow target(run, made.table);
    target.Set("DRORI", LinkTo(origin));
    target.Update("WHERE " + Equals("RECORD_ID", made.id));
    return RowOutcome::Updated;
}

/// What the second pass does not come to is done with the row: it takes the place of another, which had a link of its
/// own, or is imported with some others alone, and then it is linked at once.
void SetOrigin(ImportRun& run, const SourceRow& row, TargetRow& target) {
    if (NumberOf(row, "IDTESTARP") <= 0) {
        target.Set("DRORI", QVariant());
    } else if (run.IsPart()) {
        target.Set("DRORI", LinkTo(FindOrigin(run, row)));
    }
}

/// The same of the rows that were made from one which is imported with some others alone.
void LinkMade(ImportRun& run, const SourceRow& row) {
    ovConnection& source = run.GetSession().SourceConnection();
    Recordset made = source.ExecuteWC(
        "SELECT IDTESTA, POSIZIONE, IDTESTARP, IDRIGARP FROM RIGHEDOCUMENTI WHERE IDTESTARP = " +
        LiteralOf(source, row.Value("IDTESTA")) + " AND IDRIGARP = " + LiteralOf(source, row.Value("IDRIGA")));
    for (const SourceRow each(made); !made.Eof(); made.MoveNext()) {
        LinkRow(run, each);
    }
}

// --- Documents ----------------------------------------------------------------------------------------------------

/// Totals that some releases have, of the document as it is on the paper.
const QStringList& TotalColumns() {
    static const QStringList columns{"TOTMERCEEURO", "TOTIMPONIBILEEURO", "TOTIMPOSTAEURO", "TOTDOCUMENTOEURO"};
    return columns;
}

/// The amount of a row that is given away.
double GiftOf(const SourceRow& row, const WrittenRow& written) {
    if (row.Text("TIPORIGA").compare(u"O", Qt::CaseInsensitive) != 0) {
        return 0;
    }
    return row.IsBlank("TOTNETTORIGAEURO") ? written.values.Amount() : NumberOf(row, "TOTNETTORIGAEURO");
}

/// Rows that the source has no more are in none of its totals.
SourceTotals TotalsOf(const SourceRow& head, const WrittenDocument& document, double gifts) {
    const auto total = [&](qsizetype place) -> std::optional<double> {
        const QString& column = TotalColumns().at(place);
        return document.rowsLeft > 0 || head.IsBlank(column) ? std::nullopt : std::optional(NumberOf(head, column));
    };
    return {.gifts = gifts, .goods = total(0), .taxable = total(1), .tax = total(2), .total = total(3)};
}

HeadHooks HooksOf(ImportRun& run) {
    const auto gifts = std::make_shared<double>(); // of the document under way
    return {
        .complete =
            [&run, gifts](const SourceRow& /*source*/, const DocumentHead& head) {
                *gifts = 0;
                return OfSeries(run.GetSession(), head.series);
            },
        .rowWritten =
            [&run, gifts](const SourceRow& row, const WrittenRow& written) {
                *gifts += GiftOf(row, written);
                if (run.IsPart()) {
                    LinkMade(run, row);
                }
            },
        .documentWritten =
            [&run, gifts](const SourceRow& head, const WrittenDocument& document) {
                SetTotals(run, document.family, document.id, TotalsOf(head, document, *gifts));
            },
    };
}

/// A row that is closed has been delivered.
void CompleteRow(ImportRun& run, const SourceRow& row, TargetRow& target) {
    SetOrigin(run, row, target);
    if (row.Text("RIGACHIUSA") == u"1") {
        target.Set("DRSTA", schema::defaults::Delivered);
    }
}

/// The number of the one document that the operator wants.
QString AskedNumber(ImportRun& run) {
    const QString number = run.Input(NumberQuestion, QuadrixCaption, {}).trimmed();
    bool isNumber = false;
    const qint64 value = number.toLongLong(&isNumber);
    if (!isNumber) {
        throw ImportError(QStringLiteral("'%1' non è un numero di documento").arg(number));
    }
    return QString::number(value);
}

QString OfAskedNumber(ImportRun& run) { return "T.NUMERODOC = " + AskedNumber(run); }

Documents DocumentsOf(const std::function<QString(ImportRun&)>& which) {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDocumentiMetodo",
                  .announcement = "Inizio importazione Documenti da Metodo",
                  .completion = "Documenti Metodo importati correttamente: %1"},
        .source = {.table = Teste,
                   .key = "PROGRESSIVO",
                   .order = "PROGRESSIVO",
                   .naming = "ESERCIZIO, TIPODOC, NUMERODOC",
                   .told = which,
                   .joins = {{.table = Parametri, .on = {{"CODICE", "TIPODOC"}}, .columns = {"CLIFOR", "TIPO"}}}},
        .rows = {.table = Righe,
                 .on = {{"IDTESTA", "PROGRESSIVO"}},
                 .order = "POSIZIONE",
                 .naming = "IDTESTA, POSIZIONE"},
        .reading = Reading::HeadThenRows,
        .kinds = Kinds(),
        .kind = "CLIFOR, TIPO",
        .cause = {"TIPODOC", Translated(Parametri, "CODICE")},
        .head =
            {
                .number = "NUMERODOC",
                .day = "DATADOC",
                .year = "ESERCIZIO",
                .series = "BIS",
                .counterparty = {"CODCLIFOR", PartyOf()},
                .state = {"DOCCHIUSO", Choice({{"1", schema::defaults::Closed}}, schema::defaults::ToDeliver)},
                .lines =
                    {
                        {"DTRIC", "NUMRIFDOC", Text()},
                        {"DTRID", "DATARIFDOC", Day()},
                        {"DTMOP", "CODPAGAMENTO", Coded("PAGAMENTI")},
                        {"DTSCO", "SCONTOFINALE", Discount(1)},
                        {"DTSCI", "SCONTOFINALE", FurtherDiscounts()},
                        {"DTPOR", "PORTO", Coded("PORTO")},
                        {"DTCOR", "DATACONSEGNA", NotBlank(Day())},
                        {"DTSTR", "TOTSPESETRASPEURO", RoundedTo(2)},
                        {"DTSIM", "TOTSPESEIMBALLOEURO", RoundedTo(2)},
                        {"DTRSS", "RAGSOCDDM", NotBlank(Text())},
                        {"DTVIA", "INDIRIZZODDM", NotBlank(Text())},
                        {"DTCAP", "CAPDDM", NotBlank(Text())},
                        {"DTCIT", "LOCALITADDM", NotBlank(First(60))},
                        {"DTPRO", "PROVINCIADDM", NotBlank(Text())},
                        {"DTNOT", "ANNOTAZIONI", Text()},
                    },
            },
        .row =
            {
                .number = "POSIZIONE",
                .article = {"CODART", Article()},
                .type = {"TIPORIGA", KindOfRow()},
                .description = "DESCRIZIONEART",
                .unit = {"UMGEST", ArticleUnit("")},
                .quantity = "QTAGEST",
                .quantity2 = "QTAPREZZO",
                .delivered = {"QTAGEST, QTAGESTRES", Delivered()},
                .price = "PREZZOUNITLORDOEURO",
                .discounts = DiscountFields("SCONTIESTESI"),
                .vatCode = {"CODIVA", NotZeroCode(ArticleVat())},
                .lines =
                    {
                        {"DRUM2", "UMPREZZO", NotBlank(ArticleUnit(""))},
                        {"DRPRA", "PREZZOUNITNETTOEURO", RoundedTo(6)},
                        {"DRTOT", "TOTNETTORIGAEURO", NotBlank(RoundedTo(2))},
                        {"DRTTA", "TOTNETTORIGAEURO", NotBlank(RoundedTo(2))},
                        {"DRMAG", "CODDEPOSITO", NotBlank(Translated(Righe, "CODDEPOSITO"))},
                        {"DRCON", "DATACONSEGNA", NotBlank(Day())},
                        {"DRNOT", "ANNOTAZIONI", Text()},
                    },
            },
        .moreOfHead = TellCurrency,
        .moreOfRow = CompleteRow,
        .ofHeads = HooksOf,
        .further = {{},
                    std::vector<TableNeed>{{Righe, {"IDRIGA", "IDTESTARP", "IDRIGARP"}, {"RIGACHIUSA"}},
                                           {Teste, {}, QStringList{"CODCAMBIO", "VALCAMBIO"} + TotalColumns()}} +
                        DocumentCurrency().Reads(),
                    {{"DOC_VEN", {"DTOMA"}},
                     {"DOC_ACQ", {"DTOMA"}},
                     {"DOC_VER", {"DRSTA"}},
                     {"DOC_ACR", {"DRSTA"}}}}, // DRORI: the links of Origins
    };
}

/// The second pass, once every row has its place. @param ofOne of the document asked for alone: what it was made from,
/// and what was made from it
ImportPart Origins(bool ofOne) {
    const auto which = [ofOne](ImportRun& run) -> QString {
        const QString since = "J1.DATADOC >= " + LiteralOf(run.GetSession().SourceConnection(),
                                                           ReadDocumentSettings(run.GetSession()).from);
        const QString number = ofOne ? AskedNumber(run) : QString();
        return ofOne
                   ? QString(since + " AND (J1.NUMERODOC = " + number +
                             " OR T.IDTESTARP IN (SELECT PROGRESSIVO FROM TESTEDOCUMENTI WHERE NUMERODOC = " + number +
                             "))")
                   : since;
    };
    return {
        .step = "Righe d'origine",
        .source = {.table = Righe,
                   .key = "IDTESTA",
                   .order = "IDTESTA, POSIZIONE",
                   .where = "T.IDTESTARP > 0",
                   .naming = "IDTESTA, POSIZIONE",
                   .told = which,
                   .joins = {{.table = Teste,
                              .on = {{"PROGRESSIVO", "IDTESTA"}},
                              .columns = {"DATADOC", "NUMERODOC"},
                              .isOptional = false}}},
        .needs = {{},
                  {{Righe, {"IDRIGA", "IDRIGARP"}}},
                  {{"DOC_VER", {"IDTES", "DRNUM", "DRORI"}}, {"DOC_ACR", {"IDTES", "DRNUM", "DRORI"}}}},
        .make = Importing(LinkRow),
    };
}

} // namespace

Procedure ImportDocumentiMetodo(Button button) {
    const bool ofOne = button == Button::Acq;
    const Documents documents = DocumentsOf(ofOne ? OfAskedNumber : std::function<QString(ImportRun&)>());
    Procedure procedure = ProcedureOf(button, FrameOf(documents), {PartOf(documents), Origins(ofOne)});
    if (ofOne) {
        procedure.asks.push_back({NumberQuestion, AnswerKind::Text});
    }
    return procedure;
}

} // namespace modImport_Metodo
