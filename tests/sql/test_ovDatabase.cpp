#include "sql/ovConnection.h"
#include "sql/ovQueryConstructor.h"
#include "tests/support/embedded.h"
#include "tests/support/errorOf.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTemporaryDir>
#include <QTest>

/// The services over a connection.
class TestDatabase : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        m_connection = std::make_unique<ovConnection>();
        OpenEmbedded(*m_connection);
        m_connection->SetCompany("X01");
        m_connection->ExecuteScript(
            "CREATE TABLE X01_CON_TRO (CDCON CHAR(8), CORAS NVARCHAR(35), COSCO FLOAT, COINV DATETIME,"
            " COCLI BIT, CONOT NTEXT, CONUM BIGINT, COGIO INTEGER, COIMM IMAGE, COVAR REAL);"
            "CREATE TABLE TAB_IVA (CDIVA CHAR(3), IVDES NVARCHAR(30));"
            "CREATE TABLE SYS_AZI (CDAZI CHAR(3));"
            "INSERT INTO X01_CON_TRO (CDCON, CORAS, COSCO) VALUES ('000007', 'L''Oro', NULL);"
            "INSERT INTO X01_CON_TRO (CDCON, CORAS, COSCO) VALUES ('000009', 'Rossi', 12.5)");
    }

    void ValuesByKey() {
        ovConnection& db = *m_connection;
        QCOMPARE(db.GetDbValue("CON_TRO", "CDCON", "000007", "CORAS"), QVariant("L'Oro"));
        QCOMPARE(db.GetDbValue("CON_TRO", "CORAS", "L'Oro", "CDCON"), QVariant("000007"));
        QVERIFY(db.GetDbValue("CON_TRO", "CDCON", "000007", "COSCO", 3).isNull());
        QCOMPARE(db.GetDbValue("CON_TRO", "CDCON", "7", "CORAS", "?"), QVariant("?"));
        QCOMPARE(db.GetDbValue("CON_TRO", "COSCO", 12.5, "CDCON"), QVariant("000009"));
        QVERIFY(db.CheckExistValue("CON_TRO", "CORAS", "ROSSI")); // case does not matter, as on SQL Server
        QVERIFY(!db.CheckExistValue("CON_TRO", "CORAS", "Bianchi"));
        QVERIFY(db.CheckExistValue("CON_TRO", "COSCO", "12,5", DataType::Double));
        QVERIFY(ErrorOf<SqlError>([&] { db.GetDbValue("CON_TRO", "NOCOL", "1", "CORAS"); }));
    }

    void LargestValues() {
        QCOMPARE(m_connection->GetMaxValue("CON_TRO", "CDCON"), QVariant("000009"));
        QCOMPARE(m_connection->GetMaxValue("CON_TRO", "CDCON", "WHERE CDCON < '000009'"), QVariant("000007"));
        QCOMPARE(m_connection->GetMaxValue("CON_TRO", "CDCON", "WHERE 1=0", "000000"), QVariant("000000"));
    }

    void FieldTypes_data() {
        Columns<QString, QString, DataType>("column", "keyword", "type");
        Row("fixed text", "CDCON", "char", DataType::Char);
        Row("national text", "coras", "char", DataType::Char);
        Row("real", "COSCO", "double", DataType::Double);
        Row("moment", "COINV", "datetime", DataType::DateTime);
        Row("bit", "COCLI", "bit", DataType::Bit);
        Row("long text", "CONOT", "memo", DataType::Memo);
        Row("long", "CONUM", "long", DataType::Long);
        Row("integer", "COGIO", "integer", DataType::Integer);
        Row("binary", "COIMM", "object", DataType::Object);
        Row("no such column", "COZZZ", "?", DataType::Char);
    }
    void FieldTypes() {
        QFETCH(QString, column);
        QFETCH(QString, keyword);
        QFETCH(DataType, type);
        QCOMPARE(m_connection->GetFieldTypeText("CON_TRO", column, "?"), keyword);
        QCOMPARE(ovQueryConstructor::GetDataTypeFromString(keyword), type);
    }

    void TablesByName() {
        QCOMPARE(m_connection->GetTableInfo("CON_TRO").keyColumn, "CDCON");
        QCOMPARE(m_connection->GetTableInfo("CON_TRO").columns.size(), 10);
        QCOMPARE(m_connection->GetTableInfo("TAB_IVA").keyColumn, "CDIVA");
        QCOMPARE(m_connection->GetTableInfo("SYS_AZI").keyColumn, "CDAZI");
        QVERIFY(m_connection->GetTableInfo("ART_ICO").columns.isEmpty());
        QCOMPARE(m_connection->GetTables(), (QStringList{"SYS_AZI", "TAB_IVA", "X01_CON_TRO"}));
    }

    void LanguageTexts() {
        ovConnection& db = *m_connection;
        db.Execute("CREATE TABLE SYS_LNG (RECORD_ID INTEGER IDENTITY(1, 1), LNTBL NVARCHAR(30), LNFLD NVARCHAR(5), "
                   "LNKEY NVARCHAR(50), LNLNG NVARCHAR(2), LNTXT NTEXT)");
        db.SetLanguageTextValue("X01_ART_ICO", "ARDES", "A'1", "Vite d'acciaio");
        db.SetLanguageTextValue("X01_ART_ICO", "ARDES", "A'1", "Screw", "EN");
        db.SetLanguageTextValue("X01_ART_ICO", "ARDES", "A'1", "Vite");
        QCOMPARE(One("SELECT COUNT(*) FROM SYS_LNG"), QVariant(2LL));
        QCOMPARE(One("SELECT LNTXT FROM SYS_LNG WHERE LNLNG = 'IT'"), QVariant("Vite"));
        QCOMPARE(One("SELECT LNTXT FROM SYS_LNG WHERE LNLNG = 'EN' AND LNKEY = 'A''1'"), QVariant("Screw"));
    }

    void Files() {
        const QString picture = m_folder->filePath("foto.ppm");
        const QString jpeg = m_folder->filePath("foto.jpg");
        WriteFile(picture, "P3 2 1 255 255 0 0 0 0 255\n"); // a red dot and a blue one
        ovDatabase::ConvertToJpeg(picture, jpeg);
        QVERIFY(ovDatabase::FileToBinary(jpeg).startsWith("\xff\xd8"));
        QVERIFY(ovDatabase::FileToBinary(jpeg).endsWith("\xff\xd9"));
        const QString none = m_folder->filePath("nessuna.png");
        for (const auto& work : std::initializer_list<std::function<void()>>{
                 [&] { ovDatabase::ConvertToJpeg(none, jpeg); }, [&] { ovDatabase::FileToBinary(none); }}) {
            const auto error = ErrorOf<ImportError>(work);
            QVERIFY(error && error->Message().contains(none));
        }
    }

private:
    QVariant One(const QString& query) { return m_connection->ExecuteWC(query).Fields(0).Value(); }
    std::unique_ptr<ovConnection> m_connection;
    std::unique_ptr<QTemporaryDir> m_folder;
};

QUADRIX_TEST(TestDatabase)

#include "test_ovDatabase.moc"
