#include "core/Schema.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QRegularExpression>
#include <QTest>

using namespace schema;

class TestSchema : public QObject {
    Q_OBJECT

private slots:
    /// A text needs a length, nothing else may have one; an index must fit every engine (3072 bytes, 4 a character).
    void sizesAreSensible() {
        for (const Table& table : Tables()) {
            int rowBytes = 0;
            for (const Column& column : table.columns) {
                const bool text = column.type == DataType::NVarChar;
                const QString place = table.name + '.' + column.name;
                QVERIFY2(text ? column.size > 0 && column.size <= 500 : column.size == 0, qPrintable(place));
                QVERIFY2(!column.indexed || column.size <= 255, qPrintable(place));
                QVERIFY2(column.type != DataType::Date && column.type != DataType::Time, qPrintable(place));
                rowBytes += text ? column.size * 4 : 8;
            }
            QVERIFY2(rowBytes < 65535, qPrintable(table.name));
        }
    }

    void keysAndReferencesLeadSomewhere() {
        for (const Table& table : Tables()) {
            int keySize = 0;
            for (const QString& column : table.key) {
                QVERIFY2(table.FindColumn(column) != nullptr, qPrintable(table.name + '.' + column));
                keySize += table.FindColumn(column)->size;
            }
            QVERIFY2(keySize <= 255, qPrintable(table.name));
            for (const Column& column : table.columns) {
                const QString place = table.name + '.' + column.name;
                if (column.refersTo.isEmpty()) {
                    continue;
                }
                const Table* target = FindTable(column.refersTo);
                QVERIFY2(target != nullptr, qPrintable(place));
                const Column* code = target->FindColumn(column.refersToColumn);
                QVERIFY2(code != nullptr, qPrintable(place));
                QVERIFY2(column.size >= code->size && column.type == code->type, qPrintable(place));
                QVERIFY2(column.conditionColumn.isEmpty() || table.FindColumn(column.conditionColumn) != nullptr,
                         qPrintable(place));
            }
        }
    }

    /// The merge of two companies re-points each of them once for every counterparty.
    void referencesToCounterpartiesAreIndexed() {
        int references = 0;
        for (const Table& table : Tables()) {
            for (const Column& column : table.columns) {
                if (column.refersTo != "CON_TRO") {
                    continue;
                }
                ++references;
                const QStringList lookup = QStringList(column.conditionColumn) + QStringList(column.name);
                QVERIFY2(column.indexed || table.key.value(0) == column.name || table.key == lookup,
                         qPrintable(table.name + '.' + column.name));
            }
        }
        QVERIFY(references > 10);
    }

    void companyTablesAndSharedOnes() {
        static const QRegularExpression sharedForm("^(TAB|SYS|GEN)_");
        for (const Table& table : Tables()) {
            QVERIFY2(table.shared == sharedForm.match(table.name).hasMatch(), qPrintable(table.name));
        }
    }

    void findsTablesAndColumns() {
        QCOMPARE(FindTable("con_tro"), FindTable("CON_TRO"));
        QVERIFY(FindTable("CON_TRO")->FindColumn("cdcon") != nullptr);
        QVERIFY(FindTable("CON_TRI") == nullptr);
        QVERIFY(FindTable("X01_CON_TRO") == nullptr);
        QVERIFY(FindTable("") == nullptr);
        QVERIFY(FindTable("CON_TRO")->FindColumn("COXXX") == nullptr);
        QCOMPARE(FindTable("CON_TRO")->CodeColumn(), QString("CDCON"));
        QCOMPARE(FindTable("CON_SED")->CodeColumn(), QString());
    }

    /// Every procedure that looks rows up by one of these would scan the table without its index.
    void lookedUpColumnsAreIndexed() {
        for (const QString place :
             {"CON_TRO.CDCON", "CON_TRO.COIVA", "CON_TRO.COFIS", "CON_TRO.COCGE", "CON_TRO.COFGE", "CON_SED.CDCON",
              "CON_RIF.CDCON", "ART_ICO.CDART", "ART_FOR.CDART", "ART_COD.CDART", "LIS_ARS.IDLSD", "LIS_TES.CDLIS",
              "LIS_ART.CDLIS", "STO_PRZ.CDART", "STO_COS.CDART", "DIS_BAS.DBART", "DIS_COM.IDDIS", "DIS_COM.DCART",
              "DIS_FAS.IDDIS", "DOC_VEN.DTNUM", "DOC_VER.IDTES", "DOC_VED.IDTES", "DOC_ACQ.DTNUM", "DOC_CTR.IDTES",
              "CAU_DOC.CDCAD", "TAB_IVA.CDIVA", "TAB_IVA.IVEXT", "BAN_CHE.BAEXT", "SYS_IMP.TBOLD", "FLD_VAL.FLTAB"}) {
            const QString column = place.section('.', 1);
            const Table& table = *FindTable(place.section('.', 0, 0));
            QVERIFY2(table.FindColumn(column)->indexed || table.key.value(0) == column, qPrintable(place));
        }
    }
};

QUADRIX_TEST(TestSchema)
#include "test_schema.moc"
