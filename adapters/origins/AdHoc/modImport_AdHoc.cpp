// Ad Hoc Revolution: an SQL Server database. A company's tables have its code in front of their names (AZIENDA_IMPORT).
// Here stand counterparties, letters of intent and the chart of accounts; base tables, articles with sheets, stock, and
// what is put right in Quadrix alone in modImport_AdHoc_base.cpp, _articles.cpp, _stock.cpp and _repairs.cpp. CONTI,
// ART_ICOL, MVM_MAST, MVM_DETT, SALDIART, LIS_TINI, LIS_SCAG and their columns are known from installations; the other
// tables, and the sizes of sheets in ART_ICOL, are this system's own reading in their style. Known gaps: third and
// fourth line of names (ANDESCR3, late releases), nations beside their codes (NAZIONI: codes go through SYS_IMP), kinds
// of accounts (ANTIPSOT), contacts other than those of the destinations.

#include "adapters/origins/AdHoc/modImport_AdHoc.h"

#include "adapters/contract/map/codeRules.h"
#include "adapters/sourceSettings.h"
#include "core/italianText.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_AdHoc {

const contract::Origin& Entry();

// --- Counterparties -----------------------------------------------------------------------------------------------

namespace {

const QString DesDive = QStringLiteral("DES_DIVE");

/// The limit counts only where the source checks it.
Rule CheckedLimit() {
    return Needing(
        2,
        {"arrotondato a 2 decimali; niente se la seconda colonna non è un sì",
         [limit = RoundedTo(2).apply, isChecked = Flag().apply](const RuleInput& input) -> RuleValue {
             const bool counts = isChecked({input.session, input.row, {input.columns.last()}, input.facts})->toBool();
             return counts ? limit({input.session, input.row, {input.columns.first()}, input.facts}) : RuleValue();
         }});
}

/// Quadrix has no mark for a branch that is no longer used: its notes say so.
Rule BranchNote() {
    return {"testo; dietro, il giorno della seconda colonna dal quale la destinazione non si usa più",
            [day = Day().apply](const RuleInput& input) -> RuleValue {
                const QString note = input.row.Text(input.columns.first());
                const QVariant end = *day({input.session, input.row, {input.columns.last()}, input.facts});
                if (end.isNull()) {
                    return note;
                }
                const QString ended = QStringLiteral("Non più in uso dal ") + italian::DayText(end.toDate());
                return note.isEmpty() ? ended : note + QStringLiteral(". ") + ended;
            }};
}

std::vector<Tie> OfParty() { return {{"DDTIPCON", "ANTIPCON"}, {"DDCODICE", "ANCODICE"}}; }

Branches Destinazioni() {
    return {
        .rows = {.table = DesDive, .on = OfParty(), .order = "DDCODDES"},
        .lines =
            {
                {"CDSED", "DDCODDES", Digits(3)},
                {"SETIP", "DDTIPRIF", Choice({{"FA", "FT"}}, "CO")},
                {"SERAS", "DDNOMDES", Text()},
                {"SEIND", "DDINDIRI", Text()},
                {"SECAP", "DD___CAP", WhenNotBlank("DDLOCALI", Text())},
                {"SECIT", "DDLOCALI", WhenNotBlank("DDLOCALI", Text())},
                {"SEPRO", "DDPROVIN", Text()},
                {"SENAZ", "DDCODNAZ", Country(DesDive, "DDCODNAZ")},
                {"SERIF", "DDPERSON", Text()},
                {"SEDEF", "DDPREDEF", Flag()},
                {"SENOT", "DD__NOTE, DDDTOBSO", BranchNote()},
            },
        .numbers = {.office = "DDTELEFO", .fax = "DDNUMFAX", .mail = "DD_EMAIL"},
    };
}

} // namespace

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiAHR"},
        .source = {.table = Conti,
                   .key = "ANCODICE",
                   .order = "ANTIPCON, ANCODICE",
                   .where = "T.ANTIPCON IN ('C','F')",
                   .naming = "ANTIPCON, ANCODICE",
                   .joins = {{.table = Banche,
                              .on = {{"BACODBAN", "ANCODBAN"}},
                              .columns = {"BACODABI", "BACODCAB", "BACODBIC"}}}},
        .roles = ByLetter("ANTIPCON", {.customer = {"C"}, .supplier = {"F"}}),
        .name = "ANDESCRI, ANDESCR2",
        .vatNumber = "ANPARIVA",
        .taxCode = "ANCODFIS",
        .lines =
            {
                {"CORAS", "ANDESCRI", First(35)},
                {"CORA2", "ANDESCRI, ANDESCR2", SecondName(35)},
                {"COPER", "ANPERFIS", Flag()},
                {"COCOG", "ANCOGNOM", NotBlank(Text())},
                {"CONOM", "AN__NOME", NotBlank(Text())},
                {"CODTN", "ANDATNAS", Day()},
                {"CONAT", "ANLOCNAS", Text()},
                {"COPRN", "ANPRONAS", Text()},
                {"COSEX", "AN_SESSO", Text()},
                {"COIND", "ANINDIRI", Text()},
                {"COIN2", "ANINDIR2", Text()},
                {"COCAP", "AN___CAP", Text()},
                {"COCIT", "ANLOCALI", Text()},
                {"COPRO", "ANPROVIN", Text()},
                {"CONAZ", "ANNAZION", Country(Conti, "ANNAZION")},
                {"COPEC", "AN_EMPEC", NotBlank(Text())},
                {"COCFE", "ANCODEST", NotBlank(Text())},
                {"COIVA", "ANPARIVA", NotBlank(Text())},
                {"COFIS", "ANCODFIS", NotBlank(Text())},
                ByRole("COMOP", "COMOA", "ANCODPAG", TranslatedOrKnown(Conti, "ANCODPAG", "TAB_MOP")),
                {"COABI", "BACODABI", NotBlank(Digits(5))},
                {"COCAB", "BACODCAB", NotBlank(Digits(5))},
                {"COBIC", "BACODBIC", NotBlank(Text())},
                {"COBAN", "ANCODBA2", OwnBank(Conti, "ANCODBA2")},
                {"COCOC", "ANNUMCOR", NotBlank(Text())},
                {"COCIN", "ANCINABI", NotBlank(Text())},
                {"COIBA", "AN__IBAN", NotBlank(WithoutBlanks())},
                {"COME1", "AN1MESCL", NotZero()},
                {"CORI1", "ANGIOSC1", NotZero()},
                {"COME2", "AN2MESCL", NotZero()},
                {"CORI2", "ANGIOSC2", NotZero()},
                ByRole("COGPV", "COGPA", "ANGIOFIS", NotZero()),
                ByRole("COSC1", "COSF1", "AN1SCONT", NotBlank(RoundedTo(2))),
                ByRole("COSC2", "COSF2", "AN2SCONT", NotBlank(RoundedTo(2))),
                ByRole("COLSC", "COLSF", "ANNUMLIS", Translated(Conti, "ANNUMLIS")),
                {"COVAL", "ANCODVAL", Currency(Conti, "ANCODVAL")},
                {"COLNG", "ANCODLIN", TranslatedOr(Conti, "ANCODLIN", "IT")},
                {"COESE", "ANCODIVA", ExemptVat(Conti, "ANCODIVA")},
                ByRole("COCCC", "COCCF", "ANCATCOM", Translated(Conti, "ANCATCOM")),
                {"COCCT", "ANCATCON", Translated(Conti, "ANCATCON")},
                {"COZON", "ANCODZON", Translated(Conti, "ANCODZON")},
                {"COAGE", "ANCODAG1", TranslatedOrKnown(Conti, "ANCODAG1", "AGE_NTI")},
                ByRole("COMAC", "COMAF", "ANCONSUP", NotBlank(Text())),
                {"COFID", "ANVALFID, ANFLFIDO", CheckedLimit()},
                {"COMXO", "ANMAXORD", NotZero()},
                {"COBLK", "ANFLBLVE", Flag()},
                {"CORGS", "ANTIPFAT", Choice({{"R", "S"}}, "N")},
                {"COPOR", "ANCODPOR", Translated(Conti, "ANCODPOR")},
                {"COANN", "ANDTOBSO", HasExpired()},
                {"COINV", "ANDTINVA", DayOrToday()},
                {"CONOT", "AN__NOTE", Text()},
                {"DTINS", "utdc", NotBlank(MomentOrNow())},
            },
        .numbers =
            {.office = "ANTELEFO", .fax = "ANTELFAX", .mobile = "ANNUMCEL", .mail = "AN_EMAIL", .web = "ANINDWEB"},
        .created = "utdc",
        .branches = {Destinazioni()},
        .contacts = {{.rows = {.table = DesDive, .on = OfParty(), .order = "DDCODDES"},
                      .lines = {{"RFNOM", "DDPERSON", Text()}}}},
        .more = SetIban,
    };
}

// --- Letters of intent --------------------------------------------------------------------------------------------

namespace {

/// The year of a day; Null without one.
Rule YearOf() {
    return {"anno del giorno", [day = Day().apply](const RuleInput& input) {
                const QDate date = day(input)->toDate();
                return RuleValue(date.isValid() ? QVariant(date.year()) : QVariant());
            }};
}

/// Not every installation has them: a procedure of their own.
BaseTable LettereIntento() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportLettereIntentoAHR",
                  .announcement = "Inizio importazione lettere d'intento",
                  .errors = "Errore: ",
                  .step = "Lettere d'intento",
                  .completion = "Lettere d'intento importate correttamente!"},
        .source = {.table = "DIC_INTE",
                   .key = "DICODICE",
                   .order = "DITIPCON, DICODICE, DIDATLET, DINUMDOC",
                   .naming = "DITIPCON, DICODICE, DINUMDOC"},
        .target = "DIC_INT",
        .lines =
            {
                {"DICON", "DICODICE, DITIPCON", PartyByMark("F")},
                {"DIANN", "DIDATLET", YearOf()},
                {"DINUM", "DINUMDOC", Text()},
                {"DIDLI", "DIDATLET", Day()},
                {"DIVAL", "DIDATINI", Day()},
                {"DIVDA", "DIDATFIN", Day()},
                {"DIVIM", "DIIMPDIC", RoundedTo(2)},
            },
        .empties = DeletedImports("DIC_INT"),
        .keys = {"DICON", "DIANN", "DINUM", "DIDLI"},
    };
}

} // namespace

// --- Chart of accounts --------------------------------------------------------------------------------------------

Accounts PianoConti() {
    const QString mastri = QStringLiteral("MASTRI");
    return {
        .frame = {.module = Module, .procedure = "ImportPianoContiAhr"},
        .accounts = {.source = {.table = Conti, .key = "ANCODICE", .order = "ANCODICE", .where = "ANTIPCON = 'G'"},
                     .target = "CON_CON",
                     .code = "ANCODICE",
                     .lines =
                         {
                             {"CCDES", "ANDESCRI", First(100)},
                             {"CCMAS", "ANCONSUP", Text()},
                             {"CCNAT", "ANCONSUP",
                              Via(mastri, "MCCODICE", "MCSEZBIL", Choice({{"C", "AQ"}, {"R", "VE"}}, "GE"))},
                         }},
        .ledgers = BaseTable{.source = {.table = mastri, .key = "MCCODICE", .order = "MCCODICE"},
                             .target = "MAS_TRI",
                             .code = "MCCODICE",
                             .lines =
                                 {
                                     {"MCDES", "MCDESCRI", First(100)},
                                     {"MCTIP", "MCTIPMAS", Text()},
                                     {"MCBIL", "MCSEZBIL", BalanceSection("CR")},
                                     {"MCLIV", "MCNUMLIV", RoundedTo(0)},
                                     {"MCRAG", "MCCONSUP", Text()},
                                 }},
    };
}

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Ad-Hoc",
        Module,
        {.kind = "SQL Server",
         .prepare = sourceSettings::Server("AHR", {"AHR", "1"}),
         .company = CompanyKey{"AZIENDA_IMPORT", ArtIcol}},
        Buttons("YYNNY-NY", {{Button::Acq, "Importa Tabelle Generali"}, {Button::Disegni, "Importa Lamiere"}}),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti()),
            ProcedureOf(Button::Art, Articoli()),
            TabelleBase(),
            Movimenti(),
            Inventario(),
            Lamiere(),
            ProcedureOf(std::nullopt, PianoConti()),
            ProcedureOf(std::nullopt, LettereIntento()),
            AllegatiLantek(),
            PackingList(),
        },
    };
    return origin;
}

} // namespace modImport_AdHoc
