// Solution: a database whose place stands in "Solution.ini", with counterparties, articles and documents. A second
// example has them beside the tables of Tessera, whose orders name the counterparties of Solution.

#include "examples/tessera.h"

namespace examples {

namespace solution {

namespace {

using namespace described;

constexpr qint64 DocumentLines = 2;
constexpr qint64 DocumentKinds = 4; ///< an order, its delivery note, its invoice and an order to a supplier
const Count Articles = [](const Options& options) { return 2 * options.rows; };
const Count Documents = Times(DocumentKinds, EachOf(5));

Rule ArticleCode() { return Code("SO-", 5); }
Rule CustomerCode() { return Code("C", 7); }
Rule SupplierCode() { return Code("F", 7); }
Rule CounterpartyCode() { return BySide(CustomerCode(), SupplierCode()); }

Table CounterpartyTable() {
    const Address address("CliFor"); // as Tessera has it
    const BankAccount account("ANA_CON", 60);
    // Where the IBAN is not known, it follows from the rest.
    return {"ANA_CON",
            "controparti",
            Counterparties,
            QVector<Field>{{{"AC_CODICE", 'C', 8}, CounterpartyCode()},
                           {{"AC_TIPO", 'C', 1}, BySide(Fixed("C"), Fixed("F"))},
                           {{"AC_RAGSOC", 'C', 50}, NameBegin(50)},
                           {{"AC_RAGSO2", 'C', 50}, NameRest(50)},
                           {{"AC_NAZ", 'C', 10}, OneOf({"ITALIA", "I", {}})},
                           {{"AC_PIVA", 'C', 16}, VatNumber()},
                           {{"AC_CFIS", 'C', 16}, TaxCode()},
                           {{"AC_TEL1", 'C', 20}, address.Telephone()},
                           {{"AC_CELL", 'C', 20}, Chance(30, Mobile())},
                           {{"AC_EMAIL", 'C', 60}, Chance(60, OnInternet("info@"))},
                           {{"AC_WEB", 'C', 60}, Chance(30, OnInternet("www."))},
                           {{"AC_PAGAM", 'C', 4}, OneOf({"RB30", "RB60", "BON"})},
                           {{"AC_ABI", 'C', 5}, account.Abi()},
                           {{"AC_CAB", 'C', 5}, account.Cab()},
                           {{"AC_CONTO", 'C', 12}, account.Number()},
                           {{"AC_CIN", 'C', 1}, account.Check()},
                           {{"AC_IBAN", 'C', 40}, Chance(50, account.Iban())},
                           {{"AC_SCONTO", 'N', 6, 2}, OneOf({0, 5, 10})},
                           {{"AC_AGENTE", 'C', 4}, Chance(30, OneOf({"AG1", "AG2"}))},
                           {{"AC_LISTINO", 'C', 4}, OneOf({"L1", {}})},
                           {{"AC_VALUTA", 'C', 4}, Fixed("EUR")},
                           {{"AC_ESENZ", 'C', 4}, Chance(8, Fixed("N8"))},
                           {{"AC_NOTE", 'M'}, Chance(10, Fixed("Chiamare prima"))},
                           {{"AC_ANN", 'C', 1}, Chance(3, Fixed("S"), Fixed("N"))}} +
                address.Columns("AC_INDIR", "AC_CAP", "AC_CITTA", "AC_PROV") +
                Unused({"AC_TEL2", "AC_FAX", "AC_BANCA"}),
            {{{"AC_CODICE", "F900001"}, {"AC_SCONTO", "tre"}, {"AC_PIVA", {}}, {"AC_CFIS", {}}},
             {{"AC_CODICE", "X900001"}, {"AC_TIPO", "X"}, {"AC_PIVA", {}}, {"AC_CFIS", {}}}},
            {{"AC_CODICE"}}};
}

Table ArticleTable() {
    return {"ANA_ART",
            "articoli",
            Articles,
            {{{"AA_CODICE", 'C', 20}, ArticleCode()},
             {{"AA_DESCR", 'C', 60}, ArticleText()},
             {{"AA_DESC2", 'C', 50}, Chance(20, Fixed("zincato"))},
             {{"AA_UM", 'C', 3}, OneOf({"PZ", "KG"})},
             {{"AA_UM2", 'C', 3}, {}},
             {{"AA_FATT", 'N', 10, 4}, Fixed(0)},
             {{"AA_IVA", 'C', 4}, OneOf({"22", "22", "10"})},
             {{"AA_CLASSE", 'C', 4}, OneOf({"P", "S", "A"})},
             {{"AA_FAMIG", 'C', 6}, OneOf({"MEC", "LAM"})},
             {{"AA_COSTO", 'N', 12, 4}, Number(0.5, 90, 2)},
             {{"AA_PREZZO", 'N', 12, 4}, Number(1, 190, 2)},
             {{"AA_PESO", 'N', 12, 3}, Number(0.1, 40, 3)},
             {{"AA_SCMIN", 'N', 12, 2}, Whole(0, 20)},
             {{"AA_LOTTO", 'N', 12, 2}, Whole(0, 20)},
             {{"AA_GGRIO", 'I'}, Whole(0, 30)},
             {{"AA_CODFOR", 'C', 8}, Chance(30, AnyOf(Suppliers, SupplierCode()))},
             {{"AA_ARTFOR", 'C', 25}, Chance(50, Code("FOR-", 4))},
             {{"AA_NOTE", 'M'}, Chance(10, Fixed("Fragile"))},
             {{"AA_ANN", 'C', 1}, Chance(3, Fixed("S"), Fixed("N"))}},
            {{{"AA_CODICE", "PESO-MANCA"}, {"AA_PESO", "due"}}},
            {{"AA_CODICE"}}};
}

/// The documents that belong together have customer, articles and amounts in common.
/// @param articles how many there are @param article code of one
QVector<Table> DocumentTables(const Count& articles, const Rule& article) {
    const auto rowOfSet = RowOfSet(DocumentKinds, DocumentLines);
    const Amounts amounts("DOC_RIG", DocumentLines, rowOfSet);
    const Rule day = OfParent(DocumentKinds, Named("DOC_TES", Day(300)));
    const Rule customer = OfParent(DocumentKinds, AnyOf(Customers, CustomerCode()));
    return {{"DOC_TES",
             "documenti",
             Documents,
             {{{"DT_ID", 'I'}, RowNumber()},
              {{"DT_TIPO", 'C', 2}, Each({"OC", "BC", "FT", "OF"})},
              {{"DT_NUMERO", 'I'}, OfParent(DocumentKinds, RowNumber())},
              {{"DT_ANNO", 'I'}, Fixed(2024)},
              {{"DT_SERIE", 'C', 3}, {}},
              {{"DT_DATA", 'T'}, day},
              {{"DT_CODCON", 'C', 8}, Turn(1, {customer, customer, customer, AnyOf(Suppliers, SupplierCode())})},
              {{"DT_RIF", 'C', 40}, Chance(50, Code("ORD ", 1))},
              {{"DT_DATRIF", 'T'}, {}},
              {{"DT_PAGAM", 'C', 4}, OneOf({"RB30", "RB60", "BON"})},
              {{"DT_VALUTA", 'C', 4}, Fixed("EUR")},
              {{"DT_NOTE", 'M'}, Chance(10, Fixed("Consegna al mattino"))}},
             // The rows of theirs stand behind those of the others.
             {{{"DT_TIPO", "PR"}}, {{"DT_TIPO", "OC"}, {"DT_CODCON", "C9999999"}}},
             {{"DT_ID"}}},
            {"DOC_RIG",
             "documenti",
             Times(DocumentLines, Sum(Documents, Exactly(2))),
             {{{"DR_IDTES", 'I'}, OfParent(DocumentLines, RowNumber())},
              {{"DR_RIGA", 'I'}, Line(DocumentLines)},
              {{"DR_CODART", 'C', 20}, With(rowOfSet, AnyOf(articles, article))},
              {{"DR_DESCR", 'C', 50}, {}},
              {{"DR_UM", 'C', 3}, {}},
              {{"DR_QTA", 'N', 10, 2}, amounts.Quantity()},
              {{"DR_QTAEVA", 'N', 10, 2}, Fixed(0)},
              {{"DR_PREZZO", 'N', 12, 4}, amounts.Price()},
              {{"DR_SCONT1", 'N', 6, 2}, {}},
              {{"DR_SCONT2", 'N', 6, 2}, {}},
              {{"DR_IVA", 'C', 4}, Fixed("22")},
              {{"DR_CONSEG", 'T'}, After(OfParent(DocumentLines, day), 10, 60)}},
             {},
             {{"DR_IDTES"}}}};
}

void Prepare(QuadrixScript& script) {
    script.UsualVatCodes();
    script.Translate("ANA_CON", "AC_NAZ", "ITALIA", "ITA");
    script.Translate("ANA_CON", "AC_NAZ", "I", "ITA");
    script.Keep("ANA_CON", "AC_PAGAM", {"RB30", "RB60", "BON"});
    script.Keep("ANA_CON", "AC_AGENTE", {"AG1", "AG2"});
    script.Keep("ANA_CON", "AC_LISTINO", {"L1"});
    script.Translate("ANA_ART", "AA_UM", "PZ", "NR");
    script.Translate("ANA_ART", "AA_UM", "KG", "KG");
    script.Translate("ANA_ART", "AA_CLASSE", "P", "PF");
    script.Translate("ANA_ART", "AA_CLASSE", "S", "SL");
    script.Translate("ANA_ART", "AA_CLASSE", "A", "CM");
    script.Translate("ANA_ART", "AA_FAMIG", "MEC", "MECCANICA");
    script.Translate("ANA_ART", "AA_FAMIG", "LAM", "LAMIERE");
    script.DocumentReason("ORD", "ORDCS", "ORD");
    script.DocumentReason("ORD", "ORDFS", "ORD");
    script.DocumentReason("VEN", "DDTCS", "DDT");
    script.DocumentReason("VEN", "FATCS", "FAT");
}

/// "Solution.ini" has its place beside the settings of Quadrix; the path of the database counts from there.
void WriteSettings(const Options& options, const QByteArray& database) {
    WriteText(options.folder + QStringLiteral("/Solution.ini"),
              "[DATABASE]\r\nProvider=SQLITE\r\nDatabaseName=" + database + "\r\n");
}

} // namespace

} // namespace solution

Totals MakeSolution(const Options& options) {
    using namespace solution;
    QuadrixScript script(options.company);
    Prepare(script);
    WriteSettings(options, "solution.db");
    const QVector<Table> tables{CounterpartyTable(), ArticleTable()};
    return Write("solution.db", tables + DocumentTables(solution::Articles, solution::ArticleCode()), options, script);
}

Totals MakeTesseraSolution(const Options& options) {
    QuadrixScript script(options.company);
    tessera::Prepare(script);
    solution::Prepare(script);
    solution::WriteSettings(options, "tessera.db");
    return Write("tessera.db",
                 tessera::Tables(solution::CounterpartyCode()) +
                     QVector<described::Table>{solution::CounterpartyTable()} +
                     solution::DocumentTables(tessera::Articles, tessera::ArticleCode()),
                 options, script);
}

} // namespace examples
