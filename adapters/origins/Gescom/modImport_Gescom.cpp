// Gescom: a database, GESCOM unless the setting Databasename names another. Counterparties with destinations, carriers;
// articles and price lists stand in modImport_Gescom_articles.cpp, bills in modImport_Gescom_bills.cpp, documents in
// modImport_Gescom_documents.cpp.
// ARCLFR with its codes, kinds and names is known from installations, as are RIEMOV, MOVMAG and arcfas as far as the
// documents read them. Everything else, tables and columns, is this system's own reading in their style: two letters
// and the table's name.
// Known gaps: contacts, banks other than the counterparty's own account.

#include "adapters/origins/Gescom/modImport_Gescom.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/Origin.h"
#include "adapters/contract/write/Counterparty.h"
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
const NumberColumns Numeri{"TELCLFOR", "TE2CLFOR", "FAXCLFOR", "CELCLFOR", "EMACLFOR", "WEBCLFOR"};

// --- Mappings -----------------------------------------------------------------------------------------------------

const CounterpartyMapping& Controparti() {
    static const CounterpartyMapping mapping({
        "CON_TRO",
        Arclfr,
        {
            {"CDCON", "CODCLFOR", Code()},
            {"CORAS", "RAGCLFOR", First(35)},
            {"CORA2", "RAGCLFOR, RA2CLFOR", SecondName(35)},
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
            {"COVAL", "VALCLFOR", Currency(Arclfr, "VALCLFOR")},
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
    });
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

// --- Counterparties -----------------------------------------------------------------------------------------------

bool IsCustomerRow(const SourceRow& row) {
    const QString kind = row.Text("FLAGCLFR").toUpper();
    if (kind != "C" && kind != "F") {
        throw ImportError(QStringLiteral("colonna 'FLAGCLFR': '%1' non è C (cliente) né F (fornitore)").arg(kind));
    }
    return kind == "C";
}

void WriteDestinations(ImportRun& run, CounterpartyWriter& writer, const SourceRow& row, const Owner& owner) {
    ForEachChild(run.GetSession(),
                 "SELECT * FROM ARDEST\rWHERE CODCLFOR = " + run.Quoted(row.Text("CODCLFOR")) +
                     "\r  AND FLAGCLFR = " + run.Quoted(row.Text("FLAGCLFR")) + "\rORDER BY PRGDEST",
                 Ardest, "PRGDEST", [&](const SourceRow& destination) {
                     if (!destination.IsBlank("INDDEST")) {
                         TargetRow target = writer.NewRow("CON_SED");
                         Destinazioni().Apply(target, run.GetSession(), destination, {owner.key});
                         writer.Branch(owner, target);
                     }
                 });
}

RowOutcome ImportControparte(ImportRun& run, const CounterpartyRegister& parties, const SourceRow& row) {
    const Roles roles = RoleOf(IsCustomerRow(row));
    const QString name = QString(row.Text("RAGCLFOR") + ' ' + row.Text("RA2CLFOR")).trimmed();
    const Placement place = parties.Place(
        {Arclfr, "CODCLFOR", row.Text("CODCLFOR"), roles, name, row.Text("IVACLFOR"), row.Text("FISCLFOR")});
    CounterpartyWriter writer(run, {});
    const RowOutcome outcome = writer.Write(Controparti(), row, place, roles);
    writer.Numbers(OwnerOf(place), row, Numeri);
    WriteDestinations(run, writer, row, OwnerOf(place));
    return outcome;
}

const Needs& ContropartiNeeds() {
    static const Needs needs = [] {
        Needs all{Controparti().All(), {{Arclfr, {}, Numeri.Names()}, {Ardest, {"FLAGCLFR"}}}, CounterpartyNeeds()};
        all.mappings.push_back(&Destinazioni());
        return all;
    }();
    return needs;
}

void ImportContropartiGescom(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportContropartiGescom", singleCode);
    run.Guard([&] {
        run.Announce("Inizio importazione controparti");
        run.Preflight(ContropartiNeeds());
        const CounterpartyRegister parties(run);
        run.Truncate(reset, CounterpartyTables());
        const QString where = run.OnlyCode("\rWHERE", "CODCLFOR", singleCode);
        run.Rows({"Controparti", Arclfr, "CODCLFOR", "SELECT COUNT(*) FROM ARCLFR" + where,
                  "SELECT * FROM ARCLFR" + where + "\rORDER BY FLAGCLFR, CODCLFOR"},
                 [&](const SourceRow& row) { return ImportControparte(run, parties, row); });
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
    if (code.isEmpty()) {
        return {};
    }
    const bool byImport =
        IdWhere(session, "SYS_IMP",
                TranslationOf(session, carrier) + " AND " + Equals(session, "USINS", "SYSTEM_IMPORT")) != 0;
    const bool isCarrier = mod_ovTools::ToBoolean(session.Quadrix.GetDbValue("CON_TRO", "CDCON", code, "COVET", true));
    return byImport && !isCarrier ? QString() : code;
}

RowOutcome ImportVettore(ImportRun& run, const CounterpartyRegister& parties, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString carrier = row.Text("CDVETTOR");
    const QString before = CodeBefore(session, carrier);
    const SourceIdentity source{VettoriTable, "CDVETTOR", carrier, {}, row.Text("DSVETTOR"), row.Text("PIVETTOR"), {}};
    QString code = parties.FindByIdentity(source.vatNumber, {});
    if (code.isEmpty()) {
        code = before.isEmpty() ? parties.NextCode() : before;
    } else if (code != before) {
        parties.TellMerge(source, code);
    }
    const Placement place{code, parties.Exists(code)};
    TargetRow target(run, "CON_TRO");
    if (place.known) {
        target.Set("COVET", true);
        target.Update("WHERE CDCON = " + run.Quoted(code));
    } else {
        Vettori().Apply(target, session, row, {code});
        target.Insert();
    }
    CounterpartyWriter(run, {}).Telephone(OwnerOf(place), "Ufficio", row.Text("TEVETTOR"));
    if (code != before) {
        StoreNewCode(run, VettoriTable, "CDVETTOR", carrier, code);
    }
    return place.known ? RowOutcome::Updated : RowOutcome::Inserted;
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
        run.AnnounceAppending("Inizio importazione vettori");
        run.Preflight(VettoriNeeds());
        const CounterpartyRegister parties(run);
        const QString where = run.OnlyCode("\rWHERE", "CDVETTOR", singleCode);
        run.Rows({"Vettori", VettoriTable, "CDVETTOR", "SELECT COUNT(*) FROM VETTORI" + where,
                  "SELECT * FROM VETTORI" + where + "\rORDER BY CDVETTOR"},
                 [&](const SourceRow& row) { return ImportVettore(run, parties, row); });
        run.Complete("Vettori importati correttamente!");
    });
}

} // namespace

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
