// Access Velmoran: an Access file, VELMORAN unless the setting Databasename names another; where that is none, one that
// the operator chooses. Customers (Clienti) with their destinations and suppliers (Fornitori) in tables alike,
// articles, and price lists behind the button of the bills, which this source does not have. All tables and columns are
// this system's own reading, fitted to an installation by "Tracciati/Access Velmoran.ini". Prices hold from QtaDa on.
// Known gaps: stock, documents.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/kinds/PriceLists.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/noLongerThere.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_AccessVelmoran {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_AccessVelmoran");

// --- Source tables ------------------------------------------------------------------------------------------------

/// Customers; the codes of both are translated under this name.
const QString Clienti = QStringLiteral("Clienti");
const QString Fornitori = QStringLiteral("Fornitori");
const QString ArticoliTable = QStringLiteral("Articoli");
const QString ListHeads = QStringLiteral("Listini");
const QString ListRows = QStringLiteral("ListiniDettaglio");

Rule Article() { return ArticleCode(ArticoliTable, "Codice"); }

// --- Counterparties -----------------------------------------------------------------------------------------------

const PartyColumns Columns{
    .name = "RagioneSociale",
    .name2 = "Rag2",
    .street = "Via",
    .postCode = "CAP",
    .town = "Citta",
    .province = "Prov",
    .country = "Stato",
    .vatNumber = "PIva",
    .taxCode = "CFiscale",
    .payment = "Pagamento",
    .ownBank = "Banca",
    .abi = "ABI",
    .cab = "CAB",
    .account = "CC",
    .iban = "IBAN",
    .discount1 = "Sconto1",
    .discount2 = "Sconto2",
    .agent = "Agente",
    .list = "Listino",
    .note = "Note",
};

Branches Destinazioni() {
    return {
        .rows = {.table = "Destinazioni",
                 .on = {{"CodCliente", "Codice"}},
                 .order = "Numero",
                 .naming = "CodCliente, Numero"},
        .lines = BranchLines("Destinazioni", {.number = "Numero",
                                              .name = "Nome",
                                              .street = "Via",
                                              .postCode = "CAP",
                                              .town = "Citta",
                                              .province = "Prov"}),
    };
}

Counterparties PartiesOf(const QString& table, const Roles& roles) {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiAccessVelmoran", .step = table},
        .source = {.table = table, .key = "Codice", .order = "Codice"},
        .roles = Always(roles),
        .name = "RagioneSociale, Rag2",
        .vatNumber = "PIva",
        .taxCode = "CFiscale",
        .lines = {LineGroup(PartyLines(Clienti, Columns).Over({})), {"CONRC", "Civico", Text()}},
        .numbers = {.office = "Tel", .office2 = "Tel2", .fax = "Fax", .mobile = "Cell", .mail = "Mail", .web = "Web"},
        .branches = roles.customer ? std::vector<Branches>{Destinazioni()} : std::vector<Branches>(),
        .empties = roles.customer,
        .more = SetIban,
    };
}

Procedure Controparti() {
    const Counterparties customers = PartiesOf(Clienti, {.customer = true});
    return ProcedureOf(Button::Cli, FrameOf(customers),
                       {PartOf(customers), PartOf(PartiesOf(Fornitori, {.supplier = true}))});
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliAccessVelmoran"},
        .source = {.table = ArticoliTable, .key = "Codice", .order = "Codice"},
        .code = {"Codice", Article()},
        .description = "Descrizione",
        .lines =
            {
                {"CDEXT", "Codice", First(50)},
                {"ARDE2", "Descrizione2", First(100)},
                {"ARUMS", "UM", Unit(ArticoliTable, "UM", schema::defaults::Unit)},
                {"ARUM2", "UM2", Unit(ArticoliTable, "UM2", "")},
                {"ARCOE", "Conversione", NotZero()},
                {"ARIVA", "IVA", VatCode(ArticoliTable, "IVA")},
                {"ARCLA", "Tipo", Or(Translated(ArticoliTable, "Tipo"), "CM")},
                {"ARFAM", "Famiglia", TranslatedOrKnown(ArticoliTable, "Famiglia", "FAM_PRO")},
                {"ARCOS", "Costo", RoundedTo(6)},
                {"ARPRZ", "Prezzo", RoundedTo(6)},
                {"ARPSN", "Peso", RoundedTo(3)},
                {"ARSMN", "ScortaMin", RoundedTo(6)},
                {"ARLOR", "Lotto", RoundedTo(6)},
                {"ARGGA", "Consegna", RoundedTo(0)},
                {"ARDIS", "Disegno", Text()},
                {"ARANN", "Obsoleto", Flag()},
                {"ARNOT", "Note", Text()},
            },
        .suppliers = {{.supplier = {"CodFornitore", KnownSupplier()},
                       .ownCode = "CodArtFornitore",
                       .price = "Costo",
                       .leadDays = "Consegna",
                       .lot = "Lotto"}},
        .languages = {{.language = Fixed("EN"), .text = "DescrInglese"}},
        .more = SetMarkUp,
        .further = {{}, {}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

// --- Price lists --------------------------------------------------------------------------------------------------

/// CDLIS of a list: lists keep their codes.
Rule ListCode() {
    return {"tradotto con SYS_IMP (codicilistino, Codice), altrimenti il codice maiuscolo",
            [](const RuleInput& input) -> RuleValue {
                const QString code = input.Text();
                const QString told = modImport::GetNewCode(input.session, "codicilistino", "Codice", code, false);
                return told.isEmpty() ? code.toUpper() : told;
            }};
}

PriceLists Listini() {
    const std::vector<Tie> ofList{{"IdListino"}};
    return {
        .frame = {.module = Module, .procedure = "ImportListiniAccessVelmoran", .confirmation = "Importare i Listini?"},
        .source = {.table = ListRows,
                   .key = "Codice",
                   .order = "Codice, CodArticolo, DataInizio, QtaDa",
                   .naming = "IdListino, CodArticolo, QtaDa",
                   .joins = {{.table = ListHeads, .on = ofList, .columns = {"Codice", "Nome", "Tipo", "Valuta"}}}},
        .article = {"CodArticolo", Article()},
        .prices = {{
            .list = {"Codice", ListCode()},
            .direction = "Tipo",
            .description = "Nome",
            .currency = {"Valuta", Currency(ListHeads, "Valuta")},
            .since = {"IdListino", OfFirst(ListRows, {.table = ListHeads, .on = ofList}, "DataInizio", Day())},
            .from = "DataInizio",
            .to = "DataFine",
            .note = "Note",
            .scales = {{.quantityFrom = "QtaDa", .price = "Prezzo", .discounts = {"Sc1", "Sc2", "Sc3"}}},
        }},
    };
}

const Mapping& GivenListMapping() {
    static const Mapping mapping{"CON_TRO", ListHeads, {{"COLSC", "Codice", ListCode()}}};
    return mapping;
}

/// Gives each customer the list that is made for him. SYS_IMP remembers whom, so that a list that the source has taken
/// away again is told from one that the customer has from elsewhere.
class GivenLists final : public Importer {
public:
    using Importer::Importer;

    RowOutcome Row(const SourceRow& row) override;
    bool End() override {
        if (!Run().IsPart()) {
            TellTaken();
        }
        return true;
    }

private:
    void TellTaken();
    QString Memory() const { return Run().FullName("LIS_TES"); } ///< list of SYS_IMP

    QSet<QString> m_given; ///< lists and customers, as "H2 000102", in capitals
};

const QString GivenField = QStringLiteral("CLIENTE");

RowOutcome GivenLists::Row(const SourceRow& row) {
    Session& session = GetSession();
    const QString customer = Field("CodCliente", KnownCustomer()).Text(session, row);
    if (customer.isEmpty()) {
        return Run().Skip(CustomerMissing);
    }
    const QString list = Field("Codice", ListCode()).Text(session, row);
    const QString given = list + u' ' + customer;
    m_given.insert(given.toUpper());
    if (!IsThere(session, "LIS_TES", "CDLIS", list)) {
        return Run().Skip(QStringLiteral("listino senza prezzi"));
    }
    TargetRow target(Run(), "CON_TRO");
    GivenListMapping().Apply(target, session, row, {customer});
    target.Update("WHERE " + Equals(session, "CDCON", customer));
    if (!StoredNewCode(session, Memory(), GivenField, given)) {
        StoreNewCode(Run(), Memory(), GivenField, given, Run().Module());
    }
    return RowOutcome::Updated;
}

void GivenLists::TellTaken() {
    Session& session = GetSession();
    const QString ofMemory = Equals(session, "TBNAM", Memory()) + " AND " + Equals(session, "TBFLD", GivenField);
    QStringList before;
    Recordset rows = session.Quadrix.ExecuteWC("SELECT TBOLD FROM SYS_IMP WHERE " + ofMemory + " ORDER BY TBOLD");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        before.append(row.Text("TBOLD"));
    }
    for (const QString& given : before) {
        const QString list = given.section(u' ', 0, -2);
        const QString customer = given.section(u' ', -1);
        if (m_given.contains(given.toUpper())) {
            continue;
        }
        if (LookUp(session, "CON_TRO", "CDCON", customer, "COLSC").compare(list, Qt::CaseInsensitive) == 0) {
            TellNotMetAgain(Run(), "LISTINI DEI CLIENTI", QStringLiteral("'%1' di '%2'").arg(list, customer), 1);
        } else {
            Run().DeleteRows("SYS_IMP", ofMemory + " AND " + Equals(session, "TBOLD", given));
        }
    }
}

Procedure ImportListini() {
    const PriceLists lists = Listini();
    const ImportPart given{
        .step = "Listini dei clienti",
        .source = {.table = ListHeads, .key = "Codice", .order = "Codice", .where = "CodCliente IS NOT NULL"},
        .needs = NeedsOf(GivenListMapping()) + Needs{{}, {}, {{"SYS_IMP", {"TBNAM", "TBFLD", "TBOLD", "TBNEW"}}}},
        .make = [](ImportRun& run, const QString&) { return std::make_unique<GivenLists>(run); }};
    return ProcedureOf(Button::Dis, FrameOf(lists), {PartOf(lists), given});
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Access Velmoran",
        Module,
        {.kind = "Access", .prepare = sourceSettings::ChosenAccessFile("VELMORAN"), .names = Naming::OurReading},
        Buttons("YYYN----", {{Button::Dis, "Importa Listini"}}),
        Shown::Keep,
        {
            Controparti(),
            ProcedureOf(Button::Art, Articoli()),
            ImportListini(),
        },
    };
    return origin;
}

} // namespace modImport_AccessVelmoran
