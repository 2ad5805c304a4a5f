#include "app/CompanyLock.h"
#include "app/merge.h"
#include "app/truncation.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

namespace {

constexpr const char* Anna = "anna (PC-1), processo 7, dal 05/03/2024 09:00:00: importazione: Articoli";

/// Two companies, and somebody else who works on the same database.
class Shared {
public:
    explicit Shared(TestTarget::On engine = TestTarget::On::Embedded)
        : Target(engine) {
        Target.AddCompany("X02", "Prova Due S.p.A.");
        Target.Execute("DELETE FROM X01_MAG_AZZ");
        Target.Execute("INSERT INTO X01_DOC_VEN (DTNUM) VALUES (1)");
        if (engine == TestTarget::On::Embedded) {
            OpenEmbedded(Other, Target.Db().DatabaseName);
        } else {
            MariaDbServer().Set(Other, "client", Target.Db().DatabaseName);
            Other.OpenConnection();
        }
    }

    bool Do(const QString& operation) {
        Session& session = Target.Get();
        if (operation == "truncate") {
            return modImport::TruncateDatabase(session).outcome == RunResult::Outcome::Done;
        }
        if (operation == "merge" || operation == "merge with references") {
            return modMain::FusioneControparti(session, "x01", "X02", operation != "merge");
        }
        ResetOptions options;
        options.DocVen = operation == "reset";
        options.SystemTable = operation == "reset of the system";
        return ResetDatabase(session, options).outcome == RunResult::Outcome::Done;
    }

    TestTarget Target;
    ovConnection Other;
};

} // namespace

/// Whoever works on a company keeps others from it.
class TestCompanyLock : public QObject {
    Q_OBJECT

private slots:
    void refusesWorkOnACompanyUnderWork_data() {
        Columns<QString, QString, bool>("operation", "locked", "done");
        Row("reset", QString("reset"), QString("X01"), false);
        Row("reset of another company", QString("reset"), QString("X02"), true);
        Row("reset of what all share", QString("reset of the system"), QString("X02"), false);
        Row("truncation", QString("truncate"), QString("X01"), false);
        Row("merge into it", QString("merge"), QString("X02"), false);
        Row("merge that only reads it", QString("merge"), QString("X01"), true);
        Row("merge that re-points it", QString("merge with references"), QString("X01"), false);
    }
    void refusesWorkOnACompanyUnderWork() {
        QFETCH(QString, operation);
        QFETCH(QString, locked);
        QFETCH(bool, done);
        Shared shared;
        QVERIFY(shared.Other.TakeLock(locked, Anna));
        QCOMPARE(shared.Do(operation), done);
        const auto& reported = shared.Target.Person.Reported;
        QCOMPARE(reported.size(), done ? 0 : 1);
        if (!done) {
            QCOMPARE(reported[0].message, QString("Azienda '%1': ci sta già lavorando %2. Non è stato scritto nulla: "
                                                  "riprovare quando ha finito")
                                              .arg(locked, Anna));
            QCOMPARE(shared.Target.Value("SELECT COUNT(*) FROM X01_DOC_VEN"), QString("1"));
        }
        shared.Other.ReleaseLock(locked);
        QVERIFY(shared.Do(operation));
        QVERIFY(shared.Other.TakeLock("X01", Anna) && shared.Other.TakeLock("X02", Anna)); // nothing stays locked
    }

    /// A trial on a server takes its locks without ending the transaction that takes everything back.
    void trialsLockWithoutATrace() {
        if (!TestTarget::HasMariaDb()) {
            QSKIP("QUADRIX_TEST_MARIADB names no server (scripts/test starts one)");
        }
        Shared shared(TestTarget::On::MariaDb);
        shared.Target.Db().BeginTrans();
        shared.Target.Execute("DELETE FROM X01_DOC_VEN");
        {
            const CompanyLock lock(shared.Target.Get(), {"X02", "X01"}, "prova");
            QVERIFY(!shared.Other.TakeLock("X01", Anna));
        }
        QVERIFY(shared.Other.TakeLock("X01", Anna));
        shared.Target.Db().RollbackTrans();
        QCOMPARE(shared.Target.Value("SELECT COUNT(*) FROM X01_DOC_VEN"), QString("1"));
    }

    void staysWithTheOuterOne() {
        Shared shared;
        const CompanyLock outer(shared.Target.Get(), {"X01"}, "sequenza");
        {
            const CompanyLock inner(shared.Target.Get(), {"X01", "X02"}, "importazione");
            QVERIFY(!shared.Other.TakeLock("X02", Anna));
        }
        QVERIFY(shared.Other.TakeLock("X02", Anna));
        QVERIFY(!shared.Other.TakeLock("X01", Anna));
        QVERIFY(shared.Other.LockHolder("X01").endsWith(": sequenza"));
    }
};

QUADRIX_TEST(TestCompanyLock)

#include "test_companyLock.moc"
