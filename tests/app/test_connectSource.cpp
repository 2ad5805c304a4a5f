#include "adapters/registry.h"
#include "adapters/sourceSettings.h"
#include "app/connectSource.h"
#include "sql/mod_ovTools.h"
#include "tests/sources/mdbBytes.h"
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
    add("Network", source.NetworkCredential ? "1" : "");
    return parts.join(' ');
}

/// The parameters after the preparation of an origin of the list; "-" when the operator gave up.
QString Prepare(Session& session, const QString& name) {
    const auto& own = registry::Find(name)->source.prepare;
    ovConnection source;
    return (own ? own : sourceSettings::ForOrigin(name))(session, source) ? Describe(source) : QString("-");
}

} // namespace

/// The parameters that the preparation of each origin gives a connection.
class TestConnectSource : public QObject {
    Q_OBJECT

private slots:
    void knowsEveryOrigin() {
        for (const contract::Origin* origin : registry::Origins()) {
            QVERIFY2(sourceSettings::ForOrigin(origin->name) || origin->source.prepare, qPrintable(origin->name));
        }
        QVERIFY(!sourceSettings::ForOrigin("nessuna"));
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
        QCOMPARE(Prepare(target.Get(), "Ad-Hoc"), QString("3 Server=db1 Database=gescom2 User=carlo Password=p"));
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
        target.Get().SourceConnection().Execute("CREATE TABLE T (A TEXT)");
        QCOMPARE(traced.size(), 1);
        CloseSource(target.Get());
        QVERIFY(!target.Get().Source);
    }

    void opensAnAccessFile() {
        TestTarget target;
        const mdbBytes::Table orders{
            "Ordini",
            {{"Numero", 4, 4}, {"Data", 8, 8}},
            {{mdbBytes::Raw(1), mdbBytes::Raw(45355.5)}, {mdbBytes::Raw(2), mdbBytes::Raw(45356.0)}}};
        WriteFile(target.Folder.filePath("os1.MDB"), mdbBytes::Database({orders}));
        contract::Origin origin;
        origin.name = "OS1";
        QCOMPARE(ConnectSource(target.Get(), origin), SourceOutcome::Opened);
        ovConnection& source = target.Get().SourceConnection();
        const QString from = mod_ovTools::FormatSqlValue(QDate(2024, 3, 5), DataType::DateTime, source.ProviderType);
        const Recordset rows = source.ExecuteWC("SELECT Numero, Data FROM Ordini WHERE Data >= " + from);
        QCOMPARE(rows.Fields("Numero").Value().toInt(), 2);
        QCOMPARE(rows.Fields("Data").Value().toDate(), QDate(2024, 3, 5));
    }

    void readsSolutionIni() {
        TestTarget target;
        contract::Origin origin;
        origin.name = "Solution";
        QCOMPARE(ConnectSource(target.Get(), origin), SourceOutcome::Failed);
        QVERIFY(target.Person.Reported.last().message.contains("Solution.ini"));
        SettingsFile file(target.Folder.filePath("Solution.ini"));
        file.Write("DATABASE", "ServerName", "solsrv");
        file.Write("DATABASE", "Username", "u");
        QCOMPARE(Prepare(target.Get(), "Solution"), QString("0 Server=solsrv Database=SOLUTION User=u"));
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
