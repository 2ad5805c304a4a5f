// Visual Space: an SQL Server database. Counterparties stand here, articles and drawings in modImport_VS_articles.cpp,
// stock and locations in modImport_VS_stock.cpp, orders in modImport_VS_documents.cpp, bills in modImport_VS_bills.cpp.
// DISTINTA_BASE with PADRE, T_ORDINI_CLI, T_ORDINI_FOR, STOCK and MAGAZZINO_1 with COD_UBICAZIONE are known from an
// installation; the other tables and columns are this system's own reading in the style of these: a name that differs
// is put right in the mappings and the sections "Source tables".
// Known gaps: destinations, contacts, price lists.

#include "adapters/origins/VS/modImport_VS.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/Origin.h"
#include "adapters/contract/write/Counterparty.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_VS {

const contract::Origin& Entry();

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

/// Customers and suppliers have the same columns, but for that of the code.
struct Register {
    QString table;
    QString code;
    bool customer;
};
const Register Customers{Clienti, QStringLiteral("COD_CLIENTE"), true};
const Register Suppliers{Fornitori, QStringLiteral("COD_FORNITORE"), false};

const NumberColumns Numeri{"TELEFONO", "TELEFONO_2", "FAX", "CELLULARE", "EMAIL", "SITO_WEB"};

const Register& RegisterOf(bool customer) { return customer ? Customers : Suppliers; }

// --- Mappings -----------------------------------------------------------------------------------------------------

constexpr int NameSize = 35;

CounterpartyMapping MakeControparti(const Register& of) {
    const QString& table = of.table;
    return CounterpartyMapping({
        "CON_TRO",
        table,
        {
            {"CDCON", of.code, Code()},
            {"CORAS", "RAGIONE_SOCIALE", First(NameSize)},
            {"CORA2", "RAGIONE_SOCIALE, RAGIONE_SOCIALE_2", SecondName(NameSize)},
            {"COINV", "", Today()},
            {"COANN", "ANNULLATO", Flag()},
            {"COCON", "", Constant(true)},
            {"COCLI", "", IsCustomer()},
            {"COSC1", "SCONTO_1", CustomerOnly(NotBlank(RoundedTo(2)))},
            {"COSC2", "SCONTO_2", CustomerOnly(NotBlank(RoundedTo(2)))},
            {"COCGE", of.code, CustomerOnly(Text())},
            {"COFOR", "", IsSupplier()},
            {"COSF1", "SCONTO_1", SupplierOnly(NotBlank(RoundedTo(2)))},
            {"COSF2", "SCONTO_2", SupplierOnly(NotBlank(RoundedTo(2)))},
            {"COFGE", of.code, SupplierOnly(Text())},
            {"COIND", "INDIRIZZO", Text()},
            {"COCAP", "CAP", Text()},
            {"COCIT", "LOCALITA", Text()},
            {"COPRO", "PROVINCIA", Text()},
            {"CONAZ", "COD_NAZIONE", Country(table, "COD_NAZIONE")},
            {"COLNG", "", Constant(schema::defaults::Language)},
            {"COZON", "COD_ZONA", Translated(table, "COD_ZONA")},
            {"COVAL", "COD_VALUTA", Currency(table, "COD_VALUTA")},
            {"COFIS", "CODICE_FISCALE", NotBlank(Text())},
            {"COIVA", "PARTITA_IVA", NotBlank(Text())},
            {"COESE", "COD_IVA", ExemptVat(table, "COD_IVA")},
            {"COTPF", "", Constant(schema::defaults::TaxTreatment)},
            {"COMOP", "COD_PAGAMENTO", CustomerOnly(Translated(table, "COD_PAGAMENTO"))},
            {"COMOA", "COD_PAGAMENTO", SupplierOnly(Translated(table, "COD_PAGAMENTO"))},
            {"COABI", "ABI", NotBlank(Digits(5))},
            {"COCAB", "CAB", NotBlank(Digits(5))},
            {"COCOC", "NUM_CONTO", NotBlank(Text())},
            {"COCIN", "CIN", NotBlank(Text())},
            {"COIBA", "IBAN", NotBlank(WithoutBlanks())},
            {"COBAN", "COD_BANCA", Translated(table, "COD_BANCA")},
            {"COLSC", "COD_LISTINO", CustomerOnly(Translated(table, "COD_LISTINO"))},
            {"COLSF", "COD_LISTINO", SupplierOnly(Translated(table, "COD_LISTINO"))},
            {"COAGE", "COD_AGENTE", Translated(table, "COD_AGENTE")},
            {"COBLK", "", Constant(false)},
            {"CONOT", "NOTE", Text()},
        },
    });
}

const CounterpartyMapping& Controparti(bool customer) {
    static const CounterpartyMapping customers = MakeControparti(Customers);
    static const CounterpartyMapping suppliers = MakeControparti(Suppliers);
    return customer ? customers : suppliers;
}

// --- Counterparties -----------------------------------------------------------------------------------------------

RowOutcome ImportControparte(ImportRun& run, const CounterpartyRegister& parties, const SourceRow& row,
                             const Register& from) {
    const Roles roles = RoleOf(from.customer);
    const QString name = QString(row.Text("RAGIONE_SOCIALE") + ' ' + row.Text("RAGIONE_SOCIALE_2")).trimmed();
    const Placement place = parties.Place(
        {from.table, from.code, row.Text(from.code), roles, name, row.Text("PARTITA_IVA"), row.Text("CODICE_FISCALE")});
    const CounterpartyWriter writer(run, {});
    const RowOutcome outcome = writer.Write(Controparti(from.customer), row, place, roles);
    writer.Numbers(OwnerOf(place), row, Numeri);
    return outcome;
}

const Needs& ContropartiNeeds() {
    static const Needs needs = [] {
        Needs all{{&Controparti(true).Whole(), &Controparti(false).Whole(), &Controparti(true).Role(true),
                   &Controparti(false).Role(false)},
                  {},
                  CounterpartyNeeds()};
        for (const QString& table : {Clienti, Fornitori}) {
            all.reads.push_back({table, {}, Numeri.Names()});
        }
        return all;
    }();
    return needs;
}

/// Customers come first: they keep their numbers, suppliers are numbered after them.
void ImportContropartiVSP(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportContropartiVSP", singleCode);
    run.Guard([&] {
        run.Announce("Inizio importazione controparti");
        run.Preflight(ContropartiNeeds());
        const CounterpartyRegister parties(run);
        run.Truncate(reset, CounterpartyTables());
        for (const Register& from : {Customers, Suppliers}) {
            const QString select = " FROM " + from.table + run.OnlyCode(" WHERE", from.code, singleCode);
            const bool toTheEnd =
                run.Rows({from.customer ? "Clienti" : "Fornitori", from.table, from.code, "SELECT COUNT(*)" + select,
                          "SELECT *" + select + " ORDER BY " + from.code},
                         [&](const SourceRow& row) { return ImportControparte(run, parties, row, from); });
            if (!toTheEnd) {
                return;
            }
        }
        run.Complete("Controparti importate correttamente!");
    });
}

} // namespace

QString GetNewControparteFromVisual(ImportRun& run, const QString& code, bool customer) {
    if (code.isEmpty()) {
        return {};
    }
    Session& session = run.GetSession();
    const Register& from = RegisterOf(customer);
    QString found = modImport::GetNewCode(session, from.table, from.code, code, false);
    if (found.isEmpty()) {
        found = LookUp(session, "CON_TRO", customer ? "COCGE" : "COFGE", code, "CDCON");
    }
    if (!found.isEmpty()) {
        return found;
    }
    const Recordset rows = session.SourceConnection().ExecuteWC("SELECT PARTITA_IVA, CODICE_FISCALE FROM " +
                                                                from.table + run.OnlyCode(" WHERE", from.code, code));
    if (rows.Eof()) {
        return {};
    }
    const SourceRow row(rows);
    return CounterpartyRegister(run).FindByIdentity(row.Text("PARTITA_IVA"), row.Text("CODICE_FISCALE"));
}

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Visual Space",
        Module,
        {"SQL Server", sourceSettings::Server("VISUALSPACE")},
        {{
            {Shown::Yes, ""},  // Cli
            {Shown::Yes, ""},  // Art
            {Shown::Yes, ""},  // Dis
            {Shown::Yes, ""},  // Doc
            {Shown::Yes, ""},  // Acq
            {Shown::Yes, ""},  // Saldi
            {Shown::No, ""},   // Piano
            {Shown::Keep, ""}, // Disegni
        }},
        Shown::Keep,
        {
            {Button::Cli, "ImportContropartiVSP", ImportContropartiVSP, ContropartiNeeds()},
            {Button::Art, "ImportArticoliVSP", ImportArticoliVSP, ArticoliNeeds()},
            {Button::Dis, "ImportDistinteVSP", ImportDistinteVSP, DistinteNeeds()},
            {.button = Button::Dis,
             .name = "CorreggiDistinteVSP",
             .run = CorreggiDistinteVSP,
             .needs = CorrezioneNeeds(),
             .asksReset = false},
            {Button::Doc, "ImportDocVenVSP", ImportDocVenVSP, DocVenNeeds()},
            {Button::Acq, "ImportDocAcqVSP", ImportDocAcqVSP, DocAcqNeeds()},
            {Button::Saldi, "ImportSaldiVSP", ImportSaldiVSP, SaldiNeeds()},
            {Button::Disegni, "ImportDisegniVSP", ImportDisegniVSP, DisegniNeeds()},
            {std::nullopt, "ImportUbicazioniVSP", ImportUbicazioniVSP, UbicazioniNeeds()},
        },
    };
    return origin;
}

} // namespace modImport_VS
