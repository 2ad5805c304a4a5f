// Sigla: an SQL Server database. A company's tables may have a prefix in front of their names (Databasename_TABLE).
// CLIFO, TABRILIS, GRUPMERC, BARCODE and DESARTLI are known from an installation, with texts of fixed width, days as
// yyyymmdd and flags S and N; ARTICOLI, TABLIS, NOTE, the columns of articles and the commercial table CLIFOCOM, which
// not every installation has, are this system's own reading in their style. Left out: short name (NOMEBREVE), further
// payment terms (CODPAGA, CODPAGB), account that is invoiced (FATTURAREA); of
// prices PREZZORESO, BASERICARI, PERCRICARI, TIPOFFERTA, PROVAG1; names of groups (GRUPMERC), whose codes go through
// SYS_IMP. Known gaps: agents' own suppliers (AGENTI), destinations, contacts.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/askedSince.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PriceLists.h"
#include "adapters/contract/write/missingCodes.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Sigla {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Sigla");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Clifo = QStringLiteral("CLIFO");
const QString CommercialTable = QStringLiteral("CLIFOCOM");
const QString NoteTable = QStringLiteral("NOTE");
const QString ArticoliTable = QStringLiteral("ARTICOLI");

const QString DayFormat = QStringLiteral("yyyyMMdd");

/// CDART of an article's code.
Rule Article() { return ArticleCode(ArticoliTable, "CODICE"); }

/// Rows of a table that belong to a counterparty.
ChildTable OfParty(const QString& table, const QString& order) {
    return {.table = table, .on = {{"TIPO"}, {"CODICE"}}, .order = order};
}

// --- Rules --------------------------------------------------------------------------------------------------------

/// A blank language and "I" are the company's own.
Rule LanguageCode(const QString& table, const QString& column) {
    const Rule translated = TranslatedOr(table, column, schema::defaults::Language);
    return Around(translated, translated.text + QStringLiteral("; \"IT\" per \"I\""),
                  [apply = translated.apply](const RuleInput& input) -> RuleValue {
                      const bool isOwn = input.Text().compare(u"I", Qt::CaseInsensitive) == 0;
                      return isOwn ? RuleValue(schema::defaults::Language) : apply(input);
                  });
}

/// Who is not subject to VAT has an exemption, which the flag itself is translated to.
Rule ExemptWhenNotSubject() {
    const Rule exempt = ExemptVat(Clifo, "SOGGIVA_SN");
    return Around(exempt, exempt.text + QStringLiteral("; niente se non è \"N\""),
                  [apply = exempt.apply](const RuleInput& input) -> RuleValue {
                      return input.Text().compare(u"N", Qt::CaseInsensitive) == 0 ? apply(input) : RuleValue();
                  });
}

/// Group and family are one code.
Rule GroupAndFamily() {
    return {"le due colonne come un solo codice: codice Quadrix di SYS_IMP (ARTICOLI, CODGRU), quelli che mancano vi "
            "si annotano",
            [translated = Translated(ArticoliTable, "CODGRU").apply](const RuleInput& input) {
                const QString code = input.row.Text(input.columns.first()) + input.row.Text(input.columns.last());
                return translated({input.session, input.row, input.columns, input.facts, code});
            }};
}

/// Left out unless one of the flags says so: "S" out of use, "A" cancelled.
Rule IsOutOfUse() {
    return {"vero se la prima colonna è \"S\" o la seconda \"A\"", [](const RuleInput& input) {
                return RuleValue(input.row.Text(input.columns.first()).compare(u"S", Qt::CaseInsensitive) == 0 ||
                                 input.row.Text(input.columns.last()).compare(u"A", Qt::CaseInsensitive) == 0);
            }};
}

// --- Commercial data ----------------------------------------------------------------------------------------------

const CounterpartyMapping& Commerciale() {
    static const CounterpartyMapping mapping([] {
        const Lines lines{
            {"COABI", "ABI", NotBlank(Digits(5))},
            {"COCAB", "CAB", NotBlank(Digits(5))},
            {"COCIN", "CIN", NotBlank(Text())},
            {"COCOC", "CONTOCORR", NotBlank(Text())},
            {"COIBA", "IBAN", NotBlank(WithoutBlanks())},
            {"COBIC", "BIC", NotBlank(Text())},
            {"COBAN", "BANCA", OwnBank(CommercialTable, "BANCA")},
            ByRole("COSC1", "COSF1", "SCONTO1", NotBlank(RoundedTo(2))),
            ByRole("COSC2", "COSF2", "SCONTO2", NotBlank(RoundedTo(2))),
            ByRole("COLSC", "COLSF", "LISTINO", Translated(CommercialTable, "LISTINO")),
            {"COAGE", "AGENTE", TranslatedOrKnown(CommercialTable, "AGENTE", "AGE_NTI")},
            {"COZON", "ZONA", Translated(CommercialTable, "ZONA")},
            ByRole("COCCC", "COCCF", "CATEG", Translated(CommercialTable, "CATEG")),
            {"COPOR", "PORTO", Translated(CommercialTable, "PORTO")},
            {"COVEP", "VETTORE", Translated(CommercialTable, "VETTORE")},
            {"COFID", "FIDO", NotZero()},
            ByRole("COMAC", "COMAF", "CONTO", NotBlank(Text())),
            {"COPEC", "PEC", NotBlank(Text())},
        };
        return Mapping{"CON_TRO", CommercialTable, lines.Over({}), true};
    }());
    return mapping;
}

ChildTable CommercialRows() {
    ChildTable rows = OfParty(CommercialTable, "CODICE");
    rows.isOptional = true;
    return rows;
}

/// The notes of a counterparty, a row for each line.
QString NotesOf(Session& session, const SourceRow& row) {
    QStringList lines;
    ChildTable rows = OfParty(NoteTable, "RIGA");
    rows.isOptional = true;
    rows.ForEach(session, row, [&lines](const SourceRow& line) { lines.append(line.Text("TESTO")); });
    return lines.join(u'\n').trimmed();
}

RoleTeller PartyRoles() { return ByLetter("TIPO", {.customer = {"C"}, .supplier = {"F"}}); }

void AddCommercialData(ImportRun& run, const SourceRow& row, TargetRow& target) {
    const bool isNew = !target.Value("CDCON").isNull();
    const Roles roles = PartyRoles().of(row);
    CommercialRows().ForEach(run.GetSession(), row, [&](const SourceRow& commercial) {
        const bool isWhole = isNew || FillsCodes(run);
        const Mapping& mapping = isWhole ? Commerciale().Whole() : Commerciale().Role(roles.customer);
        mapping.Apply(target, run.GetSession(), commercial, {{}, roles});
    });
    if (isNew) {
        SetIban(run, row, target);
        target.Set("CONOT", NotesOf(run.GetSession(), row));
    }
}

/// Prefix and number stand in two columns; site and mobile telephone with the commercial data.
void AddNumbers(ImportRun& run, CounterpartyWriter& writer, const SourceRow& row, const Owner& owner) {
    writer.Telephone(owner, "Ufficio", row.Text("PTEL") + row.Text("TEL"));
    CommercialRows().ForEach(run.GetSession(), row, [&](const SourceRow& commercial) {
        writer.Numbers(owner, commercial, {.mobile = "CELL", .web = "WWW"});
    });
}

// --- Declarations -------------------------------------------------------------------------------------------------

/// Not every installation has the commercial data, and notes.
Needs FurtherNeeds() {
    const Mapping& commercial = Commerciale().Whole();
    return {{&commercial},
            {{Clifo, {}, {"PTEL", "TEL"}},
             {.table = CommercialTable,
              .columns = {"TIPO", "CODICE"},
              .optional = commercial.SourceColumns() + QStringList{"CELL", "WWW"},
              .mayLack = true},
             {.table = NoteTable, .columns = {"TIPO", "CODICE", "RIGA", "TESTO"}, .mayLack = true}},
            {{"CON_TRO", commercial.TargetColumns() + QStringList{"CONOT"}}}};
}

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiSigla"},
        .source = {.table = Clifo,
                   .key = "CODICE",
                   .order = "TIPO, CODICE",
                   .where = "TIPO IN ('C','F')",
                   .naming = "TIPO, CODICE"},
        .roles = PartyRoles(),
        .name = "RAGIONESOC",
        .vatNumber = {"PAIV, CODIDIVA", FirstNotBlank(Text())},
        .taxCode = "COFI",
        .lines =
            {
                {"CORAS", "RAGIONESOC", First(35)},
                {"CORA2", "RAGIONESOC", From(36)},
                {"COPER", "PERSFISICA", Flag()},
                {"COIND", "INDIR1", Text()},
                {"COIN2", "INDIR2", Text()},
                {"COCAP", "CAP", Text()},
                {"COCIT", "COMUNE, LOCALITA", FirstNotBlank(Text())},
                {"COPRO", "PROVINCIA", Text()},
                {"CONAZ", "COD_NAZION, NAZIONE", FirstNotBlank(Country(Clifo, "COD_NAZION"))},
                {"COIVA", "PAIV, CODIDIVA", NotBlank(FirstNotBlank(Text()))},
                {"COFIS", "COFI", NotBlank(Text())},
                ByRole("COMOP", "COMOA", "CODPAG", Translated(Clifo, "CODPAG")),
                {"COVAL", "CODVAL", Currency(Clifo, "CODVAL")},
                {"COLNG", "LINGUA", LanguageCode(Clifo, "LINGUA")},
                {"COESE", "SOGGIVA_SN", ExemptWhenNotSubject()},
                {"CORGS", "RAGGR_SN", Choice({{"S", "S"}}, "N")},
                {"COBLK", "BLOCCO_SN", Flag()},
                {"COANN", "STATO", Is("A")},
                {"DTINS", "ULT_AGG", NotNull(DateText(DayFormat))},
            },
        .numbers = {.fax = "FTFAXNUM", .mail = "FTE_MAIL"},
        .created = {"ULT_AGG", DateText(DayFormat)},
        .more = AddCommercialData,
        .after = AddNumbers,
        .further = FurtherNeeds(),
    };
}

/// Rows of a table that belong to an article.
ChildTable OfArticle(const QString& table, const QString& column, const QString& order) {
    return {.table = table, .on = {{column, "CODICE"}}, .order = order};
}

ChildTable Languages() { return OfArticle("DESARTLI", "ARTICOLO", "LINGUA"); }

Field Language() { return {"LINGUA", LanguageCode("DESARTLI", "LINGUA")}; }

/// A description in another language has the parts of that in the company's own.
void WriteLongTexts(ImportRun& run, const SourceRow& row, const QString& article) {
    static const std::pair<QString, QString> parts[] = {{"ARDE2", "DESCRART02"}, {"ARDEC", "DESARCOMPL"}};
    Session& session = run.GetSession();
    Languages().ForEach(session, row, [&](const SourceRow& text) {
        const QString language = Language().Text(session, text);
        for (const auto& [target, source] : parts) {
            if (!language.isEmpty() && !text.IsBlank(source)) {
                ArticleWriter(run).Text(article, target, text.Text(source), language);
            }
        }
    });
}

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliSigla"},
        .source = {.table = ArticoliTable, .key = "CODICE", .order = "CODICE"},
        .code = {"CODICE", Article()},
        .description = "DESCRIZION, DESCRART01",
        .lines =
            {
                {"CDEXT", "CODICE", Text()},
                {"ARDE2", "DESCRART02", First(100)},
                {"ARDEC", "DESARCOMPL", First(255)},
                {"ARUMS", "UNIMIS", Unit(ArticoliTable, "UNIMIS", schema::defaults::Unit)},
                {"ARUM2", "UNIMIS2", Unit(ArticoliTable, "UNIMIS2", "")},
                {"ARCOE", "COEFFUM", NotZero()},
                {"ARIVA", "CODIVA", VatCode(ArticoliTable, "CODIVA")},
                {"ARFAM", "CODGRU, CODFAM", GroupAndFamily()},
                {"ARTIP", "CODSFAM", Translated(ArticoliTable, "CODSFAM")},
                {"ARCOS", "COSTOSTD, COSTOULT", FirstNotZero()},
                {"ARPRZ", "PREZZO", RoundedTo(6)},
                {"ARRIC", "PREZZO, COSTOSTD, COSTOULT", MarkUp()},
                {"ARPSN", "PESONETTO", RoundedTo(3)},
                {"ARPSL", "PESOLORDO", RoundedTo(3)},
                {"ARSMN", "SCORTAMIN", RoundedTo(6)},
                {"ARSMX", "SCORTAMAX", RoundedTo(6)},
                {"ARLOR", "LOTTORIOR", RoundedTo(6)},
                {"ARGGA", "GGCONSEGNA", RoundedTo(0)},
                {"ARANN", "OBSOLETO_SN, STATO", IsOutOfUse()},
                {"DTINS", "DATACREA", NotNull(DateText(DayFormat))},
            },
        .suppliers = {{.supplier = {"FORNITORE", KnownSupplier()},
                       .ownCode = "CODARTFOR",
                       .price = {"COSTOULT, COSTOSTD", FirstNotZero()},
                       .leadDays = "GGCONSEGNA",
                       .lot = "LOTTORIOR"}},
        .aliases = {{.rows = OfArticle("BARCODE", "CODICE", "BARCODE"), .code = "BARCODE"}},
        .languages = {{.rows = Languages(), .language = Language(), .text = "DESCRIZION, DESCRART01"}},
        .after = WriteLongTexts,
        .further = {{}, {{"DESARTLI", {}, {"DESCRART02", "DESARCOMPL"}}}, {}},
    };
}

/// Articles created from the day on that the operator enters.
Procedure ArticoliDaData() {
    const Articles articles = Articoli();
    return ProcedureOf(
        Button::Art, FrameOf(articles),
        {AskedSince(PartOf(articles), "Importare gli articoli creati dal (gg/mm/aaaa):", {"DATACREA"}, DayFormat)});
}

const QString ListHeads = QStringLiteral("TABLIS");

/// A list that TABLIS does not have is called by its code.
Rule ListName() {
    return {"la prima colonna; \"Listino \" e la seconda se è vuota", [](const RuleInput& input) {
                const QString name = input.row.Text(input.columns.first());
                return RuleValue(name.isEmpty() ? QStringLiteral("Listino ") + input.row.Text(input.columns.last())
                                                : name);
            }};
}

PriceLists Listini() {
    const auto scale = [](const QString& number, const Field& quantity) {
        return ScaleFields{.quantity = quantity, .price = {QString("PREZZO" + number), NotZero()}};
    };
    return {
        .frame = {.module = Module, .procedure = "ImportListiniSigla"},
        .source = {.table = "TABRILIS",
                   .key = "CODICE",
                   .order = "CODICE, ARTICOLO, DATAINVALI",
                   .naming = "CODICE, ARTICOLO",
                   .joins = {{.table = ListHeads,
                              .on = {{"CODICE"}},
                              .columns = {"DESCRIZION", "CODVAL", "TIPO", "DATAIN"}}}},
        .article = {"ARTICOLO", Article()},
        .prices = {{
            .list = "CODICE",
            .direction = {"TIPO", UpperOr(1, schema::defaults::SalesList)},
            .description = {"DESCRIZION, CODICE", ListName()},
            .currency = {"CODVAL", Currency(ListHeads, "CODVAL")},
            .since = {"DATAIN", NotNull(DateText(DayFormat))},
            .from = {"DATAINVALI", DateText(DayFormat)},
            .scales =
                {{.price = {"PREZZO", NotZero()}}, scale("1", "AQUAT1"), scale("2", "AQUAT2"), scale("3", "AQUAT3")},
        }},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Sigla",
        Module,
        {.kind = "SQL Server",
         .prepare = sourceSettings::Server("SIGLA"),
         .company = CompanyKey{"Databasename_TABLE", Clifo}},
        Buttons("YYYNN---", {{Button::Dis, "Importa Listini"}}),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti()),
            ArticoliDaData(),
            ProcedureOf(Button::Dis, Listini()),
        },
    };
    return origin;
}

} // namespace modImport_Sigla
