// Mexal: CSV files, each a table, in the folder that the setting Databasename names; else the ODBC data source of the
// setting DSN, MEXAL unless it names another. Columns bear the names of the program's own variables with "_" in front,
// those of an array with their index: [_ARPRZ(1)]. Counterparties and chart of accounts stand here, articles, stock
// and locations in modImport_Mexal_articles.cpp, documents in modImport_Mexal_documents.cpp, bills in
// modImport_Mexal_bills.cpp.
// PIA_CON, ART_MAG and DOC_TES, TIPO, _PCANN and _ARUBI are known from an installation, the articles' other columns
// from exports of it. The remaining columns of PIA_CON and of the documents, DOC_RIG and DIS_MAT are this system's own
// reading; a name that differs is put right in the mappings and the sections "Source tables".
// Known gaps: destinations, contacts, price lists beyond the first.

#include "adapters/origins/Mexal/modImport_Mexal.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "adapters/contract/run/Origin.h"
#include "adapters/contract/write/BaseTable.h"
#include "adapters/contract/write/Counterparty.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/modMain.h"
#include "core/schemaDefaults.h"

#include <QFileInfo>

using namespace contract;
using namespace contract::rules;

namespace modImport_Mexal {

const contract::Origin& Entry();

QString GetControparteMexal(Session& session, const QString& code, bool customer) {
    if (code.isEmpty()) {
        return {};
    }
    const QString known = modImport::GetNewCode(session, "CON_TRO", "CDCON", code, false);
    const QString quoted = QString(code).replace('\'', "''"); // it goes into the statement as it is
    return known.isEmpty() ? modImport::GetNewControparteFromCodExt(session, quoted, customer, !customer, false)
                           : known;
}

/// Lire, euro and dollar are numbers: 1 is the company's own currency.
QString CurrencyOfNumber(Session& session, const QString& number) {
    return CurrencyOf(session, PiaCon, "_PCVAL", number == u"1" ? QString() : number);
}

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const NumberColumns Numeri{"_PCTEL", {}, "_PCFAX", "_PCCEL", "_PCEMA", "_PCWEB"};

// --- Mappings -----------------------------------------------------------------------------------------------------

/// Part of the name: the long one when there is one, else the short one.
Rule NamePart(int from, int count) {
    return {QStringLiteral("of the first that is not blank, from character %1 onward, %2").arg(from).arg(count),
            [from, count](const RuleInput& input) {
                const QString longName = input.row.Text(input.columns.first());
                const QString name = longName.isEmpty() ? input.row.Text(input.columns.last()) : longName;
                return RuleValue(FirstOf(RestOf(name, from - 1), count).trimmed());
            }};
}

Rule NumberedCurrency() {
    return {
        "\"EUR\" for blank and 1; else translated through SYS_IMP (PIA_CON, _PCVAL), else as it is when TAB_VAL has "
        "it, else recorded, logged and \"EUR\"",
        [](const RuleInput& input) { return RuleValue(CurrencyOfNumber(input.session, input.Text())); }};
}

const CounterpartyMapping& Controparti() {
    static const CounterpartyMapping mapping({
        "CON_TRO",
        PiaCon,
        {
            {"CDCON", "_PCCOD", Code()},
            {"CORAS", "_PCRAG, _PCDES", NamePart(1, 35)},
            {"CORA2", "_PCRAG, _PCDES", NamePart(36, 100)},
            {"COINV", "", Today()},
            {"COANN", "", Constant(false)},
            {"COCON", "", Constant(true)},
            {"COCLI", "TIPO", IsCustomer()},
            {"COSC1", "_PCSCO", CustomerOnly(Discount(1))},
            {"COSC2", "_PCSCO", CustomerOnly(Discount(2))},
            {"COSC3", "_PCSCO", CustomerOnly(Discount(3))},
            {"COCGE", "_PCCOD", CustomerOnly(Text())},
            {"COFOR", "TIPO", IsSupplier()},
            {"COSF1", "_PCSCO", SupplierOnly(Discount(1))},
            {"COSF2", "_PCSCO", SupplierOnly(Discount(2))},
            {"COSF3", "_PCSCO", SupplierOnly(Discount(3))},
            {"COFGE", "_PCCOD", SupplierOnly(Text())},
            {"COIND", "_PCIND", Text()},
            {"COCAP", "_PCCAP", Text()},
            {"COCIT", "_PCLOC", Text()},
            {"COPRO", "_PCPRO", Text()},
            {"CONAZ", "_PCPAE", Country(PiaCon, "_PCPAE")},
            {"COLNG", "", Constant(schema::defaults::Language)},
            {"COZON", "_PCZON", Translated(PiaCon, "_PCZON")},
            {"COVAL", "_PCVAL", NumberedCurrency()},
            {"COFIS", "_PCFIS", NotBlank(Text())},
            {"COIVA", "_PCPIV", NotBlank(Text())},
            {"COESE", "_PCALI", ExemptVat(PiaCon, "_PCALI")},
            {"COTPF", "", Constant(schema::defaults::TaxTreatment)},
            {"COMOP", "_PCPAG", CustomerOnly(Translated(PiaCon, "_PCPAG"))},
            {"COMOA", "_PCPAG", SupplierOnly(Translated(PiaCon, "_PCPAG"))},
            {"COABI", "_PCABI", NotBlank(Digits(5))},
            {"COCAB", "_PCCAB", NotBlank(Digits(5))},
            {"COCOC", "_PCCON", NotBlank(Text())},
            {"COCIN", "_PCCIN", NotBlank(Text())},
            {"COIBA", "_PCIBA", NotBlank(WithoutBlanks())},
            {"COLSC", "_PCLIS", CustomerOnly(Translated(PiaCon, "_PCLIS"))},
            {"COAGE", "_PCAGE", Translated(PiaCon, "_PCAGE")},
            {"COBLK", "", Constant(false)},
            {"CONOT", "_PCNOT", Text()},
        },
    });
    return mapping;
}

/// The group of an account: "ccc" of "ccc.nnnnn"; a ledger has none.
Rule Ledger() {
    return {"what stands before the point; left out without one", [](const RuleInput& input) -> RuleValue {
                const QString code = input.Text();
                const qsizetype point = code.indexOf(u'.');
                return point < 0 ? RuleValue() : RuleValue(code.left(point));
            }};
}

Rule Level() {
    return {"1 for a ledger \"ccc\", 2 for an account \"ccc.nnnnn\"",
            [](const RuleInput& input) { return RuleValue(input.Text().contains(u'.') ? 2 : 1); }};
}

Rule IsAccount() {
    return {"true for an account \"ccc.nnnnn\"",
            [](const RuleInput& input) { return RuleValue(input.Text().contains(u'.')); }};
}

const Mapping& PianoConti() {
    static const Mapping mapping{
        "PIA_CON",
        PiaCon,
        {
            {"CDCNT", "_PCCOD", Text()},
            {"PCDES", "_PCDES", First(100)},
            {"PCMAS", "_PCCOD", Ledger()},
            {"PCTIP", "TIPO", Text()},
            {"PCBIL", "TIPO", Choice({{"A", "SP"}, {"P", "SP"}, {"E", "CE"}}, "")},
            {"PCLEV", "_PCCOD", Level()},
            {"PCDET", "_PCCOD", IsAccount()},
        },
    };
    return mapping;
}

// --- Counterparties -----------------------------------------------------------------------------------------------

RowOutcome ImportControparte(ImportRun& run, const CounterpartyRegister& parties, const SourceRow& row) {
    const Roles roles = RoleOf(row.Text("TIPO").compare(u"C", Qt::CaseInsensitive) == 0);
    const Placement place =
        parties.Place({PiaCon, "_PCCOD", row.Text("_PCCOD"), roles,
                       row.Text(row.IsBlank("_PCRAG") ? "_PCDES" : "_PCRAG"), row.Text("_PCPIV"), row.Text("_PCFIS")});
    const CounterpartyWriter writer(run, {});
    const RowOutcome outcome = writer.Write(Controparti(), row, place, roles);
    writer.Numbers(OwnerOf(place), row, Numeri);
    return outcome;
}

/// A counterparty is cancelled or not: one of which the source does not say so is left out, and told.
void TellUnmarked(ImportRun& run, const QString& onlyCode) {
    ForEachChild(run.GetSession(),
                 "SELECT * FROM PIA_CON WHERE TIPO IN ('C', 'F') AND ([_PCANN] IS NULL OR [_PCANN] NOT IN ('N', 'S'))" +
                     onlyCode + " ORDER BY [_PCCOD]",
                 PiaCon, "_PCCOD", [&run](const SourceRow& row) {
                     run.Log(QStringLiteral("CONTROPARTE NON LETTA: %1 '%2': _PCANN '%3' non è N (valida) né S "
                                            "(annullata)")
                                 .arg(NameOf(row, PiaCon, "_PCCOD"), row.Text("_PCDES"), row.Text("_PCANN")));
                 });
}

const Needs& ContropartiNeeds() {
    static const Needs needs{Controparti().All(), {{PiaCon, {"_PCANN"}, Numeri.Names()}}, CounterpartyNeeds()};
    return needs;
}

void ImportContropartiMEX(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportContropartiMEX", singleCode);
    run.Guard([&] {
        run.Announce("Inizio importazione controparti");
        run.Preflight(ContropartiNeeds());
        const CounterpartyRegister parties(run);
        run.Truncate(reset, CounterpartyTables());
        const QString onlyCode = run.OnlyCode(" AND", "[_PCCOD]", singleCode);
        TellUnmarked(run, onlyCode);
        const QString from = " FROM PIA_CON WHERE TIPO IN ('C', 'F') AND [_PCANN] = 'N'" + onlyCode;
        run.Rows({"Controparti", PiaCon, "_PCCOD", "SELECT COUNT(*)" + from, "SELECT *" + from + " ORDER BY [_PCCOD]"},
                 [&](const SourceRow& row) { return ImportControparte(run, parties, row); });
        run.Complete("Controparti importate correttamente!");
    });
}

// --- Chart of accounts --------------------------------------------------------------------------------------------

const Needs& PianoContiNeeds() {
    static const Needs needs{{&PianoConti()}, {}, {}};
    return needs;
}

void ImportPianoContiMEX(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportPianoContiMEX", singleCode);
    run.Guard([&] {
        run.Announce("Inizio importazione Piano dei Conti");
        run.Preflight(PianoContiNeeds());
        run.Truncate(reset, {"PIA_CON"});
        const QString from = " FROM PIA_CON WHERE (TIPO IS NULL OR TIPO NOT IN ('C', 'F'))" +
                             run.OnlyCode(" AND", "[_PCCOD]", singleCode);
        run.Rows(
            {"Piano dei Conti", PiaCon, "_PCCOD", "SELECT COUNT(*)" + from, "SELECT *" + from + " ORDER BY [_PCCOD]"},
            [&](const SourceRow& row) { return WriteByCode(run, PianoConti(), row, {row.Text("_PCCOD")}); });
        run.Complete("Piano dei Conti importato correttamente!");
    });
}

// --- Source and entry ---------------------------------------------------------------------------------------------

bool PrepareSource(Session& session, ovConnection& source) {
    if (!QFileInfo(sourceSettings::DatabasePath(session)).isDir()) {
        return sourceSettings::DataSource("MEXAL")(session, source);
    }
    source.LookupColumns = QStringList{"PIA_CON._PCCOD", "ART_MAG._ARCOD", "DIS_MAT._DBPAD"};
    return sourceSettings::TextFolder(QString())(session, source);
}

} // namespace

const Origin& Entry() {
    static const Origin origin{
        "Mexal",
        Module,
        {"CSV", PrepareSource},
        {{
            {Shown::Yes, ""},                     // Cli
            {Shown::Yes, ""},                     // Art
            {Shown::Yes, ""},                     // Dis
            {Shown::Yes, ""},                     // Doc
            {Shown::Yes, ""},                     // Acq
            {Shown::Yes, ""},                     // Saldi
            {Shown::Yes, ""},                     // Piano
            {Shown::Yes, "Importa Costi/Prezzi"}, // Disegni
        }},
        Shown::Keep,
        {
            {Button::Cli, "ImportContropartiMEX", ImportContropartiMEX, ContropartiNeeds()},
            {Button::Art, "ImportArticoliMEX", ImportArticoliMEX, ArticoliNeeds()},
            {Button::Dis, "ImportDistinteMex", ImportDistinteMex, DistinteNeeds()},
            // The file holds sales and purchases alike: one procedure stands behind both buttons.
            {Button::Doc, "ImportDocumentiMEX", ImportDocumentiMEX, DocumentiNeeds()},
            {Button::Acq, "ImportDocumentiMEX", ImportDocumentiMEX, DocumentiNeeds()},
            {Button::Saldi, "ImportSaldiMEX", ImportSaldiMEX, SaldiNeeds()},
            {Button::Piano, "ImportPianoContiMEX", ImportPianoContiMEX, PianoContiNeeds()},
            {Button::Disegni, "ImportaCostiPrezziFromMEX", ImportaCostiPrezziFromMEX, CostiPrezziNeeds()},
            {std::nullopt, "ImportUbicazioniMEX", ImportUbicazioniMEX, UbicazioniNeeds()},
        },
    };
    return origin;
}

} // namespace modImport_Mexal
