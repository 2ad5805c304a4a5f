#include "adapters/registry.h"
#include "adapters/sourceSettings.h"
#include "app/connectSource.h"
#include "app/sourceChoice.h"
#include "sql/mod_ovTools.h"
#include "tests/sources/dbfBytes.h"
#include "tests/sources/mdbBytes.h"
#include "tests/support/errorOf.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

namespace {

/// The parameters in one line, without those that are empty.
QString Describe(const ovConnection& source) {
    QStringList parts{QString::number(static_cast<int>(source.ProviderType))};
    const auto add = [&parts](const char* name, const QString& value) {
        if (!value.isEmpty()) {
            parts.append(QString(name + QString('=') + value));
        }
    };
    add("DSN", source.DSN);
    add("Server", source.Server);
    add("Database", source.DatabaseName);
    add("User", source.User);
    add("Password", source.Password);
    add("String", source.ConnectionString);
    add("Driver", source.Driver);
    add("Network", source.NetworkCredential ? "1" : "");
    return parts.join(' ');
}

/// The parameters after the preparation of an origin of the list; "-" when the operator gave up.
QString Prepare(Session& session, const QString& name) {
    ovConnection source;
    return registry::Find(name)->source.prepare(session, source) ? Describe(source) : QString("-");
}

} // namespace

/// The parameters that the preparation of each origin gives a connection.
class TestConnectSource : public QObject {
    Q_OBJECT

private slots:
    void knowsEveryOrigin() {
        for (const contract::Origin* origin : registry::Origins()) {
            QVERIFY2(origin->source.prepare.open != nullptr, qPrintable(origin->name));
        }
    }

    void prepares_data() {
        Columns<QStringList, QString, QString>("inputs", "file", "expected");
        const auto row = [](const char* origin, const char* expected, const QStringList& inputs = {},
                            const QString& file = {}) { Row(origin, inputs, file, expected); };
        row("SAM",
            "0 String=Provider=MSDASQL.1;Password=p;Persist Security Info=True;User ID=u;Data Source=SAM;Initial "
            "Catalog=d",
            {"u", "p", "d"});
        row("LibertyCommerce", "0 String=Provider=MSDASQL.1;User ID=Admin;Data Source=LibertyCommerce");
        row("Memphis", "0 Server=(local) Database=MEMPHIS User=sa");
        row("Mexal", "0 DSN=MEXAL");
        row("Gamma TeamSystem", "0 DSN=GAMMATEAMSYSTEM");
        row("OSL GP90", "0 Server=SERVER Database=OSL User=sa");
        row("Ad-Hoc", "0 Server=SERVER Database=AHR Network=1");
        row("BMS", "4 DSN=BMS");
        row("OS1", "1 String=Driver={Microsoft Access Driver (*.mdb, *.accdb)};DBQ=%1/OS1.mdb");
        row("Access", "1 String=Driver={Microsoft Access Driver (*.mdb, *.accdb)};DBQ=/dati/clienti.mdb", {},
            "/dati/clienti.mdb");
        row("Excel", "0 String=Driver={Microsoft Excel Driver (*.xls, *.xlsx)};DBQ=/dati/a.xls", {}, "/dati/a.xls");
        row("Lamina", "0 String=Driver={Microsoft Text Driver (*.txt; *.csv)};DBQ=/dati", {}, "/dati/a.csv");
    }
    void prepares() {
        QFETCH(QStringList, inputs);
        QFETCH(QString, file);
        QFETCH(QString, expected);
        TestTarget target;
        target.Person.Inputs = {inputs.begin(), inputs.end()};
        target.Person.Files = file.isEmpty() ? std::deque<QString>() : std::deque<QString>{file};
        if (expected.contains("%1")) {
            expected = expected.arg(target.Folder.path());
        }
        QCOMPARE(Prepare(target.Get(), QTest::currentDataTag()), expected);
    }

    void givesUp_data() {
        Columns<int>("asked");
        Row("SAM", 2);
        Row("Memphis", 2);
        Row("Excel", 1);
        Row("Access", 1);
    }
    void givesUp() {
        TestTarget target;
        target.Person.Inputs = {QString("x"), std::nullopt};
        QCOMPARE(Prepare(target.Get(), QTest::currentDataTag()), QString("-"));
        QTEST(static_cast<int>(target.Person.Events.size()), "asked");
    }

    void readsServerSettings() {
        TestTarget target;
        ovConfig& config = target.Get().Config;
        target.Person.Otherwise = false; // SQL Server, no data files
        QCOMPARE(Prepare(target.Get(), "WinProgest"), QString("0 Server=SERVER Database=WINPROGEST User=sa"));
        QCOMPARE(target.Person.Questions.last().question,
                 QString("Mi collego a WinProgest sui file di dati?\n[SI] file\n[NO] SQLServer"));
        config.SetAppConfig("IMPORT", "ProviderType", "3");
        config.SetAppConfig("IMPORT", "Servername", "db1");
        config.SetAppConfig("IMPORT", "Databasename", "gescom2");
        config.SetAppConfig("IMPORT", "Username", "carlo");
        config.SetAppConfig("IMPORT", "Password", "p");
        QCOMPARE(Prepare(target.Get(), "Gescom"), QString("3 Server=db1 Database=gescom2 User=carlo Password=p"));
        config.SetAppConfig("IMPORT", "NetworkCredential", "1.0");
        QCOMPARE(Prepare(target.Get(), "Gescom"), QString("3 Server=db1 Database=gescom2 Network=1"));
        config.SetAppConfig("AHR", "NetworkCredential", "0");
        config.SetAppConfig("IMPORT", "Driver", "MariaDB Unicode");
        QCOMPARE(Prepare(target.Get(), "Ad-Hoc"),
                 QString("3 Server=db1 Database=gescom2 User=carlo Password=p Driver=MariaDB Unicode"));
    }

    /// What is chosen for an origin is what its preparation then reads.
    void opensWhatIsChosen_data() {
        Columns<QString, QString, QString, QString>("own", "sections", "line", "prepared");
        const QString server = "0 Server=S Database=D User=u Password=p";
        const QString line = "Server (non impostato), database (non impostato), ";
        Row("Gescom", "", "IMPORT", line + "utente (non impostato)", server);
        Row("Ad-Hoc", "", "IMPORT,AHR", line + "accesso integrato", server);
        Row("AUTOMA", "", "IMPORT", line + "utente (non impostato)", server);
        Row("Tessera", "Tessera_Username", "Tessera,IMPORT", line + "utente altri", server);
        Row("Panthera", "Username", "Panthera,IMPORT", line + "utente altri", server);
        Row("BMS", "DSN_Username", "BMS,IMPORT", "Origine dati ODBC (non impostato), utente altri",
            "4 DSN=O User=u Password=p");
        Row("Arca 2000", "Databasename", "Arca 2000", "Cartella /altri/dati",
            "6 String=Driver={Microsoft Visual FoxPro Driver};Data Source=/D");
        Row("SAM", "", "IMPORT", "Si chiede a ogni importazione", "-");
    }
    void opensWhatIsChosen() {
        QFETCH(const QString, own);
        const contract::Origin& origin = *registry::Find(QTest::currentDataTag());
        TestTarget target;
        Session& session = target.Get();
        if (!own.isEmpty()) {
            session.Config.SetAppConfig(origin.name, own, own == "Databasename" ? "/altri/dati" : "altri");
        }
        target.Person.Inputs = {std::nullopt};
        QTEST(sourceChoice::Line(session, origin), "line");
        QTEST(sourceChoice::Sections(session, origin).join(','), "sections");
        const sourceChoice::Source before = sourceChoice::Read(session, origin);
        sourceChoice::Source source = before;
        source.database = source.place == contract::Place::Folder ? "/D" : "D";
        source.server = "S";
        source.dsn = "O";
        source.user = "u";
        source.integrated = false;
        sourceChoice::Write(session, origin, before, source, "p");
        const sourceSettings::OfOrigin settings(session, origin.name);
        QTEST(Prepare(session, origin.name), "prepared");
    }

    /// What another program sets while the operator chooses stays, but for what he has changed himself.
    void writesWhatWasChanged() {
        TestTarget target;
        Session& session = target.Get();
        const contract::Origin& origin = *registry::Find("Gescom");
        session.Config.SetAppConfig("IMPORT", "Servername", "VECCHIO");
        session.Config.SetAppConfig("IMPORT", "Databasename", "PRIMO");
        const sourceChoice::Source before = sourceChoice::Read(session, origin);
        session.Config.SetAppConfig("IMPORT", "Servername", "NUOVO");
        session.Config.SetAppConfig("IMPORT", "Databasename", "SECONDO");
        sourceChoice::Source source = before;
        source.database = "TERZO";
        sourceChoice::Write(session, origin, before, source, {});
        const sourceChoice::Source now = sourceChoice::Read(session, origin);
        QCOMPARE(now.server, QString("NUOVO"));
        QCOMPARE(now.database, QString("TERZO"));
    }

    /// The user of a server, seeded by an origin that has one, is not that of a data source.
    void keepsDataSourcesApart() {
        TestTarget target;
        ovConfig& config = target.Get().Config;
        QCOMPARE(Prepare(target.Get(), "OSL GP90"), QString("0 Server=SERVER Database=OSL User=sa"));
        QCOMPARE(Prepare(target.Get(), "DOMINIO"), QString("0 DSN=DOMINIO"));
        config.SetAppConfig("IMPORT", "DSN_Username", "lettore");
        config.SetAppConfig("IMPORT", "DSN_Password", "p");
        QCOMPARE(Prepare(target.Get(), "DOMINIO"), QString("0 DSN=DOMINIO User=lettore Password=p"));
    }

    void refusesUnknownProviders_data() {
        Columns<QString, QString>("setting", "prepared");
        Row("number", "3", "3 DSN=DOMINIO");
        Row("number with decimals", "4.0", "4 DSN=DOMINIO");
        Row("name", "MYSQL", "");
        Row("half", "1.5", "");
        Row("no such number", "5", "");
    }
    void refusesUnknownProviders() {
        QFETCH(QString, setting);
        QFETCH(QString, prepared);
        TestTarget target;
        target.Get().Config.SetAppConfig("IMPORT", "ProviderType", setting);
        QString seen;
        const auto error = ErrorOf<ImportError>([&] { seen = Prepare(target.Get(), "DOMINIO"); });
        QCOMPARE(seen, prepared);
        QCOMPARE(error.has_value(), prepared.isEmpty());
        if (error) {
            for (const QString& part :
                 {setting, QString("ProviderType"), QString("[IMPORT]"), QString("Quadrix.ini")}) {
                QVERIFY2(error->Message().contains(part), qPrintable(error->Message()));
            }
        }
    }

    /// A path counts from the folder of the settings, whatever folder the program was started in.
    void countsPathsFromTheSettings_data() {
        Columns<QString, bool>("path", "isThere");
        Row("relative", "dati", true);
        Row("relative, as Windows writes it", "sotto\\dati", true);
        Row("not there", "altri", false);
    }
    void countsPathsFromTheSettings() {
        QFETCH(QString, path);
        QFETCH(bool, isThere);
        TestTarget target;
        target.Person.Otherwise = true; // WinProgest: data files
        QDir(target.Folder.path()).mkpath("dati");
        QDir(target.Folder.path()).mkpath("sotto/dati");
        target.Get().Config.SetAppConfig("IMPORT", "Databasename", path);
        const QString whole = target.Folder.filePath(QString(path).replace('\\', '/'));
        for (const char* origin : {"Arca 2000", "Ad-Hoc Windows", "Mexal", "WinProgest", "DSS Waps"}) {
            const bool isChoice = origin == QString("Mexal") || origin == QString("WinProgest");
            const QString prepared = Prepare(target.Get(), origin);
            QVERIFY2(prepared.contains(isThere || !isChoice ? whole : "DSN="), qPrintable(origin + (": " + prepared)));
        }
    }

    void namesTheSettingOfAPath_data() {
        Columns<QString, QStringList>("path", "parts");
        Row("missing", "", QStringList{"Manca il percorso"});
        Row("wrong", "altrove", QStringList{"/altrove'", "non esiste", "il percorso è quello"});
        Row("cut", "d/" + QString(130, 'x'), QStringList{"ne sono letti solo i primi 127 caratteri"});
    }
    void namesTheSettingOfAPath() {
        QFETCH(QString, path);
        QFETCH(QStringList, parts);
        TestTarget target;
        target.Get().Config.SetAppConfig("IMPORT", "Databasename", path);
        QCOMPARE(ConnectOrTell(target.Get(), *registry::Find("Arca 2000")), SourceOutcome::Failed);
        QCOMPARE(target.Person.Events.size(), 1); // one box for one error
        const QString shown = target.Person.Messages.value(0).text;
        QVERIFY2(shown.startsWith("Impossibile connettersi a Arca 2000!\n"), qPrintable(shown));
        for (const QString& part : parts + QStringList{"chiave Databasename, sezione [IMPORT]", "Quadrix.ini"}) {
            QVERIFY2(shown.contains(part), qPrintable(shown));
        }
        QCOMPARE(target.Get().Errors.Entries().last().procedure, QString("ConnectSource"));
        target.Get().Errors.ReportToOperator({}); // it is shown again from now on
        QCOMPARE(target.Person.Reported.size(), 1);
    }

    /// A table of MS-DOS does not tell its code page: the setting does, and without it the log says what was taken.
    void readsFilesInTheCodePageOfTheSettings_data() {
        Columns<QString, int, QByteArray, QString, QString>("setting", "language", "city", "read", "noted");
        const QByteArray dos("Mondov\x8d ");
        Row("set", "cp850", 0, dos, "Mondovì", "");
        Row("not set", "", 0, dos, "Mondov\u008d",
            "CODE PAGE NON DICHIARATA: il file 'clienti.dbf' è letto in windows-1252");
        Row("not set, and of no account", "", 0, QByteArray("Torino  "), "Torino", "");
        Row("told by the file", "cp1252", 2, dos, "Mondovì", "");
        Row("put above the file", "cp850!", 3, dos, "Mondovì", "");
    }
    void readsFilesInTheCodePageOfTheSettings() {
        QFETCH(QString, setting);
        QFETCH(int, language);
        QFETCH(QByteArray, city);
        QFETCH(QString, noted);
        TestTarget target;
        const dbfBytes::Table table{0x03, language, {{"CITTA", 'C', 8}}, " " + city + " " + city, 2};
        WriteFile(target.Folder.filePath("clienti.dbf"), table.Bytes());
        target.Get().Config.SetAppConfig("IMPORT", "Databasename", ".");
        target.Get().Config.SetAppConfig("IMPORT", "CodePage", setting);
        contract::Origin origin;
        origin.source.prepare = sourceSettings::FoxProFolder();
        origin.name = "Arca 2000";
        QCOMPARE(ConnectSource(target.Get(), origin), SourceOutcome::Opened);
        QTEST(target.Get().SourceConnection().ExecuteWC("SELECT CITTA FROM clienti").Fields(0).Value().toString(),
              "read");
        const Notes& notes = target.Get().Notes;
        QCOMPARE(notes.count, noted.isEmpty() ? 0 : 1); // once, not for each row
        if (!noted.isEmpty()) {
            const QString note = notes.kinds[0].name + ": " + notes.kinds[0].first;
            QVERIFY2(note.startsWith(noted) && note.contains("riga 1, colonna CITTA") && note.contains("CodePage"),
                     qPrintable(note));
            QVERIFY(target.Log().contains("CODE PAGE NON DICHIARATA"));
        }
    }

    /// What stands under the name of an origin goes before what stands for all, unless somebody has just written that.
    void readsTheSettingsOfTheOrigin() {
        TestTarget target;
        Session& session = target.Get();
        ovConfig& config = session.Config;
        config.SetAppConfig("IMPORT", "Servername", "db1");
        config.SetAppConfig("IMPORT", "Username", "tutti");
        config.SetAppConfig("IMPORT", "Password", "p");
        config.SetAppConfig("OSL GP90", "Servername", "db2");
        config.SetAppConfig("OSL GP90", "Driver", "FreeTDS");
        const auto prepared = [&session](const char* origin) {
            const sourceSettings::OfOrigin own(session, origin);
            return Prepare(session, origin);
        };
        QCOMPARE(prepared("OSL GP90"), QString("0 Server=db2 Database=OSL User=tutti Password=p Driver=FreeTDS"));
        QCOMPARE(prepared("Gescom"), QString("0 Server=db1 Database=OSL User=tutti Password=p"));
        config.SetAppConfig("OSL GP90", "Username", "suo"); // no other user's password is his
        QCOMPARE(prepared("OSL GP90"), QString("0 Server=db2 Database=OSL User=suo Driver=FreeTDS"));
        const sourceSettings::OfOrigin written(session, {});
        QCOMPARE(prepared("OSL GP90"), QString("0 Server=db1 Database=OSL User=tutti Password=p"));
    }

    /// The page of one origin is not that of the others.
    void readsTheCodePageOfTheOrigin() {
        TestTarget target;
        const dbfBytes::Table table{0x03, 0, {{"CITTA", 'C', 8}}, " Mondov\x8d ", 1};
        WriteFile(target.Folder.filePath("clienti.dbf"), table.Bytes());
        target.Get().Config.SetAppConfig("IMPORT", "Databasename", ".");
        target.Get().Config.SetAppConfig("IMPORT", "CodePage", "cp1252");
        target.Get().Config.SetAppConfig("ARCA 2000", "CodePage", "cp850");
        for (const auto& [name, city] : {std::pair("Arca 2000", "Mondovì"), {"Ad-Hoc Windows", "Mondov\u008d"}}) {
            contract::Origin origin;
            origin.name = name;
            origin.source.prepare = sourceSettings::FoxProFolder();
            QCOMPARE(ConnectSource(target.Get(), origin), SourceOutcome::Opened);
            QCOMPARE(
                target.Get().SourceConnection().ExecuteWC("SELECT CITTA FROM clienti").Fields(0).Value().toString(),
                QString(city));
        }
    }

    void refusesUnknownCodePages() {
        TestTarget target;
        target.Get().Config.SetAppConfig("IMPORT", "CodePage", "cp9999");
        QCOMPARE(ConnectSource(target.Get(), *registry::Find("OSL GP90")), SourceOutcome::Failed);
        const QString message = target.Person.Reported.value(0).message;
        QVERIFY2(message.contains("CodePage") && message.contains("cp9999") && message.contains("Quadrix.ini"),
                 qPrintable(message));
    }

    void opensASqliteFileForAServer() {
        TestTarget target;
        target.Get().Config.SetAppConfig("IMPORT", "Databasename", "gescom.sqlite");
        contract::Origin origin;
        origin.source.prepare = sourceSettings::Server("GESCOM");
        QCOMPARE(ConnectSource(target.Get(), origin), SourceOutcome::Failed);
        QVERIFY(target.Get().Errors.Entries().last().message.contains("gescom.sqlite' non esiste"));
        QVERIFY(!QFile::exists(target.Folder.filePath("gescom.sqlite")));
        WriteFile(target.Folder.filePath("gescom.sqlite"), {});
        QStringList traced;
        target.Get().TraceSource = [&traced](const QString& statement) { traced.append(statement); };
        QCOMPARE(ConnectSource(target.Get(), origin), SourceOutcome::Opened);
        QCOMPARE(target.Get().SourceConnection().ExecuteCommand("SELECT COUNT(*) FROM sqlite_master"), 0);
        QCOMPARE(traced.size(), 1);
        CloseSource(target.Get());
        QVERIFY(!target.Get().Source);
    }

    void opensAnAccessFile() {
        TestTarget target;
        const mdbBytes::Table orders{"Ordini",
                                     {{"Numero", 4, 4}, {"Data", 8, 8}},
                                     {{RawBytes(1), RawBytes(45355.5)}, {RawBytes(2), RawBytes(45356.0)}}};
        WriteFile(target.Folder.filePath("os1.MDB"), mdbBytes::Database({orders}));
        QCOMPARE(ConnectSource(target.Get(), *registry::Find("OS1")), SourceOutcome::Opened);
        ovConnection& source = target.Get().SourceConnection();
        const QString from = mod_ovTools::FormatSqlValue(QDate(2024, 3, 5), DataType::DateTime, source.ProviderType);
        const Recordset rows = source.ExecuteWC("SELECT Numero, Data FROM Ordini WHERE Data >= " + from);
        QCOMPARE(rows.Fields("Numero").Value().toInt(), 2);
        QCOMPARE(rows.Fields("Data").Value().toDate(), QDate(2024, 3, 5));
    }

    void readsSolutionIni() {
        TestTarget target;
        QCOMPARE(ConnectSource(target.Get(), *registry::Find("Solution")), SourceOutcome::Failed);
        QVERIFY(target.Person.Reported.last().message.contains("Solution.ini"));
        SettingsFile file(target.Folder.filePath("Solution.ini"));
        file.Write("DATABASE", "ServerName", "solsrv");
        file.Write("DATABASE", "Username", "u");
        QCOMPARE(Prepare(target.Get(), "Solution"), QString("0 Server=solsrv Database=SOLUTION User=u"));
        file.Write("DATABASE", "Provider", "mysql");
        QCOMPARE(Prepare(target.Get(), "Solution"), QString("3 Server=solsrv Database=SOLUTION User=u"));
        file.Write("DATABASE", "Provider", "DB2");
        const auto error = ErrorOf<ImportError>([&] { Prepare(target.Get(), "Solution"); });
        QVERIFY(error && error->Message().contains("chiave Provider: 'DB2'") &&
                error->Message().contains("Solution.ini"));
    }

    void closesTheFormerSource() {
        TestTarget target;
        contract::Origin origin;
        origin.source.prepare = [](Session&, ovConnection& source) {
            source.Embedded = true;
            source.DatabaseName = ":memory:";
            return true;
        };
        QCOMPARE(ConnectSource(target.Get(), origin), SourceOutcome::Opened);
        origin.source.prepare = [](Session&, ovConnection&) { return false; };
        QCOMPARE(ConnectSource(target.Get(), origin), SourceOutcome::GivenUp);
        QVERIFY(!target.Get().Source);
    }
};

QUADRIX_TEST(TestConnectSource)
#include "test_connectSource.moc"
