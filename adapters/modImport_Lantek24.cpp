// Lantek 24, a CAM software: a SQL Server database, LANTEK24 unless the setting Databasename names another; its
// products folder is the setting CAM_Path. Companies with contacts. Articles stand in modImport_Lantek24_articles.cpp,
// bills in modImport_Lantek24_bills.cpp, purchase documents in modImport_Lantek24_documents.cpp, production orders in
// modImport_Lantek24_orders.cpp, stock and remnants in modImport_Lantek24_stock.cpp.
// The tables are those of the later releases 30 to 44; that release 24 names them so already, what CPrdRef and the
// contacts' table are called, and how orders fit Quadrix is this system's own reading.
// Texts are never Null in the source, an empty date is 1 January 1900.
// Known gaps: machines of the operations, subcontractors of the production orders.

#include "adapters/modImport_Lantek24.h"

#include "adapters/contract/Counterparty.h"
#include "adapters/contract/lookups.h"
#include "adapters/contract/Origin.h"
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
/// How SYS_IMP names the codes of companies.
const QString Codes = QStringLiteral("CCOO_CCOO");

// --- Mappings -----------------------------------------------------------------------------------------------------

const Mapping& Controparti() {
    static const Mapping mapping{
        "CON_TRO",
        Companies,
        {
            {"CDCON", "ComRef", Code()},
            {"CORAS", "ComName", First(35)},
            {"CORA2", "ComName", From(36)},
            {"COINV", "", Today()},
            {"COANN", "", Constant(false)},
            {"COCON", "", Constant(true)},
            // The roles that the row has are set behind.
            {"COCLI", "", Constant(false)},
            {"COFOR", "", Constant(false)},
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
            {"COVAL", "CurName", Or(TranslatedOrKnown(Codes, "CurName", "TAB_VAL"), schema::defaults::Currency)},
            {"COBLK", "", Constant(false)},
            {"CONOT", "Descrip", Text()},
        },
    };
    return mapping;
}

const Mapping& RuoloCliente() {
    static const Mapping mapping{"CON_TRO", Companies, {{"COCLI", "", Constant(true)}, {"COCGE", "ComRef", Text()}}};
    return mapping;
}

const Mapping& RuoloFornitore() {
    static const Mapping mapping{"CON_TRO", Companies, {{"COFOR", "", Constant(true)}, {"COFGE", "ComRef", Text()}}};
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

struct Roles {
    bool customer;
    bool supplier;
};

void SetRoles(Session& session, const SourceRow& row, const Roles& roles, TargetRow& target) {
    if (roles.customer) {
        RuoloCliente().Apply(target, session, row, {});
    }
    if (roles.supplier) {
        RuoloFornitore().Apply(target, session, row, {});
    }
}

/// Payment term and bank of a role stand in a table of its own.
/// @param termColumn COMOP or COMOA
void SetConditions(ImportRun& run, const QString& table, const QString& keyColumn, const QString& company,
                   const QString& termColumn, TargetRow& target) {
    Session& session = run.GetSession();
    ForEachChild(session, "SELECT * FROM " + table + "\rWHERE " + keyColumn + " = " + run.Quoted(company), table,
                 keyColumn, [&](const SourceRow& row) {
                     const auto set = [&target](const QString& column, const QString& text) {
                         if (!text.isEmpty()) {
                             target.Set(column, text);
                         }
                     };
                     set(termColumn, TranslatedCode(session, Codes, "PymName", row.Text("PymName"), "TAB_MOP"));
                     set("COCOC", row.Text("BnkAcc"));
                     set("COBIC", row.Text("SwCode"));
                     set("COIBA", row.Text("Iban").remove(u' '));
                 });
}

void WriteContacts(ImportRun& run, const CounterpartyWriter& writer, const QString& company, const Facts& facts) {
    ForEachChild(run.GetSession(), "SELECT * FROM " + Contacts + "\rWHERE ComRef = " + run.Quoted(company), Contacts,
                 "ESurname1, EName", [&](const SourceRow& row) {
                     TargetRow target = writer.NewRow("CON_RIF");
                     Riferimenti().Apply(target, run.GetSession(), row, facts);
                     const Owner owner = writer.Contact(target);
                     writer.Telephone(owner, "Ufficio", row.Text("WPhone"));
                     writer.Mail(owner, "@ Principale", row.Text("WEMail"));
                 });
}

void WriteNew(ImportRun& run, const CounterpartyWriter& writer, const SourceRow& row, const Roles& roles,
              const Facts& facts) {
    Session& session = run.GetSession();
    const QString company = row.Text("ComRef");
    TargetRow target(run, "CON_TRO");
    Controparti().Apply(target, session, row, facts);
    SetRoles(session, row, roles, target);
    if (roles.supplier) {
        SetConditions(run, Suppliers, "SuppRef", company, "COMOA", target);
    }
    if (roles.customer) { // behind the supplier's: of two banks the one that we are paid from counts
        SetConditions(run, Customers, "CusRef", company, "COMOP", target);
    }
    target.Insert();
    const Owner owner{"CON_TRO", facts.code};
    writer.Telephone(owner, "Ufficio", row.Text("Phone"));
    writer.Telephone(owner, "Fax (uff.)", row.Text("Fax"));
    writer.Mail(owner, "@ Principale", row.Text("EMail"));
    writer.WebSite(owner, row.Text("Web"));
    WriteContacts(run, writer, company, facts);
}

RowOutcome ImportControparte(ImportRun& run, const SourceRow& row) {
    const CounterpartyWriter writer(run, {});
    const Roles roles{mod_ovTools::ToBoolean(row.Value("IsCust")), mod_ovTools::ToBoolean(row.Value("IsSupp"))};
    if (!roles.customer && !roles.supplier) {
        run.Log(QStringLiteral("NÉ CLIENTE NÉ FORNITORE: %1").arg(run.RowKey()));
        return run.Skip("né cliente né fornitore");
    }
    const Placement place =
        writer.Place({Codes, "ComRef", row.Text("ComRef"), roles.customer, row.Text("VATNum"), QString()});
    if (!place.known) {
        WriteNew(run, writer, row, roles, {place.code, roles.customer});
        return RowOutcome::Inserted;
    }
    TargetRow target(run, "CON_TRO"); // a legal person that is there only gains the role that the row adds
    SetRoles(run.GetSession(), row, roles, target);
    target.Update("WHERE CDCON = " + run.Quoted(place.code));
    return RowOutcome::Updated;
}

const Needs& ContropartiNeeds() {
    static const Needs needs = [] {
        Needs all{{&Controparti(), &RuoloCliente(), &RuoloFornitore(), &Riferimenti()},
                  {{Companies, {"IsCust", "IsSupp", "Phone", "Fax", "EMail", "Web"}},
                   {Customers, {"CusRef", "PymName", "BnkAcc", "SwCode", "Iban"}},
                   {Suppliers, {"SuppRef", "PymName", "BnkAcc", "SwCode", "Iban"}},
                   {Contacts, {"WPhone", "WEMail"}}},
                  CounterpartyNeeds()};
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
        run.Truncate(reset, CounterpartyTables());
        const QString from = Companies + run.OnlyCode("\rWHERE", "ComRef", singleCode);
        run.Rows({"Controparti", Companies, "ComRef", "SELECT COUNT(*) FROM " + from,
                  "SELECT * FROM " + from + "\rORDER BY ComRef"},
                 [&](const SourceRow& row) { return ImportControparte(run, row); });
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
        {{
            {Shown::Yes, ""},                // Cli
            {Shown::Yes, ""},                // Art
            {Shown::No, ""},                 // Dis
            {Shown::Yes, ""},                // Doc
            {Shown::No, ""},                 // Acq
            {Shown::Yes, ""},                // Saldi
            {Shown::No, ""},                 // Piano
            {Shown::Yes, "Importa Ritagli"}, // Disegni
        }},
        Shown::Keep,
        {
            {Button::Cli, "ImportContropartiLantek24", ImportContropartiLantek24, ContropartiNeeds()},
            {Button::Art, "ImportArticoliLantek24", ImportArticoliLantek24, ArticoliNeeds()},
            {Button::Doc, "ImportDocumentiLantek24", ImportDocumentiLantek24, DocumentiNeeds()},
            {std::nullopt, "ImportDistintaLantek24", ImportDistintaLantek24, CamBillNeeds()},
            {Button::Saldi, "ImportInventarioLantek24", ImportInventarioLantek24, InventarioNeeds()},
            {Button::Disegni, "ImportRitagliLantek24", ImportRitagliLantek24, RitagliNeeds()},
        },
    };
    return origin;
}

} // namespace modImport_Lantek24
