// Gamma of TeamSystem on SQL Server: database GAMMA unless the setting Databasename names another, company of the
// setting Ditta (1). Counterparties with branches, and contacts, stand here, articles and price lists in
// modImport_GammaSqlServer_articles.cpp, bills in modImport_GammaSqlServer_bills.cpp,
// tubes of a CSV file in modImport_GammaSqlServer_tubes.cpp.
// The tables and the keys of CG44, CG16, MG66, MG87, PD18, LI10, LI16, PD95, PD96 and PD48 are known from
// installations, as are names, addresses and numbers of a counterparty. The commercial columns of CG44 and MG66,
// CG45_RIFERIMENTI and the names of MG22 and CG12 are this system's own reading; a name that differs is put right in
// the layout of the source. Left out: CG16_INDSOGGRIT (withholding tax), MG66_SFAM_MG54 (Quadrix has one family),
// PD18_FLGFANTASMA.

#include "adapters/origins/GammaSqlServer/modImport_GammaSqlServer.h"

#include "adapters/contract/map/codeRules.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/sourceSettings.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_GammaSqlServer {

const contract::Origin& Entry();

namespace {

// --- Rules --------------------------------------------------------------------------------------------------------

/// Town and postal code: those of the register of towns where the row names one (first source column), else its own.
Rule OfTown(const QString& column) {
    const Rule named = Via("CG01_ANAGCOMUNI", "CG01_CODICE", column, Text());
    return {named.text + QStringLiteral("; il suo testo se manca"),
            [named](const RuleInput& input) -> RuleValue {
                const QStringList town{input.columns.first()};
                const QString found = named.apply({input.session, input.row, town, input.facts})->toString();
                return found.isEmpty() ? input.row.Text(input.columns.last()) : found;
            },
            Side::Both, named.reads};
}

Rule BankOf(const QString& column) { return NotBlank(Via("CG12_BANCHE", "CG12_CODICE", column, NotBlank(Digits(5)))); }

/// A customer and a supplier that are the same person in the general register are one counterparty.
Rule SamePerson() {
    return {
        "controparte dell'altro ruolo con la stessa anagrafica generale",
        [](const RuleInput& input) -> RuleValue {
            const bool isCustomer = input.facts.roles.customer;
            ovConnection& source = input.session.SourceConnection();
            Recordset others =
                source.ExecuteWC(QStringLiteral("SELECT CG44_CLIFOR FROM CG44_CLIFOR WHERE CG44_CODICE_CG16 = %1 AND "
                                                "CG44_TIPOCF = %2 ORDER BY CG44_CLIFOR")
                                     .arg(LiteralOf(source, input.row.Value("CG44_CODICE_CG16")),
                                          isCustomer ? QStringLiteral("1") : QStringLiteral("0")));
            for (const SourceRow other(others); !others.Eof(); others.MoveNext()) {
                const QString column = SourceCodeColumn(!isCustomer);
                const QString code = other.Text("CG44_CLIFOR");
                const QString name = input.row.Text("CG16_RAGSOANAG").left(35).trimmed();
                // Another origin may have given the same code to somebody else.
                if (LookUp(input.session, "CON_TRO", column, code, "CORAS").compare(name, Qt::CaseInsensitive) == 0) {
                    return LookUp(input.session, "CON_TRO", column, code, "CDCON");
                }
            }
            return std::nullopt;
        },
        Side::Both,
        {{Clifor, {"CG44_CLIFOR", "CG44_CODICE_CG16", "CG44_TIPOCF"}}}};
}

// --- Counterparties -----------------------------------------------------------------------------------------------

RoleTeller RoleOfType(const QString& column) { return ByLetter(column, {.customer = {"0"}, .supplier = {"1"}}); }

/// The general register keeps every version of a record; the newest counts.
Join GeneralRecord() {
    return {.table = Anaggen,
            .on = {{"CG16_CODICE", "CG44_CODICE_CG16"}},
            .columns = {"CG16_CODICE",  "CG16_RAGSOANAG",   "CG16_COGNOME",    "CG16_NOME",        "CG16_INDIRIZZO",
                        "CG16_CAP",     "CG16_CITTA",       "CG16_PROV",       "CG16_COMANA_CG01", "CG16_CODICE_CG07",
                        "CG16_PARTIVA", "CG16_PARTIVA_EST", "CG16_CODFISCALE", "CG16_TEL1NUM",     "CG16_TEL2NUM",
                        "CG16_FAXNUM",  "CG16_CELNUM",      "CG16_INDEMAIL",   "CG16_INDWEB",      "CG16_INDPEC"},
            .where = "NOT EXISTS (SELECT X.CG16_CODICE FROM CG16_ANAGGEN X WHERE X.CG16_CODICE = J1.CG16_CODICE AND "
                     "(X.CG16_DATAVALID > J1.CG16_DATAVALID OR (J1.CG16_DATAVALID IS NULL AND X.CG16_DATAVALID IS NOT "
                     "NULL)))"};
}

Lines SediLines() {
    return {
        {"CDCON", "MG22_CLIFOR_CG44", Code()},
        {"CDSED", "MG22_CODDESTIN", Digits(3)},
        {"SERAS", "MG22_DESTRAGSOC", Text()},
        {"SEIND", "MG22_DESTIND", Text()},
        {"SECAP", "MG22_DESTCAPCHAR", WhenNotBlank("MG22_DESTCITTA", Text())},
        {"SECIT", "MG22_DESTCITTA", WhenNotBlank("MG22_DESTCITTA", Text())},
        {"SEPRO", "MG22_DESTPROV", Text()},
        {"SENAZ", "MG22_CODICE_CG07", ZeroAsBlank(Country("CG07_TABSTATIEST", "CG07_CODICE"))},
        {"SERIF", "MG22_RIFERIM", Text()},
        {"SEDEF", "MG22_FLGPREDEF", Flag()},
    };
}

NumberColumns SediNumbers() { return {.office = "MG22_TELEFONO", .fax = "MG22_FAX"}; }

Branches Sedi() {
    return {
        .rows = {.table = "MG22_DESTDIV",
                 .on = {{"MG22_DITTA_CG18", "CG44_DITTA_CG18"},
                        {"MG22_TIPOCF_CG44", "CG44_TIPOCF"},
                        {"MG22_CLIFOR_CG44", "CG44_CLIFOR"}},
                 .order = "MG22_CODDESTIN"},
        .lines = SediLines(),
        .numbers = SediNumbers(),
    };
}

} // namespace

Rule PriceList() { return ZeroAsBlank(NotBlank(Or(Translated(Clifor, "CG44_NUMLIST"), Text()))); }

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiGammaSqlServer"},
        .source = {.table = Clifor,
                   .key = "CG44_CLIFOR",
                   .order = "CG44_DITTA_CG18, CG44_TIPOCF, CG44_CLIFOR",
                   .naming = "CG44_TIPOCF, CG44_CLIFOR",
                   .joins = {GeneralRecord()}},
        .roles = RoleOfType("CG44_TIPOCF"),
        .name = "CG16_RAGSOANAG",
        .vatNumber = {"CG16_PARTIVA, CG16_PARTIVA_EST", FirstNotBlank(Text())},
        .taxCode = "CG16_CODFISCALE",
        .sameAs = {"CG44_CODICE_CG16", SamePerson()},
        .lines =
            {
                {"CORAS", "CG16_RAGSOANAG", First(35)},
                {"CORA2", "CG16_RAGSOANAG", From(36)},
                {"COPER", "CG16_COGNOME", Not(Is(""))},
                {"COCOG", "CG16_COGNOME", NotBlank(Text())},
                {"CONOM", "CG16_NOME", WhenNotBlank("CG16_COGNOME", Text())},
                {"COIND", "CG16_INDIRIZZO", Text()},
                {"COCAP", "CG16_COMANA_CG01, CG16_CAP", OfTown("CG01_CAP")},
                {"COCIT", "CG16_COMANA_CG01, CG16_CITTA", OfTown("CG01_DESCR")},
                {"COPRO", "CG16_PROV", Text()},
                {"CONAZ", "CG16_CODICE_CG07", ZeroAsBlank(Country("CG07_TABSTATIEST", "CG07_CODICE"))},
                {"COIVA", "CG16_PARTIVA, CG16_PARTIVA_EST", FirstNotBlank(NotBlank(Text()))},
                {"COFIS", "CG16_CODFISCALE", NotBlank(Text())},
                {"COPEC", "CG16_INDPEC", NotBlank(Text())},
                ByRole("COMOP", "COMOA", "CG44_CODPAG_CG62", Translated(Clifor, "CG44_CODPAG_CG62")),
                {"COABI", "CG44_CODBAN_CG12", BankOf("CG12_ABI")},
                {"COCAB", "CG44_CODBAN_CG12", BankOf("CG12_CAB")},
                {"COCOC", "CG44_CONTOCORR", NotBlank(Text())},
                {"COCIN", "CG44_CIN", NotBlank(Text())},
                {"COIBA", "CG44_IBAN", NotBlank(WithoutBlanks())},
                {"COBIC", "CG44_BIC", NotBlank(Text())},
                {"COBAN", "CG44_BANAPP_CG12", OwnBank(Clifor, "CG44_BANAPP_CG12")},
                ByRole("COSC1", "COSF1", "CG44_SCONTO1", RoundedTo(2)),
                ByRole("COSC2", "COSF2", "CG44_SCONTO2", RoundedTo(2)),
                ByRole("COLSC", "COLSF", "CG44_NUMLIST", PriceList()),
                {"COVAL", "CG44_CODVAL_CG08", Currency(Clifor, "CG44_CODVAL_CG08")},
                {"COLNG", "CG44_LINGUA_MG52", Or(Translated(Clifor, "CG44_LINGUA_MG52"), "IT")},
                {"COAGE", "CG44_CODAGE_MG17", Translated(Clifor, "CG44_CODAGE_MG17")},
                {"COZON", "CG44_ZONA_MG16", Translated(Clifor, "CG44_ZONA_MG16")},
                ByRole("COCCC", "COCCF", "CG44_CATEG_MG15", Translated(Clifor, "CG44_CATEG_MG15")),
                {"COESE", "CG44_CODIVA_CG28", ExemptVat(Clifor, "CG44_CODIVA_CG28")},
                {"COPOR", "CG44_PORTO_MG18", Translated(Clifor, "CG44_PORTO_MG18")},
                {"COVEP", "CG44_VETT_MG19", Translated(Clifor, "CG44_VETT_MG19")},
                {"COFID", "CG44_FIDO", RoundedTo(2)},
                {"COBLK", "CG44_FLGBLOCCO", Flag()},
                ByRole("COMAC", "COMAF", "CG44_CONTO_CG15", Translated(Clifor, "CG44_CONTO_CG15")),
                {"CONOT", "CG44_NOTE", Text()},
            },
        .numbers = {"CG16_TEL1NUM", "CG16_TEL2NUM", "CG16_FAXNUM", "CG16_CELNUM", "CG16_INDEMAIL", "CG16_INDWEB"},
        .branches = {Sedi()},
        .leavesOut =
            [](const SourceRow& row) {
                return row.IsBlank("CG16_CODICE") ? QStringLiteral("senza anagrafica generale (CG16_ANAGGEN)")
                                                  : QString();
            },
        .more = SetIban,
    };
}

// --- Contacts -----------------------------------------------------------------------------------------------------

PartyRows Riferimenti() {
    const QString table = QStringLiteral("CG45_RIFERIMENTI");
    return {
        .kind = PartyRow::Contact,
        .frame = {.module = Module, .procedure = "ImportRiferimentiGammaSqlServer"},
        .source = {.table = table,
                   .key = "CG45_CLIFOR_CG44",
                   .order = "CG45_DITTA_CG18, CG45_TIPOCF_CG44, CG45_CLIFOR_CG44, CG45_PROGR",
                   .naming = "CG45_TIPOCF_CG44, CG45_CLIFOR_CG44, CG45_PROGR"},
        .roles = RoleOfType("CG45_TIPOCF_CG44"),
        .owner = "CG45_CLIFOR_CG44",
        .lines =
            {
                {"RFNOM", "CG45_NOMINATIVO", Text()},
                {"RFQUA", "CG45_MANSIONE", Text()},
                {"RFNOT", "CG45_NOTE", Text()},
            },
        .numbers = {.office = "CG45_TELEFONO", .fax = "CG45_FAX", .mobile = "CG45_CELLULARE", .mail = "CG45_EMAIL"},
    };
}

// --- Branches -----------------------------------------------------------------------------------------------------

PartyRows SediSole() {
    const QString table = QStringLiteral("MG22_DESTDIV");
    return {
        .kind = PartyRow::Branch,
        .source = {.table = table,
                   .key = "MG22_CLIFOR_CG44",
                   .order = "MG22_DITTA_CG18, MG22_TIPOCF_CG44, MG22_CLIFOR_CG44, MG22_CODDESTIN",
                   .naming = "MG22_TIPOCF_CG44, MG22_CLIFOR_CG44, MG22_CODDESTIN"},
        .roles = RoleOfType("MG22_TIPOCF_CG44"),
        .owner = "MG22_CLIFOR_CG44",
        .lines = SediLines(),
        .numbers = SediNumbers(),
    };
}

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Gamma DB SqlServer",
        Module,
        {.kind = "SQL Server", .prepare = sourceSettings::Server("GAMMA"), .company = Ditta()},
        Buttons("YYYNNYY-", {{Button::Saldi, "Importa Riferimenti"}, {Button::Piano, "Importa Tubolari da CSV"}}),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti()),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Dis, Distinte()),
            ProcedureOf(Button::Saldi, Riferimenti()),
            Tubolari(),
            ProcedureOf(std::nullopt, Listini()),
            ProcedureOf(std::nullopt, ListiniPersonali(true)),
            ProcedureOf(std::nullopt, ListiniPersonali(false)),
        },
    };
    return origin;
}

} // namespace modImport_GammaSqlServer
