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
#include "sources/textFolder.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Terrauna {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Terrauna");

// --- Source files -------------------------------------------------------------------------------------------------

/// The chosen file, whatever import reads it.
const QString Table = QStringLiteral("TERRAUNA");
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
    const LineGroup usual(PartyLines(Table, Columns).Over({}));
    return {
        .frame = {.module = Module,
                  .procedure = "ImportContropartiTerraunaFromCSV",
                  .announcement = "Inizio importazione controparti da CSV"},
        .source = {.table = Table, .key = "Codice", .order = RowNumber},
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
                ByRole("COMOP", "COMOA", "CodPagamento", Translated(Table, "PAGAMENTI")),
                {"COESE", "CodEsenzioneIVA", ExemptVat(Table, "COD.ESENZIONEIVA")},
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
        .source = {.table = Table, .key = "CodiceArticolo", .order = RowNumber},
        .code = {"CodiceArticolo", ArticleCode(Table, "CodiceArticolo")},
        .description = "Descrizione",
        .lines =
            {
                {"CDEXT", "CodiceArticolo", First(50)},
                {"ARDE2", "Descrizione2", First(100)},
                {"ARDEC", "DescrizioneEstesa", First(255)},
                {"ARUMS", "UM", Unit(Table, "UM", schema::defaults::Unit)},
                {"ARUM2", "UM2", Unit(Table, "UM2", "")},
                {"ARCOE", "Coefficiente", NotZero()},
                {"ARIVA", "AliquotaIVA", VatCode(Table, "AliquotaIVA")},
                {"ARCLA", "Classe",
                 Choice({{"PF", "PF"}, {"SL", "SL"}, {"CM", "CM"}, {"LM", "LM"}, {"TB", "TB"}}, "CM")},
                {"ARFAM", "Famiglia", TranslatedOrKnown(Table, "Famiglia", "FAM_PRO")},
                {"ARMAT", "Materiale", TranslatedOrKnown(Table, "Materiale", "TAB_MAT")},
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

// --- Source -------------------------------------------------------------------------------------------------------

bool ChooseFile(Session& session, ovConnection& source) {
    const auto choose =
        sourceSettings::TextFile("File CSV da importare", "File CSV (*.csv)|*.csv|Tutti i file (*.*)|*.*");
    if (!choose(session, source)) {
        return false;
    }
    source.SourceTables.clear();
    source.OpenFiles = [file = session.Dialogs.FileName](const ConnectionSettings& settings) {
        return sources::OpenTextFile(file, Table, settings);
    };
    return true;
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Terrauna",
        Module,
        {.kind = "CSV", .prepare = {ChooseFile, Place::Chosen}, .names = Naming::OurReading},
        Buttons("YYNNNNN-"),
        Shown::Keep,
        {ProcedureReadingChosenFile(Button::Cli, Controparti()), ProcedureReadingChosenFile(Button::Art, Articoli())},
    };
    return origin;
}

} // namespace modImport_Terrauna
