// Terrauna: CSV files, one for each import, that the operator chooses: counterparties, articles. The first line names
// the columns, in any case and order; a line with fewer fields is given up. Nothing of the layout is known: every
// column is this system's own reading, fitted to an installation by "Tracciati/Terrauna.ini". Known gaps: branches,
// bills, price lists, stock, documents.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/kinds/readFiles.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"
#include "sources/privateDatabase.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Terrauna {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Terrauna");

// --- Source files -------------------------------------------------------------------------------------------------

/// The chosen file, by the import that reads it.
const QString ContropartiFile = QStringLiteral("CONTROPARTI");
const QString ArticoliFile = QStringLiteral("ARTICOLI");
const QString Codes = QStringLiteral("TERRAUNA"); ///< by which SYS_IMP knows the codes of both
const QString& RowNumber = sources::RowNumberColumn;

// --- Counterparties -----------------------------------------------------------------------------------------------

const PartyColumns Columns{
    .name = "RagioneSociale",
    .name2 = "RagioneSociale2",
    .street = "Indirizzo",
    .postCode = "CAP",
    .town = "Citta",
    .province = "Provincia",
    .country = "Nazione",
    .vatNumber = "PartitaIVA",
    .taxCode = "CodiceFiscale",
    .abi = "ABI",
    .cab = "CAB",
    .account = "ContoCorrente",
    .iban = "IBAN",
    .bic = "BIC",
    .discount1 = "Sconto1",
    .discount2 = "Sconto2",
    .agent = "Agente",
    .list = "Listino",
    .currency = "Valuta",
    .note = "Note",
};

Counterparties Controparti() {
    const LineGroup usual(PartyLines(Codes, Columns).Over({}));
    return {
        .frame = {.module = Module,
                  .procedure = "ImportContropartiTerraunaFromCSV",
                  .announcement = "Inizio importazione controparti da CSV"},
        .source = {.table = ContropartiFile, .key = "Codice", .order = RowNumber},
        .roles = ByLetter("Tipo", {.customer = {"C"}, .supplier = {"F"}, .both = {"CF"}}),
        .name = "RagioneSociale, RagioneSociale2",
        .vatNumber = "PartitaIVA",
        .taxCode = "CodiceFiscale",
        .lines =
            {
                usual,
                {"CONRC", "Civico", Text()},
                {"COCFE", "CodiceSDI", NotBlank(Text())},
                {"COPEC", "PEC", NotBlank(Text())},
                ByRole("COMOP", "COMOA", "CodPagamento", Translated(Codes, "PAGAMENTI")),
                {"COESE", "CodEsenzioneIVA", ExemptVat(Codes, "COD.ESENZIONEIVA")},
            },
        .numbers = {.office = "Telefono",
                    .office2 = "Telefono2",
                    .fax = "Fax",
                    .mobile = "Cellulare",
                    .mail = "Email",
                    .web = "SitoWeb"},
        .contacts = {{.lines = {{"RFNOM", "Referente", Text()}}}},
        .more = SetIban,
    };
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportArticoliTerraunaFromCSV",
                  .announcement = "Inizio importazione articoli da CSV"},
        .source = {.table = ArticoliFile, .key = "CodiceArticolo", .order = RowNumber},
        .code = {"CodiceArticolo", ArticleCode(Codes, "CodiceArticolo")},
        .description = "Descrizione",
        .lines =
            {
                {"CDEXT", "CodiceArticolo", First(50)},
                {"ARDE2", "Descrizione2", First(100)},
                {"ARDEC", "DescrizioneEstesa", First(255)},
                {"ARUMS", "UM", Unit(Codes, "UM", schema::defaults::Unit)},
                {"ARUM2", "UM2", Unit(Codes, "UM2", "")},
                {"ARCOE", "Coefficiente", NotZero()},
                {"ARIVA", "AliquotaIVA", VatCode(Codes, "AliquotaIVA")},
                {"ARCLA", "Classe",
                 Choice({{"PF", "PF"}, {"SL", "SL"}, {"CM", "CM"}, {"LM", "LM"}, {"TB", "TB"}}, "CM")},
                {"ARFAM", "Famiglia", TranslatedOrKnown(Codes, "Famiglia", "FAM_PRO")},
                {"ARMAT", "Materiale", TranslatedOrKnown(Codes, "Materiale", "TAB_MAT")},
                {"ARCOS", "Costo", RoundedTo(6)},
                {"ARPRZ", "Prezzo", RoundedTo(6)},
                {"ARPSN", "PesoNetto", RoundedTo(3)},
                {"ARPSL", "PesoLordo", RoundedTo(3)},
                {"ARDMX", "Lunghezza", RoundedTo(6)},
                {"ARDMY", "Larghezza", RoundedTo(6)},
                {"ARDMZ", "Spessore", RoundedTo(6)},
                {"ARSMN", "ScortaMinima", RoundedTo(6)},
                {"ARLOR", "LottoRiordino", RoundedTo(6)},
                {"ARGGA", "GiorniConsegna", RoundedTo(0)},
                {"ARDIS", "Disegno", Text()},
                {"ARREV", "Revisione", Text()},
                {"ARNOT", "Note", Text()},
            },
        .suppliers = {{.supplier = {"CodFornitore", KnownSupplier()},
                       .ownCode = "CodArtFornitore",
                       .price = "Costo",
                       .leadDays = "GiorniConsegna",
                       .lot = "LottoRiordino"}},
        .location = "Ubicazione",
        .more = SetMarkUp,
        .further = {{}, {}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Terrauna",
        Module,
        {.kind = "CSV",
         .prepare = sourceSettings::CsvFileAs({ContropartiFile, ArticoliFile}),
         .names = Naming::OurReading},
        Buttons("YYNNNNN-"),
        Shown::Keep,
        {ProcedureReadingChosenFile(Button::Cli, Controparti()), ProcedureReadingChosenFile(Button::Art, Articoli())},
    };
    return origin;
}

} // namespace modImport_Terrauna
