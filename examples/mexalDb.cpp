// MexalDB: the archives of Mexal as a mirror program copies them into a database. The accounts of customers begin with
// 2, those of suppliers with 6; who is invoiced to another account is a destination of that one.

#include "examples/describedRules.h"

namespace examples {

namespace mexalDb {

namespace {

using namespace described;

constexpr qint64 BillRows = 4;
constexpr qint64 Lists = 2;
constexpr int TextWidth = 60;
const Count Articles = [](const Options& options) { return options.rows; };
const Count Heads = EachOf(5); ///< articles with a bill: the first
const Count Destinations = EachOf(8);
const Count Parties = Sum(Counterparties, Destinations);

Rule CustomerCode() { return Code("201.", 5); }
Rule SupplierCode() { return Code("601.", 5); }
Rule ItemCode() { return Code("MD-", 5); }
Rule ItemCost() { return Named("mexaldb.cost", Number(0.5, 90, 2)); }
Rule ByKind(const Rule& customer, const Rule& supplier, const Rule& destination) {
    return Kinds({{Customers, customer}, {Suppliers, supplier}, {Destinations, destination}});
}
Rule PartyCode() { return ByKind(CustomerCode(), SupplierCode(), Code("203.", 5)); }
/// Of counterparties, and nothing of their destinations.
Rule OfParty(const Rule& rule) { return Kinds({{Counterparties, rule}, {Destinations, {}}}); }
Rule Part(int from, int count, const Rule& text) {
    return [=](const Place& place) { return QVariant(text(place).toString().mid(from, count)); };
}
/// A day that may be none, which is 1 January 1900 here.
Rule Created() { return Chance(80, Day(300), Fixed(QDate(1900, 1, 1))); }

QVector<Table> CounterpartyTables() {
    const Address address("PA_RUBR_PDC_CLFR");
    const BankAccount account("PC_CONDIZIONI_COMM");
    const Rule place = Fixed(QString("Magazzino").leftJustified(TextWidth));
    // Half of the accounts have none.
    const auto ofAccount = [](const Rule& rule, const Rule& none = {}) {
        return OfParty(Named("mexaldb.account", Chance(50, rule, none)));
    };
    return {
        {"PA_RUBR_PDC_CLFR",
         "controparti",
         Parties,
         QVector<Field>{{{"CKY_CNT", 'C', 10}, PartyCode()},
                        {{"CDS_RAGSOC_COGN", 'C', TextWidth},
                         Kinds({{Counterparties, Padded(TextWidth, CompanyName(TextWidth))}, {Destinations, place}})},
                        {{"CDS_CNT", 'C', 40}, OfParty(CompanyName(40))},
                        {{"CKY_PAESE", 'C', 2}, Fixed("IT")},
                        {{"IST_NAZ", 'C', 1}, Fixed("I")},
                        {{"CSG_PIVA", 'C', 16}, OfParty(Padded(16, VatNumber()))},
                        {{"CSG_CFIS", 'C', 16}, OfParty(TaxCode())},
                        {{"CDS_TEL_TELEX", 'C', 30}, address.Telephone()},
                        {{"CDS_FAX", 'C', 30}, Chance(30, address.Telephone())},
                        {{"CDS_INET", 'C', 60}, Chance(60, OnInternet("info@"))},
                        {{"CDS_URL_INET", 'C', 60}, OfParty(Chance(30, OnInternet("www.")))},
                        {{"DTT_CRE", 'T'}, Created()}} +
             address.Columns("CDS_INDIR", "CDS_CAP", "CDS_LOC", "CDS_PROV"),
         {{{"CKY_CNT", "101.00001"}, {"CDS_RAGSOC_COGN", "Cassa contanti"}},
          {{"CKY_CNT", "202.00001"}, {"CDS_PROV", "TRENTO"}},
          {{"CKY_CNT", "202.00002"}},
          {{"CKY_CNT", "602.00001"}, {"CDS_RAGSOC_COGN", "Sconto da concordare"}}},
         {{"CKY_CNT"}}},
        {"PC_CONDIZIONI_COMM",
         "controparti",
         Parties,
         {{{"CKY_CNT", 'C', 10}, PartyCode()},
          {{"NKY_PAG", 'I'}, OneOf({30, 60, 90, 0})},
          {{"NGL_ABI", 'I'}, ofAccount(account.Abi(), Fixed(0))},
          {{"NGL_CAB", 'I'}, ofAccount(account.Cab(), Fixed(0))},
          {{"CSG_CC", 'C', 12}, ofAccount(account.Number())},
          {{"CSG_BBAN_CIN", 'C', 1}, ofAccount(account.Check())},
          {{"CSG_IBAN_BBAN", 'C', 30}, ofAccount(Part(4, 23, account.Iban()))},
          {{"CSG_IBAN_PAESE", 'C', 2}, ofAccount(Part(0, 2, account.Iban()))},
          {{"NGB_IBAN_CIN", 'C', 2}, ofAccount(Part(2, 2, account.Iban()))},
          {{"CSG_BIC", 'C', 11}, ofAccount(account.Bic())},
          {{"CKY_CNT_AGENTE", 'C', 10}, ByKind(Chance(50, Fixed("619.00001")), {}, {})},
          {{"NKY_VLT", 'I'}, OneOf({0, 1})},
          {{"CKY_CNT_CLI_FATT", 'C', 10}, ByKind(Fixed(""), Fixed(""), AnyOf(Customers, CustomerCode()))},
          {{"NGB_LIS", 'I'}, ByKind(Whole(0, 2), {}, {})},
          {{"CSG_SCONTO", 'C', 12}, OfParty(OneOf({"", "", "5", "10+5"}))},
          {{"CDS_NOTE", 'C', 200}, Chance(10, Fixed("Chiude il lunedì"))}},
         {{{"CKY_CNT", "202.00002"}, {"CKY_CNT_CLI_FATT", "202.99999"}},
          {{"CKY_CNT", "602.00001"}, {"CSG_SCONTO", "dieci"}}},
         {{"CKY_CNT"}}},
    };
}

QVector<Table> ArticleTables() {
    return {
        {"AR_ANAGRAFICHE",
         "articoli",
         Articles,
         {{{"CKY_ART", 'C', 60}, ItemCode()},
          {{"IST_ART", 'C', 1}, Fixed("A")},
          {{"CDS_ART", 'C', TextWidth}, Padded(TextWidth, ArticleText())},
          {{"CDS_AGGIUN_ART", 'C', 60}, Chance(20, Fixed("zincato"))},
          {{"CSG_ART_ALT", 'C', 30}, Chance(40, BarCode())},
          {{"CSG_UNIMIS_PRI", 'C', 3}, Fixed("PZ")},
          {{"CSG_UNIMIS_SEC", 'C', 3}, Chance(30, Fixed("KG"))},
          {{"NCF_CONV", 'N', 12, 3}, Number(0.1, 40, 3)},
          {{"CKY_CAT_STAT_ART", 'C', 4}, OneOf({"M", "I"})},
          {{"NKY_CAT_STAT_ART", 'C', 2}, OneOf({"1", "2"})},
          {{"NMP_UCA", 'N', 12, 4}, Chance(70, ItemCost(), Fixed(0))},
          {{"NMP_COSTD", 'N', 12, 4}, ItemCost()},
          {{"IFL_ART_DBP", 'C', 1}, Kinds({{Heads, Fixed("S")}, {Articles, Fixed("N")}})},
          {{"IFL_ART_ANN", 'C', 1}, Chance(3, Fixed("S"), Fixed("N"))},
          {{"IFL_ART_CANC", 'C', 1}, Fixed("N")},
          {{"DTT_CRE", 'T'}, Created()},
          {{"CKY_CNT_FOR_AB", 'C', 10}, Chance(50, AnyOf(Suppliers, SupplierCode()))}},
         {{{"CKY_ART", "COSTO-MANCA"}, {"NMP_UCA", "1.000.000"}},
          {{"CKY_ART", "ELIMINATO"}, {"IFL_ART_CANC", "S"}},
          {{"CKY_ART", "SPESE"}, {"IST_ART", "S"}}},
         {{"CKY_ART"}}},
        {"AR_PREZZI",
         "articoli",
         Times(Lists, Articles),
         {{{"CKY_ART", 'C', 60}, OfParent(Lists, ItemCode())},
          {{"ID_CR", 'I'}, Line(Lists)},
          {{"NPZ_LIS", 'N', 12, 4}, OfParent(Lists, Scaled(1.6, 2, ItemCost()))}},
         {},
         {{"CKY_ART"}}},
        {"AB_UBICAZIONI",
         "articoli",
         Articles,
         {{{"CKY_ART", 'C', 60}, ItemCode()},
          {{"NKY_DEP", 'I'}, Fixed(1)},
          {{"NQT_SCORTA_MIN", 'N', 12, 2}, Whole(0, 20)},
          {{"NQT_SCORTA_MAX", 'N', 12, 2}, Whole(20, 200)}},
         {},
         {{"CKY_ART"}}},
        {"AR_CONDIZIONI_COMM",
         "articoli",
         Articles,
         {{{"CKY_ART", 'C', 60}, ItemCode()}, {{"NKY_ALIQ", 'C', 4}, Chance(90, Fixed("22"), Fixed("10"))}},
         {},
         {{"CKY_ART"}}},
        {"AH_DES_ART_LINGUA",
         "articoli",
         EachOf(4),
         {{{"CKY_ART", 'C', 60}, ItemCode()},
          {{"NKY_LIN", 'I'}, Fixed(1)},
          {{"CDS_ART_LIN", 'C', 60}, Code("Item ", 1)}},
         {},
         {{"CKY_ART"}}},
        {"DB_RIGHE",
         "distinte",
         Times(BillRows, Heads),
         {{{"CKY_ART", 'C', 60}, OfParent(BillRows, ItemCode())},
          {{"NPR_FASE", 'I'}, Each({1, 1, 2, 2})},
          {{"NPR_RIGA", 'I'}, Each({1, 2, 1, 2})},
          {{"CKY_ART_COMP", 'C', 60}, AnyBehind(Heads, Articles, ItemCode())},
          {{"NQT_COMP", 'N', 12, 3}, Number(0.5, 9, 1)},
          {{"CDS_NOTE", 'C', 60}, Chance(10, Fixed("tagliare a 45°"))}},
         {{{"CKY_ART", "NON-CE"}}, {{"CKY_ART", "MD-00001"}, {"NPR_FASE", 2}, {"NPR_RIGA", 3}, {"CKY_ART_COMP", "NO"}}},
         {{"CKY_ART"}}},
    };
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    script.VatCode("22", "IVA 22%", 22);
    script.VatCode("10", "IVA 10%", 10);
    script.Translate("PA_RUBR_PDC_CLFR", "CKY_PAESE", "IT", "ITA");
    script.Translate("PA_RUBR_PDC_CLFR", "IST_NAZ", "I", "NAZ");
    for (const char* days : {"30", "60", "90"}) {
        script.Translate("CP_PAGAMENTI", "NKY_PAG", days, QString("RB") + days);
    }
    script.Translate("PC_CONDIZIONI_COMM", "CKY_CNT_AGENTE", "619.00001", "AG1");
    script.Translate("PC_CONDIZIONI_COMM", "NGB_LIS", "1", "L1");
    script.Translate("PC_CONDIZIONI_COMM", "NGB_LIS", "2", "L2");
    script.Translate("AR_ANAGRAFICHE", "CSG_UNIMIS_PRI", "PZ", "NR");
    for (const char* number : {"01", "02"}) {
        script.Translate("AR_ANAGRAFICHE", "CKY_CAT_STAT_ART", QString("M") + number, "MECCANICA");
        script.Translate("AR_ANAGRAFICHE", "CKY_CAT_STAT_ART", QString("I") + number, "IDRAULICA");
    }
    script.Translate("AH_DES_ART_LINGUA", "NKY_LIN", "1", "EN");
    return script;
}

} // namespace

} // namespace mexalDb

Totals MakeMexalDb(const Options& options) {
    using namespace mexalDb;
    return Write("mexaldb.db", CounterpartyTables() + ArticleTables(), options, PreparedFor(options));
}

} // namespace examples
