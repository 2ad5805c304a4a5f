// The refresh of the suppliers of Arca Evolution and its payment terms, and what the files of the module share.

#include "adapters/origins/ArcaEvolution/modImport_ArcaEvolution.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "adapters/contract/write/BaseTable.h"
#include "adapters/contract/write/PaymentTerm.h"
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
    return {"CDBAN of the bank whose external code it is, else of the bank with the IBAN that table Banca tells; left "
            "out when there is none",
            [](const RuleInput& input) -> RuleValue {
                const QString account = input.Text();
                if (account.isEmpty()) {
                    return std::nullopt;
                }
                Session& session = input.session;
                QString bank = LookUp(session, "BAN_CHE", "BAEXT", account, "CDBAN");
                const Recordset own = session.SourceConnection().ExecuteWC(
                    "SELECT Iban FROM Banca\rWHERE Cd_CGConto = " + LiteralOf(session.SourceConnection(), account));
                const QString iban = own.Eof() ? QString() : SourceRow(own).Text("Iban").remove(u' ');
                if (bank.isEmpty() && !iban.isEmpty()) {
                    const Recordset found =
                        session.Quadrix.ExecuteWC("SELECT CDBAN FROM " + session.Quadrix.GetFullTableName("BAN_CHE") +
                                                  "\rWHERE " + Equals(session, "REPLACE(BAIBA, ' ', '')", iban));
                    bank = found.Eof() ? QString() : SourceRow(found).Text("CDBAN");
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
            {"COIND", "Indirizzo", NotBlank(StreetPart(&Street::first, "first 35 characters before the house number"))},
            {"COIN2", "Indirizzo", NotBlank(StreetPart(&Street::rest, "what is left before the house number"))},
            {"CONRC", "Indirizzo", NotBlank(StreetPart(&Street::number, "house number behind the last comma"))},
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
    const QString code = row.Text("Cd_CF");
    if (!IsThere(session, "CON_TRO", "COFGE", code)) {
        run.Log(QStringLiteral("FORNITORE NON TROVATO: %1").arg(run.RowKey()));
        return run.Skip("fornitore non trovato");
    }
    TargetRow target(run, "CON_TRO");
    Fornitori().Apply(target, session, row, {});
    target.Update("WHERE COFGE = " + run.Quoted(code));
    return RowOutcome::Updated;
}

} // namespace

const Needs& FornitoriNeeds() {
    static const Needs needs{
        {&Fornitori()}, {{Cf, {"Fornitore", "Cd_CF"}}, {"Banca", {"Cd_CGConto", "Iban"}}}, {{"CON_TRO", {"COFGE"}}}};
    return needs;
}

/// Suppliers that are there are refreshed; nothing is emptied.
void SistemaSediLegaliFornitori(Session& session, const QString& singleCode, bool /*reset*/) {
    ImportRun run(session, Module, "SistemaSediLegaliFornitori", singleCode);
    run.Guard([&] {
        run.Announce("Inizio sistemazione dati fornitori");
        run.Preflight(FornitoriNeeds());
        const QString where = "\rWHERE Fornitore = " + LiteralOf(session.SourceConnection(), true) +
                              (singleCode.isEmpty() ? QString() : QString(" AND Cd_CF = " + run.Quoted(singleCode)));
        run.Rows({"Fornitori", Cf, "Cd_CF", "SELECT COUNT(*) FROM CF" + where,
                  "SELECT * FROM CF" + where + "\rORDER BY Cd_CF"},
                 [&](const SourceRow& row) { return SistemaFornitore(run, row); });
        run.Complete("Dati fornitori sistemati correttamente!");
    });
}

// --- Payment terms ------------------------------------------------------------------------------------------------

namespace {

const Mapping& Pagamenti() {
    static const Mapping mapping{
        "TAB_MOP",
        Pg,
        {
            {"CDMOP", "Cd_PG", Code()},
            {"MPDES", "Descrizione", First(100)},
            {"MPRAT", "NumeroRate", RoundedTo(0)},
            {"MPSCM", "Sconto", LeadingNumber()},
            {"MPEXT", "Cd_PG", Text()},
        },
    };
    return mapping;
}

/// From when the days of the instalments count: "DF" date of the invoice, "FM" end of its month.
QString StartOf(const SourceRow& row) {
    static const QHash<QString, QString> starts{{"", "DF"},  {"D", "DF"}, {"DF", "DF"}, {"0", "DF"},
                                                {"F", "FM"}, {"M", "FM"}, {"FM", "FM"}, {"1", "FM"}};
    const QString start = starts.value(row.Text("Partenza").toUpper());
    if (start.isEmpty()) {
        throw ImportError(QStringLiteral("colonna 'Partenza': '%1' non è né data fattura (D) né fine mese (F)")
                              .arg(row.Text("Partenza")));
    }
    return start;
}

std::vector<Instalment> ReadInstalments(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    std::vector<Instalment> instalments;
    ForEachChild(session, "SELECT * FROM PGRata\rWHERE Cd_PG = " + run.Quoted(row.Text("Cd_PG")) + "\rORDER BY Riga",
                 Rate, "Cd_PG, Riga", [&](const SourceRow& rate) {
                     instalments.push_back(
                         {modImport::GetNewCode(session, Rate, "TipoPagamento", rate.Text("TipoPagamento"), true),
                          NumberOf(rate, "Giorni"), StartOf(row), NumberOf(rate, "Percentuale")});
                 });
    return instalments;
}

/// Without instalments of its own a term has one every thirty days, all equal.
std::vector<Instalment> MakeInstalments(const SourceRow& row) {
    constexpr double month = 30;
    double days = NumberOf(row, "PrimaRata");
    std::vector<Instalment> instalments;
    for (const double share : EqualShares(static_cast<int>(NumberOf(row, "NumeroRate")))) {
        instalments.push_back({{}, days, StartOf(row), share});
        days += month;
    }
    return instalments;
}

/// Shares that the source leaves open are equal ones.
void ShareOut(std::vector<Instalment>& instalments) {
    const bool open = std::all_of(instalments.begin(), instalments.end(),
                                  [](const Instalment& instalment) { return instalment.percent == 0; });
    const std::vector<double> shares = EqualShares(static_cast<int>(instalments.size()));
    for (size_t i = 0; open && i < shares.size(); ++i) {
        instalments[i].percent = shares[i];
    }
}

RowOutcome ImportPagamento(ImportRun& run, const SourceRow& row, bool hasRates) {
    const QString code = row.Text("Cd_PG");
    const RowOutcome outcome = WriteByCode(run, Pagamenti(), row, {code});
    std::vector<Instalment> instalments = hasRates ? ReadInstalments(run, row) : std::vector<Instalment>();
    if (instalments.empty()) {
        instalments = MakeInstalments(row);
    }
    ShareOut(instalments);
    WriteInstalments(run, code, instalments);
    return outcome;
}

/// Of the instalments, where the release has them.
const Needs& RateNeeds() {
    static const Needs needs{{}, {{Rate, {"Cd_PG", "Riga", "Giorni", "Percentuale", "TipoPagamento"}}}, {}};
    return needs;
}

} // namespace

const Needs& PagamentiNeeds() {
    static const Needs needs{{&Pagamenti()}, {{Pg, {"Partenza", "PrimaRata"}}}, InstalmentNeeds()};
    return needs;
}

void ImportTabelleBaseArcaEvolution(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportTabelleBaseArcaEvolution", singleCode);
    run.Guard([&] {
        run.Announce("Inizio importazione modalità di pagamento");
        run.Preflight(PagamentiNeeds());
        const bool hasRates = !session.SourceConnection().GetColumns(Rate).isEmpty();
        if (hasRates) {
            run.Preflight(RateNeeds());
        }
        Empty(run, reset, PaymentTermEmptying());
        const QString where = run.OnlyCode("\rWHERE", "Cd_PG", singleCode);
        run.Rows({"Modalità di pagamento", Pg, "Cd_PG", "SELECT COUNT(*) FROM PG" + where,
                  "SELECT * FROM PG" + where + "\rORDER BY Cd_PG"},
                 [&](const SourceRow& row) { return ImportPagamento(run, row, hasRates); });
        run.Complete("Modalità di pagamento importate correttamente!");
    });
}

} // namespace modImport_ArcaEvolution
