#pragma once

#include "core/createDatabase.h"
#include "core/Session.h"
#include "tests/support/ScriptedOperator.h"

#include <QTemporaryDir>

/// A session over a Quadrix database of its own, with company "X01" chosen. Its today is 5 March 2024.
class TestTarget {
public:
    enum class On { Embedded, MariaDb };

    /// Whether the test script has started a MariaDB server.
    static bool HasMariaDb() { return Server().size() == 5; }

    explicit TestTarget(On engine = On::Embedded)
        : m_session(Person),
          m_engine(engine) {
        m_session.Now = [] { return QDateTime(QDate(2024, 3, 5), QTime(10, 20, 30)); };
        m_session.LogFile = Folder.filePath("import.log");
        engine == On::Embedded ? OpenEmbedded() : OpenMariaDb();
        AddCompany("X01", "Prova Uno S.r.l.");
        Choose("X01");
        m_session.Errors.Action = ErrorAction::Abort;
    }
    ~TestTarget() {
        if (m_engine == On::MariaDb) {
            m_session.Quadrix.Execute("DROP DATABASE quadrix_target");
        }
    }
    TestTarget(const TestTarget&) = delete;
    TestTarget& operator=(const TestTarget&) = delete;

    void AddCompany(const QString& code, const QString& name) { CreateDatabase(m_session.Quadrix, code, name); }
    void Choose(const QString& code) {
        m_session.Quadrix.SetCompany(code);
        m_session.UserManager.SetAzienda(code);
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
    QByteArray Log(const QString& name = "import.log") const {
        QFile file(Folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir Folder;
    ScriptedOperator Person;

private:
    static QStringList Server() { return qEnvironmentVariable("QUADRIX_TEST_MARIADB").split('|'); }

    void OpenEmbedded() {
        m_session.Quadrix.Embedded = true;
        m_session.Quadrix.DatabaseName = Folder.filePath("quadrix.db");
        m_session.Quadrix.OpenConnection();
    }

    void OpenMariaDb() {
        const QStringList server = Server();
        ovConnection& quadrix = m_session.Quadrix;
        quadrix.ProviderType = Provider::MySql;
        quadrix.Server = server.at(0) + ':' + server.at(1);
        quadrix.User = server.at(2);
        quadrix.Password = server.at(3);
        quadrix.DatabaseName = server.at(4);
        quadrix.OpenConnection();
        quadrix.Execute("DROP DATABASE IF EXISTS quadrix_target");
        quadrix.Execute("CREATE DATABASE quadrix_target CHARACTER SET utf8mb4");
        quadrix.CloseConnection();
        quadrix.DatabaseName = "quadrix_target";
        quadrix.OpenConnection();
    }

    static QString Text(const QVariant& value) { return value.isNull() ? QString("NULL") : value.toString(); }

    Session m_session;
    On m_engine;
};

Q_DECLARE_METATYPE(TestTarget::On)
