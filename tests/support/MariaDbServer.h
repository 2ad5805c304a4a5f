#pragma once

#include "sql/ovConnection.h"

#include <QTest>

/// The server that the test script starts, reached through its own client or through ODBC.
class MariaDbServer {
public:
    MariaDbServer()
        : Parts(qEnvironmentVariable("QUADRIX_TEST_MARIADB").split(u'|')) {}

    bool IsThere() const { return Parts.size() == 5; }

    /// The two ways to it, as the rows of a test's data.
    static void Ways() {
        QTest::addColumn<QString>("way");
        QTest::newRow("client") << "client";
        QTest::newRow("ODBC") << "ODBC";
    }

    /// Says to a connection how it is reached; an empty database is that of the tests of statements.
    void Set(ovConnection& connection, const QString& way, QString database = {}) const {
        connection.ProviderType = Provider::MySql;
        database = database.isEmpty() ? Parts[4] : database;
        if (way == "client") {
            connection.Server = Parts[0] + u':' + Parts[1];
            connection.User = Parts[2];
            connection.Password = Parts[3];
            connection.DatabaseName = database;
            return;
        }
        QString password = Parts[3];
        password.replace(u'}', QStringLiteral("}}"));
        connection.ConnectionString =
            QStringLiteral("Driver={MariaDB Unicode};Server=%1;Port=%2;Uid=%3;Database=%5;Pwd={%4}")
                .arg(Parts[0], Parts[1], Parts[2], password, database);
    }

    std::unique_ptr<ovConnection> Open(const QString& way = "client") const {
        auto connection = std::make_unique<ovConnection>();
        Set(*connection, way);
        connection->OpenConnection();
        return connection;
    }

    /// Makes table NUMBERS with the rows 1, 2, 3 ... and a text of 100 characters each.
    static void Fill(ovConnection& connection, int rows) {
        connection.Execute("DROP TABLE IF EXISTS NUMBERS");
        connection.Execute(
            "CREATE TABLE NUMBERS (N BIGINT PRIMARY KEY, T VARCHAR(200), HITS BIGINT NOT NULL DEFAULT 0)");
        connection.Execute(
            QStringLiteral("INSERT INTO NUMBERS (N, T) SELECT seq, REPEAT('x', 100) FROM seq_1_to_%1").arg(rows));
    }

    QStringList Parts; ///< host, port, user, password, database
};

/// The connection that a test of both ways works with.
#define OPEN(name)                                                                                                     \
    QFETCH(QString, way);                                                                                              \
    const auto opened##name = m_server.Open(way);                                                                      \
    ovConnection& name = *opened##name /* NOLINT(bugprone-macro-parentheses) */

/// Leaves out a test when there is no server; for init(), since initTestCase() would leave out all that follow.
#define SKIP_WITHOUT(server)                                                                                           \
    if (!(server).IsThere()) {                                                                                         \
        QSKIP("QUADRIX_TEST_MARIADB names no server (scripts/test starts one)");                                       \
    }
