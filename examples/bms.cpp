// BMS: a database with subjects and their addresses, who are customers, suppliers or both, contacts and branches;
// articles with the codes of suppliers, languages and characteristics, bills with their cycles, orders of three kinds,
// price lists with quantities.

#include "examples/bms.h"

namespace examples {

namespace bms {

namespace {

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
