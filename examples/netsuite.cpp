// Kordel NetSuite: files of an AS/400 behind an ODBC data source, here a database. Texts are padded with blanks, days
// are numbers; customers and suppliers stand in files of their own, and name each other where they are the same.

#include "examples/describedRules.h"

namespace examples {

namespace netsuite {

namespace {

using namespace described;

constexpr qint64 Banks = 40;
constexpr qint64 BillRows = 4;
constexpr qint64 Phases = 2;
constexpr qint64 OrderRows = 3;
constexpr int TextWidth = 40;
const Count Articles = [](const Options& options) { return options.rows; };
const Count Heads = EachOf(5); ///< articles with a bill: the first
const Count CustomerOrders = EachOf(4);
const Count SupplierOrders = EachOf(8);

const BankAccount& PartyAccount() {
    static const BankAccount account("ANCL200F", 100, Banks);
    return account;
}

Rule No() { return Fixed(0); }
Rule NotCancelled() { return Fixed(" "); }
Rule PartyCode() { return Code("", 6); }
Rule ItemCode() { return Code("NS-", 5); }
Rule ItemCost() { return Named("netsuite.cost", Number(0.5, 90, 2)); }
Rule ItemWeight() { return Named("netsuite.weight", Number(0.1, 40, 3)); }
/// A day as a number, its year with four digits.
Rule DayNumber(int days) {
    return [days](const Place& place) { return QVariant(Day(days)(place).toDate().toString(u"yyyyMMdd").toInt()); };
}

/// The customer that the supplier of the row is as well.
Rule SameCustomer() {
    return [](const Place& place) {
        const qint64 number = Behind(Customers, IdentityNumber())(place).toLongLong();
        return number > Customers(place.options) ? QVariant("0") : PartyCode()(place.At(number - 1));
    };
}

QVector<Table> CounterpartyTables() {
    const Address customer("ANCL200F");
    const Address supplier("ANFO200F");
    const BankAccount& account = PartyAccount();
    return {
        {"ANCL200F",
         "controparti",
         Customers,
         QVector<Field>{{{"ATREC", 'C', 1}, NotCancelled()},
                        {{"CDCLI", 'C', 8}, PartyCode()},
                        {{"RASCL", 'C', TextWidth}, Padded(TextWidth, CompanyName(TextWidth))},
                        {{"NTECL", 'C', 20}, customer.Telephone()},
                        {{"FAXCL", 'C', 20}, Chance(30, customer.Telephone())},
                        {{"CDFIS", 'C', 16}, Padded(16, TaxCode())},
                        {{"PARIV", 'C', 16}, Padded(16, VatNumber())},
                        {{"CDVAL", 'C', 4}, Fixed("EURO")},
                        {{"CDPAG", 'C', 4}, OneOf({"RB30", "RB36", "BO60"})},
                        {{"CDABI", 'C', 5}, account.Abi()},
                        {{"CDCAB", 'C', 5}, account.Cab()},
                        {{"NRCCR", 'C', 14}, account.Number()},
                        {{"FLIVA", 'C', 1}, Chance(5, Fixed("S"), Fixed("N"))},
                        {{"CDASS", 'C', 4}, Fixed("N8")},
                        {{"CATEG", 'C', 4}, OneOf({"IND", "RIV"})},
                        {{"CDCNT", 'C', 10}, Fixed("1501")},
                        {{"CDFCL", 'C', 8}, Fixed("0")},
                        {{"FLPFI", 'C', 1}, Fixed("G")},
                        {{"CDAGE", 'C', 4}, Chance(50, OneOf({"A1", "A2"}))},
                        {{"CDLIS", 'C', 4}, OneOf({"L1", "L2"})},
                        {{"CDZON", 'C', 4}, OneOf({"NE", "NO"})},
                        {{"SCON1", 'N', 8, 2}, OneOf({0, 0, 5, 10})},
                        {{"EMAIL", 'C', 60}, Chance(60, OnInternet("info@"))},
                        {{"CDNAZ", 'C', 4}, Fixed("I")},
                        {{"CNOTE", 'C', 100}, Chance(10, Fixed("Chiude il lunedì"))},
                        {{"FLSPL", 'C', 1}, Chance(2, Fixed("S"), Fixed("N"))}} +
             customer.Columns("INDCL", "CAPCL", "LOCCL", "PROCL") + Unused({"RASC2", "CLPAR"}),
         {{{"ATREC", "A"}, {"CDCLI", "900001"}},
          {{"CDCLI", "900002"}, {"SCON1", "dieci"}, {"PARIV", {}}, {"CDFIS", {}}}},
         {{"CDCLI"}, {"CDFCL"}}},
        {"ANFC200F", "controparti", Exactly(0), Unused({"CDCLI", "COGNO", "NOMEP"})},
        {"ACGSEP00F",
         "controparti",
         EachOf(4),
         {{{"CDCLI", 'C', 8}, PartyCode()}, {{"CDMAN", 'C', 20}, Code("M-", 1)}, {{"CDIBA", 'C', 40}, account.Iban()}},
         {},
         {{"CDCLI"}}},
        {"ANFO200F",
         "controparti",
         Suppliers,
         QVector<Field>{{{"ATREC", 'C', 1}, NotCancelled()},
                        {{"CDFOR", 'C', 8}, PartyCode()},
                        {{"CDCLF", 'C', 8}, SameCustomer()},
                        {{"RASFO", 'C', TextWidth}, Padded(TextWidth, Behind(Customers, CompanyName(TextWidth)))},
                        {{"NTEFO", 'C', 20}, supplier.Telephone()},
                        {{"EMAIL", 'C', 60}, Chance(60, Behind(Customers, OnInternet("vendite@")))},
                        {{"CDFIS", 'C', 16}, Padded(16, Behind(Customers, TaxCode()))},
                        {{"PARIV", 'C', 16}, Padded(16, Behind(Customers, VatNumber()))},
                        {{"CDVAL", 'C', 4}, Fixed("EURO")},
                        {{"CDABI", 'C', 5}, Behind(Customers, account.Abi())},
                        {{"CDCAB", 'C', 5}, Behind(Customers, account.Cab())},
                        {{"NRCCR", 'C', 14}, Behind(Customers, account.Number())},
                        {{"CDPAG", 'C', 4}, OneOf({"RB36", "BO60"})},
                        {{"CATEG", 'C', 4}, OneOf({"MAT", "LAV"})},
                        {{"CDCNT", 'C', 10}, Fixed("3301")},
                        {{"FLBLO", 'C', 1}, Chance(2, Fixed("S"), Fixed("N"))},
                        {{"FLPFI", 'C', 1}, Fixed("G")}} +
             supplier.Columns("INDFO", "CAPFO", "LOCFO", "PROFO") + Unused({"RASF2", "FAXFO", "FOPAR"}),
         {{{"CDFOR", "900001"}, {"CDCLF", "0"}, {"PROFO", "TORINO"}, {"PARIV", {}}, {"CDFIS", {}}}},
         {{"CDFOR"}, {"CDCLF"}}},
    };
}

QVector<Table> ArticleTables() {
    return {
        {"ANPA200F",
         "articoli",
         Articles,
         {{{"ATREC", 'C', 1}, NotCancelled()},
          {{"CDPAR", 'C', 20}, ItemCode()},
          {{"DSPAR", 'C', TextWidth}, Padded(TextWidth, ArticleText())},
          {{"DSPA2", 'C', 40}, Chance(20, Fixed("zincato"))},
          {{"UMMAG", 'C', 3}, Fixed("PZ")},
          {{"UMACQ", 'C', 3}, Chance(20, Fixed("KG"))},
          {{"CFCON", 'N', 10, 4}, Number(0.1, 40, 3)},
          {{"CDIVA", 'C', 4}, Chance(90, Fixed("22"), Fixed("10"))},
          {{"TPPAR", 'C', 1}, Kinds({{Heads, Fixed("P")}, {Articles, OneOf({"S", "M"})}})},
          {{"CDGRU", 'C', 4}, OneOf({"MEC", "IDR"})},
          {{"CSSTD", 'N', 12, 4}, Chance(60, ItemCost(), No())},
          {{"CSULT", 'N', 12, 4}, ItemCost()},
          {{"PRVEN", 'N', 12, 4}, Scaled(1.6, 2, ItemCost())},
          {{"PSNET", 'N', 12, 3}, ItemWeight()},
          {{"PSLOR", 'N', 12, 3}, Scaled(1.05, 3, ItemWeight())},
          {{"SCMIN", 'N', 12, 3}, Whole(0, 20)},
          {{"SCMAX", 'N', 12, 3}, Whole(20, 200)},
          {{"LTRIO", 'N', 12, 3}, Whole(1, 50)},
          {{"GGAPP", 'I'}, Whole(1, 30)},
          {{"CDFOR", 'C', 8}, Chance(50, AnyOf(Suppliers, PartyCode()))},
          {{"NRDIS", 'C', 20}, Chance(30, Code("D-", 5))},
          {{"ATPAR", 'C', 1}, Chance(3, Fixed("S"), Fixed(" "))}},
         {{{"ATREC", "A"}, {"CDPAR", "ANNULLATO"}}, {{"CDPAR", "PESO-MANCA"}, {"PSNET", "due"}}},
         {{"CDPAR"}}},
        {"DIBA200F",
         "distinte",
         Times(BillRows, Heads),
         {{{"CDPAD", 'C', 20}, OfParent(BillRows, ItemCode())},
          {{"CDFIG", 'C', 20}, AnyBehind(Heads, Articles, ItemCode())},
          {{"NRSEQ", 'I'}, Each({10, 20, 30, 40})},
          {{"QTIMP", 'N', 12, 3}, Number(0.5, 9, 1)},
          {{"PCSCA", 'N', 6, 2}, OneOf({0, 0, 5})},
          {{"DTINV", 'N', 8}, Fixed(20200101)},
          {{"DTFIV", 'N', 8}, OneOf({0, 0, 20991231})},
          {{"DSNOT", 'C', 60}, Chance(10, Fixed("tagliare a 45°"))}},
         {{{"CDPAD", "NON-CE"}}, {{"CDPAD", "NS-00001"}, {"NRSEQ", 50}, {"CDFIG", "NON-CE"}}},
         {{"CDPAD"}}},
        {"CICL200F",
         "distinte",
         Times(Phases, Heads),
         {{{"CDPAR", 'C', 20}, OfParent(Phases, ItemCode())},
          {{"NRFAS", 'I'}, Each({10, 20})},
          {{"CDCDL", 'C', 6}, Each({"TAGL", "SALD"})},
          {{"TMATT", 'N', 8, 2}, Number(5, 30, 0)},
          {{"TMUNI", 'N', 8, 2}, Number(0.5, 15, 1)},
          {{"CDFOR", 'C', 8}, Fixed("0")}},
         {},
         {{"CDPAR"}}},
    };
}

/// Heads and rows of orders. @param party column of their counterparty
QVector<Table> Orders(const char* heads, const char* rows, const char* party, const Count& count, const Rule& parties,
                      const Rule& terms) {
    const Amounts amounts(rows, OrderRows);
    const Rule year = Fixed(2024);
    return {
        {QLatin1String(heads),
         "documenti",
         count,
         {{{"ATREC", 'C', 1}, NotCancelled()},
          {{"AAORD", 'I'}, year},
          {{"NRORD", 'I'}, RowNumber()},
          {{"DTORD", 'N', 8}, DayNumber(300)},
          {{party, 'C', 8}, parties},
          {{"RFORD", 'C', 20}, Chance(50, Code("Vs. ", 1))},
          {{"DTRIF", 'N', 8}, Chance(50, DayNumber(300), No())},
          {{"CDPAG", 'C', 4}, terms},
          {{"CDVAL", 'C', 4}, Fixed("EURO")}},
         {{{"NRORD", 900001}, {party, "999999"}}, {{"NRORD", 900002}, {"ATREC", "A"}}, {{"NRORD", 900003}}},
         {{"AAORD", "NRORD"}}},
        {QLatin1String(rows),
         "documenti",
         Times(OrderRows, count),
         {{{"AAORD", 'I'}, year},
          {{"NRORD", 'I'}, OfParent(OrderRows, RowNumber())},
          {{"NRRIG", 'I'}, Each({10, 20, 30})},
          {{"CDPAR", 'C', 20}, AnyOf(Articles, ItemCode())},
          {{"DSRIG", 'C', 60}, ArticleText()},
          {{"UMORD", 'C', 3}, Fixed("PZ")},
          {{"QTORD", 'N', 12, 3}, amounts.Quantity()},
          {{"QTEVA", 'N', 12, 3}, No()},
          {{"PRUNI", 'N', 12, 4}, amounts.Price()},
          {{"SCON1", 'N', 6, 2}, No()},
          {{"SCON2", 'N', 6, 2}, No()},
          {{"CDIVA", 'C', 4}, Fixed("22")},
          {{"DTCNS", 'N', 8}, DayNumber(360)},
          {{"FLSAL", 'C', 1}, Fixed(" ")}},
         {{{"NRORD", 900001}, {"NRRIG", 10}},
          {{"NRORD", 900002}, {"NRRIG", 10}},
          {{"NRORD", 900003}, {"NRRIG", 10}, {"QTORD", "cento"}}},
         {{"AAORD", "NRORD"}}},
    };
}

QVector<Table> BaseTables() {
    const BankAccount& account = PartyAccount();
    return {
        {"TBPA200F",
         "tabelle",
         Exactly(3),
         {{{"CDPAG", 'C', 4}, Each({"RB30", "RB36", "BO60"})},
          {{"DSPAG", 'C', 40}, Each({"Ri.Ba. 30 giorni", "Ri.Ba. 30/60 giorni", "Bonifico 60 giorni"})},
          {{"NRRAT", 'C', 4}, Each({"1", "2", "1"})},
          {{"GGPRI", 'I'}, Each({30, 30, 60})},
          {{"GGRAT", 'I'}, Fixed(30)}},
         {{{"CDPAG", "XX"}, {"NRRAT", "due"}}}},
        {"TBIV200F",
         "tabelle",
         Exactly(3),
         {{{"CDIVA", 'C', 4}, Each({"22", "10", "N8"})},
          {{"DSIVA", 'C', 40}, Each({"IVA 22%", "IVA 10%", "Non imponibile art. 8"})},
          {{"PCIVA", 'N', 8, 2}, Each({22, 10, 0})}}},
        {"TBUM200F",
         "tabelle",
         Exactly(2),
         {{{"CDUMI", 'C', 3}, Each({"KG", "FUS"})}, {{"DSUMI", 'C', 40}, Each({"Chilogrammi", "Fusti"})}}},
        {"TBBA200F",
         "tabelle",
         Exactly(Banks),
         {{{"CDABI", 'C', 5}, account.Abi()},
          {{"CDCAB", 'C', 5}, account.Cab()},
          {{"DSBAN", 'C', 60}, Code("Banca, agenzia ", 1)}}},
    };
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    script.UsualVatCodes();
    const QString customers = QStringLiteral("ANCL200F");
    const QString suppliers = QStringLiteral("ANFO200F");
    script.Translate(customers, "CDNAZ", "I", "ITA");
    script.Keep(customers, "CDPAG", {"RB30", "RB36", "BO60"});
    script.Keep(customers, "CATEG", {"IND", "RIV"});
    script.Keep(customers, "CDCNT", {"1501"});
    script.Translate(customers, "CDAGE", "A1", "AG1");
    script.Translate(customers, "CDAGE", "A2", "AG2");
    script.Keep(customers, "CDLIS", {"L1", "L2"});
    script.Keep(customers, "CDZON", {"NE", "NO"});
    script.Keep(suppliers, "CDPAG", {"RB36", "BO60"});
    script.Keep(suppliers, "CATEG", {"MAT", "LAV"});
    script.Keep(suppliers, "CDCNT", {"3301"});
    script.Translate("ANPA200F", "UMMAG", "PZ", "NR");
    script.Translate("ANPA200F", "CDGRU", "MEC", "MECCANICA");
    script.Translate("ANPA200F", "CDGRU", "IDR", "IDRAULICA");
    script.Translate("CICL200F", "CDCDL", "TAGL", "TAGLIO");
    script.Translate("CICL200F", "CDCDL", "SALD", "SALDATURA");
    script.WorkCentre("TAGLIO", "Taglio laser");
    script.WorkCentre("SALDATURA", "Saldatura");
    script.DocumentReason("ORD", "ORDCK", "ORD");
    script.DocumentReason("ORD", "ORDFK", "ORD");
    return script;
}

} // namespace

} // namespace netsuite

Totals MakeNetSuite(const Options& options) {
    using namespace netsuite;
    const QVector<Table> orders =
        Orders("ORCT200F", "ORCR200F", "CDCLI", CustomerOrders, AnyOf(Customers, PartyCode()),
               OneOf({"RB30", "RB36", "BO60"})) +
        Orders("ORFT200F", "ORFR200F", "CDFOR", SupplierOrders, AnyOf(Suppliers, PartyCode()), OneOf({"RB36", "BO60"}));
    return Write("netsuite.db", CounterpartyTables() + ArticleTables() + orders + BaseTables(), options,
                 PreparedFor(options));
}

} // namespace examples
