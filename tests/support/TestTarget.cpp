#include "tests/support/TestTarget.h"

#include "core/createDatabase.h"
#include "tests/support/embedded.h"
#include "tests/support/files.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/writtenStatements.h"

#include <QCoreApplication>

namespace {

const QString Company = QStringLiteral("Prova Uno S.r.l.");
const QString OwnDatabase = TestTarget::OfThisProgram("quadrix_target");
const QString SharedDatabase = TestTarget::OfThisProgram("quadrix_again");
const QString StartDatabase = TestTarget::OfThisProgram("quadrix_start"); ///< the shared one as it was made

QString Text(const QVariant& value) { return value.isNull() ? QString("NULL") : value.toString(); }

} // namespace

TestTarget::TestTarget(On engine)
    : m_session(Person),
      m_engine(engine) {
    m_session.Now = [] { return QDateTime(QDate(2024, 3, 5), QTime(10, 20, 30)); };
    m_session.LogFile = Folder.filePath("import.log");
    m_session.Config.SetConfigFile(Folder.filePath("Quadrix.ini"));
    if (engine == On::Embedded) {
        m_session.Quadrix.Written = WrittenStatements();
        if (!QFile::copy(StartFile(), Folder.filePath("quadrix.db"))) {
            qFatal("%s cannot be copied to %s", qPrintable(StartFile()), qPrintable(Folder.path()));
        }
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

TestTarget::~TestTarget() {
    if (m_engine == On::MariaDb) {
        Execute("DROP DATABASE " + OwnDatabase);
    }
}

bool TestTarget::HasMariaDb() { return MariaDbServer().IsThere(); }

void TestTarget::AddCompany(const QString& code, const QString& name) { CreateDatabase(m_session.Quadrix, code, name); }

void TestTarget::Choose(const QString& code) {
    m_session.Quadrix.SetCompany(code);
    m_session.UserManager.SetAzienda(code);
    m_session.UserManager.DataElaborazione = m_session.Now().date();
}

QString TestTarget::OfThisProgram(const QString& name) {
    return name + '_' + QString::number(QCoreApplication::applicationPid());
}

void TestTarget::MakeDatabase(const QString& name) {
    const auto server = MariaDbServer().Open();
    server->Execute("DROP DATABASE IF EXISTS " + name);
    server->Execute("CREATE DATABASE " + name + " CHARACTER SET utf8mb4");
}

QString TestTarget::Way() const {
    return m_engine == On::Embedded ? QString() : m_engine == On::OdbcAgain ? QString("ODBC") : QString("client");
}

QString TestTarget::Value(const QString& query) {
    const Recordset rows = Db().ExecuteWC(query);
    return rows.Eof() ? QString() : Text(rows.Fields(0).Value());
}

QStringList TestTarget::Rows(const QString& query) {
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

QString TestTarget::StartFile() {
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

void TestTarget::OpenMariaDb(const QString& database) {
    MariaDbServer().Set(m_session.Quadrix, Way(), database);
    m_session.Quadrix.OpenConnection();
}

void TestTarget::OpenAgain() {
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

QStringList TestTarget::UsedTables(const QString& database) {
    return Rows("SELECT TABLE_NAME FROM information_schema.TABLES WHERE TABLE_SCHEMA = '" + database +
                "' AND (AUTO_INCREMENT > 1 OR AUTO_INCREMENT IS NULL) ORDER BY TABLE_NAME");
}

void TestTarget::PutBackStart() {
    for (const QString& table : UsedTables(SharedDatabase)) {
        Execute("TRUNCATE TABLE " + table);
    }
    for (const QString& table : UsedTables(StartDatabase)) {
        Execute("INSERT INTO " + table + " SELECT * FROM " + StartDatabase + "." + table);
    }
}

QByteArray TestTarget::Log(const QString& name) const { return ReadFile(Folder.filePath(name)); }
