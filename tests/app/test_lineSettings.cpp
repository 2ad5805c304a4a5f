#include "adapters/contract/run/ImportRun.h"
#include "adapters/registry.h"
#include "adapters/sourceSettings.h"
#include "app/connectSource.h"
#include "core/lineSettings.h"
#include "tests/support/errorOf.h"
#include "tests/support/FaultyEngine.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

namespace {

const QString Warning = QStringLiteral("Connessione non cifrata a 'SRV'");

/// An empty database at the end of a line that others may read along on.
class PlainLine final : public FaultyEngine {
public:
    explicit PlainLine(Faults& faults)
        : FaultyEngine(OpenSqlite(":memory:"), faults) {}
    QString LineWarning() override { return Warning; }
};

} // namespace

/// What the settings ask of the lines to servers, and what is told of these.
class TestLineSettings : public QObject {
    Q_OBJECT

private slots:
    void eachSourceHasItsOwn_data() {
        Columns<QString, QString, QString>("origin", "file", "prefix");
        Row("server", "OSL GP90", "Quadrix.ini", "");
        Row("data source", "Mexal", "Quadrix.ini", "");
        Row("connection string", "SAM", "Quadrix.ini", "");
        Row("fixed connection string", "LibertyCommerce", "Quadrix.ini", "");
        Row("asked for", "Memphis", "Quadrix.ini", "");
        Row("with keys of its own", "AUTOMA", "Quadrix.ini", "AUTOMA_");
        Row("with a file of its own", "Solution", "Solution.ini", "");
    }
    void eachSourceHasItsOwn() {
        QFETCH(QString, origin);
        QFETCH(QString, file);
        QFETCH(QString, prefix);
        const QByteArray key = prefix.toUtf8();
        TestTarget target;
        WriteFile(target.Folder.filePath("ca.pem"), "");
        QByteArray text = file == "Solution.ini" ? "[DATABASE]\r\n" : "[IMPORT]\r\n";
        text += prefix.isEmpty() ? "" : "Encryption=1\r\n"; // that of the others
        text += key;
        text += "Encryption=2\r\n";
        text += key;
        text += "EncryptionCA=ca.pem\r\n";
        WriteFile(target.Folder.filePath(file), text);
        ovConnection source;
        QVERIFY(registry::Find(origin)->source.prepare(target.Get(), source));
        QCOMPARE(source.Encrypted, Encryption::Verified);
        QCOMPARE(source.EncryptionCA, target.Folder.filePath("ca.pem"));
    }

    void refusesWhatMeansNothing_data() {
        Columns<QString, QString, QString>("encryption", "authorities", "words");
        Row("number", "3", "", "Chiave Encryption, sezione [DATABASE] di 'x': '3' non è 0 (non cifrata), 1");
        Row("word", "si", "", "'si' non è 0");
        Row("no file", "2", "manca.pem", "Chiave EncryptionCA, sezione [DATABASE] di 'x': il file '");
        Row("not encrypted", "0", "ca.pem", "serve solo a una connessione cifrata: impostare Encryption=2");
        Row("nothing said", "", "ca.pem", "serve solo a una connessione cifrata");
    }
    void refusesWhatMeansNothing() {
        QFETCH(QString, encryption);
        QFETCH(QString, authorities);
        QFETCH(QString, words);
        const QTemporaryDir folder;
        WriteFile(folder.filePath("ca.pem"), "");
        ovConnection connection;
        const auto error = ErrorOf<ImportError>([&] {
            modMain::SetLine(connection,
                             {encryption, authorities, "Encryption", "EncryptionCA", "sezione [DATABASE] di 'x'"},
                             folder.path());
        });
        QVERIFY(error);
        QVERIFY2(error->Message().contains(words), qPrintable(error->Message()));
    }

    void tellsPlainLines() {
        TestTarget target;
        Session& session = target.Get();
        Faults faults;
        session.Source = NewSource(session);
        session.Source->OpenFiles = [&](const ConnectionSettings&) { return std::make_unique<PlainLine>(faults); };
        session.Source->OpenConnection();
        modMain::TellLine(session, *session.Source);
        modMain::TellLine(session, *session.Source);
        modMain::TellLine(session, session.Quadrix);
        QCOMPARE(target.Person.Notes, QStringList{Warning});
        contract::ImportRun run(session, "modImport_Prova", "Prova", {});
        run.Announce("Inizio importazione");
        QVERIFY(ReadFile(session.LogFile).contains(Warning.toUtf8()));
        CloseSource(session);
        run.Announce("Inizio importazione");
        QVERIFY(!ReadFile(session.LogFile).contains("cifrata"));
    }

    void sourcesAreNotWritten() {
        TestTarget target;
        const auto source = NewSource(target.Get());
        OpenEmbedded(*source, ":memory:");
        QVERIFY(ErrorOf<SqlError>([&] { source->Execute("CREATE TABLE T (A TEXT)"); }));
    }
};

QUADRIX_TEST(TestLineSettings)
#include "test_lineSettings.moc"
