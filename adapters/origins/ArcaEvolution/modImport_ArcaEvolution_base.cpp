// The refresh of the suppliers of Arca Evolution and its payment terms, and what the files of the module share.

#include "adapters/origins/ArcaEvolution/modImport_ArcaEvolution.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "adapters/contract/write/Bank.h"
#include "core/modImport.h"

#include <QRegularExpression>

using namespace contract;
using namespace contract::rules;

namespace modImport_ArcaEvolution {

bool ValidateIBAN(const QString& iban) {
    static const QRegularExpression form(QStringLiteral("^[A-Z]{2}[0-9]{2}[A-Z0-9]{1,30}$"));
    constexpr qsizetype italianSize = 27;
    if (!form.match(iban).hasMatch() || (iban.startsWith(QLatin1String("IT")) && iban.size() != italianSize)) {
        return false;
    }
    constexpr int modulus = 97;
    int remainder = 0;
    for (const QChar character : QString(iban.mid(4) + iban.left(4))) {
        const bool digit = character.isDigit();
        const int value = digit ? character.digitValue() : character.unicode() - u'A' + 10;
        remainder = (remainder * (digit ? 10 : 100) + value) % modulus;
    }
    return remainder == 1;
}

Street StreetOf(const QString& text) {
    static const QRegularExpression numbered(QStringLiteral("^(.*),\\s*([0-9][^,]{0,9}|s\\.?n\\.?c?\\.?)$"),
                                             QRegularExpression::CaseInsensitiveOption);
    constexpr int lineSize = 35;
    const QRegularExpressionMatch match = numbered.match(text);
    const QString street = match.hasMatch() ? match.captured(1).trimmed() : text;
    return {FirstOf(street, lineSize), RestOf(street, lineSize).trimmed(), match.captured(2)};
}

Rule StreetPart(QString Street::*part, const QString& words) {
    return {words, [part](const RuleInput& input) { return RuleValue(StreetOf(input.Text()).*part); }};
}

Rule OurBank() {
    return {"CDBAN della banca di cui è il codice esterno, altrimenti di quella con l'IBAN che la tabella Banca dice; "
            "niente se manca",
            [](const RuleInput& input) -> RuleValue {
                const QString account = input.Text();
                if (account.isEmpty()) {
                    return std::nullopt;
                }
                Session& session = input.session;
                QString bank = LookUp(session, "BAN_CHE", "BAEXT", account, "CDBAN");
                if (bank.isEmpty()) {
                    const Recordset own =
                        session.SourceConnection().ExecuteWC("SELECT Iban FROM Banca\rWHERE Cd_CGConto = " +
                                                             LiteralOf(session.SourceConnection(), input.Value()));
                    bank = own.Eof() ? QString() : BankOfIban(session, SourceRow(own).Text("Iban"));
                }
                if (bank.isEmpty()) {
                    modImport::LogNote(
                        session, QStringLiteral("BANCA NON TROVATA: %1: '%2'").arg(session.Errors.RowKey(), account));
                    return std::nullopt;
                }
                return bank;
            }};
}

QString LanguageOf(Session& session, const QString& number) {
    static const QHash<QString, QString> languages{
        {"1040", "IT"}, {"1033", "EN"}, {"1031", "DE"}, {"1036", "FR"}, {"3082", "ES"}};
    const QString known = languages.value(number);
    return known.isEmpty() ? modImport::GetNewCode(session, Cf, "Id_Lingua", number, true) : known;
}

// --- Suppliers ----------------------------------------------------------------------------------------------------

namespace {

const QString Pg = QStringLiteral("PG");
const QString Rate = QStringLiteral("PGRata"); // not every release has it

/// What the source leaves blank stays as it is.
const Mapping& Fornitori() {
    static const Mapping mapping{
        "CON_TRO",
        Cf,
        {
            {"CORAS", "Descrizione", NotBlank(First(35))},
            {"CORA2", "Descrizione", NotBlank(From(36))},
            {"COIND", "Indirizzo", NotBlank(StreetPart(&Street::first, "primi 35 caratteri davanti al numero civico"))},
            {"COIN2", "Indirizzo", NotBlank(StreetPart(&Street::rest, "ciò che resta davanti al numero civico"))},
            {"CONRC", "Indirizzo", NotBlank(StreetPart(&Street::number, "numero civico dietro l'ultima virgola"))},
            {"COCAP", "CAP", NotBlank(Text())},
            {"COCIT", "Localita", NotBlank(Text())},
            {"COPRO", "Cd_Provincia", NotBlank(Text())},
            {"COBAN", "Cd_CgConto_Banca", OurBank()},
        },
    };
    return mapping;
}

RowOutcome SistemaFornitore(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString supplier = LookUp(session, "CON_TRO", "COFGE", row.Text("Cd_CF"), "CDCON");
    if (supplier.isEmpty()) {
        run.Log(QStringLiteral("FORNITORE NON TROVATO: %1").arg(run.RowKey()));
        return run.Skip(SupplierMissing);
    }
    TargetRow target(run, "CON_TRO");
    Fornitori().Apply(target, session, row, {});
    target.Update("WHERE CDCON = " + run.Quoted(supplier));
    return RowOutcome::Updated;
}

} // namespace

/// Suppliers that are there are refreshed; nothing is emptied.
Procedure SistemaSediLegaliFornitori() {
    return ProcedureOf(Button::Disegni,
                       {.module = Module,
                        .procedure = "SistemaSediLegaliFornitori",
                        .announcement = "Inizio sistemazione dati fornitori",
                        .completion = "Dati fornitori sistemati correttamente!",
                        .confirmation = "Sistemare i dati dei fornitori?",
                        .asksReset = false},
                       {{.step = "Fornitori",
                         .source = {.table = Cf, .key = "Cd_CF", .order = "Cd_CF", .where = "Fornitore = 1"},
                         .needs = {{&Fornitori()}, {{"Banca", {"Cd_CGConto", "Iban"}}}, {{"CON_TRO", {"COFGE"}}}},
                         .make = Importing(SistemaFornitore)}});
}

// --- Payment terms ------------------------------------------------------------------------------------------------

namespace {

/// From when the days of the instalments count: "DF" date of the invoice, "FM" end of its month.
Rule Start() {
    return {"\"FM\" per F, M, FM e 1, \"DF\" per D, DF, 0 e vuoto", [](const RuleInput& input) -> RuleValue {
                static const QHash<QString, QString> starts{{"", "DF"},  {"D", "DF"}, {"DF", "DF"}, {"0", "DF"},
                                                            {"F", "FM"}, {"M", "FM"}, {"FM", "FM"}, {"1", "FM"}};
                const QString start = starts.value(input.Text().toUpper());
                if (start.isEmpty()) {
                    throw ImportError(
                        QStringLiteral("'%1' non è né data fattura (D) né fine mese (F)").arg(input.Text()));
                }
                return start;
            }};
}

} // namespace

/// Without instalments of its own a term has one every thirty days, all equal.
PaymentTerms Pagamenti() {
    constexpr double month = 30;
    return {
        .frame = {.module = Module,
                  .procedure = "ImportTabelleBaseArcaEvolution",
                  .announcement = "Inizio importazione modalità di pagamento",
                  .step = "Modalità di pagamento",
                  .completion = "Modalità di pagamento importate correttamente!"},
        .source = {.table = Pg, .key = "Cd_PG", .order = "Cd_PG"},
        .code = "Cd_PG",
        .lines = {{"MPDES", "Descrizione", First(100)},
                  {"MPRAT", "NumeroRate", RoundedTo(0)},
                  {"MPSCM", "Sconto", LeadingNumber()}},
        .start = {"Partenza", Start()},
        .instalments = {{.rows = {.table = Rate, .on = {{"Cd_PG"}}, .order = "Riga", .naming = "Cd_PG, Riga"},
                         .type = {"TipoPagamento", Translated(Rate, "TipoPagamento")},
                         .days = "Giorni",
                         .percent = "Percentuale"}},
        .series = InstalmentSeries{.count = "NumeroRate", .firstDays = "PrimaRata", .everyDays = Fixed(month)},
    };
}

} // namespace modImport_ArcaEvolution
