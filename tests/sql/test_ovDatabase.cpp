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
        db.Execute("INSERT INTO TAB_IVA (CDIVA, IVDES) VALUES ('022', 'Null')");
        QVERIFY(db.CheckExistValue("TAB_IVA", "IVDES", "Null")); // a text like any other
        QCOMPARE(db.GetDbValue("TAB_IVA", "IVDES", "Null", "CDIVA"), QVariant("022"));
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

    /// Types of SQLite do not bind; it asks for values that may not be Null as others do.
    void ColumnsThatNoRowGoesWithout() {
        m_connection->Execute("CREATE TABLE NEEDS (RECORD_ID INTEGER NOT NULL PRIMARY KEY, P DECIMAL(12,2), "
                              "NEEDED NVARCHAR(5) NOT NULL, GIVEN INTEGER NOT NULL DEFAULT 0)");
        QStringList demanded;
        for (const ColumnBounds& each : m_connection->GetBounds("NEEDS")) {
            demanded += each.isDemanded ? QStringList(each.name) : QStringList();
            QVERIFY2(!each.isRounding && each.length == 0, qPrintable(each.name));
        }
        QCOMPARE(demanded, QStringList("NEEDED"));
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

    /// What is known of the texts of new records, within a transaction, is no more than what is there.
    void LanguageTextsOfNewRecords() {
        ovConnection& db = *m_connection;
        db.Execute("CREATE TABLE SYS_LNG (RECORD_ID INTEGER IDENTITY(1, 1), LNTBL NVARCHAR(30), LNFLD NVARCHAR(5), "
                   "LNKEY NVARCHAR(50), LNLNG NVARCHAR(2), LNTXT NTEXT)");
        constexpr int records = 200; // enough for the column of keys to be known
        db.BeginTrans();
        for (int record = 0; record < records; ++record) {
            const QString key = QString::number(record);
            db.SetLanguageTextValue("X01_ART_ICO", "ARDES", key, "Vite");
            db.SetLanguageTextValue("X01_ART_ICO", "ARDES", key, "Screw", "EN");
            db.SetLanguageTextValue("X01_ART_ICO", "ARDES", key, "Vite lunga");
            db.Execute("DELETE FROM SYS_LNG WHERE LNLNG = 'EN'");
            db.SetLanguageTextValue("X01_ART_ICO", "ARDES", key, "Bolt", "EN");
        }
        db.CommitTrans();
        QCOMPARE(One("SELECT COUNT(*) FROM SYS_LNG WHERE LNTXT LIKE 'Vite lunga'"), QVariant(qint64(records)));
        QCOMPARE(One("SELECT COUNT(*) FROM SYS_LNG"), QVariant(qint64(records) + 1));
        QCOMPARE(One("SELECT LNTXT FROM SYS_LNG WHERE LNLNG = 'EN'"), QVariant("Bolt"));
    }

    void Files() {
        const QString picture = m_folder->filePath("foto"); // the content tells the kind
        const QString jpeg = m_folder->filePath("foto.jpg");
        WriteFile(picture, Bitmap(1, 1));
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

    /// Foreign bytes reach few decoders, and what is wrong is told as what it is.
    void refusesPictures_data() {
        Columns<QByteArray, QString>("content", "told");
        Row("drawing that could name other files",
            QByteArray(
                "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><rect width='9' height='9'/></svg>"),
            "non è un'immagine BMP, JPEG, PNG o GIF");
        Row("kind that is not read", QByteArray("P3 1 1 255 255 0 0\n"), "non è un'immagine BMP, JPEG, PNG o GIF");
        Row("empty", QByteArray(), "non è un'immagine BMP, JPEG, PNG o GIF");
        Row("too large", Bitmap(9000, 9000), "troppo grande: 9000 x 9000 punti, più di 256 MB");
        Row("damaged", QByteArray("\xff\xd8\xff\xe0 and no more"), "non si può leggere");
    }
    void refusesPictures() {
        QFETCH(const QByteArray, content);
        QFETCH(const QString, told);
        const QString picture = m_folder->filePath("foto.bmp");
        const QString jpeg = m_folder->filePath("rifiutata.jpg");
        WriteFile(picture, content);
        const auto error = ErrorOf<PictureError>([&] { ovDatabase::ConvertToJpeg(picture, jpeg); });
        QVERIFY(error && error->Message().contains(picture));
        QVERIFY2(error->Message().contains(told), qPrintable(error->Message()));
        QVERIFY(!QFile::exists(jpeg));
    }

    void refusesCompanyCodes_data() {
        Columns<QString, bool>("code", "accepted");
        Row("usual", "X01", true);
        Row("digit first, as others may have made it", "01", true);
        Row("none: a source", "", true);
        Row("statement behind it", "X01_CON_TRO --", false);
        Row("end of line", "X01\n", false);
        Row("blank behind it", "X01 ", false);
        Row("letter that is two in capitals", "ß", false);
        Row("quote", "X'1", false);
    }
    void refusesCompanyCodes() {
        QFETCH(const QString, code);
        QFETCH(const bool, accepted);
        const auto error = ErrorOf<ImportError>([&] { m_connection->SetCompany(code); });
        QCOMPARE(!error, accepted);
        QCOMPARE(m_connection->Company() == code, accepted);
    }

private:
    /// A picture of one colour a point, of which only the head is there when it is a large one.
    static QByteArray Bitmap(qint32 width, qint32 height) {
        QByteArray bytes("BM");
        const auto add = [&bytes](qint32 value, int size) {
            for (int byte = 0; byte < size; ++byte) {
                bytes += static_cast<char>(value >> (8 * byte));
            }
        };
        for (const qint32 value : {58, 0, 54, 40, width, height}) {
            add(value, 4);
        }
        add(1, 2);
        add(24, 2);
        for (const qint32 value : {0, 4, 2835, 2835, 0, 0}) {
            add(value, 4);
        }
        add(255, 4); // blue, and what fills the line
        return bytes;
    }
    QVariant One(const QString& query) { return m_connection->ExecuteWC(query).Fields(0).Value(); }
    std::unique_ptr<ovConnection> m_connection;
    std::unique_ptr<QTemporaryDir> m_folder;
};

QUADRIX_TEST(TestDatabase)

#include "test_ovDatabase.moc"
