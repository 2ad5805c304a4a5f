#include "sql/ovConnection.h"
#include "tests/support/errorOf.h"
#include "tests/support/FakeServer.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QtEndian>

/// What goes over the line to a server that only pretends to be one.
class TestLines : public QObject {
    Q_OBJECT

private slots:
    void NoPasswordInClear_data();
    void NoPasswordInClear();
    void NoLineWithoutEncryption_data();
    void NoLineWithoutEncryption();
    void PortsThatAreNone_data();
    void PortsThatAreNone();
    void SqlServerIsAsked_data();
    void SqlServerIsAsked();
    void SqlServerPasswords_data();
    void SqlServerPasswords();
    void RefusedOverFreeTds_data();
    void RefusedOverFreeTds();
};

namespace {

const QString Password = QStringLiteral("PwChiara9");

// --- MariaDB's words ----------------------------------------------------------------------------------------------

QByteArray MySqlPacket(int number, const QByteArray& body) {
    QByteArray packet(4, '\0');
    qToLittleEndian(static_cast<quint32>(body.size()), packet.data());
    packet[3] = static_cast<char>(number);
    return packet + body;
}

/// The first words of a server that offers no encryption.
QByteArray MySqlGreeting() {
    constexpr quint32 Capabilities = 0x1 | 0x8 | 0x200 | 0x2000 | 0x8000 | 0x80000;
    QByteArray body("\x0a"
                    "5.5.5-10.11.6-MariaDB");
    body.append('\0').append("\x07\0\0\0", 4).append("abcdefgh").append('\0');
    body.append(static_cast<char>(Capabilities & 0xff)).append(static_cast<char>(Capabilities >> 8 & 0xff));
    body.append("\x2d\x02", 2).append('\0').append(static_cast<char>(Capabilities >> 16)).append('\0').append('\x15');
    body.append(10, '\0').append("ijklmnopqrst").append('\0').append("mysql_native_password").append('\0');
    return MySqlPacket(0, body);
}

/// Asks who signs on to do so in another way; then hears what comes.
FakeServer::Answer AskToSignOnBy(const QByteArray& way) {
    return [way](int turn, const QByteArray&) {
        return turn == 0 ? MySqlPacket(2, QByteArray("\xfe").append(way).append('\0').append("\x04Password: "))
                         : QByteArray();
    };
}

/// Takes who signs on, knows nothing of encryption, and answers whatever else it is asked with "done".
QByteArray MySqlWelcome(int turn, const QByteArray& heard) {
    if (heard.contains("Ssl_cipher")) {
        return MySqlPacket(1, QByteArray("\xff\x7d\x04#42000unknown", 16));
    }
    return MySqlPacket(turn == 0 ? 2 : 1, QByteArray("\0\0\0\x02\0\0\0", 7));
}

void SetMySql(ovConnection& connection, const QString& way, quint16 port) {
    connection.ProviderType = Provider::MySql;
    if (way == "client") {
        connection.Server = QStringLiteral("127.0.0.1:%1").arg(port);
        connection.User = "sa";
        connection.Password = Password;
        connection.DatabaseName = "Q";
        return;
    }
    connection.ConnectionString =
        QStringLiteral("Driver={MariaDB Unicode};Server=127.0.0.1;Port=%1;Uid=sa;Database=Q;Pwd=%2")
            .arg(port)
            .arg(Password);
}

// --- SQL Server's words -------------------------------------------------------------------------------------------

constexpr qsizetype TdsHead = 8;
constexpr char PreLogin = 0x12;
constexpr char Login = 0x10;

/// What a client says of encryption before it signs on: 0 for the sign-on alone, 1 all of it, 2 none.
int EncryptionByte(const QByteArray& preLogin) {
    constexpr int OptionSize = 5;
    const QByteArray body = preLogin.mid(TdsHead);
    for (qsizetype at = 0; at + OptionSize <= body.size() && body.at(at) != '\xff'; at += OptionSize) {
        if (body.at(at) == 1) {
            return body.at(qFromBigEndian<quint16>(body.constData() + at + 1));
        }
    }
    return -1;
}

/// A server that offers no encryption at all, and hears what comes then.
QByteArray TdsWithoutEncryption(int turn, const QByteArray& /*heard*/) {
    return turn == 0 ? QByteArray::fromHex("0401001a0000010000000b000601001100 01ff0f001000000002") : QByteArray();
}

/// The password of a sign-on that is not encrypted.
QString PasswordOf(const QByteArray& login) {
    constexpr qsizetype PasswordPlace = 44;
    const QByteArray body = login.mid(TdsHead);
    const auto at = qFromLittleEndian<quint16>(body.constData() + PasswordPlace);
    const auto length = qFromLittleEndian<quint16>(body.constData() + PasswordPlace + 2);
    QString password;
    const auto clear = [&body](qsizetype place) {
        const auto byte = static_cast<uchar>(body.at(place) ^ '\xa5');
        return static_cast<uchar>(byte << 4 | byte >> 4);
    };
    for (qsizetype unit = 0; unit < length; ++unit) {
        password += QChar(clear(at + 2 * unit), clear(at + 2 * unit + 1));
    }
    return password;
}

void SetSqlServer(ovConnection& connection, quint16 port, const QString& password = Password) {
    connection.Driver = "FreeTDS";
    connection.Server = QStringLiteral("127.0.0.1,%1").arg(port);
    connection.DatabaseName = "Q";
    connection.User = "sa";
    connection.Password = password;
}

#define SKIP_WITHOUT_DRIVER(error)                                                                                     \
    if ((error) && (error)->Message().contains("non è installato")) {                                                  \
        QSKIP(qPrintable((error)->Message()));                                                                         \
    }

} // namespace

void TestLines::NoPasswordInClear_data() {
    Columns<QString, QByteArray, Encryption>("way", "signOn", "encryption");
    for (const QByteArray signOn : {"mysql_clear_password", "dialog"}) {
        for (const char* way : {"client", "ODBC"}) {
            QTest::addRow("%s, %s", signOn.constData(), way) << way << signOn << Encryption::DriversOwn;
            QTest::addRow("%s, %s, encrypted", signOn.constData(), way) << way << signOn << Encryption::On;
        }
    }
    // They give it to whoever has a key, which the other side tells.
    for (const QByteArray signOn : {"caching_sha2_password", "sha256_password"}) {
        QTest::addRow("%s", signOn.constData()) << "client" << signOn << Encryption::DriversOwn;
        QTest::addRow("%s, encrypted", signOn.constData()) << "client" << signOn << Encryption::On;
    }
}

void TestLines::NoPasswordInClear() {
    QFETCH(QString, way);
    QFETCH(QByteArray, signOn);
    QFETCH(Encryption, encryption);
    const FakeServer server(MySqlGreeting(), AskToSignOnBy(signOn));
    ovConnection connection;
    SetMySql(connection, way, server.Port);
    connection.Encrypted = encryption;
    const auto error = ErrorOf<SqlError>([&] { connection.OpenConnection(); });
    QVERIFY(error);
    SKIP_WITHOUT_DRIVER(error)
    const QVector<QByteArray> heard = server.Heard();
    QVERIFY(!heard.isEmpty() && heard.first().contains("sa"));
    for (const QByteArray& each : heard) {
        QVERIFY2(!each.contains(Password.toUtf8()), each.toPercentEncoding().constData());
    }
    QVERIFY2(error->Message().contains("Encryption=2"), qPrintable(error->Message()));
}

void TestLines::NoLineWithoutEncryption_data() {
    Columns<QString, Encryption>("way", "encryption");
    for (const char* way : {"client", "ODBC"}) {
        QTest::addRow("%s, encrypted", way) << way << Encryption::On;
        QTest::addRow("%s, verified", way) << way << Encryption::Verified;
    }
}

/// A server that takes everybody, but without encryption: it hears no statement.
void TestLines::NoLineWithoutEncryption() {
    QFETCH(QString, way);
    QFETCH(Encryption, encryption);
    const FakeServer server(MySqlGreeting(), MySqlWelcome);
    ovConnection connection;
    SetMySql(connection, way, server.Port);
    connection.Encrypted = encryption;
    const auto error = ErrorOf<SqlError>([&] { connection.OpenConnection(); });
    QVERIFY(error);
    SKIP_WITHOUT_DRIVER(error)
    QVERIFY2(error->Message().contains("il server non offre una connessione cifrata"), qPrintable(error->Message()));
    for (const QByteArray& each : server.Heard()) {
        QVERIFY2(!each.contains("sql_mode"), each.toPercentEncoding().constData());
    }
}

void TestLines::PortsThatAreNone_data() {
    Columns<Provider, QString, QString>("provider", "server", "port");
    Row("letter", Provider::MySql, "127.0.0.1:288I1", "288I1");
    Row("too large", Provider::MySql, "127.0.0.1:65536", "65536");
    Row("nought", Provider::MySql, "127.0.0.1:0", "0");
    Row("empty", Provider::MySql, "127.0.0.1:", "");
    Row("of an IPv6 address", Provider::MySql, "[::1]:x", "x");
    Row("FreeTDS, letter", Provider::SqlServer, "127.0.0.1,l433", "l433");
}

/// The usual port is not taken instead: another server may listen there.
void TestLines::PortsThatAreNone() {
    QFETCH(Provider, provider);
    QFETCH(QString, server);
    QFETCH(QString, port);
    ovConnection connection;
    connection.ProviderType = provider;
    connection.Driver = provider == Provider::SqlServer ? "FreeTDS" : "";
    connection.Server = server;
    const auto error = ErrorOf<ImportError>([&] { connection.OpenConnection(); });
    QVERIFY(error);
    QVERIFY2(error->Message().startsWith(QStringLiteral("Server '%1': '%2' non è una porta").arg(server, port)),
             qPrintable(error->Message()));
}

void TestLines::SqlServerIsAsked_data() {
    Columns<Encryption, int, bool>("encryption", "asked", "signsOn");
    Row("nothing said", Encryption::DriversOwn, 0, true);
    Row("off", Encryption::Off, 2, true);
    Row("on", Encryption::On, 1, false);
}

void TestLines::SqlServerIsAsked() {
    QFETCH(Encryption, encryption);
    const FakeServer server({}, TdsWithoutEncryption);
    ovConnection connection;
    SetSqlServer(connection, server.Port);
    connection.Encrypted = encryption;
    const auto error = ErrorOf<SqlError>([&] { connection.OpenConnection(); });
    QVERIFY(error);
    SKIP_WITHOUT_DRIVER(error)
    const QVector<QByteArray> heard = server.Heard();
    QVERIFY(!heard.isEmpty() && heard.first().startsWith(PreLogin));
    QTEST(EncryptionByte(heard.first()), "asked");
    QTEST(heard.size() > 1 && heard.at(1).startsWith(Login), "signsOn");
    const bool tellsWhy = error->Message().contains("il server non offre una connessione cifrata");
    QVERIFY2(tellsWhy == (encryption == Encryption::On), qPrintable(error->Message()));
}

void TestLines::SqlServerPasswords_data() {
    Columns<QString>("password");
    for (const char* password :
         {"a}b", "a}", "}", "{a", "{a}b;c", "a;b", "a}b;PORT=1;c", " a } ", "a='\"?*[]@!,()", "perché€"}) {
        QTest::newRow(password) << QString::fromUtf8(password);
    }
}

/// What the server hears is what was set, also with the signs that divide a connection string.
void TestLines::SqlServerPasswords() {
    QFETCH(QString, password);
    const FakeServer server({}, TdsWithoutEncryption);
    ovConnection connection;
    SetSqlServer(connection, server.Port, password);
    const auto error = ErrorOf<SqlError>([&] { connection.OpenConnection(); });
    SKIP_WITHOUT_DRIVER(error)
    const QVector<QByteArray> heard = server.Heard();
    QVERIFY(heard.size() > 1);
    QCOMPARE(PasswordOf(heard.at(1)), password);
}

void TestLines::RefusedOverFreeTds_data() {
    Columns<QString, Encryption, QString>("password", "encryption", "words");
    Row("password", "a};b", Encryption::DriversOwn,
        "Il driver FreeTDS non può ricevere una password con i caratteri \"};\": cambiarla");
    Row("verified", "a", Encryption::Verified,
        "Impostazione Encryption: il driver ODBC 'FreeTDS' cifra la connessione");
}

/// What the driver cannot do is refused before anything is sent.
void TestLines::RefusedOverFreeTds() {
    QFETCH(QString, password);
    QFETCH(Encryption, encryption);
    QFETCH(QString, words);
    const FakeServer server({}, TdsWithoutEncryption);
    ovConnection connection;
    SetSqlServer(connection, server.Port, password);
    connection.Encrypted = encryption;
    const auto error = ErrorOf<ImportError>([&] { connection.OpenConnection(); });
    QVERIFY(error);
    QVERIFY2(error->Message().startsWith(words), qPrintable(error->Message()));
    QVERIFY(server.Heard().isEmpty());
}

QUADRIX_TEST(TestLines)

#include "test_lines.moc"
