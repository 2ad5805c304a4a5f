// Arca Evolution: a SQL Server database, ARCAEVOLUTION unless the setting Databasename names another. Counterparties
// with destinations, invoicing addresses and contacts. The refresh of the suppliers and the payment terms stand in
// modImport_ArcaEvolution_base.cpp, articles in modImport_ArcaEvolution_articles.cpp, documents in
// modImport_ArcaEvolution_documents.cpp.
// CF, AR, LS, DO and their companions are known from databases and applications; what CFStato and TipoDitta mean, the
// columns of PGRata and the house number behind the last comma of a street are this system's own reading.
// Known gaps: the form of address of a contact, locations of single articles, brands.

#include "adapters/origins/ArcaEvolution/modImport_ArcaEvolution.h"

#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/map/carrierCodes.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/tiedRows.h"
#include "adapters/contract/write/Document.h"
#include "adapters/origins/ArcaEvolution/modImport_ArcaEvolution_links.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_ArcaEvolution {

const contract::Origin& Entry();

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Contatti = QStringLiteral("CFContatto");
const QString TipiContatto = QStringLiteral("CFContattoTipo");
const QString SediTable = QStringLiteral("CFSede");

// --- Mappings -----------------------------------------------------------------------------------------------------

/// The language of the counterparty, Italian when the source has none; a number that is not known is recorded.
Rule Language() {
    Rule rule{"1040 \"IT\", 1033 \"EN\", 1031 \"DE\", 1036 \"FR\", 3082 \"ES\"; \"IT\" se è vuoto; altrimenti "
              "tradotto con SYS_IMP (CF, Id_Lingua)",
              [](const RuleInput& input) -> RuleValue {
                  if (input.Text().isEmpty()) {
                      return schema::defaults::Language;
                  }
                  const QString language = LanguageOf(input.session, input.Text());
                  return language.isEmpty() ? RuleValue() : RuleValue(language);
              }};
    return WithDefault(std::move(rule));
}

/// Zero is no day of the month.
Rule FixedDay() {
    return {"com'è, niente se è zero", [](const RuleInput& input) -> RuleValue {
                const QString day = input.Text();
                return day.isEmpty() || day == "0" ? RuleValue() : RuleValue(day);
            }};
}

/// Destinations and invoicing addresses differ in the column of their number alone.
Mapping BranchMapping(const QString& table, const QString& number, const QString& type) {
    return {"CON_SED",
            table,
            {
                {"CDCON", "Cd_CF", Code()},
                {"CDSED", number, Digits(3)},
                {"SETIP", "", Constant(type)},
                {"SERAS", "Descrizione", Text()},
                {"SEIND", "Indirizzo", Text()},
                {"SECAP", "Cap", WhenNotBlank("Localita", Text())},
                {"SECIT", "Localita", WhenNotBlank("Localita", Text())},
                {"SEPRO", "Cd_Provincia", Text()},
                {"SENAZ", "Cd_Nazione", Country(Cf, "Cd_Nazione")},
                {"SEDEF", "", Constant(false)},
            }};
}

const Mapping& SediConsegna() {
    static const Mapping mapping = BranchMapping(Destinazioni, "Cd_CFDest", "CO");
    return mapping;
}

const Mapping& SediFattura() {
    static const Mapping mapping = BranchMapping(SediTable, "Cd_CFSede", "FT");
    return mapping;
}

const Mapping& Riferimenti() {
    static const Mapping mapping{
        "CON_RIF",
        Contatti,
        {
            {"CDCON", "Cd_CF", Code()},
            {"RFNOM", "Cognome, Nome", Text()},
            {"RFQUA", "Descrizione", Text()},
        },
    };
    return mapping;
}

// --- Counterparties -----------------------------------------------------------------------------------------------

/// The roles that the flags tell; without any, the first letter of the code does.
Roles RolesOf(const SourceRow& row) {
    const Roles flags{mod_ovTools::ToBoolean(row.Value("Cliente")), mod_ovTools::ToBoolean(row.Value("Fornitore"))};
    if (flags.customer || flags.supplier) {
        return flags;
    }
    const QString code = row.Text("Cd_CF").toUpper();
    if (!code.startsWith(u'C') && !code.startsWith(u'F')) {
        throw ImportError(
            QStringLiteral("colonne 'Cliente', 'Fornitore', 'Cd_CF': '%1' non è né cliente né fornitore").arg(code));
    }
    return {code.startsWith(u'C'), code.startsWith(u'F')};
}

// The counterparty's bank: an Italian IBAN tells its parts itself; without one the other columns do.

QString IbanOf(const SourceRow& row) { return row.Text("Iban").remove(u' ').toUpper(); }

Rule ValidIban() {
    return {"senza spazi, maiuscolo; se non è valido va nel log e non si scrive",
            [](const RuleInput& input) -> RuleValue {
                const QString iban = IbanOf(input.row);
                if (!iban.isEmpty() && !ValidateIBAN(iban)) {
                    modImport::LogNote(input.session, QStringLiteral("IBAN NON VALIDO: %1: '%2'")
                                                          .arg(input.session.Errors.RowKey(), input.row.Text("Iban")));
                    return std::nullopt;
                }
                return iban.isEmpty() ? RuleValue() : RuleValue(iban);
            }};
}

/// A stretch of a text, to its end without a length.
struct Stretch {
    qsizetype from = 0;
    qsizetype length = -1;
};

/// @param other of the second column, where there is no valid Italian IBAN
Rule BankPart(const Stretch& ofIban, const Stretch& other = {}) {
    return {QStringLiteral("dal carattere %1 di un IBAN italiano%2; niente se è vuoto")
                .arg(ofIban.from + 1)
                .arg(QStringLiteral(", altrimenti dal %1 della seconda colonna").arg(other.from + 1)),
            [ofIban, other](const RuleInput& input) -> RuleValue {
                const QString iban = IbanOf(input.row);
                const bool isItalian = iban.startsWith(QLatin1String("IT")) && ValidateIBAN(iban);
                const QString text = isItalian ? iban.mid(ofIban.from, ofIban.length)
                                     : input.columns.size() > 1
                                         ? input.row.Text(input.columns.at(1)).mid(other.from, other.length)
                                         : QString();
                return text.isEmpty() ? RuleValue() : RuleValue(text);
            }};
}

/// Writes the branches and returns the destinations by their code in the source. The two kinds are numbered apart
/// there.
QHash<QString, Owner> WriteBranches(ImportRun& run, CounterpartyWriter& writer, const SourceRow& row,
                                    const Owner& counterparty) {
    Session& session = run.GetSession();
    QHash<QString, Owner> destinations;
    const auto query = [&](const QString& table, const QString& number) {
        return QStringLiteral("SELECT * FROM %1\rWHERE %2\rORDER BY %3")
            .arg(table, TiedTo(session.SourceConnection(), "Cd_CF", row), number);
    };
    ForEachChild(session, query(Destinazioni, "Cd_CFDest"), Destinazioni, "Cd_CFDest", [&](const SourceRow& branch) {
        if (!branch.IsBlank("Indirizzo")) {
            TargetRow target = writer.NewRow("CON_SED");
            SediConsegna().Apply(target, session, branch, {counterparty.key});
            destinations.insert(branch.Text("Cd_CFDest"), writer.Branch(counterparty, target));
        }
    });
    ForEachChild(session, query(SediTable, "Cd_CFSede"), SediTable, "Cd_CFSede", [&](const SourceRow& branch) {
        if (!branch.IsBlank("Indirizzo")) {
            TargetRow target = writer.NewRow("CON_SED");
            SediFattura().Apply(target, session, branch, {counterparty.key});
            writer.Mail(writer.Branch(counterparty, target), "@ Principale", branch.Text("EMail"));
        }
    });
    return destinations;
}

QString ContactsOf(Session& session, const SourceRow& row) {
    return "SELECT * FROM CFContatto\rWHERE Cd_CF = " + LiteralOf(session.SourceConnection(), row.Value("Cd_CF")) +
           "\rORDER BY Sequenza";
}

bool IsNamed(const SourceRow& contact) { return !contact.IsBlank("Nome") || !contact.IsBlank("Cognome"); }

/// Whether the certified address of a contact is the one of the counterparty itself.
bool IsOwnPec(const SourceRow& contact) {
    return !mod_ovTools::ToBoolean(contact.Value("Obsoleto")) && !IsNamed(contact) && contact.IsBlank("Cd_CFDest") &&
           !contact.IsBlank("EMailPec");
}

/// The certified address of the counterparty: of the first contact that is the counterparty itself.
Rule CertifiedMail() {
    return {"EMailPec della prima riga di CFContatto senza nome né destinazione, minuscolo",
            [](const RuleInput& input) -> RuleValue {
                RuleValue found;
                ForEachChild(input.session, ContactsOf(input.session, input.row), Contatti, "Sequenza",
                             [&found](const SourceRow& contact) {
                                 if (!found && IsOwnPec(contact)) {
                                     found = contact.Text("EMailPec").toLower();
                                 }
                             });
                return found;
            }};
}

/// A contact with a name is a person of its own. Which destination the person sits at has no column: it is noted.
Owner WritePerson(ImportRun& run, CounterpartyWriter& writer, const SourceRow& contact, const Owner& counterparty) {
    Session& session = run.GetSession();
    TargetRow target = writer.NewRow("CON_RIF");
    Riferimenti().Apply(target, session, contact, {counterparty.key});
    if (!contact.IsBlank("Cd_CFDest")) {
        target.Set("RFNOT", QString("Destinazione: " + contact.Text("Cd_CFDest")));
    }
    const Recordset type =
        session.SourceConnection().ExecuteWC("SELECT Descrizione FROM CFContattoTipo\rWHERE Id_CFContattoTipo = " +
                                             LiteralOf(session.SourceConnection(), contact.Value("Id_CFContattoTipo")));
    if (!type.Eof()) {
        target.Set("RFTIT", SourceRow(type).Text("Descrizione"));
    }
    return writer.Contact(counterparty, target);
}

void WriteContact(ImportRun& run, CounterpartyWriter& writer, const SourceRow& contact, const Owner& counterparty,
                  const QHash<QString, Owner>& destinations) {
    const Owner owner = IsNamed(contact) ? WritePerson(run, writer, contact, counterparty)
                                         : destinations.value(contact.Text("Cd_CFDest"), counterparty);
    writer.Telephone(owner, "Ufficio", contact.Text("Telefono"));
    writer.Telephone(owner, "Ufficio 2", contact.Text("Telefono2"));
    writer.Telephone(owner, "Cellulare", contact.Text("Cellulare"));
    writer.Telephone(owner, "Fax (uff.)", contact.Text("Fax"));
    writer.Telephone(owner, "Fax", contact.Text("Fax2"));
    writer.Mail(owner, "@ Principale", contact.Text("EMail"));
    writer.WebSite(owner, contact.Text("Url"));
}

/// Whether the counterparty's own certified address is that one, as `CertifiedMail` gives it to a new one.
bool HasCertifiedMail(ImportRun& run, const Owner& counterparty, const QString& address) {
    const QString there = LookUp(run.GetSession(), "CON_TRO", "CDCON", counterparty.key, "COPEC");
    return there.compare(address, Qt::CaseInsensitive) == 0;
}

void WriteContacts(ImportRun& run, CounterpartyWriter& writer, const SourceRow& row, const Owner& counterparty,
                   const QHash<QString, Owner>& destinations) {
    bool ownPec = false;
    ForEachChild(
        run.GetSession(), ContactsOf(run.GetSession(), row), Contatti, "Sequenza", [&](const SourceRow& contact) {
            if (mod_ovTools::ToBoolean(contact.Value("Obsoleto"))) {
                return;
            }
            WriteContact(run, writer, contact, counterparty, destinations);
            // One certified address has its column; another has none, and stands among the counterparty's addresses.
            if (IsOwnPec(contact) && !ownPec && HasCertifiedMail(run, counterparty, contact.Text("EMailPec"))) {
                ownPec = true;
            } else {
                writer.Mail(counterparty, "@ PEC", contact.Text("EMailPec"));
            }
        });
}

Needs FurtherNeeds() {
    return {{&SediConsegna(), &SediFattura(), &Riferimenti()},
            {{"Banca", {"Cd_CGConto", "Iban"}},
             {SediTable, {"EMail"}},
             {Contatti,
              {"Cd_CF", "Id_CFContattoTipo", "Sequenza", "Obsoleto", "Telefono", "Telefono2", "Cellulare", "Fax",
               "Fax2", "EMail", "EMailPec", "Url", "Cd_CFDest"}},
             {TipiContatto, {"Id_CFContattoTipo", "Descrizione"}}},
            {{"CON_RIF", {"RFNOT", "RFTIT"}}}};
}

// --- Declarations -------------------------------------------------------------------------------------------------

/// One that is there already keeps its bank and its certified address.
Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiArcaEvolution"},
        .source = {.table = Cf, .key = "Cd_CF", .order = "Cd_CF"},
        .roles = {{"Cliente", "Fornitore", "Cd_CF"}, RolesOf},
        .name = "Descrizione",
        .vatNumber = "PartitaIva",
        .taxCode = "CodiceFiscale",
        .number = {"Cd_CF", From(2)},
        .lines = {{"CORAS", "Descrizione", First(35)},
                  {"CORA2", "Descrizione", From(36)},
                  {"DTINS", "TimeIns", MomentOrNow()},
                  {"COANN", "Obsoleto", Flag()},
                  ByRole("COMAC", "COMAF", "Cd_CGConto_Mastro", NotBlank(Text())),
                  DiscountsByRole("Sconto"),
                  {"COPER", "TipoDitta", Choice({{"G", "0"}, {"", "0"}}, "1")},
                  {"COIND", "Indirizzo", StreetPart(&Street::first, "primi 35 caratteri davanti al numero civico")},
                  {"COIN2", "Indirizzo", NotBlank(StreetPart(&Street::rest, "ciò che resta davanti al numero civico"))},
                  {"CONRC", "Indirizzo",
                   NotBlank(StreetPart(&Street::number, "numero civico dietro l'ultima virgola"))},
                  {"COCAP", "Cap", Text()},
                  {"COCIT", "Localita", Text()},
                  {"COPRO", "Cd_Provincia", Text()},
                  {"CONAZ", "Cd_Nazione", Country(Cf, "Cd_Nazione")},
                  {"COLNG", "Id_Lingua", Language()},
                  {"COZON", "Cd_CFZona", Translated(Cf, "Cd_CFZona")},
                  {"COSET", "Cd_CFSettore", Translated(Cf, "Cd_CFSettore")},
                  {"COVAL", "Cd_VL", Currency(Cf, "Cd_VL")},
                  {"COFIS", "CodiceFiscale", NotBlank(Text())},
                  {"COIVA", "PartitaIva", NotBlank(Text())},
                  {"COCFE", "CodiceIPA", NotBlank(Text())},
                  {"COESE", "Cd_Aliquota", ExemptVat(Cf, "Cd_Aliquota")},
                  {"COSPP", "IvaSplit", Flag()},
                  ByRole("COMOP", "COMOA", "Cd_PG", TranslatedOrKnown(Cf, "Cd_PG", "TAB_MOP")),
                  ByRole("COMAS", "COCAC", "Cd_CGConto_Merce", NotBlank(Text())),
                  ByRole("COLSC", "COLSF", "Cd_LS_1", PriceListCode()),
                  ByRole("COCCC", "COCCF", "Cd_CFGruppo1", Translated(Cf, "Cd_CFGruppo1")),
                  ByRole("COGPV", "COGPA", "ScGiornoFisso1", FixedDay()),
                  {"COBAN", "Cd_CGConto_Banca", OurBank()},
                  {"COFID", "Fido", RoundedTo(2)},
                  {"COCLC", "Cd_CFClasse1", Translated(Cf, "Cd_CFClasse1")},
                  {"COAGE", "Cd_Agente_1", Translated(Cf, "Cd_Agente_1")},
                  {"COAG2", "Cd_Agente_2", Translated(Cf, "Cd_Agente_2")},
                  {"COPOR", "Cd_DOPorto", Translated(Cf, "Cd_DOPorto")},
                  {"COMOS", "Cd_DOSped", Translated(Cf, "Cd_DOSped")},
                  {"COVEP", "Cd_DOVettore", Carrier(Cf, "Cd_DOVettore")},
                  // A state is only set on counterparties that are held up.
                  {"COBLK", "Cd_CFStato", Choice({{"", "0"}}, "1")},
                  {"CONOT", "Note_CF", Text()},
                  {"COIBA", "Iban", ValidIban()},
                  {"COBIC", "BicCode", NotBlank(Text())},
                  {"COCIN", "Iban", BankPart({4, 1})},
                  {"COABI", "Iban, Cd_Abicab", BankPart({5, 5}, {0, 5})},
                  {"COCAB", "Iban, Cd_Abicab", BankPart({10, 5}, {5})},
                  {"COCOC", "Iban, ContoCorrente", BankPart({15}, {0})},
                  {"COPEC", "Cd_CF", CertifiedMail()}},
        .created = "TimeIns",
        .after =
            [](ImportRun& run, CounterpartyWriter& writer, const SourceRow& row, const Owner& owner) {
                WriteContacts(run, writer, row, owner, WriteBranches(run, writer, row, owner));
            },
        .further = FurtherNeeds(),
    };
}

/// Gives a carrier to the counterparties that name it and have none yet.
void SetCarrier(ImportRun& run, CounterpartyWriter& /*writer*/, const SourceRow& row, const Owner& carrier) {
    Session& session = run.GetSession();
    const ovConnection& source = session.SourceConnection();
    ForEachChild(session, "SELECT Cd_CF FROM CF\rWHERE Cd_DOVettore = " + LiteralOf(source, row.Value("Cd_DOVettore")),
                 Cf, "Cd_CF", [&](const SourceRow& party) {
                     const QString code = PartyOf(session, party.Text("Cd_CF"));
                     const QString without = Equals(session, "CDCON", code) + " AND COALESCE(COVEP, '') = ''";
                     if (const qint64 id = IdWhere(session, "CON_TRO", without); id != 0) {
                         TargetRow target(run, "CON_TRO");
                         target.Set("COVEP", carrier.key);
                         target.Update("WHERE " + Equals("RECORD_ID", id));
                     }
                 });
}

/// Carriers follow the counterparties under the same button, which has emptied the tables: nothing is emptied here.
Counterparties Vettori() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportVettoriArcaEvolution",
                  .announcement = "Inizio importazione vettori",
                  .log = LogStart::Behind,
                  .step = "Vettori",
                  .completion = "Vettori importati correttamente!"},
        .source = {.table = "DOVettore", .key = "Cd_DOVettore", .order = "Cd_DOVettore"},
        .roles = Always({.carrier = true}),
        .name = "Descrizione",
        .codeTable = Cf,
        .lines = {{"CORAS", "Descrizione", First(35)},
                  {"CORA2", "Descrizione", From(36)},
                  {"COIND", "Indirizzo", Text()},
                  {"COCAP", "Cap", Text()},
                  {"COCIT", "Localita", Text()},
                  {"COPRO", "Cd_Provincia", Text()}},
        .empties = false,
        .after = SetCarrier,
        .further = {{}, {{Cf, {"Cd_CF", "Cd_DOVettore"}}}, {{"CON_TRO", {"COCGE", "COFGE", "COVEP"}}}},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Arca Evolution",
        Module,
        {"SQL Server", sourceSettings::Server("ARCAEVOLUTION")},
        Buttons("YYNYYNNY", {{Button::Doc, "Importa Documenti"},
                             {Button::Acq, "Importa Mod. di Pag."},
                             {Button::Disegni, "Sistema Dati Fornitori"}}),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti()),
            ProcedureOf(Button::Cli, Vettori()),
            ArticoliProcedure(),
            ProcedureOf(Button::Doc, Documenti()),
            ProcedureOf(Button::Acq, Pagamenti()),
            ProcedureOf(std::nullopt, Listini()),
            SistemaSediLegaliFornitori(),
        },
    };
    return origin;
}

} // namespace modImport_ArcaEvolution
