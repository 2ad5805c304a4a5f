// Mexal: CSV files, each a table, in the folder that the setting Databasename names; else the ODBC data source of the
// setting DSN, MEXAL unless it names another. Columns bear the names of the program's own variables with "_" in front,
// those of an array with their index: [_ARPRZ(1)]. Counterparties and chart of accounts stand here, articles, stock
// and locations in modImport_Mexal_articles.cpp, documents in modImport_Mexal_documents.cpp, bills in
// modImport_Mexal_bills.cpp.
// PIA_CON, ART_MAG and DOC_TES, TIPO, _PCANN and _ARUBI are known from an installation, the articles' other columns
// from exports of it. The remaining columns of PIA_CON and of the documents, DOC_RIG and DIS_MAT are this system's own
// reading; a name that differs is put right in the mappings and the sections "Source tables".
// Known gaps: destinations, contacts, price lists beyond the first.

#include "adapters/origins/Mexal/modImport_Mexal.h"

#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/map/codeRules.h"
#include "adapters/contract/map/joinedParty.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/modMain.h"

#include <QFileInfo>

using namespace contract;
using namespace contract::rules;

namespace modImport_Mexal {

const contract::Origin& Entry();

QString GetControparteMexal(Session& session, const QString& code, bool customer) {
    if (code.isEmpty()) {
        return {};
    }
    const QString known = modImport::GetNewCode(session, "CON_TRO", "CDCON", code, false);
    const QString quoted = QString(code).replace('\'', "''"); // it goes into the statement as it is
    if (!known.isEmpty()) {
        return known;
    }
    const QString column = SourceCodeColumn(customer);
    return JoinedParty(session, column, code).isEmpty()
               ? modImport::GetNewControparteFromCodExt(session, quoted, customer, !customer, false)
               : LookUp(session, "CON_TRO", column, code, "CDCON");
}

Rule NumberedCurrency() {
    return {"\"EUR\" per vuoto e 1; altrimenti tradotto con SYS_IMP (PIA_CON, _PCVAL), altrimenti com'è se TAB_VAL lo "
            "ha, altrimenti annotato, scritto nel log e \"EUR\"",
            [](const RuleInput& input) {
                // Lire, euro and dollar are numbers: 1 is the company's own currency.
                const QString number = input.Text();
                return RuleValue(CurrencyOf(input.session, PiaCon, "_PCVAL", number == u"1" ? QString() : number));
            }};
}

namespace {

// --- Rules --------------------------------------------------------------------------------------------------------

/// ImportPart of the name: the long one when there is one, else the short one.
Rule NamePart(int from, int count) {
    return {QStringLiteral("della prima non vuota, dal carattere %1 in poi, %2").arg(from).arg(count),
            [from, count](const RuleInput& input) {
                const QString longName = input.row.Text(input.columns.first());
                const QString name = longName.isEmpty() ? input.row.Text(input.columns.last()) : longName;
                return RuleValue(FirstOf(RestOf(name, from - 1), count).trimmed());
            }};
}

/// The group of an account: "ccc" of "ccc.nnnnn", which some installations write without the point; a ledger has none.
std::optional<QString> GroupOf(const QString& code) {
    constexpr qsizetype group = 3;
    constexpr qsizetype account = 8;
    if (const qsizetype point = code.indexOf(u'.'); point >= 0) {
        return code.left(point);
    }
    const bool isAccount =
        code.size() == account && std::all_of(code.begin(), code.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    return isAccount ? std::optional(code.left(group)) : std::nullopt;
}

Rule Ledger() {
    return {"ciò che sta davanti al punto, le prime 3 di 8 cifre senza punto; niente se manca",
            [](const RuleInput& input) -> RuleValue {
                const auto group = GroupOf(input.Text());
                return group ? RuleValue(*group) : RuleValue();
            }};
}

Rule Level() {
    return {"1 per un mastro \"ccc\", 2 per un conto \"ccc.nnnnn\" o di 8 cifre",
            [](const RuleInput& input) { return RuleValue(GroupOf(input.Text()) ? 2 : 1); }};
}

Rule IsAccount() {
    return {"vero per un conto \"ccc.nnnnn\" o di 8 cifre",
            [](const RuleInput& input) { return RuleValue(GroupOf(input.Text()).has_value()); }};
}

// --- Counterparties -----------------------------------------------------------------------------------------------

/// A counterparty is cancelled or not: one of which the source does not say so is left out, and told.
void TellUnmarked(ImportRun& run, const QString& singleCode) {
    ForEachChild(run.GetSession(),
                 "SELECT * FROM PIA_CON WHERE TIPO IN ('C', 'F') AND ([_PCANN] IS NULL OR [_PCANN] NOT IN ('N', 'S'))" +
                     run.OnlyCode(" AND", "[_PCCOD]", singleCode) + " ORDER BY [_PCCOD]",
                 PiaCon, "_PCCOD", [&run](const SourceRow& row) {
                     run.Log(QStringLiteral("CONTROPARTE NON LETTA: %1 '%2': _PCANN '%3' non è N (valida) né S "
                                            "(annullata)")
                                 .arg(NameOf(row, PiaCon, "_PCCOD"), row.Text("_PCDES"), row.Text("_PCANN")));
                 });
}

/// One that has been imported before it was cancelled goes on in use in Quadrix, and is told.
QString Cancelled(const SourceRow& row) {
    return row.Text("_PCANN").compare(u"S", Qt::CaseInsensitive) == 0 ? QStringLiteral("controparte annullata (_PCANN)")
                                                                      : QString();
}

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiMEX"},
        .source = {.table = PiaCon,
                   .key = "[_PCCOD]",
                   .order = "[_PCCOD]",
                   .where = "TIPO IN ('C', 'F') AND ([_PCANN] = 'N' OR [_PCANN] = 'S')"},
        .roles = ByLetter("TIPO", {.customer = {"C"}, .supplier = {"F"}}),
        .name = {"_PCRAG, _PCDES", FirstNotBlank(Text())},
        .vatNumber = "_PCPIV",
        .taxCode = "_PCFIS",
        .lines =
            {
                {"CORAS", "_PCRAG, _PCDES", NamePart(1, 35)},
                {"CORA2", "_PCRAG, _PCDES", NamePart(36, 100)},
                DiscountsByRole("_PCSCO"),
                {"COIND", "_PCIND", Text()},
                {"COCAP", "_PCCAP", Text()},
                {"COCIT", "_PCLOC", Text()},
                {"COPRO", "_PCPRO", Text()},
                {"CONAZ", "_PCPAE", Country(PiaCon, "_PCPAE")},
                {"COZON", "_PCZON", Translated(PiaCon, "_PCZON")},
                {"COVAL", "_PCVAL", NumberedCurrency()},
                {"COFIS", "_PCFIS", NotBlank(Text())},
                {"COIVA", "_PCPIV", NotBlank(Text())},
                {"COESE", "_PCALI", ExemptVat(PiaCon, "_PCALI")},
                ByRole("COMOP", "COMOA", "_PCPAG", Translated(PiaCon, "_PCPAG")),
                {"COABI", "_PCABI", NotBlank(Digits(5))},
                {"COCAB", "_PCCAB", NotBlank(Digits(5))},
                {"COCOC", "_PCCON", NotBlank(Text())},
                {"COCIN", "_PCCIN", NotBlank(Text())},
                {"COIBA", "_PCIBA", NotBlank(WithoutBlanks())},
                {"COLSC", "_PCLIS", CustomerOnly(Translated(PiaCon, "_PCLIS"))},
                {"COAGE", "_PCAGE", Translated(PiaCon, "_PCAGE")},
                {"CONOT", "_PCNOT", Text()},
            },
        .numbers = {"_PCTEL", {}, "_PCFAX", "_PCCEL", "_PCEMA", "_PCWEB"},
        .cancelled = Cancelled,
        .before = TellUnmarked,
        .further = {{}, {{PiaCon, {"_PCANN"}}}, {}},
    };
}

// --- Chart of accounts --------------------------------------------------------------------------------------------

Accounts PianoConti() {
    return {
        .frame = {.module = Module, .procedure = "ImportPianoContiMEX"},
        .accounts =
            {
                .source = {.table = PiaCon,
                           .key = "[_PCCOD]",
                           .order = "[_PCCOD]",
                           .where = "(TIPO IS NULL OR TIPO NOT IN ('C', 'F'))"},
                .target = "PIA_CON",
                .code = "_PCCOD",
                .lines =
                    {
                        {"PCDES", "_PCDES", First(100)},
                        {"PCMAS", "_PCCOD", Ledger()},
                        {"PCTIP", "TIPO", Text()},
                        {"PCBIL", "TIPO", BalanceSection("E")},
                        {"PCLEV", "_PCCOD", Level()},
                        {"PCDET", "_PCCOD", IsAccount()},
                    },
            },
    };
}

// --- Source and entry ---------------------------------------------------------------------------------------------

bool PrepareSource(Session& session, ovConnection& source) {
    if (!QFileInfo(sourceSettings::DatabasePath(session)).isDir()) {
        return sourceSettings::DataSource("MEXAL")(session, source);
    }
    source.LookupColumns = QStringList{"PIA_CON._PCCOD", "ART_MAG._ARCOD", "DIS_MAT._DBPAD"};
    return sourceSettings::TextFolder(QString())(session, source);
}

} // namespace

const Origin& Entry() {
    static const Origin origin{
        "Mexal",
        Module,
        {"CSV", {PrepareSource, Place::Folder}},
        Buttons("YYYYYYYY", {{Button::Disegni, "Importa Costi/Prezzi"}}),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti()),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Dis, Distinte()),
            // The file holds sales and purchases alike: one procedure stands behind both buttons.
            ProcedureOf(Button::Doc, Documenti()),
            ProcedureOf(Button::Acq, Documenti()),
            {Button::Saldi, "ImportSaldiMEX", ImportSaldiMEX, SaldiNeeds(), StockEmptying()},
            ProcedureOf(Button::Piano, PianoConti()),
            {Button::Disegni, "ImportaCostiPrezziFromMEX", ImportaCostiPrezziFromMEX, CostiPrezziNeeds()},
            ProcedureOf(std::nullopt, Ubicazioni()),
        },
    };
    return origin;
}

} // namespace modImport_Mexal
