#include "core/modMain.h"
#include "tests/adapters/Fixture.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

#include <algorithm>

namespace {

const contract::Procedure& BehindButton(const contract::Origin& origin, contract::Button button) {
    return *std::find_if(origin.procedures.begin(), origin.procedures.end(),
                         [button](const contract::Procedure& one) { return one.button == button; });
}

} // namespace

/// Rows of a source that a setting or the operator tells.
class TestToldRows : public QObject {
    Q_OBJECT

private slots:
    void ASettingThatFitsNothingEndsBeforeTheEmptying_data() {
        Columns<QString, QString, QString, QString, QString>("module", "key", "value", "line", "error");
        Row("company", "modImport_Panthera", "ID_AZIENDA", "003", "ImportDistintePanthera reset",
            "origine: azienda '003'; ci sono '001', '002' (chiave ID_AZIENDA");
        Row("group", "modImport_MexalDB", "MexalDB_GruppoFornitori", "6,x", "ImportContropartiMexalDB reset",
            "'x' non è l'inizio di un conto");
    }
    void ASettingThatFitsNothingEndsBeforeTheEmptying() {
        QFETCH(const QString, module);
        QFETCH(const QString, key);
        QFETCH(const QString, value);
        QFETCH(const QString, line);
        QFETCH(const QString, error);
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        modMain::SetAppConfig(fixture.Target().Get(), "IMPORT", key, value);
        fixture.RunLine(line);
        const RunResult& result = fixture.Results().last();
        QCOMPARE(result.outcome, RunResult::Outcome::Failed);
        QVERIFY2(result.errors.join('\n').contains(error), qPrintable(result.errors.join('\n')));
        QVERIFY(result.emptied.isEmpty());
    }

    void TheRowsOfAnotherCompanyAreRead() {
        const contract::Origin& origin = *FixtureOrigins().value("modImport_Panthera");
        Fixture fixture(FixtureFolder("modImport_Panthera"), origin);
        modMain::SetAppConfig(fixture.Target().Get(), "IMPORT", "ID_AZIENDA", "002");
        fixture.RunLine("ImportDistintePanthera reset");
        QCOMPARE(
            fixture.Target().Rows("SELECT B.DBART, C.DCART, C.DCQTA FROM X01_DIS_BAS B INNER JOIN X01_DIS_COM C ON "
                                  "C.IDDIS = B.RECORD_ID"),
            QStringList("AB-04|AB-03|7"));
    }

    void OneDocumentIsAskedByItsNumber() {
        const contract::Origin& origin = *FixtureOrigins().value("modImport_Metodo");
        Fixture fixture(FixtureFolder("modImport_Metodo"), origin);
        for (const char* line : {"ImportContropartiMetodo", "ImportArticoliMetodo"}) {
            fixture.RunLine(line);
        }
        fixture.OpenSource();
        fixture.Answer("inputs=5");
        BehindButton(origin, contract::Button::Acq).run(fixture.Target().Get(), {}, false);
        QCOMPARE(fixture.Target().Rows("SELECT DTCAU, DTNUM FROM X01_DOC_ACQ"), QStringList("ORDFM|5"));
        QCOMPARE(fixture.Target().Value("SELECT COUNT(*) FROM X01_DOC_VEN WHERE USINS = 'SYSTEM_IMPORT'"),
                 QString("0"));
        const QStringList& errors = fixture.Results().last().errors;
        QVERIFY2(errors.isEmpty(), qPrintable(errors.join('\n')));
    }
};

QUADRIX_TEST(TestToldRows)
#include "test_toldRows.moc"
