#include "examples/examples.h"
#include "sql/ovConnection.h"
#include "tests/cli/CliRun.h"
#include "tests/support/embedded.h"
#include "tests/support/files.h"
#include "tests/support/foreignSource.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QFile>
#include <QJsonArray>
#include <QStandardPaths>
#include <QTest>

#ifndef Q_OS_WIN
#include <csignal>
#endif

class TestProgram : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        examples::Options options;
        options.rows = 300;
        options.folder = m_source.path();
        options.tables = QStringList{"controparti"};
        for (const auto& [what, number] : examples::Make("arca2000", options)) {
            m_expected = what.startsWith("CON_TRO") ? number.toLongLong() : m_expected;
        }
        QVERIFY(m_expected > 200);
    }

    void init() {
        m_cli = std::make_unique<CliRun>();
        m_cli->Set("IMPORT", "Databasename", m_source.path());
    }

    void refusesWrongUsage_data() {
        Columns<QStringList, QString>("arguments", "told");
        const auto row = [](const char* name, const QStringList& arguments, const char* told) {
            Row(name, arguments, QString::fromUtf8(told));
        };
        row("no command", {}, "Manca il comando");
        row("unknown command", {"imprt"}, "forse 'import'?");
        row("unknown option", {"origins", "--resett"}, "'resett' non esiste");
        row("option of another command", {"origins", "--reset"}, "'reset' non esiste");
        row("no value", {"import", "--company"}, "Manca il valore dell'opzione --company");
        row("one argument too many", {"origins", "tutte"}, "Argomento inatteso: 'tutte'");
        row("two unknown options", {"import", "--compamy", "X01", "--orign", "x"},
            "Le opzioni 'compamy', 'orign' non esistono: forse 'company', 'origin'?");
        row("no origin", {"import", "--company", "X01", "--data", "cli"}, "Manca l'opzione --origin");
        row("nothing told", {"import"}, "Mancano le opzioni --company, --origin, --data");
        row("unknown origin", {"import", "--company", "X01", "--origin", "arca", "--data", "cli"},
            "forse 'Arca 2000' o 'Arca Evolution'?");
        row("unknown data", Import({}).mid(0, 6) + QStringList{"clienti"}, "valori ammessi: cli, art, dis");
        row("nearly a procedure", Import({}).mid(0, 6) + QStringList{"ImportListiniArca200"},
            "forse 'ImportListiniArca2000'");
        row("unknown errors", Import({"--errors", "skip"}), "ask, ignore, retry, abort");
        row("unknown answer", Import({"--answer", "forse"}), "'forse' non previsto");
        row("an answer too many", Import({"--answer", "yes", "--answer", "no"}), "Risposte --answer in più: 2");
        row("a text that nobody asks for", Import({"--answer", "yes", "--input", "x"}), "si chiede niente");
        row("a file that nobody asks for", Import({"--answer", "yes", "--file", "b.db"}), "Risposte --file in più: 1");
        row("a file to check", {"check", "--company", "X01", "--origin", "Arca 2000", "--file", "b.db"},
            "la sorgente è quella che le impostazioni nominano");
        row("two of one", Import({"--data", "art"}), "--data vale una volta sola: è indicata con 'cli', 'art'");
        row("a code that is empty", Import({"--code", " "}), "--code non dice nulla");
        row("a code and a reset", Import({"--code", "C1", "--reset"}),
            "--reset non vale con --code: per una riga sola");
        const QStringList merge{"import", "--company", "X01", "--origin", "Kordel NetSuite", "--data", "disegni"};
        row("a code where all are taken", merge + QStringList{"--code", "000002"},
            "--code non vale con FusioneControparti");
        row("a reset where nothing is emptied", merge + QStringList{"--reset"},
            "--reset non vale con FusioneControparti");
        row("data of an earlier run", {"import", "--resume", "1", "--data", "cli"},
            "--data non vale con --resume: dati");
        row("limit of rejects", Import({"--max-rejects", "0%"}), "--max-rejects: '0%' non è un numero di righe");
        row("mended rows of no run", Import({"--mended", "a.csv"}), "--mended vale con --rejects-of");
        row("nearly a run", {"undo", "--run", "1abc", "--yes"}, "'1abc' non è il numero di un'esecuzione");
        row("no file to check", {"check", "--company", "X01", "--origin", "Excel"}, "--file PERCORSO");
        row("no file to look at", {"inspect", "--origin", "Excel"}, "--file PERCORSO");
        row("no names to open by", {"codes", "list", "--describe", "--company", "X01", "--origin", "SAM"}, "--input");
        row("data that an origin does not have", Import({"--answer", "yes"}).replaceInStrings("cli", "saldi"),
            "Arca 2000 non ha importazioni per --data saldi");
        row("the same to check", {"check", "--company", "X01", "--origin", "Arca 2000", "--data", "saldi"},
            "non ha importazioni per --data saldi");
        row("unknown company", Import({}).replaceInStrings("X01", "X02"), "forse 'X01'? (aziende presenti: X01)");
    }
    void refusesWrongUsage() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, told);
        m_cli->CreateCompany();
        const auto ended = m_cli->Run(arguments);
        QCOMPARE(ended.exitCode, 2);
        QVERIFY2(ended.errors.contains(told), qPrintable(ended.errors));
        QCOMPARE(ended.output, QString());
    }

    void showsHelp_data() {
        Columns<QStringList, QString>("arguments", "told");
        Row("program", QStringList{"--help"}, "create-database");
        Row("command", QStringList{"import", "-h"}, "--errors MODO");
        Row("help", QStringList{"help"}, "create-database");
        Row("help of a command", QStringList{"help", "import"}, "--errors MODO");
        Row("version", QStringList{"--version"}, "quadrix-import-cli 0.");
        Row("command, options before", QStringList{"--help", "import"}, "--errors MODO");
    }
    void showsHelp() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, told);
        const auto ended = m_cli->Run(arguments);
        QCOMPARE(ended.exitCode, 0);
        QVERIFY2(ended.output.contains(told), qPrintable(ended.output));
        QVERIFY2(ended.errors.isEmpty(), qPrintable(ended.errors));
    }

    void answersWrongUsageInJson() {
        const auto ended = m_cli->Run({"import", "--json", "--nome", "x"});
        QCOMPARE(ended.exitCode, 2);
        QCOMPARE(ended.Json()["outcome"].toString(), QString("wrongUsage"));
        QCOMPARE(ended.Json()["errors"].toArray().size(), 1);
    }

    void listsOrigins() {
        const auto ended = m_cli->Run({"origins", "--json"});
        QCOMPARE(ended.exitCode, 0);
        const QJsonArray origins = ended.Json()["origins"].toArray();
        QCOMPARE(origins.size(), 57);
        const QJsonObject arca = origins[6].toObject();
        QCOMPARE(arca["name"].toString(), QString("Arca 2000"));
        const QJsonObject disegni = arca["buttons"].toArray()[7].toObject();
        QCOMPARE(disegni["caption"].toString(), QString("Importa Listini"));
        QCOMPARE(disegni["shown"].toString(), QString("yes"));
        const QJsonObject cli = arca["buttons"].toArray()[0].toObject();
        QCOMPARE(cli["procedures"].toArray()[0].toString(), QString("ImportContropartiArca2000"));
        QVERIFY(m_cli->Run({"origins"}).output.contains("Excel scarico AS/400"));
        const auto found = m_cli->Run({"origins", "--search", "AS/4", "--json"}).Json()["origins"].toArray();
        QVERIFY(!found.isEmpty() && found.size() < origins.size());
    }

    void createsCompanies() {
        const auto first = m_cli->Run({"create-database", "--company", "x01", "--name", "Prova Uno", "--json"});
        QCOMPARE(first.exitCode, 0);
        QCOMPARE(first.Json()["company"].toString(), QString("X01"));
        QCOMPARE(Count(m_cli->Database(), "SELECT COUNT(*) FROM SYS_AZI WHERE AZRAS = 'Prova Uno'"), 1);
        const auto again = m_cli->CreateCompany();
        QCOMPARE(again.exitCode, 1);
        QVERIFY2(again.errors.contains("X01"), qPrintable(again.errors));
    }

    void tellsWhyItCannotStart_data() {
        Columns<QString, QString, QString>("key", "value", "told");
        Row("no database", "DatabaseName", "manca.db", "non esiste");
        Row("no database of Quadrix", "DatabaseName", "altro.db", "SYS_AZI");
        Row("source missing", "", "", "Impossibile connettersi a Arca 2000!");
    }
    void tellsWhyItCannotStart() {
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(QString, told);
        m_cli->CreateCompany();
        Count(m_cli->Folder.filePath("altro.db"), "SELECT 1");
        if (key.isEmpty()) {
            m_cli->Set("IMPORT", "Databasename", m_cli->Folder.filePath("manca"));
        } else {
            m_cli->Set("DATABASE", key, value);
        }
        const auto ended = m_cli->Run(Import({"--answer", "no", "--json"}));
        QCOMPARE(ended.exitCode, 1);
        QVERIFY2(ended.errors.contains(told), qPrintable(ended.errors));
        QCOMPARE(ended.Json()["outcome"].toString(), QString("failed"));
        QVERIFY2(QString(QJsonDocument(ended.Json()).toJson()).contains(told), qPrintable(ended.output));
        QVERIFY(!QFile::exists(m_cli->Folder.filePath("manca.db")));
    }

    void importsAndAccounts() {
        m_cli->CreateCompany();
        const auto ended = m_cli->Run(Import({"--answer", "yes", "--json"}));
        QVERIFY2(ended.exitCode == 0, qPrintable(ended.errors));
        const QJsonObject json = ended.Json();
        QCOMPARE(json["outcome"].toString(), QString("done"));
        QCOMPARE(json["inserted"].toInteger(), m_expected);
        QCOMPARE(json["inserted"].toInteger(), Count(m_cli->Database(), "SELECT COUNT(*) FROM X01_CON_TRO"));
        QCOMPARE(json["inserted"].toInteger() + json["updated"].toInteger() + json["skipped"].toInteger() +
                     json["givenUp"].toInteger() + json["notReached"].toInteger(),
                 json["sourceRows"].toInteger());
        const QJsonObject written = json["written"].toObject();
        for (const QString& table : written.keys()) {
            QCOMPARE(written[table].toObject()["inserted"].toInteger(),
                     Count(m_cli->Database(), "SELECT COUNT(*) FROM X01_" + table));
        }
        QVERIFY(written.contains("NUM_TEL"));
        QVERIFY(!json["untranslated"].toArray().isEmpty());
        QVERIFY(json["seconds"].toDouble() > 0);
        QVERIFY(QFile::exists(json["log"].toString()));
        QVERIFY2(ended.errors.contains("Controparti importate correttamente!"), qPrintable(ended.errors));

        const auto again = m_cli->Run(Import({"--answer", "no", "--reset"}));
        QCOMPARE(again.exitCode, 0);
        QCOMPARE(Count(m_cli->Database(), "SELECT COUNT(*) FROM X01_CON_TRO"), m_expected);
        QVERIFY2(again.output.contains("completata"), qPrintable(again.output));
    }

    void importsOneCode() {
        m_cli->CreateCompany();
        const auto ended = m_cli->Run(Import({"--code", "C00007", "--answer", "no", "--json"}));
        QCOMPARE(ended.exitCode, 0);
        QCOMPARE(ended.Json()["sourceRows"].toInteger(), 1);
        QCOMPARE(Count(m_cli->Database(), "SELECT COUNT(*) FROM X01_CON_TRO WHERE CDCON = '000007'"), 1);
        QCOMPARE(Count(m_cli->Database(), "SELECT COUNT(*) FROM X01_CON_TRO"), 1);
    }

    void replaysItsTrace() {
        if (QStandardPaths::findExecutable("sqlite3").isEmpty()) {
            QSKIP("sqlite3 is not installed");
        }
        m_cli->CreateCompany();
        const QString copy = m_cli->Folder.filePath("copy.db");
        QVERIFY(QFile::copy(m_cli->Database(), copy));
        const QString path = m_cli->Folder.filePath("trace.sql");
        QCOMPARE(m_cli->Run(Import({"--answer", "yes", "--reset", "--trace", path})).exitCode, 0);
        const QByteArray statements = ReadFile(path);
        QVERIFY(statements.contains("\n-- SELECT COUNT(*) FROM anagrafe\n"));
        QVERIFY(!Sqlite(copy, statements).startsWith("failed"));
        QVERIFY(Dump(copy) == Dump(m_cli->Database()));
        QVERIFY(Dump(copy).size() > 100000);
    }

    void takesATrialBack() {
        m_cli->CreateCompany();
        m_cli->Run(Import({"--code", "C00007", "--answer", "no"}));
        const auto ended = m_cli->Run(Import({"--answer", "no", "--reset", "--dry-run", "--json"}));
        QCOMPARE(ended.exitCode, 0);
        QCOMPARE(ended.Json()["inserted"].toInteger(), m_expected);
        QCOMPARE(ended.Json()["dryRun"].toBool(), true);
        QCOMPARE(Count(m_cli->Database(), "SELECT COUNT(*) FROM X01_CON_TRO"), 1);
    }

    void deletesNothingWhileAnAnswerIsMissing() {
        m_cli->CreateCompany();
        m_cli->Run(Import({"--code", "C00007", "--answer", "no"}));
        const auto ended = m_cli->Run(Import({"--reset"}));
        QCOMPARE(ended.exitCode, 2);
        QVERIFY2(ended.errors.contains("Vuoi riportare gli indirizzi mail"), qPrintable(ended.errors));
        QVERIFY(ended.errors.contains("--answer"));
        QCOMPARE(Count(m_cli->Database(), "SELECT COUNT(*) FROM X01_CON_TRO"), 1);
    }

    void tellsHowItEndedAndWhatWasDeleted() {
        m_cli->CreateCompany();
        const auto first = m_cli->Run(Import({"--answer", "no", "--json"})).Json();
        ovConnection target;
        OpenEmbedded(target, m_cli->Database())
            .Execute("CREATE TRIGGER refuse BEFORE INSERT ON X01_CON_TRO WHEN NEW.CDCON = '000007' "
                     "BEGIN SELECT RAISE(ABORT, 'rifiutata'); END");
        const auto ended = m_cli->Run(Import({"--answer", "no", "--reset", "--errors", "ignore", "--json"}));
        const QJsonObject json = ended.Json();
        QCOMPARE(ended.exitCode, 4);
        QCOMPARE(json["outcome"].toString(), QString("incomplete"));
        QCOMPARE(json["givenUp"].toInteger(), 1);
        const QJsonObject emptied = json["emptied"].toArray()[0].toObject();
        QCOMPARE(emptied["table"].toString(), QString("X01_CON_TRO"));
        QCOMPARE(emptied["rows"].toInteger(), first["inserted"].toInteger());
        QVERIFY2(ended.errors.contains("Controparti importate correttamente!\nRighe abbandonate: 1."),
                 qPrintable(ended.errors));
        const QString log = QString::fromLatin1(ReadFile(json["log"].toString()));
        QVERIFY2(log.contains(QStringLiteral("Tabella X01_CON_TRO: svuotata (%1 righe eliminate)").arg(m_expected)),
                 qPrintable(log));
        QVERIFY2(log.contains("Fine ImportContropartiArca2000: completata ma non per intero. Righe dell'origine"),
                 qPrintable(log));
    }

    /// What is left to do runs as it is told, with the answers that its imports ask for.
    void givesTheAnswersAgain() {
        m_cli->CreateCompany();
        Count(m_cli->Database(), "CREATE TRIGGER refuse BEFORE INSERT ON X01_CON_TRO WHEN NEW.CDCON = '000007' "
                                 "BEGIN SELECT RAISE(ABORT, 'rifiutata'); END");
        const QString told = m_cli->Run(Import({"--answer", "no", "--errors", "ignore"})).output;
        QVERIFY2(told.contains("import --rejects-of 1 --mended FILE --answer no\n"), qPrintable(told));
        const QString apply = QRegularExpression("poi (codes apply .+)").match(told).captured(1).trimmed();
        QCOMPARE(apply, QString("codes apply --company X01 --answer no"));
        const QStringList terms{"--company", "X01", "--table", "anagrafe", "--field", "pag"};
        const QJsonObject code =
            m_cli->Run(QStringList{"codes", "list", "--json"} + terms).Json()["codes"][0].toObject();
        const auto set = m_cli->Run(QStringList{"codes", "set", "--old", code["oldCode"].toString(), "--new", "Z9",
                                                "--create", "--description", "Nuovo"} +
                                    terms);
        QVERIFY2(set.exitCode == 0, qPrintable(set.output + set.errors));
        const auto applied = m_cli->Run(apply.split(' '));
        QVERIFY2(applied.exitCode != 2 && applied.output.contains(apply), qPrintable(applied.output + applied.errors));
    }

    void namesQuestionsAndWhatIsBuilt() {
        const QJsonArray origins = m_cli->Run({"origins", "--json"}).Json()["origins"].toArray();
        const QJsonObject arca = origins[6].toObject();
        const QJsonArray questions = arca["buttons"].toArray()[0].toObject()["questions"].toArray();
        QCOMPARE(questions.size(), 1);
        QVERIFY(questions[0].toObject()["question"].toString().startsWith("Vuoi riportare"));
        const auto excel = std::find_if(origins.begin(), origins.end(),
                                        [](const QJsonValue& origin) { return origin["name"] == "Excel"; });
        const QJsonObject asked = excel->toObject()["questions"].toObject();
        QCOMPARE(asked["ImportArticoliExcel"].toArray()[0].toObject()["option"].toString(), QString("file"));
        for (const QJsonValue& origin : origins) {
            QVERIFY2(origin.toObject()["built"].toBool(), qPrintable(origin.toObject()["name"].toString()));
        }
    }

    void tellsACodeThatTheSourceLacks() {
        m_cli->CreateCompany();
        const auto ended = m_cli->Run(Import({"--answer", "no", "--code", "NESSUNO"}));
        QCOMPARE(ended.exitCode, 4);
        QVERIFY2(ended.output.contains("Nessuna riga letta dell'origine ha il codice 'NESSUNO'"),
                 qPrintable(ended.output));
    }

    void inspectsTheSource() {
        m_cli->CreateCompany();
        MakeForeignSource(m_cli->Folder.filePath("sorgente.sqlite"));
        m_cli->Set("IMPORT", "Databasename", "sorgente.sqlite");
        const QString layout = m_cli->Folder.filePath("Tracciati/Gescom.ini");
        const QStringList inspect{"inspect", "--origin", "Gescom"};
        const auto shown = m_cli->Run(inspect);
        QCOMPARE(shown.exitCode, 1); // what is necessary is missing
        QVERIFY2(shown.output.contains("Tabella VETTORI: manca: forse 'TRASPORTATORI' (alias: vettori, "),
                 qPrintable(shown.output));
        QVERIFY(shown.output.contains("'CAMPO7' (valori: partita IVA)"));
        QVERIFY(!QFile::exists(layout));
        const auto json = m_cli->Run(inspect + QStringList{"--write", "--json"}).Json();
        QCOMPARE(json["layoutFile"].toString(), layout);
        QVERIFY(ReadFile(layout).contains("\n;VETTORI=TRASPORTATORI ; alias: vettori"));
        QStringList found;
        for (const QJsonValue table : json["tables"].toArray()) {
            found += table["inSource"].isNull() ? QStringList() : QStringList(table["name"].toString());
        }
        QCOMPARE(found, QStringList());
        WriteFile(layout, "[TABELLE]\nVETTORI=TRASPORTATORI\n");
        QVERIFY(m_cli->Run(inspect).output.contains("Tabella VETTORI (nell'origine TRASPORTATORI): righe 1"));
        WriteFile(m_cli->Folder.filePath("Tracciati/modImport_Gescom.colonne"),
                  "TRASPORTATORI\tCODICE\x1f"
                  "VARCHAR(4)\tPARTITA_IVA\x1fINTEGER\tFAX\n");
        const auto changed = m_cli->Run(inspect + QStringList{"--take-equal"});
        QVERIFY2(changed.output.contains("Cambiata dall'ultima importazione: in più NOME") &&
                     changed.output.contains("; in meno FAX; di altro tipo PARTITA_IVA (VARCHAR(16), prima INTEGER)"),
                 qPrintable(changed.output));
    }

    void checksWithoutWriting() {
        m_cli->CreateCompany();
        const QStringList check{"check", "--company", "X01", "--origin", "Arca 2000"};
        QCOMPARE(m_cli->Run(check + QStringList{"--data", "cli"}).exitCode, 0);
        QVERIFY(m_cli->Run(check + QStringList{"--data", "piano"}).output.contains("inspect --origin \"Arca 2000\""));
        const auto missing = m_cli->Run(check + QStringList{"--data", "piano", "--json"});
        QCOMPARE(missing.exitCode, 1);
        const QJsonObject procedure = missing.Json()["procedures"].toArray()[0].toObject();
        QCOMPARE(procedure["procedure"].toString(), QString("ImportPianoContiArca2000"));
        QVERIFY(procedure["missing"].toArray()[0].toString().contains("pianocon"));
        QCOMPARE(Count(m_cli->Database(), "SELECT COUNT(*) FROM X01_CON_TRO"), 0);
        const QString memory = m_cli->Folder.filePath("Tracciati/modImport_Arca2000.colonne");
        QVERIFY(QDir().mkpath(QFileInfo(memory).path()));
        WriteFile(memory, "anagrafe\tVECCHIA\n");
        const auto changed = m_cli->Run(check + QStringList{"--data", "cli"});
        QVERIFY2(changed.output.contains("ORIGINE CAMBIATA DALL'ULTIMA VOLTA: anagrafe: in più ") &&
                     changed.output.contains("; in meno VECCHIA"),
                 qPrintable(changed.output));
        QCOMPARE(ReadFile(memory), QByteArray("anagrafe\tVECCHIA\n")); // only an import remembers
        const auto refused = m_cli->Run(QStringList{"import", "--data", "piano"} + check.mid(1));
        QVERIFY2(refused.output.contains("Mancano:\n    origine: tabella 'pianocon'"), qPrintable(refused.output));
    }

    /// A command that does nothing but tell has failed where that cannot be read.
    void tellsWhatCannotBeWritten() {
        if (!QFile::exists("/dev/full")) {
            QSKIP("no device that is full");
        }
        m_cli->CreateCompany();
        for (const QStringList& command : {QStringList{"origins"}, QStringList{"history", "--json"}}) {
            QProcess process;
            process.setStandardOutputFile("/dev/full");
            process.start(QUADRIX_CLI, QStringList{"--config", m_cli->Folder.path()} + command);
            QCOMPARE(CliRun::End(process).exitCode, 1);
        }
    }

    void stopsAtAnInterrupt_data() {
        Columns<int, int>("signal", "times");
#ifndef Q_OS_WIN
        Row("Ctrl-C", SIGINT, 1);
        Row("asked to end", SIGTERM, 1);
        Row("terminal gone, which the shell tells too", SIGHUP, 2);
#endif
    }
    void stopsAtAnInterrupt() {
#ifdef Q_OS_WIN
        QSKIP("no signals to send");
#else
        QFETCH(const int, signal);
        QFETCH(const int, times);
        const QTemporaryDir large;
        MakeLarge(large);
        const auto process = m_cli->Start(Import({"--answer", "no", "--json"}));
        const auto written = [this] { return Count(m_cli->Database(), "SELECT COUNT(*) FROM X01_CON_TRO"); };
        QTRY_VERIFY_WITH_TIMEOUT(written() > 0, 60000);
        for (int time = 0; time < times; ++time) {
            QCOMPARE(kill(static_cast<pid_t>(process->processId()), signal), 0);
            QTest::qWait(20);
        }
        const auto ended = CliRun::End(*process);
        QCOMPARE(ended.exitCode, 3);
        const QJsonObject json = ended.Json();
        QCOMPARE(json["outcome"].toString(), QString("cancelled"));
        QVERIFY(json["notReached"].toInteger() > 0);
        QCOMPARE(json["inserted"].toInteger(), written());
#endif
    }

    /// Whoever reads no further has seen enough; the import goes on to its end.
    void outlivesItsReader() {
#ifdef Q_OS_WIN
        QSKIP("no shell");
#else
        const QTemporaryDir large;
        MakeLarge(large);
        QProcess shell;
        const QString code = m_cli->Folder.filePath("codice");
        shell.start("sh", QStringList{"-c", "f=$1; shift; { \"$@\" 2>&1; echo $? > $f; } | head -c 1 > /dev/null", "sh",
                                      code, QUADRIX_CLI, "--config", m_cli->Folder.path()} +
                              Import({"--answer", "no"}));
        QVERIFY(shell.waitForFinished(120000));
        QCOMPARE(ReadFile(code).trimmed(), QByteArray("0"));
        const QString log = QString::fromLatin1(ReadFile(QFileInfo(QUADRIX_CLI).absolutePath() + "/import.log"));
        QVERIFY2(log.contains("Fine ImportContropartiArca2000: completata"), qPrintable(log.right(500)));
#endif
    }

private:
    /// A source that takes long enough to be interrupted, and the company for it.
    void MakeLarge(const QTemporaryDir& folder) const {
        examples::Options options;
        options.rows = 5000;
        options.folder = folder.path();
        options.tables = QStringList{"controparti"};
        examples::Make("arca2000", options);
        m_cli->Set("IMPORT", "Databasename", folder.path());
        m_cli->CreateCompany();
    }
    static QStringList Import(const QStringList& more) {
        return QStringList{"import", "--company", "X01", "--origin", "arca 2000", "--data", "cli"} + more;
    }
    /// First column of the first row.
    static qint64 Count(const QString& database, const QString& query) {
        ovConnection connection;
        return OpenEmbedded(connection, database).ExecuteCommand(query);
    }
    /// The content of a database as its own client writes it.
    static QByteArray Dump(const QString& database) { return Sqlite(database, ".dump\n"); }
    static QByteArray Sqlite(const QString& database, const QByteArray& input) {
        QProcess process;
        process.start("sqlite3", {"-bail", database});
        process.write(input);
        process.closeWriteChannel();
        process.waitForFinished(60000);
        return process.exitCode() == 0 ? process.readAllStandardOutput() : "failed: " + process.readAllStandardError();
    }

    QTemporaryDir m_source;
    qint64 m_expected = 0;
    std::unique_ptr<CliRun> m_cli;
};

QUADRIX_TEST(TestProgram)
#include "test_program.moc"
