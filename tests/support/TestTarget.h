#pragma once

#include "core/createDatabase.h"
#include "core/Session.h"
#include "tests/support/embedded.h"
#include "tests/support/files.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/ScriptedOperator.h"
#include "tests/support/writtenStatements.h"

#include <QCoreApplication>
#include <QTemporaryDir>

/// A session over a Quadrix database of its own, with company "X01" chosen. Its today is 5 March 2024.
class TestTarget {
public:
    /// The last two share a company on the MariaDB server, reached through its own client or through ODBC, that is made
    /// once and put back as it was for every further target, as making one takes the server seconds; databases that a
    /// test makes beside it, and columns that it changes, are not put back.
    enum class On { Embedded, MariaDb, MariaDbAgain, OdbcAgain };

    /// Whether the test script has started a MariaDB server.
    static bool HasMariaDb() { return MariaDbServer().IsThere(); }

    explicit TestTarget(On engine = On::Embedded)
        : m_session(Person),
          m_engine(engine) {
        m_session.Now = [] { return QDateTime(QDate(2024, 3, 5), QTime(10, 20, 30)); };
        m_session.LogFile = Folder.filePath("import.log");
        m_session.Config.SetConfigFile(Folder.filePath("Quadrix.ini"));
        if (engine == On::Embedded) {
            m_session.Quadrix.Written = WrittenStatements();
            QFile::copy(StartFile(), Folder.filePath("quadrix.db"));
            OpenEmbedded(m_session.Quadrix, Folder.filePath("quadrix.db"));
        } else if (engine == On::MariaDb) {
            MakeDatabase(OwnDatabase);
            OpenMariaDb(OwnDatabase);
            AddCompany("X01", Company);
        } else {
            OpenAgain();
        }
        Choose("X01");
        m_session.Errors.Action = ErrorAction::Abort;
    }
    ~TestTarget() {
        if (m_engine == On::MariaDb) {
            Execute("DROP DATABASE " + OwnDatabase);
        }
    }
    TestTarget(const TestTarget&) = delete;
    TestTarget& operator=(const TestTarget&) = delete;

    void AddCompany(const QString& code, const QString& name) { CreateDatabase(m_session.Quadrix, code, name); }
    void Choose(const QString& code) {
        m_session.Quadrix.SetCompany(code);
        m_session.UserManager.SetAzienda(code);
        m_session.UserManager.DataElaborazione = m_session.Now().date();
    }

    /// The name of a database that no other program, which may run at the same time, has too.
    static QString OfThisProgram(const QString& name) {
        return name + '_' + QString::number(QCoreApplication::applicationPid());
    }

    /// Makes an empty database on the server, in place of one of that name.
    static void MakeDatabase(const QString& name) {
        const auto server = MariaDbServer().Open();
        server->Execute("DROP DATABASE IF EXISTS " + name);
        server->Execute("CREATE DATABASE " + name + " CHARACTER SET utf8mb4");
    }

    /// The way to the server that the company is on; empty for the embedded database.
    QString Way() const {
        return m_engine == On::Embedded ? QString() : m_engine == On::OdbcAgain ? QString("ODBC") : QString("client");
    }

    Session& Get() { return m_session; }
    ovConnection& Db() { return m_session.Quadrix; }
    qint64 Execute(const QString& statement) { return Db().Execute(statement); }
    /// First column of the first row as text; "NULL" for Null, empty without a row.
    QString Value(const QString& query) {
        const Recordset rows = Db().ExecuteWC(query);
        return rows.Eof() ? QString() : Text(rows.Fields(0).Value());
    }
    /// All rows, each as the texts of its columns with "|" between.
    QStringList Rows(const QString& query) {
        QStringList result;
        for (Recordset rows = Db().ExecuteWC(query); !rows.Eof(); rows.MoveNext()) {
            QStringList values;
            for (int column = 0; column < rows.Columns().size(); ++column) {
                values.append(Text(rows.Fields(column).Value()));
            }
            result.append(values.join('|'));
        }
        return result;
    }
    QByteArray Log(const QString& name = "import.log") const { return ReadFile(Folder.filePath(name)); }

    QTemporaryDir Folder;
    ScriptedOperator Person;

private:
    static inline const QString Company = QStringLiteral("Prova Uno S.r.l.");
    static inline const QString OwnDatabase = OfThisProgram("quadrix_target");
    static inline const QString SharedDatabase = OfThisProgram("quadrix_again");
    static inline const QString StartDatabase = OfThisProgram("quadrix_start"); ///< the shared one as it was made

    /// An embedded database with the company, made once: it is copied far faster than it is made.
    static QString StartFile() {
        static const QTemporaryDir folder;
        static const QString path = [] {
            ovConnection made;
            made.Written = WrittenStatements();
            CreateDatabase(OpenEmbedded(made, folder.filePath("quadrix.db")), "X01", Company);
            made.CloseConnection();
            return made.DatabaseName;
        }();
        return path;
    }

    void OpenMariaDb(const QString& database) {
        MariaDbServer().Set(m_session.Quadrix, Way(), database);
        m_session.Quadrix.OpenConnection();
    }

    void OpenAgain() {
        static bool isMade = false;
        if (isMade) {
            OpenMariaDb(SharedDatabase);
            PutBackStart();
            return;
        }
        MakeDatabase(SharedDatabase);
        MakeDatabase(StartDatabase);
        OpenMariaDb(SharedDatabase);
        AddCompany("X01", Company);
        for (const QString& table : UsedTables(SharedDatabase)) {
            Execute("CREATE TABLE " + StartDatabase + "." + table + " AS SELECT * FROM " + table);
        }
        isMade = true;
    }

    /// Tables of a database that hold rows, or have held some.
    QStringList UsedTables(const QString& database) {
        return Rows("SELECT TABLE_NAME FROM information_schema.TABLES WHERE TABLE_SCHEMA = '" + database +
                    "' AND (AUTO_INCREMENT > 1 OR AUTO_INCREMENT IS NULL) ORDER BY TABLE_NAME");
    }

    void PutBackStart() {
        for (const QString& table : UsedTables(SharedDatabase)) {
            Execute("TRUNCATE TABLE " + table);
        }
        for (const QString& table : UsedTables(StartDatabase)) {
            Execute("INSERT INTO " + table + " SELECT * FROM " + StartDatabase + "." + table);
        }
    }

    static QString Text(const QVariant& value) { return value.isNull() ? QString("NULL") : value.toString(); }

    Session m_session;
    On m_engine;
};

Q_DECLARE_METATYPE(TestTarget::On)
