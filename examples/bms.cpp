// BMS: a database with subjects and their addresses, who are customers, suppliers or both, contacts and branches;
// articles with the codes of suppliers, languages and characteristics, bills with their cycles, orders of three kinds,
// price lists with quantities.

#include "examples/plainTables.h"

namespace examples {

namespace bms {

namespace {

using namespace described;

constexpr qint64 Components = 3;
constexpr qint64 Phases = 2;
constexpr qint64 OrderKinds = 3; ///< of a customer, to a supplier and to a subcontractor
constexpr qint64 OrderLines = 2;
const Count Articles = [](const Options& options) { return 2 * options.rows; };
const Count Heads = EachOf(4); ///< articles with a bill: the first
const Count Orders = Times(OrderKinds, EachOf(5));

const QVariantList Terms{"RB30", "RB60", "BON"};

Rule No() { return Fixed(0); }
Rule ArticleCode() { return Code("BM-", 5); }
Rule CustomerCode() { return Code("C", 5); }
Rule SupplierCode() { return Code("F", 5); }
Rule AnySupplier() { return AnyOf(Suppliers, SupplierCode()); }
Rule YesOrNo(int percent) { return Chance(percent, Fixed("S"), Fixed("N")); }

QVector<Table> SubjectTables() {
    const Address address("ANINDSOG");
    const Address branch("ANINDCLI");
    return {{"ANSOGGET",
             "controparti",
             Counterparties,
             {{{"ID_SOGGETTO", 'I'}, RowNumber()},
              {{"RAG_SOC1", 'C', 50}, NameBegin(50)},
              {{"RAG_SOC2", 'C', 50}, NameRest(50)},
              {{"FL_PERS_FIS", 'C', 1}, IfPerson(Fixed("S"), Fixed("N"))},
              {{"COGNOME", 'C', 30}, OwnSurname()},
              {{"NOME", 'C', 30}, OwnFirstName()},
              {{"PART_IVA", 'C', 16}, VatNumber()},
              {{"COD_FISC", 'C', 16}, TaxCode()},
              {{"COD_NAZIONE", 'C', 3}, OneOf({"I", "ITA", {}})},
              {{"COD_LINGUA", 'C', 3}, Fixed("I")}},
             {{{"ID_SOGGETTO", 9000001}, {"PART_IVA", {}}, {"COD_FISC", {}}}},
             {{"ID_SOGGETTO"}}},
            {"ANINDSOG",
             "controparti",
             Counterparties,
             {{{"ID_SOGGETTO", 'I'}, RowNumber()},
              {{"TIPO_IND", 'C', 1}, Fixed("L")},
              {{"INDIRIZZO", 'C', 60}, address.StreetName()},
              {{"NUM_CIV", 'C', 10}, address.HouseNumber()},
              {{"CAP", 'C', 10}, address.PostCode()},
              {{"CITTA", 'C', 40}, address.Town()},
              {{"PROV", 'C', 10}, address.Province()},
              {{"TELEFONO", 'C', 20}, address.Telephone()},
              {{"FAX", 'C', 20}, {}},
              {{"CELLULARE", 'C', 20}, Chance(30, Mobile())},
              {{"EMAIL", 'C', 60}, Chance(60, OnInternet("info@"))},
              {{"SITO_WEB", 'C', 60}, Chance(30, OnInternet("www."))},
              {{"PEC", 'C', 60}, Chance(50, OnInternet("posta@pec."))}},
             {{{"ID_SOGGETTO", 1}, {"TIPO_IND", "S"}, {"INDIRIZZO", "Un'altra sede"}}},
             {{"ID_SOGGETTO"}}},
            {"ANINDCLI",
             "controparti",
             EachOf(4),
             {{{"COD_CLIENTE", 'C', 10}, AnyOf(Customers, CustomerCode())},
              {{"PROGR", 'C', 5}, RowNumber()},
              {{"TIPO_IND", 'C', 1}, OneOf({"D", "D", "F"})},
              {{"DESCR", 'C', 40}, OneOf({"Magazzino", "Stabilimento", "Amministrazione"})},
              {{"INDIRIZZO", 'C', 60}, branch.StreetName()},
              {{"NUM_CIV", 'C', 10}, branch.HouseNumber()},
              {{"CAP", 'C', 10}, branch.PostCode()},
              {{"CITTA", 'C', 40}, branch.Town()},
              {{"PROV", 'C', 10}, branch.Province()},
              {{"COD_NAZIONE", 'C', 3}, Fixed("I")},
              {{"FL_DEFAULT", 'C', 1}, YesOrNo(10)},
              {{"TELEFONO", 'C', 20}, Chance(50, branch.Telephone())},
              {{"FAX", 'C', 20}, {}}},
             {{{"COD_CLIENTE", "C00001"}, {"INDIRIZZO", {}}}},
             {{"COD_CLIENTE"}}},
            {"ANRIFEAZ",
             "controparti",
             EachOf(2),
             {{{"ID_SOGGETTO", 'I'}, AnyOf(Counterparties, RowNumber())},
              {{"PROGR", 'I'}, RowNumber()},
              {{"NOMINATIVO", 'C', 40}, FullName()},
              {{"FUNZIONE", 'C', 40}, OneOf({"Responsabile", "Addetto", {}})},
              {{"REPARTO", 'C', 40}, OneOf({"ACQUISTI", "VENDITE"})},
              {{"TELEFONO", 'C', 20}, Address("ANRIFEAZ").Telephone()},
              {{"CELLULARE", 'C', 20}, Chance(40, Mobile())},
              {{"EMAIL", 'C', 60}, Chance(60, OnInternet("ufficio@"))},
              {{"NOTE", 'C', 60}, Chance(10, Fixed("al mattino"))}},
             {},
             {{"ID_SOGGETTO"}}}};
}

/// Subjects in one role. @param first the counterparties before those of the table
Table RoleTable(const QString& name, const char* key, const Count& count, const Count& first, const Rule& code,
                const QString& list, const QVector<OddRow>& odd) {
    const BankAccount account(name.toLatin1(), 60);
    return {name,
            "controparti",
            count,
            {{{"ID_SOGGETTO", 'I'}, Behind(first, IdentityNumber())},
             {{key, 'C', 10}, code},
             {{"COD_PAGAM", 'C', 4}, OneOf(Terms)},
             {{"COD_IVA", 'C', 4}, Chance(8, Fixed("N8"))},
             {{"COD_AGENTE", 'C', 5}, Chance(30, OneOf({"AG1", "AG2"}))},
             {{"COD_LISTINO", 'C', 5}, Chance(60, Fixed(list))},
             {{"COD_VALUTA", 'C', 3}, Fixed("EUR")},
             {{"COD_ZONA", 'C', 5}, OneOf({"NORD", "SUD", {}})},
             {{"COD_CATEG", 'C', 5}, OneOf({"IND", "RIV"})},
             {{"SCONTO1", 'N', 6, 2}, OneOf({0, 0, 5, 10})},
             {{"SCONTO2", 'N', 6, 2}, OneOf({0, 0, 3})},
             {{"SCONTO3", 'N', 6, 2}, {}},
             {{"COD_ABI", 'C', 5}, account.Abi()},
             {{"COD_CAB", 'C', 5}, account.Cab()},
             {{"NUM_CC", 'C', 12}, account.Number()},
             {{"CIN", 'C', 1}, account.Check()},
             {{"IBAN", 'C', 34}, Chance(50, account.Iban())},
             {{"BIC", 'C', 11}, account.Bic()},
             {{"FIDO", 'N', 12, 2}, OneOf({0, 5000, 20000})},
             {{"FL_ANN", 'C', 1}, YesOrNo(3)},
             {{"FL_BLOCCO", 'C', 1}, YesOrNo(2)},
             {{"DT_INS", 'T'}, Day(300)},
             {{"NOTE", 'M'}, Chance(10, Fixed("Chiamare prima"))}},
            odd,
            {{key}, {"ID_SOGGETTO"}}};
}

QVector<Table> RoleTables() {
    return {RoleTable("ANCLIENT", "COD_CLIENTE", Customers, Exactly(0), CustomerCode(), SalesList,
                      {{{"ID_SOGGETTO", 9000001}, {"COD_CLIENTE", "C900001"}, {"SCONTO1", "molto"}},
                       {{"ID_SOGGETTO", 9000002}, {"COD_CLIENTE", "C900002"}}}),
            RoleTable("ANFORNIT", "COD_FORNITORE", Suppliers, Customers, SupplierCode(), PurchaseList, {})};
}

QVector<Table> ArticleTables() {
    return {{"LGARTMAG",
             "articoli",
             Articles,
             {{{"COD_ARTICOLO", 'C', 30}, ArticleCode()},
              {{"ID_ARTICOLO", 'I'}, RowNumber()},
              {{"DESCR1", 'C', 60}, ArticleText()},
              {{"DESCR2", 'C', 60}, Chance(20, Fixed("zincato"))},
              {{"UM_BASE", 'C', 3}, OneOf({"PZ", "KG"})},
              {{"UM_ALT", 'C', 3}, {}},
              {{"FATT_CONV", 'N', 10, 4}, No()},
              {{"COD_IVA", 'C', 4}, OneOf({"22", "22", "10"})},
              {{"TIPO_ART", 'C', 1}, Kinds({{Heads, Fixed("P")}, {Articles, OneOf({"S", "A", "M"})}})},
              {{"COD_FAMIGLIA", 'C', 6}, OneOf({"MEC", "LAM"})},
              {{"COSTO_STD", 'N', 12, 4}, Number(0.5, 90, 2)},
              {{"COSTO_ULT", 'N', 12, 4}, Chance(70, Number(0.5, 90, 2), No())},
              {{"PREZZO_BASE", 'N', 12, 4}, Number(1, 190, 2)},
              {{"PESO_NETTO", 'N', 12, 3}, Number(0.1, 40, 3)},
              {{"PESO_LORDO", 'N', 12, 3}, {}},
              {{"SCORTA_MIN", 'N', 12, 2}, Whole(0, 20)},
              {{"SCORTA_MAX", 'N', 12, 2}, Whole(20, 90)},
              {{"LOTTO_RIORD", 'N', 12, 2}, Whole(5, 20)},
              {{"GG_APPROV", 'I'}, Whole(0, 30)},
              {{"COD_UBIC", 'C', 20}, Chance(40, Code("U-", 4))},
              {{"FL_ANN", 'C', 1}, YesOrNo(3)},
              {{"DT_INS", 'T'}, Day(300)}},
             {{{"COD_ARTICOLO", "PESO-MANCA"}, {"PESO_NETTO", "due"}}},
             {{"COD_ARTICOLO"}}},
            {"LGARTFOR",
             "articoli",
             EachOf(1),
             {{{"COD_ARTICOLO", 'C', 30}, ArticleCode()},
              {{"COD_FORNITORE", 'C', 10}, AnySupplier()},
              {{"COD_ART_FORN", 'C', 30}, Chance(60, Code("FOR-", 4))},
              {{"DES_ART_FORN", 'C', 60}, {}},
              {{"PREZZO", 'N', 12, 4}, Number(0.5, 90, 2)},
              {{"GG_CONS", 'I'}, Whole(0, 30)},
              {{"LOTTO_MIN", 'N', 12, 2}, Whole(0, 5)},
              {{"FL_ABIT", 'C', 1}, YesOrNo(50)}},
             {},
             {{"COD_ARTICOLO"}}},
            {"LGARTLIN",
             "articoli",
             EachOf(4),
             {{{"COD_ARTICOLO", 'C', 30}, ArticleCode()},
              {{"COD_LINGUA", 'C', 3}, Fixed("E")},
              {{"DESCR", 'C', 60}, Code("Item ", 1)}},
             {},
             {{"COD_ARTICOLO"}}},
            {"LGARTCAR",
             "articoli",
             Times(2, EachOf(4)),
             {{{"COD_ARTICOLO", 'C', 30}, OfParent(2, ArticleCode())},
              {{"COD_CARATT", 'C', 10}, Each({"COLORE", "FINITURA"})},
              {{"DES_CARATT", 'C', 40}, Each({"Colore", "Finitura"})},
              {{"VALORE", 'C', 40}, Turn(1, {OneOf({"rosso", "blu", "grigio"}), OneOf({"lucida", "opaca"})})}},
             {},
             {{"COD_ARTICOLO"}}}};
}

QVector<Table> BillTables() {
    return {{"LGLEGAMI",
             "distinte",
             Times(Components, Heads),
             {{{"COD_PADRE", 'C', 30}, OfParent(Components, ArticleCode())},
              {{"COD_FIGLIO", 'C', 30}, AnyBehind(Heads, Articles, ArticleCode())},
              {{"POSIZIONE", 'I'}, Line(Components)},
              {{"QTA", 'N', 12, 3}, Number(0.5, 9, 1)},
              {{"PERC_SCARTO", 'N', 6, 2}, OneOf({0, 0, 5})},
              {{"DT_FIN_VAL", 'T'}, Chance(5, Day(300))},
              {{"NOTE", 'C', 60}, Chance(10, Fixed("destra e sinistra"))}},
             {{{"COD_PADRE", "BM-00001"}, {"POSIZIONE", 9}, {"COD_FIGLIO", "NON-CE"}}, {{"COD_PADRE", "NON-CE"}}},
             {{"COD_PADRE"}}},
            {"LGCICLI",
             "distinte",
             Times(Phases, Heads),
             {{{"COD_ARTICOLO", 'C', 30}, OfParent(Phases, ArticleCode())},
              {{"NUM_FASE", 'I'}, Each({10, 20})},
              {{"COD_LAVORAZ", 'C', 10}, Each({"SALD", "ZINC"})},
              {{"T_ATTR", 'N', 8, 2}, Whole(0, 30)},
              {{"T_UNIT", 'N', 8, 2}, Number(0.5, 20, 1)}},
             {},
             {{"COD_ARTICOLO"}}}};
}

QVector<Table> OrderTables() {
    const Amounts amounts("LGORDRIG", OrderLines);
    const Rule day = Named("LGORDTES", Day(300));
    return {{"LGORDTES",
             "documenti",
             Orders,
             {{{"ID_ORDINE", 'I'}, RowNumber()},
              {{"TIPO_DOC", 'C', 2}, Each({"OC", "OF", "OL"})},
              {{"ANNO", 'I'}, Fixed(2024)},
              {{"NUMERO", 'I'}, OfParent(OrderKinds, RowNumber())},
              {{"DT_DOC", 'T'}, day},
              {{"COD_SOGG", 'C', 10}, Turn(1, {AnyOf(Customers, CustomerCode()), AnySupplier(), AnySupplier()})},
              {{"RIF_CLI", 'C', 30}, Chance(50, Code("Vs. ", 1))},
              {{"DT_RIF", 'T'}, {}},
              {{"COD_PAGAM", 'C', 4}, OneOf(Terms)},
              {{"COD_VALUTA", 'C', 3}, Fixed("EUR")},
              {{"NOTE", 'C', 60}, Chance(10, Fixed("Urgente"))}},
             // Each has rows behind those of the others.
             {{{"TIPO_DOC", "OC"}, {"COD_SOGG", "C999999"}}, {{"TIPO_DOC", "XX"}}},
             {{"ID_ORDINE"}}},
            {"LGORDRIG",
             "documenti",
             [](const Options& options) { return OrderLines * (Orders(options) + 2); },
             {{{"ID_ORDINE", 'I'}, OfParent(OrderLines, RowNumber())},
              {{"NUM_RIGA", 'I'}, Line(OrderLines)},
              {{"COD_ARTICOLO", 'C', 30}, AnyOf(Articles, ArticleCode())},
              {{"DESCR", 'C', 60}, Chance(10, Fixed("come da disegno"))},
              {{"UM", 'C', 3}, {}},
              {{"QTA", 'N', 12, 2}, amounts.Quantity()},
              {{"QTA_EVASA", 'N', 12, 2}, No()},
              {{"PREZZO", 'N', 12, 4}, amounts.Price()},
              {{"SCONTO1", 'N', 6, 2}, OneOf({0, 0, 10})},
              {{"SCONTO2", 'N', 6, 2}, {}},
              {{"COD_IVA", 'C', 4}, Fixed("22")},
              {{"DT_CONS", 'T'}, After(OfParent(OrderLines, day), 10, 60)}},
             {},
             {{"ID_ORDINE"}}}};
}

QVector<Table> PriceTables() {
    return {ListTable("LGLISTES",
                      {.code = "COD_LISTINO", .description = "DESCR", .kind = "TIPO", .currency = "COD_VALUTA"}),
            {"LGLISRIG",
             "listini",
             Prices(Articles),
             PriceColumns({.list = "COD_LISTINO",
                           .article = "COD_ARTICOLO",
                           .from = "DT_INIZIO",
                           .to = "DT_FINE",
                           .quantity = "QTA_DA",
                           .price = "PREZZO",
                           .discount1 = "SCONTO1",
                           .discount2 = "SCONTO2",
                           .discount3 = "SCONTO3"},
                          Articles, ArticleCode()),
             {{{"COD_LISTINO", SalesList}, {"COD_ARTICOLO", "NON-CE"}},
              {{"COD_LISTINO", "ZZ"}, {"COD_ARTICOLO", "BM-00001"}}},
             {{"COD_LISTINO"}}}};
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    script.UsualVatCodes();
    for (const char* table : {"ANCLIENT", "ANFORNIT"}) {
        script.Keep(table, "COD_PAGAM", Terms);
        script.Keep(table, "COD_AGENTE", {"AG1", "AG2"});
        script.Keep(table, "COD_LISTINO", {SalesList, PurchaseList});
        script.Keep(table, "COD_ZONA", {"NORD", "SUD"});
        script.Keep(table, "COD_CATEG", {"IND", "RIV"});
    }
    script.Keep("LGCICLI", "COD_LAVORAZ", {"SALD", "ZINC"});
    script.Translate("ANSOGGET", "COD_NAZIONE", "I", "ITA");
    script.Translate("ANSOGGET", "COD_NAZIONE", "ITA", "ITA");
    script.Translate("ANSOGGET", "COD_LINGUA", "I", "IT");
    script.Translate("LGARTLIN", "COD_LINGUA", "E", "EN");
    script.Translate("LGARTMAG", "UM_BASE", "PZ", "NR");
    script.Translate("LGARTMAG", "UM_BASE", "KG", "KG");
    script.Translate("LGARTMAG", "COD_FAMIGLIA", "MEC", "MECCANICA");
    script.Translate("LGARTMAG", "COD_FAMIGLIA", "LAM", "LAMIERE");
    script.WorkCentre("SALD", "Saldatura");
    script.WorkCentre("ZINC", "Zincatura");
    for (const char* reason : {"ORDCL", "ORDFO", "ORDLA"}) {
        script.DocumentReason("ORD", reason, "ORD");
    }
    return script;
}

} // namespace

} // namespace bms

Totals MakeBMS(const Options& options) {
    using namespace bms;
    const QVector<Table> tables =
        SubjectTables() + RoleTables() + ArticleTables() + BillTables() + OrderTables() + PriceTables();
    return Write("bms.db", tables, options, PreparedFor(options));
}

} // namespace examples
