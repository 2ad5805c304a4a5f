#include "adapters/registry.h"
#include "app/report/makeProof.h"
#include "app/report/verdict.h"
#include "examples/examples.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

using namespace proof;

namespace {

/// An origin, with where its example makes its source.
struct ExampleSource {
    const char* origin;
    const char* example;
    const char* place;
    int rows = 40;
};

const ExampleSource OfGescom{"Gescom", "gescom", "gescom/gescom.db"};
const ExampleSource OfArca{"Arca 2000", "arca2000", "arca2000", 110};
const ExampleSource OfMexal{"Mexal", "mexal", "mexal"};

/// A company into which all that an origin has was imported.
class MigratedOrigin : public TestTarget {
public:
    explicit MigratedOrigin(const ExampleSource& source)
        : m_choice{"Prova Uno S.r.l.", {}, registry::Find(source.origin), ErrorAction::Ignore} {
        examples::Options options;
        options.rows = source.rows;
        options.folder = Folder.filePath(source.example);
        options.company = "X01";
        examples::Make(source.example, options);
        if (const QByteArray script = ReadFile(options.folder + "/quadrix.sql"); !script.isEmpty()) {
            Db().ExecuteScript(QString::fromUtf8(script));
        }
        Get().Config.SetAppConfig("IMPORT", "Databasename", source.place);
        Get().Config.SetAppConfig("IMPORT", "DOC_DateStart", "01/01/2000");
        Person.Otherwise = true;
        for (const Wanted& each : AllOf(*m_choice.origin)) {
            ImportRequest request;
            request.choice = m_choice;
            request.button = each.button;
            request.reset = false;
            RunImport(Get(), request);
        }
    }

    Proof Compared() {
        return *Make(Get(), m_choice, AllOf(*m_choice.origin), {[] {}, [] {}});
    }

private:
    Choice m_choice;
};

/// What the page says against the migration: its reason, and each difference.
QString Told(const Proof& proof) {
    QStringList lines{VerdictOf(FindingsOf(proof)).reason};
    for (const Kind& kind : proof.kinds) {
        for (const TableFigures& table : kind.tables) {
            for (const Difference& each : table.differences) {
                static const QStringList kinds{"value", "missing", "surplus"};
                lines.append(kinds.at(static_cast<int>(each.kind)) + ' ' + each.table + ' ' + each.column);
            }
        }
    }
    return lines.join('\n');
}

} // namespace

Q_DECLARE_METATYPE(ExampleSource)

/// One thing that is wrong in Quadrix, of what several origins import, is found by whoever reads the page.
class TestProofOfOrigins : public QObject {
    Q_OBJECT

private slots:
    void FindsOneFault_data() {
        Columns<ExampleSource, QString, QString>("source", "change", "told");
        Row("bills: a quantity", OfGescom, "UPDATE X01_DIS_COM SET DCQTA = DCQTA + 0.5 WHERE RECORD_ID = 1",
            "value DIS_COM DCQTA");
        Row("bills: a component's article", OfGescom, "UPDATE X01_DIS_COM SET DCART = 'ALTRO' WHERE RECORD_ID = 1",
            "missing DIS_COM");
        Row("bills: a component that is gone", OfGescom, "DELETE FROM X01_DIS_COM WHERE RECORD_ID = 2",
            "missing DIS_COM");
        Row("bills: a component too many", OfGescom,
            "INSERT INTO X01_DIS_COM (IDDIS, IDDBL, DCART, DCQTA, DCPOS, USINS) SELECT IDDIS, IDDBL, 'ALTRO', 1, 990, "
            "USINS FROM X01_DIS_COM WHERE RECORD_ID = 1",
            "l'origine non ha più");
        Row("documents: an amount", OfGescom, "UPDATE X01_DOC_VER SET DRTOT = DRTOT + 0.01 WHERE RECORD_ID = 1",
            "value DOC_VER DRTOT");
        Row("documents: a code", OfGescom, "UPDATE X01_DOC_VER SET DRART = 'ALTRO' WHERE RECORD_ID = 1",
            "value DOC_VER DRART");
        Row("documents: one that is gone", OfGescom, "DELETE FROM X01_DOC_VEN WHERE RECORD_ID = 1", "missing DOC_VEN");
        Row("documents: a row too many", OfGescom,
            "INSERT INTO X01_DOC_VER (IDTES, DRNUM, DRART, DRQTR, USINS) SELECT IDTES, 990, DRART, 1, USINS FROM "
            "X01_DOC_VER WHERE RECORD_ID = 1",
            "l'origine non ha più");
        Row("prices: an amount", OfArca, "UPDATE X01_LIS_ARS SET SCPRZ = SCPRZ + 0.01 WHERE RECORD_ID = 1",
            "value LIS_ARS SCPRZ");
        Row("prices: one that is gone", OfArca, "DELETE FROM X01_LIS_ARS WHERE RECORD_ID = 1", "missing LIS_ARS");
        Row("articles: a code", OfArca, "UPDATE X01_ART_ICO SET ARUMS = 'XX' WHERE RECORD_ID = 3",
            "value ART_ICO ARUMS");
        Row("counterparties: a name of one that is customer and supplier", OfArca,
            "UPDATE X01_CON_TRO SET CORAS = 'ALTRO' WHERE RECORD_ID = (SELECT MIN(RECORD_ID) FROM X01_CON_TRO WHERE "
            "COCLI = 1 AND COFOR = 1 AND COCGE <> COFGE)",
            "value CON_TRO CORAS");
        Row("stock: a quantity", OfMexal, "UPDATE X01_MOV_MAR SET MRQTA = MRQTA + 1 WHERE RECORD_ID = 1",
            "value MOV_MAR MRQTA");
        Row("stock: a row that is gone", OfMexal, "DELETE FROM X01_MOV_MAR WHERE RECORD_ID = 1", "missing MOV_MAR");
        Row("stock: a row too many", OfMexal,
            "INSERT INTO X01_MOV_MAR (MRTES, MRNUM, MRART, MRQTA, MRMAG, USINS) SELECT MRTES, 0, 'ALTRO', 1, MRMAG, "
            "USINS FROM X01_MOV_MAR WHERE RECORD_ID = 1",
            "l'origine non ha più");
    }
    void FindsOneFault() {
        QFETCH(const ExampleSource, source);
        QFETCH(const QString, change);
        QFETCH(const QString, told);
        MigratedOrigin target(source);
        const QString before = Told(target.Compared());
        QVERIFY2(!before.contains(told) && !before.contains('\n'), qPrintable(before)); // nothing differs
        QCOMPARE(target.Execute(change), 1);
        const QString after = Told(target.Compared());
        QVERIFY2(after.contains(told), qPrintable(after));
    }
};

QUADRIX_TEST(TestProofOfOrigins)
#include "test_proofOfOrigins.moc"
