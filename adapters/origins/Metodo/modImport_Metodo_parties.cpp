// Counterparties of Metodo: ANAGRAFICACF with what ANAGRAFICARISERVATICF has of its last year, destinations and
// contacts.

#include "adapters/origins/Metodo/modImport_Metodo.h"

#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Metodo {

namespace {

const QString Destinazioni = QStringLiteral("DESTINAZIONIDIVERSE");
const QString Personale = QStringLiteral("TABELLAPERSONALE");

// --- Rules --------------------------------------------------------------------------------------------------------

/// "10189" of "C 10189".
Rule NumberOfCode() {
    return {"ciò che sta dietro la lettera, senza spazi",
            [](const RuleInput& input) { return RuleValue(input.Text().mid(1).remove(u' ')); }};
}

/// Whether any of the columns holds 2.
Rule AnyBlocked() {
    return {"vero se una è 2", [](const RuleInput& input) {
                return RuleValue(std::any_of(input.columns.begin(), input.columns.end(),
                                             [&input](const QString& one) { return input.row.Text(one) == u"2"; }));
            }};
}

/// The notes of the counterparty and of its year.
Rule BothNotes() {
    return AlsoIn({{Riservati, {"NOTE1"}}}, {"testo, e NOTE1 di ANAGRAFICARISERVATICF su un'altra riga",
                                             [](const RuleInput& input) {
                                                 QStringList notes{input.Text(), input.row.Text("NOTE1")};
                                                 notes.removeAll(QString());
                                                 return RuleValue(notes.join(u'\n'));
                                             },
                                             Side::Both,
                                             {{Riservati, {}, {"NOTE1"}}}});
}

/// A text that is cut, which the log tells.
Rule Shortened(int count) {
    return {QStringLiteral("primi %1 caratteri, ciò che si taglia va nel log; solo se non è vuoto").arg(count),
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

// --- Destinations and contacts ------------------------------------------------------------------------------------

Branches Sedi() {
    const ChildTable years{.table = Riservati, .on = {{"CODCONTO"}}, .order = "ESERCIZIO DESC"};
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
                {"SEDEF", "CODICE", NamedBy(Destinazioni, years, "DESTDIVMERCI")},
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
                 Or(OfFirst(Personale, {.table = "TABRUOLI", .on = {{"CODICE", "CODRUOLO"}}}, "DESCRIZIONE", First(60)),
                    QVariant())},
                {"RFNOT", "NOTE", Text()},
            },
        .numbers = {.office = "TELEFONO", .fax = "FAX", .mobile = "CELL", .mail = "EMAIL", .home = "TELCASA"},
    };
}

} // namespace

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
        .more = SetIban,
        .after = WriteAddresses,
        .further = AddressNeeds(),
    };
}

} // namespace modImport_Metodo
