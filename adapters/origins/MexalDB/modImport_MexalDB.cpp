// Mexal's archives as DBMirror copies them into a database (SQL Server, MySQL), MEXALDB unless the setting Databasename
// names another: customers and suppliers with destinations, articles, bills. The names are DBMirror's, known from
// published code; an installation of MexalDB itself has them as SIGLA_ARTI and the like, which its layout file says.
// Designed are the price list, discount and note of a counterparty, the second unit and the VAT code of an article, and
// DB_RIGHE. Texts are padded with blanks, 01/01/1900 is no day, zero is no code. Which accounts are customers and which
// suppliers the settings MexalDB_GruppoClienti ("2") and MexalDB_GruppoFornitori ("6") tell by the beginnings of their
// codes. Not read: the names of banks and payment terms, which Quadrix has of its own, the day of the last change
// (DTT_AGG_ANAG), the notes of articles, which DBMirror does not copy, and articles marked as deleted. Known gaps:
// stock, documents.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/map/codeRules.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/modMain.h"
#include "core/schemaDefaults.h"

#include <QRegularExpression>

using namespace contract;
using namespace contract::rules;

namespace modImport_MexalDB {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_MexalDB");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Rubrica = QStringLiteral("PA_RUBR_PDC_CLFR");
const QString Condizioni = QStringLiteral("PC_CONDIZIONI_COMM");
const QString Anagrafiche = QStringLiteral("AR_ANAGRAFICHE");
const QString Righe = QStringLiteral("DB_RIGHE");

/// What belongs to an article, in a table of its own.
ChildTable OfArticle(const QString& table, const QString& where, const QString& order = {}) {
    return {.table = table, .on = {{"CKY_ART"}}, .order = order, .where = where};
}

// --- Rules --------------------------------------------------------------------------------------------------------

/// 1 is the euro.
Rule NumberedCurrency() {
    return {"\"EUR\" per vuoto, 0 e 1; altrimenti tradotto con SYS_IMP (MU_VALUTE, NKY_VLT), altrimenti com'è se "
            "TAB_VAL lo ha, altrimenti annotato, scritto nel log e \"EUR\"",
            [](const RuleInput& input) {
                const QString number = input.Text();
                const bool isEuro = number == u"0" || number == u"1";
                return RuleValue(CurrencyOf(input.session, "MU_VALUTE", "NKY_VLT", isEuro ? QString() : number));
            }};
}

/// Country, the two digits of control and the national account: an IBAN in its three parts.
Rule Iban() {
    return {
        "nazione, controllo di due cifre e conto; se uno manca va nel log e non si scrive",
        [digits = Digits(2).apply](const RuleInput& input) -> RuleValue {
            static const QRegularExpression whole(QStringLiteral("^[A-Z]{2}(0[2-9]|[1-8][0-9]|9[0-8])$"));
            const auto text = [&input](qsizetype column) { return input.row.Text(input.columns.at(column)); };
            const QString account = text(2).remove(u' ');
            const QString begin =
                text(0).toUpper() + digits({input.session, input.row, {input.columns.at(1)}, input.facts})->toString();
            if (account.isEmpty() || whole.match(begin).hasMatch()) {
                return account.isEmpty() ? RuleValue() : RuleValue(QString(begin + account));
            }
            modImport::LogNote(input.session,
                               QStringLiteral("IBAN INCOMPLETO: %1: paese '%2', cifre di controllo '%3', conto '%4'")
                                   .arg(input.session.Errors.RowKey(), text(0), text(1), account));
            return std::nullopt;
        }};
}

/// The category of an article is a letter and a number of two digits.
Rule Category() {
    return {"testo e numero di due cifre, tradotto con SYS_IMP (AR_ANAGRAFICHE, CKY_CAT_STAT_ART), i codici che "
            "mancano vi si annotano",
            [translated = Translated(Anagrafiche, "CKY_CAT_STAT_ART")](const RuleInput& input) {
                const QString letters = input.row.Text(input.columns.first());
                const QString number = input.row.Text(input.columns.last());
                const QString code =
                    letters + (letters.isEmpty() || number.isEmpty() ? number : number.rightJustified(2, u'0'));
                return translated.apply(
                    {input.session, input.row, input.columns, input.facts, code == u"0" ? QString() : code});
            }};
}

// --- Counterparties -----------------------------------------------------------------------------------------------

/// Customers or suppliers: the accounts whose codes begin as a setting says, several beginnings with "," between.
struct Group {
    QString setting;
    QString usual;
    QString step;
    Roles roles;
};
const Group Customers{"MexalDB_GruppoClienti", "2", "Clienti", {.customer = true}};
const Group Suppliers{"MexalDB_GruppoFornitori", "6", "Fornitori", {.supplier = true}};

QString ConditionOf(Session& session, const Group& group) {
    const QString value = modMain::GetAppConfig(session, "IMPORT", group.setting, group.usual);
    QStringList conditions;
    for (const QString& begin : value.split(u',')) {
        const QString text = begin.trimmed();
        const bool fits =
            !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) { return c.isDigit() || c == u'.'; });
        if (!fits) {
            throw ImportError(QStringLiteral("impostazione %1 della sezione IMPORT: '%2' non è l'inizio di un conto")
                                  .arg(group.setting, text));
        }
        conditions.append("T.CKY_CNT LIKE " + LiteralOf(session.SourceConnection(), QString(text + u'%')));
    }
    return u'(' + conditions.join(QStringLiteral(" OR ")) + u')';
}

/// A customer who is invoiced to another is a destination of that one. Texts are padded with blanks, which not every
/// engine passes over.
const QString IsDestination =
    QStringLiteral("RTRIM(J1.CKY_CNT_CLI_FATT) > '' AND RTRIM(J1.CKY_CNT_CLI_FATT) <> RTRIM(T.CKY_CNT)");
const QString IsNoDestination = QStringLiteral("(J1.CKY_CNT_CLI_FATT IS NULL OR RTRIM(J1.CKY_CNT_CLI_FATT) = '' OR "
                                               "RTRIM(J1.CKY_CNT_CLI_FATT) = RTRIM(T.CKY_CNT))");

/// The accounts of a group that fulfil a condition, with their conditions of trade.
SourceTable AccountsOf(const Group& group, const QString& where) {
    return {
        .table = Rubrica,
        .key = "CKY_CNT",
        .order = "CKY_CNT",
        .where = where,
        .told = [group](ImportRun& run) { return ConditionOf(run.GetSession(), group); },
        .joins = {{.table = Condizioni,
                   .on = {{"CKY_CNT"}},
                   .columns = {"NKY_PAG", "NGL_ABI", "NGL_CAB", "CSG_CC", "CSG_BBAN_CIN", "CSG_IBAN_BBAN",
                               "CSG_IBAN_PAESE", "NGB_IBAN_CIN", "CSG_BIC", "CKY_CNT_AGENTE", "NKY_VLT",
                               "CKY_CNT_CLI_FATT", "NGB_LIS", "CSG_SCONTO", "CDS_NOTE"}}},
    };
}

const NumberColumns Numbers{.office = "CDS_TEL_TELEX", .fax = "CDS_FAX", .mail = "CDS_INET", .web = "CDS_URL_INET"};

Counterparties PartiesOf(const Group& group) {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiMexalDB", .step = group.step},
        .source = AccountsOf(group, group.roles.customer ? IsNoDestination : QString()),
        .roles = Always(group.roles),
        .name = {"CDS_RAGSOC_COGN, CDS_CNT", FirstNotBlank(Text())},
        .vatNumber = "CSG_PIVA",
        .taxCode = "CSG_CFIS",
        .lines =
            {
                {"CORAS", "CDS_RAGSOC_COGN, CDS_CNT", FirstNotBlank(First(35))},
                {"CORA2", "CDS_RAGSOC_COGN, CDS_CNT", FirstNotBlank(From(36))},
                {"COIND", "CDS_INDIR", Text()},
                {"COCAP", "CDS_CAP", Text()},
                {"COCIT", "CDS_LOC", Text()},
                {"COPRO", "CDS_PROV", Text()},
                {"CONAZ", "CKY_PAESE", Country(Rubrica, "CKY_PAESE")},
                {"COCCT", "IST_NAZ", Translated(Rubrica, "IST_NAZ")},
                {"COIVA", "CSG_PIVA", NotBlank(Text())},
                {"COFIS", "CSG_CFIS", NotBlank(Text())},
                {"DTINS", "DTT_CRE", DayThere()},
                ByRole("COMOP", "COMOA", "NKY_PAG", NotZeroCode(Translated("CP_PAGAMENTI", "NKY_PAG"))),
                {"COABI", "NGL_ABI", NotZeroCode(Digits(5))},
                {"COCAB", "NGL_CAB", NotZeroCode(Digits(5))},
                {"COCOC", "CSG_CC", NotBlank(Text())},
                {"COCIN", "CSG_BBAN_CIN", NotBlank(Text())},
                {"COIBA", "CSG_IBAN_PAESE, NGB_IBAN_CIN, CSG_IBAN_BBAN", Iban()},
                {"COBIC", "CSG_BIC", NotBlank(Text())},
                {"COAGE", "CKY_CNT_AGENTE", CustomerOnly(Translated(Condizioni, "CKY_CNT_AGENTE"))},
                {"COVAL", "NKY_VLT", NumberedCurrency()},
                {"COLSC", "NGB_LIS", CustomerOnly(NotZeroCode(Translated(Condizioni, "NGB_LIS")))},
                DiscountsByRole("CSG_SCONTO"),
                {"CONOT", "CDS_NOTE", Text()},
            },
        .numbers = Numbers,
        .created = {"DTT_CRE", DayThere()},
        .empties = group.roles.customer,
        .more = SetIban,
    };
}

// --- Destinations -------------------------------------------------------------------------------------------------

/// The branch that an account becomes which is invoiced to another.
const std::vector<Mapping>& Destinazione() {
    static const std::vector<Mapping> mappings =
        AccountsOf(Customers, IsDestination)
            .Mappings("CON_SED",
                      Lines{
                          {"CDCON", "", Code()},
                          {"CDSED", "CKY_CNT", Text()},
                          {"SETIP", "", Constant("CO")},
                          {"SERAS", "CDS_RAGSOC_COGN, CDS_CNT", FirstNotBlank(First(100))},
                          {"SEIND", "CDS_INDIR", Text()},
                          {"SECAP", "CDS_CAP", WhenNotBlank("CDS_LOC", Text())},
                          {"SECIT", "CDS_LOC", WhenNotBlank("CDS_LOC", Text())},
                          {"SEPRO", "CDS_PROV", Text()},
                          {"SENAZ", "CKY_PAESE", Country(Rubrica, "CKY_PAESE")},
                          {"SEDEF", "", Constant(false)},
                          {"SENOT", "CDS_NOTE", Text()},
                      }
                          .Over({}));
    return mappings;
}

RowOutcome ImportDestinazione(ImportRun& run, const SourceRow& row) {
    if (row.IsBlank("CDS_INDIR")) {
        return run.Skip(QStringLiteral("sede senza indirizzo"));
    }
    Session& session = run.GetSession();
    const Field owner("CKY_CNT_CLI_FATT", CustomerOf());
    CounterpartyWriter writer(run, Field("DTT_CRE", DayThere()).Value(session, row));
    const Owner counterparty{"CON_TRO", owner.RequiredText(session, row), true};
    TargetRow branch = writer.NewRow("CON_SED");
    for (const Mapping& mapping : Destinazione()) {
        mapping.Apply(branch, session, row, {counterparty.key});
    }
    const Owner written = writer.Branch(counterparty, branch);
    writer.Numbers(written, row, Numbers);
    return written.known ? RowOutcome::Updated : RowOutcome::Inserted;
}

/// They come behind the customers that they belong to.
ImportPart Destinazioni() {
    Needs needs;
    for (const Mapping& mapping : Destinazione()) {
        needs = needs + NeedsOf(mapping);
    }
    needs.reads.push_back({Rubrica, {}, Numbers.Names()});
    needs.reads.push_back({Rubrica, {}, {"DTT_CRE"}});
    needs.writes = CounterpartyNeeds();
    return {.step = "Destinazioni",
            .source = AccountsOf(Customers, IsDestination),
            .needs = needs,
            .make = Importing(ImportDestinazione)};
}

// --- Articles -----------------------------------------------------------------------------------------------------

Rule Article() { return ArticleCode(Anagrafiche, "CKY_ART"); }

QString Cancelled(const SourceRow& row) {
    return row.Text("IFL_ART_CANC").compare(u"N", Qt::CaseInsensitive) == 0
               ? QString()
               : QStringLiteral("articolo cancellato (IFL_ART_CANC)");
}

Articles Articoli() {
    const ChildTable stock = OfArticle("AB_UBICAZIONI", "NKY_DEP = 1");
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliMexalDB"},
        .source = {.table = Anagrafiche, .key = "CKY_ART", .order = "CKY_ART", .where = "IST_ART = 'A'"},
        .code = {"CKY_ART", Article()},
        .description = "CDS_ART, CDS_AGGIUN_ART",
        .lines =
            {
                {"CDEXT", "CKY_ART", Text()},
                {"ARUMS", "CSG_UNIMIS_PRI", Unit(Anagrafiche, "CSG_UNIMIS_PRI", schema::defaults::Unit)},
                {"ARUM2", "CSG_UNIMIS_SEC", Unit(Anagrafiche, "CSG_UNIMIS_PRI", "")},
                {"ARCOE", "NCF_CONV", NotZero()},
                {"ARFAM", "CKY_CAT_STAT_ART, NKY_CAT_STAT_ART", Category()},
                {"ARCOS", "NMP_UCA, NMP_COSTD", FirstNotZero()},
                {"ARPRZ", "",
                 Or(OfFirst(Anagrafiche, OfArticle("AR_PREZZI", "ID_CR = 1"), "NPZ_LIS", RoundedTo(6)), QVariant())},
                {"ARCLA", "IFL_ART_DBP", Choice({{"S", "PF"}}, "CM")},
                {"ARANN", "IFL_ART_ANN", Flag()},
                {"ARINV", "DTT_CRE", DayThere()},
                {"DTINS", "DTT_CRE", DayThere()},
                {"ARSMN", "", Or(OfFirst(Anagrafiche, stock, "NQT_SCORTA_MIN", RoundedTo(6)), QVariant())},
                {"ARSMX", "", Or(OfFirst(Anagrafiche, stock, "NQT_SCORTA_MAX", RoundedTo(6)), QVariant())},
                {"ARIVA", "",
                 Or(OfFirst(Anagrafiche, OfArticle("AR_CONDIZIONI_COMM", {}), "NKY_ALIQ",
                            VatCode("AR_CONDIZIONI_COMM", "NKY_ALIQ")),
                    schema::defaults::VatCode)},
            },
        .suppliers = {{.supplier = {"CKY_CNT_FOR_AB", KnownSupplier()},
                       .price = {"NMP_UCA, NMP_COSTD", FirstNotZero()}}},
        .aliases = {{.code = "CSG_ART_ALT"}},
        .languages = {{
            .rows = OfArticle("AH_DES_ART_LINGUA", {}, "NKY_LIN"),
            .language = {"NKY_LIN", TranslatedOrKnown("AH_DES_ART_LINGUA", "NKY_LIN", "TAB_LNG")},
            .text = "CDS_ART_LIN",
        }},
        .cancelled = Cancelled,
        .more = SetMarkUp,
        .further = {{}, {{Anagrafiche, {"IFL_ART_CANC"}}}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

// --- Bills --------------------------------------------------------------------------------------------------------

/// Rows of an article that is said to have no bill are what is left of one.
QString WithoutBill(const SourceRow& row) {
    const QString flag = row.Text("IFL_ART_DBP");
    return flag.isEmpty() || flag.compare(u"S", Qt::CaseInsensitive) == 0
               ? QString()
               : QStringLiteral("articolo senza distinta (IFL_ART_DBP)");
}

Bills Distinte() {
    const ChildTable rows{
        .table = Righe, .on = {{"CKY_ART"}}, .order = "NPR_FASE, NPR_RIGA", .naming = "CKY_ART, NPR_FASE, NPR_RIGA"};
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistinteMexalDB",
                  .announcement = "Inizio importazione Distinte Base da MexalDB",
                  .completion = "Distinte Base MexalDB importate correttamente: %1 (Fasi: %2, Comp.: %3)"},
        .source = {.table = Righe,
                   .key = "CKY_ART",
                   .order = "CKY_ART",
                   .distinct = true,
                   .joins = {{.table = Anagrafiche, .on = {{"CKY_ART"}}, .columns = {"IFL_ART_DBP"}}}},
        .article = {"CKY_ART", Article()},
        .components = {.rows = rows,
                       .article = {"CKY_ART_COMP", Article()},
                       .quantity = "NQT_COMP",
                       .note = "CDS_NOTE",
                       .position = "NPR_RIGA",
                       .phase = {"NPR_FASE", PhaseInTens()}},
        .phases = BillPhases{.rows = rows, .key = {"NPR_FASE", PhaseInTens()}, .number = {"NPR_FASE", PhaseInTens()}},
        .leavesOut = WithoutBill,
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "MexalDB",
        Module,
        {"SQL Server", sourceSettings::Server("MEXALDB")},
        Buttons("YYYN----"),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, FrameOf(PartiesOf(Customers)),
                        {PartOf(PartiesOf(Customers)), PartOf(PartiesOf(Suppliers)), Destinazioni()}),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Dis, Distinte()),
        },
    };
    return origin;
}

} // namespace modImport_MexalDB
