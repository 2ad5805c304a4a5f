// Ad Hoc Revolution: a database whose names are of eight letters. Customers, suppliers and accounts share one table,
// told apart by ANTIPCON; sheets are articles of a family, one for each format; a movement has five rows.

#include "examples/adhoc.h"
#include "examples/chartOfAccounts.h"
#include "examples/lantek.h"

namespace examples {

namespace adhoc {

namespace {

constexpr qint64 Banks = 40;
const QVector<Account> Ledgers = Chart(2, 2);
const QVector<Account> Accounts = Chart(3, 3);

const BankAccount& PartyAccount() {
    static const BankAccount account("CONTI", 100, Banks);
    return account;
}

Rule SideOf() { return BySide(Fixed("C"), Fixed("F")); }
Rule BankCode() { return Code("B", 4); }
Rule Term() { return OneOf({"RB30", "RB36", "BO60", "RD"}); }

// --- Counterparties and accounts ----------------------------------------------------------------------------------

QVector<Field> PartyFields() {
    const Address address("CONTI");
    const BankAccount& account = PartyAccount();
    return QVector<Field>{{{"ANTIPCON", 'C', 1}, SideOf()},
                          {{"ANCODICE", 'C', 15}, BySide(PartyCode(), PartyCode())},
                          {{"ANDESCRI", 'C', 60}, CompanyName(60)},
                          {{"ANPERFIS", 'C', 1}, Fixed("N")},
                          {{"ANINDIRI", 'C', 40}, address.Street()},
                          {{"AN___CAP", 'C', 10}, address.PostCode()},
                          {{"ANLOCALI", 'C', 50}, address.Town()},
                          {{"ANPROVIN", 'C', 12}, address.Province()},
                          {{"ANNAZION", 'C', 3}, Fixed("IT")},
                          {{"ANTELEFO", 'C', 18}, address.Telephone()},
                          {{"AN_EMAIL", 'C', 254}, Chance(60, OnInternet("info@"))},
                          {{"ANINDWEB", 'C', 254}, Chance(30, OnInternet("www."))},
                          {{"AN_EMPEC", 'C', 254}, Chance(50, OnInternet("posta@pec."))},
                          {{"ANPARIVA", 'C', 12}, VatNumber()},
                          {{"ANCODFIS", 'C', 16}, TaxCode()},
                          {{"ANCODPAG", 'C', 5}, Term()},
                          {{"ANCODBAN", 'C', 10}, account.OfBank(BankCode())},
                          {{"ANCODBA2", 'C', 15}, Chance(40, OneOf({"CC1", "CC2"}))},
                          {{"ANNUMCOR", 'C', 25}, account.Number()},
                          {{"ANCINABI", 'C', 1}, account.Check()},
                          {{"AN__IBAN", 'C', 35}, Chance(50, account.Iban())},
                          {{"AN1MESCL", 'I'}, Chance(10, Fixed(8))},
                          {{"ANGIOSC1", 'I'}, Chance(10, Fixed(10))},
                          {{"AN1SCONT", 'N', 6, 2}, OneOf({0, 0, 5, 10})},
                          {{"ANNUMLIS", 'C', 5}, OneOf({"L1", "L2"})},
                          {{"ANCODVAL", 'C', 3}, Fixed("EUR")},
                          {{"ANCODLIN", 'C', 3}, Fixed("ITA")},
                          {{"ANCODIVA", 'C', 5}, Chance(5, Fixed("N8"))},
                          {{"ANCATCOM", 'C', 3}, OneOf({"IND", "RIV"})},
                          {{"ANCODZON", 'C', 3}, OneOf({"NE", "NO"})},
                          {{"ANCODAG1", 'C', 5}, Chance(50, OneOf({"AG1", "AG2"}))},
                          {{"ANVALFID", 'N', 18, 4}, OneOf({0, 5000, 25000})},
                          {{"ANFLFIDO", 'C', 1}, OneOf({"S", "N"})},
                          {{"ANFLBLVE", 'C', 1}, Chance(2, Fixed("S"), Fixed("N"))},
                          {{"ANTIPFAT", 'C', 1}, OneOf({"R", "D"})},
                          {{"ANCODPOR", 'C', 10}, OneOf({"FCO", "FRA"})},
                          {{"ANDTOBSO", 'T'}, Chance(3, Day(300))},
                          {{"ANDTINVA", 'T'}, Day(300)},
                          {{"AN__NOTE", 'M'}, Chance(10, Fixed("Chiude il lunedì"))},
                          {{"utdc", 'T'}, Day(300)}} +
           Unused({"ANDESCR2", "ANCOGNOM", "AN__NOME", "ANDATNAS", "ANLOCNAS", "ANPRONAS", "AN_SESSO", "ANINDIR2",
                   "ANTELFAX", "ANNUMCEL", "ANCODEST", "AN2MESCL", "ANGIOSC2", "ANGIOFIS", "AN2SCONT", "ANCATCON",
                   "ANMAXORD"});
}

/// Of an account of the chart the table holds little.
Rule OfChart(const QByteArray& column) {
    if (column == "ANTIPCON") {
        return Fixed("G");
    }
    const bool isCode = column == "ANCODICE";
    return isCode                 ? Each(Accounts, &Account::code)
           : column == "ANDESCRI" ? Each(Accounts, &Account::description)
                                  : Rule();
}

} // namespace

Rule PartyCode() { return Code("", 15); }

Table PartyTable() {
    QVector<Field> fields = PartyFields();
    for (Field& field : fields) {
        field.rule = Kinds({{Counterparties, field.rule}, {Exactly(Accounts.size()), OfChart(field.column.name)}});
    }
    const Rule superior = BySide(Fixed("0401"), Fixed("0501"));
    fields.append({{"ANCONSUP", 'C', 15},
                   Kinds({{Counterparties, superior}, {Exactly(Accounts.size()), Each(Accounts, &Account::Parent)}})});
    return {"CONTI",
            "controparti",
            Sum(Counterparties, Exactly(Accounts.size())),
            fields,
            {{{"ANTIPCON", "C"}, {"ANCODICE", "900001"}, {"ANDESCRI", "Meccanica Riva"}, {"ANPROVIN", "TORINO"}},
             {{"ANTIPCON", "F"}, {"ANCODICE", "900002"}, {"ANDESCRI", "Fonderia"}, {"AN1SCONT", "dieci"}}},
            {{"ANTIPCON", "ANCODICE"}}};
}

Table BankTable() {
    const BankAccount& account = PartyAccount();
    return {"BAN_CHE",
            "controparti",
            Exactly(Banks),
            {{{"BACODBAN", 'C', 10}, BankCode()},
             {{"BADESBAN", 'C', 50}, Code("Banca ", 1)},
             {{"BACODABI", 'C', 5}, account.Abi()},
             {{"BACODCAB", 'C', 5}, account.Cab()},
             {{"BACODBIC", 'C', 11}, account.Bic()}},
            {},
            {{"BACODBAN"}}};
}

Table BranchTable() {
    const Address branch("DES_DIVE");
    return {"DES_DIVE",
            "controparti",
            EachOf(4),
            QVector<Field>{{{"DDTIPCON", 'C', 1}, Fixed("C")},
                           {{"DDCODICE", 'C', 15}, AnyOf(Customers, PartyCode())},
                           {{"DDCODDES", 'C', 5}, Code("", 3)},
                           {{"DDNOMDES", 'C', 60}, OneOf({"Magazzino", "Stabilimento", "Cantiere"})},
                           {{"DDCODNAZ", 'C', 3}, Fixed("IT")},
                           {{"DDPERSON", 'C', 50}, Chance(40, LastName())},
                           {{"DDTELEFO", 'C', 18}, branch.Telephone()},
                           {{"DDTIPRIF", 'C', 2}, Chance(10, Fixed("FA"), Fixed("CO"))},
                           {{"DDPREDEF", 'C', 1}, Chance(20, Fixed("S"), Fixed("N"))},
                           {{"DDDTOBSO", 'T'}, Chance(5, Day(300))}} +
                branch.Columns("DDINDIRI", "DD___CAP", "DDLOCALI", "DDPROVIN") +
                Unused({"DD__NOTE", "DDNUMFAX", "DD_EMAIL"}),
            {},
            {{"DDTIPCON", "DDCODICE"}}};
}

namespace {

Table LetterTable() {
    return {"DIC_INTE",
            "controparti",
            EachOf(20),
            {{{"DICODICE", 'C', 15}, AnyOf(Customers, PartyCode())},
             {{"DITIPCON", 'C', 1}, Fixed("C")},
             {{"DINUMDOC", 'C', 25}, Code("", 1)},
             {{"DIDATLET", 'T'}, Named("DIC_INTE.letter", Day(300))},
             {{"DIDATINI", 'T'}, Named("DIC_INTE.letter", Day(300))},
             {{"DIDATFIN", 'T'}, Fixed(QDate(2024, 12, 31))},
             {{"DIIMPDIC", 'N', 14, 2}, Number(1000, 90000, 2)}},
            {{{"DICODICE", "NESSUNO"}}}};
}

QVector<Table> BaseTables() {
    const auto codes = [](const char* name, const char* key, const char* text, const QVariantList& values,
                          const QVariantList& texts) {
        return Table{QLatin1String(name),
                     "tabelle",
                     Exactly(values.size()),
                     {{{key, 'C', 5}, Each(values)}, {{text, 'C', 50}, Each(texts)}}};
    };
    Table vat =
        codes("VOCIIVA", "IVCODIVA", "IVDESIVA", {"22", "10", "N8"}, {"IVA 22%", "IVA 10%", "Non imponibile art. 8"});
    vat.fields += QVector<Field>{{{"IVPERIVA", 'N', 6, 2}, Each({22, 10, 0})},
                                 {{"IVPERIND", 'N', 6, 2}, Fixed(0)},
                                 {{"IVPLAIVA", 'C', 1}, Each({"N", "N", "S"})},
                                 {{"IVBOLIVA", 'C', 1}, Each({"N", "N", "S"})}};
    vat.odd = {{{"IVCODIVA", "XX"}, {"IVDESIVA", "Aliquota da decidere"}, {"IVPERIVA", "venti"}}};
    Table kinds = codes("MOD_PAGA", "MPCODICE", "MPDESCRI", {"RB", "BO", "RD"},
                        {"Ricevuta bancaria", "Bonifico", "Rimessa diretta"});
    kinds.fields.append({{"MPTIPPAG", 'C', 2}, Each({"RB", "BO", "RD"})});
    Table terms =
        codes("PAG_AMEN", "PACODICE", "PADESCRI", {"RB30", "RB36", "BO60", "RD"},
              {"Ri.Ba. 30 giorni fine mese", "Ri.Ba. 30/60 giorni fine mese", "Bonifico 60 giorni", "Rimessa diretta"});
    terms.fields += QVector<Field>{{{"PASCONTO", 'N', 6, 2}, Each({0, 0, 0, 3})},
                                   {{"PASPEINC", 'N', 18, 5}, Each({2.5, 2.5, 0, 0})}};
    const Table instalments{"PAG_2AME",
                            "tabelle",
                            Exactly(5),
                            {{{"P2CODICE", 'C', 5}, Each({"RB30", "RB36", "RB36", "BO60", "RD"})},
                             {{"P2NUMRAT", 'I'}, Each({1, 1, 2, 1, 1})},
                             {{"P2MODPAG", 'C', 5}, Each({"RB", "RB", "RB", "BO", "RD"})},
                             {{"P2GIODUR", 'I'}, Each({30, 30, 60, 60, 0})},
                             {{"P2GIOFIS", 'I'}, Each({{}, 10, 10, {}, {}})},
                             {{"P2SCADEN", 'C', 2}, Each({"FM", "FM", "FM", "DF", {}})}}};
    const BankAccount own("COC_MAST");
    Table banks = codes("COC_MAST", "BACODBAN", "BADESCRI", {"CC1", "CC2"}, {"Cassa rurale", "Banca popolare"});
    banks.fields += QVector<Field>{{{"BACODABI", 'C', 5}, own.Abi()},      {{"BACODCAB", 'C', 5}, own.Cab()},
                                   {{"BANUMCOR", 'C', 25}, own.Number()},  {{"BACINABI", 'C', 1}, own.Check()},
                                   {{"BA__IBAN", 'C', 35}, own.Iban()},    {{"BACODBIC", 'C', 11}, own.Bic()},
                                   {{"BACODSIA", 'C', 5}, Fixed("A1B2C")}, {{"BACODVAL", 'C', 3}, Fixed("EUR")}};
    const Table ledgers{"MASTRI",
                        "conti",
                        Exactly(Ledgers.size()),
                        {{{"MCCODICE", 'C', 15}, Each(Ledgers, &Account::code)},
                         {{"MCDESCRI", 'C', 40}, Each(Ledgers, &Account::description)},
                         {{"MCNUMLIV", 'I'}, Fixed(1)},
                         {{"MCTIPMAS", 'C', 10}, Fixed("G")},
                         {{"MCSEZBIL", 'C', 1}, Each(Ledgers, &Account::kind)},
                         {{"MCCONSUP", 'C', 15}, {}}},
                        {{{"MCCODICE", "99999"}, {"MCDESCRI", "Conti d'ordine"}, {"MCTIPMAS", "GENERALE"}}},
                        {{"MCCODICE"}}};
    return {vat,
            kinds,
            terms,
            instalments,
            banks,
            codes("UNIMIS", "UMCODICE", "UMDESCRI", {"PZ", "KG", "SC"}, {"Pezzi", "Chilogrammi", "Scatole"}),
            codes("AGENTI", "AGCODAGE", "AGDESAGE", {"AG1", "AG2"}, {"Rossi Mario", "Bianchi Anna"}),
            ledgers};
}

} // namespace

void Prepare(QuadrixScript& script) {
    script.UsualVatCodes();
    script.Translate("CONTI", "ANNAZION", "IT", "ITA");
    script.Translate("CONTI", "ANCODLIN", "ITA", "IT");
    script.Keep("CONTI", "ANNUMLIS", {"L1", "L2"});
    script.Keep("CONTI", "ANCATCOM", {"IND", "RIV"});
    script.Keep("CONTI", "ANCODZON", {"NE", "NO"});
    script.Keep("CONTI", "ANCODPOR", {"FCO", "FRA"});
    script.Translate("ART_ICOL", "ARUNMIS1", "PZ", "NR");
    script.Translate("ART_ICOL", "ARCODFAM", "MECC", "MECCANICA");
    script.Translate("ART_ICOL", "ARCODFAM", "IDRA", "IDRAULICA");
    script.Translate("ART_ICOL", "ARCODFAM", "LAM", "LAMIERE");
}

} // namespace adhoc

Totals MakeAdHoc(const Options& options) {
    using namespace adhoc;
    QuadrixScript script(options.company);
    Prepare(script);
    lantek::PrepareMaterials(script);
    script.Translate("DES_DIVE", "DDCODNAZ", "IT", "ITA");
    script.Keep("ART_ICOL", "ARTIPART", {"PF", "SE", "MP"});
    script.Translate("ART_ICOL", "ARGRUMER", "MEC", "MECCANICA");
    script.Translate("ART_ICOL", "ARGRUMER", "FER", "FERRAMENTA");
    script.Keep("MVM_MAST", "MMTCAMAG", {"CAR", "SCA"});
    script.Keep("MVM_DETT", "MMCAUMAG", {"CAR", "SCA"});
    script.Warehouse("002", "Magazzino esterno");
    script.Translate("MVM_DETT", "MMCODMAG", "M1", "001");
    script.Translate("MVM_DETT", "MMCODMAG", "M2", "002");
    script.Translate("SALDIART", "SLCODMAG", "M1", "001");
    script.Translate("SALDIART", "SLCODMAG", "M2", "002");
    const QVector<Table> tables =
        QVector<Table>{PartyTable(), BankTable(), BranchTable(), LetterTable(), ArticleTable()} + TablesOfArticles() +
        StockTables() + BaseTables();
    return Write("adhoc.db", tables, options, script);
}

} // namespace examples
