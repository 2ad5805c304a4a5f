#include "sql/ovConnection.h"
#include "sql/ovQueryConstructor.h"
#include "tests/support/embedded.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTemporaryDir>
#include <QTest>

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
        Row("without names", "c1", text("INSERT INTO T VALUES ('c1', 1)"));
        Row("an update", "c1", text("UPDATE T SET B = 2, A = 'c1' WHERE A = 'a1'"));
        Row("a trigger", "x2", text("INSERT INTO U (A) VALUES ('x2')"));
        Row("by a query", "c1",
            Write([](ovConnection& target) { target.ExecuteWC("INSERT INTO T (A) VALUES ('c1') RETURNING A"); }));
        Row("values apart", "c1",
            Write([](ovConnection& target) { target.Execute(Insert("c1", DataType::NVarChar)); }));
        Row("a number", "17", Write([](ovConnection& target) { target.Execute(Insert(17, DataType::Integer)); }));
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
        target.Execute("CREATE TABLE T (A NVARCHAR(20), B INT)");
        target.Execute("CREATE TABLE U (A NVARCHAR(20))");
        target.Execute("INSERT INTO T (A) VALUES ('a1')");
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

Q_DECLARE_METATYPE(std::function<void(ovConnection&)>)

QUADRIX_TEST(TestAbsentValues)
#include "test_absentValues.moc"
