#include "sql/engine.h"
#include "sql/engines/sqlite/sqliteStatements.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

/// Statements are prepared by their shape: what is a value and what is not must be told apart without fail.
class TestSqliteStatements : public QObject {
    Q_OBJECT

private slots:
    void Shapes_data() {
        Columns<QByteArray, QByteArray, QByteArray>("statement", "shape", "values");
        const auto row = [](const char* name, const char* statement, const char* shape, const char* values) {
            Row(name, QByteArray(statement), QByteArray(shape), QByteArray(values));
        };
        row("texts and numbers", "INSERT INTO X01_A (N, P) VALUES ('L''Aquila', 12.5, -3, Null)",
            "INSERT INTO X01_A (N, P) VALUES (?, ?, -?, Null)", "'L'Aquila 12.5 3");
        row("conditions", "SELECT * FROM A WHERE B = 'x' AND ID = 17 AND C >=4",
            "SELECT * FROM A WHERE B = ? AND ID = ? AND C >=?", "'x 17 4");
        row("positions stay", "SELECT A, 1 FROM T ORDER BY 1, 2", "SELECT A, 1 FROM T ORDER BY 1, 2", "");
        row("names with digits", "SELECT \"it's\", [a'b], `c'd`, X01 FROM T1",
            "SELECT \"it's\", [a'b], `c'd`, X01 FROM T1", "");
        row("comments", "SELECT 'a' -- it's\n, 'b' /* 'c' */", "SELECT ? -- it's\n, ? /* 'c' */", "'a 'b");
        row("bytes", "INSERT INTO T VALUES (x'0102', 'a')", "INSERT INTO T VALUES (x'0102', ?)", "'a");
        row("empty text", "UPDATE T SET A = ''", "UPDATE T SET A = ?", "'");
        row("exponent", "INSERT INTO T VALUES (1e5,0x10)", "INSERT INTO T VALUES (?,0x10)", "1e5");
        row("other statements", "CREATE TABLE T (A TEXT DEFAULT 'x')", "CREATE TABLE T (A TEXT DEFAULT 'x')", "");
        row("open text", "SELECT 'abc", "SELECT 'abc", "");
    }
    void Shapes() {
        QFETCH(const QByteArray, statement);
        const StatementShape split = StatementShape::Of(statement);
        QByteArrayList values;
        for (const StatementShape::Value& value : split.values) {
            values.append((value.isText ? "'" : "") + value.bytes);
        }
        QTEST(split.shape, "shape");
        QTEST(values.join(' '), "values");
    }

    /// The same shape while its statement is still running, and again when it has come back.
    void OneShapeSeveralTimes() {
        const auto engine = OpenSqlite(":memory:");
        engine->Run("CREATE TABLE T (A TEXT, B INTEGER, C REAL)");
        for (int i = 0; i < 3; ++i) {
            engine->Run(QString("INSERT INTO T VALUES ('row %1', %1, %1.5)").arg(i));
        }
        QStringList pairs;
        const auto outer = engine->Query("SELECT A FROM T WHERE B <> 9 ORDER BY B");
        while (outer->Next()) {
            const auto inner = engine->Query("SELECT B, C FROM T WHERE A = '" + outer->Value(0).toString() + "'");
            const auto other = engine->Query("SELECT B, C FROM T WHERE A = 'row 2'");
            QVERIFY(inner->Next() && other->Next());
            pairs.append(inner->Value(0).toString() + other->Value(1).toString());
        }
        QCOMPARE(pairs, QStringList({"02.5", "12.5", "22.5"}));
    }

    /// A kept statement gives the columns that the table has now, not those of its first run.
    void ColumnsFollowTheTable() {
        const auto engine = OpenSqlite(":memory:");
        const auto columns = [&engine] {
            const auto rows = engine->Query("SELECT * FROM T WHERE A = 'x'");
            return rows->Next() ? rows->Columns().join(' ') + QString::number(rows->IndexOf("c")) : QString();
        };
        engine->Run("CREATE TABLE T (A TEXT, B TEXT)");
        engine->Run("INSERT INTO T VALUES ('x', 'y')");
        QCOMPARE(columns(), "A B-1");
        engine->Run("ALTER TABLE T RENAME COLUMN B TO C");
        QCOMPARE(columns(), "A C1");
    }

    /// A cursor that outlives its engine, as a recordset that is closed late does.
    void CursorOutlivesEngine() {
        auto engine = OpenSqlite(":memory:");
        engine->Run("CREATE TABLE T (A TEXT)");
        auto cursor = engine->Query("SELECT * FROM T WHERE A = 'x'");
        engine.reset();
        QVERIFY(!cursor->Next());
        cursor.reset();
    }
};

QUADRIX_TEST(TestSqliteStatements)
#include "test_sqliteStatements.moc"
