// EsaSoftware "e": a database in which a person has a number: names, addresses and contacts are the person's, who may
// be customer and supplier. Each row tells the company.

#include "examples/chartOfAccounts.h"

namespace examples {

namespace esatto {

namespace {

using namespace described;

constexpr qint64 Banks = 40;
constexpr qint64 Places = 2; ///< of a person that has further ones
constexpr qint64 Lists = 2;
const Count Articles = [](const Options& options) { return options.rows; };
const Count FurtherPlaces = EachOf(4);

Rule BankCode() { return Code("B", 4); }
Rule SupplierCode() { return Code("", 5); }
Rule ItemCode() { return Code("ES-", 5); }
Rule ItemCost() { return Named("esatto.cost", Number(0.5, 90, 2)); }
Rule ItemWeight() { return Named("esatto.weight", Number(0.1, 40, 3)); }

/// A table of the company.
Table Of(const char* name, const char* group, const Count& rows, const QVector<Field>& fields,
         const QVector<OddRow>& odd = {}, const QVector<QStringList>& indexes = {}) {
    return {QLatin1String(name),
            QLatin1String(group),
            rows,
            QVector<Field>{{{"DBGruppo", 'C', 3}, Fixed("A")}} + fields,
            odd,
            indexes};
}

Table RolesTable(const BankAccount& account) {
    return Of("ClientiFornitori", "controparti", Counterparties,
              QVector<Field>{{{"TipoAnagrafica", 'I'}, BySide(Fixed(1), Fixed(2))},
                             {{"CodCliFor", 'C', 15}, BySide(Code("", 5), SupplierCode())},
                             {{"IdAnagGen", 'I'}, IdentityNumber()},
                             {{"NumRifAltroIndir", 'I'}, Chance(50, Fixed(1), Fixed(0))},
                             {{"CodPagamento", 'C', 5}, OneOf({"RB30", "RB60", "BO60"})},
                             {{"CodBanca", 'C', 10}, account.OfBank(BankCode())},
                             {{"NumContoCorr", 'C', 25}, account.Number()},
                             {{"Cin", 'C', 1}, account.Check()},
                             {{"Iban", 'C', 40}, Chance(50, account.Iban())},
                             {{"CodBancaAzienda", 'C', 10}, Chance(30, Fixed("BA1"))},
                             {{"Sconto1", 'N', 10, 2}, OneOf({0, 0, 5, 10})},
                             {{"Sconto2", 'N', 10, 2}, Fixed(0)},
                             {{"CodListino", 'C', 5}, OneOf({"L1", "L2"})},
                             {{"CodDivisa", 'C', 3}, Fixed("EUR")},
                             {{"CodAgente", 'C', 5}, Chance(50, OneOf({"AG1", "AG2"}))},
                             {{"CodZona", 'C', 5}, OneOf({"NE", "NO"})},
                             {{"CodCategoria", 'C', 5}, OneOf({"IND", "RIV"})},
                             {{"CodIvaEsenz", 'C', 5}, Chance(5, Fixed("N8"))},
                             {{"CodPorto", 'C', 5}, OneOf({"FCO", "FRA"})},
                             {{"Fido", 'N', 18, 2}, OneOf({0, 5000, 25000})},
                             {{"FlagBlocco", 'I'}, Chance(2, Fixed(1), Fixed(0))},
                             {{"CodMastro", 'C', 12}, BySide(Fixed("0401"), Fixed("0501"))},
                             {{"Note", 'M'}, Chance(10, Fixed("Chiude il lunedì"))}} +
                  Unused({"CodLingua", "CodVettore"}),
              {{{"TipoAnagrafica", 1}, {"CodCliFor", "90001"}, {"IdAnagGen", 9000001}},
               {{"TipoAnagrafica", 1}, {"CodCliFor", "90002"}, {"IdAnagGen", 9000002}},
               {{"TipoAnagrafica", 2}, {"CodCliFor", "90003"}, {"IdAnagGen", 9000003}, {"Sconto1", "dieci"}}},
              {{"IdAnagGen"}});
}

/// The address of each person, and behind those the further ones.
Table AddressTable() {
    const Address address("AnagrGenIndirizzi");
    const auto byKind = [](const Rule& main, const Rule& further) {
        return Kinds({{Counterparties, main}, {FurtherPlaces, further}});
    };
    return Of("AnagrGenIndirizzi", "controparti", Sum(Counterparties, FurtherPlaces),
              QVector<Field>{{{"IdAnagGen", 'I'}, byKind(RowNumber(), OfParent(Places, RowNumber()))},
                             {{"NumProgr", 'I'}, byKind(Fixed(0), Line(Places))},
                             {{"RagSoc1", 'C', 60}, byKind(CompanyName(60), OneOf({"Magazzino", "Stabilimento"}))},
                             {{"CodStato", 'C', 5}, Fixed("IT")},
                             {{"NumTel", 'C', 20}, address.Telephone()},
                             {{"NumFax", 'C', 20}, Chance(30, address.Telephone())},
                             {{"IndirEmail", 'C', 60}, byKind(Chance(60, OnInternet("info@")), {})},
                             {{"SitoWeb", 'C', 60}, byKind(Chance(30, OnInternet("www.")), {})},
                             {{"FirmaUltVarData", 'T'}, Day(300)}} +
                  address.Columns("Indirizzo", "Cap", "Localita", "Provincia") +
                  Unused({"RagSoc2", "Localita2", "NumTel2", "NumCell"}),
              {{{"IdAnagGen", 9000002}, {"NumProgr", 0}, {"RagSoc1", "Meccanica Riva"}, {"Provincia", "TRENTO"}},
               {{"IdAnagGen", 9000003}, {"NumProgr", 0}, {"RagSoc1", "Fonderia"}}},
              {{"IdAnagGen"}});
}

QVector<Table> CounterpartyTables() {
    const BankAccount account("ClientiFornitori", 100, Banks);
    const Address person("AnagrGenContatti");
    return {RolesTable(account), AddressTable(),
            Of("AnagrGenCliFor", "controparti", Counterparties,
               {{{"IdAnagGen", 'I'}, RowNumber()},
                {{"PartitaIva", 'C', 16}, VatNumber()},
                {{"CodFiscale", 'C', 16}, TaxCode()},
                {{"FlagPersFisica", 'I'}, Fixed(0)},
                {{"Cognome", 'C', 40}, {}},
                {{"Nome", 'C', 40}, {}}},
               {}, {{"IdAnagGen"}}),
            Of("Banche", "controparti", Exactly(Banks),
               {{{"CodBanca", 'C', 10}, BankCode()},
                {{"DesBanca", 'C', 50}, Code("Banca ", 1)},
                {{"CodAbi", 'C', 5}, account.Abi()},
                {{"CodCab", 'C', 5}, account.Cab()},
                {{"CodBic", 'C', 11}, account.Bic()}},
               {}, {{"CodBanca"}}),
            Of("AnagrGenContatti", "controparti", EachOf(3),
               {{{"IdAnagGen", 'I'}, AnyOf(Counterparties, RowNumber())},
                {{"NumProgr", 'I'}, RowNumber()},
                {{"Cognome", 'C', 40}, LastName()},
                {{"Nome", 'C', 40}, FirstName()},
                {{"DesFunzione", 'C', 40}, OneOf({"Acquisti", "Amministrazione"})},
                {{"NumTel", 'C', 20}, person.Telephone()},
                {{"NumCell", 'C', 20}, {}},
                {{"IndirEmail", 'C', 60}, Chance(60, OnInternet("ufficio@"))}},
               {}, {{"IdAnagGen"}})};
}

QVector<Table> ArticleTables() {
    return {Of("ArtAnagrafica", "articoli", Articles,
               {{{"TipoAnagr", 'I'}, Fixed(1)},
                {{"CodArt", 'C', 40}, ItemCode()},
                {{"DesArt", 'C', 100}, ArticleText()},
                {{"DesEstesa", 'M'}, Chance(20, Fixed("Zincato a caldo"))},
                {{"RicercaAlternativa", 'C', 40}, Chance(30, Code("ALT-", 5))},
                {{"MagUm", 'C', 3}, Fixed("PZ")},
                {{"TecniciUm", 'C', 3}, Chance(30, Fixed("KG"))},
                {{"AcqUm", 'C', 3}, Chance(10, Fixed("KG"))},
                {{"FattoreConvUm", 'N', 12, 5}, Number(0.1, 40, 3)},
                {{"CodFamiglia", 'C', 5}, OneOf({"MECC", "IDRA"})},
                {{"CodGruppoCodifica", 'C', 5}, OneOf({"G1", "G2"})},
                {{"TipoArt", 'I'}, Whole(0, 2)},
                {{"StatoArt", 'C', 1}, Chance(95, Fixed("0"), OneOf({"1", "2"}))},
                {{"CodIva", 'C', 5}, Chance(90, Fixed("22"), Fixed("10"))},
                {{"AcqCodForAbituale", 'C', 15}, Chance(50, AnyOf(Suppliers, SupplierCode()))},
                {{"AcqGiorniApprov", 'I'}, Whole(1, 30)},
                {{"AcqLottoMin", 'N', 12, 3}, Whole(1, 10)},
                {{"AcqLottoMult", 'N', 12, 3}, Whole(1, 50)},
                {{"MagScortaMin", 'N', 12, 3}, Whole(0, 20)},
                {{"MagScortaMax", 'N', 12, 3}, Whole(20, 200)},
                {{"MagPuntoRiord", 'N', 12, 3}, Whole(0, 30)},
                {{"PesoNetto", 'N', 12, 3}, ItemWeight()},
                {{"PesoLordo", 'N', 12, 3}, Scaled(1.05, 3, ItemWeight())},
                {{"CostoStandard", 'N', 12, 4}, Chance(60, ItemCost(), Fixed(0))},
                {{"CostoUltimo", 'N', 12, 4}, ItemCost()},
                {{"FirmaUltVarData", 'T'}, Day(300)}},
               {{{"CodArt", "PESO-MANCA"}, {"PesoNetto", "due"}}, {{"CodArt", "PRESTAZIONE"}, {"TipoAnagr", 2}}},
               {{"CodArt"}}),
            Of("DBaseVersioni", "articoli", EachOf(6),
               {{{"CodDb", 'C', 40}, ItemCode()}, {{"QtaRifDb", 'N', 12, 3}, Fixed(1)}}, {}, {{"CodDb"}}),
            Of("ListiniRighe", "articoli", Times(Lists, Articles),
               {{{"CodListino", 'C', 5}, Each({"1", "2"})},
                {{"CodArticolo", 'C', 40}, OfParent(Lists, ItemCode())},
                {{"VarArt", 'C', 10}, {}},
                {{"PrezzoLis", 'N', 18, 5}, OfParent(Lists, Scaled(1.6, 2, ItemCost()))},
                {{"DataInizio", 'T'}, Fixed(QDate(2024, 1, 1))}},
               {}, {{"CodArticolo"}})};
}

Table AccountTable() {
    const QVector<Account> accounts = Chart(1, 3);
    const auto kind = [](const Account& account) { return QString(account.IsEconomic() ? u'E' : u'P'); };
    return Of("PianoConti", "conti", Exactly(accounts.size()),
              {{{"CodConto", 'C', 12}, Each(accounts, &Account::code)},
               {{"DesConto", 'C', 60}, Each(accounts, &Account::description)},
               {{"CodMastro", 'C', 12}, Each(accounts, &Account::Parent)},
               {{"TipoConto", 'C', 10}, Each(accounts, kind)},
               {{"SezBilancio", 'C', 1}, Each(accounts, &Account::kind)},
               {{"Livello", 'I'}, Each(accounts, &Account::Level)},
               {{"CodRiclass", 'C', 12}, {}},
               {{"FlagMovimentabile", 'I'}, Each(accounts, &Account::TakesPostings)}},
              {{{"CodConto", "99"}, {"DesConto", "Conti d'ordine"}, {"TipoConto", "D'ORDINE"}}});
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    script.UsualVatCodes();
    const QString roles = QStringLiteral("ClientiFornitori");
    script.Keep(roles, "CodPagamento", {"RB30", "RB60", "BO60"});
    script.Translate(roles, "CodBancaAzienda", "BA1", "00001");
    script.Keep(roles, "CodListino", {"L1", "L2"});
    script.Keep(roles, "CodAgente", {"AG1", "AG2"});
    script.Keep(roles, "CodZona", {"NE", "NO"});
    script.Keep(roles, "CodCategoria", {"IND", "RIV"});
    script.Keep(roles, "CodPorto", {"FCO", "FRA"});
    script.Translate("AnagrGenIndirizzi", "CodStato", "IT", "ITA");
    script.Translate("ArtAnagrafica", "MagUm", "PZ", "NR");
    script.Translate("ArtAnagrafica", "CodFamiglia", "MECC", "MECCANICA");
    script.Translate("ArtAnagrafica", "CodFamiglia", "IDRA", "IDRAULICA");
    script.Keep("ArtAnagrafica", "CodGruppoCodifica", {"G1", "G2"});
    return script;
}

} // namespace

} // namespace esatto

Totals MakeEsatto(const Options& options) {
    using namespace esatto;
    const QVector<Table> tables = CounterpartyTables() + ArticleTables() + QVector<Table>{AccountTable()};
    return Write("esatto.db", tables, options, PreparedFor(options));
}

} // namespace examples
