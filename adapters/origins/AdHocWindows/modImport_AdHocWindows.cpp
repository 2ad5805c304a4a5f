// Ad Hoc Windows: a folder of FoxPro tables. Where several companies share it, their tables have the company's code in
// front of their names (AZIENDA_IMPORT).
// ART_ICOL is known from an installation; all columns, CONTI and the other tables are this system's own reading, in the
// style of the product's successor.
// Known gaps: group of merchandise (ARGRUMER), which Quadrix has no column for.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/run/tiedRows.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_AdHocWindows {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_AdHocWindows");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Conti = QStringLiteral("CONTI");
const QString Banche = QStringLiteral("BAN_CHE");
const QString DesDive = QStringLiteral("DES_DIVE");
const QString ArtIcol = QStringLiteral("ART_ICOL");
const QString ListiniTable = QStringLiteral("LISTINI");

/// The list that an article without a price of its own is sold by.
const QString FirstList = QStringLiteral("1");

// --- Hooks --------------------------------------------------------------------------------------------------------

/// The price of an article: its own, else that of the first list.
double PriceOf(ImportRun& run, const SourceRow& row) {
    if (const double own = NumberOf(row, "ARPREZZO"); own != 0) {
        return own;
    }
    ovConnection& source = run.GetSession().SourceConnection();
    const Recordset prices =
        source.ExecuteWC("SELECT LIPREZZO FROM LISTINI\rWHERE " + TiedTo(source, "LICODART", row, "ARCODART") +
                         "\r  AND LICODLIS = " + LiteralOf(source, FirstList));
    return prices.Eof() ? 0 : NumberOf(SourceRow(prices), "LIPREZZO");
}

void SetPrice(ImportRun& run, const SourceRow& row, TargetRow& target) {
    target.Set("ARPRZ", RoundedTo(PriceOf(run, row), UnitDecimals));
    SetMarkUp(run, row, target);
}

// --- Declarations -------------------------------------------------------------------------------------------------

Branches Destinazioni() {
    return {
        .rows = {.table = DesDive, .on = {{"DDTIPCON", "ANTIPCON"}, {"DDCODICE", "ANCODICE"}}, .order = "DDCODDES"},
        .lines = BranchLines(DesDive, {.number = "DDCODDES",
                                       .name = "DDNOMDES",
                                       .street = "DDINDIRI",
                                       .postCode = "DD___CAP",
                                       .town = "DDLOCALI",
                                       .province = "DDPROVIN",
                                       .person = "DDPERSON"}),
        .numbers = {.office = "DDTELEFO"},
    };
}

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiAHWin"},
        .source = {.table = Conti,
                   .key = "ANCODICE",
                   .order = "ANTIPCON, ANCODICE",
                   .where = "T.ANTIPCON IN ('C','F')",
                   .naming = "ANTIPCON, ANCODICE",
                   .joins = {{.table = Banche, .on = {{"BACODBAN", "ANCODBAN"}}, .columns = {"BACODABI", "BACODCAB"}}}},
        .roles = ByLetter("ANTIPCON", {.customer = {"C"}, .supplier = {"F"}}),
        .name = "ANDESCRI, ANDESCR2",
        .vatNumber = "ANPARIVA",
        .taxCode = "ANCODFIS",
        .lines =
            {
                {"CORAS", "ANDESCRI", First(35)},
                {"CORA2", "ANDESCRI, ANDESCR2", SecondName(35)},
                {"COIND", "ANINDIRI", Text()},
                {"COIN2", "ANINDIR2", Text()},
                {"COCAP", "AN___CAP", Text()},
                {"COCIT", "ANLOCALI", Text()},
                {"COPRO", "ANPROVIN", Text()},
                {"CONAZ", "ANNAZION", Country(Conti, "ANNAZION")},
                {"COIVA", "ANPARIVA", NotBlank(Text())},
                {"COFIS", "ANCODFIS", NotBlank(Text())},
                ByRole("COMOP", "COMOA", "ANCODPAG", TranslatedOrKnown(Conti, "ANCODPAG", "TAB_MOP")),
                {"COABI", "BACODABI", NotBlank(Digits(5))},
                {"COCAB", "BACODCAB", NotBlank(Digits(5))},
                {"COCOC", "ANNUMCOR", NotBlank(Text())},
                {"COCIN", "ANCINABI", NotBlank(Text())},
                ByRole("COSC1", "COSF1", "AN1SCONT", NotBlank(RoundedTo(2))),
                ByRole("COSC2", "COSF2", "AN2SCONT", NotBlank(RoundedTo(2))),
                ByRole("COLSC", "COLSF", "ANNUMLIS", Translated(Conti, "ANNUMLIS")),
                {"COVAL", "ANCODVAL", Currency(Conti, "ANCODVAL")},
                {"COLNG", "ANCODLIN", TranslatedOr(Conti, "ANCODLIN", schema::defaults::Language)},
                {"COESE", "ANCODIVA", ExemptVat(Conti, "ANCODIVA")},
                ByRole("COCCC", "COCCF", "ANCATCOM", Translated(Conti, "ANCATCOM")),
                {"COZON", "ANCODZON", Translated(Conti, "ANCODZON")},
                {"COAGE", "ANCODAG1", TranslatedOrKnown(Conti, "ANCODAG1", "AGE_NTI")},
                {"COPOR", "ANCODPOR", Translated(Conti, "ANCODPOR")},
                ByRole("COMAC", "COMAF", "ANCONSUP", NotBlank(Text())),
                {"COFID", "ANVALFID", NotZero()},
                {"COBLK", "ANFLBLVE", Flag()},
                {"COANN", "ANDTOBSO", HasExpired()},
                {"CONOT", "AN__NOTE", Text()},
            },
        .numbers =
            {.office = "ANTELEFO", .fax = "ANTELFAX", .mobile = "ANNUMCEL", .mail = "AN_EMAIL", .web = "ANINDWEB"},
        .branches = {Destinazioni()},
        .more = SetIban,
        .further = {{}, {}, {{"CON_TRO", {"COIBA"}}}},
    };
}

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliAHWin"},
        .source = {.table = ArtIcol, .key = "ARCODART", .order = "ARCODART"},
        .code = {"ARCODART", ArticleCode(ArtIcol, "ARCODART")},
        .description = "ARDESART",
        .lines =
            {
                {"CDEXT", "ARCODART", Text()},
                {"ARDEC", "ARDESSUP", First(255)},
                {"ARUMS", "ARUNMIS1", Unit(ArtIcol, "ARUNMIS1", schema::defaults::Unit)},
                {"ARUM2", "ARUNMIS2", Unit(ArtIcol, "ARUNMIS2", "")},
                {"ARCOE", "AROPERAT, ARMOLTIP", UnitFactor()},
                {"ARCLA", "ARTIPART", Choice({{"PF", "PF"}}, "CM")},
                {"ARFAM", "ARCODFAM", Translated(ArtIcol, "ARCODFAM")},
                {"ARIVA", "ARCODIVA", VatCode(ArtIcol, "ARCODIVA")},
                {"ARCOS", "ARULTCOS, ARCOSSTA", FirstNotZero()},
                {"ARPSN", "ARPESNET", RoundedTo(3)},
                {"ARPSL", "ARPESLOR", RoundedTo(3)},
                {"ARSMN", "ARSCOMIN", RoundedTo(6)},
                {"ARSMX", "ARSCOMAX", RoundedTo(6)},
                {"ARPUR", "ARPUNRIO", RoundedTo(6)},
                {"ARLOR", "ARLOTRIO", RoundedTo(6)},
                {"ARGGA", "ARGIOAPP", RoundedTo(0)},
                {"ARANN", "ARDTOBSO", HasExpired()},
                {"ARNOT", "ARNOTART", Text()},
            },
        .suppliers = {{.supplier = {"ARCODFOR", KnownSupplier()},
                       .price = {"ARULTCOS, ARCOSSTA", FirstNotZero()},
                       .leadDays = "ARGIOAPP",
                       .lot = "ARLOTRIO"}},
        .more = SetPrice,
        .further = {{},
                    {{ArtIcol, {}, {"ARPREZZO"}}, {ListiniTable, {"LICODART", "LICODLIS", "LIPREZZO"}}},
                    {{"ART_ICO", {"ARPRZ", "ARRIC"}}}},
    };
}

bool PrepareSource(Session& session, ovConnection& source) {
    sourceSettings::FoxProFolder()(session, source);
    source.LookupColumns = QStringList{"BAN_CHE.BACODBAN", "DES_DIVE.DDCODICE", "LISTINI.LICODART"};
    return true;
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Ad-Hoc Windows",
        Module,
        {.kind = "FoxPro", .prepare = {PrepareSource, Place::Folder}, .company = CompanyKey{"AZIENDA_IMPORT", ArtIcol}},
        Buttons("YYNNN-NN", {{Button::Acq, "Importa Tabelle Generali"}, {Button::Disegni, "Importa Lamiere"}}),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti()),
            ProcedureOf(Button::Art, Articoli()),
        },
    };
    return origin;
}

} // namespace modImport_AdHocWindows
