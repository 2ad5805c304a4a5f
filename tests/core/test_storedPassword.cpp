#include "core/storedPassword.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/ScriptedOperator.h"

#include <QTemporaryDir>
#include <QTest>

class TestStoredPassword : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        m_session = std::make_unique<Session>(m_person);
        m_person.Events.clear();
    }
    void cleanup() { qunsetenv(Variable); }

    void masksWhatStandsInClear_data() {
        Columns<QString>("password");
        Row("usual", "Segreta9");
        Row("of every kind", "Se gr€ta;\"}{'=à");
        Row("like a comment", ";segreta");
    }
    void masksWhatStandsInClear() {
        QFETCH(const QString, password);
        Put(password);
        QCOMPARE(Read(), password);
        QVERIFY(!ReadFile(Path()).contains(password.toLatin1()));
        const QByteArray masked = ReadFile(Path());
        QCOMPARE(Read(), password);
        QCOMPARE(ReadFile(Path()), masked); // masked once
        QCOMPARE(Copied(), password);

        Put("cambiata"); // over the masked one, as an operator would
        QCOMPARE(Read(), QString("cambiata"));
        QVERIFY(!ReadFile(Path()).contains("cambiata"));
        QVERIFY(m_person.Events.isEmpty());
    }

    void leavesNoneAlone() {
        Put(" ");
        const QByteArray before = ReadFile(Path());
        QCOMPARE(Read(), QString(" "));
        QCOMPARE(ReadFile(Path()), before);
    }

    void tellsOnceWhatStaysLegible_data() {
        Columns<QString>("password");
        Row("letters that the code page lacks", "日本");
        Row("too long", QString(125, 'a'));
    }
    void tellsOnceWhatStaysLegible() {
        QFETCH(const QString, password);
        WriteFile(Path(), "\xef\xbb\xbf[IMPORT]\nPassword=" + password.toUtf8() + "\n");
        for (int time = 0; time < 2; ++time) {
            QCOMPARE(Read(), password);
        }
        QCOMPARE(m_person.Events.size(), 1);
        QVERIFY2(m_person.Events[0].contains("resta leggibile") && m_person.Events[0].contains(Variable),
                 qPrintable(m_person.Events[0]));
    }

    void environmentGoesFirst() {
        Put("nel file");
        const QByteArray before = ReadFile(Path());
        qputenv(Variable, "dall'ambiente");
        QCOMPARE(Read(), QString("dall'ambiente"));
        QCOMPARE(Copied(), QString("dall'ambiente"));
        qputenv(Variable, "");
        QCOMPARE(Read(), QString());
        QCOMPARE(ReadFile(Path()), before);
        QCOMPARE(storedPassword::Variable(SettingsFile("/x/Sequence.ini"), "VISUAL SPACE", "Tessera_Password"),
                 QString("SEQUENCE_VISUAL_SPACE_TESSERA_PASSWORD"));
    }

private:
    static constexpr const char* Variable = "QUADRIX_IMPORT_PASSWORD";

    QString Path() const { return m_folder->filePath("Quadrix.ini"); }
    void Put(const QString& password) const { SettingsFile(Path()).Write("IMPORT", "Password", password); }
    QString Read() const {
        SettingsFile file(Path());
        return storedPassword::Read(*m_session, file, "IMPORT", "Password");
    }
    /// What is read from another file that the form kept was copied into.
    QString Copied() const {
        SettingsFile file(Path());
        SettingsFile copy(m_folder->filePath("Copia.ini"));
        copy.Write("IMPORT", "Password", storedPassword::ReadMasked(*m_session, file, "IMPORT", "Password"));
        return storedPassword::Read(*m_session, copy, "IMPORT", "Password");
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    ScriptedOperator m_person;
    std::unique_ptr<Session> m_session;
};

QUADRIX_TEST(TestStoredPassword)
#include "test_storedPassword.moc"
