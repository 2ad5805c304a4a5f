#include "sql/text/dialect.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

class TestDialect : public QObject {
    Q_OBJECT

private slots:
    void Adapted_data() {
        Columns<QString, QString, QString>("text", "sqlite", "mySql");
        Row("delete without from", "DELETE X01_CON_TRO", "DELETE FROM X01_CON_TRO", "DELETE FROM X01_CON_TRO");
        Row("delete, where", " delete\r\nSYS_LNG WHERE LNTBL = 'A'", " delete\r\nFROM SYS_LNG WHERE LNTBL = 'A'",
            " delete\r\nFROM SYS_LNG WHERE LNTBL = 'A'");
        Row("delete with from", "DELETE FROM T", "DELETE FROM T", "DELETE FROM T");
        Row("truncate", "TRUNCATE TABLE X01_ART_ICO", "DELETE FROM X01_ART_ICO", "TRUNCATE TABLE X01_ART_ICO");
        Row("owner", "SELECT dbo.T.A FROM DBO.T", "SELECT T.A FROM T", "SELECT T.A FROM T");
        Row("brackets", "SELECT [A B] FROM [dbo].[T]", "SELECT [A B] FROM [dbo].[T]", "SELECT `A B` FROM `dbo`.`T`");
        Row("left and right", "SELECT LEFT(A, 3), Right (B,2)", "SELECT SUBSTR(A, 1, 3), SUBSTR(B, -(2))",
            "SELECT LEFT(A, 3), Right (B,2)");
        Row("year", "SELECT YEAR(DATDOC) FROM T GROUP BY YEAR(DATDOC)",
            "SELECT CAST(SUBSTR(DATDOC, 1, 4) AS INTEGER) FROM T GROUP BY CAST(SUBSTR(DATDOC, 1, 4) AS INTEGER)",
            "SELECT YEAR(DATDOC) FROM T GROUP BY YEAR(DATDOC)");
        Row("nested", "SELECT LEFT(ISNULL(A, 'x,y(' ), LEN(B))", "SELECT SUBSTR(IFNULL(A, 'x,y(' ), 1, LENGTH(B))",
            "SELECT LEFT(IFNULL(A, 'x,y(' ), CHAR_LENGTH(B))");
        Row("join is no function", "SELECT * FROM A LEFT JOIN B ON 1=1", "SELECT * FROM A LEFT JOIN B ON 1=1",
            "SELECT * FROM A LEFT JOIN B ON 1=1");
        Row("now", "INSERT INTO T (D) VALUES (GETDATE())",
            "INSERT INTO T (D) VALUES (strftime('%Y%m%d %H:%M:%S', 'now', 'localtime'))",
            "INSERT INTO T (D) VALUES (NOW())");
        Row("guid", "INSERT INTO T VALUES (CONVERT(uniqueidentifier, '6F96-19FF'))",
            "INSERT INTO T VALUES ('6F96-19FF')", "INSERT INTO T VALUES ('6F96-19FF')");
        Row("other conversion", "SELECT CONVERT(INT, A)", "SELECT CONVERT(INT, A)", "SELECT CONVERT(INT, A)");
        Row("moment", "UPDATE T SET D = '20240305 10:20:30', E = '20240305'",
            "UPDATE T SET D = '20240305 10:20:30', E = '20240305'",
            "UPDATE T SET D = '2024-03-05 10:20:30', E = '20240305'");
        Row("moments of Access and FoxPro", "SELECT #T1 FROM T WHERE D >= #2024/03/05 10:20:30# AND E = {^2024/03/05}",
            "SELECT #T1 FROM T WHERE D >= '20240305 10:20:30' AND E = '20240305'",
            "SELECT #T1 FROM T WHERE D >= #2024/03/05 10:20:30# AND E = {^2024/03/05}");
        Row("placeholder within an argument", "SELECT LEFT('%2', LEN(B))", "SELECT SUBSTR('%2', 1, LENGTH(B))",
            "SELECT LEFT('%2', CHAR_LENGTH(B))");
        Row("text of SQL Server's Unicode", "UPDATE T SET A = N'it''s', B = X'00'",
            "UPDATE T SET A = 'it''s', B = X'00'", "UPDATE T SET A = N'it''s', B = X'00'");
        Row("bytes", "INSERT INTO T VALUES (0xFFD8, 0xF, '0xFF')", "INSERT INTO T VALUES (X'FFD8', 0xF, '0xFF')",
            "INSERT INTO T VALUES (0xFFD8, 0xF, '0xFF')");
        Row("create",
            "CREATE TABLE dbo.T\r\n(\r\n  ID BIGINT IDENTITY(1, 1) NOT NULL,\r\n  C NVARCHAR(35) NULL,\r\n"
            "  M NTEXT NULL,\r\n  D DATETIME NULL,\r\n  B BIT NOT NULL DEFAULT (0),\r\n  PRIMARY KEY (ID)\r\n);",
            "CREATE TABLE T\r\n(\r\n  ID INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL,\r\n  C NVARCHAR(35) COLLATE "
            "NOCASE "
            "NULL,"
            "\r\n  M NTEXT COLLATE NOCASE NULL,\r\n  D DATETIME TEXT NULL,\r\n  B BIT NOT NULL DEFAULT (0)\r\n   "
            "\r\n);",
            "CREATE TABLE T\r\n(\r\n  ID BIGINT IDENTITY(1, 1) NOT NULL,\r\n  C VARCHAR(35) NULL,\r\n"
            "  M LONGTEXT NULL,\r\n  D DATETIME NULL,\r\n  B BIT NOT NULL DEFAULT (0),\r\n  PRIMARY KEY (ID)\r\n);");
        Row("create with a collation", "CREATE TABLE T (C CHAR(3) COLLATE BINARY, I UNIQUEIDENTIFIER, O IMAGE)",
            "CREATE TABLE T (C CHAR(3) COLLATE BINARY, I UNIQUEIDENTIFIER, O IMAGE)",
            "CREATE TABLE T (C CHAR(3) COLLATE BINARY, I CHAR(36), O LONGBLOB)");
        Row("columns called like types", "CREATE TABLE T (Image VARCHAR(60), Text DATETIME)",
            "CREATE TABLE T (Image VARCHAR(60) COLLATE NOCASE, Text DATETIME TEXT)",
            "CREATE TABLE T (Image VARCHAR(60), Text DATETIME)");
        Row("key of two columns", "CREATE TABLE T (A INT, B INT, PRIMARY KEY (A, B))",
            "CREATE TABLE T (A INT, B INT, PRIMARY KEY (A, B))", "CREATE TABLE T (A INT, B INT, PRIMARY KEY (A, B))");
    }
    void Adapted() {
        QFETCH(QString, text);
        QTEST(dialect::Adapt(text, Dialect::Sqlite), "sqlite");
        QTEST(dialect::Adapt(text, Dialect::MySql), "mySql");
        QCOMPARE(dialect::Adapt(text, Dialect::SqlServer), text);
        QCOMPARE(dialect::Adapt(text, Dialect::Other), text);
    }

    /// Read as SQL Server reads a literal, a text with backslashes at the ends of lines is what it was.
    void BackslashesAtEndsOfLines_data() {
        Columns<QString>("literal");
        Row("line feed", "'C:\\dis\\\nb'");
        Row("carriage return and line feed", "'C:\\dis\\\r\nb'");
        Row("several", "'a\\\\\n\nb\\\r\n\\\r\n\\'");
    }
    void BackslashesAtEndsOfLines() {
        QFETCH(QString, literal);
        QString read;
        const QString sent = dialect::Adapt("UPDATE T SET A = " + literal, Dialect::SqlServer);
        for (qsizetype at = 0; at < sent.size(); ++at) {
            const QStringView rest = QStringView(sent).mid(at);
            const bool goesOn = rest.startsWith(u"\\\r\n") || rest.startsWith(u"\\\n");
            if (goesOn) {
                at += rest.at(1) == u'\r' ? 2 : 1;
            } else {
                read += rest.at(0);
            }
        }
        QCOMPARE(read, "UPDATE T SET A = " + literal);
        QVERIFY(sent != read);
    }

    void Untouched_data() {
        Columns<QString>("text");
        Row("literal", "INSERT INTO T (A) VALUES ('DELETE dbo.X LEFT(A,1) [b] GETDATE() LEN(x)')");
        Row("literal with quotes", "UPDATE T SET A = 'l''[x] dbo.', B = '''', C = 'LEN(a)'''");
        Row("open literal", "SELECT 'dbo.x [y]");
        Row("open bracket", "SELECT A FROM [dbo.x");
        Row("moment of Access in another order", "SELECT A FROM T WHERE D = #3/5/2024#");
        Row("quoted name", "SELECT \"dbo.A [b] LEN(x)\" FROM T");
        Row("line comment", "SELECT 1 -- dbo.X LEN(A) [b]\r\n, 2");
        Row("comment at the end", "SELECT 1 -- LEN(A)");
        Row("block comment", "SELECT 1 /* dbo.X ' LEN(A) */, 2");
        Row("moment in a comment", "SELECT 1 -- '20240305 10:20:30'");
        Row("nearly a moment", "SELECT '20240305 10:20:3x', ' 20240305 10:20:30', '20240305T10:20:30'");
        Row("words within words", "SELECT GETDATES(), MYLEN(1), ISNULLABLE(A), DBO_X.A FROM DBOX");
        Row("column of that name", "SELECT LEN, ISNULL, YEAR FROM T");
        Row("backslash before a quote", "UPDATE T SET A = 'C:\\', B = 'LEN(x)'");
        Row("empty", "");
    }
    void Untouched() {
        QFETCH(QString, text);
        QCOMPARE(dialect::Adapt(text, Dialect::Sqlite), text);
        QCOMPARE(dialect::Adapt(text, Dialect::MySql), text);
    }

    void TriggerSwitches_data() {
        Columns<QString, QString, bool>("text", "table", "enable");
        Row("off", "ALTER TABLE X01_DOC_VER DISABLE TRIGGER ALL", "X01_DOC_VER", false);
        Row("on", " alter table X01_DOC_VER\r\nenable trigger all ", "X01_DOC_VER", true);
        Row("owner and brackets", "ALTER TABLE [dbo].[01 DOC] ENABLE TRIGGER ALL", "01 DOC", true);
        Row("owner", "ALTER TABLE dbo.T DISABLE TRIGGER ALL", "T", false);
        Row("one trigger", "ALTER TABLE T DISABLE TRIGGER TR1", "", false);
        Row("another change", "ALTER TABLE T ADD TRIGGER INT ALL", "", false);
        Row("another statement", "UPDATE T SET DISABLE = TRIGGER", "", false);
    }
    void TriggerSwitches() {
        QFETCH(QString, text);
        const dialect::TriggerSwitch read = dialect::ParseTriggerSwitch(text);
        QTEST(read.table, "table");
        QTEST(read.enable, "enable");
    }

    void Scripts_data() {
        Columns<QString, QStringList>("script", "statements");
        Row("semicolons", "DELETE A;\r\n DELETE B ; ;", QStringList{"DELETE A", "DELETE B"});
        Row("go", "DELETE A\nGO\nDELETE B\r\ngo", QStringList{"DELETE A", "DELETE B"});
        Row("go within a line", "SELECT 1 go", QStringList{"SELECT 1 go"});
        Row("in literals and comments", "UPDATE T SET A = ';'; -- ; GO\nDELETE B /* ; */",
            QStringList{"UPDATE T SET A = ';'", "-- ; GO\nDELETE B /* ; */"});
        Row("nothing", " \r\n;", QStringList{});
    }
    void Scripts() {
        QFETCH(QString, script);
        QTEST(dialect::SplitScript(script), "statements");
    }
};

QUADRIX_TEST(TestDialect)

#include "test_dialect.moc"
