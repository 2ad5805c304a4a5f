// EsaSoftware "e": an SQL Server database. Each table tells the company by DBGruppo; the setting of that name chooses
// one. ClientiFornitori, AnagrGenIndirizzi, AnagrGenCliFor and ArtAnagrafica, with the columns of names, addresses,
// numbers and units, are known from a later product of the same house; commercial columns, banks, contacts, price lists
// and the chart of accounts are this system's own reading in their style. Left out: CodMarca, CodNomenclaturaComb and
// MagGiacPerLotti, which Quadrix has no column for; AcqTipoAnagrForAbit, as a usual supplier is a supplier. Known gaps:
// documents and bills (DBaseRighe).

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/map/codeRules.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/run/tiedRows.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Esatto {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Esatto");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString CliFor = QStringLiteral("ClientiFornitori");
const QString Indirizzi = QStringLiteral("AnagrGenIndirizzi");
const QString Generali = QStringLiteral("AnagrGenCliFor");
const QString Banche = QStringLiteral("Banche");
const QString ArtAnagrafica = QStringLiteral("ArtAnagrafica");
const QString Versioni = QStringLiteral("DBaseVersioni");
const QString Prezzi = QStringLiteral("ListiniRighe");

/// The list that articles are sold by.
const QString FirstList = QStringLiteral("1");

// --- Rules and hooks ----------------------------------------------------------------------------------------------

/// "1" is blocked, "2" obsolete.
Rule IsOutOfUse() {
    return {"vero per \"1\" e \"2\"",
            [](const RuleInput& input) { return RuleValue(input.Text() == u"1" || input.Text() == u"2"); }};
}

/// What has a bill is made here, whatever its kind says.
Rule ArticleClass() {
    Rule rule{"\"PF\" se la prima colonna è 2 o DBaseVersioni ha la seconda come CodDb, altrimenti \"CM\"",
              [](const RuleInput& input) {
                  if (input.row.Text(input.columns.first()) == u"2") {
                      return RuleValue("PF");
                  }
                  ovConnection& source = input.session.SourceConnection();
                  const Recordset bills = source.ExecuteWC("SELECT CodDb FROM DBaseVersioni\rWHERE " +
                                                           TiedTo(source, "CodDb", input.row, input.columns.last()));
                  return RuleValue(bills.Eof() ? "CM" : "PF");
              },
              Side::Both,
              {{Versioni, {"CodDb"}}}};
    return WithDefault(Needing(1, std::move(rule)));
}

/// CDCON of who has been imported from the same person in the other role: one IdAnagGen is one counterparty.
Rule SamePerson() {
    return {"controparte importata da una riga con quell'IdAnagGen nell'altro ruolo (TipoAnagrafica); niente se manca",
            [](const RuleInput& input) -> RuleValue {
                ovConnection& source = input.session.SourceConnection();
                const bool isCustomer = input.facts.roles.customer;
                Recordset others = source.ExecuteWC(
                    "SELECT CodCliFor FROM ClientiFornitori\rWHERE IdAnagGen = " + LiteralOf(source, input.Value()) +
                    "\r  AND TipoAnagrafica = " + (isCustomer ? "2" : "1") + "\rORDER BY CodCliFor");
                for (const SourceRow other(others); !others.Eof(); others.MoveNext()) {
                    const QString code = LookUp(input.session, "CON_TRO", SourceCodeColumn(!isCustomer),
                                                other.Text("CodCliFor"), "CDCON");
                    if (!code.isEmpty()) {
                        return code;
                    }
                }
                return std::nullopt;
            },
            Side::Both,
            {{CliFor, {"CodCliFor", "IdAnagGen", "TipoAnagrafica"}}}};
}

/// The price of the article without variant that holds today: the one that began last; without one it is cleared.
void SetPrice(ImportRun& run, const SourceRow& row, TargetRow& target) {
    ovConnection& source = run.GetSession().SourceConnection();
    const Recordset prices = source.ExecuteWC(
        "SELECT PrezzoLis FROM ListiniRighe\rWHERE " + TiedTo(source, "CodArticolo", row, "CodArt") +
        "\r  AND CodListino = " + LiteralOf(source, FirstList) + "\r  AND (VarArt IS NULL OR VarArt = '')\r  AND " +
        NoDayOr(source, "DataInizio", "<=", run.GetSession().UserManager.DataElaborazione) +
        "\rORDER BY DataInizio DESC");
    target.Set("ARPRZ",
               prices.Eof() ? QVariant() : QVariant(RoundedTo(NumberOf(SourceRow(prices), "PrezzoLis"), UnitDecimals)));
    SetMarkUp(run, row, target);
}

QString WithoutName(const SourceRow& row) {
    return row.IsBlank("RagSoc1") ? QStringLiteral("anagrafica senza ragione sociale") : QString();
}

// --- Declarations -------------------------------------------------------------------------------------------------

/// NumRifAltroIndir names the branch that goods go to.
Branches Sedi() {
    const ChildTable naming{
        .table = CliFor, .on = {{"IdAnagGen"}}, .order = "TipoAnagrafica", .where = "NumRifAltroIndir > 0"};
    return {
        .rows = {.table = Indirizzi, .on = {{"IdAnagGen"}}, .order = "NumProgr", .where = "NumProgr > 0"},
        .lines =
            {
                {"CDSED", "NumProgr", Digits(3)},
                {"SERAS", "RagSoc1, RagSoc2", First(100)},
                {"SEIND", "Indirizzo", Text()},
                {"SECAP", "Cap", WhenNotBlank("Localita", Text())},
                {"SECIT", "Localita", WhenNotBlank("Localita", Text())},
                {"SEPRO", "Provincia", Text()},
                {"SENAZ", "CodStato", Country(Indirizzi, "CodStato")},
                {"SEDEF", "NumProgr", NamedBy(Indirizzi, naming, "NumRifAltroIndir")},
            },
        .numbers = {.office = "NumTel", .fax = "NumFax", .mail = "IndirEmail"},
    };
}

Contacts Contatti() {
    return {
        .rows = {.table = "AnagrGenContatti", .on = {{"IdAnagGen"}}, .order = "NumProgr"},
        .lines = {{"RFNOM", "Nome, Cognome", First(100)}, {"RFQUA", "DesFunzione", Text()}},
        .numbers = {.office = "NumTel", .mobile = "NumCell", .mail = "IndirEmail"},
    };
}

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiE"},
        .source = {.table = CliFor,
                   .key = "CodCliFor",
                   .order = "TipoAnagrafica, CodCliFor",
                   .where = "T.TipoAnagrafica IN (1, 2)",
                   .naming = "TipoAnagrafica, CodCliFor",
                   .joins = {{.table = Indirizzi,
                              .on = {{"IdAnagGen"}},
                              .columns = {"RagSoc1", "RagSoc2", "Indirizzo", "Cap", "Localita", "Localita2",
                                          "Provincia", "CodStato", "NumTel", "NumTel2", "NumFax", "NumCell",
                                          "IndirEmail", "SitoWeb", "FirmaUltVarData"},
                              .where = "J1.NumProgr = 0"},
                             {.table = Generali,
                              .on = {{"IdAnagGen"}},
                              .columns = {"PartitaIva", "CodFiscale", "FlagPersFisica", "Cognome", "Nome"}},
                             {.table = Banche, .on = {{"CodBanca"}}, .columns = {"CodAbi", "CodCab", "CodBic"}}}},
        .roles = ByLetter("TipoAnagrafica", {.customer = {"1"}, .supplier = {"2"}}),
        .name = "RagSoc1, RagSoc2",
        .vatNumber = "PartitaIva",
        .taxCode = "CodFiscale",
        .sameAs = {"IdAnagGen", NotBlank(SamePerson())},
        .lines =
            {
                {"CORAS", "RagSoc1", First(35)},
                {"CORA2", "RagSoc1, RagSoc2", SecondName(35)},
                {"COPER", "FlagPersFisica", Flag()},
                {"COCOG", "Cognome", NotBlank(Text())},
                {"CONOM", "Nome", NotBlank(Text())},
                {"COIND", "Indirizzo", Text()},
                {"COIN2", "Localita2", Text()},
                {"COCAP", "Cap", Text()},
                {"COCIT", "Localita", Text()},
                {"COPRO", "Provincia", Text()},
                {"CONAZ", "CodStato", Country(Indirizzi, "CodStato")},
                {"COIVA", "PartitaIva", NotBlank(Text())},
                {"COFIS", "CodFiscale", NotBlank(Text())},
                ByRole("COMOP", "COMOA", "CodPagamento", Translated(CliFor, "CodPagamento")),
                {"COABI", "CodAbi", NotBlank(Digits(5))},
                {"COCAB", "CodCab", NotBlank(Digits(5))},
                {"COBIC", "CodBic", NotBlank(Text())},
                {"COCOC", "NumContoCorr", NotBlank(Text())},
                {"COCIN", "Cin", NotBlank(Text())},
                {"COIBA", "Iban", NotBlank(WithoutBlanks())},
                {"COBAN", "CodBancaAzienda", OwnBank(CliFor, "CodBancaAzienda")},
                ByRole("COSC1", "COSF1", "Sconto1", NotBlank(RoundedTo(2))),
                ByRole("COSC2", "COSF2", "Sconto2", NotBlank(RoundedTo(2))),
                ByRole("COLSC", "COLSF", "CodListino", Translated(CliFor, "CodListino")),
                {"COVAL", "CodDivisa", Currency(CliFor, "CodDivisa")},
                {"COLNG", "CodLingua", TranslatedOr(CliFor, "CodLingua", schema::defaults::Language)},
                {"COAGE", "CodAgente", TranslatedOrKnown(CliFor, "CodAgente", "AGE_NTI")},
                {"COZON", "CodZona", Translated(CliFor, "CodZona")},
                ByRole("COCCC", "COCCF", "CodCategoria", Translated(CliFor, "CodCategoria")),
                {"COESE", "CodIvaEsenz", ExemptVat(CliFor, "CodIvaEsenz")},
                {"COPOR", "CodPorto", Translated(CliFor, "CodPorto")},
                {"COVEP", "CodVettore", Translated(CliFor, "CodVettore")},
                {"COFID", "Fido", NotZero()},
                {"COBLK", "FlagBlocco", Flag()},
                ByRole("COMAC", "COMAF", "CodMastro", NotBlank(Text())),
                {"CONOT", "Note", Text()},
                {"DTINS", "FirmaUltVarData", NotBlank(MomentOrNow())},
            },
        .numbers = {.office = "NumTel",
                    .office2 = "NumTel2",
                    .fax = "NumFax",
                    .mobile = "NumCell",
                    .mail = "IndirEmail",
                    .web = "SitoWeb"},
        .created = "FirmaUltVarData",
        .branches = {Sedi()},
        .contacts = {Contatti()},
        .leavesOut = WithoutName,
        .more = SetIban,
    };
}

Articles Articoli() {
    const auto unit = [](const QString& column) { return Unit(ArtAnagrafica, column, ""); };
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliE"},
        .source = {.table = ArtAnagrafica, .key = "CodArt", .order = "CodArt", .where = "TipoAnagr = 1"},
        .code = {"CodArt", ArticleCode(ArtAnagrafica, "CodArt")},
        .description = "DesArt",
        .lines =
            {
                {"CDEXT", "CodArt", Text()},
                {"ARDEC", "DesEstesa", First(255)},
                {"ARUMS", "MagUm", Unit(ArtAnagrafica, "MagUm", schema::defaults::Unit)},
                {"ARUM2", "TecniciUm", unit("TecniciUm")},
                {"ARUMP", "AcqUm", unit("AcqUm")},
                {"ARCOE", "FattoreConvUm", NotZero()},
                {"ARFAM", "CodFamiglia", Translated(ArtAnagrafica, "CodFamiglia")},
                {"ARTIP", "CodGruppoCodifica", Translated(ArtAnagrafica, "CodGruppoCodifica")},
                {"ARCLA", "TipoArt, CodArt", ArticleClass()},
                {"ARANN", "StatoArt", IsOutOfUse()},
                {"ARIVA", "CodIva", VatCode(ArtAnagrafica, "CodIva")},
                {"ARGGA", "AcqGiorniApprov", RoundedTo(0)},
                {"ARQMR", "AcqLottoMin", RoundedTo(6)},
                {"ARLOR", "AcqLottoMult", RoundedTo(6)},
                {"ARSMN", "MagScortaMin", RoundedTo(6)},
                {"ARSMX", "MagScortaMax", RoundedTo(6)},
                {"ARPUR", "MagPuntoRiord", RoundedTo(6)},
                {"ARPSN", "PesoNetto", RoundedTo(3)},
                {"ARPSL", "PesoLordo", RoundedTo(3)},
                {"ARCOS", "CostoStandard, CostoUltimo", FirstNotZero()},
                {"DTINS", "FirmaUltVarData", NotBlank(MomentOrNow())},
            },
        .suppliers = {{.supplier = {"AcqCodForAbituale", KnownSupplier()},
                       .price = {"CostoUltimo, CostoStandard", FirstNotZero()},
                       .leadDays = "AcqGiorniApprov",
                       .lot = "AcqLottoMult",
                       .minimum = "AcqLottoMin"}},
        .aliases = {{.code = "RicercaAlternativa"}},
        .more = SetPrice,
        .further = {{},
                    {{.table = Prezzi,
                      .columns = {"CodListino", "CodArticolo", "VarArt", "PrezzoLis", "DataInizio"},
                      .days = {"DataInizio"}}},
                    {{"ART_ICO", {"ARPRZ", "ARRIC"}}}},
    };
}

Accounts PianoConti() {
    return {
        .frame = {.module = Module, .procedure = "ImportPianoContiE"},
        .accounts = {.source = {.table = "PianoConti", .key = "CodConto", .order = "CodConto"},
                     .target = "PIA_CON",
                     .code = "CodConto",
                     .lines =
                         {
                             {"PCDES", "DesConto", First(100)},
                             {"PCMAS", "CodMastro", Text()},
                             {"PCNAT", "TipoConto", Text()},
                             {"PCTIP", "TipoConto", Text()},
                             {"PCBIL", "SezBilancio", BalanceSection("CR")},
                             {"PCLEV", "Livello", RoundedTo(0)},
                             {"PCRAG", "CodRiclass", Text()},
                             {"PCDET", "FlagMovimentabile", Flag()},
                         }},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "EsaSoftware \"e\"",
        Module,
        {.kind = "SQL Server",
         .prepare = sourceSettings::Server("ESATTO"),
         .company = CompanyKey{"DBGruppo", CliFor, "DBGruppo"}},
        Buttons("--------"),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti()),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Piano, PianoConti()),
        },
    };
    return origin;
}

} // namespace modImport_Esatto
