// OSL GP90: the database of a production system: base tables, customers, suppliers and carriers with destinations and
// contacts, articles, bills with their cycles, orders of three kinds, price lists with quantities.

#include "examples/plainTables.h"

namespace examples {

namespace osl {

namespace {

using namespace described;

constexpr qint64 Components = 3;
constexpr qint64 Phases = 2;
constexpr qint64 OrderKinds = 3; ///< of a customer, to a supplier and to a subcontractor
constexpr qint64 OrderLines = 2;
const Count Articles = [](const Options& options) { return 2 * options.rows; };
const Count Heads = EachOf(4); ///< articles with a bill: the first
const Count Orders = Times(OrderKinds, EachOf(5));

const QVariantList Terms{"RB30", "RB60", "CONT"};

Rule No() { return Fixed(0); }
Rule ArticleCode() { return Code("OS-", 5); }
Rule CustomerCode() { return Code("", 6); }
Rule SupplierCode() { return Code("", 6, 500001); }
Rule AnySupplier() { return AnyOf(Suppliers, SupplierCode()); }

QVector<Table> BaseTables() {
    return {
        {"TABPAG",
         "tabelle",
         Exactly(Terms.size()),
         {{{"CODPAG", 'C', 4}, Each(Terms)},
          {{"DESCR", 'C', 60}, Each({"Ri.Ba. 30/60/90 giorni f.m.", "Ri.Ba. 60 giorni f.m.", "Contanti"})},
          {{"NRATE", 'I'}, Each({3, 1, 1})},
          {{"GGPRIMA", 'I'}, Each({30, 60, 0})},
          {{"GGRATA", 'I'}, Each({30, 0, 0})},
          {{"FINEMESE", 'C', 1}, Each({"S", "S", "N"})}},
         {{{"CODPAG", "ERR"}, {"DESCR", "Giorni che mancano"}, {"GGPRIMA", "subito"}, {"NRATE", 2}}}},
        {"TABIVA",
         "tabelle",
         Exactly(4),
         {{{"CODIVA", 'C', 4}, Each({"22", "10", "N8", "I40"})},
          {{"DESCR", 'C', 60},
           Each({"Aliquota ordinaria", "Aliquota ridotta", "Non imponibile art. 8", "Indetraibile al 40%"})},
          {{"ALIQ", 'N', 6, 2}, Each({22, 10, 0, 22})},
          {{"INDETR", 'N', 6, 2}, Each({0, 0, 0, 40})}}},
        {"TABUM",
         "tabelle",
         Exactly(3),
         {{{"UM", 'C', 3}, Each({"PZ", "KG", "BAR"})}, {{"DESCR", 'C', 40}, Each({"Pezzi", "Chilogrammi", "Barre"})}}},
        {"TABFAM",
         "tabelle",
         Exactly(2),
         {{{"FAMIGLIA", 'C', 6}, Each({"MEC", "LAM"})}, {{"DESCR", 'C', 40}, Each({"Carpenteria", "Lamiere"})}}}};
}

QVector<Table> CounterpartyTables() {
    const Address address("ANAGRAFICHE");
    const Address destination("DESTINAZIONI");
    const BankAccount account("ANAGRAFICHE", 60);
    return {
        {"ANAGRAFICHE",
         "controparti",
         Counterparties,
         QVector<Field>{{{"CODICE", 'C', 10}, BySide(CustomerCode(), SupplierCode())},
                        {{"TIPO", 'C', 1}, BySide(Fixed("C"), Fixed("F"))},
                        {{"RAGSOC1", 'C', 40}, NameBegin(40)},
                        {{"RAGSOC2", 'C', 40}, NameRest(40)},
                        {{"NAZIONE", 'C', 5}, OneOf({"I", "ITA", {}})},
                        {{"PARTIVA", 'C', 16}, VatNumber()},
                        {{"CODFISC", 'C', 16}, TaxCode()},
                        {{"TELEFONO", 'C', 20}, address.Telephone()},
                        {{"CELLULARE", 'C', 20}, Chance(30, Mobile())},
                        {{"EMAIL", 'C', 80}, Chance(60, OnInternet("info@"))},
                        {{"WEB", 'C', 80}, Chance(30, OnInternet("www."))},
                        {{"CODPAG", 'C', 4}, OneOf(Terms)},
                        {{"ABI", 'C', 5}, account.Abi()},
                        {{"CAB", 'C', 5}, account.Cab()},
                        {{"CONTO", 'C', 12}, account.Number()},
                        {{"CIN", 'C', 1}, account.Check()},
                        {{"IBAN", 'C', 34}, Chance(50, account.Iban())},
                        {{"SCONTO1", 'N', 6, 2}, OneOf({0, 0, 5, 10})},
                        {{"SCONTO2", 'N', 6, 2}, OneOf({0, 0, 3})},
                        {{"CODAGE", 'C', 5}, Chance(30, OneOf({"AG1", "AG2"}))},
                        {{"CODLIS", 'C', 5}, BySide(OneOf({SalesList, {}}), OneOf({PurchaseList, {}}))},
                        {{"CODZONA", 'C', 5}, OneOf({"NORD", "SUD", {}})},
                        {{"CODVAL", 'C', 3}, Fixed("EUR")},
                        {{"CODIVA", 'C', 4}, Chance(8, Fixed("N8"))},
                        {{"NOTE", 'M'}, Chance(10, Fixed("Chiamare prima"))},
                        {{"ANNULLATO", 'C', 1}, Chance(3, Fixed("1"), Fixed("0"))}} +
             address.Columns("INDIRIZZO", "CAP", "LOCALITA", "PROV") + Unused({"TELEFONO2", "FAX"}),
         {{{"CODICE", "900001"}, {"TIPO", "C"}, {"SCONTO1", "molto"}, {"PARTIVA", {}}, {"CODFISC", {}}},
          {{"CODICE", "900002"}, {"TIPO", "X"}, {"PARTIVA", {}}, {"CODFISC", {}}},
          {{"CODICE", "E00001"}, {"TIPO", "E"}, {"CODLIS", {}}},
          {{"CODICE", "V00001"}, {"TIPO", "V"}, {"RAGSOC1", "Autotrasporti Veloci"}, {"RAGSOC2", {}}, {"CODLIS", {}}}},
         {{"TIPO", "CODICE"}}},
        {"DESTINAZIONI",
         "controparti",
         EachOf(4),
         QVector<Field>{{{"CODICE", 'C', 10}, AnyOf(Customers, CustomerCode())},
                        {{"PROGR", 'C', 5}, RowNumber()},
                        {{"RAGSOC", 'C', 40}, OneOf({"Magazzino", "Stabilimento", "Cantiere"})},
                        {{"TELEFONO", 'C', 20}, Chance(50, destination.Telephone())}} +
             destination.Columns("INDIRIZZO", "CAP", "LOCALITA", "PROV"),
         {{{"CODICE", "000001"}, {"INDIRIZZO", {}}}},
         {{"CODICE"}}},
        {"RIFERIMENTI",
         "controparti",
         EachOf(3),
         {{{"CODICE", 'C', 10}, Turn(2, {AnyOf(Customers, CustomerCode()), AnySupplier()})},
          {{"NOME", 'C', 40}, FullName()},
          {{"MANSIONE", 'C', 40}, OneOf({"Acquisti", "Ufficio tecnico", {}})},
          {{"TELEFONO", 'C', 20}, Address("RIFERIMENTI").Telephone()},
          {{"EMAIL", 'C', 80}, Chance(60, OnInternet("ufficio@"))}},
         {{{"CODICE", "000001"}, {"NOME", " "}}},
         {{"CODICE"}}}};
}

Table ArticleTable() {
    return {"ARTICOLI",
            "articoli",
            Articles,
            {{{"CODART", 'C', 30}, ArticleCode()},
             {{"DESCR1", 'C', 60}, ArticleText()},
             {{"DESCR2", 'C', 60}, Chance(20, Fixed("zincato"))},
             {{"UM", 'C', 3}, OneOf({"PZ", "KG"})},
             {{"UMACQ", 'C', 3}, Chance(10, Fixed("BAR"))},
             {{"FATTCONV", 'N', 10, 4}, No()},
             {{"CODIVA", 'C', 4}, OneOf({"22", "22", "10"})},
             {{"CLASSE", 'C', 2}, Kinds({{Heads, Fixed("P")}, {Articles, OneOf({"S", "A", "M"})}})},
             {{"FAMIGLIA", 'C', 6}, OneOf({"MEC", "LAM"})},
             {{"COSTOSTD", 'N', 12, 4}, Number(0.5, 90, 2)},
             {{"COSTOULT", 'N', 12, 4}, Chance(70, Number(0.5, 90, 2), No())},
             {{"PREZZO", 'N', 12, 4}, Number(1, 190, 2)},
             {{"PESO", 'N', 12, 3}, Number(0.1, 40, 3)},
             {{"SCORTAMIN", 'N', 12, 2}, Whole(0, 20)},
             {{"LOTTORIORD", 'N', 12, 2}, Whole(5, 20)},
             {{"LOTTOMIN", 'N', 12, 2}, Whole(0, 5)},
             {{"LEADTIME", 'I'}, Whole(0, 30)},
             {{"CODFOR", 'C', 10}, Chance(30, AnySupplier())},
             {{"CODARTFOR", 'C', 30}, Chance(50, Code("FOR-", 4))},
             {{"DISEGNO", 'C', 60}, Chance(40, Code("DIS-", 5))},
             {{"REVISIONE", 'C', 5}, OneOf({"A", "B", {}})},
             {{"UBICAZIONE", 'C', 20}, Chance(40, Code("U-", 4))},
             {{"ANNULLATO", 'C', 1}, Chance(3, Fixed("1"), Fixed("0"))},
             {{"DATACREA", 'T'}, Day(300)},
             {{"NOTE", 'M'}, Chance(5, Fixed("lavare prima di spedire"))}},
            {{{"CODART", "PESO-MANCA"}, {"PESO", "due"}}},
            {{"CODART"}}};
}

QVector<Table> BillTables() {
    return {{"DISTINTA",
             "distinte",
             Times(Components, Heads),
             {{{"PADRE", 'C', 30}, OfParent(Components, ArticleCode())},
              {{"FIGLIO", 'C', 30}, AnyBehind(Heads, Articles, ArticleCode())},
              {{"NRIGA", 'I'}, Line(Components)},
              {{"QTA", 'N', 12, 3}, Number(0.5, 9, 1)},
              {{"SCARTO", 'N', 6, 2}, OneOf({0, 0, 5})},
              {{"FASE", 'I'}, Each({10, 10, 20})},
              {{"NOTE", 'C', 60}, Chance(10, Fixed("destra e sinistra"))}},
             {{{"PADRE", "OS-00001"}, {"NRIGA", 9}, {"FIGLIO", "NON-CE"}}, {{"PADRE", "NON-CE"}}},
             {{"PADRE"}}},
            {"CICLI",
             "distinte",
             Times(Phases, Heads),
             {{{"CODART", 'C', 30}, OfParent(Phases, ArticleCode())},
              {{"FASE", 'I'}, Each({10, 20})},
              {{"LAVORAZ", 'C', 20}, Each({"SALD", "ZINC"})},
              {{"MACCHINA", 'C', 10}, Each({"CS1", {}})},
              {{"TATTREZ", 'N', 8, 2}, Whole(0, 30)},
              {{"TUNIT", 'N', 8, 2}, Number(0.5, 20, 1)},
              {{"COSTOORA", 'N', 8, 2}, Whole(25, 60)},
              {{"CODFOR", 'C', 10}, Turn(1, {{}, AnySupplier()})},
              {{"NOTE", 'C', 60}, {}}},
             {},
             {{"CODART"}}}};
}

QVector<Table> OrderTables() {
    const Amounts amounts("ORDRIG", OrderLines);
    const Rule day = Named("ORDTES", Day(300));
    const Rule kind = Each({"C", "F", "L"});
    const Rule number = OfParent(OrderKinds, RowNumber());
    return {{"ORDTES",
             "documenti",
             Orders,
             {{{"ANNO", 'I'}, Fixed(2024)},
              {{"TIPO", 'C', 1}, kind},
              {{"NUMERO", 'I'}, number},
              {{"SERIE", 'C', 5}, {}},
              {{"DATA", 'T'}, day},
              {{"CODICE", 'C', 10}, Turn(1, {AnyOf(Customers, CustomerCode()), AnySupplier(), AnySupplier()})},
              {{"RIFORD", 'C', 30}, Chance(50, Code("Vs. ", 1))},
              {{"DATARIF", 'T'}, {}},
              {{"CODPAG", 'C', 4}, OneOf(Terms)},
              {{"CODVAL", 'C', 3}, Fixed("EUR")},
              {{"NOTE", 'C', 60}, Chance(10, Fixed("Urgente"))},
              {{"STATO", 'C', 1}, OneOf({"A", "A", "A", "E"})}},
             // Each has a row behind those of the others.
             {{{"TIPO", "C"}, {"CODICE", "999999"}}, {{"TIPO", "P"}}},
             {{"ANNO", "TIPO", "NUMERO"}}},
            {"ORDRIG",
             "documenti",
             Times(OrderLines, Sum(Orders, Exactly(1))),
             {{{"ANNO", 'I'}, Fixed(2024)},
              {{"TIPO", 'C', 1}, OfParent(OrderLines, kind)},
              {{"NUMERO", 'I'}, OfParent(OrderLines, number)},
              {{"NRIGA", 'I'}, Line(OrderLines)},
              {{"CODART", 'C', 30}, AnyOf(Articles, ArticleCode())},
              {{"DESCR", 'C', 60}, Chance(10, Fixed("come da disegno"))},
              {{"UM", 'C', 3}, {}},
              {{"QTA", 'N', 12, 2}, amounts.Quantity()},
              {{"QTAEVASA", 'N', 12, 2}, No()},
              {{"PREZZO", 'N', 12, 4}, amounts.Price()},
              {{"SCONTO1", 'N', 6, 2}, OneOf({0, 0, 10})},
              {{"SCONTO2", 'N', 6, 2}, {}},
              {{"CODIVA", 'C', 4}, Fixed("22")},
              {{"DATACONS", 'T'}, After(OfParent(OrderLines, day), 10, 60)}},
             {{{"TIPO", "P"}}},
             {{"ANNO", "TIPO", "NUMERO"}}}};
}

QVector<Table> PriceTables() {
    return {
        ListTable("LISTES",
                  {.code = "CODLIS", .description = "DESCR", .kind = "TIPO", .currency = "VALUTA", .from = "DATAINI"}),
        {"LISRIG",
         "listini",
         Prices(Articles),
         PriceColumns({.list = "CODLIS",
                       .article = "CODART",
                       .from = "DATAINI",
                       .to = "DATAFIN",
                       .quantity = "QTASCAGL",
                       .price = "PREZZO",
                       .discount1 = "SCONTO1",
                       .discount2 = "SCONTO2"},
                      Articles, ArticleCode()),
         {{{"CODLIS", SalesList}, {"CODART", "NON-CE"}}, {{"CODLIS", "ZZ"}, {"CODART", "OS-00001"}}},
         {{"CODLIS"}}}};
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    script.Keep("ANAGRAFICHE", "CODPAG", Terms);
    script.Translate("ANAGRAFICHE", "NAZIONE", "I", "ITA");
    script.Translate("ANAGRAFICHE", "NAZIONE", "ITA", "ITA");
    script.Keep("ANAGRAFICHE", "CODAGE", {"AG1", "AG2"});
    script.Keep("ANAGRAFICHE", "CODLIS", {SalesList, PurchaseList, SpecialList});
    script.Keep("ANAGRAFICHE", "CODZONA", {"NORD", "SUD"});
    script.Keep("Lavorazioni", "Descrizione", {"SALD", "ZINC"});
    script.Keep("CICLI", "MACCHINA", {"CS1"});
    script.Translate("ARTICOLI", "UM", "PZ", "NR");
    script.Translate("ARTICOLI", "UM", "KG", "KG");
    script.Translate("ARTICOLI", "UM", "BAR", "BAR");
    script.WorkCentre("SALD", "Saldatura");
    script.WorkCentre("ZINC", "Zincatura");
    for (const char* reason : {"ORDCL", "ORDFO", "ORDLA"}) {
        script.DocumentReason("ORD", reason, "ORD");
    }
    return script;
}

} // namespace

} // namespace osl

Totals MakeOSL(const Options& options) {
    using namespace osl;
    const QVector<Table> tables = BaseTables() + CounterpartyTables() + QVector<Table>{ArticleTable()} + BillTables() +
                                  OrderTables() + PriceTables();
    return Write("osl.db", tables, options, PreparedFor(options));
}

} // namespace examples
