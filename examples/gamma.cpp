// Gamma of TeamSystem: a database whose columns begin with the code of their table. Customers and suppliers point to a
// general register with older versions of its records; articles, price lists, bills of two levels with their cycles,
// and a CSV file of tubes beside it.

#include "examples/gamma.h"
#include "examples/CsvWriter.h"
#include "examples/italianWords.h"

namespace examples {

namespace gamma {

Field Company(const QByteArray& table) { return {{table + "_DITTA_CG18", 'I'}, Fixed(1)}; }
QVector<Field> Owner(const QByteArray& table, const Rule& side, const Rule& code) {
    return {Company(table), {{table + "_TIPOCF_CG44", 'I'}, side}, {{table + "_CLIFOR_CG44", 'I'}, code}};
}

namespace {

const Count OldRecords = EachOf(20); ///< of the first in the general register

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
            Sum(Counterparties, OldRecords),
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
