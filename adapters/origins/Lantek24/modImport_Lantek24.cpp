// Lantek 24, a CAM software: a SQL Server database, LANTEK24 unless the setting Databasename names another; its
// products folder is the setting CAM_Path. Companies with contacts. Articles stand in modImport_Lantek24_articles.cpp,
// bills in modImport_Lantek24_bills.cpp, purchase documents in modImport_Lantek24_documents.cpp, production orders in
// modImport_Lantek24_orders.cpp, stock and remnants in modImport_Lantek24_stock.cpp.
// The tables are those of the later releases 30 to 44; that release 24 names them so already, what CPrdRef and the
// contacts' table are called, and how orders fit Quadrix is this system's own reading.
// Texts are never Null in the source, an empty date is 1 January 1900.
// Known gaps: machines of the operations, subcontractors of the production orders.

#include "adapters/origins/Lantek24/modImport_Lantek24.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/Origin.h"
#include "adapters/contract/write/Bill.h"
#include "adapters/contract/write/Counterparty.h"
#include "adapters/contract/write/Stock.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Lantek24 {

const contract::Origin& Entry();

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Companies = QStringLiteral("CCOO_CCOO_00000100");
const QString Contacts = QStringLiteral("CCOO_CCOO_00000200");
const QString Customers = QStringLiteral("SSAA_CCUU_00000100");
const QString Suppliers = QStringLiteral("SSHH_SSPP_00000100");
const NumberColumns Numeri{"Phone", {}, "Fax", {}, "EMail", "Web"};
/// How SYS_IMP names the codes of companies.
const QString Codes = QStringLiteral("CCOO_CCOO");

// --- Mappings -----------------------------------------------------------------------------------------------------

const CounterpartyMapping& Controparti() {
    static const CounterpartyMapping mapping({
        "CON_TRO",
        Companies,
        {
            {"CDCON", "ComRef", Code()},
            {"CORAS", "ComName", First(35)},
            {"CORA2", "ComName", From(36)},
            {"COINV", "", Today()},
            {"COANN", "", Constant(false)},
            {"COCON", "", Constant(true)},
            {"COCLI", "IsCust", IsCustomer()},
            {"COCGE", "ComRef", CustomerOnly(Text())},
            {"COFOR", "IsSupp", IsSupplier()},
            {"COFGE", "ComRef", SupplierOnly(Text())},
            {"COIND", "Address1", Text()},
            {"COIN2", "Address2", NotBlank(Text())},
            {"COCAP", "ZipCode", Text()},
            {"COCIT", "City", Text()},
            {"COPRO", "State", Text()},
            {"CONAZ", "Country", Country(Codes, "Country")},
            {"COLNG", "LanName", TranslatedOr(Codes, "LanName", schema::defaults::Language)},
            {"COZON", "Zone", Translated(Codes, "Zone")},
            {"COIVA", "VATNum", NotBlank(Text())},
            {"COTPF", "", Constant(schema::defaults::TaxTreatment)},
            {"COVAL", "CurName", Currency(Codes, "CurName")},
            {"COBLK", "", Constant(false)},
            {"CONOT", "Descrip", Text()},
        },
    });
    return mapping;
}

const Mapping& Riferimenti() {
    static const Mapping mapping{
        "CON_RIF",
        Contacts,
        {
            {"CDCON", "ComRef", Code()},
            {"RFNOM", "EName, ESurname1", Text()},
            {"RFTIT", "Title", Text()},
        },
    };
    return mapping;
}

// --- Counterparties -----------------------------------------------------------------------------------------------

/// Payment term and bank of a role stand in a table of its own. The bank of a counterparty that is there stays.
/// @param termColumn COMOP or COMOA
void SetConditions(ImportRun& run, const QString& table, const QString& keyColumn, const QString& company,
                   const QString& termColumn, bool known, TargetRow& target) {
    Session& session = run.GetSession();
    ForEachChild(session, "SELECT * FROM " + table + "\rWHERE " + keyColumn + " = " + run.Quoted(company), table,
                 keyColumn, [&](const SourceRow& row) {
                     const auto set = [&target](const QString& column, const QString& text) {
                         if (!text.isEmpty()) {
                             target.Set(column, text);
                         }
                     };
                     set(termColumn, TranslatedCode(session, Codes, "PymName", row.Text("PymName"), "TAB_MOP"));
                     if (!known) {
                         set("COCOC", row.Text("BnkAcc"));
                         set("COBIC", row.Text("SwCode"));
                         set("COIBA", row.Text("Iban").remove(u' '));
                     }
                 });
}

void WriteContacts(ImportRun& run, CounterpartyWriter& writer, const QString& company, const Owner& counterparty) {
    ForEachChild(run.GetSession(), "SELECT * FROM " + Contacts + "\rWHERE ComRef = " + run.Quoted(company), Contacts,
                 "ESurname1, EName", [&](const SourceRow& row) {
                     TargetRow target = writer.NewRow("CON_RIF");
                     Riferimenti().Apply(target, run.GetSession(), row, {counterparty.key});
                     const Owner owner = writer.Contact(counterparty, target);
                     writer.Telephone(owner, "Ufficio", row.Text("WPhone"));
                     writer.Mail(owner, "@ Principale", row.Text("WEMail"));
                 });
}

RowOutcome ImportControparte(ImportRun& run, const CounterpartyRegister& parties, const SourceRow& row) {
    const Roles roles{mod_ovTools::ToBoolean(row.Value("IsCust")), mod_ovTools::ToBoolean(row.Value("IsSupp"))};
    if (!roles.customer && !roles.supplier) {
        run.Log(QStringLiteral("NÉ CLIENTE NÉ FORNITORE: %1").arg(run.RowKey()));
        return run.Skip("né cliente né fornitore");
    }
    const QString company = row.Text("ComRef");
    const Placement place =
        parties.Place({Codes, "ComRef", company, roles, row.Text("ComName"), row.Text("VATNum"), QString()});
    CounterpartyWriter writer(run, {});
    const RowOutcome outcome = writer.Write(Controparti(), row, place, roles, [&](TargetRow& target) {
        if (roles.supplier) {
            SetConditions(run, Suppliers, "SuppRef", company, "COMOA", place.known, target);
        }
        if (roles.customer) { // behind the supplier's: of two banks the one that we are paid from counts
            SetConditions(run, Customers, "CusRef", company, "COMOP", place.known, target);
        }
    });
    writer.Numbers(OwnerOf(place), row, Numeri);
    WriteContacts(run, writer, company, OwnerOf(place));
    return outcome;
}

const Needs& ContropartiNeeds() {
    static const Needs needs = [] {
        Needs all{Controparti().All(),
                  {{Companies, {}, Numeri.Names()},
                   {Customers, {"CusRef", "PymName", "BnkAcc", "SwCode", "Iban"}},
                   {Suppliers, {"SuppRef", "PymName", "BnkAcc", "SwCode", "Iban"}},
                   {Contacts, {"WPhone", "WEMail"}}},
                  CounterpartyNeeds()};
        all.mappings.push_back(&Riferimenti());
        all.writes.push_back({"CON_TRO", {"COMOP", "COMOA", "COCOC", "COBIC", "COIBA"}});
        return all;
    }();
    return needs;
}

void ImportContropartiLantek24(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportContropartiLantek24", singleCode);
    run.Guard([&] {
        run.Announce("Inizio importazione controparti");
        run.Preflight(ContropartiNeeds());
        const CounterpartyRegister parties(run);
        Empty(run, reset, CounterpartyEmptying());
        const QString from = Companies + run.OnlyCode("\rWHERE", "ComRef", singleCode);
        run.Rows({"Controparti", Companies, "ComRef", "SELECT COUNT(*) FROM " + from,
                  "SELECT * FROM " + from + "\rORDER BY ComRef"},
                 [&](const SourceRow& row) { return ImportControparte(run, parties, row); });
        run.Complete("Controparti importate correttamente!");
    });
}

} // namespace

// --- Shared -------------------------------------------------------------------------------------------------------

QVariant DayOf(const SourceRow& row, const QString& column) {
    static const QDate none(1900, 1, 1);
    const QVariant day = DateOf(row, column);
    return day.toDate() == none ? QVariant() : day;
}

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Lantek 24",
        Module,
        {"SQL Server", sourceSettings::Server("LANTEK24")},
        Buttons("YYNYNYNY", {{Button::Disegni, "Importa Ritagli"}}),
        Shown::Keep,
        {
            {Button::Cli, "ImportContropartiLantek24", ImportContropartiLantek24, ContropartiNeeds(),
             CounterpartyEmptying()},
            {Button::Art, "ImportArticoliLantek24", ImportArticoliLantek24, ArticoliNeeds(), ArticoliEmptying()},
            {Button::Doc, "ImportDocumentiLantek24", ImportDocumentiLantek24, DocumentiNeeds(), DocumentiEmptying()},
            {std::nullopt, "ImportDistintaLantek24", ImportDistintaLantek24, CamBillNeeds(), BillEmptying()},
            {Button::Saldi, "ImportInventarioLantek24", ImportInventarioLantek24, InventarioNeeds(), StockEmptying()},
            {Button::Disegni, "ImportRitagliLantek24", ImportRitagliLantek24, RitagliNeeds(), RitagliEmptying()},
        },
    };
    return origin;
}

} // namespace modImport_Lantek24
