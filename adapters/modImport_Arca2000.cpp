// Arca 2000: FoxPro tables in the folder of the setting Databasename. Counterparties, articles, customer price lists,
// chart of accounts.
// anagrafe, destinaz, magart and listini and their columns are known from installations; pianocon and its columns are
// this system's own reading of the chart of accounts. Names do not depend on case; texts are padded with blanks. The
// street stands in the first 25 characters of "indirizzo", the house number behind them.
// Known gaps: telex, zone, agents, language and country of "anagrafe" are not carried over.

#include "adapters/contract/Article.h"
#include "adapters/contract/BaseTable.h"
#include "adapters/contract/Counterparty.h"
#include "adapters/contract/lookups.h"
#include "adapters/contract/Mapping.h"
#include "adapters/contract/Origin.h"
#include "adapters/contract/PriceList.h"
#include "adapters/contract/TargetRow.h"
#include "core/modImport.h"
#include "core/modMain.h"
#include "core/schemaDefaults.h"

#include <QRegularExpression>

using namespace contract;
using namespace contract::rules;

namespace modImport_Arca2000 {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Arca2000");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Anagrafe = QStringLiteral("anagrafe");
const QString Destinaz = QStringLiteral("destinaz");
const QString Magart = QStringLiteral("magart");
const QString Listini = QStringLiteral("listini");
const QString Pianocon = QStringLiteral("pianocon");

// --- Mappings -----------------------------------------------------------------------------------------------------

const Mapping& Controparti() {
    static const Mapping mapping{
        "CON_TRO",
        Anagrafe,
        {
            {"CDCON", "codice", Code()},
            {"CORAS", "descrizion, supragsoc", First(35)},
            {"CORA2", "descrizion, supragsoc", From(36)},
            {"DTINS", "timestamp", MomentOrNow()},
            {"COINV", "", Today()},
            {"COANN", "", Constant(false)},
            {"COCON", "", Constant(true)},
            {"COCLI", "codice", IsCustomer()},
            {"COMAC", "contrpart", CustomerOnly(Text())},
            {"COSC1", "sconto1", CustomerOnly(LeadingNumber())},
            {"COCGE", "codice", CustomerOnly(Text())},
            {"COFOR", "codice", IsSupplier()},
            {"COMAF", "contrpart", SupplierOnly(Text())},
            {"COSF1", "sconto1", SupplierOnly(LeadingNumber())},
            {"COFGE", "codice", SupplierOnly(Text())},
            {"COIND", "indirizzo", NotBlank(FirstUpper(25))},
            {"CONRC", "indirizzo", NotBlank(Part(26, 5))},
            {"COCAP", "cap", WhenNotBlank("localita", Text())},
            {"COCIT", "localita", Text()},
            {"COPRO", "prov", Text()},
            {"CONAZ", "", Constant("ITA")},
            {"COLNG", "", Constant("IT")},
            {"COVAL", "valuta", Text()},
            {"COFIS", "codfiscale", NotBlank(Text())},
            {"COIVA", "partiva", NotBlank(Text())},
            {"COESE", "aliiva", ExemptVat("anagrafe", "aliva")},
            {"COTPF", "", Constant("RI")},
            {"COMOP", "pag", CustomerOnly(Translated("anagrafe", "pag"))},
            {"COMOA", "pag", SupplierOnly(Translated("anagrafe", "pag"))},
            // Bank receipts and every other kind of payment term keep the bank coordinates alike.
            {"COABI", "abicab", NotBlank(First(5))},
            {"COCAB", "abicab", NotBlank(From(6))},
            {"COCOC", "contocorr", NotBlank(Text())},
            {"COCIN", "cb_cin_it", NotBlank(Text())},
            {"COBIC", "cb_bic", NotBlank(Text())},
            {"COBAN", "banca", Translated("anagrafe", "banca")},
            {"COCCC", "classe", Translated("anagrafe", "classe")},
            {"COBLK", "", Constant(false)},
            {"CONOT", "note", Text()},
        },
    };
    return mapping;
}

/// What a customer's row adds to a counterparty that is there already.
const Mapping& RuoloCliente() {
    static const Mapping mapping{
        "CON_TRO",
        Anagrafe,
        {
            {"COCLI", "", Constant(true)},
            {"COMAC", "contrpart", Text()},
            {"COSC1", "sconto1", LeadingNumber()},
            {"COCGE", "codice", Text()},
        },
    };
    return mapping;
}

/// What a supplier's row adds to a counterparty that is there already.
const Mapping& RuoloFornitore() {
    static const Mapping mapping{
        "CON_TRO",
        Anagrafe,
        {
            {"COFOR", "", Constant(true)},
            {"COMAF", "contrpart", Text()},
            {"COSF1", "sconto1", LeadingNumber()},
            {"COFGE", "codice", Text()},
        },
    };
    return mapping;
}

const Mapping& Sedi() {
    static const Mapping mapping{
        "CON_SED",
        Destinaz,
        {
            {"CDCON", "codicecf", Code()},
            {"CDSED", "codicedes", ThreeDigits()},
            {"SERAS", "ragionesoc", Text()},
            {"SETIP", "", Constant("CO")},
            {"SEIND", "indirizzo", FirstUpper(25)},
            {"SENRC", "indirizzo", Part(26, 5)},
            {"SECAP", "cap", WhenNotBlank("localita", Text())},
            {"SECIT", "localita", WhenNotBlank("localita", Text())},
            {"SEPRO", "provincia", Text()},
            {"SENAZ", "", Constant("ITA")},
            {"SERIF", "personarif", Text()},
        },
    };
    return mapping;
}

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
    return {
        "translated through SYS_IMP (magart, gruppo); \"CM\" when it begins with F, \"PF\" with C; else \"CM\", logged",
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
}

/// The customer that an article belongs to: the last one who bought it, else the one of its group.
Rule CustomerOfArticle() {
    return {"CDCON of the CON_TRO whose COCGE is the first, else the second when it begins with C",
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
            {"ARCOE", "fatt1", RoundedTo(6)},
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

/// The kind of an account: the counterpart of its letter in Arca 2000.
Rule AccountNature() {
    return {"the letter P, E, C, F or O in upper case",
            [](const RuleInput& input) { return RuleValue(input.Text().toUpper()); }};
}

/// The parent: the ledger named by the row, else the code without its last level (2 digits group, 4 ledger, 9 account).
Rule ParentAccount() {
    return {"the first; when blank, the first 4 characters of an account and the first 2 of a ledger",
            [](const RuleInput& input) -> RuleValue {
                const QString ledger = input.row.Text("mastro");
                const QString code = input.row.Text("codice");
                constexpr int groupSize = 2;
                constexpr int ledgerSize = 4;
                return !ledger.isEmpty()          ? ledger
                       : code.size() > ledgerSize ? code.left(ledgerSize)
                       : code.size() > groupSize  ? code.left(groupSize)
                                                  : QString();
            }};
}

const Mapping& PianoConti() {
    static const Mapping mapping{
        "PIA_CON",
        Pianocon,
        {
            {"CDCNT", "codice", Text()},
            {"PCDES", "descrizion", Text()},
            {"PCMAS", "mastro, codice", ParentAccount()},
            {"PCTIP", "tipo", AccountNature()},
            {"PCNAT", "tipo", AccountNature()},
            {"PCBIL", "sezione", Text()},
            {"PCLEV", "livello", RoundedTo(0)},
            {"PCDET", "livello", Is("3")},
            {"PCRAG", "raggr", Text()},
        },
    };
    return mapping;
}

// --- Counterparties -----------------------------------------------------------------------------------------------

bool IsCustomerCode(const QString& code) { return code.startsWith(u'C', Qt::CaseInsensitive); }

/// Customers keep the number of their code, suppliers are numbered after the highest code present.
QString AssignCode(ImportRun& run, const CounterpartyWriter& writer, const QString& sourceCode) {
    const QString known =
        modImport::GetNewCode(run.GetSession(), Anagrafe, QStringLiteral("codice"), sourceCode, false);
    if (!known.isEmpty()) {
        return known;
    }
    if (!IsCustomerCode(sourceCode)) {
        return writer.NextCode();
    }
    bool isNumber = false;
    const qint64 number = sourceCode.mid(1).toLongLong(&isNumber);
    if (!isNumber) {
        throw ImportError(
            QStringLiteral("colonna 'codice': dopo la prima lettera '%1' non è un numero").arg(sourceCode));
    }
    return QStringLiteral("%1").arg(number, 6, 10, QLatin1Char('0'));
}

/// A legal person that is there already only gains the role that the source row adds.
RowOutcome GainRole(ImportRun& run, const SourceRow& row, const QString& code) {
    const bool supplier = row.Text("codice").startsWith(u'F', Qt::CaseInsensitive);
    TargetRow target(run, "CON_TRO");
    (supplier ? RuoloFornitore() : RuoloCliente()).Apply(target, run.GetSession(), row, {});
    target.Update(QStringLiteral("WHERE CDCON = ") + run.Quoted(code));
    return RowOutcome::Updated;
}

void WriteContact(const CounterpartyWriter& writer, const SourceRow& row, const QString& code) {
    if (!row.IsBlank("persdacont")) {
        writer.Contact(code, row.Text("persdacont"));
    }
}

void WriteTelephones(const CounterpartyWriter& writer, const SourceRow& row, const Owner& owner) {
    writer.Telephone(owner, "Ufficio", row.Text("telefono"));
    writer.Telephone(owner, "Fax (uff.)", row.Text("fax"));
    writer.Telephone(owner, "Ufficio 2", row.Text("telefono2"));
    writer.Telephone(owner, "Cellulare", row.Text("telefono3"));
}

/// The address of a department: a contact of its own when the operator wants it so, else on the counterparty.
void WriteDepartmentMail(const CounterpartyWriter& writer, const Owner& owner, const QString& address, bool asContact,
                         const QString& department, const QString& label) {
    if (address.isEmpty()) {
        return;
    }
    if (asContact) {
        writer.Mail(writer.Contact(owner.key, department), "@ Principale", address);
    } else {
        writer.Mail(owner, label, address);
    }
}

void WriteAddresses(const CounterpartyWriter& writer, const SourceRow& row, const Owner& owner, bool mailsToContacts) {
    writer.WebSite(owner, row.Text("url"));
    writer.Mail(owner, "@ Principale", row.Text("email"));
    writer.Mail(owner, mailsToContacts ? "@ Principale" : "@ Amministrazione", row.Text("emailamm"));
    WriteDepartmentMail(writer, owner, row.Text("emailven"), mailsToContacts, "VENDITE", "@ Ufficio");
    WriteDepartmentMail(writer, owner, row.Text("emailacq"), mailsToContacts, "ACQUISTI", "@ Magazzino");
}

void WriteBranches(ImportRun& run, const CounterpartyWriter& writer, const SourceRow& row, const Facts& facts) {
    Session& session = run.GetSession();
    const QString defaultBranch = row.Text("destdiv");
    Recordset rows = session.SourceConnection().ExecuteWC("SELECT * FROM destinaz\rWHERE codicecf = " +
                                                          run.Quoted(row.Text("codice")));
    for (const SourceRow branch(rows); !rows.Eof(); rows.MoveNext()) {
        if (branch.IsBlank("indirizzo")) {
            continue;
        }
        TargetRow target = writer.NewRow("CON_SED");
        Sedi().Apply(target, session, branch, facts);
        // Which branch is the default stands in the counterparty's row, which a mapping of the branch does not see.
        target.Set("SEDEF", !defaultBranch.isEmpty() && defaultBranch == branch.Text("codicedes"));
        const Owner owner = writer.Branch(target);
        writer.Telephone(owner, "Ufficio", branch.Text("telefono"));
        writer.Telephone(owner, "Fax (uff.)", branch.Text("fax"));
    }
}

/// A supplier without VAT number and tax code is recognised by its code in the source, so that a second run does not
/// number it anew. Empty when it is not there yet.
QString SupplierImportedBefore(ImportRun& run, const SourceRow& row) {
    if (IsCustomerCode(row.Text("codice")) || !row.IsBlank("partiva") || !row.IsBlank("codfiscale")) {
        return {};
    }
    return LookUp(run.GetSession(), "CON_TRO", "COFGE", row.Text("codice"), "CDCON");
}

RowOutcome ImportControparte(ImportRun& run, const SourceRow& row, bool mailsToContacts) {
    const QString sourceCode = row.Text("codice");
    const QVariant created = row.IsBlank("timestamp") ? QVariant() : row.Value("timestamp");
    const CounterpartyWriter writer(run, created);
    const QString same = writer.FindByIdentity(row.Text("partiva"), row.Text("codfiscale"));
    if (!same.isEmpty()) {
        return GainRole(run, row, same);
    }
    if (const QString before = SupplierImportedBefore(run, row); !before.isEmpty()) {
        return GainRole(run, row, before);
    }
    const Facts facts{AssignCode(run, writer, sourceCode), IsCustomerCode(sourceCode)};
    if (writer.Exists(facts.code)) {
        run.Log("CONTROPARTE DOPPIA: " + facts.code);
        return GainRole(run, row, facts.code);
    }
    TargetRow target(run, "CON_TRO");
    Controparti().Apply(target, run.GetSession(), row, facts);
    target.Insert();
    const Owner owner{"CON_TRO", facts.code};
    WriteContact(writer, row, facts.code);
    WriteTelephones(writer, row, owner);
    WriteAddresses(writer, row, owner, mailsToContacts);
    WriteBranches(run, writer, row, facts);
    return RowOutcome::Inserted;
}

const Needs& ContropartiNeeds() {
    static const Needs needs = [] {
        Needs all{{&Controparti(), &RuoloCliente(), &RuoloFornitore(), &Sedi()},
                  {{Anagrafe,
                    {"persdacont", "telefono", "fax", "telefono2", "telefono3", "url", "email", "emailamm", "emailven",
                     "emailacq", "destdiv"}},
                   {Destinaz, {"telefono", "fax"}}},
                  CounterpartyNeeds()};
        all.writes.push_back({"CON_SED", {"SEDEF"}});
        return all;
    }();
    return needs;
}

void ImportContropartiArca2000(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportContropartiArca2000", singleCode);
    run.Guard([&] {
        run.Announce("Inizio importazione controparti");
        run.Preflight(ContropartiNeeds());
        run.Truncate(reset, CounterpartyTables());
        const bool mailsToContacts = run.Ask("Vuoi riportare gli indirizzi mail della controparte nei riferimenti?");
        const QString where = singleCode.isEmpty() ? QString() : "\rWHERE codice = " + run.Quoted(singleCode);
        const ImportRun::Loop loop{"Controparti", Anagrafe, "codice", "SELECT COUNT(*) FROM anagrafe" + where,
                                   "SELECT * \rFROM anagrafe" + where + "\rORDER BY codice"};
        run.Rows(loop, [&](const SourceRow& row) { return ImportControparte(run, row, mailsToContacts); });
        run.Complete("Controparti importate correttamente!");
    });
}

// --- Articles -----------------------------------------------------------------------------------------------------

/// Variants, "-C" and one or two digits behind the code, are no articles of Quadrix.
bool IsVariant(const QString& code) {
    static const QRegularExpression variant(QStringLiteral("-C[0-9]{1,2}$"));
    constexpr int shortest = 3;
    return code.size() > shortest && variant.match(code.toUpper()).hasMatch();
}

/// Cost or price history of the article, and the work price list of its suppliers. A line belongs to the counterparty
/// of its group when it has one.
void WritePrices(ImportRun& run, const ArticleWriter& writer, const QString& sourceCode, const QString& article) {
    Session& session = run.GetSession();
    const PriceListWriter lists(run);
    Recordset rows = session.SourceConnection().ExecuteWC(
        "SELECT * from listini\rWHERE codicearti = " + run.Quoted(sourceCode) + "\rORDER BY datainizio");
    for (const SourceRow line(rows); !rows.Eof(); rows.MoveNext()) {
        const QString counterparty = line.IsBlank("gruppo") ? line.Text("codclifor") : line.Text("gruppo");
        const HistoryLine history{article,
                                  line.Value("datainizio"),
                                  line.Value("prezzo"),
                                  line.Value("sconto"),
                                  line.Text("commento"),
                                  line.Value("timestamp")};
        if (!counterparty.startsWith(u'F', Qt::CaseInsensitive)) {
            writer.Price(history);
            continue;
        }
        lists.Work(modImport::GetNewCode(session, "LIS_LAV", "CDLAV", sourceCode, false), article,
                   LookUp(session, "CON_TRO", "COFGE", counterparty, "CDCON"),
                   {line.Value("datainizio"), line.Value("datafine")},
                   {line.Value("u_qta"), line.Value("prezzo"), {line.Value("sconto"), 0, 0}}, line.Value("timestamp"));
        writer.Cost(history);
    }
}

RowOutcome ImportArticolo(ImportRun& run, const SourceRow& row) {
    const QString sourceCode = row.Text("codice");
    const ArticleWriter writer(run);
    const Facts facts{writer.CodeOf("ART_ICO", "CDART", sourceCode)};
    if (IsVariant(facts.code)) {
        return RowOutcome::Skipped;
    }
    WritePrices(run, writer, sourceCode, facts.code);
    const RowOutcome outcome = writer.Write(Articoli(), row, facts);
    writer.Texts(facts.code, row.Text("descrizion"));
    const double lastPrice = NumberOf(row, "uaprezzol");
    writer.Supplier(facts.code, row.Text("uafornitor"), lastPrice != 0 ? lastPrice : NumberOf(row, "costostand"));
    return outcome;
}

const Needs& ArticoliNeeds() {
    static const Needs needs = [] {
        Needs all{{&Articoli()},
                  {{Magart, {"codice", "uafornitor"}},
                   {Listini,
                    {"codicearti", "codclifor", "gruppo", "datainizio", "datafine", "prezzo", "sconto", "commento",
                     "timestamp", "u_qta"}}},
                  ArticleNeeds()};
        const std::vector<TableNeed> lists = WorkListNeeds();
        all.writes.insert(all.writes.end(), lists.begin(), lists.end());
        return all;
    }();
    return needs;
}

void ImportArticoliArca2000(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportArticoliArca2000", singleCode);
    run.Guard([&] {
        run.Announce("Inizio importazione articoli");
        run.Preflight(ArticoliNeeds());
        EmptyArticles(run, reset);
        const QString where =
            singleCode.isEmpty() ? QString() : QString("\rWHERE codice LIKE " + run.Quoted(u'%' + singleCode + u'%'));
        run.Rows({"Articoli", Magart, "codice", "SELECT COUNT(*) FROM magart" + where, "SELECT * FROM magart" + where},
                 [&](const SourceRow& row) { return ImportArticolo(run, row); });
        run.Complete("Articoli importati correttamente!");
    });
}

// --- Customer price lists -----------------------------------------------------------------------------------------

/// The list of a customer has the code of its counterparty.
struct CustomerList {
    QString sourceCode;
    QString counterparty;
};

CustomerList OpenList(ImportRun& run, const PriceListWriter& writer, const QString& sourceCode) {
    Session& session = run.GetSession();
    QString code;
    QString name;
    {
        const Recordset found = session.Quadrix.ExecuteWC("SELECT CDCON, CORAS FROM " + run.FullName("CON_TRO") +
                                                          "\rWHERE COCGE = " + run.Quoted(sourceCode));
        if (found.Eof()) {
            throw ImportError(
                QStringLiteral("colonna 'codclifor': nessuna controparte ha il codice cliente '%1'").arg(sourceCode));
        }
        code = found.Value("CDCON").toString();
        name = found.Value("CORAS").toString();
    }
    writer.Head(code, schema::defaults::SalesList, name);
    TargetRow customer(run, "CON_TRO");
    customer.Set("COLSF", code);
    customer.Update("WHERE CDCON = " + run.Quoted(code));
    return {sourceCode, code};
}

RowOutcome ImportPrezzo(ImportRun& run, const SourceRow& row, CustomerList& list) {
    const PriceListWriter writer(run);
    const QString sourceCode = row.Text("codclifor");
    if (list.sourceCode != sourceCode) {
        list = OpenList(run, writer, sourceCode);
        run.KeepWritten();
    }
    const QString article = ArticleWriter(run).CodeOf("ART_ICO", "CDART", row.Text("codicearti"));
    const qint64 articleRow =
        writer.Article(list.counterparty, article, {row.Value("datainizio"), row.Value("datafine")});
    writer.AddScale(articleRow, {row.Value("u_qta"), row.Value("u_prezzo")});
    return RowOutcome::Inserted;
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
    run.Guard([&] {
        run.Announce("Inizio importazione listini");
        run.Preflight(ListiniNeeds());
        EmptyPriceLists(run, reset);
        const QString where =
            QString("\rWHERE LEFT(codclifor,1) = 'C'") +
            (singleCode.isEmpty() ? QString() : QString("\rAND codclifor = " + run.Quoted(singleCode)));
        CustomerList list;
        run.Rows({"Listini", Listini, "codicearti", "SELECT COUNT(*) FROM listini" + where,
                  "SELECT * FROM  listini" + where + "\rORDER BY codclifor"},
                 [&](const SourceRow& row) { return ImportPrezzo(run, row, list); });
        run.Complete("Listini importati correttamente!");
    });
}

// --- Chart of accounts --------------------------------------------------------------------------------------------

const Needs& PianoContiNeeds() {
    static const Needs needs{{&PianoConti()}, {}, {}};
    return needs;
}

void ImportPianoContiArca2000(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportPianoContiArca2000", singleCode);
    run.Guard([&] {
        run.Announce("Inizio importazione Piano dei Conti");
        run.Preflight(PianoContiNeeds());
        run.Truncate(reset, {"PIA_CON"});
        const QString where = singleCode.isEmpty() ? QString() : QString("\rWHERE codice = " + run.Quoted(singleCode));
        run.Rows({"Piano dei Conti", Pianocon, "codice", "SELECT COUNT(*) FROM pianocon" + where,
                  "SELECT * FROM pianocon" + where + "\rORDER BY codice"},
                 [&](const SourceRow& row) { return WriteByCode(run, PianoConti(), row, {row.Text("codice")}); });
        run.Complete("Piano dei Conti importato correttamente!");
    });
}

// --- Source and entry ---------------------------------------------------------------------------------------------

bool PrepareSource(Session& session, ovConnection& source) {
    const QString folder = modMain::GetAppConfig(session, "IMPORT", "Databasename", "");
    source.ConnectionString = "Driver={Microsoft Visual FoxPro Driver};Data Source=" + folder;
    source.ProviderType = Provider::VisualFoxPro;
    source.LookupColumns = QStringList{"anagrafe.codice", "destinaz.codicecf", "listini.codicearti"};
    return true;
}

} // namespace

const Origin& Entry() {
    static const Origin origin{
        "Arca 2000",
        Module,
        {"FoxPro", PrepareSource},
        {{
            {Shown::Yes, ""},                // Cli
            {Shown::Yes, ""},                // Art
            {Shown::No, ""},                 // Dis
            {Shown::No, ""},                 // Doc
            {Shown::No, ""},                 // Acq
            {Shown::No, ""},                 // Saldi
            {Shown::Yes, ""},                // Piano
            {Shown::Yes, "Importa Listini"}, // Disegni
        }},
        Shown::Yes,
        {
            {Button::Cli, "ImportContropartiArca2000", ImportContropartiArca2000, ContropartiNeeds()},
            {Button::Art, "ImportArticoliArca2000", ImportArticoliArca2000, ArticoliNeeds()},
            {Button::Piano, "ImportPianoContiArca2000", ImportPianoContiArca2000, PianoContiNeeds()},
            {Button::Disegni, "ImportListiniArca2000", ImportListiniArca2000, ListiniNeeds()},
        },
    };
    return origin;
}

} // namespace modImport_Arca2000
