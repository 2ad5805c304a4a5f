#pragma once

#include "core/Session.h"
#include "tests/support/embedded.h"
#include "tests/support/files.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/ScriptedOperator.h"

#include <QTemporaryDir>

/// A session over a Quadrix database of its own, with company "X01" chosen. Its today is 5 March 2024.
class TestTarget {
public:
    /// The last two share a company on the MariaDB server, reached through its own client or through ODBC, that is made
    /// once and put back as it was for every further target, as making one takes the server seconds; databases that a
    /// test makes beside it, and columns that it changes, are not put back.
    enum class On { Embedded, MariaDb, MariaDbAgain, OdbcAgain };

    /// Whether the test script has started a MariaDB server.
    static bool HasMariaDb();

    explicit TestTarget(On engine = On::Embedded);
    ~TestTarget();
    TestTarget(const TestTarget&) = delete;
    TestTarget& operator=(const TestTarget&) = delete;

    void AddCompany(const QString& code, const QString& name);
    void Choose(const QString& code);

    /// The name of a database that no other program, which may run at the same time, has too.
    static QString OfThisProgram(const QString& name);

    /// Makes an empty database on the server, in place of one of that name.
    static void MakeDatabase(const QString& name);

    /// The way to the server that the company is on; empty for the embedded database.
    QString Way() const;

    Session& Get() { return m_session; }
    ovConnection& Db() { return m_session.Quadrix; }
    qint64 Execute(const QString& statement) { return Db().Execute(statement); }
    /// First column of the first row as text; "NULL" for Null, empty without a row.
    QString Value(const QString& query);
    /// All rows, each as the texts of its columns with "|" between.
    QStringList Rows(const QString& query);
    QByteArray Log(const QString& name = "import.log") const;

    QTemporaryDir Folder;
    ScriptedOperator Person;

private:
    /// An embedded database with the company, made once: it is copied far faster than it is made.
    static QString StartFile();

    void OpenMariaDb(const QString& database);
    void OpenAgain();
    /// Tables of a database that hold rows, or have held some.
    QStringList UsedTables(const QString& database);
    void PutBackStart();

    Session m_session;
    On m_engine;
};

Q_DECLARE_METATYPE(TestTarget::On)
