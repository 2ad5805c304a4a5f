// Albalog: a database over ODBC, data source ALBALOG unless the setting DSN names another. Customers, suppliers and
// carriers, articles, price lists. Of the layout the table of counterparties (anagraf) and the column of the carrier
// that each has (codvet) are known; every other name is this system's own in their style, all releases alike, and is
// fitted to an installation by the layout file "Tracciati/Albalog.ini". A carrier may stand behind those that it
// serves: SYS_IMP (anagraf, codvet) holds who has which until all are there. Quadrix numbers the price lists: SYS_IMP
// tells the number of each code (codicilistino, Albalog). A price holds up to qtalis, blank or 0 for any quantity.
// Known gaps: destinations, bills, stock, documents.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/kinds/PriceLists.h"
#include "adapters/contract/map/carrierCodes.h"
#include "adapters/contract/map/codeRules.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/numberedLists.h"
#include "adapters/contract/run/RowSelection.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/missingCodes.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Albalog {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Albalog");

/// How SYS_IMP calls the origin where it numbers price lists.
const QString Numbering = QStringLiteral("Albalog");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Anagraf = QStringLiteral("anagraf");
const QString Codana = QStringLiteral("codana");
const QString Codvet = QStringLiteral("codvet");
const QString Articol = QStringLiteral("articol");
const QString ListiniTable = QStringLiteral("listini");

Rule Article() { return ArticleCode(Articol, "codart"); }

// --- Carriers of the counterparties -------------------------------------------------------------------------------

/// Who has which carrier is told anew by each import.
void ForgetCarriers(ImportRun& run, const QString& /*singleCode*/) {
    run.DeleteRows("SYS_IMP", "tbnam = 'anagraf' and tbfld = 'codvet'");
}

/// Keeps the carrier that a counterparty has, by its code in the source.
void NoteCarrier(ImportRun& run, CounterpartyWriter& /*writer*/, const SourceRow& row, const Owner& party) {
    if (const QString carrier = row.Text(Codvet); !carrier.isEmpty()) {
        StoreNewCode(run, Anagraf, Codvet, party.key, carrier);
    }
}

/// CDCON of a carrier: of whom the import has made from the carrier with that code, else of the customer or supplier
/// with it; empty when there is none.
QString CarrierOf(Session& session, const QString& code) {
    const QString carrier = CarrierCode(session, Anagraf, Codana, code);
    if (!carrier.isEmpty() && IsThere(session, "CON_TRO", "CDCON", carrier)) {
        return carrier;
    }
    for (const char* column : {"COCGE", "COFGE"}) {
        if (const QString party = LookUp(session, "CON_TRO", column, code, "CDCON"); !party.isEmpty()) {
            return party;
        }
    }
    return {};
}

/// Gives a counterparty the carrier that SYS_IMP tells.
void GiveCarrier(ImportRun& run, const QString& party, const QString& code) {
    Session& session = run.GetSession();
    const QString carrier = CarrierOf(session, code);
    if (carrier.isEmpty()) {
        run.Log(QStringLiteral("VETTORE NON TROVATO: controparte %1, codvet '%2'").arg(party, code));
        return;
    }
    const auto set = [&](const QString& who, const QString& column, const QVariant& value) {
        TargetRow target(run, "CON_TRO");
        target.Set(column, value);
        target.Update("WHERE CDCON = " + run.Quoted(who));
    };
    if (LookUp(session, "CON_TRO", "CDCON", party, "COVEP") != carrier) {
        set(party, "COVEP", carrier);
    }
    if (!mod_ovTools::ToBoolean(session.Quadrix.GetDbValue("CON_TRO", "CDCON", carrier, "COVET"))) {
        set(carrier, "COVET", true);
    }
}

/// CDCON and carrier of counterparties.
using TheirCarriers = std::vector<std::pair<QString, QString>>;

/// A run of some rows does not come to everybody whose carrier it may bring: the source tells the others. One that goes
/// on behind another gives each of them his carrier, any other one those who have none.
void AddOthers(ImportRun& run, TheirCarriers& told) {
    Session& session = run.GetSession();
    const bool goesOn = session.Selection->ReachedBefore().has_value();
    QMap<QString, QString> others;
    Recordset rows =
        session.SourceConnection().ExecuteWC("SELECT tipana, codana, codvet FROM anagraf\rORDER BY tipana, codana");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const QString kind = row.Text("tipana").toUpper();
        if (!row.IsBlank(Codvet) && kind != u"V") {
            others.insert(LookUp(session, "CON_TRO", kind == u"F" ? "COFGE" : "COCGE", row.Text(Codana), "CDCON"),
                          row.Text(Codvet));
        }
    }
    others.remove(QString()); // those that are not imported
    for (const auto& one : told) {
        others.remove(one.first);
    }
    for (const auto& [party, carrier] : others.asKeyValueRange()) {
        if (goesOn || LookUp(session, "CON_TRO", "CDCON", party, "COVEP").isEmpty()) {
            told.emplace_back(party, carrier);
        }
    }
}

void GiveCarriers(ImportRun& run) {
    TheirCarriers told;
    Recordset rows = run.GetSession().Quadrix.ExecuteWC(
        "SELECT C.CDCON, I.TBNEW FROM " + run.FullName("CON_TRO") +
        " C\rINNER JOIN SYS_IMP I ON tbnam = 'anagraf' and tbfld = 'codvet' and tbold = C.CDCON\rORDER BY C.CDCON");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        told.emplace_back(row.Text("CDCON"), row.Text("TBNEW"));
    }
    if (run.IsPart() && !run.IsSingle() && !FillsCodes(run)) {
        AddOthers(run, told);
    }
    for (const auto& [party, carrier] : told) {
        GiveCarrier(run, party, carrier);
    }
}

/// Counterparties, who get their carriers when all of them are there.
class WithCarriers final : public Importer {
public:
    WithCarriers(ImportRun& run, std::unique_ptr<Importer> parties)
        : Importer(run),
          m_parties(std::move(parties)) {}

    void Begin() override { m_parties->Begin(); }
    RowOutcome Row(const SourceRow& row) override { return m_parties->Row(row); }
    bool End() override {
        GiveCarriers(Run());
        return m_parties->End();
    }

private:
    std::unique_ptr<Importer> m_parties;
};

// --- Counterparties -----------------------------------------------------------------------------------------------

const PartyColumns Columns{
    .name = "ragsoc",
    .name2 = "ragso2",
    .street = "indiri",
    .postCode = "codcap",
    .town = "locali",
    .province = "provin",
    .country = "codnaz",
    .vatNumber = "pariva",
    .taxCode = "codfis",
    .payment = "codpag",
    .ownBank = "codban",
    .abi = "codabi",
    .cab = "codcab",
    .cin = "codcin",
    .account = "concor",
    .iban = "codiba",
    .bic = "codbic",
    .discount1 = "scont1",
    .discount2 = "scont2",
    .agent = "codage",
    .currency = "codval",
    .language = "codlin",
    .zone = "codzon",
    .category = "codcat",
    .exemption = "codiva",
    .port = "codpor",
    .credit = "impfid",
    .ledger = "codcon",
    .isBlocked = "flgblo",
    .isCancelled = "flgann",
    .note = "notana",
    .created = "datins",
};

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportClientiFornitoriAlbalog"},
        .source = {.table = Anagraf, .key = Codana, .order = "tipana, codana", .naming = "tipana, codana"},
        .roles = ByLetter("tipana", {.customer = {"C"}, .supplier = {"F"}, .both = {"E"}, .carrier = {"V"}}),
        .name = "ragsoc, ragso2",
        .vatNumber = "pariva",
        .taxCode = "codfis",
        .lines = {LineGroup(PartyLines(Anagraf, Columns).Over({})),
                  ByRole("COLSC", "COLSF", "codlis", ListOfParty(Numbering, Anagraf, "codlis"))},
        .numbers = {.office = "telef1",
                    .office2 = "telef2",
                    .fax = "numfax",
                    .mobile = "numcel",
                    .mail = "email",
                    .web = "sitint"},
        .created = "datins",
        .contacts = {{.lines = {{"RFNOM", "rifana", Text()}}}},
        .more = SetIban,
        .after = NoteCarrier,
        .before = ForgetCarriers,
        .further = {{},
                    {{Anagraf, {}, {Codvet}}},
                    {{"CON_TRO", {"CDCON", "COCGE", "COFGE", "COVEP", "COVET"}},
                     {"SYS_IMP", {"TBNAM", "TBFLD", "TBOLD", "TBNEW"}}},
                    {{.list = Anagraf, .field = Codvet}}},
    };
}

Procedure ContropartiConVettori() {
    const Counterparties parties = Controparti();
    ImportPart part = PartOf(parties);
    part.make = [make = part.make](ImportRun& run, const QString& singleCode) {
        return std::make_unique<WithCarriers>(run, make(run, singleCode));
    };
    return ProcedureOf(Button::Cli, FrameOf(parties), {part});
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliAlbalog"},
        .source = {.table = Articol, .key = "codart", .order = "codart"},
        .code = {"codart", Article()},
        .description = "desart",
        .lines =
            {
                {"CDEXT", "codart", Text()},
                {"ARDE2", "desar2", First(100)},
                {"ARDEC", "desest", First(255)},
                {"ARUMS", "unimis", Unit(Articol, "unimis", schema::defaults::Unit)},
                {"ARUM2", "unimi2", Unit(Articol, "unimi2", "")},
                {"ARCOE", "coeffi", NotZero()},
                {"ARIVA", "codiva", VatCode(Articol, "codiva")},
                {"ARCLA", "tipart", Choice({{"P", "PF"}}, "CM")},
                {"ARFAM", "codfam", Translated(Articol, "codfam")},
                {"ARCOS", "cosult, cossta", FirstNotZero()},
                {"ARPRZ", "preven", RoundedTo(6)},
                {"ARSCO", "scont1", RoundedTo(2)},
                {"ARPSN", "pesnet", RoundedTo(3)},
                {"ARPSL", "peslor", RoundedTo(3)},
                {"ARSMN", "scomin", RoundedTo(6)},
                {"ARSMX", "scomax", RoundedTo(6)},
                {"ARPUR", "punrio", RoundedTo(6)},
                {"ARQMR", "qtamin", RoundedTo(6)},
                {"ARLOR", "lotrio", RoundedTo(6)},
                {"ARGGA", "ggappr", RoundedTo(0)},
                {"ARDMX", "lunghe", RoundedTo(6)},
                {"ARDMY", "larghe", RoundedTo(6)},
                {"ARDMZ", "spesso", RoundedTo(6)},
                {"ARANN", "flgann", Flag()},
                {"ARNOT", "notart", Text()},
                {"DTINS", "datins", NotBlank(MomentOrNow())},
            },
        .suppliers = {{.supplier = {"codfor", KnownSupplier()},
                       .ownCode = "artfor",
                       .price = {"cosult, cossta", FirstNotZero()},
                       .leadDays = "ggappr",
                       .lot = "lotrio",
                       .minimum = "qtamin"}},
        .aliases = {{.code = "codbar"}},
        .location = "ubicaz",
        .more = SetMarkUp,
        .further = {{}, {}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

// --- Price lists --------------------------------------------------------------------------------------------------

/// A row of a customer is a price of his own list, one of purchases that of a supplier.
PriceLists Listini() {
    return {
        .frame = {.module = Module, .procedure = "ImportListiniAlbalog"},
        .source = {.table = ListiniTable,
                   .key = "codlis",
                   .order = "codlis, codart, datini, qtalis",
                   .naming = "codlis, codart"},
        .article = {"codart", Article()},
        .prices = {{
            .list = {"codlis", NumberedList(Numbering)},
            .owner = {"codana, tiplis", PartyByMark(schema::defaults::PurchaseList)},
            .direction = "tiplis",
            .description = "deslis",
            .currency = {"codval", Currency(ListiniTable, "codval")},
            .from = "datini",
            .to = "datfin",
            .scales = {{.quantity = "qtalis", .price = "prezzo", .discounts = {"scont1", "scont2", "scont3"}}},
        }},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Albalog",
        Module,
        {.kind = "ODBC", .prepare = sourceSettings::DataSource("ALBALOG"), .names = Naming::OurReading},
        Buttons("YYYNNN--", {{Button::Dis, "Importa Listini"}}),
        Shown::Keep,
        {
            ContropartiConVettori(),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Dis, Listini()),
        },
    };
    return origin;
}

} // namespace modImport_Albalog
