// SIGIP: an ODBC data source, SIGIP unless the setting DSN names another: customers (CLIENTI) and suppliers (FORNIT) in
// tables alike, articles, bills with their cycles, open orders, and the repair of the delivery dates of orders that are
// in Quadrix. All tables and columns are this system's own reading; an installation that calls them otherwise is fitted
// by its layout file (Tracciati). Destinations are those of customers. A bill has the highest revision among its rows;
// rows of other revisions come in too, and are logged. Not read: the first day of a component (DATINI). Known gaps:
// contacts, stock, price lists.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TriggersOff.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_SIGIP {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_SIGIP");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Artico = QStringLiteral("ARTICO");
const QString Disbas = QStringLiteral("DISBAS");
const QString Ciclav = QStringLiteral("CICLAV");

/// What customers and suppliers have each in tables of their own.
struct Side {
    QString parties;
    QString heads;
    QString rows;
    Roles roles;
    QString step;
    DocumentKind kind;
};
Side Customers() {
    return {"CLIENTI",          "ORDCLT",  "ORDCLR",
            {.customer = true}, "Clienti", {.cause = "ORDCL", .type = "ORD", .family = Sales}};
}
Side Suppliers() {
    return {"FORNIT",           "ORDFOT",    "ORDFOR",
            {.supplier = true}, "Fornitori", {.cause = "ORDFO", .type = "ORD", .family = Purchases}};
}

/// Rows of an order.
const std::vector<Tie> OfOrder{{"ANNO"}, {"NUMORD"}};

Rule Article() { return ArticleCode(Artico, "CODART"); }

// --- Counterparties -----------------------------------------------------------------------------------------------

Branches Destinazioni() {
    return {.rows = {.table = "DESTIN", .on = {{"CODCLI", "CODICE"}}, .order = "NUMDES", .naming = "CODCLI, NUMDES"},
            .lines = BranchLines("DESTIN", {.number = "NUMDES",
                                            .name = "RAGSOC",
                                            .street = "INDIRI",
                                            .postCode = "CAP",
                                            .town = "LOCALI",
                                            .province = "PROVIN"})};
}

Counterparties PartiesOf(const Side& side) {
    const QString& table = side.parties;
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiSIGIP", .step = side.step},
        .source = {.table = table, .key = "CODICE", .order = "CODICE"},
        .roles = Always(side.roles),
        .name = "RAGSOC, RAGSO2",
        .vatNumber = "PARIVA",
        .taxCode = "CODFIS",
        .lines =
            {
                {"CORAS", "RAGSOC", First(35)},
                {"CORA2", "RAGSOC, RAGSO2", SecondName(35)},
                {"COIND", "INDIRI", Text()},
                {"COCAP", "CAP", Text()},
                {"COCIT", "LOCALI", Text()},
                {"COPRO", "PROVIN", Text()},
                {"CONAZ", "NAZION", Country(table, "NAZION")},
                {"COIVA", "PARIVA", NotBlank(Text())},
                {"COFIS", "CODFIS", NotBlank(Text())},
                ByRole("COMOP", "COMOA", "CODPAG", Translated(table, "CODPAG")),
                {"COBAN", "CODBAN", OwnBank(table, "CODBAN")},
                {"COABI", "CODABI", NotBlank(Digits(5))},
                {"COCAB", "CODCAB", NotBlank(Digits(5))},
                {"COCOC", "CONCOR", NotBlank(Text())},
                {"COIBA", "CODIBA", NotBlank(WithoutBlanks())},
                ByRole("COSC1", "COSF1", "SCONT1", NotBlank(RoundedTo(2))),
                ByRole("COSC2", "COSF2", "SCONT2", NotBlank(RoundedTo(2))),
                {"COAGE", "CODAGE", TranslatedOrKnown(table, "CODAGE", "AGE_NTI")},
                ByRole("COLSC", "COLSF", "CODLIS", Translated(table, "CODLIS")),
                {"COVAL", "CODVAL", Currency(table, "CODVAL")},
                {"COZON", "CODZON", Translated(table, "CODZON")},
                {"COESE", "CODESE", ExemptVat(table, "CODESE")},
                {"CONOT", "ANNOTA", Text()},
            },
        .numbers = {.office = "TELEF1",
                    .office2 = "TELEF2",
                    .fax = "TELFAX",
                    .mobile = "TELCEL",
                    .mail = "EMAIL",
                    .web = "SITWEB"},
        .branches = side.roles.customer ? std::vector<Branches>{Destinazioni()} : std::vector<Branches>(),
        .empties = side.roles.customer,
    };
}

Procedure Controparti() {
    const Counterparties customers = PartiesOf(Customers());
    return ProcedureOf(Button::Cli, FrameOf(customers), {PartOf(customers), PartOf(PartiesOf(Suppliers()))});
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliSIGIP"},
        .source = {.table = Artico, .key = "CODART", .order = "CODART"},
        .code = {"CODART", Article()},
        .description = "DESCR1",
        .lines =
            {
                {"CDEXT", "CODART", Text()},
                {"ARDE2", "DESCR2", First(100)},
                {"ARUMS", "UNIMIS", Unit(Artico, "UNIMIS", schema::defaults::Unit)},
                {"ARUM2", "UNIMI2", Unit(Artico, "UNIMIS", "")},
                {"ARCOE", "FATCON", NotZero()},
                {"ARIVA", "CODIVA", VatCode(Artico, "CODIVA")},
                {"ARCLA", "TIPART", Choice({{"PF", "PF"}, {"SL", "SL"}}, "CM")},
                {"ARFAM", "GRUPPO", TranslatedOrKnown(Artico, "GRUPPO", "FAM_PRO")},
                {"ARCOS", "COSULT, COSSTA", FirstNotZero()},
                {"ARPRZ", "PREVEN", RoundedTo(6)},
                {"ARPSN", "PESNET", RoundedTo(3)},
                {"ARPSL", "PESLOR", RoundedTo(3)},
                {"ARSMN", "SCOMIN", RoundedTo(6)},
                {"ARSMX", "SCOMAX", RoundedTo(6)},
                {"ARPUR", "PUNRIO", RoundedTo(6)},
                {"ARLOR", "LOTRIO", RoundedTo(6)},
                {"ARGGA", "GGCONS", RoundedTo(0)},
                {"ARANN", "FLGANN", Is("S")},
            },
        .suppliers = {{.supplier = {"CODFOR", KnownSupplier()},
                       .ownCode = "ARTFOR",
                       .price = {"COSULT, COSSTA", FirstNotZero()},
                       .leadDays = "GGCONS",
                       .lot = "LOTRIO"}},
        .location = "CODUBI",
        .more = SetMarkUp,
        .further = {{}, {}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

// --- Bills --------------------------------------------------------------------------------------------------------

/// The revision of a bill, as its rows have it: the highest one among them, as number, then as text.
QString HighestRevision(Session& session, const SourceRow& row) {
    QString highest;
    ForEachChild(session,
                 "SELECT DISTINCT REVISI FROM DISBAS WHERE PADRE = " +
                     LiteralOf(session.SourceConnection(), row.Value("PADRE")),
                 Disbas, "REVISI", [&highest](const SourceRow& one) {
                     const QString text = one.Text("REVISI");
                     highest = PlaceOfRevision(text) > PlaceOfRevision(highest) ? text : highest;
                 });
    return highest;
}

Field Revision() {
    return {"PADRE",
            {"la più alta fra quelle delle righe, come numero e poi come testo; " + RevisionNumber().text,
             [](const RuleInput& input) {
                 return RuleValue(NumberOfRevision(input.session, HighestRevision(input.session, input.row)));
             },
             contract::Side::Both,
             {{Disbas, {"PADRE", "REVISI"}}}}};
}

/// Nobody knows whether a row of an older revision still counts.
void TellOtherRevision(ImportRun& run, const SourceRow& row, Component& /*component*/) {
    const QString revision = HighestRevision(run.GetSession(), row);
    if (PlaceOfRevision(row.Text("REVISI")) != PlaceOfRevision(revision)) {
        run.Log(QStringLiteral("COMPONENTE DI ALTRA REVISIONE: %1: è della revisione '%2', la distinta della '%3'")
                    .arg(NameOf(row, Disbas, "PADRE, NUMRIG"), row.Text("REVISI"), revision));
    }
}

Bills Distinte() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistinteSIGIP",
                  .announcement = "Inizio importazione Distinte Base da SIGIP",
                  .completion = "Distinte Base SIGIP importate correttamente: %1 (Fasi: %2, Comp.: %3)"},
        .source = {.table = Disbas, .key = "PADRE", .order = "PADRE", .distinct = true},
        .article = {"PADRE", Article()},
        .revision = Revision(),
        .active = {"", Constant(true)},
        .oneInForce = true,
        .components =
            {
                .rows = {.table = Disbas, .on = {{"PADRE"}}, .order = "NUMRIG", .naming = "PADRE, NUMRIG"},
                .article = {"FIGLIO", Article()},
                .quantity = "QUANTI",
                .note = "NOTRIG",
                .position = "NUMRIG",
                .until = "DATFIN",
            },
        .phases =
            BillPhases{
                .rows = {.table = Ciclav, .on = {{"CODART", "PADRE"}}, .order = "NUMFAS", .naming = "CODART, NUMFAS"},
                .key = "NUMFAS",
                .number = "NUMFAS",
                .work = {"CODLAV", Work(Ciclav, "CODLAV")},
                .setUpTime = "TEMATT",
                .unitTime = "TEMUNI",
                .supplier = {"CODTER", KnownSupplier()},
            },
        .component = TellOtherRevision,
        .further = {{}, {{Disbas, {"REVISI"}}}, {}},
    };
}

// --- Documents ----------------------------------------------------------------------------------------------------

Documents OrdersOf(const Side& side) {
    return {
        .source = {.table = side.heads,
                   .key = "NUMORD",
                   .order = "ANNO, NUMORD, NUMRIG",
                   .where = "(T.STAORD IS NULL OR T.STAORD <> 'E')",
                   .naming = "ANNO, NUMORD, NUMRIG",
                   .group = {"ANNO", "NUMORD"}},
        .rows = {.table = side.rows, .on = OfOrder, .order = "NUMRIG"},
        .kinds = {side.kind},
        .head =
            {
                .number = "NUMORD",
                .day = "DATORD",
                .year = "ANNO",
                .counterparty = {"CODICE", PartyOf()},
                .lines = {{"DTRIC", "RIFORD", Text()},
                          {"DTRID", "DATRIF", Day()},
                          {"DTMOP", "CODPAG", Translated(side.parties, "CODPAG")},
                          {"DTVAL", "CODVAL", Currency(side.parties, "CODVAL")},
                          {"DTCMB", "CAMBIO", NotZero()},
                          {"DTNOT", "NOTE", Text()}},
            },
        .row =
            {
                .number = "NUMRIG",
                .article = {"CODART", Article()},
                .description = "DESCR1",
                .unit = {"UNIMIS", Unit(Artico, "UNIMIS", "")},
                .quantity = "QTAORD",
                .delivered = "QTAEVA",
                .price = "PREZZO",
                .discounts = {"SCONT1", "SCONT2"},
                .vatCode = {"CODIVA", NotBlank(VatCode(Artico, "CODIVA"))},
                .lines = {{"DRCOR", "DATCON", Day()}, {"DRCOC", "DATCNF", Day()}},
            },
    };
}

Documents DocVen() {
    Documents orders = OrdersOf(Customers());
    orders.frame = {.module = Module,
                    .procedure = "ImportDocVenSIGIP",
                    .announcement = "Inizio importazione Documenti di Vendita da SIGIP",
                    .step = "Documenti di Vendita",
                    .completion = "Documenti di Vendita SIGIP importati correttamente: %1"};
    return orders;
}

Documents DocAcq() {
    Documents orders = OrdersOf(Suppliers());
    orders.frame = {.module = Module,
                    .procedure = "ImportDocAcqSIGIP",
                    .announcement = "Inizio importazione Documenti di Acquisto da SIGIP",
                    .step = "Documenti di Acquisto",
                    .completion = "Documenti di Acquisto SIGIP importati correttamente: %1"};
    return orders;
}

// --- Delivery dates -----------------------------------------------------------------------------------------------

/// The dates of a row; those that the source does not tell stay.
const Mapping& DatesOf(const Side& side) {
    const auto made = [](const Side& of) {
        return Mapping{of.kind.family.row,
                       of.rows,
                       {{"DRCOR", "DATCON", DayThere()},
                        {"DRCOC", "DATCNF", DayThere()},
                        {"DRCON", "DATCNF, DATCON", NotNull(FirstNotBlank(Day()))}},
                       true};
    };
    static const Mapping ofCustomers = made(Customers());
    static const Mapping ofSuppliers = made(Suppliers());
    return side.roles.customer ? ofCustomers : ofSuppliers;
}

SourceTable RowsOf(const Side& side) {
    return {.table = side.rows,
            .key = "NUMORD",
            .order = "ANNO, NUMORD, NUMRIG",
            .naming = "ANNO, NUMORD, NUMRIG",
            .group = {"ANNO", "NUMORD"}};
}

/// Puts the delivery dates of the orders of a side right, of rows that are in Quadrix.
class DateRepair {
public:
    DateRepair(ImportRun& run, const Side& side)
        : m_run(run),
          m_side(side),
          m_writer(run, side.kind.family) {}

    RowOutcome Row(const SourceRow& row) {
        if (row.IsBlank("DATCON") && row.IsBlank("DATCNF")) {
            return m_run.Skip(QStringLiteral("riga senza date di consegna"));
        }
        const int year = WholeNumberOf(row, "ANNO");
        const qint64 head = m_writer.Find(row.Text("NUMORD"), m_side.kind.cause, year);
        const qint64 id = head == 0 ? 0 : m_writer.FindRow(head, WholeNumberOf(row, "NUMRIG"));
        if (id == 0) {
            m_run.Log(QStringLiteral("RIGA NON TROVATA: %1").arg(m_run.RowKey()));
            return m_run.Skip(QStringLiteral("riga che non è in Quadrix"));
        }
        TargetRow target(m_run, m_side.kind.family.row);
        DatesOf(m_side).Apply(target, m_run.GetSession(), row, {});
        target.Update("WHERE " + Equals("RECORD_ID", id));
        m_run.Restores(m_head);
        m_head = head;
        return RowOutcome::Updated;
    }

    /// The head has the earliest day of its rows.
    void EndOrder() {
        const qint64 head = std::exchange(m_head, 0);
        if (head == 0) {
            return;
        }
        const Family& family = m_side.kind.family;
        const Recordset rows =
            m_run.GetSession().Quadrix.ExecuteWC("SELECT MIN(DRCOR) FROM " + m_run.FullName(family.row) + " WHERE " +
                                                 Equals("IDTES", head) + " AND DRCOR IS NOT NULL");
        if (const QVariant earliest = rows.Fields(0).Value(); !earliest.isNull()) {
            TargetRow target(m_run, family.head);
            target.Set("DTCOR", earliest);
            target.Update("WHERE " + Equals("RECORD_ID", head));
        }
    }

private:
    ImportRun& m_run;
    Side m_side;
    DocumentWriter m_writer;
    qint64 m_head = 0; ///< of the order under way; 0: none of its rows is in Quadrix
};

const Needs& RepairNeeds() {
    static const Needs needs = [] {
        Needs all;
        for (const Side& side : {Customers(), Suppliers()}) {
            const Family& family = side.kind.family;
            all = all + RowsOf(side).OwnNeeds() + NeedsOf(DatesOf(side));
            all.writes.push_back({family.head, {"DTNUM", "DTCAU", "DTANN", "DTCOR"}});
            all.writes.push_back({family.row, {"IDTES", "DRNUM"}});
        }
        return all;
    }();
    return needs;
}

void CorreggiDateConsegnaSIGIP(Session& session, const QString& singleCode, bool /*reset*/) {
    ImportRun run(session, Module, "CorreggiDateConsegnaSIGIP", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio correzione date di consegna SIGIP");
        run.Preflight(RepairNeeds());
        const TriggersOff triggers(run, DocumentRowTables());
        for (const Side& side : {Customers(), Suppliers()}) {
            DateRepair repair(run, side);
            if (!run.Rows(
                    RowsOf(side).Loop(run, side.step, {}, singleCode),
                    [&repair](const SourceRow& row) { return repair.Row(row); }, [&repair] { repair.EndOrder(); })) {
                return;
            }
        }
        run.Complete("Date di consegna corrette!");
    });
}

Procedure CorreggiDateConsegna() {
    Procedure procedure{Button::Saldi, "CorreggiDateConsegnaSIGIP", CorreggiDateConsegnaSIGIP, RepairNeeds()};
    procedure.confirmation = "Correggere le date di consegna?";
    procedure.asksReset = false;
    return procedure;
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "SIGIP",
        Module,
        {.kind = "ODBC", .prepare = sourceSettings::DataSource("SIGIP"), .names = Naming::OurReading},
        Buttons("YYYYYYN-", {{Button::Saldi, "Correggi Date Consegna"}}),
        Shown::Keep,
        {
            Controparti(),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Dis, Distinte()),
            ProcedureOf(Button::Doc, DocVen()),
            ProcedureOf(Button::Acq, DocAcq()),
            CorreggiDateConsegna(),
        },
    };
    return origin;
}

} // namespace modImport_SIGIP
