// Axis: an Access file that is prepared from it, AXIS unless the setting Databasename names another; where that is
// none, one that the operator chooses. Customers and suppliers (Anagrafiche) with their destinations, and articles. All
// tables and columns are this system's own reading, fitted to an installation by "Tracciati/Axis.ini". Known gaps:
// bills, price lists, stock, documents.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Axis {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Axis");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Anagrafiche = QStringLiteral("Anagrafiche");
const QString ArticoliTable = QStringLiteral("Articoli");

// --- Counterparties -----------------------------------------------------------------------------------------------

/// A VAT number as Quadrix keeps it. An Italian one, with "IT" in front or of somebody not known to be elsewhere: its
/// digits alone, those of 7 to 10 digits with zeros in front to 11. One of another country, with two other letters in
/// front or of somebody elsewhere: the text without surrounding blanks, in upper case. Empty for a blank one.
QString FormatPartitaIvaAxis(const QString& number, bool isItalian) {
    constexpr int shortest = 7;
    constexpr int length = 11;
    const auto isLetter = [](QChar one) { return one >= u'A' && one <= u'Z'; };
    QString text = number.trimmed().toUpper();
    const bool hasPrefix = text.size() > 1 && isLetter(text.at(0)) && isLetter(text.at(1));
    if (hasPrefix ? !text.startsWith(u"IT") : !isItalian) {
        return text;
    }
    text.removeIf([](QChar one) { return one < u'0' || one > u'9'; });
    return text.size() < shortest ? text : text.rightJustified(length, u'0');
}

/// Whether a country that the rule of countries has found is another one than Italy: what no translation tells and
/// TAB_NAZ does not have is not known to be one.
bool IsKnownAbroad(const RuleInput& input, const RuleValue& found) {
    if (!found || found->toString() == schema::defaults::Country) {
        return false;
    }
    const QString code = found->toString();
    return modImport::GetNewCode(input.session, Anagrafiche, "Nazione", input.row.Text("Nazione"), false) == code ||
           IsThere(input.session, "TAB_NAZ", "CDNAZ", code);
}

Rule VatNumber() {
    return {"come la scrive FormatPartitaIvaAxis, di un italiano salvo che Nazione sia un altro paese, tradotto o in "
            "TAB_NAZ; niente se è vuota",
            [country = Country(Anagrafiche, "Nazione").apply](const RuleInput& input) {
                const RuleValue found = country({input.session, input.row, {"Nazione"}, input.facts});
                const bool isItalian = !IsKnownAbroad(input, found);
                const QString number = FormatPartitaIvaAxis(input.row.Text(input.columns.first()), isItalian);
                return number.isEmpty() ? RuleValue() : RuleValue(number);
            }};
}

const PartyColumns Columns{
    .name = "RagioneSociale",
    .name2 = "RagioneSociale2",
    .street = "Indirizzo",
    .postCode = "Cap",
    .town = "Citta",
    .province = "Provincia",
    .country = "Nazione",
    .taxCode = "CodiceFiscale",
    .payment = "CodPagamento",
    .abi = "Abi",
    .cab = "Cab",
    .cin = "Cin",
    .account = "ContoCorrente",
    .iban = "Iban",
    .discount1 = "Sconto",
    .agent = "CodAgente",
    .list = "CodListino",
    .currency = "Valuta",
    .exemption = "CodIva",
    .isCancelled = "Annullato",
    .note = "Note",
};

Branches Destinazioni() {
    return {
        .rows = {.table = "Destinazioni",
                 .on = {{"Codice"}, {"Tipo"}},
                 .order = "Progressivo",
                 .naming = "Tipo, Codice, Progressivo"},
        .lines = BranchLines("Destinazioni", {.number = "Progressivo",
                                              .name = "RagioneSociale",
                                              .street = "Indirizzo",
                                              .postCode = "Cap",
                                              .town = "Citta",
                                              .province = "Provincia"}),
    };
}

Counterparties Controparti() {
    const LineGroup usual(PartyLines(Anagrafiche, Columns).Over({}));
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiAxis"},
        .source = {.table = Anagrafiche, .key = "Codice", .order = "Tipo, Codice", .naming = "Tipo, Codice"},
        .roles = ByLetter("Tipo", {.customer = {"C"}, .supplier = {"F"}}),
        .name = "RagioneSociale, RagioneSociale2",
        .vatNumber = {"PartitaIva", VatNumber()},
        .taxCode = "CodiceFiscale",
        .lines = {usual, {"COIVA", "PartitaIva", VatNumber()}},
        .numbers = {.office = "Telefono1",
                    .office2 = "Telefono2",
                    .fax = "Fax",
                    .mobile = "Cellulare",
                    .mail = "Email",
                    .web = "SitoWeb"},
        .branches = {Destinazioni()},
        .contacts = {{.lines = {{"RFNOM", "Referente", Text()}}}},
        .more = SetIban,
    };
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliAxis"},
        .source = {.table = ArticoliTable, .key = "Codice", .order = "Codice"},
        .code = {"Codice", ArticleCode(ArticoliTable, "Codice")},
        .description = "Descrizione",
        .lines =
            {
                {"CDEXT", "Codice", First(50)},
                {"ARDE2", "Descrizione2", First(100)},
                {"ARUMS", "UM", Unit(ArticoliTable, "UM", schema::defaults::Unit)},
                {"ARUM2", "UM2", Unit(ArticoliTable, "UM2", "")},
                {"ARCOE", "Fattore", NotZero()},
                {"ARIVA", "CodIva", VatCode(ArticoliTable, "CodIva")},
                {"ARCLA", "Classe", Choice({{"PF", "PF"}, {"SL", "SL"}}, "CM")},
                {"ARFAM", "Famiglia", TranslatedOrKnown(ArticoliTable, "Famiglia", "FAM_PRO")},
                {"ARCOS", "Costo", RoundedTo(6)},
                {"ARPRZ", "Prezzo", RoundedTo(6)},
                {"ARPSN", "PesoNetto", RoundedTo(3)},
                {"ARPSL", "PesoLordo", RoundedTo(3)},
                {"ARSMN", "ScortaMinima", RoundedTo(6)},
                {"ARLOR", "LottoRiordino", RoundedTo(6)},
                {"ARGGA", "GiorniRiordino", RoundedTo(0)},
                {"ARNOT", "Note", Text()},
                {"ARANN", "Annullato", Flag()},
            },
        .suppliers = {{.supplier = {"CodFornitore", KnownSupplier()},
                       .ownCode = "CodArtFornitore",
                       .price = "Costo",
                       .leadDays = "GiorniRiordino",
                       .lot = "LottoRiordino"}},
        .more = SetMarkUp,
        .further = {{}, {}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Axis",
        Module,
        {.kind = "Access", .prepare = sourceSettings::ChosenAccessFile("AXIS"), .names = Naming::OurReading},
        Buttons("YY------"),
        Shown::Keep,
        {ProcedureOf(Button::Cli, Controparti()), ProcedureOf(Button::Art, Articoli())},
    };
    return origin;
}

} // namespace modImport_Axis
