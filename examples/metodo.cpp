// Metodo: a database in which a code is a letter and six characters aligned on the right. What counterparties and
// articles have for each year stands in tables of its own; a document names the one that it was made from.

#include "examples/metodo.h"
#include "examples/chartOfAccounts.h"

namespace examples {

namespace metodo {

namespace {

constexpr qint64 Carriers = 4;
const QVector<Account> Ledgers = Chart(2, 2);
const QVector<Account> Accounts = Chart(3, 3);
constexpr qint64 Places = 2; ///< of a counterparty that has some

Rule PartyCode() { return BySide(CustomerCode(), SupplierCode()); }
Rule SideOf() { return BySide(Fixed("C"), Fixed("F")); }

// --- Counterparties -----------------------------------------------------------------------------------------------

Table PartyTable() {
    const Address address("ANAGRAFICACF");
    return {
        "ANAGRAFICACF",
        "controparti",
        Counterparties,
        QVector<Field>{{{"CODCONTO", 'C', 7}, PartyCode()},
                       {{"TIPOCONTO", 'C', 1}, SideOf()},
                       {{"DSCCONTO1", 'C', 80}, CompanyName(80)},
                       {{"FLGPERSFISICA", 'I'}, No()},
                       {{"CODNAZIONE", 'I'}, Fixed(1)},
                       {{"CODICEISO", 'C', 3}, Fixed("IT")},
                       {{"TELEFONO", 'C', 25}, address.Telephone()},
                       {{"FAX", 'C', 25}, Chance(30, address.Telephone())},
                       {{"TELEX", 'C', 255}, Chance(50, OnInternet("info@"))},
                       {{"INDIRIZZOINTERNET", 'C', 255}, Chance(30, OnInternet("www."))},
                       {{"PEC", 'C', 255}, Chance(50, OnInternet("posta@pec."))},
                       {{"CODDESTINATARIOPA", 'C', 7}, Chance(40, Code("A", 6))},
                       {{"PARTITAIVA", 'C', 12}, VatNumber()},
                       {{"CODFISCALE", 'C', 16}, TaxCode()},
                       {{"CODMASTRO", 'I'}, BySide(Fixed(401), Fixed(501))},
                       {{"CODLINGUA", 'I'}, Chance(90, Fixed(1), No())},
                       {{"NOTE", 'C', 255}, Chance(10, Fixed("Chiude il lunedì"))},
                       {{"DATAMODIFICA", 'T'}, Day(300)}} +
            address.Columns("INDIRIZZO", "CAP", "LOCALITA", "PROVINCIA") +
            Unused({"DSCCONTO2", "COGNOMEPERSFIS", "NOMEPERSFIS", "SESSOPERSFIS", "DATANASCITAPERSFIS",
                    "COMNASCITAPERSFIS", "PROVNASCITAPERSFIS"}),
        {{{"CODCONTO", "C900001"}, {"TIPOCONTO", "C"}, {"PROVINCIA", "TRENTO"}, {"PARTITAIVA", {}}, {"CODFISCALE", {}}},
         {{"CODCONTO", "F900002"},
          {"TIPOCONTO", "F"},
          {"DSCCONTO1", "Sconto da concordare"},
          {"PARTITAIVA", {}},
          {"CODFISCALE", {}}}},
        {{"CODCONTO"}}};
}

/// What a counterparty has for each year.
Table TermsTable() {
    const auto ofParty = [](const Rule& rule) { return OfParent(Years, rule); };
    return {"ANAGRAFICARISERVATICF",
            "controparti",
            Times(Years, Counterparties),
            QVector<Field>{{{"CODCONTO", 'C', 7}, ofParty(PartyCode())},
                           {{"ESERCIZIO", 'I'}, Year()},
                           {{"NOTE1", 'C', 255}, Chance(5, Fixed("Paga in anticipo"))},
                           {{"CODPAG", 'C', 4}, Term()},
                           {{"CODCAMBIO", 'I'}, Fixed(1)},
                           {{"CODZONA", 'I'}, Whole(0, 2)},
                           {{"CODSETTORE", 'I'}, Whole(0, 1)},
                           {{"CODCATEGORIA", 'I'}, Whole(1, 2)},
                           {{"CODIVA", 'C', 4}, Chance(5, Fixed("N8"))},
                           {{"CODBANCA", 'C', 7}, Chance(30, OneOf({"BNC1", "BNC2"}))},
                           {{"BANCAANAGR", 'I'}, Chance(60, Fixed(1), No())},
                           {{"MESEESCL1", 'I'}, Chance(10, Fixed(8), No())},
                           {{"GGESCL1", 'I'}, Chance(10, Fixed(10), No())},
                           {{"CODAGENTE1", 'C', 7}, Chance(40, OneOf({"A     1", "A     2"}))},
                           {{"SCONTO1", 'C', 12}, OneOf({"", "", "5", "10+5"})},
                           {{"LISTINO", 'I'}, Whole(0, Lists)},
                           {{"PORTO", 'I'}, Whole(0, 2)},
                           {{"CODSPED", 'I'}, Chance(30, Whole(1, Carriers), No())},
                           {{"FIDOEURO", 'N', 12, 2}, OneOf({0, 5000, 15000})},
                           {{"SPLITPAYMENT", 'I'}, Chance(2, Fixed(1), No())},
                           {{"NONRAGGRUPPDOC", 'I'}, Chance(50, Fixed(1), No())},
                           {{"STATOORDINI", 'I'}, Chance(2, Fixed(2), No())},
                           {{"STATOBOLLE", 'I'}, No()},
                           {{"STATOFATTURE", 'I'}, No()},
                           {{"DESTDIVMERCI", 'I'}, Chance(30, Fixed(1), No())}} +
                Unused({"DICHESIVA", "MESEESCL2", "GGESCL2", "CODAGENTE2", "CODAGENTE3", "TRASPACURA"}),
            {{{"CODCONTO", "F900002"}, {"ESERCIZIO", 2024}, {"SCONTO1", "dieci"}}},
            {{"CODCONTO"}}};
}

Table BankOfPartyTable() {
    const BankAccount account("BANCAAPPCF");
    return {"BANCAAPPCF",
            "controparti",
            Counterparties,
            {{{"CODCONTO", 'C', 7}, PartyCode()},
             {{"CODICE", 'I'}, Fixed(1)},
             {{"ABI", 'C', 6}, account.Abi()},
             {{"CAB", 'C', 6}, account.Cab()},
             {{"CIN", 'C', 1}, account.Check()},
             {{"CONTOCORRENTE", 'C', 15}, account.Number()},
             {{"CODICEIBAN", 'C', 34}, Chance(50, account.Iban())},
             {{"CODICEBIC", 'C', 11}, account.Bic()}},
            {},
            {{"CODCONTO"}}};
}

Table CarrierTable() {
    const Address address("TABSPEDIZ");
    return {"TABSPEDIZ",
            "controparti",
            Exactly(Carriers),
            QVector<Field>{{{"CODICE", 'I'}, RowNumber()},
                           {{"RAGIONESOCIALE", 'C', 80}, Code("Autotrasporti del Brennero ", 1)},
                           {{"TELEFONO", 'C', 25}, address.Telephone()},
                           {{"EMAIL", 'C', 60}, OnInternet("traffico@")}} +
                address.Columns("INDIRIZZO", "CAP", "LOCALITA", "PROVINCIA") + Unused({"PartitaIva"}),
            {{{"RAGIONESOCIALE", "Corriere"}, {"PROVINCIA", "TORINO"}}}};
}

QVector<Table> TablesOfParties() {
    const Address place("DESTINAZIONIDIVERSE");
    const Address person("TABELLAPERSONALE");
    return {
        PartyTable(),
        TermsTable(),
        BankOfPartyTable(),
        {"TABCAMBI", "controparti", Exactly(1), {{{"CODICE", 'I'}, Fixed(1)}, {{"DIVISA", 'C', 3}, Fixed("EUR")}}},
        {"DESTINAZIONIDIVERSE",
         "controparti",
         EachOf(4),
         QVector<Field>{{{"CODCONTO", 'C', 7}, OfParent(Places, CustomerCode())},
                        {{"CODICE", 'I'}, Line(Places)},
                        {{"RAGIONESOCIALE", 'C', 80}, OneOf({"Magazzino", "Stabilimento", "Cantiere"})},
                        {{"CODNAZIONE", 'I'}, Fixed(1)},
                        {{"TELEFONO", 'C', 25}, place.Telephone()},
                        {{"FAX", 'C', 25}, {}}} +
             place.Columns("INDIRIZZO", "CAP", "LOCALITA", "PROVINCIA"),
         {},
         {{"CODCONTO"}}},
        {"TABELLAPERSONALE",
         "controparti",
         EachOf(3),
         QVector<Field>{{{"CODICE", 'C', 10}, Code("", 1)},
                        {{"RIFCODCONTO", 'C', 7}, AnyOf(Counterparties, PartyCode())},
                        {{"COGNOME", 'C', 40}, LastName()},
                        {{"NOME", 'C', 40}, FirstName()},
                        {{"TELEFONO", 'C', 25}, person.Telephone()},
                        {{"POSIZIONE", 'C', 50}, OneOf({"Responsabile", "Impiegato"})},
                        {{"EMAIL", 'C', 60}, Chance(60, OnInternet("ufficio@"))},
                        {{"NOTE", 'C', 100}, Chance(10, Fixed("Chiamare dopo le 10"))},
                        {{"CODRUOLO", 'I'}, Whole(0, 2)}} +
             Unused({"CELL", "TELCASA", "FAX"}),
         {},
         {{"RIFCODCONTO"}}},
        {"TABRUOLI",
         "controparti",
         Exactly(2),
         {{{"CODICE", 'I'}, RowNumber()}, {{"DESCRIZIONE", 'C', 40}, Each({"Acquisti", "Amministrazione"})}}},
        CarrierTable(),
        {"DICHIARAZIONEINTENTO",
         "controparti",
         EachOf(20),
         QVector<Field>{{{"PROGRESSIVO", 'I'}, RowNumber()},
                        {{"ESERCIZIO", 'I'}, Fixed(2024)},
                        {{"CODCLIFOR", 'C', 7}, AnyOf(Customers, CustomerCode())},
                        {{"NRDICHIARAZIONE", 'C', 16}, Code("", 1)},
                        {{"NRDICHRICEVUTA", 'C', 16}, Code("", 3)},
                        {{"DATAEMISSIONE", 'T'}, Fixed(QDate(2024, 1, 8))},
                        {{"DATAREVOCA", 'T'}, Chance(10, Fixed(QDate(2024, 6, 30)))},
                        {{"TIPODICHIARAZIONE", 'C', 5}, Fixed("P")},
                        {{"PERIODODA", 'T'}, Fixed(QDate(2024, 1, 1))},
                        {{"PERIODOA", 'T'}, Fixed(QDate(2024, 12, 31))},
                        {{"IMPORTOPERIODOEURO", 'N', 14, 2}, Number(1000, 90000, 2)},
                        {{"DATAREGISTRAZIONE", 'T'}, Fixed(QDate(2024, 1, 12))}} +
             Unused({"NRPROTOCOLLO1"}),
         {{{"CODCLIFOR", "C999999"}}}},
    };
}

// --- Base tables --------------------------------------------------------------------------------------------------

int NumberOf(const Account& ledger) { return ledger.code.toInt(); }
int LedgerOf(const Account& account) { return account.Parent().toInt(); }

QVector<Table> BaseTables() {
    const auto kind = [](const Account& ledger) { return ledger.IsEconomic() ? QStringLiteral("E") : ledger.kind; };
    const BankAccount own("ANAGRAFICABANCHE");
    return {
        {"ANAGRAFICABANCHE",
         "tabelle",
         Exactly(2),
         {{{"CODBANCA", 'C', 7}, Code("BNC", 1)},
          {{"DSCBANCA", 'C', 80}, Each({"Cassa rurale", "Banca popolare"})},
          {{"ABI", 'C', 10}, own.Abi()},
          {{"CAB", 'C', 6}, own.Cab()},
          {{"CIN", 'C', 1}, own.Check()},
          {{"CONTOCORRENTE", 'C', 15}, own.Number()},
          {{"CODICEIBAN", 'C', 34}, own.Iban()},
          {{"CODICEBIC", 'C', 11}, own.Bic()},
          {{"CODICESIA", 'C', 5}, Fixed("A1B2C")},
          {{"CODNAZIONE", 'I'}, Fixed(1)}},
         {{{"DSCBANCA", "Vecchio conto"}, {"ABI", "1234567"}, {"CODICEIBAN", {}}}}},
        {"TABMASTRI",
         "conti",
         Exactly(Ledgers.size()),
         {{{"CODICE", 'I'}, Each(Ledgers, NumberOf)},
          {{"DESCRIZIONE", 'C', 80}, Each(Ledgers, &Account::description)},
          {{"TIPO", 'C', 20}, Each(Ledgers, kind)}},
         {{{"CODICE", 9900}, {"DESCRIZIONE", "Conti d'ordine"}, {"TIPO", "D'ORDINE"}}}},
        {"ANAGRAFICAGENERICI",
         "conti",
         Exactly(Accounts.size()),
         {{{"CODCONTO", 'C', 7}, LetterCode("G")},
          {{"DSCCONTO1", 'C', 200}, Each(Accounts, &Account::description)},
          {{"CODMASTRO", 'I'}, Each(Accounts, LedgerOf)}}},
        {"TABPAGAMENTI",
         "tabelle",
         Exactly(3),
         {{{"CODICE", 'C', 12}, Each({"RB30", "RB36", "BON"})},
          {{"DESCRIZIONE", 'C', 80}, Each({"Ri.Ba. 30 fine mese", "Ri.Ba. 30/60 fine mese", "Bonifico a vista"})},
          {{"SCONTO", 'C', 10}, Each({{}, {}, "2"})},
          {{"NUMERORATE", 'I'}, Each({1, 2, 1})}},
         {{{"CODICE", "XX"}, {"SCONTO", "due"}}}},
        {"TABRATEPAG",
         "tabelle",
         Exactly(4),
         {{{"CODICE", 'C', 12}, Each({"RB30", "RB36", "RB36", "BON"})},
          {{"NUMERO", 'I'}, Each({1, 1, 2, 1})},
          {{"FINEMESE", 'I'}, Each({1, 1, 1, 0})},
          {{"GIORNI", 'I'}, Each({30, 30, 60, 0})},
          {{"GIORNOFISSO", 'I'}, Each({0, 10, 10, 0})},
          {{"PRCIMP", 'N', 8, 2}, Each({100, 40, 60, 100})},
          {{"TIPOPAG", 'I'}, Each({2, 2, 2, 1})}}},
        {"TIPIEFFETTI",
         "tabelle",
         Exactly(2),
         {{{"EFFETTO", 'I'}, RowNumber()},
          {{"TIPO", 'C', 20}, Each({"D", "R"})},
          {{"DESCRIZIONE", 'C', 25}, Each({"Rimessa diretta", "Ricevuta bancaria"})}}},
    };
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    const QString party = QStringLiteral("ANAGRAFICACF");
    const QString article = QStringLiteral("ANAGRAFICAARTICOLI");
    script.UsualVatCodes();
    script.Translate(party, "NAZIONE", "1", "ITA");
    script.Translate(party, "VALUTA", "1", "EUR");
    script.Translate(party, "CODLINGUA", "1", "IT");
    script.Keep(party, "PAGAMENTI", {"RB30", "RB36", "BON"});
    script.Keep(party, "COD.ESENZIONEIVA", {"N8"});
    script.Translate(party, "ZONA", "1", "NORD");
    script.Translate(party, "ZONA", "2", "SUD");
    script.Translate(party, "SETTORE", "1", "MECC");
    script.Translate(party, "CATEGORIA", "1", "IND");
    script.Translate(party, "CATEGORIA", "2", "RIV");
    script.Translate(party, "LISTINO", "1", "L1");
    script.Translate(party, "LISTINO", "2", "L2");
    script.Translate(party, "PORTO", "1", "FCO");
    script.Translate(party, "PORTO", "2", "FRA");
    script.Translate("ANAGRAFICAAGENTI", "CODAGENTE", "A     1", "AG1");
    script.Translate("ANAGRAFICAAGENTI", "CODAGENTE", "A     2", "AG2");
    script.Translate(article, "UM", "PZ", "NR");
    script.Translate(article, "GRUPPO", "1", "MECCANICA");
    script.Translate(article, "GRUPPO", "2", "IDRAULICA");
    script.Translate(article, "CATEGORIA", "1", "SERIE");
    for (const Account& ledger : Ledgers) {
        script.Translate("TABMASTRI", "CODICE", QString::number(NumberOf(ledger)), ledger.kind == "R" ? "VE" : "GE");
    }
    const auto document = [&script](const char* code, const char* category, const char* reason, const char* type) {
        script.Translate("PARAMETRIDOC", "CODICE", code, reason);
        script.DocumentReason(category, reason, type);
    };
    document("OC", "ORD", "ORDCM", "ORD");
    document("BC", "VEN", "DDTCM", "DDT");
    document("FC", "VEN", "FATCM", "FAT");
    document("OF", "ORD", "ORDFM", "ORD");
    script.Translate("RIGHEDOCUMENTI", "CODDEPOSITO", "1", "001");
    return script;
}

} // namespace

} // namespace metodo

Totals MakeMetodo(const Options& options) {
    using namespace metodo;
    const QVector<Table> tables = TablesOfParties() + ArticleTables() + DocumentTables() + BaseTables();
    return Write("metodo.db", tables, options, PreparedFor(options));
}

} // namespace examples
