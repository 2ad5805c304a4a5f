#include "tests/support/CutLine.h"
#include "tests/support/errorOf.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QFileInfo>
#include <QScopeGuard>

/// Encrypted lines to a server, and lines over which nothing is written.
class TestMariaDbLines : public QObject {
    Q_OBJECT

private slots:
    void init() {
        SKIP_WITHOUT(m_server)
        if (m_authorities.isEmpty()) {
            QSKIP("QUADRIX_TEST_MARIADB_CA names no authority (scripts/test makes one)");
        }
    }
    void Lines_data();
    void Lines();
    void RefusedLines_data();
    void RefusedLines();
    void AccountThatDemandsIt_data() { MariaDbServer::Ways(); }
    void AccountThatDemandsIt();
    void NothingIsWritten_data();
    void NothingIsWritten();
    void LongResultsOfASource_data() { MariaDbServer::Ways(); }
    void LongResultsOfASource();

private:
    /// A connection that asks for encryption, still closed.
    std::unique_ptr<ovConnection> Asking(const QString& way, Encryption encryption, const QString& authorities) const {
        auto connection = std::make_unique<ovConnection>();
        m_server.Set(*connection, way);
        connection->Encrypted = encryption;
        connection->EncryptionCA = authorities;
        return connection;
    }
    QString Foreign() const { return QFileInfo(m_authorities).path() + "/foreign.pem"; }
    static QString CipherOf(ovConnection& connection) {
        return connection.ExecuteWC("SHOW SESSION STATUS LIKE 'Ssl_cipher'").Value("Value").toString();
    }

    MariaDbServer m_server;
    QString m_authorities = qEnvironmentVariable("QUADRIX_TEST_MARIADB_CA");
};

void TestMariaDbLines::Lines_data() {
    Columns<QString, Encryption, bool, bool>("way", "encryption", "tellsAuthorities", "isEncrypted");
    for (const char* way : {"client", "ODBC"}) {
        QTest::addRow("%s, nothing said", way) << way << Encryption::DriversOwn << false << false;
        QTest::addRow("%s, off", way) << way << Encryption::Off << false << false;
        QTest::addRow("%s, on", way) << way << Encryption::On << false << true;
        QTest::addRow("%s, on, known authority", way) << way << Encryption::On << true << true;
        QTest::addRow("%s, verified", way) << way << Encryption::Verified << true << true;
    }
}

void TestMariaDbLines::Lines() {
    QFETCH(QString, way);
    QFETCH(Encryption, encryption);
    QFETCH(bool, tellsAuthorities);
    const auto connection = Asking(way, encryption, tellsAuthorities ? m_authorities : QString());
    connection->OpenConnection();
    QTEST(!CipherOf(*connection).isEmpty(), "isEncrypted");
    QCOMPARE(connection->LineWarning(), QString()); // the server is on this machine
}

void TestMariaDbLines::RefusedLines_data() {
    Columns<QString, Encryption, QString, QString, QString>("way", "encryption", "authorities", "host", "words");
    const QString unknown = "il certificato del server non è di un'autorità riconosciuta";
    for (const char* way : {"client", "ODBC"}) {
        QTest::addRow("%s, foreign authority", way)
            << way << Encryption::Verified << Foreign() << "127.0.0.1" << unknown;
        QTest::addRow("%s, foreign authority, not verified", way)
            << way << Encryption::On << Foreign() << "127.0.0.1" << unknown;
        QTest::addRow("%s, authorities of the system", way) << way << Encryption::Verified << ""
                                                            << "127.0.0.1" << unknown;
        QTest::addRow("%s, other name", way) << way << Encryption::Verified << m_authorities << "127.0.0.2"
                                             << "il certificato presentato non è di questo server";
    }
}

/// Each refusal says what is wrong with the certificate, and which setting it is about.
void TestMariaDbLines::RefusedLines() {
    QFETCH(QString, way);
    QFETCH(Encryption, encryption);
    QFETCH(QString, authorities);
    QFETCH(QString, host);
    QFETCH(QString, words);
    const CutLine line(m_server.Parts[0], m_server.Parts[1].toInt(), QHostAddress(host));
    MariaDbServer through = m_server;
    through.Parts[0] = host;
    through.Parts[1] = QString::number(line.Port);
    ovConnection connection;
    through.Set(connection, way);
    connection.Encrypted = encryption;
    connection.EncryptionCA = authorities;
    const auto error = ErrorOf<SqlError>([&] { connection.OpenConnection(); });
    QVERIFY(error);
    QVERIFY2(error->Message().contains(words), qPrintable(error->Message()));
}

void TestMariaDbLines::AccountThatDemandsIt() {
    QFETCH(QString, way);
    const auto own = m_server.Open();
    own->Execute("CREATE OR REPLACE USER 'cifrato'@'%' IDENTIFIED BY 'segreto' REQUIRE SSL");
    own->Execute("GRANT SELECT ON *.* TO 'cifrato'@'%'");
    MariaDbServer demanding = m_server;
    demanding.Parts[2] = "cifrato";
    demanding.Parts[3] = "segreto";
    ovConnection connection;
    demanding.Set(connection, way);
    const auto error = ErrorOf<SqlError>([&] { connection.OpenConnection(); });
    QVERIFY(error);
    QVERIFY2(error->Message().contains("oppure l'utente può entrare solo su una connessione cifrata (TLS, impostazione "
                                       "Encryption=1)"),
             qPrintable(error->Message()));
    connection.Encrypted = Encryption::On;
    connection.OpenConnection();
    QVERIFY(!CipherOf(connection).isEmpty());
}

void TestMariaDbLines::NothingIsWritten_data() {
    Columns<QString, QString>("way", "statement");
    for (const char* way : {"client", "ODBC"}) {
        QTest::addRow("%s, statement", way) << way << "DELETE FROM NUMBERS";
        QTest::addRow("%s, behind a query", way) << way << "SELECT N FROM NUMBERS; DELETE FROM NUMBERS";
        QTest::addRow("%s, function that writes", way) << way << "SELECT EmptyNumbers()";
    }
}

/// Whatever a source is asked, also over what the server runs by itself.
void TestMariaDbLines::NothingIsWritten() {
    QFETCH(QString, way);
    QFETCH(QString, statement);
    const auto own = m_server.Open();
    MariaDbServer::Fill(*own, 10);
    own->Execute("CREATE OR REPLACE FUNCTION EmptyNumbers() RETURNS INT DETERMINISTIC MODIFIES SQL DATA BEGIN DELETE "
                 "FROM NUMBERS; RETURN 1; END");
    const auto source = Asking(way, Encryption::DriversOwn, {});
    source->ReadOnly = true;
    source->OpenConnection();
    const auto error = ErrorOf<SqlError>([&] { source->ExecuteWC(statement); });
    QVERIFY(error);
    QVERIFY2(error->Message().contains("legge soltanto"), qPrintable(error->Message()));
    QCOMPARE(source->ExecuteCommand("SELECT COUNT(*) FROM NUMBERS"), 10);
}

/// They are put aside in a table of the session's own, which is made all the same; nothing else is.
void TestMariaDbLines::LongResultsOfASource() {
    QFETCH(QString, way);
    constexpr int Rows = 30000;
    MariaDbServer::Fill(*m_server.Open(), Rows);
    const auto source = Asking(way, Encryption::DriversOwn, {});
    source->ReadOnly = true;
    source->OpenConnection();
    const auto wasMade = [&] {
        return source->ExecuteWC("SHOW SESSION STATUS LIKE 'Com_create_temporary_table'").Value("Value").toInt();
    };
    qint64 sum = 0;
    for (Recordset rows = source->ExecuteWC("SELECT N FROM NUMBERS"); !rows.Eof(); rows.MoveNext()) {
        sum += rows.Value("N").toLongLong();
    }
    QCOMPARE(sum, qint64(Rows) * (Rows + 1) / 2);
    QCOMPARE(wasMade(), way == "ODBC" ? 1 : 0);
    QCOMPARE(source->ExecuteWC("SELECT @@SESSION.tx_read_only AS V").Value("V").toInt(), 1);
}

QUADRIX_TEST(TestMariaDbLines)

#include "test_mariadbLines.moc"
