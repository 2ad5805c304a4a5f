// Gamma of TeamSystem: a database whose columns begin with the code of their table. Customers and suppliers point to a
// general register with older versions of its records; articles, price lists, bills of two levels with their cycles,
// and a CSV file of tubes beside it.

#include "examples/CsvWriter.h"
#include "examples/describedRules.h"
#include "examples/italianWords.h"

namespace examples {

namespace gamma {

namespace {

using namespace described;

constexpr qint64 Components = 3;
constexpr qint64 Phases = 2;
const Count Articles = [](const Options& options) { return 2 * options.rows; };
const Count Products = EachOf(4); ///< the first articles; their bills hold parts and what is bought
const Count Parts = EachOf(2);    ///< behind them; their bills hold what is bought
const Count Bills = [](const Options& options) { return Products(options) + Parts(options); };
const Count OldRecords = EachOf(20); ///< of the first in the general register
const Count Tubes = EachOf(10);

Rule No() { return Fixed(0); }
Rule ArticleCode() { return Code("GA-", 5); }
/// What is different for products, parts and what is bought.
Rule ByKind(const Rule& product, const Rule& part, const Rule& bought) {
    return Kinds({{Products, product}, {Parts, part}, {Articles, bought}});
}
Rule NewYear(int year) { return Fixed(QDate(year, 1, 1)); }

/// The columns that every table begins with: the company; and the counterparty.
Field Company(const QByteArray& table) { return {{table + "_DITTA_CG18", 'I'}, Fixed(1)}; }
QVector<Field> Owner(const QByteArray& table, const Rule& side, const Rule& code) {
    return {Company(table), {{table + "_TIPOCF_CG44", 'I'}, side}, {{table + "_CLIFOR_CG44", 'I'}, code}};
}

Table CounterpartyTable() {
    const BankAccount account("CG44", 50);
    return {"CG44_CLIFOR",
            "controparti",
            Counterparties,
            QVector<Field>{Company("CG44"),
                           {{"CG44_TIPOCF", 'I'}, BySide(No(), Fixed(1))},
                           {{"CG44_CLIFOR", 'I'}, BySide(RowNumber(), RowNumber())},
                           {{"CG44_CODICE_CG16", 'I'}, IdentityNumber()},
                           {{"CG44_CODPAG_CG62", 'C', 5}, OneOf({"RB30", "RB60", "BO30"})},
                           {{"CG44_IBAN", 'C', 40}, account.Iban()},
                           {{"CG44_BIC", 'C', 11}, account.Bic()},
                           {{"CG44_BANAPP_CG12", 'C', 5}, Chance(10, Fixed("BP"))},
                           {{"CG44_SCONTO1", 'N', 6, 2}, OneOf({0, 0, 5, 10})},
                           {{"CG44_SCONTO2", 'N', 6, 2}, OneOf({0, 0, 3})},
                           {{"CG44_NUMLIST", 'I'}, BySide(OneOf({0, 1, 2}), OneOf({0, 3}))},
                           {{"CG44_CODVAL_CG08", 'C', 4}, Fixed("EUR")},
                           {{"CG44_CODAGE_MG17", 'C', 4}, Chance(30, OneOf({"A1", "A2"}))},
                           {{"CG44_ZONA_MG16", 'C', 4}, OneOf({"NORD", "SUD", {}})},
                           {{"CG44_CATEG_MG15", 'C', 4}, BySide(OneOf({"IND", "RIV"}), Fixed("MAT"))},
                           {{"CG44_CODIVA_CG28", 'C', 4}, Chance(8, Fixed("N8"))},
                           {{"CG44_PORTO_MG18", 'C', 4}, OneOf({"F", "A", {}})},
                           {{"CG44_FIDO", 'N', 12, 2}, BySide(OneOf({0, 5000, 20000}), No())},
                           {{"CG44_FLGBLOCCO", 'I'}, Chance(3, Fixed(1), No())},
                           {{"CG44_NOTE", 'M'}, Chance(10, Fixed("Consegnare di mattina"))}} +
                Unused({"CG44_CODBAN_CG12", "CG44_CONTOCORR", "CG44_CIN", "CG44_LINGUA_MG52", "CG44_VETT_MG19",
                        "CG44_CONTO_CG15"}),
            {{{"CG44_TIPOCF", 0}, {"CG44_CLIFOR", 9000001}, {"CG44_CODICE_CG16", 9000001}, {"CG44_SCONTO1", "dieci"}},
             {{"CG44_TIPOCF", 0}, {"CG44_CLIFOR", 9000002}, {"CG44_CODICE_CG16", 9000002}}},
            {{"CG44_CLIFOR"}, {"CG44_CODICE_CG16"}}};
}

/// Everybody as he is now, and behind that some as they were.
Table RegisterTable() {
    const Address address("CG16");
    QVector<Field> fields{{{"CG16_CODICE", 'I'}, RowNumber()},
                          {{"CG16_RAGSOANAG", 'C', 80}, CompanyName(80)},
                          {{"CG16_COGNOME", 'C', 40}, OwnSurname()},
                          {{"CG16_NOME", 'C', 40}, OwnFirstName()},
                          {{"CG16_CAP", 'C', 8}, address.PostCode()},
                          {{"CG16_CITTA", 'C', 40}, address.Town()},
                          {{"CG16_PROV", 'C', 10}, address.Province()},
                          {{"CG16_COMANA_CG01", 'C', 6}, Chance(70, address.LandCode())},
                          {{"CG16_CODICE_CG07", 'I'}, No()},
                          {{"CG16_PARTIVA", 'C', 16}, VatNumber()},
                          {{"CG16_CODFISCALE", 'C', 16}, TaxCode()},
                          {{"CG16_TEL1NUM", 'C', 20}, address.Telephone()},
                          {{"CG16_CELNUM", 'C', 20}, Chance(30, Mobile())},
                          {{"CG16_INDEMAIL", 'C', 60}, Chance(60, OnInternet("info@"))},
                          {{"CG16_INDWEB", 'C', 60}, Chance(30, OnInternet("www."))},
                          {{"CG16_INDPEC", 'C', 60}, Chance(50, OnInternet("posta@pec."))}};
    for (Field& field : fields) {
        field.rule = Kinds({{Counterparties, field.rule}, {OldRecords, field.rule}});
    }
    const auto byAge = [](const Rule& now, const Rule& once) {
        return Kinds({{Counterparties, now}, {OldRecords, once}});
    };
    fields.append({{"CG16_DATAVALID", 'T'}, byAge(NewYear(2020), NewYear(2010))});
    fields.append({{"CG16_INDIRIZZO", 'C', 60}, byAge(address.Street(), Fixed("Via Vecchia, 1"))});
    return {"CG16_ANAGGEN",
            "controparti",
            [](const Options& options) { return Counterparties(options) + OldRecords(options); },
            fields + Unused({"CG16_PARTIVA_EST", "CG16_TEL2NUM", "CG16_FAXNUM"}),
            {{{"CG16_CODICE", 9000001}, {"CG16_PARTIVA", {}}, {"CG16_CODFISCALE", {}}}},
            {{"CG16_CODICE"}}};
}

QVector<Table> CounterpartyTables() {
    const auto ofTown = [](const char16_t* italian::Town::*part) {
        return Rule([part](const Place& place) {
            return QVariant(QString::fromUtf16(italian::Towns()[static_cast<std::size_t>(place.row)].*part));
        });
    };
    const Address destination("MG22");
    return {CounterpartyTable(),
            RegisterTable(),
            {"CG01_ANAGCOMUNI",
             "controparti",
             Exactly(static_cast<qint64>(italian::Towns().size())),
             {{{"CG01_CODICE", 'C', 6}, ofTown(&italian::Town::landCode)},
              {{"CG01_DESCR", 'C', 40}, ofTown(&italian::Town::name)},
              {{"CG01_CAP", 'C', 8}, ofTown(&italian::Town::postCode)}},
             {},
             {{"CG01_CODICE"}}},
            {"CG12_BANCHE", "controparti", Exactly(0), Unused({"CG12_CODICE", "CG12_ABI", "CG12_CAB"})},
            {"MG22_DESTDIV",
             "controparti",
             EachOf(4),
             Owner("MG22", No(), AnyOf(Customers, RowNumber())) +
                 QVector<Field>{{{"MG22_CODDESTIN", 'C', 5}, RowNumber()},
                                {{"MG22_DESTRAGSOC", 'C', 60}, OneOf({"Magazzino", "Stabilimento", "Cantiere"})},
                                {{"MG22_CODICE_CG07", 'I'}, No()},
                                {{"MG22_RIFERIM", 'C', 40}, Chance(30, FullName())},
                                {{"MG22_TELEFONO", 'C', 20}, Chance(50, destination.Telephone())},
                                {{"MG22_FLGPREDEF", 'I'}, Chance(10, Fixed(1), No())}} +
                 destination.Columns("MG22_DESTIND", "MG22_DESTCAPCHAR", "MG22_DESTCITTA", "MG22_DESTPROV") +
                 Unused({"MG22_FAX"}),
             {{{"MG22_CLIFOR_CG44", 9000003}}, {{"MG22_CLIFOR_CG44", 1}, {"MG22_DESTIND", {}}}},
             {{"MG22_CLIFOR_CG44"}}},
            {"CG45_RIFERIMENTI",
             "controparti",
             EachOf(2),
             Owner("CG45", Chance(70, No(), Fixed(1)), AnyOf(Suppliers, RowNumber())) +
                 QVector<Field>{{{"CG45_PROGR", 'I'}, RowNumber()},
                                {{"CG45_NOMINATIVO", 'C', 60}, FullName()},
                                {{"CG45_MANSIONE", 'C', 60}, OneOf({"Acquisti", "Ufficio tecnico", {}})},
                                {{"CG45_TELEFONO", 'C', 20}, Address("CG45").Telephone()},
                                {{"CG45_CELLULARE", 'C', 20}, Chance(40, Mobile())},
                                {{"CG45_EMAIL", 'C', 60}, Chance(60, OnInternet("ufficio@"))}} +
                 Unused({"CG45_FAX", "CG45_NOTE"}),
             {{{"CG45_TIPOCF_CG44", 0}, {"CG45_CLIFOR_CG44", 9000003}}},
             {{"CG45_CLIFOR_CG44"}}}};
}

QVector<Table> ArticleTables() {
    return {{"MG66_ANAGRART",
             "articoli",
             Articles,
             {Company("MG66"),
              {{"MG66_CODART", 'C', 30}, ArticleCode()},
              {{"MG66_UM1", 'C', 3}, ByKind(Fixed("PZ"), Fixed("PZ"), OneOf({"PZ", "KG"}))},
              {{"MG66_UM2", 'C', 3}, {}},
              {{"MG66_FATTCONV", 'N', 12, 4}, No()},
              {{"MG66_FAM_MG53", 'C', 4}, OneOf({"MEC", "LAM"})},
              {{"MG66_GRUPPO_MG55", 'C', 4}, {}},
              {{"MG66_CODIVA_CG28", 'C', 4}, OneOf({"22", "22", "10"})},
              {{"MG66_PESONETTO", 'N', 12, 3}, Number(0.1, 40, 3)},
              {{"MG66_PESOLORDO", 'N', 12, 3}, {}},
              {{"MG66_COSTOSTD", 'N', 12, 4}, Chance(70, Number(0.5, 90, 2), No())},
              {{"MG66_COSTOULT", 'N', 12, 4}, Number(0.5, 90, 2)},
              {{"MG66_SCORTAMIN", 'N', 12, 2}, Whole(0, 20)},
              {{"MG66_SCORTAMAX", 'N', 12, 2}, Whole(20, 90)},
              {{"MG66_LOTTORIOR", 'N', 12, 2}, Whole(0, 20)},
              {{"MG66_GGAPPROV", 'I'}, Whole(0, 30)},
              {{"MG66_FLGOBSOLETO", 'I'}, Chance(3, Fixed(1), No())}},
             {{{"MG66_CODART", "PESO-MANCA"}, {"MG66_PESONETTO", "due"}}},
             {{"MG66_CODART"}}},
            {"MG87_ARTDESC",
             "articoli",
             [](const Options& options) { return Articles(options) + options.rows / 4; },
             {Company("MG87"),
              {{"MG87_CODART_MG66", 'C', 30}, Kinds({{Articles, ArticleCode()}, {Articles, ArticleCode()}})},
              {{"MG87_OPZIONE_MG5E", 'C', 10}, Fixed("")},
              {{"MG87_LINGUA_MG52", 'C', 4}, Kinds({{Articles, Fixed("")}, {Articles, Fixed("ING")}})},
              {{"MG87_DESCART", 'C', 72}, Kinds({{Articles, ArticleText()}, {Articles, Code("Item ", 1)}})},
              {{"MG87_DESCARTEST", 'M'}, Chance(20, Fixed("zincato a caldo"))}},
             {},
             {{"MG87_CODART_MG66"}}},
            {"PD18_ARTPROD",
             "articoli",
             Articles,
             {Company("PD18"),
              {{"PD18_CODART_MG66", 'C', 30}, ArticleCode()},
              {{"PD18_TIPOPROD_PD20", 'C', 2}, ByKind(Fixed("PF"), Fixed("SL"), Fixed("MP"))},
              {{"PD18_CODPROV_PD21", 'I'}, ByKind(Fixed(1), Fixed(1), Fixed(2))},
              {{"PD18_CODCICLO", 'C', 10}, Kinds({{Bills, Code("CIC", 5)}, {Articles, {}}})}},
             {},
             {{"PD18_CODART_MG66"}}},
            {"MG73_ARTCLIFOR",
             "articoli",
             [](const Options& options) { return options.rows + EachOf(3)(options); },
             Owner("MG73", Kinds({{EachOf(1), Fixed(1)}, {EachOf(3), No()}}), AnyOf(Suppliers, RowNumber())) +
                 QVector<Field>{{{"MG73_CODART_MG66", 'C', 30}, ArticleCode()},
                                {{"MG73_FLGFORPREF", 'I'}, Chance(40, Fixed(1), No())},
                                {{"MG73_CODARTCF", 'C', 30}, Code("COD-", 5)}},
             {},
             {{"MG73_CODART_MG66"}}}};
}

/// Lists 1 and 2 are of sales, 3 of purchases; prices of the first that have ended stand behind.
QVector<Table> PriceTables() {
    const Count halves = EachOf(2);
    const auto byList = [halves](const Rule& first, const Rule& second, const Rule& third, const Rule& ended) {
        return Kinds({{Articles, first}, {halves, second}, {halves, third}, {halves, ended}});
    };
    const Rule article = ArticleCode();
    return {{"LI10_LISTARTIC",
             "listini",
             [halves](const Options& options) { return Articles(options) + 3 * halves(options); },
             QVector<Field>{
                 Company("LI10"),
                 {{"LI10_NUMLIST", 'I'}, byList(Fixed(1), Fixed(2), Fixed(3), Fixed(1))},
                 {{"LI10_FLGVENDACQ", 'I'}, byList(No(), No(), Fixed(1), No())},
                 {{"LI10_CODART_MG66", 'C', 30}, byList(article, article, article, article)},
                 {{"LI10_DATAINIZIOVAL", 'T'}, byList(NewYear(2024), NewYear(2024), NewYear(2024), NewYear(2022))},
                 {{"LI10_DATAFINEVAL", 'T'}, byList({}, {}, {}, NewYear(2023))},
                 {{"LI10_QTA", 'N', 12, 2}, byList(No(), Fixed(10), No(), No())},
                 {{"LI10_PREZZO", 'N', 12, 4}, Number(1, 190, 2)},
                 {{"LI10_OPZIONE_MG5E", 'C', 10}, Fixed("")}} +
                 Unused({"LI10_DEPOS_MG58"}),
             {{{"LI10_CODART_MG66", "NON-CE"}}, {{"LI10_CODART_MG66", "GA-00001"}, {"LI10_DEPOS_MG58", "D2"}}},
             {{"LI10_CODART_MG66"}}},
            {"LI16_LISTARTCF",
             "listini",
             Times(2, halves),
             Owner("LI16", Kinds({{halves, No()}, {halves, Fixed(1)}}), AnyOf(Suppliers, RowNumber())) +
                 QVector<Field>{{{"LI16_CODART_MG66", 'C', 30}, article},
                                {{"LI16_DATAINIZIOVAL", 'T'}, NewYear(2024)},
                                {{"LI16_PREZZO", 'N', 12, 4}, Number(1, 190, 2)},
                                {{"LI16_SC1PER", 'N', 6, 2}, OneOf({0, 5, 10})},
                                {{"LI16_SC2PER", 'N', 6, 2}, OneOf({0, 0, 3})},
                                {{"LI16_MAG1PER", 'N', 6, 2}, OneOf({0, 0, 2})}} +
                 Unused({"LI16_SC3PER", "LI16_MAG2PER"}),
             {{{"LI16_TIPOCF_CG44", 0}, {"LI16_CLIFOR_CG44", 9000003}}},
             {{"LI16_CLIFOR_CG44"}, {"LI16_CODART_MG66"}}}};
}

QVector<Table> BillTables() {
    const Count ofProducts = Times(Components, Products);
    const Count ofParts = Times(Components, Parts);
    return {{"PD95_DISBA",
             "distinte",
             Bills,
             {Company("PD95"),
              {{"PD95_IDDISBA", 'I'}, RowNumber()},
              {{"PD95_CODART_MG66", 'C', 30}, ArticleCode()},
              {{"PD95_TIPO_DISTINTA", 'I'}, No()},
              {{"PD95_OPZIONE", 'C', 10}, Fixed("")}},
             {{{"PD95_CODART_MG66", "NON-CE"}}, {{"PD95_CODART_MG66", "GA-00001"}, {"PD95_OPZIONE", "ROSSO"}}},
             {{"PD95_CODART_MG66"}}},
            {"PD96_LEGAMIDISBA",
             "distinte",
             Times(Components, Bills),
             {{{"PD96_IDDISBA_PD95", 'I'}, OfParent(Components, RowNumber())},
              {{"PD96_SEQCOMP", 'I'}, Line(Components)},
              {{"PD96_COMPON", 'C', 30},
               Kinds({{ofProducts, AnyBehind(Products, Articles, ArticleCode())},
                      {ofParts, AnyBehind(Bills, Articles, ArticleCode())}})},
              {{"PD96_QUANT_1", 'N', 12, 3}, Number(0.5, 9, 1)}},
             {{{"PD96_IDDISBA_PD95", 1}, {"PD96_SEQCOMP", 9}, {"PD96_COMPON", "NON-CE"}}},
             {{"PD96_IDDISBA_PD95"}}},
            {"PD48_CICLI",
             "distinte",
             Times(Phases, Bills),
             {Company("PD48"),
              {{"PD48_CICLO_PD52", 'C', 10}, OfParent(Phases, Code("CIC", 5))},
              {{"PD48_SEQFASE", 'I'}, Each({10, 20})},
              {{"PD48_CODFASE_PD12", 'C', 6}, Each({"SALD", "ZINC"})},
              {{"PD48_IDDISBA_PD95", 'I'}, {}},
              {{"PD48_INDTIPOPROV", 'I'}, Each({0, 1})},
              {{"PD48_CODFORN_CG44", 'I'}, Turn(1, {{}, AnyOf(Suppliers, RowNumber())})},
              {{"PD48_MACCHINA_PD08", 'C', 6}, Each({"CS1", {}})},
              {{"PD48_TEMPOSETUP", 'N', 8, 2}, Whole(0, 30)},
              {{"PD48_TEMPOLAV", 'N', 8, 2}, Number(0.5, 20, 1)}},
             {},
             {{"PD48_CICLO_PD52"}}}};
}

Table TubeTable() {
    return {"TUBI",
            "tubolari",
            Tubes,
            {{{"CODICE", 'C', 30}, Code("TUBO-", 4)},
             {{"DESCRIZIONE", 'C', 60}, Each({"Tubo quadro 40x40x3", "Tubo quadro 60x60x4", "Tubo tondo 30x2"})},
             {{"PROFILO", 'C', 10}, Each({"TQ40", "TQ60", "TT30"})},
             {{"DIM_A", 'I'}, Each({40, 60, 30})},
             {{"DIM_B", 'I'}, Each({40, 60, 30})},
             {{"SPESSORE", 'N', 6, 1}, Each({3.0, 4.0, 2.0})},
             {{"LUNGHEZZA", 'I'}, OneOf({3000, 6000, 12000})},
             {{"PESO_ML", 'N', 8, 2}, Each({3.41, 6.71, 1.38})},
             {{"MATERIALE", 'C', 10}, OneOf({"S235", "S355"})},
             {{"COSTO", 'N', 8, 2}, Number(0.8, 9, 2)}},
            {{{"CODICE", "TUBO-MISURA"}, {"LUNGHEZZA", "sei"}}, {{"CODICE", ""}}}};
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    script.UsualVatCodes();
    script.Material("S235", "Acciaio S235");
    script.Material("S355", "Acciaio S355");
    script.WorkCentre("SALD", "Saldatura");
    script.WorkCentre("ZINC", "Zincatura");
    script.Keep("CG44_CLIFOR", "CG44_CODPAG_CG62", {"RB30", "RB60", "BO30"});
    script.Keep("CG44_CLIFOR", "CG44_NUMLIST", {"1", "2", "3"});
    script.Keep("CG44_CLIFOR", "CG44_CODAGE_MG17", {"A1", "A2"});
    script.Keep("CG44_CLIFOR", "CG44_ZONA_MG16", {"NORD", "SUD"});
    script.Keep("CG44_CLIFOR", "CG44_CATEG_MG15", {"IND", "RIV", "MAT"});
    script.Keep("CG44_CLIFOR", "CG44_PORTO_MG18", {"F", "A"});
    script.Keep("PD12_FASILAVORO", "PD12_CODFASE", {"SALD", "ZINC"});
    script.Keep("PD08_MACCHINE", "PD08_CODMACC", {"CS1"});
    script.Translate("CG44_CLIFOR", "CG44_BANAPP_CG12", "BP", "00001");
    script.Translate("MG66_ANAGRART", "MG66_UM1", "PZ", "NR");
    script.Translate("MG66_ANAGRART", "MG66_UM1", "KG", "KG");
    script.Translate("MG66_ANAGRART", "MG66_FAM_MG53", "MEC", "MECCANICA");
    script.Translate("MG66_ANAGRART", "MG66_FAM_MG53", "LAM", "LAMIERE");
    script.Translate("MG87_ARTDESC", "MG87_LINGUA_MG52", "ING", "EN");
    return script;
}

} // namespace

} // namespace gamma

Totals MakeGammaSqlServer(const Options& options) {
    using namespace gamma;
    const QuadrixScript script = PreparedFor(options);
    CsvFolder folder(options.folder);
    return Write("gamma.db", CounterpartyTables() + ArticleTables() + PriceTables() + BillTables(), options, script) +
           Write(folder, {TubeTable()}, options, script);
}

Totals MakeGammaTeamsystem(const Options& options) {
    using namespace gamma;
    return Write("gamma.db", CounterpartyTables(), options, PreparedFor(options));
}

} // namespace examples
