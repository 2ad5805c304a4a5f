#include "sql/ovConnection.h"
#include "sql/ovQueryConstructor.h"
#include "tests/support/embedded.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTemporaryDir>
#include <QTest>

Q_DECLARE_METATYPE(std::function<void(ovConnection&)>)

/// What is said not to be there must not be there, whoever has written it and how.
class TestAbsentValues : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    void Open(ovConnection& connection) const { OpenEmbedded(connection, m_folder.filePath("absent.db")); }

    /// Asks as often as makes it worth knowing.
    static bool IsAbsent(ovConnection& connection, const QString& value) {
        bool isAbsent = false;
        for (int time = 0; time < 200; ++time) {
            isAbsent = connection.IsAbsent("T", "A", value);
        }
        return isAbsent;
    }

    static SqlText Insert(const QVariant& value, DataType type) {
        ovQueryConstructor query;
        query.SetTable("T");
        query.AddUpdateField("B", 1, DataType::Integer);
        query.AddUpdateField("A", value, type);
        return query.MakeStatement(StatementKind::Insert);
    }

private slots:
    void cleanup() { QFile::remove(m_folder.filePath("absent.db")); }

    void WhatIsWrittenIsFound_data() {
        using Write = std::function<void(ovConnection&)>;
        Columns<QString, Write>("value", "write");
        const auto text = [](const QString& statement) {
            return Write([statement](ovConnection& target) { target.Execute(statement); });
        };
        Row("a text", "c1", text("INSERT INTO T (B, A) VALUES (1, 'c1')"));
        Row("in another case", "c1", text("insert into t (b, [a]) values (1, 'C1')"));
        Row("an expression", "c1", text("INSERT INTO T (A) VALUES ('c' || '1')"));
        Row("rows of another table", "x1", text("INSERT INTO T (A) SELECT A FROM U"));
        Row("without names", "c1", text("INSERT INTO T VALUES ('c1', 1, 2, 3)"));
        Row("an update", "c1", text("UPDATE T SET B = 2, A = 'c1' WHERE A = 'a1'"));
        Row("a trigger", "x2", text("INSERT INTO U (A) VALUES ('x2')"));
        Row("by a query", "c1",
            Write([](ovConnection& target) { target.ExecuteWC("INSERT INTO T (A) VALUES ('c1') RETURNING A"); }));
        Row("values apart", "c1",
            Write([](ovConnection& target) { target.Execute(Insert("c1", DataType::NVarChar)); }));
        Row("a number", "17", Write([](ovConnection& target) { target.Execute(Insert(17, DataType::Integer)); }));
        Row("an expression in an update", "c1", text("UPDATE T SET A = 'c' || B, B = 1"));
        Row("a condition in an update", "c1", text("UPDATE T SET B = CASE WHEN A = 'q1' THEN 1 END, A = 'c1'"));
        Row("an update of what has WHERE in its name", "c1", text("UPDATE T SET WHEREFROM = '1', A = 'c1'"));
        Row("an update of quoted names", "c1", text("UPDATE \"T\" SET \"A\" = 'c1'"));
        Row("in another case", "metà", text("INSERT INTO T (A) VALUES ('METÀ')"));
        Row("a quoted table", "c1", text("INSERT INTO [T] (A) VALUES ('c1')"));
        Row("a table with its owner", "c1", text("INSERT INTO main.T (A) VALUES ('c1')"));
        Row("words before the table", "c1", text("INSERT OR REPLACE INTO T (A) VALUES ('c1')"));
        Row("an insertion that becomes an update", "c1",
            text("INSERT INTO T (B, K) VALUES (1, 1) ON CONFLICT (K) DO UPDATE SET A = 'c1'"));
        Row("more values than are taken out", "c1",
            text("INSERT INTO T (B, A) VALUES " + QStringList(600, "(1, 'c1')").join(", ")));
        Row("rows that give results, and a trigger", "x2",
            Write([](ovConnection& target) { target.ExecuteWC("INSERT INTO U (A) VALUES ('x2') RETURNING A"); }));
        Row("half of a statement that fails", "x3", Write([](ovConnection& target) {
                QVERIFY_THROWS_EXCEPTION(SqlError, target.Execute("INSERT OR FAIL INTO U (A) VALUES ('x3'), ('x3')"));
            }));
        Row("another connection", "c1", Write([this](ovConnection& target) {
                target.CommitTrans();
                ovConnection other;
                Open(other);
                other.Execute("INSERT INTO T (A) VALUES ('c1')");
                target.BeginTrans();
            }));
    }
    void WhatIsWrittenIsFound() {
        QFETCH(const QString, value);
        QFETCH(const std::function<void(ovConnection&)>, write);
        ovConnection target;
        Open(target);
        target.Execute("CREATE TABLE T (A NVARCHAR(20), B INT, K INT UNIQUE, WHEREFROM INT)");
        target.Execute("CREATE TABLE U (A NVARCHAR(20) UNIQUE)");
        target.Execute("INSERT INTO T (A, B, K) VALUES ('a1', 1, 1)");
        target.Execute("INSERT INTO U (A) VALUES ('x1')");
        target.Execute("CREATE TRIGGER R AFTER INSERT ON U BEGIN INSERT INTO T (A) VALUES (NEW.A); END");
        QVERIFY(!IsAbsent(target, value)); // outside a transaction it may change at any time
        target.BeginTrans();
        QVERIFY(IsAbsent(target, value));
        QVERIFY(!IsAbsent(target, "A1"));
        write(target);
        QVERIFY(!IsAbsent(target, value));
        QVERIFY(IsAbsent(target, "z9"));
    }

    void WhatIsTakenBackIsFound_data() {
        using Take = std::function<void(ovConnection&)>;
        Columns<QString, Take>("change", "takeBack");
        const Take toMark = [](ovConnection& target) { target.RollbackToMark(); };
        const Take transaction = [](ovConnection& target) {
            target.RollbackTrans();
            target.BeginTrans();
        };
        Row("a deletion, to the mark", "DELETE T WHERE A = 'a1'", toMark);
        Row("a change, to the mark", "UPDATE T SET A = 'b1' WHERE A = 'a1'", toMark);
        Row("a deletion, with the transaction", "DELETE T WHERE A = 'a1'", transaction);
    }
    void WhatIsTakenBackIsFound() {
        QFETCH(const QString, change);
        QFETCH(const std::function<void(ovConnection&)>, takeBack);
        ovConnection target;
        Open(target);
        target.Execute("CREATE TABLE T (A NVARCHAR(20))");
        target.Execute("INSERT INTO T (A) VALUES ('a1')");
        target.BeginTrans();
        target.SetMark();
        target.Execute(change);
        QVERIFY(IsAbsent(target, "a1"));
        takeBack(target);
        QVERIFY(!IsAbsent(target, "a1"));
        QVERIFY(IsAbsent(target, "z9"));
    }

    void OnlyTextsAreKnown_data() {
        Columns<QString, QString>("type", "asked");
        Row("numbers, none there yet", "INT", "07");
        Row("texts with a default", "NVARCHAR(20) DEFAULT ('d1')", "d1");
    }
    void OnlyTextsAreKnown() {
        QFETCH(const QString, type);
        QFETCH(const QString, asked);
        ovConnection target;
        Open(target);
        target.Execute("CREATE TABLE T (A " + type + ", B INT)");
        target.BeginTrans();
        QVERIFY(!IsAbsent(target, asked));
        target.Execute("INSERT INTO T (B) VALUES (1)");
        target.Execute("UPDATE T SET A = '07' WHERE A IS NULL");
        QVERIFY(!IsAbsent(target, asked));
    }

    void AReadingThatBreaksOffTellsNothing() {
        AbsentValues values;
        bool breaksOff = true;
        const auto isAbsent = [&](const QString& value) {
            return values.IsAbsent("T", "A", value, [&](const QString&, const QString&, const auto& take) {
                take("a1");
                if (breaksOff) {
                    throw SqlError({}, "gone");
                }
                take("c1");
                return true;
            });
        };
        for (int time = 0; time < 100; ++time) {
            QVERIFY(!isAbsent("c1"));
        }
        QVERIFY_THROWS_EXCEPTION(SqlError, isAbsent("c1"));
        breaksOff = false;
        QVERIFY(!isAbsent("c1"));
        QVERIFY(isAbsent("z9"));
    }
};

QUADRIX_TEST(TestAbsentValues)
#include "test_absentValues.moc"
