#pragma once

#include "core/createDatabase.h"
#include "core/Session.h"
#include "tests/support/ScriptedOperator.h"

#include <QTemporaryDir>

/// A session over an embedded Quadrix database of its own, with company "X01" chosen. Its today is 5 March 2024.
class TestTarget {
public:
    TestTarget()
        : m_session(Person) {
        m_session.Now = [] { return QDateTime(QDate(2024, 3, 5), QTime(10, 20, 30)); };
        m_session.LogFile = Folder.filePath("import.log");
        m_session.Quadrix.Embedded = true;
        m_session.Quadrix.DatabaseName = Folder.filePath("quadrix.db");
        m_session.Quadrix.OpenConnection();
        AddCompany("X01", "Prova Uno S.r.l.");
        Choose("X01");
        m_session.Errors.Action = ErrorAction::Abort;
    }

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
    static QString Text(const QVariant& value) { return value.isNull() ? QString("NULL") : value.toString(); }

    Session m_session;
};
