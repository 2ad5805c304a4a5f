#include "examples/arca2000.h"
#include "examples/italian.h"
#include "examples/italianWords.h"
#include "tests/sources/sourcesTest.h"
#include "tests/support/errorOf.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QSet>
#include <QTemporaryDir>

using namespace examples;
using namespace sourcesTest;

/// Made-up data is the same everywhere, and its codes are right.
class ExamplesTest : public QObject {
    Q_OBJECT

private:
    static Totals MakeIn(const QString& example, const QString& folder, qint64 rows, quint64 seed = 1) {
        Options options;
        options.rows = rows;
        options.seed = seed;
        options.folder = folder;
        return Make(example, options);
    }

    /// Of all bytes of a folder's files, in the order of their names.
    static QByteArray HashOf(const QString& folder) {
        QCryptographicHash hash(QCryptographicHash::Sha1);
        for (const QFileInfo& info : QDir(folder).entryInfoList(QDir::Files, QDir::Name)) {
            hash.addData(QByteArray(info.fileName().toUtf8() + ReadFile(info.filePath())));
        }
        return hash.result().toHex();
    }

    /// The tables of an example, wherever they stand.
    static std::unique_ptr<Engine> OpenExample(const QString& folder) {
        const QStringList databases = QDir(folder).entryList({"*.db"});
        if (!databases.isEmpty()) {
            return OpenSqlite(folder + "/" + databases.first(), true);
        }
        if (!QDir(folder).entryList({"*.CSV"}, QDir::Files | QDir::CaseSensitive).isEmpty()) {
            ConnectionSettings settings;
            settings.connectionString = "Driver={Microsoft Text Driver (*.txt; *.csv)};DBQ=" + folder;
            return sources::OpenFileSource(settings);
        }
        return OpenFolder(folder);
    }

    static QString Total(const Totals& totals, const QString& name) {
        for (const auto& total : totals) {
            if (total.first == name) {
                return total.second;
            }
        }
        return "no total " + name;
    }

private slots:
    void CalculatesKnownCodes() {
        // Printed examples of the three kinds of code.
        QVERIFY(italian::IsVatNumber("07643520567"));
        QVERIFY(!italian::IsVatNumber("07643520568"));
        QCOMPARE(italian::TaxCode("Rossi", "Mario", QDate(1985, 12, 10), false, "A562"), QString("RSSMRA85T10A562S"));
        QCOMPARE(italian::TaxCode("Fo", "Noemi", QDate(1950, 1, 2), true, "H501").left(11), QString("FOXNMO50A42"));
        QCOMPARE(italian::TaxCode("D'Amico", "Nicolò", QDate(1970, 8, 31), false, "H501").left(6), QString("DMCNCL"));
        QCOMPARE(italian::BankCheck("05428", "11101", "000000123456"), QString("X"));
        QCOMPARE(italian::MakeIban("X", "05428", "11101", "000000123456"), QString("IT60X0542811101000000123456"));
    }

    void DrawsTheSameNumbersOnEveryMachine() {
        // Calculated apart, with numbers of any length.
        QCOMPARE(Random(1, 2, 3).Next(), quint64(7767200416356486322U));
        Random random(5, 0, 7);
        for (const qint64 expected : {910, 326, 432, 334, 417}) {
            QCOMPARE(random.Below(1000), expected);
        }
    }

    void NeverGivesAnIdentityTwice() {
        QSet<QString> seen;
        for (qint64 number = 0; number < 50000; ++number) {
            const italian::Identity identity = italian::MakeIdentity(7, number);
            QVERIFY(identity.vatNumber.isEmpty() || italian::IsVatNumber(identity.vatNumber));
            QVERIFY(identity.isCompany ? identity.taxCode == identity.vatNumber : italian::IsTaxCode(identity.taxCode));
            QVERIFY2(!seen.contains(identity.taxCode), qPrintable(identity.taxCode));
            seen.insert(identity.taxCode);
        }
    }

    void KeepsStreetsBeforeTheHouseNumber() {
        for (const auto* street : italian::Streets()) {
            QVERIFY2(QString::fromUtf16(street).size() <= 25, qPrintable(QString::fromUtf16(street)));
        }
    }

    void GivesTheSameBytesForTheSameSeed_data() {
        Columns<QString>("example");
        for (const Example& example : Examples()) {
            Row(qPrintable(example.name), example.name);
        }
    }
    void GivesTheSameBytesForTheSameSeed() {
        QFETCH(QString, example);
        const QTemporaryDir first;
        const QTemporaryDir second;
        const QTemporaryDir other;
        MakeIn(example, first.path(), 60, 5);
        MakeIn(example, second.path(), 60, 5);
        MakeIn(example, other.path(), 60, 6);
        QCOMPARE(HashOf(first.path()), HashOf(second.path()));
        QVERIFY(HashOf(first.path()) != HashOf(other.path()));
    }

    void TotalsFollowFromTheTables_data() {
        Columns<QString, QString, QString>("example", "total", "query");
        QString example;
        const auto row = [&](const QString& total, const QString& query) {
            Row(qPrintable(example + " " + total), example, total, "SELECT " + query);
        };
        example = "arca2000";
        row("anagrafe: righe", "COUNT(*) FROM anagrafe");
        row("anagrafe: clienti", "COUNT(*) FROM anagrafe WHERE codice LIKE 'C%'");
        row("anagrafe: fornitori che sono anche clienti",
            "COUNT(*) FROM anagrafe f WHERE codice LIKE 'F%' AND EXISTS (SELECT 1 FROM anagrafe c WHERE c.codice LIKE "
            "'C%' AND ((f.partiva <> '' AND c.partiva = f.partiva) OR (f.partiva = '' AND f.codfiscale <> '' AND "
            "c.codfiscale = f.codfiscale)))");
        row("destinaz: righe", "COUNT(*) FROM destinaz");
        row("ART_ICO attese", "COUNT(*) FROM magart WHERE NOT (codice GLOB '*-C[0-9]' OR codice GLOB '*-C[0-9][0-9]')");
        row("ART_FOR attese",
            "COUNT(*) FROM magart JOIN anagrafe a ON a.codice = uafornitor WHERE NOT (magart.codice GLOB "
            "'*-C[0-9]' OR magart.codice GLOB '*-C[0-9][0-9]')");
        row("LIS_LAV attese", "COUNT(*) FROM listini WHERE codclifor LIKE 'F%'");
        row("STO_COS attese", "COUNT(DISTINCT codicearti || datainizio) FROM listini WHERE codclifor LIKE 'F%'");
        row("STO_PRZ attese", "COUNT(DISTINCT codicearti || datainizio) FROM listini WHERE codclifor LIKE 'C%'");
        row("LIS_TES attese", "COUNT(DISTINCT codclifor) FROM listini WHERE codclifor LIKE 'C%'");
        row("LIS_ART attese",
            "COUNT(DISTINCT codicearti || codclifor || datainizio) FROM listini WHERE codclifor LIKE 'C%'");
        row("LIS_ARS attese",
            "COUNT(DISTINCT codicearti || codclifor || datainizio || '/' || u_qta) FROM listini WHERE codclifor LIKE "
            "'C%'");
        example = "winprogest";
        row("DIS_BAS attese", "COUNT(*) FROM NFTDIS WHERE PADRE IN (SELECT CODART FROM ARTICOLI)");
        const QString components = "COUNT(DISTINCT PADRE || '/' || FIGLIO) FROM NFCODIS WHERE PADRE IN (SELECT CODART "
                                   "FROM ARTICOLI) AND FIGLIO IN (SELECT CODART FROM ARTICOLI)";
        row("DIS_COM attese", components);
        row("DIS_COM attese con IDDBF", components + " AND FIGLIO IN (SELECT PADRE FROM NFTDIS)");
        row("TESTFT: documenti", "COUNT(*) FROM TESTFT");
        row("TESTFT: somma delle quantità", "SUM(QTA) FROM CORPFT");
        row("TESTFT: somma degli imponibili", "printf('%.2f', SUM(QTA * PREZZO * (100 - SCO1) * (100 - SCO2) * (100 - "
                                              "SCO3) / 1000000.0)) FROM CORPFT WHERE TIPRIG = ''");
        row("TESTIMP: numeri che stanno due volte nell'anno",
            "COUNT(*) FROM (SELECT 1 FROM TESTIMP GROUP BY NUMDOC, SUBSTR(DATDOC, 1, 4) HAVING COUNT(*) > 1)");
        row("CORPBO: righe con origine",
            "COUNT(*) FROM CORPBO b JOIN CORPIMP i ON i.NUMDOC = NUMIMP AND i.DATDOC = DATIMP AND i.NRIGA = RIGIMP");
        row("CORPFT: righe con origine", "COUNT(*) FROM CORPFT WHERE NUMBO IS NOT NULL OR NUMIMP IS NOT NULL");
        example = "gescom";
        row("CON_TRO attese (senza vettori)", "COUNT(*) FROM (SELECT 1 FROM ARCLFR GROUP BY FISCLFOR)");
        row("VETTORI: già fornitori", "COUNT(*) FROM VETTORI JOIN ARCLFR ON IVACLFOR = PIVETTOR AND PIVETTOR <> ''");
        row("LIS_TES attese", "COUNT(DISTINCT CDLISTIN) FROM LISTINI");
        row("LIS_ART attese", "COUNT(DISTINCT CDLISTIN || ARLISTIN) FROM LISTINI");
        row("DIS_FAS attese",
            "SUM(MAX(1, (SELECT COUNT(*) FROM arcfas WHERE ARARCFAS = PADISBAS))) FROM (SELECT DISTINCT "
            "PADISBAS FROM DISBAS)");
        row("BV (DOC_VEN, DTGES), di cui con articoli che mancano: somma delle quantità",
            "SUM(QSRIEMOV) FROM RIEMOV WHERE CSRIEMOV = 'BV' AND CDRIEMOV NOT IN (SELECT CDARTICO FROM ARTICOLI)");
        row("LE e LEB (DOC_CTL, RSGES): documenti",
            "COUNT(DISTINCT RDRIEMOV) FROM RIEMOV WHERE CSRIEMOV IN ('LE', 'LEB')");
        row("LE e LEB (DOC_CTL, RSGES): righe", "COUNT(*) FROM RIEMOV JOIN ARCLFR ON CODCLFOR = CLRIEMOV AND FLAGCLFR "
                                                "= FLRIEMOV WHERE CSRIEMOV LIKE 'LE%'");
        row("BV (DOC_VEN, DTGES): somma degli imponibili",
            "printf('%.2f', SUM(QSRIEMOV * IRRIEMOV)) FROM RIEMOV WHERE CSRIEMOV = 'BV'");
        example = "arcaevolution";
        row("CF: righe", "COUNT(*) FROM CF");
        row("DOTotali: righe", "COUNT(*) FROM DOTotali d WHERE printf('%.2f', TotImponibileV) = (SELECT "
                               "printf('%.2f', SUM(PrezzoTotaleV)) FROM DORig r WHERE r.Id_DOTes = d.Id_DOTes)");
    }
    void TotalsFollowFromTheTables() {
        QFETCH(QString, example);
        QFETCH(QString, total);
        QFETCH(QString, query);
        static QHash<QString, std::shared_ptr<QTemporaryDir>> folders;
        static QHash<QString, Totals> made;
        if (!folders.contains(example)) {
            folders[example] = std::make_shared<QTemporaryDir>();
            made[example] = MakeIn(example, folders[example]->path(), 2000);
        }
        const auto engine = OpenExample(folders[example]->path());
        const QString expected = Total(made[example], total);
        QCOMPARE(Value(*engine, query).toString(), expected);
        QVERIFY(expected.toDouble() > 0);
    }

    void NamesWhatTheOtherSourceHas_data() {
        Columns<QString, QString, QString, QString>("example", "names", "other", "has");
        const QString products = "SELECT PrdRef FROM PPRR_PPRR_00000100";
        Row("suppliers of the CAM", "lantek24", "SELECT SuppRef FROM SSHH_PPOO_00000100 WHERE SuppRef <> 'F999999'",
            "arcaevolution", "SELECT Cd_CF FROM CF WHERE Fornitore");
        Row("products of the CAM", "lantek30", products, "lantek24", products);
        Row("automatic warehouse", "automa", "SELECT COD_ARTICOLO FROM GIACENZE WHERE COD_ARTICOLO <> 'NON-CE'",
            "lantek24", products);
        Row("store of a customer", "ferrobrio", "SELECT Codice FROM Giacenze WHERE Codice <> 'NON-CE'", "lantek24",
            products);
        const QString components = "SELECT CodArt FROM DisBasR WHERE CodArt <> 'NON-CE'";
        Row("components", "tessera", components, "tessera", "SELECT CodArt FROM Artic");
        Row("no component is a head", "tessera", components, "tessera",
            "SELECT CodArt FROM Artic WHERE CodArt NOT IN (SELECT CodArt FROM DisBasT)");
        const QString document = "SELECT [_MMSIG] || '/' || [_MMNUM] || '/' || [_MMDAT] || '/' || [_MMCLI] FROM ";
        Row("heads of the rows", "mexal", document + "DOC_RIG", "mexal", document + "DOC_TES");
        Row("counterparties of two programs", "tessera",
            "SELECT CodCliFor || PartIva FROM CliFor WHERE CodCliFor NOT LIKE '201.9%'", "mexal",
            "SELECT [_PCCOD] || COALESCE([_PCPIV], '') FROM PIA_CON");
        Row("VAT numbers of two programs", "visualspace", "SELECT PARTITA_IVA FROM A_FORNITORI WHERE PARTITA_IVA <> ''",
            "mexal", "SELECT [_PCPIV] FROM PIA_CON WHERE TIPO = 'F'");
        Row("no component is a parent", "visualspace", "SELECT FIGLIO FROM DISTINTA_BASE WHERE FIGLIO <> 'NON-CE'",
            "visualspace",
            "SELECT COD_ARTICOLO FROM A_ARTICOLI WHERE COD_ARTICOLO NOT IN (SELECT PADRE FROM DISTINTA_BASE)");
        Row("rows that a document carries out", "arcaevolution",
            "SELECT Id_DORig_Evade || Cd_AR || Qta FROM DORig WHERE Id_DORig_Evade IS NOT NULL", "arcaevolution",
            "SELECT Id_DORig || Cd_AR || Qta FROM DORig");
    }
    void NamesWhatTheOtherSourceHas() {
        QFETCH(QString, example);
        QFETCH(QString, names);
        QFETCH(QString, other);
        QFETCH(QString, has);
        const QTemporaryDir left;
        const QTemporaryDir right;
        MakeIn(example, left.path(), 200);
        MakeIn(other, right.path(), 200);
        const QStringList there = Values(*OpenExample(right.path()), has).split(',');
        const QStringList named = Values(*OpenExample(left.path()), names).split(',');
        QVERIFY(named.size() > 5);
        for (const QString& name : named) {
            QVERIFY2(there.contains(name), qPrintable(name));
        }
    }

    void WritesTheSameValuesToFilesAndDatabases() {
        const QTemporaryDir files;
        const QTemporaryDir database;
        MakeIn("winprogest", files.path(), 400);
        MakeIn("winprogest-server", database.path(), 400);
        const auto left = OpenExample(files.path());
        const auto right = OpenExample(database.path());
        QCOMPARE(left->Tables().size(), right->Tables().size());
        for (const QString& table : right->Tables()) {
            QStringList columns;
            for (const ColumnInfo& column : right->Columns(table)) {
                columns.append(column.name);
            }
            const QString query = "SELECT " + columns.join(", ") + " FROM " + table + " ORDER BY rowid";
            const auto ours = left->Query(query);
            const auto theirs = right->Query(query);
            while (theirs->Next()) {
                QVERIFY2(ours->Next(), qPrintable(table));
                for (int column = 0; column < columns.size(); ++column) {
                    const QVariant value = theirs->Value(column);
                    // A server has moments where dBase has days; and blank dBase texts are no Nulls.
                    const bool isDay = value.userType() == QMetaType::QDateTime;
                    QCOMPARE(ours->Value(column).toString(),
                             isDay ? value.toDate().toString(Qt::ISODate) : value.toString());
                }
            }
            QVERIFY2(!ours->Next(), qPrintable(table));
        }
    }

    void HasWhatMakesImportsHard() {
        const QTemporaryDir dir;
        MakeIn("arca2000", dir.path(), 2000);
        const auto engine = OpenFolder(dir.path());
        for (const char* condition :
             {"LENGTH(descrizion) > 35", "note LIKE '%già%'", "LENGTH(note) > 500", "telefono GLOB '*[a-z]*'",
              "telefono LIKE '+39%'", "indirizzo = ''", "localita = ''", "timestamp IS NULL", "sconto1 = '10+5'",
              "pag = 'ZZ99'", "LENGTH(abicab) = 10", "partiva = '' AND codfiscale = ''"}) {
            const auto count = Value(*engine, QString("SELECT COUNT(*) FROM anagrafe WHERE ") + condition).toInt();
            QVERIFY2(count >= 5, condition);
        }
    }

    void BuildsBillsOfSeveralLevels() {
        const QTemporaryDir dir;
        MakeIn("gescom", dir.path(), 1000);
        const auto engine = OpenExample(dir.path());
        const QString tree = "WITH RECURSIVE d(top, child, level) AS (SELECT PADISBAS, FIDISBAS, 1 FROM DISBAS UNION "
                             "SELECT top, FIDISBAS, level + 1 FROM d JOIN DISBAS ON PADISBAS = child WHERE level < 9) ";
        QCOMPARE(Value(*engine, tree + "SELECT COUNT(*) FROM d WHERE top = child").toInt(), 0);
        QCOMPARE(Value(*engine, tree + "SELECT MAX(level) FROM d").toInt(), 4);
        const QString assemblies = "SELECT COUNT(*) FROM DISBAS WHERE FIDISBAS IN (SELECT PADISBAS FROM DISBAS) AND ";
        QVERIFY(Value(*engine, assemblies + "FIDISBAS > PADISBAS").toInt() > 10);
        QVERIFY(Value(*engine, assemblies + "FIDISBAS < PADISBAS").toInt() > 10);

        Options options;
        options.folder = dir.path();
        options.hasCycles = true;
        options.tables = QStringList{"distinte"};
        Make("gescom", options);
        QCOMPARE(Values(*OpenExample(dir.path()), tree + "SELECT DISTINCT top FROM d WHERE top = child ORDER BY top"),
                 QString("AC000002,AD000003"));
    }

    void WidensCodesForManyRows() {
        QCOMPARE(arca2000::Codes(1000).Customer(1), QString("C00001"));
        const arca2000::Codes many(150001);
        QCOMPARE(many.Customers() + many.Suppliers(), qint64(150001));
        QCOMPARE(many.Customer(1), QString("C000001"));
        QCOMPARE(many.Supplier(many.Suppliers()).size(), many.Length());
    }

    void NamesWhatCannotBeMade_data() {
        Columns<QString, qint64, QString, QString>("example", "rows", "table", "message");
        Row("no such example", "arca", qint64(1), "", "arca2000");
        Row("no rows", "arca2000", qint64(0), "", "da 1 a");
        Row("no such tables", "arca2000", qint64(1), "bilanci", "controparti");
    }
    void NamesWhatCannotBeMade() {
        QFETCH(QString, example);
        QFETCH(qint64, rows);
        QFETCH(QString, table);
        QFETCH(QString, message);
        const QTemporaryDir dir;
        Options options;
        options.rows = rows;
        options.folder = dir.path();
        options.tables = table.isEmpty() ? QStringList() : QStringList(table);
        const auto error = ::ErrorOf<ExampleError>([&] { Make(example, options); });
        QVERIFY(error && Holds(error->Message(), {message}));
    }
};

QUADRIX_TEST(ExamplesTest)
#include "test_examples.moc"
