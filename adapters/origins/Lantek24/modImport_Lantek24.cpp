// Lantek 24, a CAM software: a SQL Server database, LANTEK24 unless the setting Databasename names another; its
// products folder is the setting CAM_Path. Companies with contacts. Articles stand in modImport_Lantek24_articles.cpp,
// bills in modImport_Lantek24_bills.cpp, purchase documents in modImport_Lantek24_documents.cpp, production orders in
// modImport_Lantek24_orders.cpp, stock and remnants in modImport_Lantek24_stock.cpp.
// The tables are those of the later releases 30 to 44; that release 24 names them so already, what CPrdRef and the
// contacts' table are called, and how orders fit Quadrix is this system's own reading.
// Texts are never Null in the source, an empty date is 1 January 1900.
// Known gaps: machines of the operations, subcontractors of the production orders.

#include "adapters/origins/Lantek24/modImport_Lantek24.h"

#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/map/emptyDays.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/tiedRows.h"
#include "adapters/contract/write/Bill.h"
#include "adapters/sourceSettings.h"
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

// --- Hooks --------------------------------------------------------------------------------------------------------

/// Whoever is neither comes without a role.
Roles RolesOf(const SourceRow& row) {
    return {mod_ovTools::ToBoolean(row.Value("IsCust")), mod_ovTools::ToBoolean(row.Value("IsSupp"))};
}

/// Payment term and bank of a role stand in a table of its own. The bank of a counterparty that is there stays.
/// @param termColumn COMOP or COMOA
void SetConditionsOf(ImportRun& run, const QString& table, const QString& keyColumn, const SourceRow& company,
                     const QString& termColumn, TargetRow& target) {
    Session& session = run.GetSession();
    const bool isNew = !target.Value("CDCON").isNull(); // one that is there keeps its code
    ForEachChild(session,
                 "SELECT * FROM " + table + "\rWHERE " +
                     TiedTo(session.SourceConnection(), keyColumn, company, "ComRef"),
                 table, keyColumn, [&](const SourceRow& row) {
                     const auto set = [&target](const QString& column, const QString& text) {
                         if (!text.isEmpty()) {
                             target.Set(column, text);
                         }
                     };
                     set(termColumn, TranslatedCode(session, Codes, "PymName", row.Text("PymName"), "TAB_MOP"));
                     if (isNew) {
                         set("COCOC", row.Text("BnkAcc"));
                         set("COBIC", row.Text("SwCode"));
                         set("COIBA", row.Text("Iban").remove(u' '));
                     }
                 });
}

void SetConditions(ImportRun& run, const SourceRow& row, TargetRow& target) {
    const Roles roles = RolesOf(row);
    if (roles.supplier) {
        SetConditionsOf(run, Suppliers, "SuppRef", row, "COMOA", target);
    }
    if (roles.customer) { // behind the supplier's: of two banks the one that we are paid from counts
        SetConditionsOf(run, Customers, "CusRef", row, "COMOP", target);
    }
}

// --- Counterparties -----------------------------------------------------------------------------------------------

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiLantek24"},
        .source = {.table = Companies, .key = "ComRef", .order = "ComRef"},
        .roles = {{"IsCust", "IsSupp"}, RolesOf},
        .name = "ComName",
        .vatNumber = "VATNum",
        .codeTable = Codes,
        .lines = {{"CORAS", "ComName", First(35)},
                  {"CORA2", "ComName", From(36)},
                  {"COIND", "Address1", Text()},
                  {"COIN2", "Address2", NotBlank(Text())},
                  {"COCAP", "ZipCode", Text()},
                  {"COCIT", "City", Text()},
                  {"COPRO", "State", Text()},
                  {"CONAZ", "Country", Country(Codes, "Country")},
                  {"COLNG", "LanName", TranslatedOr(Codes, "LanName", schema::defaults::Language)},
                  {"COZON", "Zone", Translated(Codes, "Zone")},
                  {"COIVA", "VATNum", NotBlank(Text())},
                  {"COVAL", "CurName", Currency(Codes, "CurName")},
                  {"CONOT", "Descrip", Text()}},
        .numbers = {.office = "Phone", .fax = "Fax", .mail = "EMail", .web = "Web"},
        .contacts = {{.rows = {.table = Contacts, .on = {{"ComRef"}}, .order = "ESurname1, EName"},
                      .lines = {{"RFNOM", "EName, ESurname1", Text()}, {"RFTIT", "Title", Text()}},
                      .numbers = {.office = "WPhone", .mail = "WEMail"}}},
        .more = SetConditions,
        .further = {{},
                    {{Customers, {"CusRef", "PymName", "BnkAcc", "SwCode", "Iban"}},
                     {Suppliers, {"SuppRef", "PymName", "BnkAcc", "SwCode", "Iban"}}},
                    {{"CON_TRO", {"COMOP", "COMOA", "COCOC", "COBIC", "COIBA"}}},
                    {{.list = Codes, .field = "PymName", .table = "CON_TRO", .column = "COMOP"}}},
    };
}

} // namespace

// --- Shared -------------------------------------------------------------------------------------------------------

QVariant DayOf(const SourceRow& row, const QString& column) { return WithoutEmptyDay(DateOf(row, column)); }

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Lantek 24",
        Module,
        {"SQL Server", sourceSettings::Server("LANTEK24")},
        Buttons("YYNYNYNY", {{Button::Disegni, "Importa Ritagli"}}),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti()),
            ProcedureOf(Button::Art, Articoli()),
            DocumentiProcedure(),
            {std::nullopt, "ImportDistintaLantek24", ImportDistintaLantek24, CamBillNeeds(), BillEmptying()},
            InventarioProcedure(),
            RitagliProcedure(),
        },
    };
    return origin;
}

} // namespace modImport_Lantek24
