#include "core/Schema.h"
#include "tests/support/QuadrixTest.h"

#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace schema;

class TestSchema : public QObject {
    Q_OBJECT

private slots:
    void everyTableAndColumnIsThereOnce() {
        static const QRegularExpression tableForm("^([A-Z]{3}_)?[A-Z]{3}_[A-Z]{3}$|^SYS_SYS_COL$");
        static const QRegularExpression columnForm("^[A-Z0-9]{5}$|^RECORD_ID$");
        QSet<QString> tables;
        for (const Table& table : Tables()) {
            QVERIFY2(!tables.contains(table.name), qPrintable(table.name));
            QVERIFY2(tableForm.match(table.name).hasMatch(), qPrintable(table.name));
            tables.insert(table.name);
            QSet<QString> columns;
            for (const Column& column : table.columns) {
                const QString place = table.name + '.' + column.name;
                QVERIFY2(!columns.contains(column.name), qPrintable(place));
                QVERIFY2(columnForm.match(column.name).hasMatch(), qPrintable(place));
                columns.insert(column.name);
            }
        }
    }

    void everyTableHasIdentityAndAudit() {
        for (const Table& table : Tables()) {
            QCOMPARE(table.columns.front().name, QString("RECORD_ID"));
            QCOMPARE(table.columns.front().type, DataType::AutoIncrement);
            for (const char* audit : {"USINS", "DTINS", "USMDF", "DTMDF"}) {
                QVERIFY2(table.FindColumn(audit) != nullptr, qPrintable(table.name));
            }
            QVERIFY(table.FindColumn("USINS")->size >= int(qstrlen("SYSTEM_IMPORT")));
        }
    }

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

    void lookups_data() {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("column");
        QTest::addColumn<int>("size");
        QTest::addColumn<DataType>("type");
        QTest::newRow("counterparty code") << "CON_TRO"
                                           << "CDCON" << 6 << DataType::NVarChar;
        QTest::newRow("without case") << "con_tro"
                                      << "cdcon" << 6 << DataType::NVarChar;
        QTest::newRow("reference takes the code's size") << "DOC_ACR"
                                                         << "DRART" << 50 << DataType::NVarChar;
        QTest::newRow("reference to a column that is no key") << "CON_TRO"
                                                              << "COLSC" << 20 << DataType::NVarChar;
        QTest::newRow("reference with a size of its own") << "NUM_TEL"
                                                          << "TBKEY" << 50 << DataType::NVarChar;
        QTest::newRow("like another table") << "STO_COS"
                                            << "STDAT" << 0 << DataType::DateTime;
        QTest::newRow("link") << "DOC_ICR"
                              << "IDTES" << 0 << DataType::Long;
        QTest::newRow("flag") << "CON_TRO"
                              << "COCLI" << 0 << DataType::Bit;
        QTest::newRow("notes") << "CON_TRO"
                               << "CONOT" << 0 << DataType::NText;
    }
    void lookups() {
        QFETCH(QString, table);
        QFETCH(QString, column);
        QVERIFY(FindTable(table) != nullptr);
        const Column* found = FindTable(table)->FindColumn(column);
        QVERIFY(found != nullptr);
        QTEST(found->size, "size");
        QTEST(found->type, "type");
    }

    void whatIsNotThere() {
        QVERIFY(FindTable("CON_TRI") == nullptr);
        QVERIFY(FindTable("X01_CON_TRO") == nullptr);
        QVERIFY(FindTable("") == nullptr);
        QVERIFY(FindTable("CON_TRO")->FindColumn("COXXX") == nullptr);
        QCOMPARE(FindTable("CON_TRO")->CodeColumn(), QString("CDCON"));
        QCOMPARE(FindTable("CON_SED")->CodeColumn(), QString());
    }

    /// Every procedure that looks rows up by one of these would scan the table without its index.
    void lookedUpColumnsAreIndexed_data() {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("column");
        for (const char* place :
             {"CON_TRO.CDCON", "CON_TRO.COIVA", "CON_TRO.COFIS", "CON_TRO.COCGE", "CON_TRO.COFGE", "CON_SED.CDCON",
              "CON_RIF.CDCON", "ART_ICO.CDART", "ART_FOR.CDART", "ART_COD.CDART", "LIS_ARS.IDLSD", "LIS_TES.CDLIS",
              "LIS_ART.CDLIS", "STO_PRZ.CDART", "STO_COS.CDART", "DIS_BAS.DBART", "DIS_COM.IDDIS", "DIS_COM.DCART",
              "DIS_FAS.IDDIS", "DOC_VEN.DTNUM", "DOC_VER.IDTES", "DOC_VED.IDTES", "DOC_ACQ.DTNUM", "DOC_CTR.IDTES",
              "CAU_DOC.CDCAD", "TAB_IVA.CDIVA", "TAB_IVA.IVEXT", "BAN_CHE.BAEXT", "SYS_IMP.TBOLD", "FLD_VAL.FLTAB"}) {
            const QStringList parts = QString(place).split('.');
            QTest::newRow(place) << parts.at(0) << parts.at(1);
        }
    }
    void lookedUpColumnsAreIndexed() {
        QFETCH(QString, table);
        QFETCH(QString, column);
        const Table& found = *FindTable(table);
        QVERIFY(found.FindColumn(column)->indexed || found.key.value(0) == column);
    }
};

Q_DECLARE_METATYPE(DataType)

QUADRIX_TEST(TestSchema)
#include "test_schema.moc"
