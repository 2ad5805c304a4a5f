// Dss Waps: a folder of dump files of fixed width, DSSWAPS unless the setting Databasename names another. Customers and
// suppliers are accounts of PIANOC.dat, whose registry is ANAGR.dat and whose destinations are CLIDEST.dat; articles
// are in MARTIC.dat, and what their warehouse knows of them in MAGEX.dat. The names of the files are known; what stands
// where in their lines is this system's own reading, in the records below. Known gaps: the accounts that are neither
// customers nor suppliers; the stock (GIACENZA of MAGEX.dat), which this dump tells for information alone.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/kinds/readFiles.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"
#include "sources/privateDatabase.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_DssWaps {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_DssWaps");

// --- Source files -------------------------------------------------------------------------------------------------

const QString Pianoc = QStringLiteral("PIANOC");
const QString Anagr = QStringLiteral("ANAGR");
const QString Clidest = QStringLiteral("CLIDEST");
const QString Martic = QStringLiteral("MARTIC");
const QString Magex = QStringLiteral("MAGEX");
const QString& RowNumber = sources::RowNumberColumn; ///< in place of an order: that of the file

using sources::FixedField;
constexpr auto Number = FixedField::Kind::Number;

/// A table with the name of its file. Blanks at the end of a line are not always written.
sources::FixedRecord RecordOf(const QString& table, int length, std::vector<FixedField> fields) {
    return {.table = table, .file = table + ".dat", .length = length, .fields = std::move(fields), .mayBeShort = true};
}

/// An account is called by ledger and number, two and six characters, which stand together wherever it is named.
std::vector<sources::FixedRecord> Records() {
    return {
        RecordOf(Pianoc, 120,
                 {
                     {"CODICE", 1, 8},
                     {"TIPO", 9, 1},
                     {"RAGSOC", 10, 40},
                     {"CODANA", 50, 6},
                     {"CODPAG", 56, 3},
                     {"ABI", 59, 5},
                     {"CAB", 64, 5},
                     {"CCORR", 69, 12},
                     {"AGENTE", 81, 3},
                     {"LISTINO", 84, 2},
                     {"SCONTO", 86, 4, Number, 2},
                     {"CODIVA", 90, 3},
                     {"VALUTA", 93, 3},
                     {"ANNULL", 96, 1},
                 }),
        RecordOf(Anagr, 320,
                 {
                     {"CODANA", 1, 6},
                     {"RAGSO2", 7, 40},
                     {"INDIR", 47, 35},
                     {"CAP", 82, 5},
                     {"LOCAL", 87, 30},
                     {"PROV", 117, 2},
                     {"NAZ", 119, 3},
                     {"CODFIS", 122, 16},
                     {"PARIVA", 138, 11},
                     {"TEL1", 149, 15},
                     {"TEL2", 164, 15},
                     {"FAX", 179, 15},
                     {"CELL", 194, 15},
                     {"EMAIL", 209, 50},
                     {"IBAN", 259, 27},
                     {"NOTE", 286, 30},
                 }),
        RecordOf(Clidest, 160,
                 {
                     {"CODICE", 1, 8},
                     {"PROGR", 9, 3},
                     {"RAGSOC", 12, 40},
                     {"INDIR", 52, 35},
                     {"CAP", 87, 5},
                     {"LOCAL", 92, 30},
                     {"PROV", 122, 2},
                     {"TEL", 124, 15},
                     {"RIFER", 139, 20},
                 }),
        RecordOf(Martic, 240,
                 {
                     {"CODART", 1, 20},
                     {"DESCR1", 21, 40},
                     {"DESCR2", 61, 40},
                     {"UM", 101, 2},
                     {"UM2", 103, 2},
                     {"FATCON", 105, 9, Number, 4},
                     {"CODIVA", 114, 3},
                     {"TIPO", 117, 1},
                     {"GRUPPO", 118, 4},
                     {"COSTO", 122, 11, Number, 4},
                     {"PREZZO", 133, 11, Number, 4},
                     {"PESO", 144, 9, Number, 3},
                     {"CODFOR", 153, 8},
                     {"ARTFOR", 161, 20},
                     {"ANNULL", 181, 1},
                 }),
        RecordOf(Magex, 80,
                 {
                     {"CODART", 1, 20},
                     {"MAGAZ", 21, 3},
                     {"SCMIN", 35, 9, Number, 3},
                     {"SCMAX", 44, 9, Number, 3},
                     {"LOTTO", 53, 9, Number, 3},
                     {"GGAPP", 62, 3, Number},
                     {"UBICAZ", 65, 12},
                 }),
    };
}

// --- Counterparties -----------------------------------------------------------------------------------------------

const PartyColumns Conditions{
    .payment = "CODPAG",
    .abi = "ABI",
    .cab = "CAB",
    .account = "CCORR",
    .discount1 = "SCONTO",
    .agent = "AGENTE",
    .list = "LISTINO",
    .currency = "VALUTA",
    .exemption = "CODIVA",
};

const PartyColumns Registry{
    .street = "INDIR",
    .postCode = "CAP",
    .town = "LOCAL",
    .province = "PROV",
    .country = "NAZ",
    .vatNumber = "PARIVA",
    .taxCode = "CODFIS",
    .iban = "IBAN",
    .note = "NOTE",
};

const QStringList RegistryColumns{"RAGSO2", "INDIR", "CAP", "LOCAL", "PROV",  "NAZ",  "CODFIS", "PARIVA",
                                  "TEL1",   "TEL2",  "FAX", "CELL",  "EMAIL", "IBAN", "NOTE"};

/// The second line of a name, which the registry goes on with.
Rule SecondLine() {
    const Rule second = SecondName(35);
    return {QStringLiteral("con RAGSO2 di ANAGR: ") + second.text,
            [second](const RuleInput& input) {
                return second.apply({input.session, input.row, {input.columns.first(), "RAGSO2"}, input.facts});
            },
            Side::Both,
            {{Anagr, {"RAGSO2"}}}};
}

QString NoParty(const SourceRow& row) {
    return QStringList{"C", "F"}.contains(row.Text("TIPO"), Qt::CaseInsensitive)
               ? QString()
               : QStringLiteral("conto che non è di cliente né di fornitore");
}

QString Cancelled(const SourceRow& row) {
    return row.Text("ANNULL").compare(u"A", Qt::CaseInsensitive) == 0 ? QStringLiteral("conto annullato") : QString();
}

/// Tells an account whose registry is not there, which stays without address.
void TellRegistry(ImportRun& run, const SourceRow& row) {
    const bool isBlank = std::all_of(RegistryColumns.begin(), RegistryColumns.end(),
                                     [&row](const QString& column) { return row.IsBlank(column); });
    if (isBlank) {
        run.Log(QStringLiteral("ANAGRAFICA NON TROVATA: %1: '%2'").arg(run.RowKey(), row.Text("CODANA")));
    }
}

void Complete(ImportRun& run, const SourceRow& row, TargetRow& party) {
    TellRegistry(run, row);
    SetIban(run, row, party);
}

Branches Destinazioni() {
    return {
        .rows = {.table = Clidest, .on = {{"CODICE"}}, .order = RowNumber, .naming = "CODICE, PROGR"},
        .lines = BranchLines(Clidest, {.number = "PROGR",
                                       .name = "RAGSOC",
                                       .street = "INDIR",
                                       .postCode = "CAP",
                                       .town = "LOCAL",
                                       .province = "PROV",
                                       .person = "RIFER"}),
        .numbers = {.office = "TEL"},
    };
}

Counterparties Controparti() {
    const LineGroup conditions(PartyLines(Pianoc, Conditions).Over({}));
    const LineGroup registry(PartyLines(Anagr, Registry).Over({}));
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiDssWaps"},
        .source = {.table = Pianoc,
                   .key = "CODICE",
                   .order = RowNumber,
                   .joins = {{.table = Anagr, .on = {{"CODANA"}}, .columns = RegistryColumns}}},
        .roles = ByLetter("TIPO", {.customer = {"C"}, .supplier = {"F"}}),
        .name = "RAGSOC",
        .vatNumber = "PARIVA",
        .taxCode = "CODFIS",
        .lines = {{"CORAS", "RAGSOC", First(35)}, {"CORA2", "RAGSOC", SecondLine()}, conditions, registry},
        .numbers = {.office = "TEL1", .office2 = "TEL2", .fax = "FAX", .mobile = "CELL", .mail = "EMAIL"},
        .branches = {Destinazioni()},
        .leavesOut = NoParty,
        .cancelled = Cancelled,
        .more = Complete,
        .further = {{}, {{Pianoc, {"ANNULL"}}}, {}},
    };
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliDssWaps"},
        .source = {.table = Martic,
                   .key = "CODART",
                   .order = RowNumber,
                   .joins = {{.table = Magex,
                              .on = {{"CODART"}},
                              .columns = {"SCMIN", "SCMAX", "LOTTO", "GGAPP", "UBICAZ"},
                              .where = "(J1.MAGAZ IS NULL OR J1.MAGAZ IN ('', '001'))"}}},
        .code = {"CODART", ArticleCode(Martic, "CODART")},
        .description = "DESCR1",
        .lines =
            {
                {"CDEXT", "CODART", First(50)},
                {"ARDE2", "DESCR2", First(100)},
                {"ARUMS", "UM", Unit(Martic, "UM", schema::defaults::Unit)},
                {"ARUM2", "UM2", Unit(Martic, "UM2", "")},
                {"ARCOE", "FATCON", NotZero()},
                {"ARIVA", "CODIVA", VatCode(Martic, "CODIVA")},
                {"ARCLA", "TIPO", Choice({{"P", "PF"}, {"S", "SL"}}, "CM")},
                {"ARFAM", "GRUPPO", TranslatedOrKnown(Martic, "GRUPPO", "FAM_PRO")},
                {"ARCOS", "COSTO", RoundedTo(6)},
                {"ARPRZ", "PREZZO", RoundedTo(6)},
                {"ARPSN", "PESO", RoundedTo(3)},
                {"ARSMN", "SCMIN", RoundedTo(6)},
                {"ARSMX", "SCMAX", RoundedTo(6)},
                {"ARLOR", "LOTTO", RoundedTo(6)},
                {"ARGGA", "GGAPP", RoundedTo(0)},
                {"ARANN", "ANNULL", Is("A")},
            },
        .suppliers = {{.supplier = {"CODFOR", KnownSupplier()},
                       .ownCode = "ARTFOR",
                       .price = "COSTO",
                       .leadDays = "GGAPP",
                       .lot = "LOTTO"}},
        .location = "UBICAZ",
        .furtherRows = "riga ripetuta dell'articolo",
        .more = SetMarkUp,
        .further = {{}, {}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Dss Waps",
        Module,
        {.kind = "File .dat",
         .prepare = sourceSettings::FixedFolder("DSSWAPS", Records()),
         .names = Naming::OurReading},
        Buttons("YY------"),
        Shown::Keep,
        {
            ProcedureReading({"ANAGR.dat", "CLIDEST.dat", "PIANOC.dat"}, Button::Cli, Controparti()),
            ProcedureReading({"MARTIC.dat", "MAGEX.dat"}, Button::Art, Articoli()),
        },
    };
    return origin;
}

} // namespace modImport_DssWaps
