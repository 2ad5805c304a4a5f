// Tessera: a database, TESSERA unless the setting Databasename names another; user and password in Tessera_Username and
// Tessera_Password. Counterparties with destinations, articles with locations; bills stand in
// modImport_Tessera_bills.cpp, customer orders with production orders and purchase documents in
// modImport_Tessera_documents.cpp.
// OrdCliT with StatOrd and DisBasT are known from an installation. Everything else, tables and columns, is this
// system's own reading in their style; a name that differs is put right in the section "Source tables" or the mapping.
// Known gaps: contacts, price lists, stock.

#include "adapters/origins/Tessera/modImport_Tessera.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/Origin.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Counterparty.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Tessera {

const contract::Origin& Entry();

// --- Source tables ------------------------------------------------------------------------------------------------

namespace {

const QString CliFor = QStringLiteral("CliFor");
const QString CliForDest = QStringLiteral("CliForDest");
const QString Pagam = QStringLiteral("Pagam");
const QString Iva = QStringLiteral("Iva");
const NumberColumns Numeri{"Tel1", "Tel2", "Fax", "Cell", "EMail", "Web"};
const QString Lavorazioni = QStringLiteral("Lavorazioni"); ///< only a name of translations

// --- Lookups ------------------------------------------------------------------------------------------------------

/// The code that a table of the source has for an id.
QString CodeOfId(Session& session, const QString& query, const SourceRow& row, const QString& idColumn) {
    const double id = NumberOf(row, idColumn);
    if (id == 0) {
        return {};
    }
    const Recordset rows = session.SourceConnection().ExecuteWC(query + QString::number(id, 'f', 0));
    return rows.Eof() ? QString() : rows.Fields(0).Value().toString().trimmed();
}

} // namespace

QString GetCodContropartiTessera(Session& session, const SourceRow& row, const QString& idColumn) {
    return CodeOfId(session, "SELECT CodCliFor FROM CliFor WHERE IdCliFor = ", row, idColumn);
}

QString GetCodPagamentoTessera(Session& session, const SourceRow& row, const QString& idColumn) {
    return CodeOfId(session, "SELECT CodPag FROM Pagam WHERE IdPag = ", row, idColumn);
}

QString GetCodIvaTessera(Session& session, const SourceRow& row, const QString& idColumn) {
    return CodeOfId(session, "SELECT CodIva FROM Iva WHERE IdIva = ", row, idColumn);
}

std::vector<TableNeed> LookupNeeds() {
    return {{CliFor, {"IdCliFor", "CodCliFor"}}, {Pagam, {"IdPag", "CodPag"}}, {Iva, {"IdIva", "CodIva"}}};
}

QString ArticleOf(ImportRun& run, const QString& sourceCode) {
    return ArticleWriter(run).CodeOf(Artic, "CodArt", sourceCode);
}

QString UnitOf(Session& session, const QString& sourceCode) {
    const QString known = modImport::GetNewCode(session, Artic, "UniMis", sourceCode, true);
    return known.isEmpty() ? sourceCode.toUpper() : known;
}

QString WorkOf(Session& session, const QString& sourceCode) {
    const QString known = modImport::GetNewCode(session, Lavorazioni, "CodLav", sourceCode, true);
    return known.isEmpty() ? sourceCode : known;
}

QString SupplierOf(ImportRun& run, const SourceRow& row, const QString& idColumn) {
    Session& session = run.GetSession();
    if (NumberOf(row, idColumn) == 0) {
        return {};
    }
    const QString code = GetCodContropartiTessera(session, row, idColumn);
    const QString supplier = code.isEmpty() ? QString() : LookUp(session, "CON_TRO", "COFGE", code, "CDCON");
    if (supplier.isEmpty()) {
        run.Log(QStringLiteral("FORNITORE NON TROVATO: %1: %2 '%3'")
                    .arg(run.RowKey(), idColumn, code.isEmpty() ? row.Text(idColumn) : code));
    }
    return supplier;
}

namespace {

// --- Mappings -----------------------------------------------------------------------------------------------------

/// The payment term behind the id of a row.
Rule PaymentTerm() {
    return {"code of the Pagam of that IdPag, translated through SYS_IMP (Pagam, CodPag), missing codes recorded",
            [](const RuleInput& input) -> RuleValue {
                const QString code = GetCodPagamentoTessera(input.session, input.row, input.columns.first());
                const QString known = modImport::GetNewCode(input.session, Pagam, "CodPag", code, true);
                return known.isEmpty() ? RuleValue() : RuleValue(known);
            }};
}

/// The VAT code behind the id of a row, as it is in the source.
QString SourceVatCode(const RuleInput& input) {
    return GetCodIvaTessera(input.session, input.row, input.columns.first());
}

/// The VAT code behind the id of a row.
Rule VatCodeOfId() {
    return {QStringLiteral("code of the Iva of that IdIva: \"%1\" when there is none; else translated through SYS_IMP "
                           "(Iva, CodIva), else as it is when TAB_IVA has it, else recorded, logged and \"%1\"")
                .arg(schema::defaults::VatCode),
            [](const RuleInput& input) {
                const QString code = VatCodeOf(input.session, Iva, "CodIva", SourceVatCode(input));
                return RuleValue(code.isEmpty() ? schema::defaults::VatCode : code);
            }};
}

/// The same of a counterparty, who needs none.
Rule KnownVatOfId() {
    return {
        "code of the Iva of that IdIva, translated through SYS_IMP (Iva, CodIva); else as it is when TAB_IVA has that "
        "code, else recorded",
        [](const RuleInput& input) -> RuleValue {
            const QString code = TranslatedCode(input.session, Iva, "CodIva", SourceVatCode(input), "TAB_IVA");
            return code.isEmpty() ? RuleValue() : RuleValue(code);
        }};
}

const CounterpartyMapping& Controparti() {
    static const CounterpartyMapping mapping({
        "CON_TRO",
        CliFor,
        {
            {"CDCON", "CodCliFor", Code()},
            {"CORAS", "RagSoc", First(35)},
            {"CORA2", "RagSoc, RagSoc2", SecondName(35)},
            {"COINV", "", Today()},
            {"COANN", "FlgAnn", Flag()},
            {"COCON", "", Constant(true)},
            {"COCLI", "FlgCli", IsCustomer()},
            {"COSC1", "Sconto1", CustomerOnly(RoundedTo(2))},
            {"COSC2", "Sconto2", CustomerOnly(RoundedTo(2))},
            {"COCGE", "CodCliFor", CustomerOnly(Text())},
            {"COFOR", "FlgFor", IsSupplier()},
            {"COSF1", "Sconto1", SupplierOnly(RoundedTo(2))},
            {"COSF2", "Sconto2", SupplierOnly(RoundedTo(2))},
            {"COFGE", "CodCliFor", SupplierOnly(Text())},
            {"COIND", "Indir", Text()},
            {"COCAP", "Cap", Text()},
            {"COCIT", "Citta", Text()},
            {"COPRO", "Prov", Text()},
            {"CONAZ", "CodNaz", Country(CliFor, "CodNaz")},
            {"COLNG", "", Constant(schema::defaults::Language)},
            {"COVAL", "CodVal", Currency(CliFor, "CodVal")},
            {"COFIS", "CodFis", NotBlank(Text())},
            {"COIVA", "PartIva", NotBlank(Text())},
            {"COESE", "IdIva", Exemption(KnownVatOfId())},
            {"COTPF", "", Constant(schema::defaults::TaxTreatment)},
            {"COMOP", "IdPag", CustomerOnly(PaymentTerm())},
            {"COMOA", "IdPag", SupplierOnly(PaymentTerm())},
            {"COABI", "Abi", NotBlank(Digits(5))},
            {"COCAB", "Cab", NotBlank(Digits(5))},
            {"COCOC", "ContoC", NotBlank(Text())},
            {"COCIN", "Cin", NotBlank(Text())},
            {"COIBA", "Iban", NotBlank(WithoutBlanks())},
            {"COLSC", "CodLis", CustomerOnly(Translated(CliFor, "CodLis"))},
            {"COLSF", "CodLis", SupplierOnly(Translated(CliFor, "CodLis"))},
            {"COAGE", "CodAge", Translated(CliFor, "CodAge")},
            {"COBLK", "", Constant(false)},
            {"CONOT", "Note", Text()},
        },
    });
    return mapping;
}

const Mapping& Destinazioni() {
    static const Mapping mapping{
        "CON_SED",
        CliForDest,
        {
            {"CDCON", "IdCliFor", Code()},
            {"CDSED", "Progr", Digits(3)},
            {"SETIP", "", Constant("CO")},
            {"SERAS", "RagSoc", Text()},
            {"SEIND", "Indir", Text()},
            {"SECAP", "Cap", WhenNotBlank("Citta", Text())},
            {"SECIT", "Citta", WhenNotBlank("Citta", Text())},
            {"SEPRO", "Prov", Text()},
            {"SENAZ", "", Constant(schema::defaults::Country)},
            {"SEDEF", "", Constant(false)},
        },
    };
    return mapping;
}

const Mapping& Articoli() {
    static const Mapping mapping{
        "ART_ICO",
        Artic,
        {
            {"CDEXT", "CodArt", First(50)},
            {"IDEST", "IdArt", Text()},
            {"ARDES", "DesArt", First(100)},
            {"ARDE2", "DesArt2", First(100)},
            {"ARCDR", "DesArt", CodeAndText(100)},
            {"ARCLA", "TipArt", Choice({{"0", "PF"}, {"1", "SL"}, {"2", "CM"}, {"3", "LM"}}, "CM")},
            {"ARFAM", "CodFam", Translated(Artic, "CodFam")},
            {"ARTPG", "", Constant(schema::defaults::ArticleKind)},
            {"ARLAM", "TipArt", Is("3")},
            {"ARANN", "FlgAnn", Flag()},
            {"ARDIS", "Disegno", Text()},
            {"ARREV", "Rev", Text()},
            {"ARUMS", "UniMis", TranslatedOrUpper(Artic, "UniMis", schema::defaults::Unit)},
            {"ARUM2", "UniMis2", TranslatedOrUpper(Artic, "UniMis", "")},
            {"ARCOE", "FatConv", RoundedTo(6)},
            {"ARIVA", "IdIva", VatCodeOfId()},
            {"ARMAG", "", Constant(true)},
            {"ARMAD", "", Constant(schema::defaults::Warehouse)},
            {"ARSMN", "ScoMin", RoundedTo(6)},
            {"ARLOR", "LotRio", RoundedTo(6)},
            {"ARGGA", "GgRio", RoundedTo(0)},
            {"ARPSN", "PesoN", RoundedTo(3)},
            {"ARPSL", "PesoL", RoundedTo(3)},
            {"ARCOS", "CosStd, CosUlt", FirstNotZero()},
            {"ARPRZ", "PrzVen", RoundedTo(6)},
            {"ARRIC", "PrzVen, CosStd, CosUlt", MarkUp()},
        },
    };
    return mapping;
}

// --- Counterparties -----------------------------------------------------------------------------------------------

/// The roles of a row; one that has none cannot be carried over.
Roles RolesOf(const SourceRow& row) {
    const Roles roles{NumberOf(row, "FlgCli") != 0, NumberOf(row, "FlgFor") != 0};
    if (!roles.customer && !roles.supplier) {
        throw ImportError(QStringLiteral("colonne 'FlgCli', 'FlgFor': '%1', '%2' non dicono né cliente né fornitore")
                              .arg(row.Text("FlgCli"), row.Text("FlgFor")));
    }
    return roles;
}

void WriteDestinations(ImportRun& run, CounterpartyWriter& writer, const SourceRow& row, const Owner& owner) {
    Session& session = run.GetSession();
    ForEachChild(session,
                 "SELECT * FROM CliForDest\rWHERE IdCliFor = " +
                     LiteralOf(session.SourceConnection(), row.Value("IdCliFor")) + "\rORDER BY Progr",
                 CliForDest, "Progr", [&](const SourceRow& destination) {
                     if (!destination.IsBlank("Indir")) {
                         TargetRow target = writer.NewRow("CON_SED");
                         Destinazioni().Apply(target, session, destination, {owner.key});
                         writer.Branch(owner, target);
                     }
                 });
}

RowOutcome ImportControparte(ImportRun& run, const CounterpartyRegister& parties, const SourceRow& row) {
    const Roles roles = RolesOf(row);
    const QString name = QString(row.Text("RagSoc") + ' ' + row.Text("RagSoc2")).trimmed();
    const Placement place = parties.Place(
        {CliFor, "CodCliFor", row.Text("CodCliFor"), roles, name, row.Text("PartIva"), row.Text("CodFis")});
    CounterpartyWriter writer(run, {});
    const RowOutcome outcome = writer.Write(Controparti(), row, place, roles);
    writer.Numbers(OwnerOf(place), row, Numeri);
    WriteDestinations(run, writer, row, OwnerOf(place));
    return outcome;
}

} // namespace

const Needs& ContropartiNeeds() {
    static const Needs needs = [] {
        Needs all{Controparti().All(), {{CliFor, {"IdCliFor"}, Numeri.Names()}}, CounterpartyNeeds()};
        all.mappings.push_back(&Destinazioni());
        const auto lookups = LookupNeeds();
        all.reads.insert(all.reads.end(), lookups.begin(), lookups.end());
        return all;
    }();
    return needs;
}

void ImportContropartiTessera(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportContropartiTessera", singleCode);
    run.Guard([&] {
        run.Announce("Inizio importazione controparti");
        run.Preflight(ContropartiNeeds());
        const CounterpartyRegister parties(run);
        run.Truncate(reset, CounterpartyTables());
        const QString where = run.OnlyCode("\rWHERE", "CodCliFor", singleCode);
        run.Rows({"Controparti", CliFor, "CodCliFor", "SELECT COUNT(*) FROM CliFor" + where,
                  "SELECT * FROM CliFor" + where + "\rORDER BY CodCliFor"},
                 [&](const SourceRow& row) { return ImportControparte(run, parties, row); });
        run.Complete("Controparti importate correttamente!");
    });
}

// --- Articles -----------------------------------------------------------------------------------------------------

namespace {

void LinkSupplier(ImportRun& run, const ArticleWriter& writer, const SourceRow& row, const QString& article) {
    const QString supplier = SupplierOf(run, row, "IdFor");
    if (supplier.isEmpty()) {
        return;
    }
    const double cost = NumberOf(row, "CosStd");
    writer.Link(article, supplier, cost != 0 ? cost : NumberOf(row, "CosUlt"));
    if (!row.IsBlank("CodArtFor")) {
        writer.CodeAtCounterparty(article, row.Text("CodArtFor"), supplier);
    }
}

RowOutcome ImportArticolo(ImportRun& run, const SourceRow& row) {
    const ArticleWriter writer(run);
    const Facts facts{ArticleOf(run, row.Text("CodArt"))};
    const RowOutcome outcome = writer.Write(Articoli(), row, facts);
    writer.Texts(facts.code, row.Text("DesArt"));
    LinkSupplier(run, writer, row, facts.code);
    if (!row.IsBlank("CodUbi")) {
        writer.Location(facts.code, row.Text("CodUbi"));
    }
    return outcome;
}

} // namespace

const Needs& ArticoliNeeds() {
    static const Needs needs = [] {
        Needs all{{&Articoli()}, LookupNeeds(), ArticleNeeds()};
        all.reads.push_back({Artic, {"IdFor", "CodArtFor", "CodUbi"}});
        all.writes.push_back({"ART_COD", {"CDART", "CDCOD", "COTIP", "COTPC", "COCON"}});
        all.writes.push_back({"UBI_MAG", {"CDMAG", "CDUBI", "UBDES"}});
        all.writes.push_back({"UBI_ART", {"CDART", "CDUBI", "UAMAG", "UADEF"}});
        return all;
    }();
    return needs;
}

void ImportArticoliTessera(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportArticoliTessera", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione articoli");
        run.Preflight(ArticoliNeeds());
        EmptyArticles(run, reset);
        const QString where = run.OnlyCode("\rWHERE", "CodArt", singleCode);
        run.Rows({"Articoli", Artic, "CodArt", "SELECT COUNT(*) FROM Artic" + where,
                  "SELECT * FROM Artic" + where + "\rORDER BY CodArt"},
                 [&](const SourceRow& row) { return ImportArticolo(run, row); });
        run.Complete("Articoli importati correttamente!");
    });
}

// --- Entry --------------------------------------------------------------------------------------------------------

namespace {

const SourceSpec& Source() {
    static const SourceSpec source{
        "SQL Server", sourceSettings::Server("TESSERA", {"IMPORT", "0", "Tessera_Username", "Tessera_Password"})};
    return source;
}

} // namespace

const Origin& Entry() {
    static const Origin origin{
        "Tessera",
        Module,
        Source(),
        {{
            {Shown::Yes, ""},  // Cli
            {Shown::Yes, ""},  // Art
            {Shown::Yes, ""},  // Dis
            {Shown::Yes, ""},  // Doc
            {Shown::No, ""},   // Acq
            {Shown::No, ""},   // Saldi
            {Shown::No, ""},   // Piano
            {Shown::Keep, ""}, // Disegni
        }},
        Shown::Keep,
        {
            {Button::Cli, "ImportContropartiTessera", ImportContropartiTessera, ContropartiNeeds()},
            {Button::Art, "ImportArticoliTessera", ImportArticoliTessera, ArticoliNeeds()},
            {Button::Dis, "ImportDistinteTessera", ImportDistinteTessera, DistinteNeeds()},
            {Button::Doc, "ImportOrdCliTessera", ImportOrdCliTessera, OrdCliNeeds()},
            // The list hides the button of purchases for this origin: it is reached by its name.
            {std::nullopt, "ImportDocAcqTessera", ImportDocAcqTessera, DocAcqNeeds()},
        },
    };
    return origin;
}

/// Tessera where Solution keeps the accounts: its counterparties and its documents are Solution's, which has no module
/// yet.
const Origin& EntryWithSolution() {
    static const Origin origin{
        "Tessera + Solution",
        Module,
        Source(),
        {{
            {Shown::Yes, ""},  // Cli
            {Shown::Yes, ""},  // Art
            {Shown::Yes, ""},  // Dis
            {Shown::Yes, ""},  // Doc
            {Shown::Yes, ""},  // Acq
            {Shown::Keep, ""}, // Saldi
            {Shown::Keep, ""}, // Piano
            {Shown::Keep, ""}, // Disegni
        }},
        Shown::Keep,
        {
            {Button::Art, "ImportArticoliTessera", ImportArticoliTessera, ArticoliNeeds()},
            {Button::Dis, "ImportDistinteTessera", ImportDistinteTessera, DistinteNeeds()},
            {Button::Doc, "ImportOrdCliTessera", ImportOrdCliTessera, OrdCliNeeds(),
             "Importare gli ordini clienti di Tessera?\nI documenti di Solution non sono disponibili in questa "
             "versione."},
            {Button::Acq, "ImportDocAcqTessera", ImportDocAcqTessera, DocAcqNeeds()},
        },
    };
    return origin;
}

} // namespace modImport_Tessera
