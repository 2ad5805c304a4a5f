#include "sql/engines/lineText.h"
#include "sql/text/dialect.h"
#include "tests/support/embedded.h"
#include "tests/support/errorOf.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QDir>
#include <QScopeGuard>
#include <QSysInfo>
#include <QTemporaryDir>

#ifndef Q_OS_WIN
#include <unistd.h>
#endif

/// Sources of SQLite, over which nothing is written.
class TestReadOnly : public QObject {
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void StatementsThatOnlyRead_data();
    void StatementsThatOnlyRead();
    void SourceStaysAsItWas_data();
    void SourceStaysAsItWas();
    void FolderThatMayOnlyBeRead_data();
    void FolderThatMayOnlyBeRead();
    void ChangesThatWait();
    void ServersOfThisMachine_data();
    void ServersOfThisMachine();

private:
    QString File() const { return m_folder->filePath("gescom.db"); }
    /// A database with two rows; with a write-ahead log or without.
    void Make(const QString& journal) const {
        ovConnection connection;
        OpenEmbedded(connection, File());
        connection.ExecuteWC("PRAGMA journal_mode = " + journal);
        connection.Execute("CREATE TABLE ARTICOLI (COD TEXT)");
        connection.Execute("INSERT INTO ARTICOLI (COD) VALUES ('A')");
        connection.Execute("INSERT INTO ARTICOLI (COD) VALUES ('B')");
    }
    static void OpenSource(ovConnection& source, const QString& file) {
        source.ReadOnly = true;
        OpenEmbedded(source, file);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestReadOnly::StatementsThatOnlyRead_data() {
    Columns<QString, bool>("statement", "onlyReads");
    Row("query", "SELECT * FROM ARTICOLI", true);
    Row("query in parentheses", "( SELECT 1 ) UNION (SELECT 2)", true);
    Row("query behind a comment", "-- articoli\n/* tutti */ SELECT 1", true);
    Row("named parts", "WITH a AS (SELECT 1 AS n) SELECT n FROM a", true);
    Row("status", "SHOW TABLES", true);
    Row("words in a text", "SELECT 'DELETE FROM X; INSERT' AS T", true);
    Row("words as names", "SELECT [UPDATE], \"DELETE\", A.INTO FROM A", true);
    Row("part of a name", "SELECT DELETED, UPDATE_DATE FROM A", true);
    Row("statement", "DELETE FROM ARTICOLI", false);
    Row("batch", "SELECT 1; DELETE FROM ARTICOLI", false);
    Row("batch without a mark", "SELECT 1 WHERE 1=1 DROP TABLE ARTICOLI", false);
    Row("into a table", "SELECT * INTO COPIA FROM ARTICOLI", false);
    Row("named parts that write", "WITH a AS (SELECT 1 AS n) INSERT INTO B SELECT n FROM a", false);
    Row("procedure", "EXEC svuota", false);
    Row("nothing", "", false);
}

void TestReadOnly::StatementsThatOnlyRead() {
    QFETCH(QString, statement);
    QTEST(dialect::OnlyReads(statement), "onlyReads");
}

void TestReadOnly::SourceStaysAsItWas_data() {
    Columns<QString>("journal");
    Row("usual", "DELETE");
    Row("write-ahead log", "WAL");
}

void TestReadOnly::SourceStaysAsItWas() {
    QFETCH(QString, journal);
    Make(journal);
    const QByteArray before = ReadFile(File());
    {
        ovConnection source;
        OpenSource(source, File());
        QCOMPARE(source.ExecuteCommand("SELECT COUNT(*) FROM ARTICOLI"), 2);
        const auto error = ErrorOf<SqlError>([&] { source.Execute("DELETE FROM ARTICOLI"); });
        QVERIFY2(error && error->Message().startsWith("l'origine si legge soltanto"),
                 error ? qPrintable(error->Message()) : "nothing was raised");
        QVERIFY(ErrorOf<SqlError>([&] { source.ExecuteWC("PRAGMA user_version = 7"); }));
    }
    QVERIFY(ReadFile(File()) == before);
    if (journal == "DELETE") {
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList{"gescom.db"});
    }
}

namespace {

constexpr auto ToRead = QFile::ReadOwner | QFile::ReadGroup;

} // namespace

#ifndef Q_OS_WIN
/// Takes away the right to write into a folder, also from the superuser that tests may run as.
#define IN_A_FOLDER_TO_READ(folder)                                                                                    \
    constexpr uid_t Nobody = 65534;                                                                                    \
    const auto usual = QFile::permissions(folder);                                                                     \
    QFile::setPermissions(folder, ToRead | QFile::ExeOwner | QFile::ExeGroup);                                         \
    const bool isRoot = geteuid() == 0 && seteuid(Nobody) == 0;                                                        \
    const auto giveBack = qScopeGuard([&] {                                                                            \
        if (isRoot && seteuid(0) != 0) {                                                                               \
            qFatal("the rights of before do not come back");                                                           \
        }                                                                                                              \
        QFile::setPermissions(folder, usual);                                                                          \
    })
#else
#define IN_A_FOLDER_TO_READ(folder) QSKIP("Windows has other rights on folders")
#endif

void TestReadOnly::FolderThatMayOnlyBeRead_data() { SourceStaysAsItWas_data(); }

void TestReadOnly::FolderThatMayOnlyBeRead() {
    QFETCH(QString, journal);
    Make(journal);
    QFile::setPermissions(File(), ToRead);
    const QString folder = m_folder->path();
    IN_A_FOLDER_TO_READ(folder);
    ovConnection source;
    OpenSource(source, File());
    QCOMPARE(source.ExecuteCommand("SELECT COUNT(*) FROM ARTICOLI"), 2);
}

/// What another program has written into the log only would be missing: it is refused, not left out.
void TestReadOnly::ChangesThatWait() {
    Make("WAL");
    ovConnection other;
    OpenEmbedded(other, File());
    other.Execute("INSERT INTO ARTICOLI (COD) VALUES ('C')");
    const QTemporaryDir copy;
    for (const char* end : {"", "-wal"}) {
        QVERIFY(QFile::copy(File() + end, copy.filePath("copia.db") + end));
        QFile::setPermissions(copy.filePath("copia.db") + end, ToRead);
    }
    const QString folder = copy.path();
    {
        IN_A_FOLDER_TO_READ(folder);
        ovConnection source;
        const auto error = ErrorOf<SqlError>([&] { OpenSource(source, copy.filePath("copia.db")); });
        QVERIFY(error);
        QVERIFY2(error->Message().contains("copia.db-wal' ci sono modifiche"), qPrintable(error->Message()));
    }
    ovConnection source;
    OpenSource(source, copy.filePath("copia.db"));
    QCOMPARE(source.ExecuteCommand("SELECT COUNT(*) FROM ARTICOLI"), 3);
}

void TestReadOnly::ServersOfThisMachine_data() {
    Columns<QString, bool>("server", "staysHere");
    for (const char* server :
         {"", ".", "(local)", "localhost", "LOCALHOST:3307", "127.0.0.1,1433", "127.0.1.1:1", ".\\SQLEXPRESS",
          "(localdb)\\v11", "::1", "[::1]:3306", "tcp:localhost,1433", "/run/mysqld/mysqld.sock"}) {
        Row(server, QString(server), true);
    }
    for (const char* server : {"SRV", "srv.local", "192.168.1.4:3306", "SRV\\SQLEXPRESS", "tcp:SRV,1433", "fe80::1",
                               "[2001:db8::1]:3306", "localhost.example"}) {
        Row(server, QString(server), false);
    }
}

void TestReadOnly::ServersOfThisMachine() {
    QFETCH(QString, server);
    QTEST(line::StaysHere(server), "staysHere");
    QVERIFY(line::StaysHere(QSysInfo::machineHostName() + ",1433"));
}

QUADRIX_TEST(TestReadOnly)

#include "test_readOnly.moc"
