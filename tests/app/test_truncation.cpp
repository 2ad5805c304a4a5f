#include "app/truncation.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

namespace {

void FillTruncatedTables(TestTarget& target) {
    for (const QString& table : modImport::TruncatedTables()) {
        target.Execute("INSERT INTO " + target.Db().GetFullTableName(table) + " DEFAULT VALUES");
    }
}

qint64 RowsOf(TestTarget& target, const QString& bareName) {
    return target.Db().ExecuteCommand("SELECT COUNT(*) FROM " + target.Db().GetFullTableName(bareName));
}

} // namespace

class TestTruncation : public QObject {
    Q_OBJECT

private slots:
    void EmptiesFiftyNineTablesAndTheArticleTexts() {
        TestTarget target;
        FillTruncatedTables(target);
        for (const QString table : {"UBI_ART", "LIS_TES", "BAN_CHE", "PIA_CON"}) {
            target.Execute("INSERT INTO X01_" + table + " DEFAULT VALUES");
        }
        target.Execute("DELETE SYS_LNG");
        for (const QString owner : {"X01_ART_ICO", "X01_CON_TRO", "X02_ART_ICO"}) {
            target.Execute("INSERT INTO SYS_LNG (LNTBL, LNFLD, LNKEY, LNLNG, LNTXT) VALUES ('" + owner +
                           "', 'ARDES', 'A', 'EN', 'x')");
        }
        QStringList statements;
        target.Db().Trace = [&](const QString& statement) {
            if (!statement.contains("sqlite_sequence") && !statement.startsWith("SELECT") &&
                !statement.startsWith("PRAGMA")) {
                statements.append(statement);
            }
        };
        QCOMPARE(modImport::TruncateDatabase(target.Get()).outcome, RunResult::Outcome::Done);
        target.Db().Trace = nullptr;
        QCOMPARE(statements.size(), 60);
        QCOMPARE(QSet<QString>(statements.begin(), statements.end()).size(), 60);
        QVERIFY(statements.first().endsWith("X01_RIL_PRE"));
        QVERIFY(statements.last().endsWith("X01_CON_TRO"));
        for (const QString& table : modImport::TruncatedTables()) {
            QVERIFY2(RowsOf(target, table) == 0, qPrintable(table));
        }
        for (const QString table : {"UBI_ART", "LIS_TES", "BAN_CHE", "PIA_CON"}) {
            QVERIFY2(RowsOf(target, table) == 1, qPrintable(table));
        }
        QCOMPARE(target.Rows("SELECT LNTBL FROM SYS_LNG ORDER BY LNTBL"), QStringList({"X01_CON_TRO", "X02_ART_ICO"}));
        QCOMPARE(modImport::TruncateDatabase(target.Get()).outcome, RunResult::Outcome::Done);
        QVERIFY(target.Person.Events.isEmpty());
    }

    /// The n-th statement fails, for tables at the start, in the middle, beside the language table and at the end; even
    /// when errors are to be ignored, no statement is skipped outside a row.
    void StopsAtTheFirstFailure_data() {
        Columns<QString>("missing");
        for (const char* table : {"RIL_PRE", "DOC_ACR", "ART_FMT", "CON_SED", "CON_TRO"}) {
            Row(table, QString(table));
        }
    }
    void StopsAtTheFirstFailure() {
        QFETCH(QString, missing);
        TestTarget target;
        FillTruncatedTables(target);
        target.Execute("DROP TABLE X01_" + missing);
        target.Get().Errors.Action = ErrorAction::Ignore;
        QCOMPARE(modImport::TruncateDatabase(target.Get()).outcome, RunResult::Outcome::Failed);
        const QStringList& tables = modImport::TruncatedTables();
        const qsizetype at = tables.indexOf(missing);
        for (qsizetype i = 0; i < tables.size(); ++i) {
            if (i != at) {
                QVERIFY2(RowsOf(target, tables.at(i)) == (i < at ? 0 : 1), qPrintable(tables.at(i)));
            }
        }
        QCOMPARE(target.Person.Reported.size(), 1);
        QCOMPARE(target.Person.Reported.first().module, QString("modImport"));
        QCOMPARE(target.Person.Reported.first().procedure, QString("TruncateDatabase"));
        QVERIFY(!target.Person.IsBusy());
    }
};

QUADRIX_TEST(TestTruncation)
#include "test_truncation.moc"
