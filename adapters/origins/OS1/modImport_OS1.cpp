// OS1: the Access file "OS1.mdb" in the folder of the setting Databasename. Counterparties with destinations and a
// contact, articles with their suppliers. Nothing of the layout is published: every table and column is this system's
// own reading, fitted to an installation by "Tracciati/OS1.ini". Of BANCHE the codes are read, the names are not: the
// bank of a counterparty is its ABI and CAB. Known gaps: bills, price lists, stock, documents.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_OS1 {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_OS1");

const QString Clifor = QStringLiteral("CLIFOR");
const QString ArticoliTable = QStringLiteral("ARTICOLI");

// --- Counterparties -----------------------------------------------------------------------------------------------

const PartyColumns Columns{
    .name = "RagSoc",
    .name2 = "RagSoc2",
    .isPerson = "PersonaFisica",
    .surname = "Cognome",
    .firstName = "Nome",
    .street = "Indirizzo",
    .postCode = "CAP",
    .town = "Citta",
    .province = "Prov",
    .country = "Nazione",
    .vatNumber = "PartitaIVA",
    .taxCode = "CodFiscale",
    .payment = "CodPagamento",
    .ownBank = "CodBancaAzienda",
    .cin = "CIN",
    .account = "ContoCorrente",
    .iban = "IBAN",
    .bic = "SWIFT",
    .discount1 = "Sconto1",
    .discount2 = "Sconto2",
    .agent = "CodAgente",
    .list = "CodListino",
    .currency = "CodValuta",
    .language = "CodLingua",
    .zone = "CodZona",
    .category = "CodCategoria",
    .exemption = "CodIvaEsenzione",
    .port = "CodPorto",
    .carrier = "CodVettore",
    .credit = "Fido",
    .ledger = "Sottoconto",
    .isBlocked = "Bloccato",
    .isCancelled = "Annullato",
    .note = "Note",
    .created = "DataInserimento",
};

/// Five digits of a bank's code: the counterparty's own, else that of the bank that it names, unless that is another
/// one than the counterparty's other code tells: ABI and CAB of two banks are no bank.
/// @param column of CLIFOR @param there the same of BANCHE @param other the column of the other code
Rule BankCode(const QString& column, const QString& there, const QString& other, const QString& otherThere) {
    constexpr int digits = 5;
    const ChildTable bank{.table = "BANCHE", .on = {{"CodBanca"}}};
    const Rule own = NotBlank(Digits(digits));
    const Rule named = OfFirst(Clifor, bank, there, own);
    const Rule otherNamed = OfFirst(Clifor, bank, otherThere, own);
    Rule rule{QStringLiteral("%1; altrimenti %2, se %3 è vuoto o è quello di BANCHE").arg(own.text, named.text, other),
              [=](const RuleInput& input) -> RuleValue {
                  if (const RuleValue mine = own.apply(input)) {
                      return mine;
                  }
                  const RuleValue value = named.apply(input);
                  const RuleValue ownOther =
                      own.apply({input.session, input.row, {other}, input.facts, input.row.Text(other)});
                  if (!value || !ownOther || ownOther == otherNamed.apply(input)) {
                      return value;
                  }
                  modImport::LogNote(
                      input.session,
                      QStringLiteral("BANCA DIVERSA: %1: %2 '%3' non è della banca '%4': '%5' resta vuoto")
                          .arg(input.session.Errors.RowKey(), other, ownOther->toString(), input.row.Text("CodBanca"),
                               column));
                  return std::nullopt;
              },
              Side::Both, named.reads + otherNamed.reads};
    return AlsoIn(named.elsewhere, std::move(rule));
}

Branches Destinazioni() {
    return {
        .rows = {.table = "DESTINAZIONI", .on = {{"TipoCF"}, {"Codice"}}, .order = "NrDest"},
        .lines = BranchLines(Clifor, {.number = "NrDest",
                                      .name = "RagSoc",
                                      .street = "Indirizzo",
                                      .postCode = "CAP",
                                      .town = "Citta",
                                      .province = "Prov",
                                      .country = "Nazione",
                                      .person = "Riferimento",
                                      .isDefault = "Predefinita"}),
        .numbers = {.office = "Telefono", .fax = "Fax"},
    };
}

Counterparties Controparti() {
    const LineGroup usual(PartyLines(Clifor, Columns).Over({}));
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiOS1"},
        .source = {.table = Clifor, .key = "Codice", .order = "TipoCF, Codice", .naming = "TipoCF, Codice"},
        .roles = ByLetter("TipoCF", {.customer = {"C"}, .supplier = {"F"}}),
        .name = "RagSoc, RagSoc2",
        .vatNumber = "PartitaIVA",
        .taxCode = "CodFiscale",
        .lines = {usual,
                  {"COABI", "ABI", BankCode("ABI", "ABI", "CAB_Banca", "CAB")},
                  {"COCAB", "CAB_Banca", BankCode("CAB_Banca", "CAB", "ABI", "ABI")}},
        .numbers = {.office = "Telefono",
                    .office2 = "Telefono2",
                    .fax = "Fax",
                    .mobile = "Cellulare",
                    .mail = "Email",
                    .web = "SitoWeb"},
        .created = "DataInserimento",
        .branches = {Destinazioni()},
        .contacts = {{.lines = {{"RFNOM", "Riferimento", Text()}}}},
        .more = SetIban,
    };
}

// --- Articles -----------------------------------------------------------------------------------------------------

/// What an article's own supplier asks, which the table of suppliers tells.
Rule OfOwnSupplier(const QString& column, const Rule& rule) {
    const ChildTable own{.table = "ARTFORN", .on = {{"Codice"}, {"CodFornitore"}}};
    return OfFirst(ArticoliTable, own, column, rule);
}

std::vector<SupplierOfArticle> Fornitori() {
    return {
        {.supplier = {"CodFornitore", KnownSupplier()},
         .ownCode = {"CodArtFornitore", Or(NotBlank(Text()), OfOwnSupplier("CodArtFornitore", Text()))},
         .price = {"CostoUltimo, CostoStandard", Or(OfOwnSupplier("Prezzo", NotZero()), FirstNotZero())},
         .leadDays = {"CodFornitore", OfOwnSupplier("GiorniConsegna", RoundedTo(0))},
         .lot = {"CodFornitore", OfOwnSupplier("LottoMin", RoundedTo(6))}},
        {.rows = {.table = "ARTFORN", .on = {{"Codice"}}, .order = "CodFornitore"},
         .supplier = {"CodFornitore", KnownSupplier()},
         .ownCode = "CodArtFornitore",
         .price = "Prezzo",
         .leadDays = {"GiorniConsegna", RoundedTo(0)},
         .lot = {"LottoMin", RoundedTo(6)},
         .preferred = Fixed(false)},
    };
}

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliOS1"},
        .source = {.table = ArticoliTable, .key = "Codice", .order = "Codice"},
        .code = {"Codice", ArticleCode(ArticoliTable, "Codice")},
        .description = "Descrizione",
        .lines =
            {
                {"CDEXT", "Codice", First(50)},
                {"ARDE2", "Descrizione2", First(100)},
                {"ARDEC", "DescrEstesa", First(255)},
                {"ARUMS", "UM", Unit(ArticoliTable, "UM", schema::defaults::Unit)},
                {"ARUM2", "UM2", Unit(ArticoliTable, "UM2", "")},
                {"ARCOE", "FattoreConv", NotZero()},
                {"ARIVA", "CodIva", VatCode(ArticoliTable, "CodIva")},
                {"ARCLA", "TipoArticolo", Choice({{"PF", "PF"}}, "CM")},
                {"ARFAM", "CodFamiglia", Translated(ArticoliTable, "CodFamiglia")},
                {"ARCOS", "CostoUltimo, CostoStandard", FirstNotZero()},
                {"ARPRZ", "Prezzo1", RoundedTo(6)},
                {"ARRIC", "Prezzo1, CostoUltimo, CostoStandard", MarkUp()},
                {"ARSCO", "Sconto", RoundedTo(2)},
                {"ARPSN", "PesoNetto", RoundedTo(3)},
                {"ARPSL", "PesoLordo", RoundedTo(3)},
                {"ARSMN", "ScortaMinima", RoundedTo(6)},
                {"ARSMX", "ScortaMassima", RoundedTo(6)},
                {"ARPUR", "PuntoRiordino", RoundedTo(6)},
                {"ARQMR", "QtaMinOrdine", RoundedTo(6)},
                {"ARLOR", "LottoRiordino", RoundedTo(6)},
                {"ARGGA", "GiorniConsegna", RoundedTo(0)},
                {"ARNOT", "Note", Text()},
                {"ARANN", "Annullato", Flag()},
                {"DTINS", "DataInserimento", NotBlank(MomentOrNow())},
            },
        .suppliers = Fornitori(),
        .aliases = {{.code = "CodiceBarre"}},
        .location = "Ubicazione",
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "OS1",
        Module,
        {.kind = "Access", .prepare = sourceSettings::AccessFileInFolder("OS1.mdb"), .names = Naming::OurReading},
        Buttons("YYNNNNN-"),
        Shown::Keep,
        {ProcedureOf(Button::Cli, Controparti()), ProcedureOf(Button::Art, Articoli())},
    };
    return origin;
}

} // namespace modImport_OS1
