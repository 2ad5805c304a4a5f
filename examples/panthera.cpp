// Panthera: a database with production models, their activities and materials, and price lists of both directions. Its
// codes are padded with blanks. The counterparties and articles that it names are in Quadrix already.

#include "examples/plainTables.h"

namespace examples {

namespace panthera {

namespace {

using namespace described;

constexpr int CodeWidth = 25;
constexpr qint64 Materials = 3;
constexpr qint64 Activities = 2;
constexpr qint64 Scales = 2;
const Count Articles = [](const Options& options) { return options.rows; };
const Count Models = EachOf(4); ///< of the first articles
const Count OwnPrices = EachOf(5);
const Count KnownCustomers = EachOf(10);
const Count KnownSuppliers = EachOf(20);

const QString FirstArticle = QStringLiteral("PT-00001").leftJustified(CodeWidth);
const QString SecondArticle = QStringLiteral("PT-00002").leftJustified(CodeWidth);

Rule ArticleCode() { return Code("PT-", 5); }
Rule CustomerCode() { return Code("C", 5); }
Rule SupplierCode() { return Code("F", 5); }
/// A code as it stands in a column of fixed width.
Rule CodeOf(const Rule& code) { return Padded(CodeWidth, code); }
Rule ModelOf(qint64 rows) { return OfParent(rows, RowNumber()); }
Field Company() { return {{"ID_AZIENDA", 'C', 3}, Fixed("001")}; }

QVector<Table> ModelTables() {
    return {{"MODPRO",
             "distinte",
             Models,
             {Company(),
              {{"ID_MODELLO", 'I'}, RowNumber()},
              {{"R_ARTICOLO", 'C', CodeWidth}, CodeOf(ArticleCode())},
              {{"R_STABILIMENTO", 'C', 3}, OneOf({"S01", "S02"})},
              {{"QTA_BASE", 'N', 12, 3}, OneOf({1, 1, 10, 100})},
              {{"TIPO_MODELLO", 'C', 1}, Fixed("P")},
              {{"PRIORITA", 'I'}, Fixed(1)},
              {{"STATO", 'C', 1}, Fixed("V")},
              {{"R_COMMESSA", 'C', 10}, {}},
              {{"DESCRIZIONE", 'C', 60}, ArticleText()},
              {{"NOTE", 'C', 200}, Chance(10, Fixed("Ciclo esterno"))},
              {{"TIMESTAMP_CRZ", 'T'}, Day(300)}},
             {{{"R_ARTICOLO", FirstArticle}, {"PRIORITA", 2}, {"DESCRIZIONE", "Alternativo"}},
              {{"R_ARTICOLO", SecondArticle}, {"TIPO_MODELLO", "C"}},
              {{"R_ARTICOLO", "NON-CE"}}},
             {{"ID_MODELLO"}}},
            {"MODPRO_ATV",
             "distinte",
             Times(Activities, Models),
             {Company(),
              {{"ID_MODELLO", 'I'}, ModelOf(Activities)},
              {{"ID_ATTIVITA", 'I'}, Each({10, 20})},
              {{"R_OPERAZIONE", 'C', 10}, Each({"SALD", "ZINC"})},
              {{"R_CEN_LAVORO", 'C', 10}, Each({"CS1", {}})},
              {{"TEMPO_SETUP", 'N', 12, 4}, Number(0, 1, 2)},
              {{"TEMPO_LAV", 'N', 12, 4}, Number(0.1, 3, 2)},
              {{"NUM_RISORSE", 'I'}, Each({2, 1})},
              {{"POL_ATTIVITA", 'C', 1}, Each({"I", "E"})},
              {{"R_FORNITORE", 'C', 8}, Turn(1, {{}, AnyOf(KnownSuppliers, SupplierCode())})},
              {{"DESCRIZIONE", 'C', 60}, Each({"Saldatura", "Zincatura"})},
              {{"NOTE", 'C', 60}, {}}},
             {},
             {{"ID_MODELLO"}}},
            {"MODPRO_ATV_MAT",
             "distinte",
             Times(Materials, Models),
             {Company(),
              {{"ID_MODELLO", 'I'}, ModelOf(Materials)},
              {{"ID_ATTIVITA", 'I'}, Each({10, 10, 20})},
              {{"ID_RIGA_MAT", 'I'}, Line(Materials)},
              {{"R_ARTICOLO", 'C', CodeWidth}, CodeOf(AnyBehind(Models, Articles, ArticleCode()))},
              {{"COEFF_IMPIEGO", 'N', 12, 4}, Number(1, 40, 1)},
              {{"SEQUENZA_ORDIN", 'I'}, Line(Materials)},
              {{"NOTE", 'C', 60}, Chance(10, Fixed("destro e sinistro"))}},
             {{{"ID_MODELLO", 1}, {"ID_RIGA_MAT", 9}, {"R_ARTICOLO", "NON-CE"}}},
             {{"ID_MODELLO"}}}};
}

/// A list with a price of every article, some with scales, and prices of single counterparties behind them.
QVector<Table> ListTables(const QString& direction, const char* party, const Rule& anyOwner, const QString& list,
                          const QString& ended) {
    const QString name = "LST_" + direction;
    const Count scaled = EachOf(5);
    return {{name,
             "listini",
             Exactly(2),
             {Company(),
              {{"ID_LISTINO", 'C', 10}, Each({list, ended})},
              {{"STATO", 'C', 1}, Each({"V", "A"})},
              {{"DESCRIZIONE", 'C', 40}, Each({"Listino base", "Listino non più valido"})},
              {{"R_VALUTA", 'C', 3}, Fixed("EUR")},
              {{"DATA_INIZ_VAL", 'T'}, Day(1)}},
             {},
             {{"ID_LISTINO"}}},
            {name + "_RIG",
             "listini",
             Sum(Articles, OwnPrices),
             {Company(),
              {{"ID_LISTINO", 'C', 10}, Fixed(list)},
              {{"ID_VALIDITA", 'I'}, Fixed(1)},
              {{"ID_RIGA", 'I'}, RowNumber()},
              {{"R_ARTICOLO", 'C', CodeWidth}, CodeOf(Kinds({{Articles, ArticleCode()}, {OwnPrices, ArticleCode()}}))},
              {{party, 'C', 8}, Kinds({{Articles, {}}, {OwnPrices, anyOwner}})},
              {{"DATA_INIZ_VAL", 'T'}, Day(1)},
              {{"DATA_FINE_VAL", 'T'}, {}},
              {{"PREZZO", 'N', 12, 4}, Number(1, 190, 2)},
              {{"NOTE", 'C', 60}, Chance(5, Fixed("salvo venduto"))}},
             {{{"R_ARTICOLO", "NON-CE"}, {party, {}}},
              {{"R_ARTICOLO", FirstArticle}, {party, "NESSUNO"}},
              {{"ID_LISTINO", ended}, {"R_ARTICOLO", FirstArticle}, {party, {}}}},
             {{"ID_LISTINO"}}},
            {name + "_SCG",
             "listini",
             Times(Scales, scaled),
             {Company(),
              {{"ID_LISTINO", 'C', 10}, Fixed(list)},
              {{"ID_RIGA", 'I'}, OfParent(Scales, RowNumber())},
              {{"QTA_LIMITE", 'N', 12, 2}, Each({10, 100})},
              {{"PREZZO", 'N', 12, 4}, Number(1, 90, 2)},
              {{"SCONTO_1", 'N', 6, 2}, Each({0, 5})},
              {{"SCONTO_2", 'N', 6, 2}, {}},
              {{"SCONTO_3", 'N', 6, 2}, {}}},
             {},
             {{"ID_LISTINO", "ID_RIGA"}}}};
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    script.WorkCentre("SALD", "Saldatura");
    script.WorkCentre("ZINC", "Zincatura");
    script.Translate("MODPRO", "R_STABILIMENTO", "S01", "001");
    script.Translate("MODPRO", "R_STABILIMENTO", "S02", "002");
    script.Keep("MODPRO_ATV", "R_OPERAZIONE", {"SALD", "ZINC"});
    script.Keep("MODPRO_ATV", "R_CEN_LAVORO", {"CS1"});
    Prepare(script,
            {"ART_ICO", {}, Articles, {{{"CDART", 'C', 50}, ArticleCode()}, {{"ARDES", 'C', 100}, ArticleText()}}},
            options);
    PrepareCustomers(script, KnownCustomers(options), CustomerCode(), options);
    PrepareSuppliers(script, KnownSuppliers(options), SupplierCode(), options);
    return script;
}

} // namespace

} // namespace panthera

Totals MakePanthera(const Options& options) {
    using namespace panthera;
    const QVector<Table> tables = ModelTables() +
                                  ListTables("VEN", "R_CLIENTE", AnyOf(KnownCustomers, CustomerCode()), "V1", "V2") +
                                  ListTables("ACQ", "R_FORNITORE", AnyOf(KnownSuppliers, SupplierCode()), "A1", "A2");
    return Write("panthera.db", tables, options, PreparedFor(options));
}

} // namespace examples
