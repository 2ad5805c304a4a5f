// Lumen: the chart of accounts, printed into a .dat file that the operator chooses: a line of up to 132 characters for
// each account, with its code in front ("10" a ledger, "10.20" a group, "10.20.0001" an account); headings and totals
// of the pages begin with no digit. The list shows no button for this origin: the import is reached where the one of
// the chart of accounts is visible from before, and by its name. What stands where in a line is this system's own
// reading. Known gaps: everything else that Lumen has.

#include "adapters/contract/kinds/readFiles.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/AccountPath.h"
#include "adapters/contract/write/BaseTable.h"
#include "adapters/sourceSettings.h"
#include "sources/privateDatabase.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Lumen {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Lumen");

// --- Source file --------------------------------------------------------------------------------------------------

const QString Listing = QStringLiteral("PIANO_CONTI");
const QString& RowNumber = sources::RowNumberColumn;

/// Columns of a line, from 1.
struct Span {
    int start;
    int length;
};
constexpr int LineLength = 132;
constexpr Span CodeSpan{1, 12};
constexpr Span DescriptionSpan{15, 40};
constexpr Span SectionSpan{57, 1};
constexpr Span NatureSpan{60, 1};
constexpr Span TypeSpan{63, 1};
constexpr Span PostableSpan{66, 1};

bool IsAccountLine(QStringView line) { return !line.isEmpty() && modImport::IsDigitChar(line.first(1).toString()); }

/// The line as a whole, and its code, by which a single account is asked for.
std::vector<sources::FixedRecord> Records() {
    return {{.table = Listing,
             .file = {},
             .length = LineLength,
             .fields = {{"CODICE", CodeSpan.start, CodeSpan.length}, {"RIGA", 1, LineLength}},
             .isOne = IsAccountLine,
             .mayBeShort = true}};
}

// --- Lines --------------------------------------------------------------------------------------------------------

/// What a line tells of its account.
struct LumenAccount {
    QStringList code; ///< its parts, from the ledger down
    QString description;
    QString section; ///< of the balance: "SP", "CE", "OR"; empty for none
    QString nature;
    QString type;
    bool isPostable = false;

    QString Code() const { return code.join(QString()); }
    /// Code of the account above; empty for a ledger.
    QString Parent() const { return code.mid(0, code.size() - 1).join(QString()); }
};

QString TextAt(const QString& line, const Span& span) { return line.mid(span.start - 1, span.length).trimmed(); }

QStringList CodeOf(const QString& line) {
    qsizetype length = 0;
    while (length < std::min<qsizetype>(line.size(), CodeSpan.length) &&
           (modImport::IsDigitChar(line.mid(length)) || modImport::IsDotChar(line.mid(length)))) {
        ++length;
    }
    const QString code = line.first(length);
    const QStringList parts = code.split(u'.');
    if (parts.contains(QString())) {
        throw ImportError(QStringLiteral("'%1' non è un codice di conto: tra due punti manca una parte").arg(code));
    }
    return parts;
}

QString SectionOf(const QString& letter) {
    static const QMap<QString, QString> sections{{"", ""}, {"P", "SP"}, {"E", "CE"}, {"O", "OR"}};
    if (!sections.contains(letter)) {
        throw ImportError(QStringLiteral("carattere %1: '%2' non è P (patrimoniale), E (economico) né O (d'ordine)")
                              .arg(SectionSpan.start)
                              .arg(letter));
    }
    return sections.value(letter);
}

/// Takes a line apart. Raises `ImportError` for a code or a section that is none, and for a line with a NUL. @return
/// false for a line that is of no account: nothing is changed then
bool ParseRowLumen(const QString& line, LumenAccount& account) {
    if (!IsAccountLine(line)) {
        return false;
    }
    if (line.contains(QChar(u'\0'))) { // also between the columns
        throw ImportError(QStringLiteral("la riga contiene un carattere NUL"));
    }
    account = {CodeOf(line),
               TextAt(line, DescriptionSpan),
               SectionOf(TextAt(line, SectionSpan).toUpper()),
               TextAt(line, NatureSpan).toUpper(),
               TextAt(line, TypeSpan).toUpper(),
               TextAt(line, PostableSpan).toUpper() == u"S"};
    return true;
}

// --- Accounts -----------------------------------------------------------------------------------------------------

/// A rule on what a line tells; Null when that is blank.
Rule Of(const QString& words, std::function<QVariant(const LumenAccount&)> value) {
    return {words, [value = std::move(value)](const RuleInput& input) -> RuleValue {
                LumenAccount account;
                const QVariant told = ParseRowLumen(input.Value().toString(), account) ? value(account) : QVariant();
                return RuleValue(told.toString().isEmpty() ? QVariant() : told);
            }};
}

const Mapping& AccountMapping() {
    static const Mapping mapping{
        "PIA_CON",
        Listing,
        {
            {"CDCNT", "RIGA", Code()},
            {"PCDES", "RIGA", Of("characters 15 to 54", [](const LumenAccount& one) { return one.description; })},
            {"PCMAS", "RIGA",
             Of("il codice senza l'ultima parte, senza punti", [](const LumenAccount& one) { return one.Parent(); })},
            {"PCNAT", "RIGA",
             Of("character 60: A active, P passive, C cost, R revenue",
                [](const LumenAccount& one) { return one.nature; })},
            {"PCTIP", "RIGA",
             Of("character 63: C customers, F suppliers, B bank", [](const LumenAccount& one) { return one.type; })},
            {"PCBIL", "RIGA",
             Of("carattere 57: \"SP\" per P, \"CE\" per E, \"OR\" per O; riga abbandonata per un altro",
                [](const LumenAccount& one) { return one.section; })},
            {"PCLEV", "RIGA",
             Of("numero delle parti del codice", [](const LumenAccount& one) { return one.code.size(); })},
            {"PCRAG", "RIGA", Of("prima parte del codice", [](const LumenAccount& one) { return one.code.first(); })},
            {"PCDET", "RIGA",
             Of("vero se il carattere 66 è S", [](const LumenAccount& one) { return one.isPostable; })},
        },
    };
    return mapping;
}

/// Inserts or updates an account. One whose ledger is not there is logged.
RowOutcome UpdatePIA_CON(ImportRun& run, WriterByCode& writer, const SourceRow& row, const LumenAccount& account) {
    const QString parent = account.Parent();
    if (!parent.isEmpty() && !IsThere(run.GetSession(), "PIA_CON", "CDCNT", parent)) {
        run.Log(QStringLiteral("MASTRO NON TROVATO: %1: '%2'").arg(run.RowKey(), parent));
    }
    return writer.Write(AccountMapping(), row, {account.Code()});
}

class AccountImporter final : public Importer {
public:
    explicit AccountImporter(ImportRun& run)
        : Importer(run),
          m_writer(run) {}

    RowOutcome Row(const SourceRow& row) override {
        LumenAccount account;
        return ParseRowLumen(row.Value("RIGA").toString(), account) ? UpdatePIA_CON(Run(), m_writer, row, account)
                                                                    : Run().Skip(QStringLiteral("riga senza conto"));
    }
    bool End() override {
        WriteAccountPaths(Run());
        return true;
    }

private:
    WriterByCode m_writer;
};

Procedure ImportPianoContiLumen() {
    const ImportPart accounts{
        .step = "Piano dei Conti",
        .source = {.table = Listing, .key = "CODICE", .order = RowNumber},
        .needs = NeedsOf(AccountMapping()) + Needs{{}, {}, {{"PIA_CON", {"PCPTH", "PCMAS"}}}},
        .empties = Truncated({"PIA_CON"}),
        .make = [](ImportRun& run, const QString&) { return std::make_unique<AccountImporter>(run); }};
    return ProcedureOf(Button::Piano,
                       Frame{.module = Module,
                             .procedure = "ImportPianoContiLumen",
                             .announcement = "Inizio importazione Piano dei Conti",
                             .completion = "Piano dei conti importato correttamente!"},
                       {ReadingChosenFile(accounts)});
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Lumen",
        Module,
        {.kind = "File .dat",
         .prepare = sourceSettings::FixedFile("File DAT da importare", "File DAT (*.dat)|*.dat|Tutti i file (*.*)|*.*",
                                              Records()),
         .names = Naming::OurReading},
        Buttons("NNNNN---"),
        Shown::Keep,
        {ImportPianoContiLumen()},
    };
    return origin;
}

} // namespace modImport_Lumen
