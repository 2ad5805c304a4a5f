// Arca 2000: FoxPro tables in the folder of the setting Databasename. Counterparties and chart of accounts; articles
// and customer price lists stand in modImport_Arca2000_articles.cpp. anagrafe, destinaz, magart and listini and their
// columns are known from installations; pianocon and its columns are this system's own reading of the chart of
// accounts. Names do not depend on case; texts are padded with blanks. The street stands in the first 25 characters of
// "indirizzo", the house number behind them. Known gaps: telex, zone, agents, language and country of "anagrafe" are
// not carried over.

#include "adapters/origins/Arca2000/modImport_Arca2000.h"

#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/Mapping.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "adapters/contract/run/Origin.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Counterparty.h"
#include "adapters/contract/write/cutTexts.h"
#include "adapters/contract/write/missingCodes.h"
#include "adapters/contract/write/PriceList.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Arca2000 {

const contract::Origin& Entry();

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Anagrafe = QStringLiteral("anagrafe");
const QString Destinaz = QStringLiteral("destinaz");
const QString Pianocon = QStringLiteral("pianocon");

constexpr int StreetSize = 25; ///< characters of "indirizzo" that are the street
constexpr int NumberSize = 5;  ///< of those behind them that are the number of the house

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
            {"COIND", "indirizzo", NotBlank(FirstUpper(StreetSize))},
            {"CONRC", "indirizzo", NotBlank(Part(StreetSize + 1, NumberSize))},
            {"COCAP", "cap", WhenNotBlank("localita", Text())},
            {"COCIT", "localita", Text()},
            {"COPRO", "prov", Text()},
            {"CONAZ", "", Constant("ITA")},
            {"COLNG", "", Constant("IT")},
            {"COVAL", "valuta", Or(Text(), schema::defaults::Currency)},
            {"COFIS", "codfiscale", NotBlank(Text())},
            {"COIVA", "partiva", NotBlank(Text())},
            {"COESE", "aliiva", Exemption(Translated("anagrafe", "aliva"))},
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
            {"COMAC", "contrpart", NotBlank(Text())},
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
            {"COMAF", "contrpart", NotBlank(Text())},
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
            {"CDSED", "codicedes", Digits(3)},
            {"SERAS", "ragionesoc", Text()},
            {"SETIP", "", Constant("CO")},
            {"SEIND", "indirizzo", FirstUpper(StreetSize)},
            {"SENRC", "indirizzo", Part(StreetSize + 1, NumberSize)},
            {"SECAP", "cap", WhenNotBlank("localita", Text())},
            {"SECIT", "localita", WhenNotBlank("localita", Text())},
            {"SEPRO", "provincia", Text()},
            {"SENAZ", "", Constant("ITA")},
            {"SERIF", "personarif", Text()},
        },
    };
    return mapping;
}

/// The kind of an account: the counterpart of its letter in Arca 2000.
Rule AccountNature() {
    return {"la lettera P, E, C, F o O maiuscola",
            [](const RuleInput& input) { return RuleValue(input.Text().toUpper()); }};
}

/// The parent: the ledger named by the row, else the code without its last level (2 digits group, 4 ledger, 9 account).
Rule ParentAccount() {
    return {"la prima; se è vuota, i primi 4 caratteri di un conto e i primi 2 di un mastro",
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

Accounts PianoConti() {
    return {
        .frame = {.module = Module, .procedure = "ImportPianoContiArca2000"},
        .accounts =
            {
                .source = {.table = Pianocon, .key = "codice", .order = "codice"},
                .target = "PIA_CON",
                .code = "codice",
                .lines =
                    {
                        {"PCDES", "descrizion", Text()},
                        {"PCMAS", "mastro, codice", ParentAccount()},
                        {"PCTIP", "tipo", AccountNature()},
                        {"PCNAT", "tipo", AccountNature()},
                        {"PCBIL", "sezione", Text()},
                        {"PCLEV", "livello", RoundedTo(0)},
                        {"PCDET", "livello", Is("3")},
                        {"PCRAG", "raggr", Text()},
                    },
            },
    };
}

// --- Counterparties -----------------------------------------------------------------------------------------------

bool IsCustomerCode(const QString& code) { return code.startsWith(u'C', Qt::CaseInsensitive); }

/// Customers keep the number of their code, suppliers are numbered after the highest code present.
QString AssignCode(ImportRun& run, const CounterpartyRegister& parties, const QString& sourceCode) {
    const QString known =
        modImport::GetNewCode(run.GetSession(), Anagrafe, QStringLiteral("codice"), sourceCode, false);
    if (!known.isEmpty()) {
        return known;
    }
    if (!IsCustomerCode(sourceCode)) {
        return parties.NextCode();
    }
    bool isNumber = false;
    const qint64 number = sourceCode.mid(1).toLongLong(&isNumber);
    if (!isNumber) {
        throw ImportError(
            QStringLiteral("colonna 'codice': dopo la prima lettera '%1' non è un numero").arg(sourceCode));
    }
    return QStringLiteral("%1").arg(number, 6, 10, QLatin1Char('0'));
}

/// A row that makes a supplier where it is new is one too where it made the supplier itself; else its letter is an F.
bool AddsSupplier(ImportRun& run, const QString& sourceCode, const QString& party) {
    return sourceCode.startsWith(u'F', Qt::CaseInsensitive) ||
           (!IsCustomerCode(sourceCode) &&
            LookUp(run.GetSession(), "CON_TRO", "CDCON", party, "COFGE").compare(sourceCode, Qt::CaseInsensitive) == 0);
}

/// A legal person that is there already only gains the role that the source row adds.
RowOutcome GainRole(ImportRun& run, CounterpartyRegister& parties, const SourceRow& row, SourceIdentity source,
                    const QString& code) {
    const bool supplier = AddsSupplier(run, row.Text("codice"), code);
    TargetRow target(run, "CON_TRO");
    if (FillsCodes(run)) {
        const MissingCodes missing(run, "CON_TRO", {code, RoleOf(!supplier)});
        missing.Apply(Controparti(), row, target);
        return missing.Write(target);
    }
    source.roles = RoleOf(!supplier);
    const Joining joining = parties.Join(source, {code, true});
    if (joining.keeps.customer || joining.keeps.supplier) {
        static const CounterpartyMapping whole(Controparti());
        parties.NoteDiscounts(whole.Discounts(), row, {code, true}, joining);
        target.Set(supplier ? "COFOR" : "COCLI", true);
    } else {
        (supplier ? RuoloFornitore() : RuoloCliente()).Apply(target, run.GetSession(), row, {});
        parties.KeepDiscounts(target, source.roles, {code, true}, joining);
    }
    LeaveCodes(run);
    target.Update(QStringLiteral("WHERE CDCON = ") + run.Quoted(code));
    return RowOutcome::Updated;
}

void WriteContact(CounterpartyWriter& writer, const SourceRow& row, const Owner& owner) {
    if (!row.IsBlank("persdacont")) {
        writer.Contact(owner, row.Text("persdacont"));
    }
}

void WriteTelephones(const CounterpartyWriter& writer, const SourceRow& row, const Owner& owner) {
    writer.Telephone(owner, "Ufficio", row.Text("telefono"));
    writer.Telephone(owner, "Fax (uff.)", row.Text("fax"));
    writer.Telephone(owner, "Ufficio 2", row.Text("telefono2"));
    writer.Telephone(owner, "Cellulare", row.Text("telefono3"));
}

/// The address of a department: a contact of its own when the operator wants it so, else on the counterparty.
void WriteDepartmentMail(CounterpartyWriter& writer, const Owner& owner, const QString& address, bool asContact,
                         const QString& department, const QString& label) {
    if (address.isEmpty()) {
        return;
    }
    if (asContact) {
        writer.Mail(writer.Contact(owner, department), "@ Principale", address);
    } else {
        writer.Mail(owner, label, address);
    }
}

void WriteAddresses(CounterpartyWriter& writer, const SourceRow& row, const Owner& owner, bool mailsToContacts) {
    writer.WebSite(owner, row.Text("url"));
    writer.Mail(owner, "@ Principale", row.Text("email"));
    writer.Mail(owner, mailsToContacts ? "@ Principale" : "@ Amministrazione", row.Text("emailamm"));
    WriteDepartmentMail(writer, owner, row.Text("emailven"), mailsToContacts, "VENDITE", "@ Ufficio");
    WriteDepartmentMail(writer, owner, row.Text("emailacq"), mailsToContacts, "ACQUISTI", "@ Magazzino");
}

/// What stands behind the number of the house is written nowhere.
void TellCutStreet(ImportRun& run, const SourceRow& row) {
    const QString street = row.Text("indirizzo");
    const QString lost = RestOf(RestOf(street, StreetSize).trimmed(), NumberSize);
    TellCut(run, {"indirizzo"}, street.chopped(lost.size()), street);
}

void WriteBranches(ImportRun& run, CounterpartyWriter& writer, const SourceRow& row, const Owner& counterparty) {
    Session& session = run.GetSession();
    const QString defaultBranch = row.Text("destdiv");
    const QString query =
        "SELECT * FROM destinaz\rWHERE codicecf = " + LiteralOf(session.SourceConnection(), row.Value("codice"));
    ForEachChild(session, query, Destinaz, "codicecf, codicedes", [&](const SourceRow& branch) {
        if (branch.IsBlank("indirizzo")) {
            return;
        }
        TargetRow target = writer.NewRow("CON_SED");
        Sedi().Apply(target, session, branch, {counterparty.key});
        // Which branch is the default stands in the counterparty's row, which a mapping of the branch does not see.
        target.Set("SEDEF", !defaultBranch.isEmpty() && defaultBranch == branch.Text("codicedes"));
        const Owner owner = writer.Branch(counterparty, target);
        if (!owner.known) {
            TellCut(run, Sedi(), branch, target);
            TellCutStreet(run, branch);
        }
        writer.Telephone(owner, "Ufficio", branch.Text("telefono"));
        writer.Telephone(owner, "Fax (uff.)", branch.Text("fax"));
    });
}

RowOutcome ImportControparte(ImportRun& run, CounterpartyRegister& parties, const SourceRow& row,
                             bool mailsToContacts) {
    const QString sourceCode = row.Text("codice");
    if (sourceCode.isEmpty()) {
        throw ImportError(QStringLiteral("colonna 'codice': il codice manca"));
    }
    const Roles roles = RoleOf(IsCustomerCode(sourceCode));
    const QString name = QString(row.Text("descrizion") + ' ' + row.Text("supragsoc")).trimmed();
    const SourceIdentity source{
        Anagrafe, "codice", sourceCode, roles, name, row.Text("partiva"), row.Text("codfiscale")};
    parties.Meet(source);
    if (const QString same = parties.FindSame(source); !same.isEmpty()) {
        return GainRole(run, parties, row, source, same);
    }
    // A supplier's code does not tell its number: without this a second run would number it anew.
    if (const QString before = roles.supplier ? parties.FindByCode(source) : QString(); !before.isEmpty()) {
        return GainRole(run, parties, row, source, before);
    }
    const Placement place = parties.Settle(source, AssignCode(run, parties, sourceCode));
    if (place.known) {
        return GainRole(run, parties, row, source, place.code);
    }
    if (FillsCodes(run)) {
        return SkipGone(run);
    }
    parties.Join(source, place);
    TargetRow target(run, "CON_TRO");
    Controparti().Apply(target, run.GetSession(), row, {place.code, roles});
    parties.KeepDiscounts(target, roles, place, {});
    TellCut(run, Controparti(), row, target);
    TellCutStreet(run, row);
    TellLostZeros(run, target);
    target.Insert();
    CounterpartyWriter writer(run, row.IsBlank("timestamp") ? QVariant() : row.Value("timestamp"));
    const Owner owner = OwnerOf(place);
    WriteContact(writer, row, owner);
    WriteTelephones(writer, row, owner);
    WriteAddresses(writer, row, owner, mailsToContacts);
    WriteBranches(run, writer, row, owner);
    return RowOutcome::Inserted;
}

const Needs& ContropartiNeeds() {
    static const Needs needs = [] {
        Needs all{{&Controparti(), &RuoloCliente(), &RuoloFornitore(), &Sedi()},
                  {{Anagrafe,
                    {"persdacont", "telefono", "fax", "telefono2", "telefono3", "url", "email", "emailamm", "emailven",
                     "emailacq", "destdiv"}},
                   {Destinaz, {"telefono", "fax"}}},
                  CounterpartyNeeds(),
                  {{.list = Anagrafe, .field = "codice", .table = "CON_TRO", .column = "CDCON"}}};
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
        CounterpartyRegister parties(run, TakenCode::Update);
        Empty(run, reset, CounterpartyEmptying());
        const bool mailsToContacts = run.Ask("Vuoi riportare gli indirizzi mail della controparte nei riferimenti?");
        const QString where = singleCode.isEmpty() ? QString() : "\rWHERE codice = " + run.Quoted(singleCode);
        const ImportRun::Loop loop{"Controparti", Anagrafe, "codice", "SELECT COUNT(*) FROM anagrafe" + where,
                                   "SELECT * \rFROM anagrafe" + where + "\rORDER BY codice"};
        run.Rows(loop, [&](const SourceRow& row) { return ImportControparte(run, parties, row, mailsToContacts); });
        run.Complete("Controparti importate correttamente!");
    });
}

// --- Source and entry ---------------------------------------------------------------------------------------------

bool PrepareSource(Session& session, ovConnection& source) {
    sourceSettings::FoxProFolder()(session, source);
    source.LookupColumns = QStringList{"anagrafe.codice", "destinaz.codicecf", "listini.codicearti"};
    return true;
}

} // namespace

const Origin& Entry() {
    static const Origin origin{
        "Arca 2000",
        Module,
        {"FoxPro", {PrepareSource, Place::Folder}},
        Buttons("YYNNNNYY", {{Button::Disegni, "Importa Listini"}}),
        Shown::Yes,
        {
            {Button::Cli,
             "ImportContropartiArca2000",
             ImportContropartiArca2000,
             ContropartiNeeds(),
             CounterpartyEmptying(),
             {{"Vuoi riportare gli indirizzi mail della controparte nei riferimenti?"}}},
            {Button::Art, "ImportArticoliArca2000", ImportArticoliArca2000, ArticoliNeeds(), ArticleEmptying()},
            ProcedureOf(Button::Piano, PianoConti()),
            {Button::Disegni, "ImportListiniArca2000", ImportListiniArca2000, ListiniNeeds(), PriceListEmptying()},
        },
    };
    return origin;
}

} // namespace modImport_Arca2000
