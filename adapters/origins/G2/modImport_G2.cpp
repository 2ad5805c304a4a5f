// Zucchetti G2 (Gestionale 2): a SQL Server database, G2 unless the setting Databasename names another. Counterparties
// with branches and contacts, articles, bills; the IBAN of every counterparty anew from the coordinates of its bank.
// Nothing is known of its tables: every name is this system's own reading in the style of the house. What an
// installation calls otherwise stands in "Tracciati/Zucchetti G2.ini".
// Left out: DISBAR.UM, as components count in the unit of their article. Known gaps: documents, price lists beyond the
// first price of an article, stock; a bill has no phases but the generic one.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/map/supplierNote.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/iban.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

#include <QRegularExpression>

using namespace contract;
using namespace contract::rules;

namespace modImport_G2 {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_G2");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Clifor = QStringLiteral("ANACLIFOR");
const QString Condizioni = QStringLiteral("CLIFORCOMM"); ///< commercial conditions
const QString Articolo = QStringLiteral("ANAART");
const QString Distinta = QStringLiteral("DISBAT");
const QString Componenti = QStringLiteral("DISBAR");

const std::vector<Tie> OfParty{{"TIPOCF"}, {"CODCF"}};

// --- Rules --------------------------------------------------------------------------------------------------------

Rule Article() { return ArticleCode(Articolo, "CODART"); }

/// What is made for sale, and what goes into it; other kinds are a matter of SYS_IMP.
Rule ArticleClass() { return Or(Choice({{"P", "PF"}, {"S", "CM"}, {"M", "CM"}}, {}), Translated(Articolo, "TIPOART")); }

// --- Counterparties -----------------------------------------------------------------------------------------------

Branches Destinazioni() {
    const QString table = QStringLiteral("CLIFORDEST");
    return {
        .rows = {.table = table, .on = OfParty, .order = "CODDES", .naming = "TIPOCF, CODCF, CODDES"},
        .lines = BranchLines(table, {.number = "CODDES",
                                     .name = "RAGSOC",
                                     .street = "INDIRIZZO",
                                     .postCode = "CAP",
                                     .town = "LOCALITA",
                                     .province = "PROVINCIA",
                                     .country = "CODNAZ",
                                     .person = "RIFERIM",
                                     .isDefault = "PREDEF"}),
        .numbers = {.office = "TELEFONO", .fax = "FAX"},
    };
}

Lines PartyLines() {
    const Lines identity = contract::PartyLines(Clifor, {.name = "RAGSOC1",
                                                         .name2 = "RAGSOC2",
                                                         .isPerson = "PERSFIS",
                                                         .surname = "COGNOME",
                                                         .firstName = "NOME",
                                                         .street = "INDIRIZZO",
                                                         .postCode = "CAP",
                                                         .town = "LOCALITA",
                                                         .province = "PROVINCIA",
                                                         .country = "CODNAZ",
                                                         .vatNumber = "PARTIVA",
                                                         .taxCode = "CODFISC",
                                                         .language = "CODLIN",
                                                         .isCancelled = "ANNULLATO",
                                                         .note = "NOTE",
                                                         .created = "DATACREA"});
    const Lines conditions = contract::PartyLines(Condizioni, {.payment = "CODPAG",
                                                               .ownBank = "BANCAAZ",
                                                               .abi = "ABI",
                                                               .cab = "CAB",
                                                               .cin = "CIN",
                                                               .account = "CONTOCOR",
                                                               .iban = "IBAN",
                                                               .bic = "BIC",
                                                               .discount1 = "SCONTO1",
                                                               .discount2 = "SCONTO2",
                                                               .agent = "CODAGE",
                                                               .list = "CODLIS",
                                                               .currency = "CODVAL",
                                                               .zone = "CODZONA",
                                                               .category = "CODCAT",
                                                               .exemption = "CODIVA",
                                                               .port = "CODPORTO",
                                                               .carrier = "CODVETT",
                                                               .credit = "FIDO",
                                                               .ledger = "CODMAS",
                                                               .isBlocked = "BLOCCO"});
    return {{identity.Over({})}, {conditions.Over({})}, {"COPEC", "PEC", NotBlank(Text())}};
}

/// An IBAN is what the source has: the recalculation makes those that it lacks.
Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiG2"},
        .source = {.table = Clifor,
                   .key = "CODCF",
                   .order = "TIPOCF, CODCF",
                   .naming = "TIPOCF, CODCF",
                   .joins = {{.table = Condizioni,
                              .on = OfParty,
                              .columns = {"CODPAG", "BANCAAZ", "ABI",     "CAB",     "CIN",      "CONTOCOR",
                                          "IBAN",   "BIC",     "SCONTO1", "SCONTO2", "CODAGE",   "CODLIS",
                                          "CODVAL", "CODZONA", "CODCAT",  "CODIVA",  "CODPORTO", "CODVETT",
                                          "FIDO",   "CODMAS",  "BLOCCO"}}}},
        .roles = ByLetter("TIPOCF", {.customer = {"C"}, .supplier = {"F"}}),
        .name = "RAGSOC1, RAGSOC2",
        .vatNumber = "PARTIVA",
        .taxCode = "CODFISC",
        .lines = PartyLines(),
        .numbers = {.office = "TELEFONO1",
                    .office2 = "TELEFONO2",
                    .fax = "FAX",
                    .mobile = "CELLULARE",
                    .mail = "EMAIL",
                    .web = "SITOWEB"},
        .created = "DATACREA",
        .branches = {Destinazioni()},
        .contacts = {{.lines = {{"RFNOM", "RIFERIM", Text()}}}},
    };
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliG2"},
        .source = {.table = Articolo, .key = "CODART", .order = "CODART"},
        .code = {"CODART", Article()},
        .description = "DESART",
        .lines =
            {
                {"CDEXT", "CODART", First(50)},
                {"ARDE2", "DESART2", First(100)},
                {"ARDEC", "DESEST", First(255)},
                {"ARUMS", "UM1", Unit(Articolo, "UM1", schema::defaults::Unit)},
                {"ARUM2", "UM2", Unit(Articolo, "UM2", "")},
                {"ARCOE", "COEFFUM", NotZero()},
                {"ARUMP", "UMACQ", Unit(Articolo, "UMACQ", "")},
                {"ARIVA", "CODIVA", VatCode(Articolo, "CODIVA")},
                {"ARCLA", "TIPOART", ArticleClass()},
                {"ARFAM", "CODGRU", Translated(Articolo, "CODGRU")},
                {"ARCOS", "COSTOULT, COSTOSTD", FirstNotZero()},
                {"ARPRZ", "PREZZO1", RoundedTo(6)},
                {"ARRIC", "PREZZO1, COSTOULT, COSTOSTD", MarkUp()},
                {"ARSCO", "SCONTO1", RoundedTo(2)},
                {"ARPSN", "PESONET", RoundedTo(3)},
                {"ARPSL", "PESOLOR", RoundedTo(3)},
                {"ARSMN", "SCORTAMIN", RoundedTo(6)},
                {"ARSMX", "SCORTAMAX", RoundedTo(6)},
                {"ARPUR", "PUNTORIOR", RoundedTo(6)},
                {"ARQMR", "QTAMINORD", RoundedTo(6)},
                {"ARLOR", "LOTTORIOR", RoundedTo(6)},
                {"ARGGA", "GGAPPRO", RoundedTo(0)},
                {"ARANN", "OBSOLETO", Flag()},
                {"ARNOT", "NOTE", Text()},
                {"DTINS", "DATACREA", NotBlank(AsRead())},
            },
        .suppliers = {{.supplier = {"FORNABIT", KnownSupplier()},
                       .ownCode = "CODARTFOR",
                       .price = {"COSTOULT, COSTOSTD", FirstNotZero()},
                       .leadDays = "GGAPPRO",
                       .lot = "LOTTORIOR",
                       .minimum = "QTAMINORD"}},
        .aliases = {{.code = "BARCODE"}},
        .location = "UBICAZ",
    };
}

// --- Bills --------------------------------------------------------------------------------------------------------

/// Components are those of the article, whatever its version.
Bills Distinte() {
    return {
        .frame = {.module = Module, .procedure = "ImportDistinteG2"},
        .source = {.table = Distinta, .key = "CODART", .order = "CODART, VERSIONE", .naming = "CODART, VERSIONE"},
        .article = {"CODART", Article()},
        .revision = {"VERSIONE", RevisionNumber()},
        .active = {"ATTIVA", Flag()},
        .note = "NOTE",
        .lines = {{"DBACT", "ATTIVA", Flag()}, {"DTINS", "DATACREA", NotBlank(AsRead())}},
        .components =
            {.rows = {.table = Componenti, .on = {{"CODPAD", "CODART"}}, .order = "PROGR", .naming = "CODPAD, PROGR"},
             .article = {"CODFIG", Article()},
             .quantity = "QUANTITA",
             .note = {"FORNITORE, NOTE", SupplierNote(Componenti, "CODPAD, PROGR")},
             .position = "PROGR"},
    };
}

// --- IBAN ---------------------------------------------------------------------------------------------------------

const QString Recalculation = QStringLiteral("RicalcolaIBANControparti");

const Needs& IbanNeeds() {
    static const Needs needs{{}, {}, {{"CON_TRO", {"CDCON", "CORAS", "COABI", "COCAB", "COCIN", "COCOC", "COIBA"}}}};
    return needs;
}

/// An IBAN of another country is not that of the coordinates, which are Italian. Other texts are no IBAN.
bool IsOfAnotherCountry(const QString& iban) {
    static const QRegularExpression separators(QStringLiteral("[^0-9A-Za-z]"));
    static const QRegularExpression form(QStringLiteral("^(IBAN)?(?!IT)[A-Z]{2}[0-9]{2}[0-9A-Z]{11,30}$"),
                                         QRegularExpression::CaseInsensitiveOption);
    return form.match(QString(iban).remove(separators)).hasMatch();
}

RowOutcome RecalculateIban(ImportRun& run, const SourceRow& party) {
    const auto leave = [&](const QString& why, const QString& rule) {
        run.Log(QStringLiteral("IBAN NON CALCOLATO: %1 %2: %3").arg(party.Text("CDCON"), party.Text("CORAS"), why));
        return run.Skip(rule);
    };
    if (IsOfAnotherCountry(party.Text("COIBA"))) {
        return leave(QStringLiteral("ha l'IBAN '%1'").arg(party.Text("COIBA")),
                     QStringLiteral("controparte con l'IBAN di un altro paese"));
    }
    const auto [iban, wrong] =
        IbanOf(party.Text("COCIN"), party.Text("COABI"), party.Text("COCAB"), party.Text("COCOC"));
    if (!wrong.isEmpty()) {
        return leave(wrong, QStringLiteral("controparte con coordinate che non sono di un conto italiano"));
    }
    if (iban.isEmpty()) {
        const QString lacks = QStringLiteral("senza CIN, ABI, CAB o numero di conto");
        return leave(lacks, QStringLiteral("controparte ") + lacks);
    }
    if (iban == party.Text("COIBA")) {
        return run.Skip(QStringLiteral("IBAN già esatto"));
    }
    TargetRow target(run, "CON_TRO");
    target.Set("COIBA", iban);
    target.Update("WHERE CDCON = " + run.Quoted(party.Text("CDCON")));
    return RowOutcome::Updated;
}

/// Only what has the coordinates of a bank; a single code is that of a counterparty.
void RicalcolaIBAN(Session& session, const QString& singleCode, bool /*reset*/) {
    ImportRun run(session, Module, Recalculation, singleCode);
    run.Guard([&] {
        run.Announce("Inizio ricalcolo IBAN Controparti");
        run.Preflight(IbanNeeds());
        const QString from = run.FullName("CON_TRO") +
                             "\rWHERE COABI > '' AND (COABI <> '0' AND COABI <> '00000')"
                             "\rAND   COCAB > '' AND (COCAB <> '0' AND COCAB <> '00000')" +
                             run.OnlyCode("\rAND  ", "CDCON", singleCode);
        const bool toTheEnd = run.Rows(
            {.step = "IBAN Controparti",
             .table = "CON_TRO",
             .keyColumn = "CDCON",
             .count = "SELECT COUNT(*) FROM " + from,
             .select = "SELECT CDCON, CORAS, COABI, COCAB, COCIN, COCOC, COIBA FROM " + from + "\rORDER BY CDCON",
             .database = &session.Quadrix},
            [&run](const SourceRow& party) { return RecalculateIban(run, party); });
        if (toTheEnd) {
            run.Complete("IBAN ricalcolati correttamente!");
        }
    });
}

Procedure Iban() {
    return {.button = Button::Disegni,
            .name = Recalculation,
            .run = RicalcolaIBAN,
            .needs = IbanNeeds(),
            .confirmation = "Ricalcolare gli IBAN delle controparti?",
            .opensSource = false,
            .asksReset = false};
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Zucchetti G2",
        Module,
        {.kind = "SQL Server", .prepare = sourceSettings::Server("G2"), .names = Naming::OurReading},
        Buttons("YYYNNNNY", {{Button::Disegni, "Ricalcola IBAN Controparti"}}),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti()),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Dis, Distinte()),
            Iban(),
        },
    };
    return origin;
}

} // namespace modImport_G2
