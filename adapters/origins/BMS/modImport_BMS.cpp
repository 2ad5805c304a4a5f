// BMS: an Oracle database behind the ODBC data source BMS (setting DSN). Tables bear the area in front: AN registry, LG
// logistics. A counterparty is a subject (ANSOGGET) with its registered address (ANINDSOG of kind L) that is a customer
// (ANCLIENT), a supplier (ANFORNIT) or both. The names of ANSOGGET, ANCLIENT, ANINDSOG, ANINDCLI, ANRIFEAZ, LGLISRIG,
// LGLEGAMI and LGARTMAG are known; ANFORNIT, the other tables and all columns are this system's own reading, and are
// fitted by the layout file (Tracciati). Price lists and the refresh of the counterparties have no button: they are
// reached by their names. Articles, price lists and bills stand in modImport_BMS_articles.cpp, orders in
// modImport_BMS_documents.cpp. Known gaps: branches of suppliers, stock.

#include "adapters/origins/BMS/modImport_BMS.h"

#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_BMS {

const contract::Origin& Entry();

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Soggetti = QStringLiteral("ANSOGGET");
const std::vector<Tie> OfSubject{{"ID_SOGGETTO"}};

/// What customers and suppliers have each in a table of their own.
struct Side {
    QString table;
    QString key;
    QString step;
    Roles roles;
};
Side Customers() { return {Clienti, "COD_CLIENTE", "Clienti", {.customer = true}}; }
Side Suppliers() { return {Fornitori, "COD_FORNITORE", "Fornitori", {.supplier = true}}; }

SourceTable SubjectsOf(const Side& side) {
    return {.table = side.table,
            .key = side.key,
            .order = side.key,
            .joins = {{.table = Soggetti,
                       .on = OfSubject,
                       .columns = {"RAG_SOC1", "RAG_SOC2", "FL_PERS_FIS", "COGNOME", "NOME", "PART_IVA", "COD_FISC",
                                   "COD_NAZIONE", "COD_LINGUA"}},
                      {.table = "ANINDSOG",
                       .on = OfSubject,
                       .columns = {"INDIRIZZO", "NUM_CIV", "CAP", "CITTA", "PROV", "TELEFONO", "FAX", "CELLULARE",
                                   "EMAIL", "SITO_WEB", "PEC"},
                       .where = "J2.TIPO_IND = 'L'"}}};
}

// --- Rules --------------------------------------------------------------------------------------------------------

/// A customer whose subject is missing has no name: nothing could be done with it.
Rule Name() {
    return {"primi 35 caratteri; riga abbandonata se è vuoto", [](const RuleInput& input) -> RuleValue {
                if (input.Text().isEmpty()) {
                    throw ImportError(QStringLiteral("il soggetto '%1' non c'è in %2, o è senza nome")
                                          .arg(input.row.Text("ID_SOGGETTO"), Soggetti));
                }
                return First(35).apply(input);
            }};
}

/// CDCON of the customer that the subject of a supplier is.
Field SameSubject() {
    return {"ID_SOGGETTO", OfFirst(Fornitori, {.table = Clienti, .on = OfSubject, .order = "COD_CLIENTE"},
                                   "COD_CLIENTE", LookedUp("CON_TRO", "COCGE", "CDCON"))};
}

/// An exemption, as `ExemptVat` finds it; Null for a code that is known and is none.
Rule Exemption(const QString& table, const QString& column) {
    const Rule exempt = ExemptVat(table, column);
    return Around(exempt, exempt.text,
                  [known = TranslatedOrKnown(table, column, "TAB_IVA").apply,
                   apply = exempt.apply](const RuleInput& input) -> RuleValue {
                      const RuleValue code = apply(input);
                      return code || !known(input) ? code : RuleValue(QVariant());
                  });
}

// --- Counterparties -----------------------------------------------------------------------------------------------

Branches Indirizzi() {
    return {.rows = {.table = "ANINDCLI", .on = {{"COD_CLIENTE"}}, .order = "PROGR", .naming = "COD_CLIENTE, PROGR"},
            .lines = {{"CDSED", "PROGR", Digits(3)},
                      {"SETIP", "TIPO_IND", Choice({{"F", "FT"}}, "CO")},
                      {"SERAS", "DESCR", Text()},
                      {"SEIND", "INDIRIZZO", Text()},
                      {"SENRC", "NUM_CIV", Text()},
                      {"SECAP", "CAP", WhenNotBlank("CITTA", Text())},
                      {"SECIT", "CITTA", WhenNotBlank("CITTA", Text())},
                      {"SEPRO", "PROV", Text()},
                      {"SENAZ", "COD_NAZIONE", Country(Soggetti, "COD_NAZIONE")},
                      {"SEDEF", "FL_DEFAULT", Flag()}},
            .numbers = {.office = "TELEFONO", .fax = "FAX"}};
}

Contacts Riferimenti() {
    return {.rows = {.table = "ANRIFEAZ", .on = OfSubject, .order = "PROGR", .naming = "ID_SOGGETTO, PROGR"},
            .lines = {{"RFNOM", "NOMINATIVO", Text()},
                      {"RFQUA", "FUNZIONE", Text()},
                      {"RFTIT", "REPARTO", Text()},
                      {"RFNOT", "NOTE", Text()}},
            .numbers = {.office = "TELEFONO", .mobile = "CELLULARE", .mail = "EMAIL"}};
}

Lines PartyLines(const QString& table, PartyWriting writing) {
    return {
        {"CORAS", "RAG_SOC1", Name()},
        {"CORA2", "RAG_SOC1, RAG_SOC2", SecondName(35)},
        {"COPER", "FL_PERS_FIS", Flag()},
        {"COCOG", "COGNOME", Text()},
        {"CONOM", "NOME", Text()},
        {"COIVA", "PART_IVA", NotBlank(Text())},
        {"COFIS", "COD_FISC", NotBlank(Text())},
        {"CONAZ", "COD_NAZIONE", Country(Soggetti, "COD_NAZIONE")},
        {"COLNG", "COD_LINGUA", TranslatedOr(Soggetti, "COD_LINGUA", schema::defaults::Language)},
        {"COIND", "INDIRIZZO", Text()},
        {"CONRC", "NUM_CIV", Text()},
        {"COCAP", "CAP", Text()},
        {"COCIT", "CITTA", Text()},
        {"COPRO", "PROV", Text()},
        {"COPEC", "PEC", NotBlank(Text())},
        ByRole("COMOP", "COMOA", "COD_PAGAM", Translated(table, "COD_PAGAM")),
        {"COESE", "COD_IVA", Exemption(table, "COD_IVA")},
        {"COAGE", "COD_AGENTE", TranslatedOrKnown(table, "COD_AGENTE", "AGE_NTI")},
        ByRole("COLSC", "COLSF", "COD_LISTINO", Translated(table, "COD_LISTINO")),
        {"COVAL", "COD_VALUTA", Currency(table, "COD_VALUTA")},
        {"COZON", "COD_ZONA", Translated(table, "COD_ZONA")},
        ByRole("COCCC", "COCCF", "COD_CATEG", Translated(table, "COD_CATEG")),
        ByRole("COSC1", "COSF1", "SCONTO1", NotBlank(RoundedTo(2))),
        ByRole("COSC2", "COSF2", "SCONTO2", NotBlank(RoundedTo(2))),
        ByRole("COSC3", "COSF3", "SCONTO3", NotBlank(RoundedTo(2))),
        {"COABI", "COD_ABI", NotBlank(Digits(5))},
        {"COCAB", "COD_CAB", NotBlank(Digits(5))},
        {"COCOC", "NUM_CC", NotBlank(Text())},
        {"COCIN", "CIN", NotBlank(Text())},
        {"COIBA", "IBAN", NotBlank(WithoutBlanks())},
        {"COBIC", "BIC", NotBlank(Text())},
        {"COFID", "FIDO", NotZero()},
        {"COANN", "FL_ANN", Flag()},
        {"COBLK", "FL_BLOCCO", Flag()},
        {"COINV", "DT_INS", writing == PartyWriting::Imported ? DayOrToday() : DayThere()},
        {"DTINS", "DT_INS", DayThere()},
        {"CONOT", "NOTE", Text()},
    };
}

Counterparties PartiesOf(const Side& side, PartyWriting writing = PartyWriting::Imported) {
    return {
        .frame = {.module = Module,
                  .procedure = "Import" + side.step + "BMS",
                  .announcement = "Inizio importazione " + side.step,
                  .log = side.roles.customer ? LogStart::Anew : LogStart::Behind,
                  .errors = Errors,
                  .step = side.step,
                  .completion = side.step + " importati correttamente!"},
        .source = SubjectsOf(side),
        .roles = Always(side.roles),
        .name = "RAG_SOC1, RAG_SOC2",
        .vatNumber = "PART_IVA",
        .taxCode = "COD_FISC",
        .sameAs = side.roles.customer ? Field() : SameSubject(),
        .lines = PartyLines(side.table, writing),
        .numbers = {.office = "TELEFONO", .fax = "FAX", .mobile = "CELLULARE", .mail = "EMAIL", .web = "SITO_WEB"},
        .created = {"DT_INS", Day()},
        .branches = side.roles.customer ? std::vector<Branches>{Indirizzi()} : std::vector<Branches>(),
        .contacts = {Riferimenti()},
        .writing = writing,
        .empties = side.roles.customer,
        .more = SetIban,
    };
}

/// Counterparties that an import has written, as they are in BMS now.
Procedure AggiornaControparti() {
    std::vector<ImportPart> parts;
    for (const Side& side : {Customers(), Suppliers()}) {
        parts.push_back(PartOf(PartiesOf(side, PartyWriting::Refreshed)));
    }
    return ProcedureOf(std::nullopt,
                       {.module = Module,
                        .procedure = "AggiornaContropartiBMS",
                        .announcement = "Inizio aggiornamento controparti da BMS",
                        .errors = Errors,
                        .completion = "Controparti aggiornate correttamente!",
                        .confirmation = "Aggiornare le controparti?",
                        .asksReset = false},
                       parts);
}

// --- Source -------------------------------------------------------------------------------------------------------

/// The database is Oracle whatever the settings say, unless they name an Access file with its tables, for trials.
bool PrepareSource(Session& session, ovConnection& source) {
    const bool prepared = sourceSettings::DataSource("BMS")(session, source);
    if (!source.Embedded && !source.DSN.endsWith(u".mdb", Qt::CaseInsensitive)) {
        source.ProviderType = Provider::Oracle;
    }
    return prepared;
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "BMS",
        Module,
        {.kind = "Oracle",
         .prepare = {PrepareSource, Place::DataSource, sourceSettings::DataSource("BMS").keys},
         .names = Naming::OurReading},
        Buttons("YYYYYNN-"),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, PartiesOf(Customers())),
            ProcedureOf(Button::Cli, PartiesOf(Suppliers())),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Dis, Distinte()),
            ProcedureOf(Button::Doc, Documenti()),
            ProcedureOf(Button::Acq, Documenti()),
            ProcedureOf(std::nullopt, Listini()),
            AggiornaControparti(),
        },
    };
    return origin;
}

} // namespace modImport_BMS
