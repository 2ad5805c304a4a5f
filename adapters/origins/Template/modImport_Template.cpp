// A made-up origin to start a new module from: copy the file, replace the names, give the registry its line.
// The table CLIENTI of a database server: one row per customer.
// How sure the layout is: made up. Known gaps: everything but code, name, street, town and telephone.

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/Origin.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/Counterparty.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Template {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Template");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Clienti = QStringLiteral("CLIENTI");

// --- Mappings -----------------------------------------------------------------------------------------------------

const Mapping& Controparti() {
    static const Mapping mapping{
        "CON_TRO",
        Clienti,
        {
            {"CDCON", "CODICE", Code()},
            {"CORAS", "NOME", First(35)},
            {"CORA2", "NOME", From(36)},
            {"COINV", "", Today()},
            {"COCLI", "", Constant(true)},
            {"COCGE", "CODICE", Text()},
            {"COIND", "VIA", NotBlank(Text())},
            {"COCIT", "CITTA", Text()},
            {"CONAZ", "", Constant(schema::defaults::Country)},
            {"COSC1", "SCONTO", RoundedTo(2)},
        },
    };
    return mapping;
}

// --- Counterparties -----------------------------------------------------------------------------------------------

RowOutcome ImportCliente(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    if (!LookUp(session, "CON_TRO", "COCGE", row.Text("CODICE"), "CDCON").isEmpty()) {
        return run.Skip("controparte già presente");
    }
    const Facts facts{CounterpartyRegister(run).NextCode(), RoleOf(true)};
    TargetRow target(run, "CON_TRO");
    Controparti().Apply(target, session, row, facts);
    target.Insert();
    CounterpartyWriter(run, {}).Telephone({"CON_TRO", facts.code}, "Ufficio", row.Text("TELEFONO"));
    return RowOutcome::Inserted;
}

const Needs& ContropartiNeeds() {
    static const Needs needs{{&Controparti()}, {{Clienti, {"TELEFONO"}}}, CounterpartyNeeds()};
    return needs;
}

void ImportControparti(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportControparti", singleCode);
    run.Guard([&] {
        run.Announce("Inizio importazione controparti");
        run.Preflight(ContropartiNeeds());
        run.Truncate(reset, CounterpartyTables());
        const QString where = singleCode.isEmpty() ? QString() : QString("\rWHERE CODICE = " + run.Quoted(singleCode));
        run.Rows({"Controparti", Clienti, "CODICE", "SELECT COUNT(*) FROM CLIENTI" + where,
                  "SELECT * FROM CLIENTI" + where + "\rORDER BY CODICE"},
                 [&](const SourceRow& row) { return ImportCliente(run, row); });
        run.Complete("Controparti importate correttamente!");
    });
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Template",
        Module,
        {"SQL Server", sourceSettings::Server("TEMPLATE")},
        {{
            {Shown::Yes, ""}, // Cli
            {Shown::No, ""},  // Art
            {Shown::No, ""},  // Dis
            {Shown::No, ""},  // Doc
            {Shown::No, ""},  // Acq
            {Shown::No, ""},  // Saldi
            {Shown::No, ""},  // Piano
            {Shown::No, ""},  // Disegni
        }},
        Shown::No,
        {{Button::Cli, "ImportControparti", ImportControparti, ContropartiNeeds()}},
    };
    return origin;
}

} // namespace modImport_Template
