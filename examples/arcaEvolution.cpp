// Arca Evolution: customers and suppliers with contacts, branches and payment terms; articles with units, prices and
// codes; documents.

#include "examples/describedRules.h"

namespace examples {

namespace arcaEvolution {

namespace {

using namespace described;

constexpr qint64 DocumentLines = 2;
constexpr qint64 DocumentKinds = 4; ///< an order, its delivery note, its invoice and an order to a supplier
const Count Articles = [](const Options& options) { return options.rows; };
const Count Documents = Times(DocumentKinds, EachOf(5));

Rule No() { return Fixed(0); }
Rule ArticleCode() { return Code("AE-", 5); }
Rule CustomerCode() { return Code("C", 6); }
Rule SupplierCode() { return Code("F", 6); }
Rule CounterpartyCode() { return BySide(CustomerCode(), SupplierCode()); }

Table CounterpartyTable() {
    const Address address("CF");
    QVector<Field> fields{{{"Cd_CF", 'C', 7}, CounterpartyCode()},
                          {{"Cliente", 'L'}, BySide(Fixed(true), Fixed(false))},
                          {{"Fornitore", 'L'}, BySide(Fixed(false), Fixed(true))},
                          {{"Descrizione", 'C', 80}, CompanyName(80)},
                          {{"Indirizzo", 'C', 80}, address.Street()},
                          {{"Cap", 'C', 10}, address.PostCode()},
                          {{"Localita", 'C', 60}, address.Town()},
                          {{"Cd_Provincia", 'C', 10}, address.Province()},
                          {{"Cd_Nazione", 'C', 3}, Fixed("IT")},
                          {{"PartitaIva", 'C', 17}, VatNumber()},
                          {{"CodiceFiscale", 'C', 16}, TaxCode()},
                          {{"TipoDitta", 'C', 1}, Fixed("G")},
                          {{"Cd_CFGruppo1", 'C', 3}, OneOf({"G1", "G2"})},
                          {{"Cd_PG", 'C', 4}, OneOf({"R60", "R30", "CON"})},
                          {{"Cd_CGConto_Banca", 'C', 12}, Chance(10, Fixed("BANCA01"))},
                          {{"Iban", 'C', 40}, Chance(60, Iban())},
                          {{"Cd_VL", 'C', 3}, Fixed("EUR")},
                          {{"Id_Lingua", 'I'}, Fixed(1040)},
                          {{"Sconto", 'C', 10}, Chance(30, OneOf({"10", "10+4", "5"}))},
                          {{"Fido", 'N', 12, 2}, Chance(30, Whole(1000, 9000))},
                          {{"Cd_Aliquota", 'C', 3}, Chance(10, Fixed("N8"))},
                          {{"IvaSplit", 'L'}, Fixed(false)},
                          {{"Obsoleto", 'L'}, Flag(3)},
                          {{"Note_CF", 'M'}, Chance(10, Fixed("Chiamare prima"))},
                          {{"Cd_DOVettore", 'C', 2}, Chance(20, OneOf({"V1", "V2"}))},
                          {{"TimeIns", 'T'}, Day(300)}};
    fields += Unused({"CodiceIPA", "Cd_CFClasse1", "Cd_CGConto_Mastro", "Cd_CGConto_Merce", "BicCode", "Cd_Abicab",
                      "ContoCorrente", "Cd_LS_1", "Cd_CFZona", "Cd_CFSettore", "Cd_Agente_1", "Cd_Agente_2",
                      "Cd_DOPorto", "Cd_DOSped", "Cd_CFStato", "ScGiornoFisso1"});
    return {"CF",
            "controparti",
            Counterparties,
            fields,
            {{{"Cd_CF", "C900001"}, {"Sconto", "dieci"}, {"PartitaIva", {}}, {"CodiceFiscale", {}}},
             {{"Cd_CF", "X1"}, {"Cliente", false}, {"Fornitore", false}, {"PartitaIva", {}}, {"CodiceFiscale", {}}}},
            {{"Cd_CF"}}};
}

Table CarrierTable() {
    const Address address("DOVettore");
    return {"DOVettore", "controparti", Exactly(2),
            QVector<Field>{{{"Cd_DOVettore", 'C', 2}, Code("V", 1)},
                           {{"Descrizione", 'C', 80}, Code("Autotrasporti ", 1)}} +
                address.Columns("Indirizzo", "Cap", "Localita", "Cd_Provincia")};
}

QVector<Table> ContactTables() {
    const Address contact("CFContatto");
    const auto place = [](const QByteArray& name, const char* key) {
        const Address address(name);
        QVector<Field> fields{{{"Cd_CF", 'C', 7}, AnyOf(Customers, CustomerCode())},
                              {{key, 'C', 3}, Code({}, 3)},
                              {{"Descrizione", 'C', 80}, Fixed("Magazzino")},
                              {{"Indirizzo", 'C', 80}, Chance(85, address.Street())},
                              {{"Localita", 'C', 60}, address.Town()},
                              {{"Cap", 'C', 10}, address.PostCode()},
                              {{"Cd_Nazione", 'C', 3}, Fixed("IT")},
                              {{"Cd_Provincia", 'C', 10}, address.Province()}};
        return Table{QLatin1String(name), "controparti", EachOf(5), fields, {}, {{"Cd_CF"}}};
    };
    Table seats = place("CFSede", "Cd_CFSede");
    seats.fields.append({{"EMail", 'C', 80}, Chance(50, OnInternet("fatture@"))});
    return {{"CFContattoTipo",
             "controparti",
             Exactly(1),
             {{{"Id_CFContattoTipo", 'I'}, RowNumber()}, {{"Descrizione", 'C', 60}, Fixed("AMMINISTRAZIONE")}}},
            {"CFContatto",
             "controparti",
             Counterparties,
             {{{"Id_CFContatto", 'I'}, RowNumber()},
              {{"Cd_CF", 'C', 7}, CounterpartyCode()},
              {{"Id_CFContattoTipo", 'I'}, Chance(30, Fixed(1))},
              {{"Nome", 'C', 40}, FirstName()},
              {{"Cognome", 'C', 40}, LastName()},
              {{"Titolo", 'C', 10}, {}},
              {{"Descrizione", 'C', 60}, {}},
              {{"Sequenza", 'I'}, Fixed(1)},
              {{"Obsoleto", 'L'}, Flag(5)},
              {{"Telefono", 'C', 30}, contact.Telephone()},
              {{"Telefono2", 'C', 30}, {}},
              {{"Cellulare", 'C', 30}, {}},
              {{"Fax", 'C', 30}, {}},
              {{"Fax2", 'C', 30}, {}},
              {{"EMail", 'C', 80}, Chance(60, OnInternet("ufficio@"))},
              {{"EMailPec", 'C', 80}, Chance(30, OnInternet("posta@pec."))},
              {{"Url", 'C', 80}, {}},
              {{"Cd_CFDest", 'C', 3}, {}}},
             {},
             {{"Cd_CF"}}},
            place("CFDest", "Cd_CFDest"),
            seats,
            {"Banca",
             "controparti",
             Exactly(1),
             {{{"Cd_CGConto", 'C', 12}, Fixed("BANCA01")},
              {{"Descrizione", 'C', 60}, Fixed("Cassa rurale")},
              {{"Iban", 'C', 40}, Fixed("IT60X0542811101000000123456")}}}};
}

QVector<Table> TermTables() {
    return {{"PG",
             "tabelle",
             Exactly(3),
             {{{"Cd_PG", 'C', 4}, Each({"R60", "R30", "CON"})},
              {{"Descrizione", 'C', 60},
               Each({"Ricevuta bancaria 30/60/90", "Bonifico 30 giorni con acconto", "Contanti"})},
              {{"NumeroRate", 'I'}, Each({3, 2, 0})},
              {{"Sconto", 'C', 10}, {}},
              {{"Partenza", 'C', 2}, Each({"F", "D", {}})},
              {{"PrimaRata", 'I'}, Each({30, 0, {}})}}},
            {"PGRata",
             "tabelle",
             Exactly(2),
             {{{"Cd_PG", 'C', 4}, Fixed("R30")},
              {{"Riga", 'I'}, RowNumber()},
              {{"Giorni", 'N', 4}, Each({0, 30})},
              {{"Percentuale", 'N', 6, 2}, Each({40, 60})},
              {{"TipoPagamento", 'C', 3}, Fixed("BON")}}}};
}

Table ArticleTable() {
    QVector<Field> fields{{{"Id_AR", 'I'}, RowNumber()},
                          {{"Cd_AR", 'C', 60}, ArticleCode()},
                          {{"Descrizione", 'C', 150}, ArticleText()},
                          {{"Note_AR", 'M'}, Chance(10, Fixed("Verniciare a parte"))},
                          {{"Cd_ARMisura", 'C', 2}, Fixed("PZ")},
                          {{"Cd_Aliquota_V", 'C', 3}, Fixed("22")},
                          {{"Cd_ARGruppo1", 'C', 3}, OneOf({"G1", {}})},
                          {{"CostoStandard", 'N', 12, 4}, Number(0.1, 90, 2)},
                          {{"Sconto", 'C', 10}, {}},
                          {{"TimeIns", 'T'}, Day(300)}};
    fields += Unused({"DescrizioneBreve", "Cd_CGConto_VI", "Cd_ARClasse1", "Cd_ARMarca", "Cd_ARStato"});
    for (const char* flag : {"Obsoleto", "Fittizio", "DBFantasma", "DBKit"}) {
        fields.append({{flag, 'L'}, Fixed(false)});
    }
    for (const char* number : {"PesoNetto", "PesoLordo", "PesoNettoMks", "PesoLordoMks", "LunghezzaMks", "LarghezzaMks",
                               "AltezzaMks", "VolumeMks", "ScortaMinima", "ScortaMassima", "LottoMinimo",
                               "LottoRiordino", "MrpGiorniRiordino", "MrpPuntoRiordino"}) {
        fields.append({{number, 'N', 12, 3}, Chance(30, Whole(1, 20))});
    }
    return {"AR", "articoli", Articles, fields, {{{"Cd_AR", "COSTO"}, {"CostoStandard", "1.000.000"}}}, {{"Cd_AR"}}};
}

QVector<Table> ArticleTables() {
    const Rule article = ArticleCode();
    return {ArticleTable(),
            {"ARARMisura",
             "articoli",
             Articles,
             {{{"Cd_AR", 'C', 60}, article},
              {{"Cd_ARMisura", 'C', 2}, Fixed("PZ")},
              {{"UMFatt", 'N', 10, 4}, Fixed(1)},
              {{"DefaultMisura", 'L'}, Fixed(true)},
              {{"TipoARMisura", 'C', 1}, Fixed("E")}},
             {},
             {{"Cd_AR"}}},
            {"LS", "articoli", Exactly(1), {{{"Cd_LS", 'C', 7}, Fixed("VEN")}, {{"TipoLS", 'I'}, Fixed(1)}}},
            {"LSRevisione",
             "articoli",
             Exactly(1),
             {{{"Id_LSRevisione", 'I'}, Fixed(1)},
              {{"Cd_LS", 'C', 7}, Fixed("VEN")},
              {{"DataPubblicazione", 'T'}, Day(1)}}},
            {"LSArticolo",
             "articoli",
             Articles,
             {{{"Id_LSRevisione", 'I'}, Fixed(1)},
              {{"Cd_AR", 'C', 60}, article},
              {{"Prezzo", 'N', 12, 4}, Number(1, 190, 2)},
              {{"Sconto", 'C', 10}, {}}},
             {},
             {{"Cd_AR"}}},
            {"ARCodCF",
             "articoli",
             EachOf(3),
             {{{"Cd_AR", 'C', 60}, article},
              {{"Cd_CF", 'C', 7}, AnyOf(Suppliers, SupplierCode())},
              {{"CodiceAlternativo", 'C', 40}, Code("ALT-", 4)},
              {{"FornitorePreferenziale", 'L'}, Fixed(true)}},
             {},
             {{"Cd_AR"}}},
            {"ARAlias",
             "articoli",
             EachOf(5),
             {{{"Cd_AR", 'C', 60}, article},
              {{"Riga", 'I'}, Fixed(1)},
              {{"Alias", 'C', 60}, Code("8001234", 6)},
              {{"Cd_ARMisura", 'C', 2}, {}}},
             {},
             {{"Cd_AR"}}},
            {"ARLingua",
             "articoli",
             EachOf(8),
             {{{"Cd_AR", 'C', 60}, article},
              {{"Id_Lingua", 'I'}, Fixed(1033)},
              {{"Descrizione", 'C', 80}, Code("Item ", 1)}},
             {},
             {{"Cd_AR"}}},
            {"MGUbicazione",
             "articoli",
             Exactly(10),
             {{{"Cd_MG", 'C', 5}, Fixed("M1")}, {{"Cd_MGUbicazione", 'C', 40}, Code("A-", 2)}}}};
}

/// The documents that belong together have customer, articles and amounts in common.
QVector<Table> DocumentTables() {
    const Rule kind = Turn(1, {Fixed("OC"), Fixed("DDT"), Fixed("FV"), Fixed("OF")});
    const auto rowOfSet = RowOfSet(DocumentKinds, DocumentLines);
    const Amounts amounts("DO", DocumentLines, rowOfSet);
    const Rule customer = OfParent(DocumentKinds, AnyOf(Customers, CustomerCode()));
    const Rule article = With(rowOfSet, AnyOf(Articles, ArticleCode()));
    /// The row that a delivery note or an invoice carries out: that of the document before.
    const Rule before = [](const Place& place) { return QVariant(place.row + 1 - DocumentLines); };
    QVector<Field> rows{{{"Id_DORig", 'I'}, RowNumber()},
                        {{"Id_DOTes", 'I'}, OfParent(DocumentLines, RowNumber())},
                        {{"Riga", 'I'}, Line(DocumentLines)},
                        {{"TipoRigaRif", 'C', 1}, {}},
                        {{"Cd_AR", 'C', 60}, article},
                        {{"Descrizione", 'C', 80}, {}},
                        {{"Cd_ARMisura", 'C', 2}, Fixed("PZ")},
                        {{"Qta", 'N', 10, 2}, amounts.Quantity()},
                        {{"FattoreToUM1", 'N', 10, 4}, Fixed(1)},
                        {{"QtaEvasa", 'N', 10, 2}, No()},
                        {{"QtaEvadibile", 'N', 10, 2}, amounts.Quantity()},
                        {{"PrezzoUnitarioV", 'N', 12, 4}, amounts.Price()},
                        {{"PrezzoUnitarioScontatoV", 'N', 12, 4}, amounts.Price()},
                        {{"PrezzoTotaleV", 'N', 14, 2}, amounts.RowTotal()},
                        {{"Cd_Aliquota", 'C', 3}, Fixed("22")},
                        {{"DataConsegna", 'T'}, Day(360)},
                        {{"Id_DORig_Evade", 'I'}, Turn(DocumentLines, {{}, before, before, {}})}};
    rows += Unused({"ScontoRiga", "Cd_MG_P", "Cd_MG_A", "TipoPC", "Omaggio", "NoteRiga"});
    rows.append({{"Evasa", 'L'}, Fixed(false)});
    return {{"DO", "documenti", Exactly(DocumentKinds), {{{"Cd_DO", 'C', 3}, kind}, {{"Descrizione", 'C', 40}, {}}}},
            {"DOTes",
             "documenti",
             Documents,
             {{{"Id_DOTes", 'I'}, RowNumber()},
              {{"Cd_DO", 'C', 3}, kind},
              {{"CliFor", 'C', 1}, Turn(1, {Fixed("C"), Fixed("C"), Fixed("C"), Fixed("F")})},
              {{"TipoDocumento", 'C', 1}, Turn(1, {Fixed("O"), Fixed("B"), Fixed("F"), Fixed("O")})},
              {{"NumeroDoc", 'C', 10}, OfParent(DocumentKinds, Code({}, 1))},
              {{"DataDoc", 'T'}, OfParent(DocumentKinds, Day(300))},
              {{"EsAnno", 'C', 4}, Fixed("2024")},
              {{"Cd_CF", 'C', 7}, Turn(1, {customer, customer, customer, AnyOf(Suppliers, SupplierCode())})},
              {{"Cd_CFDest", 'C', 3}, {}},
              {{"NumeroDocRif", 'C', 20}, {}},
              {{"DataDocRif", 'T'}, {}},
              {{"Esecutivo", 'L'}, Fixed(true)},
              {{"DataConsegna", 'T'}, Day(360)},
              {{"Cd_VL", 'C', 3}, Fixed("EUR")},
              {{"Cambio", 'N', 10, 4}, No()},
              {{"Cd_PG", 'C', 4}, Fixed("R60")},
              {{"ScontoCassa", 'N', 6, 2}, No()},
              {{"Cd_DOPorto", 'C', 3}, {}},
              {{"NotePiede", 'M'}, {}}},
             {{{"NumeroDoc", "bozza"}}, {{"Cd_CF", "C999999"}}},
             {{"Id_DOTes"}}},
            {"DORig", "documenti", Times(DocumentLines, Documents), rows, {}, {{"Id_DOTes"}, {"Id_DORig"}}},
            {"DOTotali",
             "documenti",
             Documents,
             {{{"Id_DOTes", 'I'}, RowNumber()},
              {{"TotImponibileV", 'N', 14, 2}, amounts.Net()},
              {{"TotImpostaV", 'N', 14, 2}, amounts.Vat()},
              {{"TotDocumentoV", 'N', 14, 2}, amounts.Gross()}},
             {},
             {{"Id_DOTes"}}}};
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    script.VatCode("22", "IVA 22%", 22);
    script.VatCode("N8", "Non imponibile art. 8", 0);
    script.Translate("CF", "Cd_Nazione", "IT", "ITA");
    script.Translate("CF", "Cd_Aliquota", "N8", "N8");
    script.Translate("CF", "Cd_Aliquota", "22", "22");
    for (const char* term : {"R60", "R30", "CON"}) {
        script.Translate("CF", "Cd_PG", term, term);
    }
    script.Translate("AR", "Cd_ARMisura", "PZ", "NR");
    script.Translate("AR", "Cd_Aliquota_V", "22", "22");
    script.Translate("AR", "Cd_ARGruppo1", "G1", "MECCANICA");
    script.Translate("DO", "Cd_DO", "OC", "ORDCL");
    script.Translate("DO", "Cd_DO", "DDT", "DDTVE");
    script.Translate("DO", "Cd_DO", "FV", "FATVE");
    script.Translate("DO", "Cd_DO", "OF", "ORDFO");
    script.Translate("MG", "Cd_MG", "M1", "001");
    script.Translate("PGRata", "TipoPagamento", "BON", "BONIF");
    script.DocumentReason("ORD", "ORDCL", "ORD");
    script.DocumentReason("VEN", "DDTVE", "DDT");
    script.DocumentReason("VEN", "FATVE", "FAT");
    script.DocumentReason("ORD", "ORDFO", "ORD");
    return script;
}

} // namespace

} // namespace arcaEvolution

Totals MakeArcaEvolution(const Options& options) {
    using namespace arcaEvolution;
    const QVector<Table> tables = QVector<Table>{CounterpartyTable(), CarrierTable()} + ContactTables() + TermTables() +
                                  ArticleTables() + DocumentTables();
    return Write("arca.db", tables, options, PreparedFor(options));
}

} // namespace examples
