#include "sql/engine.h"
#include "sql/engines/sqlite/sqliteStatements.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

#include <limits>

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
            "INSERT INTO X01_A (N, P) VALUES (?, ?, ?, Null)", "'L'Aquila 12.5 -3");
        row("conditions", "SELECT * FROM A WHERE B = 'x' AND ID = 17 AND C >=4",
            "SELECT * FROM A WHERE B = ? AND ID = ? AND C >=?", "'x 17 4");
        row("positions stay", "SELECT A, 1 FROM T ORDER BY 1, 2", "SELECT A, 1 FROM T ORDER BY 1, 2", "");
        row("names with digits", "SELECT \"it's\", [a'b], `c'd`, X01 FROM T1",
            "SELECT \"it's\", [a'b], `c'd`, X01 FROM T1", "");
        row("comments", "SELECT 'a' -- it's\n, 'b' /* 'c' */", "SELECT ? -- it's\n, ? /* 'c' */", "'a 'b");
        row("bytes", "INSERT INTO T VALUES (x'0102', 'a')", "INSERT INTO T VALUES (x'0102', ?)", "'a");
        row("empty text", "UPDATE T SET A = ''", "UPDATE T SET A = ?", "'");
        row("exponent", "INSERT INTO T VALUES (1e5,0x10)", "INSERT INTO T VALUES (?,0x10)", "1e5");
        row("exponent with a sign, beyond a double", "INSERT INTO T VALUES (-1.5e-7, 1e400)",
            "INSERT INTO T VALUES (?, 1e400)", "-1.5e-7");
        row("signs that are no part of a number", "UPDATE T SET A = - 1, B = +2, C = -D, E = 5 - 3, F = --4\n5",
            "UPDATE T SET A = - 1, B = +2, C = -D, E = ? - 3, F = --4\n?", "5 5");
        row("names that begin with a digit", "SELECT * FROM 01_A WHERE B = 01_A.C AND D = 2.",
            "SELECT * FROM 01_A WHERE B = 01_A.C AND D = ?", "2.");
        row("texts of another kind", "INSERT INTO T VALUES (N'it''s', X'00', 'b')",
            "INSERT INTO T VALUES (N'it''s', X'00', ?)", "'b");
        row("a word before a text", "SELECT A FROM T WHERE A LIKE'x' OR A = 'y'",
            "SELECT A FROM T WHERE A LIKE? OR A = ?", "'x 'y");
        row("dates of Access", "SELECT A FROM T WHERE D = #2024/03/05# AND B = 'x'",
            "SELECT A FROM T WHERE D = #2024/03/05# AND B = ?", "'x");
        row("brackets doubled", "SELECT [a]]'b] FROM T WHERE C = 'x'", "SELECT [a]]'b] FROM T WHERE C = ?", "'x");
        row("other statements", "CREATE TABLE T (A TEXT DEFAULT 'x')", "CREATE TABLE T (A TEXT DEFAULT 'x')", "");
        row("open text", "SELECT 'abc", "SELECT 'abc", "");
    }
    void Shapes() {
        QFETCH(const QByteArray, statement);
        const StatementShape split = StatementShape::Of(statement);
        StatementShape parts = split;
        parts.text.clear();
        QCOMPARE(parts.Text(), QString::fromUtf8(statement));
        QByteArrayList values;
        for (const StatementShape::Value& value : split.values) {
            values.append((value.IsText() ? "'" : "") + value.bytes);
            if (value.kind == StatementShape::Value::Kind::Integer) {
                QCOMPARE(value.integer, value.bytes.toLongLong());
            }
        }
        QTEST(split.shape, "shape");
        QTEST(values.join(' '), "values");
    }

    /// No digit of a whole number is lost: up to 64 bits it is one, beyond that a column of text keeps it.
    void LongNumbers_data() {
        Columns<QString, QVariant, QString>("number", "value", "text");
        Row("19 digits", "1234567890123456789", QVariant(1234567890123456789LL), "1234567890123456789");
        Row("largest", "9223372036854775807", QVariant(std::numeric_limits<qint64>::max()), "9223372036854775807");
        Row("smallest", "-9223372036854775808", QVariant(std::numeric_limits<qint64>::min()), "-9223372036854775808");
        Row("beyond", "9223372036854775808", QVariant(9223372036854775808.0), "9223372036854775808");
        Row("beyond, negative", "-12345678901234567890", QVariant(-12345678901234567890.0), "-12345678901234567890");
    }
    void LongNumbers() {
        QFETCH(const QString, number);
        const auto engine = OpenSqlite(":memory:");
        engine->Run("CREATE TABLE T (N BIGINT, F FLOAT, T NVARCHAR(30))");
        engine->Run(QString("INSERT INTO T VALUES (%1, %1, %1)").arg(number));
        const auto row = engine->Query("SELECT N, T FROM T WHERE T = " + number + " AND N = " + number);
        QVERIFY(row->Next());
        QTEST(row->Value(0), "value");
        QTEST(row->Value(1).toString(), "text");
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
