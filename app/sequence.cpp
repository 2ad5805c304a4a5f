#include "app/sequence.h"

#include "adapters/contract/write/Cam.h"
#include "app/confirmation.h"
#include "app/connectSource.h"
#include "app/hangingRows.h"
#include "app/resultText.h"
#include "app/sequenceRun.h"
#include "app/truncation.h"

namespace {

using Outcome = SequenceEntry::Outcome;

const QString ArcaEvolution = QStringLiteral("ARCA EVOLUTION");
const QString Lantek24 = QStringLiteral("LANTEK 24");
const QString LantekExpert = QStringLiteral("LANTEK EXPERT 30");
const QString Automa = QStringLiteral("AUTOMA");
const QString Ferrobrio = QStringLiteral("FERROBRIO");

/// The steps as the log names them, behind "Inizio ".
const QString Counterparties = QStringLiteral("Import Controparti Arca");
const QString CamDocuments = QStringLiteral("Documenti da Lantek 24 e Distinte Base / Ord. Prod.");
const QString AutomaStock = QStringLiteral("Saldi di Magazzino da AUTOMA");
const QString CamStock = QStringLiteral("Saldi di Magazzino da Lantek 24");
const QString FerrobrioStock = QStringLiteral("Saldi di Magazzino da Ferrobrio");
const QString EmptyCompany = QStringLiteral("Svuotamento delle tabelle dell'azienda");
const QString EmptyCam = QStringLiteral("Svuotamento del database CAM");
const QString CamEmptying = QStringLiteral("SvuotaTabelleCam");

/// Which company is emptied, where it stands, and how much goes.
QString CompanyDetails(Session& session) {
    const ovErrors::Acting acting(session.Errors, ErrorAction::Abort); // a count is not worth a question
    return confirmation::CompanyLine(session) + "\nDatabase: " + confirmation::DatabaseText(session.Quadrix) + '\n' +
           (QStringList(confirmation::RowsText(session.Quadrix, modImport::RowsOfTruncation(session))) +
            hangingRows::LeftTexts(session, modImport::TruncatedTables()))
               .join('\n');
}

/// The same of the CAM database, as far as it can be looked at.
QString CamDetails(const SequenceRun& run) {
    Session& session = run.GetSession();
    const ovErrors::Acting acting(session.Errors, ErrorAction::Abort);
    try {
        const auto cam = contract::qdxCamOpenConnection(session);
        std::vector<contract::RowsToDelete> rows;
        if (const contract::Procedure* emptying = run.Find(LantekExpert, CamEmptying)) {
            for (const contract::TableNeed& need : emptying->needs.reads) {
                rows.push_back({need.table});
            }
        }
        return "Database: " + confirmation::DatabaseText(*cam) + '\n' + confirmation::RowsText(*cam, rows);
    } catch (const Error& error) {
        return "Il database CAM non si può aprire: " + error.Message();
    }
}

/// Asks whether the company, and then the CAM database, is emptied, and does it. The question about the CAM database
/// belongs to a yes to the first.
void AskAndEmpty(SequenceRun& run) {
    Operator& person = run.GetSession().Person;
    const Answer company = person.Ask("Attenzione: svuotare tutte le tabelle del database dell'azienda prima di "
                                      "effettuare l'importazione?",
                                      Question::ExclamationNo, CompanyDetails(run.GetSession()));
    if (company == Answer::GivenUp) {
        throw SequenceRun::Declined();
    }
    if (company == Answer::No) {
        return;
    }
    run.PlanFirst(EmptyCompany);
    run.Begin(EmptyCompany);
    run.Log("Inizio " + EmptyCompany);
    const EmptyingResult emptied = modImport::TruncateDatabase(run.GetSession());
    if (emptied.outcome != RunResult::Outcome::Done) {
        // An import into what is left would mix the old with the new.
        throw ImportError("le tabelle dell'azienda non sono state svuotate del tutto: la sequenza non prosegue");
    }
    qint64 rows = 0;
    QStringList lines;
    for (const EmptyingResult::Table& table : emptied.tables) {
        lines.append(EmptiedLine(table));
        rows += std::max<qint64>(table.rows, 0);
    }
    lines += emptied.told;
    run.End(Outcome::Done, EmptiedText(emptied.tables.size(), rows), lines);
    const Answer cam = person.Ask("Attenzione: desideri svuotare anche il database del software CAM collegato?",
                                  Question::ExclamationNo, CamDetails(run));
    if (cam == Answer::GivenUp) {
        throw SequenceRun::Stopped();
    }
    if (cam == Answer::Yes) {
        run.PlanFirst(EmptyCam);
        run.Begin(EmptyCam);
        run.Import(LantekExpert, CamEmptying);
    }
}

/// A step that a source of its own serves.
void ImportFromSource(SequenceRun& run, const QString& step, const QString& origin, const QString& procedure,
                      const QString& notConnected) {
    run.Begin(step);
    run.Log("Inizio " + step);
    if (run.Connect(origin)) {
        run.Import(origin, procedure);
    } else {
        run.SkipNotConnected(notConnected);
    }
}

/// The second source of the stock balances: the settings of section IMPORT whose keys begin with the prefix.
std::optional<SecondSource> ConnectSecond(SequenceRun& run, const QString& name) {
    const QString prefix = name + '_';
    Session& session = run.GetSession();
    sourceSettings::ServerKeys keys;
    keys.username = prefix + "Username";
    keys.password = prefix + "Password";
    keys.server = prefix + "Servername";
    keys.database = prefix + "Databasename";
    keys.network = prefix + "NetworkCredential";
    keys.driver = prefix + "Driver";
    keys.encryption = prefix + "Encryption";
    keys.authorities = prefix + "EncryptionCA";
    const Operator::Quiet quiet(session.Person);
    return Guarded(session.Errors, "frmImport", "Sequence", std::optional<SecondSource>(), [&] {
        run.WriteKeys(name, prefix);
        const sourceSettings::OfOrigin written(session, {}); // what was just written holds
        return OpenBeside(session, run.OriginOf(name), sourceSettings::Server(name, keys));
    });
}

/// A step that is served by a second source, beside that of Lantek 24.
void ImportFromSecond(SequenceRun& run, const QString& step, const QString& name, const QString& origin,
                      const QString& procedure, const QString& notConnected) {
    run.Begin(step);
    run.Log("Inizio " + step);
    if (auto source = ConnectSecond(run, name)) {
        run.ImportFrom(*source, origin, procedure);
    } else {
        run.SkipNotConnected(notConnected);
    }
}

void ImportStock(SequenceRun& run) {
    const QString notConnected = "Impossibile connettersi a Lantek 24 / AUTOMA!";
    if (!run.Connect(Lantek24)) {
        for (const QString& step : {AutomaStock, CamStock, FerrobrioStock}) {
            run.Begin(step);
            run.SkipNotConnected(notConnected);
        }
        return;
    }
    ImportFromSecond(run, AutomaStock, Automa, Automa, "ImportInventarioAUTOMA", notConnected);
    run.Begin(CamStock);
    run.Log("Inizio " + CamStock);
    run.Import(Lantek24, "ImportInventarioLantek24");
    ImportFromSecond(run, FerrobrioStock, Ferrobrio, Ferrobrio, "ImportSaldiFerrobrio",
                     "Impossibile connettersi a Ferrobrio!");
    CloseSource(run.GetSession());
}

std::optional<SequenceResult> Press(Session& session, const Choice& choice, const SequenceWindow& window) {
    static const QString password = QStringLiteral("Tr1v0la8");
    Forget(session);
    if (session.Person.Ask("Lanciare la sequenza di importazione?") != Answer::Yes) {
        return std::nullopt;
    }
    const auto typed = session.Person.Input("Password per import: ", "Quadrimpt Import", {});
    // A wrong password is not told.
    if (typed != password || !CheckData(session, choice)) {
        return std::nullopt;
    }
    const SequenceSettings settings = ReadSequenceSettings(session);
    const QString merged = MergedTextOf(session, settings);
    if (!merged.isEmpty() && session.Person.Ask("Attenzione: " + merged + ".\n\nImportare lo stesso?",
                                                Question::ExclamationNo) != Answer::Yes) {
        return std::nullopt;
    }
    return settings.script == 1 ? Sequence(session, settings, window) : Sequence2(session, settings, window);
}

/// "Passi 5: completati 4, saltati 1"; what did not happen is left out.
QString StepsLine(const SequenceResult& result) {
    static const QList<QPair<QString, QList<Outcome>>> classes{
        {"completati", {Outcome::Done}},
        {"non riusciti", {Outcome::Failed}},
        {"saltati", {Outcome::NotConnected, Outcome::Unavailable}},
        {"interrotti", {Outcome::Cancelled}},
        {"non raggiunti", {Outcome::NotReached}}};
    QStringList parts;
    for (const auto& [name, outcomes] : classes) {
        const auto count =
            std::count_if(result.entries.cbegin(), result.entries.cend(),
                          [&, &among = outcomes](const SequenceEntry& entry) { return among.contains(entry.outcome); });
        if (count > 0) {
            parts.append(name + ' ' + QString::number(count));
        }
    }
    return QStringLiteral("Passi %1: ").arg(result.entries.size()) + parts.join(", ");
}

} // namespace

QString EmptiedText(qint64 tables, qint64 rows) {
    return QStringLiteral("tabelle svuotate: %1, righe eliminate: %2").arg(tables).arg(rows);
}

qint64 SequenceEntry::GivenUp() const {
    qint64 rows = 0;
    for (const RunResult& result : results) {
        rows += result.givenUpCount;
    }
    return rows;
}

qint64 SequenceResult::GivenUp() const {
    qint64 rows = 0;
    for (const SequenceEntry& entry : entries) {
        rows += entry.GivenUp();
    }
    return rows;
}

Ending SequenceResult::HowItEnded() const {
    RunResult whole;
    whole.outcome = outcome;
    Ending ending = EndingOf(whole);
    for (const SequenceEntry& entry : entries) {
        ending = std::max(ending, entry.isToBeRepeated ? Ending::Incomplete : Ending::Complete);
        for (const RunResult& result : entry.results) {
            ending = std::max(ending, EndingOf(result));
        }
    }
    return ending;
}

QString OutcomeText(Outcome outcome) {
    static const QMap<Outcome, QString> texts{
        {Outcome::NotReached, "non raggiunto"}, {Outcome::Done, "completato"},
        {Outcome::Failed, "non riuscito"},      {Outcome::Cancelled, "interrotto dall'operatore"},
        {Outcome::NotConnected, "saltato"},     {Outcome::Unavailable, "saltato"}};
    return texts.value(outcome);
}

SequenceResult Sequence(Session& session, const SequenceSettings& settings, const SequenceWindow& window) {
    SequenceRun run(session, settings, window);
    run.Plan({Counterparties, CamDocuments, AutomaStock, CamStock, FerrobrioStock});
    return run.Guard("Sequence", [&] {
        run.Bar().SetStep("inizializzazione in corso");
        run.SelectCompany();
        run.CheckLog();
        AskAndEmpty(run);
        ImportFromSource(run, Counterparties, ArcaEvolution, "ImportContropartiArcaEvolution",
                         "Impossibile connettersi ad Arca Evolution!");
        CloseSource(session);
        ImportFromSource(run, CamDocuments, Lantek24, "ImportDocumentiLantek24",
                         "Impossibile connettersi a Lantek 24!");
        CloseSource(session);
        ImportStock(run);
    });
}

std::optional<SequenceResult> PressSequence(Session& session, const Choice& choice, const SequenceWindow& window) {
    std::optional<SequenceResult> result;
    Guarded(session.Errors, "frmImport", "cmdSequence_Click", false, [&] {
        result = Press(session, choice, window);
        return true;
    });
    return result;
}

QStringList SequenceLines(const SequenceResult& result, int most) {
    QStringList lines{StepsLine(result)};
    for (const SequenceEntry& entry : result.entries) {
        lines.append(entry.step + ": " + OutcomeText(entry.outcome) +
                     (entry.message.isEmpty() ? QString() : QString(" (" + entry.message + ')')));
        for (const QString& text : entry.told) {
            lines.append("  " + QString(text).replace(u'\n', u' '));
        }
        for (const RunResult& procedure : entry.results) {
            for (const QString& line : ResultLines(procedure, most)) {
                lines.append("  " + line);
            }
        }
    }
    if (!result.logFile.isEmpty()) {
        lines.append("Log della sequenza: " + result.logFile);
    }
    return lines;
}
