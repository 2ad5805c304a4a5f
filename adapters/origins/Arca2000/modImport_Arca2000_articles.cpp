// Articles and customer price lists of Arca 2000; see modImport_Arca2000.cpp for the source.

#include "adapters/origins/Arca2000/modImport_Arca2000.h"

#include "adapters/contract/map/emptyDays.h"
#include "adapters/contract/map/joinedParty.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/Mapping.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/missingCodes.h"
#include "adapters/contract/write/PriceList.h"
#include "adapters/contract/write/scaleRows.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

#include <QRegularExpression>

using namespace contract;
using namespace contract::rules;

namespace modImport_Arca2000 {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Magart = QStringLiteral("magart");
const QString Listini = QStringLiteral("listini");

// --- Mappings -----------------------------------------------------------------------------------------------------

/// The class of an article in the source, id_ClasseArt; a table outside a database container keeps ten characters of a
/// column's name. Empty when the table has neither.
QString SourceClass(const SourceRow& row) {
    for (const QString& column : {QStringLiteral("id_ClasseArt"), QStringLiteral("id_ClasseA")}) {
        if (row.HasColumn(column)) {
            return row.Text(column);
        }
    }
    return {};
}

/// Article class: what SYS_IMP says of the group; else a component for a supplier's group, a product for a customer's.
Rule ArticleClass() {
    Rule rule{
        "tradotto con SYS_IMP (magart, gruppo); \"CM\" se comincia con F, \"PF\" con C; altrimenti \"CM\", scritto "
        "nel log",
        [](const RuleInput& input) -> RuleValue {
            const QString group = input.Text();
            const QString known = modImport::GetNewCode(input.session, "magart", "gruppo", group, false);
            if (!known.isEmpty()) {
                return known;
            }
            if (group.startsWith(u'F', Qt::CaseInsensitive)) {
                return "CM";
            }
            if (group.startsWith(u'C', Qt::CaseInsensitive)) {
                return "PF";
            }
            modImport::LogNote(input.session,
                               "Impossibile trovare la conversione Classe Articolo per: " + SourceClass(input.row));
            return "CM";
        }};
    return WithDefault(std::move(rule));
}

/// The customer that an article belongs to: the last one who bought it, else the one of its group.
Rule CustomerOfArticle() {
    return {"CDCON della riga di CON_TRO il cui COCGE è la prima, altrimenti la seconda se comincia con C",
            [](const RuleInput& input) -> RuleValue {
                const auto customer = [&](const QString& code) {
                    return code.isEmpty() ? code : LookUp(input.session, "CON_TRO", "COCGE", code, "CDCON");
                };
                QString found = customer(input.row.Text("uvcliente"));
                const QString group = input.row.Text("gruppo");
                if (found.isEmpty() && group.startsWith(u'C', Qt::CaseInsensitive)) {
                    found = customer(group);
                }
                return found.isEmpty() ? RuleValue() : RuleValue(found);
            }};
}

const Mapping& Articoli() {
    static const Mapping mapping{
        "ART_ICO",
        Magart,
        {
            {"ARDES", "descrizion", First(100)},
            {"ARCDR", "descrizion", CodeAndText(100)},
            {"ARCLA", "gruppo", ArticleClass()},
            {"ARUMS", "unmisura", TranslatedOrUpper("magart", "unmisura", schema::defaults::Unit)},
            {"ARUM2", "unmisura1", TranslatedOrUpper("magart", "unmisura", "")},
            {"ARCOE", "fatt1", NotZero()},
            {"ARUMP", "unmisura", UpperOr(3, schema::defaults::Unit)},
            {"ARCOP", "", Constant(schema::defaults::PurchaseUnitFactor)},
            {"ARIVA", "", Constant(schema::defaults::VatCode)},
            {"ARLAM", "", Constant(false)},
            {"ARCOS", "uaprezzol, costostand", FirstNotZero()},
            {"ARPRZ", "listino1", RoundedTo(6)},
            {"ARRIC", "listino1, uaprezzol, costostand", MarkUp()},
            {"ARSCO", "sconto1", RoundedTo(2)},
            {"ARSC2", "sconto2", RoundedTo(2)},
            {"ARSC3", "sconto3", RoundedTo(2)},
            {"ARSAQ", "uasconto", RoundedTo(2)},
            {"ARPSN", "pesounit", RoundedTo(3)},
            {"ARSMN", "scortamin", RoundedTo(6)},
            {"ARQMR", "lottomin", RoundedTo(6)},
            {"ARLOR", "lottorior", RoundedTo(6)},
            // The reorder point is the minimum stock again: Arca 2000 has no field of its own for it.
            {"ARPUR", "scortamin", RoundedTo(6)},
            {"ARGGA", "ggrior", RoundedTo(0)},
            {"ARCLI", "uvcliente, gruppo", CustomerOfArticle()},
        },
    };
    return mapping;
}

// --- Articles -----------------------------------------------------------------------------------------------------

/// Variants, "-C" and one or two digits behind the code, are no articles of Quadrix.
bool IsVariant(const QString& code) {
    static const QRegularExpression variant(QStringLiteral("-C[0-9]{1,2}$"));
    constexpr int shortest = 3;
    return code.size() > shortest && variant.match(code.toUpper()).hasMatch();
}

/// A price or discount of a line of `listini`; Null, which leaves its column out, for a text that is no number (told).
QVariant AmountOf(ImportRun& run, const SourceRow& line, const QString& column) {
    const QVariant value = line.Value(column);
    if (line.IsBlank(column) || mod_ovTools::ReadNumber(value)) {
        return value;
    }
    run.Log(QStringLiteral("VALORE NON NUMERICO: %1, tabella '%2', colonna '%3': '%4' non è un numero, non si importa")
                .arg(run.RowKey(), Listini, column, line.Text(column)));
    return {};
}

/// Cost or price history of the article, and the work price list of its suppliers. A line belongs to the counterparty
/// of its group when it has one.
void WritePrices(ImportRun& run, const ArticleWriter& writer, PriceListWriter& lists, const SourceRow& row,
                 const QString& article) {
    Session& session = run.GetSession();
    const QString sourceCode = row.Text("codice");
    lists.BeginWorks(article);
    ovConnection& source = session.SourceConnection();
    Recordset rows =
        source.ExecuteWC("SELECT * from listini\rWHERE codicearti = " + LiteralOf(source, row.Value("codice")) +
                         "\rORDER BY datainizio");
    for (const SourceRow line(rows); !rows.Eof(); rows.MoveNext()) {
        const QString counterparty = line.IsBlank("gruppo") ? line.Text("codclifor") : line.Text("gruppo");
        const QVariant price = AmountOf(run, line, "prezzo");
        const QVariant discount = AmountOf(run, line, "sconto");
        const HistoryLine history{article,  line.Value("datainizio"), price,
                                  discount, line.Text("commento"),    line.Value("timestamp")};
        if (!counterparty.startsWith(u'F', Qt::CaseInsensitive)) {
            writer.Price(history);
            continue;
        }
        lists.Work({.work = modImport::GetNewCode(session, "LIS_LAV", "CDLAV", sourceCode, false),
                    .article = article,
                    .supplier = LookUp(session, "CON_TRO", "COFGE", counterparty, "CDCON"),
                    .validity = {line.Value("datainizio"), WithoutEmptyDay(DateOf(line, "datafine"))},
                    .scale = {line.Value("u_qta"), price, {discount, 0, 0}},
                    .created = line.Value("timestamp")});
        writer.Cost(history);
    }
}

RowOutcome ImportArticolo(ImportRun& run, ArticleWriter& writer, PriceListWriter& lists, const SourceRow& row) {
    const QString sourceCode = row.Text("codice");
    if (sourceCode.isEmpty()) {
        throw ImportError(QStringLiteral("colonna 'codice': il codice manca"));
    }
    const Facts facts{writer.CodeOf("ART_ICO", "CDART", sourceCode)};
    if (IsVariant(facts.code)) {
        return run.Skip("variante -C");
    }
    if (FillsCodes(run)) {
        return FillCodesOf(run, Articoli(), row, facts);
    }
    writer.Claim(facts.code, sourceCode);
    WritePrices(run, writer, lists, row, facts.code);
    const RowOutcome outcome = writer.Write(Articoli(), row, facts);
    writer.Texts(facts.code, row.Text("descrizion"));
    const double lastPrice = NumberOf(row, "uaprezzol");
    writer.Supplier(facts.code, row.Text("uafornitor"), lastPrice != 0 ? lastPrice : NumberOf(row, "costostand"));
    return outcome;
}

// --- Customer price lists -----------------------------------------------------------------------------------------

/// The list of a customer has the code of its counterparty.
struct CustomerList {
    QString sourceCode;
    ListHead head;
};

CustomerList OpenList(ImportRun& run, PriceListWriter& writer, const QString& sourceCode) {
    Session& session = run.GetSession();
    // Several may have the code, or the one whose it is may have another one in the column.
    QString code = JoinedParty(session, "COCGE", sourceCode).isEmpty()
                       ? QString()
                       : LookUp(session, "CON_TRO", "COCGE", sourceCode, "CDCON");
    QString name = code.isEmpty() ? QString() : LookUp(session, "CON_TRO", "CDCON", code, "CORAS");
    if (code.isEmpty()) {
        const Recordset found = session.Quadrix.ExecuteWC("SELECT CDCON, CORAS FROM " + run.FullName("CON_TRO") +
                                                          "\rWHERE COCGE = " + run.Quoted(sourceCode));
        if (!found.Eof()) {
            code = found.Value("CDCON").toString();
            name = found.Value("CORAS").toString();
        }
    }
    if (code.isEmpty()) {
        throw ImportError(
            QStringLiteral("colonna 'codclifor': nessuna controparte ha il codice cliente '%1'").arg(sourceCode));
    }
    const ListHead head = writer.Head(code, schema::defaults::SalesList, name);
    TargetRow customer(run, "CON_TRO");
    customer.Set("COLSF", code);
    customer.Update("WHERE CDCON = " + run.Quoted(code));
    return {sourceCode, head};
}

RowOutcome ImportPrezzo(ImportRun& run, PriceListWriter& writer, const SourceRow& row, CustomerList& list) {
    if (row.IsBlank("codicearti")) {
        throw ImportError(QStringLiteral("colonna 'codicearti': il codice manca"));
    }
    const Scale scale{row.Value("u_qta"), AmountOf(run, row, "u_prezzo")};
    if (!IsPrice(run, scale, {"u_qta"}, {"u_prezzo"})) {
        return run.Skip("riga senza prezzi");
    }
    const QString sourceCode = row.Text("codclifor");
    if (list.sourceCode != sourceCode) {
        run.Restores(list);
        list = OpenList(run, writer, sourceCode);
    }
    const QString article = ArticleWriter(run).CodeOf("ART_ICO", "CDART", row.Text("codicearti"));
    IsImported(run, article); // which tells one that is not; its price may come before it
    const qint64 articleRow =
        writer.Article(list.head, article, {row.Value("datainizio"), WithoutEmptyDay(DateOf(row, "datafine"))});
    return writer.AddScale(articleRow, scale);
}

/// Prices of customers are told by the first character of their code, as it stands.
void TellCodesOfAnotherForm(ImportRun& run) {
    const qint64 rows = run.GetSession().SourceConnection().ExecuteCommand(
        QStringLiteral("SELECT COUNT(*) FROM listini WHERE LEFT(codclifor,1) <> 'C' AND "
                       "UPPER(LEFT(LTRIM(codclifor),1)) = 'C'"));
    if (rows > 0) {
        run.Tell(QStringLiteral("PREZZI NON LETTI: righe di 'listini' il cui 'codclifor' comincia con 'c' o con uno "
                                "spazio, e non con 'C': %1")
                     .arg(rows));
    }
}

} // namespace

const Needs& ArticoliNeeds() {
    static const Needs needs = [] {
        Needs all{{&Articoli()},
                  {{Magart, {"codice", "uafornitor"}},
                   {Listini,
                    {"codicearti", "codclifor", "gruppo", "datainizio", "datafine", "prezzo", "sconto", "commento",
                     "timestamp", "u_qta"}}},
                  ArticleNeeds(),
                  {{.list = "LIS_LAV", .field = "CDLAV", .codeTable = "LAV_ORA"}}};
        const std::vector<TableNeed> lists = WorkListNeeds();
        all.writes.insert(all.writes.end(), lists.begin(), lists.end());
        return all;
    }();
    return needs;
}

void ImportArticoliArca2000(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportArticoliArca2000", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione articoli");
        run.Preflight(ArticoliNeeds());
        Empty(run, reset, ArticleEmptying());
        const QString where =
            singleCode.isEmpty() ? QString() : QString("\rWHERE codice LIKE " + run.Quoted(u'%' + singleCode + u'%'));
        ArticleWriter writer(run);
        PriceListWriter lists(run);
        const bool toTheEnd = run.Rows(
            {"Articoli", Magart, "codice", "SELECT COUNT(*) FROM magart" + where, "SELECT * FROM magart" + where},
            [&](const SourceRow& row) { return ImportArticolo(run, writer, lists, row); });
        if (toTheEnd) {
            lists.EndWorks();
        }
        run.Complete("Articoli importati correttamente!");
    });
}

const Needs& ListiniNeeds() {
    static const Needs needs = [] {
        Needs all{{},
                  {{Listini, {"codclifor", "codicearti", "datainizio", "datafine", "u_qta", "u_prezzo"}}},
                  PriceListNeeds()};
        all.writes.push_back({"CON_TRO", {"CDCON", "COCGE", "CORAS", "COLSF"}});
        return all;
    }();
    return needs;
}

void ImportListiniArca2000(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportListiniArca2000", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione listini");
        run.Preflight(ListiniNeeds());
        Empty(run, reset, PriceListEmptying());
        const QString where =
            QString("\rWHERE LEFT(codclifor,1) = 'C'") +
            (singleCode.isEmpty() ? QString() : QString("\rAND codclifor = " + run.Quoted(singleCode)));
        if (!run.IsPart()) {
            TellCodesOfAnotherForm(run);
        }
        PriceListWriter writer(run);
        CustomerList list;
        const bool toTheEnd = run.Rows({"Listini", Listini, "codicearti", "SELECT COUNT(*) FROM listini" + where,
                                        "SELECT * FROM  listini" + where + "\rORDER BY codclifor"},
                                       [&](const SourceRow& row) { return ImportPrezzo(run, writer, row, list); });
        if (toTheEnd) {
            writer.EndLists();
        }
        run.Complete("Listini importati correttamente!");
    });
}

} // namespace modImport_Arca2000
