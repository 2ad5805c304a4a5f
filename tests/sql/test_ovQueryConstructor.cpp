#include "sql/mod_ovTools.h"
#include "sql/ovQueryConstructor.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>
namespace {

/// A text with "|" for each line break.
QString Lines(const char* text) { return QString::fromUtf8(text).replace(u'|', QStringLiteral("\r\n")); }

/// Fields of an INSERT or UPDATE on table ART of company 01.
ovQueryConstructor Filled() {
    ovQueryConstructor query;
    query.SetTable("ART", "01");
    query.AddUpdateField("A", "x'y", DataType::VarChar);
    query.AddUpdateField("B", 5, DataType::Integer);
    query.AddUpdateField("C", "GETDATE()", DataType::Expression);
    return query;
}

} // namespace

class TestQueryConstructor : public QObject {
    Q_OBJECT

private slots:
    void Statements_data() {
        Columns<int, QString, QString>("kind", "where", "text");
        const auto add = [](const char* name, int kind, const char* where, const char* text) {
            Row(name, kind, QString(where), Lines(text));
        };
        add("insert", 10, "", "INSERT INTO 01_ART|(|  A,|  B,|  C|) VALUES (|  'x''y',|  5,|  GETDATE()|)");
        add("insert has no where", 10, "WHERE X=1",
            "INSERT INTO 01_ART|(|  A,|  B,|  C|) VALUES (|  'x''y',|  5,|  GETDATE()|)");
        add("update", 11, "WHERE CDART='1'",
            "UPDATE 01_ART|SET A = 'x''y',|    B = 5,|    C = GETDATE()|WHERE CDART='1'|");
        add("update of all", 11, "", "UPDATE 01_ART|SET A = 'x''y',|    B = 5,|    C = GETDATE()|");
        add("delete", 12, "WHERE A=1", "DELETE FROM 01_ART|WHERE A=1|");
        add("delete of all", 12, "", "DELETE FROM 01_ART|");
        add("select", 9, "WHERE A=1", "SELECT A,|       B,|       C|FROM 01_ART|WHERE A=1|ORDER BY A, B DESC, C");
        add("select distinct", 13, "", "SELECT DISTINCT A,|       B,|       C|FROM 01_ART|ORDER BY A, B DESC, C");
        add("drop table", 3, "", "DROP TABLE 01_ART");
        add("drop constraint", 4, "", "ALTER TABLE 01_ART DROP CONSTRAINT IX1");
        add("drop trigger", 5, "", "DROP TRIGGER TR");
        add("drop function", 6, "", "DROP FUNCTION FN");
        add("drop procedure", 7, "", "DROP PROCEDURE PR");
        add("drop view", 8, "", "DROP VIEW VW");
        add("primary key", 2, "", "ALTER TABLE 01_ART ADD CONSTRAINT PK_01_ART| PRIMARY KEY (A,B,C)");
    }
    void Statements() {
        QFETCH(int, kind);
        QFETCH(QString, where);
        ovQueryConstructor query = Filled();
        query.WhereString = where;
        query.AddOrderBy("A");
        query.AddOrderBy("B", 1);
        query.AddOrderBy("C", -1); // true of other languages: only 1 sorts descending
        query.AddDropIndex("IX1");
        query.AddDropIndex("IX2");
        query.TriggerName = "TR";
        query.FunctionName = "FN";
        query.ProcedureName = "PR";
        query.SetViewName("VW");
        QTEST(query.MakeQuery(StatementKind(kind)), "text");
    }

    void UnknownKinds() {
        ovQueryConstructor query = Filled();
        query.AddDropIndex("IX1");
        QCOMPARE(query.MakeQuery(StatementKind(-1)), "");
        QCOMPARE(query.MakeQuery(StatementKind(14)), "");
        QCOMPARE(query.MakeQuery(StatementKind::DropIndex, ColumnAction::Add, DropMode::Index),
                 "DROP INDEX 01_ART.IX1");
        QCOMPARE(query.MakeQuery(StatementKind::DropIndex, ColumnAction::Add, DropMode(2)), "");
        query.SetTable("ART");
        QCOMPARE(query.MakeQuery(StatementKind::DropTable), "DROP TABLE ART");
    }

    void AlterTable_data() {
        Columns<int, int, int, QString>("provider", "kind", "action", "text");
        Row("create", 0, 0, 0,
            Lines("CREATE TABLE dbo.01_T|(|  ID BIGINT IDENTITY(1, 1) NOT NULL,|"
                  "  COD VARCHAR(5) COLLATE Latin1_General_CI_AS NOT NULL DEFAULT ('a''b'),|"
                  "  QTA FLOAT NULL DEFAULT (0),|  DAT CHAR(8) NOT NULL,|"
                  "  PRIMARY KEY (ID, COD)|);"));
        Row("create elsewhere", 3, 0, 0,
            Lines("CREATE TABLE dbo.01_T|(|  ID BIGINT NOT NULL AUTO_INCREMENT NOT NULL,|"
                  "  COD VARCHAR(5) COLLATE Latin1_General_CI_AS NOT NULL DEFAULT ('a''b'),|"
                  "  QTA DOUBLE NULL DEFAULT (0),|  DAT CHAR(8) NOT NULL,|"
                  "  PRIMARY KEY (ID, COD)|);"));
        Row("add", 0, 1, 0,
            Lines("ALTER TABLE 01_T ADD ID BIGINT IDENTITY(1, 1) NOT NULL;|"
                  "ALTER TABLE 01_T ADD COD VARCHAR(5) COLLATE Latin1_General_CI_AS NOT NULL DEFAULT "
                  "('a''b');|ALTER TABLE 01_T ADD QTA FLOAT NULL DEFAULT (0);|"
                  "ALTER TABLE 01_T ADD DAT CHAR(8) NOT NULL"));
        Row("drop", 0, 1, 2,
            Lines("ALTER TABLE 01_T DROP COLUMN ID;|ALTER TABLE 01_T DROP COLUMN COD;|"
                  "ALTER TABLE 01_T DROP COLUMN QTA;|ALTER TABLE 01_T DROP COLUMN DAT"));
        Row("alter", 0, 1, 1,
            Lines("EXEC sp_rename '01_T.ID', 'ID_OLD', 'COLUMN' ;|"
                  "ALTER TABLE 01_T ADD ID BIGINT NOT NULL;|UPDATE 01_T SET ID =ID_OLD;|"
                  "ALTER TABLE 01_T DROP COLUMN ID_OLD ;|"
                  "UPDATE 01_T SET COD ='a''b' WHERE COD IS NULL;|"
                  "ALTER TABLE 01_T ALTER COLUMN COD VARCHAR(5) COLLATE Latin1_General_CI_AS NOT NULL "
                  "DEFAULT ('a''b');|ALTER TABLE 01_T ALTER COLUMN QTA FLOAT NULL DEFAULT (0);|"
                  "UPDATE 01_T SET DAT ='' WHERE DAT IS NULL;|"
                  "ALTER TABLE 01_T ALTER COLUMN DAT CHAR(8) NOT NULL"));
        Row("unknown action", 0, 1, 3, "");
    }
    void AlterTable() {
        QFETCH(int, provider);
        QFETCH(int, kind);
        QFETCH(int, action);
        ovQueryConstructor query;
        query.ProviderType = Provider(provider);
        query.SetTable("T", "01");
        query.SetFieldSecondType(query.AddCreateField("ID", DataType::BigAutoIncrement, 0, {}, true),
                                 DataType::AutoIncrement);
        const int code = query.AddCreateField("COD", DataType::VarChar, 5, "a note", true);
        query.SetFieldCollation(code, "Latin1_General_CI_AS");
        query.SetFieldDefaultValue(code, "('a'b')");
        const int quantity = query.AddCreateField("QTA", DataType::Double);
        query.SetFieldAllowNull(quantity, true);
        query.SetFieldDefaultValue(quantity, "((0))");
        query.SetFieldCollation(quantity, "Latin1_General_CI_AS"); // no text: has no say
        query.AddCreateField("DAT", DataType::Date);
        bool flag = true;
        QTEST(query.MakeQuery(StatementKind(kind), ColumnAction(action), DropMode::Constraint, &flag), "text");
        QCOMPARE(flag, kind != 1);
    }

    void PrimaryKeyAvoidsIndexNames() {
        ovQueryConstructor query;
        query.SetTable("T");
        query.AddSelectField("A");
        query.AddDropIndex("pk_t");
        query.AddDropIndex("PK_T1", true);
        QCOMPARE(query.MakeQuery(StatementKind::PrimaryKey),
                 Lines("ALTER TABLE T ADD CONSTRAINT PK_T2| PRIMARY KEY (A)"));
    }

    void ColumnTypes_data() {
        Columns<int>("type");
        QTest::addColumn<QStringList>("texts"); ///< providers 0, 1, 2, 3, 4 and every other
        const auto add = [](int type, const QStringList& texts) {
            QTest::addRow("type %d", type) << type << (texts.size() == 1 ? QStringList(6, texts.first()) : texts);
        };
        const QString counter = "AUTOINCREMENT NOT NULL";
        add(0, {"CHAR(7)", "CHAR(7)", "CHAR(7)", "CHAR(7)", "CHAR(7)", ""});
        add(1, {"INTEGER"});
        add(2, {"BIGINT", "DOUBLE", "LONG", "BIGINT", "LONG", "LONG"});
        add(3, {"FLOAT", "DOUBLE", "DOUBLE", "DOUBLE", "DOUBLE", "DOUBLE"});
        add(4, {"CHAR(8)"});
        add(5, {"CHAR(6)"});
        add(6, {"DATETIME"});
        add(7, {"BIT"});
        add(8, {"TEXT", "MEMO", "MEMO", "TINYTEXT", "MEMO", "MEMO"});
        add(9, {"INTEGER IDENTITY(1, 1)", counter, "INTEGER NOT NULL DEFAULT AUTOINCREMENT",
                "INTEGER NOT NULL AUTO_INCREMENT", "INTEGER NOT NULL AUTOINCREMENT", ""});
        add(10, {""});
        add(11, {"IMAGE", "OLEOBJECT", "OLEOBJECT", "OLEOBJECT", "OLEOBJECT", "OLEOBJECT"});
        add(12, {"VARCHAR(7)", "VARCHAR(7)", "VARCHAR(7)", "VARCHAR(7)", "VARCHAR(7)", ""});
        add(13, {"TINYINT", "", "TINYINT", "", "", ""});
        add(14, {""});
        add(16, {""});
        add(17, {""});
        add(18, {"UNIQUEIDENTIFIER"});
        add(19, {"BIGINT IDENTITY(1, 1)", counter, "BIGINT NOT NULL DEFAULT AUTOINCREMENT",
                 "BIGINT NOT NULL AUTO_INCREMENT", "BIGINT NOT NULL AUTOINCREMENT", ""});
        add(101, {"NCHAR(7)"});
        add(102, {"NVARCHAR(7)"});
        add(103, {"NTEXT"});
        add(104, {""});
    }
    void ColumnTypes() {
        QFETCH(int, type);
        QFETCH(QStringList, texts);
        ovQueryConstructor query;
        for (const int provider : {0, 1, 2, 3, 4, 5, 6, 7, -1}) {
            query.ProviderType = Provider(provider);
            const int column = provider >= 0 && provider <= 4 ? provider : 5;
            QCOMPARE(query.TranslateType(DataType(type), 7), texts[column]);
        }
    }

    void Keywords() {
        const std::initializer_list<std::pair<const char*, int>> types{{"char varchar text", 0},
                                                                       {"integer int INT", 1},
                                                                       {"long lng", 2},
                                                                       {"real double", 3},
                                                                       {"date", 4},
                                                                       {"time", 5},
                                                                       {"datetime DateTime", 6},
                                                                       {"bit", 7},
                                                                       {"memo", 8},
                                                                       {"autoincrement COUNTER", 9},
                                                                       {"object", 11},
                                                                       {"bigcounter", 19}};
        for (const auto& [keywords, type] : types) {
            for (const QString& keyword : QString(keywords).split(u' ')) {
                QCOMPARE(int(ovQueryConstructor::GetDataTypeFromString(keyword)), type);
            }
        }
    }

    void Defaults_data() {
        Columns<QString, QString, QString>("value", "asNumber", "asText");
        Row("text", "('abc')", "abc", "abc");
        Row("zero", "((0))", "0", "(0)");
        Row("bare", "5", "5", "5");
        Row("bracket in the text", "('(a)')", "a", "(a)");
        Row("quote before bracket", "'(a')", "a", "(a");
        Row("empty", "", "", "");
    }
    void Defaults() {
        QFETCH(QString, value);
        QFETCH(QString, asNumber);
        QFETCH(QString, asText);
        for (const int type : {1, 2, 3, 7, 9, 13, 19}) {
            QCOMPARE(ovQueryConstructor::FormatDefaultValue(value, DataType(type)), asNumber);
        }
        for (const int type : {0, 4, 5, 6, 8, 10, 12, 101, 102, 103}) {
            QCOMPARE(ovQueryConstructor::FormatDefaultValue(value, DataType(type)), asText);
        }
        for (const int type : {11, 14, 16, 17, 18}) {
            QCOMPARE(ovQueryConstructor::FormatDefaultValue(value, DataType(type)), value);
        }
    }

    /// Quotes would make a text of what a catalogue gives back as an expression.
    void ExpressionsAsDefaults_data() {
        Columns<DataType, QString, QString>("type", "value", "column");
        Row("call", DataType::DateTime, "(getdate())", "DATETIME NULL DEFAULT (getdate())");
        Row("call in two brackets", DataType::DateTime, "((getdate()))", "DATETIME NULL DEFAULT (getdate())");
        Row("call with arguments", DataType::VarChar, "(left('a)b',(3)))", "VARCHAR(5) NULL DEFAULT (left('a)b',(3)))");
        Row("text of Unicode", DataType::VarChar, "(N'it''s')", "VARCHAR(5) NULL DEFAULT (N'it''s')");
        Row("call of a number", DataType::Integer, "(datepart(year,getdate()))",
            "INTEGER NULL DEFAULT (datepart(year,getdate()))");
        Row("bare call", DataType::DateTime, "getdate()", "DATETIME NULL DEFAULT (getdate())");
        Row("bare date", DataType::DateTime, "20240305", "DATETIME NULL DEFAULT ('20240305')");
        Row("bare text", DataType::VarChar, "a(b) c", "VARCHAR(5) NULL DEFAULT ('a(b) c')");
        Row("words in brackets", DataType::VarChar, "('a (b)')", "VARCHAR(5) NULL DEFAULT ('a (b)')");
    }
    void ExpressionsAsDefaults() {
        QFETCH(const DataType, type);
        QFETCH(const QString, value);
        ovQueryConstructor query;
        query.SetTable("T");
        const int field = query.AddCreateField("C", type, 5);
        query.SetFieldAllowNull(field, true);
        query.SetFieldDefaultValue(field, value);
        QTEST(query.MakeQuery(StatementKind::AlterTable).section(" ADD C ", 1), "column");
    }

    void Duplicates() {
        ovQueryConstructor query = Filled();
        const auto error = ErrorOf<DuplicateElementError>([&] { query.AddUpdateField("B", 6, DataType::Integer); });
        QVERIFY(error);
        QCOMPARE(error->Source(), "Database.QueryConstructor.AddField");
        QCOMPARE(error->Description(), "Field: B - Error: Duplicated element!");
        QCOMPARE(DuplicateElementError::Number, int(0x80040001));
        QCOMPARE(query.GetFieldsCount(), 2);
        QCOMPARE(query.Field(1).Value, QVariant(5));
        QCOMPARE(query.AddUpdateField("B", 6, DataType::Integer, true), 1);
        QCOMPARE(query.Field(1).Value, QVariant(6));
        QCOMPARE(query.AddUpdateField("b", 7, DataType::Integer), 3); // another name: case matters

        const auto procedure =
            ErrorOf<DuplicateElementError>([&] { query.AddProcedureParam("A", 1, DataType::Integer); });
        QVERIFY(procedure);
        QCOMPARE(procedure->Source(), "Database.QueryConstructor.AddProcedureParam");
        QCOMPARE(procedure->Description(), "Duplicated element!");
        QVERIFY(ErrorOf<DuplicateElementError>([&] { query.AddSelectField("A"); }));
        QVERIFY(ErrorOf<DuplicateElementError>([&] { query.AddCreateField("A", DataType::Integer); }));
        QCOMPARE(query.AddOrderBy("A"), 0);
        QVERIFY(ErrorOf<DuplicateElementError>([&] { query.AddOrderBy("A"); }));
        QCOMPARE(query.AddOrderBy("A", 1, true), 0);
        QCOMPARE(query.AddDropIndex("I"), 0);
        QVERIFY(ErrorOf<DuplicateElementError>([&] { query.AddDropIndex("I"); }));
    }

    void RemovedFields() {
        ovQueryConstructor query = Filled();
        QCOMPARE(query.RemoveUpdateField("A"), 0);
        QCOMPARE(query.RemoveUpdateField("A"), -1);
        QCOMPARE(query.Field(0).Name, "B");
        QCOMPARE(query.GetFieldsCount(), 1);
        QCOMPARE(query.Field(2).Name, "");
    }

    void ResetKeepsProviderAndNames() {
        ovQueryConstructor query = Filled();
        query.ProviderType = Provider::Oracle;
        query.TriggerName = "TR";
        query.SetViewName("VW");
        query.WhereString = "WHERE 1=0";
        query.AddOrderBy("A", 1);
        query.AddDropIndex("IX");
        query.Reset();
        QCOMPARE(query.GetFieldsCount(), -1);
        QCOMPARE(query.ProviderType, Provider::Oracle);
        QCOMPARE(query.MakeQuery(StatementKind::DropTrigger), "DROP TRIGGER TR");
        QCOMPARE(query.MakeQuery(StatementKind::DropView), "DROP VIEW VW");
        QCOMPARE(query.MakeQuery(StatementKind::DropIndex), "ALTER TABLE  DROP CONSTRAINT ");
        query.SetTable("T");
        query.AddSelectField("X");
        QCOMPARE(query.MakeQuery(StatementKind::Select), Lines("SELECT X|FROM T|"));
    }

    void Comments() {
        ovQueryConstructor query;
        const QString place = "'user', dbo, 'table', 'T', 'column', 'C'";
        const QString add = "EXEC sp_addextendedproperty 'MS_Description', 'l''ora', " + place;
        QCOMPARE(query.SetCommentOnColumn("T", "C", "l'ora"), add);
        QCOMPARE(query.SetCommentOnColumn("T", "C", "l'ora", true),
                 QString("EXEC sp_dropextendedproperty 'MS_Description', " + place + "\r\n" + add));
        query.ProviderType = Provider::Sybase;
        QCOMPARE(query.SetCommentOnColumn("T", "C", "l'ora", true), "COMMENT ON COLUMN T.C IS 'l''ora'");
        query.ProviderType = Provider::MySql;
        QCOMPARE(query.SetCommentOnColumn("T", "C", "l'ora"), "");
    }

    void DefaultConstraints() {
        const ovQueryConstructor query;
        QCOMPARE(query.GetDefaultConstraintName("T'1", "C"),
                 Lines("SELECT NAME FROM SYSOBJECTS SO|JOIN SYSCONSTRAINTS SC ON SO.ID = SC.CONSTID|"
                       "WHERE OBJECT_NAME(SO.PARENT_OBJ) = 'T''1' AND|"
                       "      SO.XTYPE = 'D' AND SC.COLID = (SELECT COLID FROM SYSCOLUMNS|"
                       "                                     WHERE ID = OBJECT_ID('T''1') AND|"
                       "                                           NAME = 'C')"));
        QCOMPARE(query.AddDefaultValue("T", "C", "(0)"),
                 "ALTER TABLE T WITH NOCHECK ADD CONSTRAINT [DF_T_C] DEFAULT (0) FOR [C]");
        QCOMPARE(query.DropDefaultValue("T", "DF_T_C"), Lines("ALTER TABLE T DROP CONSTRAINT [DF_T_C]|"));
    }
};

QUADRIX_TEST(TestQueryConstructor)

#include "test_ovQueryConstructor.moc"
