#include "adapters/registry.h"
#include "tests/adapters/Fixture.h"
#include "tests/support/embedded.h"
#include "tests/support/files.h"
#include "tests/support/procedures.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

namespace {

/// Formats of sheets beside a CAM database that has two of their offcuts, one of them with a drawing.
class Offcuts {
public:
    Offcuts() {
        Session& session = Target.Get();
        session.Config.SetAppConfig("IMPORT", "CAM_Database", "cam.db");
        session.Config.SetAppConfig("IMPORT", "CAM_Path", Target.Folder.path());
        OpenEmbedded(m_cam, Target.Folder.filePath("cam.db"))
            .ExecuteScript("CREATE TABLE PPRR_PPRR_00000100 (PrdRef TEXT);"
                           "INSERT INTO PPRR_PPRR_00000100 VALUES ('RIT-7'), ('RIT-8');");
        WriteFile(Target.Folder.filePath("RIT-7.bmp"), Drawing());
        for (const char* format : {"'F7', '7', 'V7'", "'F8', '8', 'V8'", "'F9', '9', 'V9'", "'NEW', '10', ''"}) {
            Target.Execute(
                QString("INSERT INTO X01_ART_FMT (CDART, LMANN, CDFMT, LMSFR, LMOLD) VALUES ('A', 1, %1)").arg(format));
        }
    }

    const RunResult& Correct(const QString& offcut) {
        Target.Person.Inputs.emplace_back(offcut);
        return RunProcedure(Target.Get(), *registry::Find("Ad-Hoc"), "CorreggiAllegatiLantek");
    }

    TestTarget Target;

private:
    /// One red point as a bitmap file.
    static QByteArray Drawing() {
        return QByteArray::fromHex("424d3a000000000000003600000028000000"
                                   "0100000001000000010018000000000004000000"
                                   "130b0000130b00000000000000000000"
                                   "0000ff00");
    }

    ovConnection m_cam;
};

/// What a procedure over the chart of accounts of a fixture ends with: its rows, or the error.
QString EndOf(Fixture& fixture, const QString& setting, const QString& company, const QString& line) {
    fixture.Target().Get().Config.SetAppConfig("IMPORT", setting, company);
    fixture.RunLine(line);
    const RunResult& result = fixture.Results().last();
    return result.errors.isEmpty() ? QString("rows %1").arg(result.sourceRows) : result.errors.join('\n');
}

} // namespace

/// What is special about Ad-Hoc and the origins that keep several companies in one database.
class TestAdHoc : public QObject {
    Q_OBJECT

private slots:
    void offcutsGetTheirDrawings_data() {
        Columns<QString, QString, QStringList>("offcut", "rows", "inUse");
        Row("all that have an old code", "", "3 = updated 1 + skipped 2", QStringList{"F7"});
        Row("one", "7", "1 = updated 1 + skipped 0", QStringList{"F7"});
        Row("one without a drawing", "8", "1 = updated 0 + skipped 1", QStringList());
    }
    void offcutsGetTheirDrawings() {
        QFETCH(const QString, offcut);
        QFETCH(const QStringList, inUse);
        Offcuts offcuts;
        const RunResult& result = offcuts.Correct(offcut);
        QCOMPARE(result.errors, QStringList());
        QTEST(QString("%1 = updated %2 + skipped %3").arg(result.sourceRows).arg(result.updated).arg(result.skipped),
              "rows");
        QCOMPARE(offcuts.Target.Rows("SELECT CDFMT FROM X01_ART_FMT WHERE LMANN = 0"), inUse);
        QCOMPARE(offcuts.Target.Value("SELECT COUNT(*) FROM X01_IMA_GES WHERE TBNAM = 'ART_FMT' AND TBKEY = '1' AND "
                                      "IMIMG >= 0xFFD8 AND IMIMG < 0xFFD9"),
                 QString::number(inUse.size()));
        QCOMPARE(offcuts.Target.Person.Messages.last().text.section('\n', 0, 0),
                 QString("Correzzione eseguita correttamente!"));
    }

    void anOffcutThatIsNotThereIsTold_data() {
        Columns<QString>("offcut");
        Row("none of that code", "77");
        Row("one without an old code", "10");
    }
    void anOffcutThatIsNotThereIsTold() {
        QFETCH(const QString, offcut);
        Offcuts offcuts;
        QCOMPARE(offcuts.Correct(offcut).sourceRows, 0);
        QCOMPARE(offcuts.Target.Person.Messages.size(), 1);
        QCOMPARE(offcuts.Target.Person.Messages.first().text, QString("Impossibile trovare il formato!"));
    }

    void withoutTheFolderOfDrawingsNothingIsWritten() {
        Offcuts offcuts;
        offcuts.Target.Get().Config.SetAppConfig("IMPORT", "CAM_Path", "");
        const QString error = offcuts.Correct("").errors.join('\n');
        QVERIFY2(error.contains("CAM_Path"), qPrintable(error));
    }

    /// The company's code in front of the names of its tables.
    void companiesByTheNamesOfTheirTables() {
        const contract::Origin& origin = *registry::Find("Ad-Hoc");
        Fixture fixture(FixtureFolder("modImport_AdHoc"), origin, TestTarget::On::Embedded, {},
                        {{"CONTI", "demoCONTI"}, {"MASTRI", "demoMASTRI"}, {"ART_ICOL", "demoART_ICOL"}});
        const auto end = [&](const QString& company) {
            return EndOf(fixture, "AZIENDA_IMPORT", company, "ImportPianoContiAhr reset");
        };
        QString error = end("");
        QVERIFY2(error.contains("quale azienda si importa; ci sono 'demo' (chiave AZIENDA_IMPORT"), qPrintable(error));
        error = end("S2010");
        QVERIFY2(error.contains("azienda 'S2010'; ci sono 'demo' (chiave AZIENDA_IMPORT"), qPrintable(error));
        QCOMPARE(end("DEMO"), QString("rows 11"));
    }

    /// A column that tells the company in each table.
    void companiesByAColumn() {
        Fixture fixture(FixtureFolder("modImport_Esatto"), *registry::Find("EsaSoftware \"e\""));
        fixture.ChangeSource("INSERT INTO ClientiFornitori (DBGruppo, TipoAnagrafica) VALUES ('B', 1)");
        fixture.ChangeSource(
            "INSERT INTO PianoConti (DBGruppo, CodConto, DesConto) VALUES ('B', '99', 'Di un''altra')");
        const auto end = [&](const QString& company) {
            return EndOf(fixture, "DBGruppo", company, "ImportPianoContiE reset");
        };
        QString error = end("");
        QVERIFY2(error.contains("quale azienda si importa; ci sono 'A', 'B' (chiave DBGruppo"), qPrintable(error));
        error = end("C");
        QVERIFY2(error.contains("azienda 'C'; ci sono 'A', 'B' (chiave DBGruppo"), qPrintable(error));
        QCOMPARE(end("b"), QString("rows 1"));
        QCOMPARE(fixture.Target().Rows("SELECT CDCNT FROM X01_PIA_CON"), QStringList{"99"});
        QCOMPARE(fixture.Results().last().details, QStringList("Azienda dell'origine: 'B'"));
        // The table that lists them is empty.
        fixture.ChangeSource("DELETE FROM ClientiFornitori");
        QVERIFY(end("").contains("quale azienda si importa; ci sono 'A', 'B'"));
        QCOMPARE(end("b"), QString("rows 1"));
        // A filter of the installation that names a company is no reason to read the others.
        fixture.WriteLayout("[FILTRI]\nPianoConti=DBGruppo = 'B' OR CodConto <> ''\n");
        QCOMPARE(end("b"), QString("rows 1"));
    }

    /// Rows that name no company are those of one that is alone unless a setting names it; they are told either way.
    void RowsOfNoCompanyAreTold() {
        Fixture fixture(FixtureFolder("modImport_Esatto"), *registry::Find("EsaSoftware \"e\""));
        fixture.ChangeSource("DELETE FROM PianoConti");
        for (const char* company : {"'A'", "''", "'  '", "NULL"}) {
            fixture.ChangeSource(
                QString(
                    "INSERT INTO PianoConti (DBGruppo, CodConto, DesConto) VALUES (%1, '9' || ABS(RANDOM() % 90000), "
                    "'Conto')")
                    .arg(company));
        }
        const auto told = [&](const QString& company) -> QString {
            const QString end = EndOf(fixture, "DBGruppo", company, "ImportPianoContiE reset");
            return end + ", " + fixture.Results().last().details.join('|');
        };
        QCOMPARE(told("A"), QString("rows 1, Azienda dell'origine: 'A'|Righe senza azienda: della tabella 'PianoConti' "
                                    "sono 3, e non si leggono"));
        QCOMPARE(told(""), QString("rows 4, Azienda dell'origine: 'A'|Righe senza azienda: della tabella 'PianoConti' "
                                   "sono 3, e si leggono con quelle dell'azienda"));
    }

    /// A table of another company stands in for none; where the layout file names one, that is told.
    void TablesOfAnotherCompanyAreNotProposed() {
        const auto addCompany = [](ovConnection& source) {
            source.Execute("CREATE TABLE dem1ART_ICOL (ARCODART TEXT)");
        };
        Fixture fixture(FixtureFolder("modImport_AdHoc"), *registry::Find("Ad-Hoc"), TestTarget::On::Embedded,
                        addCompany, {{"CONTI", "demoCONTI"}, {"MASTRI", "dem1MASTRI"}, {"ART_ICOL", "demoART_ICOL"}});
        const auto end = [&] { return EndOf(fixture, "AZIENDA_IMPORT", "DEMO", "ImportPianoContiAhr reset"); };
        const QString error = end();
        QVERIFY2(error.contains("tabella 'MASTRI', nell'origine 'DEMOMASTRI'") &&
                     !error.contains("dem1", Qt::CaseInsensitive),
                 qPrintable(error));
        fixture.WriteLayout("[TABELLE]\nMASTRI=dem1MASTRI\n");
        QCOMPARE(end(), QString("rows 11"));
        QCOMPARE(fixture.Results().last().details,
                 QStringList({"Azienda dell'origine: 'DEMO'", "Tabella di un'altra azienda: 'MASTRI' si legge da "
                                                              "'dem1MASTRI', che il tracciato nomina"}));
    }
};

QUADRIX_TEST(TestAdHoc)
#include "test_adHoc.moc"
