// Scala: a workbook that the operator chooses. The first sheet has a counterparty in each row under the headings of its
// first row, up to the first row without a "Codice"; the headings may stand in any order. Customer-specific, nothing of
// it is published: the headings are this system's own reading, fitted to another workbook by "Tracciati/Scala.ini".
// Known gaps: branches, everything but counterparties.

#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/map/numberedLists.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"
#include "sources/privateDatabase.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Scala {

const contract::Origin& Entry();

namespace {

const QString Sheet = QStringLiteral("SCALA");

// --- Rules --------------------------------------------------------------------------------------------------------

Rule CountryOfSheet() { return Country(Sheet, "NAZIONE"); }

/// A number in so many digits, which a sheet shows without its leading zeros, where the counterparty is Italian.
Rule ItalianDigits(int count) {
    const Rule digits = Digits(count);
    return {digits.text + QStringLiteral(" se \"Nazione\" è l'Italia; altrimenti com'è"),
            [digits = digits.apply, country = CountryOfSheet().apply](const RuleInput& input) {
                const auto found = country({input.session, input.row, {"Nazione"}, input.facts});
                const bool isItalian = found && found->toString() == schema::defaults::Country;
                return isItalian ? digits(input) : RuleValue(input.Text());
            }};
}

// --- Declaration --------------------------------------------------------------------------------------------------

const PartyColumns Columns{
    .name = "Ragione sociale",
    .name2 = "Ragione sociale 2",
    .street = "Indirizzo",
    .town = "Localita",
    .province = "Provincia",
    .taxCode = "Codice fiscale",
    .abi = "ABI",
    .cab = "CAB",
    .account = "Conto corrente",
    .iban = "IBAN",
    .agent = "Agente",
    .currency = "Valuta",
    .isBlocked = "Bloccato",
    .note = "Note",
};

/// The addresses of a counterparty, ";" between them.
void WriteMails(ImportRun& /*run*/, CounterpartyWriter& writer, const SourceRow& row, const Owner& owner) {
    bool isFirst = true;
    for (const QString& address : row.Text("E-mail").split(u';')) {
        if (!address.trimmed().isEmpty()) {
            writer.Mail(owner, isFirst ? QStringLiteral("@ Principale") : QStringLiteral("@ Ufficio"), address);
            isFirst = false;
        }
    }
}

Counterparties Controparti() {
    const LineGroup usual(PartyLines(Sheet, Columns).Over({}));
    return {
        .frame = {.module = "modImport_Scala", .procedure = "ImportContropartiScala"},
        .source = {.table = Sheet, .key = "Codice", .order = sources::RowNumberColumn},
        .roles = ByLetter("Tipo", {.customer = {"C"}, .supplier = {"F"}, .both = {"E"}}),
        .name = "Ragione sociale, Ragione sociale 2",
        .vatNumber = {"Partita IVA", ItalianDigits(11)},
        .taxCode = "Codice fiscale",
        .lines =
            {
                usual,
                {"COCAP", "CAP", NotBlank(ItalianDigits(5))},
                {"CONAZ", "Nazione", CountryOfSheet()},
                {"COIVA", "Partita IVA", NotBlank(ItalianDigits(11))},
                ByRole("COMOP", "COMOA", "Pagamento", Translated(Sheet, "PAGAMENTI")),
                {"COBAN", "Banca d'appoggio", OwnBank(Sheet, "BANCA")},
                DiscountsByRole("Sconto %"),
                ByRole("COLSC", "COLSF", "Listino", ListOfParty("LISTINO", Sheet, "Listino")),
                {"COESE", "Codice esenzione", ExemptVat(Sheet, "COD.ESENZIONEIVA")},
                {"COCFE", "Codice SDI", NotBlank(Text())},
                {"COPEC", "PEC", NotBlank(Text())},
            },
        .numbers =
            {.office = "Telefono", .office2 = "Telefono 2", .fax = "Fax", .mobile = "Cellulare", .web = "Sito web"},
        .contacts = {{.lines = {{"RFNOM", "Referente", Text()}}}},
        .more = SetIban,
        .after = WriteMails,
        .further = {{}, {{Sheet, {}, {"E-mail"}}}, {}},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Scala",
        "modImport_Scala",
        {.kind = "Excel",
         .prepare = sourceSettings::OpenFileExcel({{.table = Sheet, .end = {"Codice"}}}),
         .names = Naming::OurReading},
        Buttons("YNNN----"),
        Shown::Keep,
        {ProcedureOf(Button::Cli, Controparti())},
    };
    return origin;
}

} // namespace modImport_Scala
