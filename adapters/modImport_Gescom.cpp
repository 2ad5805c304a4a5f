// Gescom: a database, GESCOM unless the setting Databasename names another. Counterparties with destinations, carriers,
// articles, price lists; bills stand in modImport_Gescom_bills.cpp, documents in modImport_Gescom_documents.cpp.
// ARCLFR with its codes, kinds and names is known from installations, as are RIEMOV, MOVMAG and arcfas as far as the
// documents read them. Everything else, tables and columns, is this system's own reading in their style: two letters
// and the table's name.
// Known gaps: contacts, banks other than the counterparty's own account.

#include "adapters/modImport_Gescom.h"

#include "adapters/contract/Article.h"
#include "adapters/contract/Counterparty.h"
#include "adapters/contract/lookups.h"
#include "adapters/contract/Origin.h"
#include "adapters/contract/PriceList.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Gescom {

const contract::Origin& Entry();

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Ardest = QStringLiteral("ARDEST");
const QString VettoriTable = QStringLiteral("VETTORI");
const QString Articoli = QStringLiteral("ARTICOLI");
const QString ListiniTable = QStringLiteral("LISTINI");

// --- Mappings -----------------------------------------------------------------------------------------------------

/// The second line of a name: what the first leaves of the name column, and the column of its own.
Rule SecondName() {
    return {"from character 36 onward of the first, and the second", [](const RuleInput& input) {
                constexpr int firstLine = 35;
                const QString rest = input.row.Text("RAGCLFOR").mid(firstLine);
                const QString own = input.row.Text("RA2CLFOR");
                return RuleValue(own.isEmpty() ? rest : QString(rest + ' ' + own).trimmed());
            }};
}

const Mapping& Controparti() {
    static const Mapping mapping{
        "CON_TRO",
        Arclfr,
        {
            {"CDCON", "CODCLFOR", Code()},
            {"CORAS", "RAGCLFOR", First(35)},
            {"CORA2", "RAGCLFOR, RA2CLFOR", SecondName()},
            {"COINV", "", Today()},
            {"COANN", "ANNCLFOR", Is("S")},
            {"COCON", "", Constant(true)},
            {"COCLI", "FLAGCLFR", IsCustomer()},
            {"COSC1", "SC1CLFOR", CustomerOnly(RoundedTo(2))},
            {"COSC2", "SC2CLFOR", CustomerOnly(RoundedTo(2))},
            {"COCGE", "CODCLFOR", CustomerOnly(Text())},
            {"COFOR", "FLAGCLFR", IsSupplier()},
            {"COSF1", "SC1CLFOR", SupplierOnly(RoundedTo(2))},
            {"COSF2", "SC2CLFOR", SupplierOnly(RoundedTo(2))},
            {"COFGE", "CODCLFOR", SupplierOnly(Text())},
            {"COIND", "INDCLFOR", Text()},
            {"COCAP", "CAPCLFOR", Text()},
            {"COCIT", "LOCCLFOR", Text()},
            {"COPRO", "PROCLFOR", Text()},
            {"CONAZ", "NAZCLFOR", Country(Arclfr, "NAZCLFOR")},
            {"COLNG", "", Constant(schema::defaults::Language)},
            {"COZON", "ZONCLFOR", Translated(Arclfr, "ZONCLFOR")},
            {"COVAL", "VALCLFOR", Or(Translated(Arclfr, "VALCLFOR"), schema::defaults::Currency)},
            {"COFIS", "FISCLFOR", NotBlank(Text())},
            {"COIVA", "IVACLFOR", NotBlank(Text())},
            {"COESE", "ESECLFOR", ExemptVat(Arclfr, "ESECLFOR")},
            {"COTPF", "", Constant(schema::defaults::TaxTreatment)},
            {"COMOP", "PAGCLFOR", CustomerOnly(Translated(Arclfr, "PAGCLFOR"))},
            {"COMOA", "PAGCLFOR", SupplierOnly(Translated(Arclfr, "PAGCLFOR"))},
            {"COABI", "ABICLFOR", NotBlank(Digits(5))},
            {"COCAB", "CABCLFOR", NotBlank(Digits(5))},
            {"COCOC", "CCOCLFOR", NotBlank(Text())},
            {"COCIN", "CINCLFOR", NotBlank(Text())},
            {"COIBA", "IBACLFOR", NotBlank(WithoutBlanks())},
            {"COLSC", "LISCLFOR", CustomerOnly(Translated(Arclfr, "LISCLFOR"))},
            {"COLSF", "LISCLFOR", SupplierOnly(Translated(Arclfr, "LISCLFOR"))},
            {"COAGE", "AGECLFOR", Translated(Arclfr, "AGECLFOR")},
            {"COBLK", "", Constant(false)},
            {"CONOT", "NOTCLFOR", Text()},
        },
    };
    return mapping;
}

/// What a customer's row adds to a counterparty that is there already.
const Mapping& RuoloCliente() {
    static const Mapping mapping{
        "CON_TRO",
        Arclfr,
        {
            {"COCLI", "", Constant(true)},
            {"COSC1", "SC1CLFOR", RoundedTo(2)},
            {"COSC2", "SC2CLFOR", RoundedTo(2)},
            {"COCGE", "CODCLFOR", Text()},
        },
    };
    return mapping;
}

/// What a supplier's row adds to a counterparty that is there already.
const Mapping& RuoloFornitore() {
    static const Mapping mapping{
        "CON_TRO",
        Arclfr,
        {
            {"COFOR", "", Constant(true)},
            {"COSF1", "SC1CLFOR", RoundedTo(2)},
            {"COSF2", "SC2CLFOR", RoundedTo(2)},
            {"COFGE", "CODCLFOR", Text()},
        },
    };
    return mapping;
}

const Mapping& Destinazioni() {
    static const Mapping mapping{
        "CON_SED",
        Ardest,
        {
            {"CDCON", "CODCLFOR", Code()},
            {"CDSED", "PRGDEST", Digits(3)},
            {"SETIP", "", Constant("CO")},
            {"SERAS", "RAGDEST", Text()},
            {"SEIND", "INDDEST", Text()},
            {"SECAP", "CAPDEST", WhenNotBlank("LOCDEST", Text())},
            {"SECIT", "LOCDEST", WhenNotBlank("LOCDEST", Text())},
            {"SEPRO", "PRODEST", Text()},
            {"SENAZ", "", Constant(schema::defaults::Country)},
            {"SEDEF", "", Constant(false)},
        },
    };
    return mapping;
}

const Mapping& Vettori() {
    static const Mapping mapping{
        "CON_TRO",
        VettoriTable,
        {
            {"CDCON", "CDVETTOR", Code()},
            {"CORAS", "DSVETTOR", First(35)},
            {"CORA2", "DSVETTOR", From(36)},
            {"COINV", "", Today()},
            {"COANN", "", Constant(false)},
            {"COCON", "", Constant(true)},
            {"COCLI", "", Constant(false)},
            {"COFOR", "", Constant(false)},
            {"COVET", "", Constant(true)},
            {"COIND", "INVETTOR", Text()},
            {"COCAP", "CPVETTOR", Text()},
            {"COCIT", "LOVETTOR", Text()},
            {"COPRO", "PRVETTOR", Text()},
            {"CONAZ", "", Constant(schema::defaults::Country)},
            {"COLNG", "", Constant(schema::defaults::Language)},
            {"COVAL", "", Constant(schema::defaults::Currency)},
            {"COIVA", "PIVETTOR", NotBlank(Text())},
            {"COTPF", "", Constant(schema::defaults::TaxTreatment)},
            {"COBLK", "", Constant(false)},
        },
    };
    return mapping;
}

const Mapping& ArticoliMapping() {
    static const Mapping mapping{
        "ART_ICO",
        Articoli,
        {
            {"ARDES", "DSARTICO", First(100)},
            {"ARDE2", "D2ARTICO", First(100)},
            {"ARCDR", "DSARTICO", CodeAndText(100)},
            {"ARNOT", "NTARTICO", Text()},
            {"ARCLA", "TPARTICO", Choice({{"P", "PF"}, {"S", "SL"}}, "CM")},
            {"ARFAM", "FMARTICO", Translated(Articoli, "FMARTICO")},
            {"ARTPG", "", Constant(schema::defaults::ArticleKind)},
            {"ARLAM", "", Constant(false)},
            {"ARANN", "ANARTICO", Is("S")},
            {"ARUMS", "UMARTICO", TranslatedOrUpper(Articoli, "UMARTICO", schema::defaults::Unit)},
            {"ARUM2", "U2ARTICO", TranslatedOrUpper(Articoli, "UMARTICO", "")},
            {"ARCOE", "FCARTICO", RoundedTo(6)},
            {"ARIVA", "IVARTICO", TranslatedOr(Articoli, "IVARTICO", schema::defaults::VatCode)},
            {"ARMAG", "", Constant(true)},
            {"ARMAD", "", Constant(schema::defaults::Warehouse)},
            {"ARSMN", "SMARTICO", RoundedTo(6)},
            {"ARLOR", "LRARTICO", RoundedTo(6)},
            {"ARGGA", "GGARTICO", RoundedTo(0)},
            {"ARPSN", "PSARTICO", RoundedTo(3)},
            {"ARCOS", "CSARTICO, CUARTICO", FirstNotZero()},
            {"ARPRZ", "PVARTICO", RoundedTo(6)},
            {"ARRIC", "PVARTICO, CSARTICO, CUARTICO", MarkUp()},
            {"ARSCO", "S1ARTICO", RoundedTo(2)},
        },
    };
    return mapping;
}

QString WhereCode(const ImportRun& run, const QString& column, const QString& singleCode) {
    return singleCode.isEmpty() ? QString() : QString("\rWHERE " + column + " = " + run.Quoted(singleCode));
}

// --- Counterparties -----------------------------------------------------------------------------------------------

bool IsCustomerRow(const SourceRow& row) {
    const QString kind = row.Text("FLAGCLFR").toUpper();
    if (kind != "C" && kind != "F") {
        throw ImportError(QStringLiteral("colonna 'FLAGCLFR': '%1' non è C (cliente) né F (fornitore)").arg(kind));
    }
    return kind == "C";
}

/// A legal person that is there already only gains the role that the source row adds.
RowOutcome GainRole(ImportRun& run, const SourceRow& row, const Facts& facts) {
    TargetRow target(run, "CON_TRO");
    (facts.customer ? RuoloCliente() : RuoloFornitore()).Apply(target, run.GetSession(), row, facts);
    target.Update("WHERE CDCON = " + run.Quoted(facts.code));
    return RowOutcome::Updated;
}

void WriteDestinations(ImportRun& run, const CounterpartyWriter& writer, const SourceRow& row, const Facts& facts) {
    ForEachChild(run.GetSession(),
                 "SELECT * FROM ARDEST\rWHERE CODCLFOR = " + run.Quoted(row.Text("CODCLFOR")) +
                     "\r  AND FLAGCLFR = " + run.Quoted(row.Text("FLAGCLFR")) + "\rORDER BY PRGDEST",
                 Ardest, "PRGDEST", [&](const SourceRow& destination) {
                     if (!destination.IsBlank("INDDEST")) {
                         TargetRow target = writer.NewRow("CON_SED");
                         Destinazioni().Apply(target, run.GetSession(), destination, facts);
                         writer.Branch(target);
                     }
                 });
}

RowOutcome ImportControparte(ImportRun& run, const SourceRow& row) {
    const CounterpartyWriter writer(run, {});
    const bool customer = IsCustomerRow(row);
    const Placement place =
        writer.Place({Arclfr, "CODCLFOR", row.Text("CODCLFOR"), customer, row.Text("IVACLFOR"), row.Text("FISCLFOR")});
    const Facts facts{place.code, customer};
    if (place.known) {
        return GainRole(run, row, facts);
    }
    TargetRow target(run, "CON_TRO");
    Controparti().Apply(target, run.GetSession(), row, facts);
    target.Insert();
    const Owner owner{"CON_TRO", facts.code};
    writer.Telephone(owner, "Ufficio", row.Text("TELCLFOR"));
    writer.Telephone(owner, "Ufficio 2", row.Text("TE2CLFOR"));
    writer.Telephone(owner, "Fax (uff.)", row.Text("FAXCLFOR"));
    writer.Telephone(owner, "Cellulare", row.Text("CELCLFOR"));
    writer.Mail(owner, "@ Principale", row.Text("EMACLFOR"));
    writer.WebSite(owner, row.Text("WEBCLFOR"));
    WriteDestinations(run, writer, row, facts);
    return RowOutcome::Inserted;
}

const Needs& ContropartiNeeds() {
    static const Needs needs{
        {&Controparti(), &RuoloCliente(), &RuoloFornitore(), &Destinazioni()},
        {{Arclfr, {"TELCLFOR", "TE2CLFOR", "FAXCLFOR", "CELCLFOR", "EMACLFOR", "WEBCLFOR"}}, {Ardest, {"FLAGCLFR"}}},
        CounterpartyNeeds()};
    return needs;
}

void ImportContropartiGescom(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportContropartiGescom", singleCode);
    run.Guard([&] {
        run.Announce("Inizio importazione controparti");
        run.Preflight(ContropartiNeeds());
        run.Truncate(reset, CounterpartyTables());
        const QString where = WhereCode(run, "CODCLFOR", singleCode);
        run.Rows({"Controparti", Arclfr, "CODCLFOR", "SELECT COUNT(*) FROM ARCLFR" + where,
                  "SELECT * FROM ARCLFR" + where + "\rORDER BY FLAGCLFR, CODCLFOR"},
                 [&](const SourceRow& row) { return ImportControparte(run, row); });
        run.Complete("Controparti importate correttamente!");
    });
}

// --- Carriers -----------------------------------------------------------------------------------------------------

/// The row of SYS_IMP that tells what became of a carrier.
QString TranslationOf(const Session& session, const QString& carrier) {
    return Equals(session, "TBNAM", VettoriTable) + " AND " + Equals(session, "TBFLD", "CDVETTOR") + " AND " +
           Equals(session, "TBOLD", carrier);
}

/// The code that a carrier has in SYS_IMP; empty when it has none. A code that an earlier import gave it may have gone
/// to a customer or supplier since, when the counterparties were emptied and numbered anew: then it is none.
QString CodeBefore(Session& session, const QString& carrier) {
    const QString code = modImport::GetNewCode(session, VettoriTable, "CDVETTOR", carrier, false);
    const bool byImport =
        IdWhere(session, "SYS_IMP",
                TranslationOf(session, carrier) + " AND " + Equals(session, "USINS", "SYSTEM_IMPORT")) != 0;
    const bool isCarrier = mod_ovTools::ToBoolean(session.Quadrix.GetDbValue("CON_TRO", "CDCON", code, "COVET", true));
    return byImport && !isCarrier ? QString() : code;
}

void StoreCode(ImportRun& run, const QString& carrier, const QString& code) {
    Session& session = run.GetSession();
    const qint64 known = IdWhere(session, "SYS_IMP", TranslationOf(session, carrier));
    TargetRow row(run, "SYS_IMP");
    row.Set("TBNEW", code);
    if (known != 0) {
        row.Update("WHERE " + Equals("RECORD_ID", known));
        return;
    }
    row.Set("TBNAM", VettoriTable);
    row.Set("TBFLD", "CDVETTOR");
    row.Set("TBOLD", carrier);
    row.Insert();
}

RowOutcome ImportVettore(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    const CounterpartyWriter writer(run, {});
    const QString carrier = row.Text("CDVETTOR");
    const QString before = CodeBefore(session, carrier);
    Facts facts{writer.FindByIdentity(row.Text("PIVETTOR"), {})};
    if (facts.code.isEmpty()) {
        facts.code = before.isEmpty() ? writer.NextCode() : before;
    }
    const bool known = writer.Exists(facts.code);
    TargetRow target(run, "CON_TRO");
    if (known) {
        target.Set("COVET", true);
        target.Update("WHERE CDCON = " + run.Quoted(facts.code));
    } else {
        Vettori().Apply(target, session, row, facts);
        target.Insert();
        writer.Telephone({"CON_TRO", facts.code}, "Ufficio", row.Text("TEVETTOR"));
    }
    if (facts.code != before) {
        StoreCode(run, carrier, facts.code);
    }
    return known ? RowOutcome::Updated : RowOutcome::Inserted;
}

const Needs& VettoriNeeds() {
    static const Needs needs = [] {
        Needs all{{&Vettori()}, {{VettoriTable, {"TEVETTOR"}}}, CounterpartyNeeds()};
        all.writes.push_back({"SYS_IMP", {"TBNAM", "TBFLD", "TBOLD", "TBNEW"}});
        return all;
    }();
    return needs;
}

/// Carriers follow the counterparties under the same button, which has emptied the tables: nothing is emptied here.
void ImportVettoriGescom(Session& session, const QString& singleCode, bool /*reset*/) {
    ImportRun run(session, Module, "ImportVettoriGescom", singleCode);
    run.Guard([&] {
        if (!run.IsSingle()) {
            run.Log("Inizio importazione vettori"); // behind the log of the counterparties
        }
        run.Preflight(VettoriNeeds());
        const QString where = WhereCode(run, "CDVETTOR", singleCode);
        run.Rows({"Vettori", VettoriTable, "CDVETTOR", "SELECT COUNT(*) FROM VETTORI" + where,
                  "SELECT * FROM VETTORI" + where + "\rORDER BY CDVETTOR"},
                 [&](const SourceRow& row) { return ImportVettore(run, row); });
        run.Complete("Vettori importati correttamente!");
    });
}

// --- Articles -----------------------------------------------------------------------------------------------------

void LinkSupplier(ImportRun& run, const ArticleWriter& writer, const SourceRow& row, const QString& article) {
    const QString code = row.Text("FOARTICO");
    if (code.isEmpty()) {
        return;
    }
    const double cost = NumberOf(row, "CSARTICO");
    const QString supplier = writer.Supplier(article, code, cost != 0 ? cost : NumberOf(row, "CUARTICO"));
    if (supplier.isEmpty()) {
        run.Log(QStringLiteral("FORNITORE NON TROVATO: %1: '%2'").arg(run.RowKey(), code));
    } else if (!row.IsBlank("CFARTICO")) {
        writer.CodeAtCounterparty(article, row.Text("CFARTICO"), supplier);
    }
}

RowOutcome ImportArticolo(ImportRun& run, const SourceRow& row) {
    const ArticleWriter writer(run);
    const Facts facts{ArticleOf(run, row.Text("CDARTICO"))};
    const RowOutcome outcome = writer.Write(ArticoliMapping(), row, facts);
    writer.Texts(facts.code, row.Text("DSARTICO"));
    LinkSupplier(run, writer, row, facts.code);
    if (!row.IsBlank("UBARTICO")) {
        writer.Location(facts.code, row.Text("UBARTICO"));
    }
    return outcome;
}

const Needs& ArticoliNeeds() {
    static const Needs needs = [] {
        Needs all{{&ArticoliMapping()}, {{Articoli, {"CDARTICO", "FOARTICO", "CFARTICO", "UBARTICO"}}}, ArticleNeeds()};
        all.writes.push_back({"ART_COD", {"CDART", "CDCOD", "COTIP", "COTPC", "COCON"}});
        all.writes.push_back({"UBI_MAG", {"CDMAG", "CDUBI", "UBDES"}});
        all.writes.push_back({"UBI_ART", {"CDART", "CDUBI", "UAMAG", "UADEF"}});
        return all;
    }();
    return needs;
}

void ImportArticoliGescom(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportArticoliGescom", singleCode);
    run.Guard([&] {
        run.Announce("Inizio importazione articoli");
        run.Preflight(ArticoliNeeds());
        EmptyArticles(run, reset);
        const QString where = WhereCode(run, "CDARTICO", singleCode);
        run.Rows({"Articoli", Articoli, "CDARTICO", "SELECT COUNT(*) FROM ARTICOLI" + where,
                  "SELECT * FROM ARTICOLI" + where + "\rORDER BY CDARTICO"},
                 [&](const SourceRow& row) { return ImportArticolo(run, row); });
        run.Complete("Articoli importati correttamente!");
    });
}

// --- Price lists --------------------------------------------------------------------------------------------------

QString DirectionOf(const SourceRow& row) {
    const QString direction = row.Text("TPLISTIN").toUpper();
    if (direction != schema::defaults::SalesList && direction != schema::defaults::PurchaseList) {
        throw ImportError(QStringLiteral("colonna 'TPLISTIN': '%1' non è V (vendite) né A (acquisti)").arg(direction));
    }
    return direction;
}

RowOutcome ImportPrezzo(ImportRun& run, const SourceRow& row) {
    const PriceListWriter writer(run);
    const QString list = row.Text("CDLISTIN");
    writer.Head(list, DirectionOf(row), row.Text("DSLISTIN"));
    run.KeepWritten(); // the head serves the rows that follow too
    const qint64 article =
        writer.Article(list, ArticleOf(run, row.Text("ARLISTIN")), {DateOf(row, "DILISTIN"), DateOf(row, "DFLISTIN")});
    const auto number = [&row](const QString& column) {
        return row.IsBlank(column) ? QVariant() : QVariant(NumberOf(row, column));
    };
    writer.AddScale(article, {number("QTLISTIN"), number("PRLISTIN"), {number("S1LISTIN"), number("S2LISTIN"), {}}});
    return RowOutcome::Inserted;
}

const Needs& ListiniNeeds() {
    static const Needs needs{{},
                             {{ListiniTable,
                               {"CDLISTIN", "DSLISTIN", "TPLISTIN", "ARLISTIN", "DILISTIN", "DFLISTIN", "QTLISTIN",
                                "PRLISTIN", "S1LISTIN", "S2LISTIN"}}},
                             PriceListNeeds()};
    return needs;
}

void ImportListiniGescom(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportListiniGescom", singleCode);
    run.Guard([&] {
        run.Announce("Inizio importazione listini");
        run.Preflight(ListiniNeeds());
        EmptyPriceLists(run, reset);
        const QString where = WhereCode(run, "CDLISTIN", singleCode);
        run.Rows({"Listini", ListiniTable, "ARLISTIN", "SELECT COUNT(*) FROM LISTINI" + where,
                  "SELECT * FROM LISTINI" + where + "\rORDER BY CDLISTIN, ARLISTIN, DILISTIN"},
                 [&](const SourceRow& row) { return ImportPrezzo(run, row); });
        run.Complete("Listini importati correttamente!");
    });
}

} // namespace

QString ArticleOf(ImportRun& run, const QString& sourceCode) {
    return ArticleWriter(run).CodeOf(Articoli, "CDARTICO", sourceCode);
}

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Gescom",
        Module,
        {"SQL Server", sourceSettings::Server("GESCOM")},
        {{
            {Shown::Yes, ""},                          // Cli
            {Shown::Yes, ""},                          // Art
            {Shown::Yes, "Importa Distinte Base"},     // Dis
            {Shown::Yes, "Importa DDT Consultazione"}, // Doc
            {Shown::No, ""},                           // Acq
            {Shown::No, ""},                           // Saldi
            {Shown::No, ""},                           // Piano
            {Shown::Keep, ""},                         // Disegni
        }},
        Shown::Keep,
        {
            {Button::Cli, "ImportContropartiGescom", ImportContropartiGescom, ContropartiNeeds()},
            {Button::Cli, "ImportVettoriGescom", ImportVettoriGescom, VettoriNeeds()},
            {Button::Art, "ImportArticoliGescom", ImportArticoliGescom, ArticoliNeeds()},
            {Button::Dis, "ImportDistinteGescom", ImportDistinteGescom, DistinteNeeds()},
            {Button::Doc, "ImportDocumentiGescom", ImportDocumentiGescom, DocumentiNeeds()},
            {std::nullopt, "ImportListiniGescom", ImportListiniGescom, ListiniNeeds()},
        },
    };
    return origin;
}

} // namespace modImport_Gescom
