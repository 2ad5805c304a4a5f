// Metodo (98, Evolus): a SQL Server database, METODO unless the setting Databasename names another. Counterparties with
// destinations, contacts, carriers and letters of intent, and the refresh of their numbers, stand here, articles, base
// tables and documents in the other files of the module. Tables and columns are those of a published database project;
// the meaning of some numbers (PROVENIENZA, TIPOUM, TIPO of effects and documents) is what its views tell, or known
// from use. A code is a letter and six characters aligned on the right ("C 10189"); zero is no code. What a
// counterparty has for each year is read of its last one. Not read: descriptions of codes that Quadrix has of its own
// (nations, zones, agents ...), PROGDICHINTENTO, as every letter of intent is imported with its days. Known gaps: bills
// (DISTINTAARTCOMPOSTI), stock, price lists but the first price.

#include "adapters/origins/Metodo/modImport_Metodo.h"

#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Metodo {

const contract::Origin& Entry();

Rule NotZeroCode(const Rule& rule) {
    return {rule.text + QStringLiteral("; only when neither blank nor zero"),
            [apply = rule.apply](const RuleInput& input) {
                const QString code = input.Text();
                return code.isEmpty() || code == u"0" ? RuleValue() : apply(input);
            },
            rule.side, rule.reads};
}

Rule CurrencyOfNumber(const QString& parent, const QString& column) {
    const Rule byName =
        OfFirst(parent, {.table = "TABCAMBI", .on = {{"CODICE", column}}}, "DIVISA", Currency(Anagrafica, "VALUTA"));
    return Or(Or(Coded("VALUTA"), byName), schema::defaults::Currency);
}

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Destinazioni = QStringLiteral("DESTINAZIONIDIVERSE");
const QString Personale = QStringLiteral("TABELLAPERSONALE");
const QString Spedizionieri = QStringLiteral("TABSPEDIZ");
const QString Lettere = QStringLiteral("DICHIARAZIONEINTENTO");

/// A counterparty has a row of these for each year.
Join LastYear(const QStringList& columns) {
    return {.table = Riservati,
            .on = {{"CODCONTO"}},
            .columns = columns,
            .where = "J1.ESERCIZIO = (SELECT MAX(E.ESERCIZIO) FROM ANAGRAFICARISERVATICF E WHERE E.CODCONTO = "
                     "T.CODCONTO)"};
}

// --- Rules --------------------------------------------------------------------------------------------------------

/// "10189" of "C 10189".
Rule NumberOfCode() {
    return {"what stands behind the letter, without blanks",
            [](const RuleInput& input) { return RuleValue(input.Text().mid(1).remove(u' ')); }};
}

/// A country by its number, else by its ISO code.
Rule NationOf() {
    return {"the first translated through SYS_IMP (ANAGRAFICACF, NAZIONE), missing codes recorded; else \"ITA\" for a "
            "last one that is \"IT\", \"ITA\" or, as the first, blank, else its three characters",
            [](const RuleInput& input) -> RuleValue {
                static const QStringList italy{"IT", "ITA"};
                const QString number = input.row.Text(input.columns.first());
                const bool isBlank = number.isEmpty() || number == u"0";
                const QString code =
                    isBlank ? QString() : modImport::GetNewCode(input.session, Anagrafica, "NAZIONE", number, true);
                if (!code.isEmpty()) {
                    return code;
                }
                const bool hasIso = input.columns.size() > 1;
                const QString iso = hasIso ? input.row.Text(input.columns.last()).toUpper() : QString();
                if (italy.contains(iso) || (isBlank && iso.isEmpty())) {
                    return schema::defaults::Country;
                }
                constexpr qsizetype codeSize = 3;
                return iso.size() == codeSize ? RuleValue(iso) : RuleValue();
            }};
}

/// Whether any of the columns holds 2.
Rule AnyBlocked() {
    return {"true when any is 2", [](const RuleInput& input) {
                return RuleValue(std::any_of(input.columns.begin(), input.columns.end(),
                                             [&input](const QString& one) { return input.row.Text(one) == u"2"; }));
            }};
}

/// The notes of the counterparty and of its year.
Rule BothNotes() {
    return {"text, and NOTE1 of ANAGRAFICARISERVATICF on a line of its own",
            [](const RuleInput& input) {
                QStringList notes{input.Text(), input.row.Text("NOTE1")};
                notes.removeAll(QString());
                return RuleValue(notes.join(u'\n'));
            },
            Side::Both,
            {{Riservati, {}, {"NOTE1"}}}};
}

/// A text that is cut, which the log tells.
Rule Shortened(int count) {
    return {QStringLiteral("first %1 characters, what is cut is logged; only when not blank").arg(count),
            [count](const RuleInput& input) -> RuleValue {
                const QString text = input.Text();
                const QString first = FirstOf(text, count);
                if (first != text) {
                    modImport::LogNote(input.session,
                                       QStringLiteral("TESTO RIDOTTO: %1, colonna '%2': '%3' scritto '%4'")
                                           .arg(input.session.Errors.RowKey(), input.columns.first(), text, first));
                }
                return text.isEmpty() ? RuleValue() : RuleValue(first);
            }};
}

/// Whether goods usually go to the branch, as the last year of its counterparty says.
Rule IsUsualBranch() {
    const ChildTable years{.table = Riservati, .on = {{"CODCONTO"}}, .order = "ESERCIZIO DESC"};
    return {"true when DESTDIVMERCI of the last year of its ANAGRAFICARISERVATICF is its CODICE",
            [years](const RuleInput& input) {
                bool isUsual = false;
                years.First(input.session, input.row, [&](const SourceRow& year) {
                    isUsual = year.Text("DESTDIVMERCI") == input.row.Text("CODICE");
                });
                return RuleValue(isUsual);
            },
            Side::Both, std::vector<TableNeed>{{Riservati, {}, {"DESTDIVMERCI"}}} + years.OwnNeeds(Destinazioni).reads};
}

/// CDCON of a counterparty by its code, whose letter tells the role.
Rule PartyOfCode() {
    return {"counterparty imported from that code, of a supplier when it begins with \"F\"; given up without one",
            [customer = CustomerOf().apply, supplier = SupplierOf().apply](const RuleInput& input) {
                return input.Text().startsWith(u'F', Qt::CaseInsensitive) ? supplier(input) : customer(input);
            }};
}

// --- Numbers and addresses ----------------------------------------------------------------------------------------

/// A column that holds an e-mail address instead where it has a "@".
bool IsMail(const QString& text) { return text.contains(u'@'); }

/// Telex and web address.
void WriteAddresses(ImportRun& /*run*/, CounterpartyWriter& writer, const SourceRow& row, const Owner& owner) {
    const QString mail = QStringLiteral("@ Principale");
    const QString telex = row.Text("TELEX");
    const QString web = row.Text("INDIRIZZOINTERNET");
    writer.Telephone(owner, QStringLiteral("Telex"), IsMail(telex) ? QString() : telex);
    writer.Mail(owner, mail, IsMail(telex) ? telex : QString());
    writer.WebSite(owner, IsMail(web) ? QString() : web);
    writer.Mail(owner, mail, IsMail(web) ? web : QString());
}

Needs AddressNeeds() { return {{}, {{Anagrafica, {}, {"TELEX", "INDIRIZZOINTERNET"}}}, CounterpartyNeeds()}; }

// --- Counterparties -----------------------------------------------------------------------------------------------

Branches Sedi() {
    return {
        .rows = {.table = Destinazioni, .on = {{"CODCONTO"}}, .order = "CODICE", .naming = "CODCONTO, CODICE"},
        .lines =
            {
                {"CDSED", "CODICE", Digits(3)},
                {"SERAS", "RAGIONESOCIALE", Text()},
                {"SEIND", "INDIRIZZO", Text()},
                {"SECAP", "CAP", WhenNotBlank("LOCALITA", Text())},
                {"SECIT", "LOCALITA", First(60)},
                {"SEPRO", "PROVINCIA", Text()},
                {"SENAZ", "CODNAZIONE", NationOf()},
                {"SEDEF", "CODICE", IsUsualBranch()},
            },
        .numbers = {.office = "TELEFONO", .fax = "FAX"},
    };
}

Contacts Persone() {
    return {
        .rows = {.table = Personale,
                 .on = {{"RIFCODCONTO", "CODCONTO"}},
                 .order = "CODICE",
                 .naming = "RIFCODCONTO, CODICE"},
        .lines =
            {
                {"RFNOM", "COGNOME, NOME", Text()},
                {"RFQUA", "POSIZIONE", Text()},
                {"RFTIT", "CODRUOLO",
                 OfFirst(Personale, {.table = "TABRUOLI", .on = {{"CODICE", "CODRUOLO"}}}, "DESCRIZIONE", First(60))},
                {"RFNOT", "NOTE", Text()},
            },
        .numbers = {.office = "TELEFONO", .fax = "FAX", .mobile = "CELL", .mail = "EMAIL", .home = "TELCASA"},
    };
}

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiMetodo"},
        .source =
            {
                .table = Anagrafica,
                .key = "CODCONTO",
                .order = "CODCONTO",
                .where = "T.TIPOCONTO IN ('C', 'F')",
                .joins =
                    {
                        LastYear({"NOTE1",        "CODPAG",      "CODCAMBIO",    "CODZONA",        "CODSETTORE",
                                  "CODCATEGORIA", "CODIVA",      "DICHESIVA",    "CODBANCA",       "BANCAANAGR",
                                  "MESEESCL1",    "GGESCL1",     "MESEESCL2",    "GGESCL2",        "CODAGENTE1",
                                  "CODAGENTE2",   "CODAGENTE3",  "SCONTO1",      "LISTINO",        "PORTO",
                                  "TRASPACURA",   "FIDOEURO",    "SPLITPAYMENT", "NONRAGGRUPPDOC", "STATOORDINI",
                                  "STATOBOLLE",   "STATOFATTURE"}),
                        {.table = "BANCAAPPCF",
                         .on = {{"CODCONTO"}},
                         .columns = {"ABI", "CAB", "CIN", "CONTOCORRENTE", "CODICEIBAN", "CODICEBIC"},
                         .where = "J2.CODICE = J1.BANCAANAGR"},
                    },
            },
        .roles = ByLetter("TIPOCONTO", {.customer = {"C"}, .supplier = {"F"}}),
        .name = "DSCCONTO1, DSCCONTO2",
        .vatNumber = "PARTITAIVA",
        .taxCode = "CODFISCALE",
        .number = {"CODCONTO", NumberOfCode()},
        .lines =
            {
                {"CORAS", "DSCCONTO1", First(35)},
                {"CORA2", "DSCCONTO1, DSCCONTO2", SecondName(35)},
                {"COPER", "FLGPERSFISICA", Flag()},
                {"COCOG", "COGNOMEPERSFIS", NotBlank(First(60))},
                {"CONOM", "NOMEPERSFIS", NotBlank(First(60))},
                {"COSEX", "SESSOPERSFIS", NotBlank(Text())},
                {"CODTN", "DATANASCITAPERSFIS", NotBlank(Day())},
                {"CONAT", "COMNASCITAPERSFIS", NotBlank(First(60))},
                {"COPRN", "PROVNASCITAPERSFIS", NotBlank(Text())},
                {"COIND", "INDIRIZZO", Text()},
                {"COCAP", "CAP", Text()},
                {"COCIT", "LOCALITA", First(60)},
                {"COPRO", "PROVINCIA", Text()},
                {"CONAZ", "CODNAZIONE, CODICEISO", NationOf()},
                {"COPEC", "PEC", Text()},
                {"COCFE", "CODDESTINATARIOPA", Text()},
                {"COIVA", "PARTITAIVA", NotBlank(Text())},
                {"COFIS", "CODFISCALE", NotBlank(Text())},
                ByRole("COMAC", "COMAF", "CODMASTRO", NotZeroCode(Text())),
                {"COLNG", "CODLINGUA", Or(Coded("CODLINGUA"), schema::defaults::Language)},
                {"CONOT", "NOTE", BothNotes()},
                ByRole("COMOP", "COMOA", "CODPAG", Coded("PAGAMENTI")),
                {"COVAL", "CODCAMBIO", CurrencyOfNumber(Riservati, "CODCAMBIO")},
                {"COZON", "CODZONA", Coded("ZONA")},
                {"COSET", "CODSETTORE", Coded("SETTORE")},
                ByRole("COCCC", "COCCF", "CODCATEGORIA", Coded("CATEGORIA")),
                {"COESE", "CODIVA", NotZeroCode(ExemptVat(Anagrafica, "COD.ESENZIONEIVA"))},
                {"COINT", "DICHESIVA", Shortened(20)},
                {"COBAN", "CODBANCA", NotZeroCode(OwnBank(Anagrafica, "CODBANCA"))},
                {"COABI", "ABI", NotBlank(Digits(5))},
                {"COCAB", "CAB", NotBlank(Digits(5))},
                {"COCIN", "CIN", NotBlank(Text())},
                {"COCOC", "CONTOCORRENTE", NotBlank(Text())},
                {"COIBA", "CODICEIBAN", NotBlank(WithoutBlanks())},
                {"COBIC", "CODICEBIC", NotBlank(Text())},
                {"COME1", "MESEESCL1", NotZero()},
                {"CORI1", "GGESCL1", NotZero()},
                {"COME2", "MESEESCL2", NotZero()},
                {"CORI2", "GGESCL2", NotZero()},
                {"COAGE", "CODAGENTE1", Translated("ANAGRAFICAAGENTI", "CODAGENTE")},
                {"COAG2", "CODAGENTE2", Translated("ANAGRAFICAAGENTI", "CODAGENTE")},
                {"COAG3", "CODAGENTE3", Translated("ANAGRAFICAAGENTI", "CODAGENTE")},
                DiscountsByRole("SCONTO1"),
                ByRole("COLSC", "COLSF", "LISTINO", Coded("LISTINO")),
                {"COPOR", "PORTO", Coded("PORTO")},
                {"COMOS", "TRASPACURA", Coded("TRASPACURA")},
                {"COFID", "FIDOEURO", RoundedTo(2)},
                {"COSPP", "SPLITPAYMENT", Flag()},
                {"CORGS", "NONRAGGRUPPDOC", NotBlank(Choice({{"1", "N"}}, "S"))},
                {"COBLK", "STATOORDINI, STATOBOLLE, STATOFATTURE", AnyBlocked()},
                {"DTINS", "DATAMODIFICA", NotBlank(AsRead())},
            },
        .numbers = {.office = "TELEFONO", .fax = "FAX"},
        .created = {"DATAMODIFICA", NotBlank(AsRead())},
        .branches = {Sedi()},
        .contacts = {Persone()},
        .after = WriteAddresses,
        .further = AddressNeeds(),
    };
}

// --- Carriers -----------------------------------------------------------------------------------------------------

/// They come behind the counterparties, whose numbers they must not take.
Counterparties Vettori() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiMetodo", .step = "Vettori"},
        .source = {.table = Spedizionieri, .key = "CODICE", .order = "CODICE"},
        .roles = Always({.carrier = true}),
        .name = "RAGIONESOCIALE",
        .vatNumber = "PartitaIva",
        .lines =
            {
                {"CORAS", "RAGIONESOCIALE", First(35)},
                {"CORA2", "RAGIONESOCIALE", From(36)},
                {"COIND", "INDIRIZZO", Text()},
                {"COCAP", "CAP", Text()},
                {"COCIT", "LOCALITA", First(60)},
                {"COPRO", "PROVINCIA", Text()},
                {"COIVA", "PartitaIva", NotBlank(Text())},
            },
        .numbers = {.office = "TELEFONO", .mail = "EMAIL"},
        .empties = false,
    };
}

const Mapping& Vettore() {
    static const Mapping mapping{
        "CON_TRO", Riservati, {{"COVEP", "CODSPED", Translated(Spedizionieri, "CODICE")}}, true};
    return mapping;
}

/// CDCON of the counterparty of a row; empty when it is not there.
QString ImportedParty(Session& session, const SourceRow& row) {
    const bool isSupplier = row.Text("TIPOCONTO").compare(u"F", Qt::CaseInsensitive) == 0;
    return LookUp(session, "CON_TRO", isSupplier ? "COFGE" : "COCGE", row.Text("CODCONTO"), "CDCON");
}

RowOutcome AssegnaVettore(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString party = ImportedParty(session, row);
    if (party.isEmpty()) {
        return run.Skip("controparte non importata");
    }
    TargetRow target(run, "CON_TRO");
    Vettore().Apply(target, session, row, {});
    const QString carrier = target.Value("COVEP").toString();
    if (carrier.isEmpty() || carrier == LookUp(session, "CON_TRO", "CDCON", party, "COVEP")) {
        return run.Skip(carrier.isEmpty() ? "vettore non importato" : "vettore già assegnato");
    }
    target.Update("WHERE CDCON = " + run.Quoted(party));
    return RowOutcome::Updated;
}

/// The carrier that a counterparty usually has, once carriers have their codes.
ImportPart VettoriAbituali() {
    return {
        .step = "Vettori delle controparti",
        .source = {.table = Anagrafica,
                   .key = "CODCONTO",
                   .order = "CODCONTO",
                   .where = "T.TIPOCONTO IN ('C', 'F') AND J1.CODSPED > 0",
                   .joins = {LastYear({"CODSPED"})}},
        .needs = {{&Vettore()}, {{Anagrafica, {"TIPOCONTO"}}}, {{"CON_TRO", {"CDCON", "COCGE", "COFGE"}}}},
        .make = Importing(AssegnaVettore),
    };
}

// --- Letters of intent --------------------------------------------------------------------------------------------

/// A letter that is revoked ends that day.
BaseTable LettereIntento() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiMetodo", .step = "Lettere d'intento"},
        .source = {.table = Lettere,
                   .key = "PROGRESSIVO",
                   .order = "ESERCIZIO, PROGRESSIVO",
                   .naming = "ESERCIZIO, PROGRESSIVO"},
        .target = "DIC_INT",
        .lines =
            {
                {"DITIP", "TIPODICHIARAZIONE", Text()},
                {"DIANN", "ESERCIZIO", RoundedTo(0)},
                {"DINUM", "NRDICHIARAZIONE", Text()},
                {"DIPRG", "PROGRESSIVO", RoundedTo(0)},
                {"DICON", "CODCLIFOR", PartyOfCode()},
                {"DIVAL", "PERIODODA", Day()},
                {"DIVDA", "DATAREVOCA, PERIODOA", FirstNotBlank(Day())},
                {"DIVIM", "IMPORTOPERIODOEURO", RoundedTo(2)},
                {"DIDLI", "DATAEMISSIONE", Day()},
                {"DINLI", "NRDICHRICEVUTA", Text()},
                {"DIDRT", "DATAREGISTRAZIONE", Day()},
                {"DIPRT", "NRPROTOCOLLO1", Text()},
            },
        .empties = DeletedImports("DIC_INT"),
        .keys = {"DIANN", "DIPRG"},
    };
}

// --- Refresh of numbers -------------------------------------------------------------------------------------------

/// What a counterparty has under a label; where the source has nothing for it, it stays as it is.
struct Labelled {
    QString table;
    QString labelColumn;
    QString label;
    QString valueColumn;
    QString text;   ///< of the source
    QString stored; ///< as the table holds it
};

std::vector<Labelled> LabelledOf(const SourceRow& row) {
    const QString telex = row.Text("TELEX");
    const QString web = row.Text("INDIRIZZOINTERNET");
    const auto number = [](const QString& label, const QString& text) {
        return Labelled{"NUM_TEL", "NRDES", label, "NRNUM", text, StoredNumber(text)};
    };
    std::vector<Labelled> all{
        number("Ufficio", row.Text("TELEFONO")),
        number("Telex", IsMail(telex) ? QString() : telex),
        number("Fax (uff.)", row.Text("FAX")),
        {"IND_WEB", "WBDES", "Indirizzo Web", "WBIND", IsMail(web) ? QString() : web, WithoutSeparators(web)}};
    std::erase_if(all, [](const Labelled& one) { return one.text.isEmpty(); });
    return all;
}

/// The rows of a label of a counterparty.
QString RowsOf(ImportRun& run, const QString& party, const Labelled& labelled) {
    const Session& session = run.GetSession();
    return run.FullName(labelled.table) + " WHERE " + Equals(session, "TBNAM", "CON_TRO") + " AND " +
           Equals(session, "TBKEY", party) + " AND " + Equals(session, labelled.labelColumn, labelled.label);
}

/// Whether the one value under the label is that of the source.
bool IsAligned(ImportRun& run, const QString& party, const Labelled& labelled) {
    Recordset rows =
        run.GetSession().Quadrix.ExecuteWC("SELECT " + labelled.valueColumn + " FROM " + RowsOf(run, party, labelled));
    QStringList values;
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        values.append(row.Text(labelled.valueColumn));
    }
    return values == QStringList{labelled.stored};
}

/// Who is customer and supplier has the numbers of both: what is there stays.
bool IsBoth(Session& session, const QString& party) {
    const auto has = [&](const QString& column) {
        return !LookUp(session, "CON_TRO", "CDCON", party, column).isEmpty();
    };
    return has("COCGE") && has("COFGE");
}

RowOutcome Riallinea(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString party = ImportedParty(session, row);
    if (party.isEmpty()) {
        run.Log(QStringLiteral("CONTROPARTE NON TROVATA: %1").arg(run.RowKey()));
        return run.Skip("controparte non importata");
    }
    CounterpartyWriter writer(run, {});
    const qint64 before = run.WrittenRows("NUM_TEL") + run.WrittenRows("IND_WEB");
    const bool keeps = IsBoth(session, party);
    for (const Labelled& labelled : LabelledOf(row)) {
        if (IsAligned(run, party, labelled)) {
            continue;
        }
        if (!keeps) {
            session.Quadrix.Execute("DELETE " + RowsOf(run, party, labelled));
        }
        const Owner owner{"CON_TRO", party, keeps};
        if (labelled.table == u"NUM_TEL") {
            writer.Telephone(owner, labelled.label, labelled.text);
        } else {
            writer.WebSite(owner, labelled.text);
        }
    }
    WriteAddresses(run, writer, row, {"CON_TRO", party, true});
    const bool changed = run.WrittenRows("NUM_TEL") + run.WrittenRows("IND_WEB") != before;
    return changed ? RowOutcome::Updated : run.Skip("numeri già allineati");
}

Procedure RiallineaTelFaxContropartiMetodo() {
    const Frame frame{.module = Module,
                      .procedure = "RiallineaTelFaxContropartiMetodo",
                      .announcement = "Inizio Riallineamento Tel e Fax Controparti",
                      .step = "Tel e Fax",
                      .completion = "Numeri Tel e Fax riallineati correttamente!",
                      .confirmation = "Procedere al riallineamento dei numeri Tel e Fax?",
                      .asksReset = false};
    Needs needs = AddressNeeds() + Needs{{}, {{Anagrafica, {"TIPOCONTO"}}}, {{"CON_TRO", {"CDCON", "COCGE", "COFGE"}}}};
    return ProcedureOf(Button::Dis, frame,
                       {{.step = frame.step,
                         .source = {.table = Anagrafica,
                                    .key = "CODCONTO",
                                    .order = "CODCONTO",
                                    .where = "TIPOCONTO IN ('C', 'F') AND (TELEFONO > '' OR TELEX > '' OR FAX > '' OR "
                                             "INDIRIZZOINTERNET > '')"},
                         .needs = needs,
                         .make = Importing(Riallinea)}});
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Metodo",
        Module,
        {"SQL Server", sourceSettings::Server("METODO")},
        Buttons("YYYYYYYY", {{Button::Dis, "(Riallinea N° Tel e Fax)"},
                             {Button::Doc, "Importa Documenti"},
                             {Button::Acq, "Importa Nr. Documento"},
                             {Button::Saldi, "Importa Mod. Pagamento"},
                             {Button::Disegni, "Importa Banche"}}),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, FrameOf(Controparti()),
                        {PartOf(Controparti()), PartOf(Vettori()), VettoriAbituali(), PartOf(LettereIntento())}),
            ProcedureOf(Button::Art, Articoli()),
            RiallineaTelFaxContropartiMetodo(),
            ImportDocumentiMetodo(Button::Doc),
            ImportDocumentiMetodo(Button::Acq),
            ImportModalitaPagamentoMetodo(),
            ImportPianoContiMetodo(),
            ImportBanche(),
        },
    };
    return origin;
}

} // namespace modImport_Metodo
