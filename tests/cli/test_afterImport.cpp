#include "examples/examples.h"
#include "sources/tableFile.h"
#include "tests/cli/CliRun.h"
#include "tests/support/embedded.h"
#include "tests/support/QuadrixTest.h"

#include <QJsonArray>
#include <QTest>

/// The way from a first import, with rows given up and codes open, to none of either, by the commands that a consultant
/// uses one after the other. Each step goes on from the one before.
class TestAfterImport : public QObject {
    Q_OBJECT

    CliRun m_run;
    const QStringList m_which{"--company", "X01", "--origin", "Gescom"};

    QString Path(const QString& name) const { return m_run.Folder.filePath(name); }
    static void Change(const QString& database, const QStringList& statements) {
        ovConnection connection;
        for (const QString& statement : statements) {
            OpenEmbedded(connection, database).Execute(statement);
            connection.CloseConnection();
        }
    }
    QJsonObject Json(const QStringList& arguments, int exitCode) const {
        const CliRun::Ended ended = m_run.Run(arguments + QStringList("--json"));
        if (ended.exitCode != exitCode) {
            qWarning().noquote() << arguments << ended.exitCode << ended.output << ended.errors;
            QTest::qFail("another exit code", __FILE__, __LINE__);
        }
        return ended.Json();
    }
    QJsonObject Import(const QString& data, int exitCode) const {
        return Json(QStringList{"import", "--errors", "ignore", "--data", data} + m_which, exitCode);
    }

    /// Writes a table anew with what `mend` makes of each of its rows.
    static void Fill(const QString& from, const QString& to,
                     const std::function<void(QMap<QString, QString>& row)>& mend) {
        const sources::TableOfFile table = sources::ReadTable(from);
        const auto file = sources::TableWriter::Create(to, "x", table.columns);
        for (const auto& row : table.rows) {
            QMap<QString, QString> named;
            for (qsizetype column = 0; column < table.columns.size(); ++column) {
                named.insert(table.columns.at(column), row.values.at(column));
            }
            mend(named);
            QVector<QVariant> values;
            for (const QString& column : table.columns) {
                values.append(named.value(column));
            }
            file->AddRow(values);
        }
        file->Close();
    }

private slots:
    void initTestCase() {
        examples::Options options;
        options.rows = 120;
        options.folder = Path("gescom");
        options.company = "X01";
        examples::Make("gescom", options);
        m_run.Set("IMPORT", "Databasename", "gescom/gescom.db");
        m_run.Set("IMPORT", "DOC_DateStart", "01/01/2000");
        QCOMPARE(m_run.CreateCompany().exitCode, 0);
        QFile script(Path("gescom/quadrix.sql"));
        QVERIFY(script.open(QIODevice::ReadOnly));
        ovConnection quadrix;
        OpenEmbedded(quadrix, m_run.Database()).ExecuteScript(QString::fromUtf8(script.readAll()));
        quadrix.CloseConnection();
        // Documents of several kinds bear one number: their rows have one name.
        Change(Path("gescom/gescom.db"),
               {"UPDATE ARCLFR SET SC1CLFOR = 'dieci' WHERE CODCLFOR = '000004' AND FLAGCLFR = 'C'",
                "UPDATE ARTICOLI SET PVARTICO = '12,5O' WHERE CDARTICO = (SELECT MIN(FIDISBAS) FROM DISBAS WHERE "
                "FIDISBAS IN (SELECT CDARTICO FROM ARTICOLI))",
                "UPDATE RIEMOV SET QTRIEMOV = 'x' WHERE RDRIEMOV = 1"});
    }

    void importsInPart() {
        QCOMPARE(Import("cli", 4)["givenUp"].toInt(), 1);
        QCOMPARE(Import("art", 4)["givenUp"].toInt(), 1);
        Import("dis", 0);
        const QJsonObject documents = Import("doc", 4);
        QVERIFY(documents["givenUp"].toInt() > 4);
        QCOMPARE(documents["run"].toInt(), 4);
        const QString told = m_run.Run({"history", "--run", "2"}).output;
        QVERIFY2(told.contains("'12,5O' non è un numero"), qPrintable(told));
    }

    /// The list is filled in by what stands in its second sheet; what applying shows beforehand is what it then does.
    void givesTheCodes() {
        const qsizetype open = Json(QStringList{"codes", "list"} + m_which, 4)["open"].toInteger();
        QVERIFY(open >= 3);
        const QString told = Json(QStringList{"report", "--output", Path("0.html")} + m_which, 4)["reason"].toString();
        QVERIFY2(told.contains(QString(" %1 codici sono senza traduzione").arg(open)), qPrintable(told));
        QCOMPARE(m_run.Run(QStringList{"codes", "export", "--out", Path("codici.xlsx")} + m_which).exitCode, 0);
        Fill(Path("codici.xlsx"), Path("compilati.xlsx"), [this](QMap<QString, QString>& row) {
            const auto choices =
                Json({"codes", "values", "--company", "X01", "--table", row["Tabella"], "--field", row["Campo"]},
                     0)["values"]
                    .toArray();
            row["Nuovo codice"] = choices.isEmpty() ? "NUOVO" : choices.first()["code"].toString();
            row["Crea (S)"] = choices.isEmpty() ? "S" : "";
            row["Descrizione"] = choices.isEmpty() ? "Nuovo" : "";
        });
        const QStringList again = QStringList{"codes", "export", "--all", "--out", Path("compilati.xlsx")} + m_which;
        QCOMPARE(m_run.Run(again).exitCode, 2); // what the customer has filled in would be lost
        QCOMPARE(
            Json({"codes", "import", "--in", Path("compilati.xlsx"), "--company", "X01"}, 0)["changed"].toInteger(),
            open);
        QCOMPARE(m_run.Run(again).exitCode, 0);
        const QString terms = "SELECT COUNT(*) FROM X01_CON_TRO WHERE COALESCE(COMOP, COMOA, '') <> ''";
        const int before = m_run.Value(terms).toInt();
        const QJsonArray cells = Json({"codes", "apply", "--dry-run", "--company", "X01"}, 0)["cells"].toArray();
        QCOMPARE(m_run.Value(terms).toInt(), before);
        const auto isTerm = [](const QJsonValue& cell) {
            return cell["table"] == "CON_TRO" && cell["column"].toString().startsWith("COMO");
        };
        const auto written = std::count_if(cells.begin(), cells.end(), isTerm);
        QVERIFY(written > 0);
        QJsonObject applied = Json({"codes", "apply", "--company", "X01"}, 0);
        QCOMPARE(m_run.Value(terms).toInt(), before + static_cast<int>(written));
        QVERIFY(applied["run"].toInt() > 4);
        QVERIFY2(applied["notes"].toArray().isEmpty() || !QJsonDocument(applied).toJson().contains("NON PIÙ"),
                 "a part of the rows says nothing of the others");
        QCOMPARE(Json(QStringList{"codes", "list"} + m_which, 0)["open"].toInt(), 0);
        QVERIFY(Json({"codes", "apply", "--company", "X01"}, 0)["rowsRepeated"].toInt() == 0);
    }

    /// A run of rows given up that breaks off leaves those behind it where they were.
    void namesTheRejectsThatAreOpen() {
        const QStringList again{"import", "--rejects-of", "4", "--errors", "abort"};
        const CliRun::Ended ended = m_run.Run(again);
        QCOMPARE(ended.exitCode, 1);
        QVERIFY2(ended.output.contains("poi import --rejects-of 4 --mended") &&
                     !ended.output.contains("non raggiunte 0"),
                 qPrintable(ended.output));
        const CliRun::Ended missing = m_run.Run({"import", "--rejects-of", "1", "--mended", Path("manca.csv")});
        QCOMPARE(missing.exitCode, 2);
        QVERIFY2(missing.errors.contains("manca.csv' non c'è"), qPrintable(missing.errors));
    }

    /// Rows of a run want the same consent as an import.
    void tellsThatTheCompanyWasMerged() {
        Change(m_run.Database(), {"INSERT INTO SYS_FUS (FUPAR, FUDES, FUINI, FUFIN) VALUES ('X01', 'X09', '20240305', "
                                  "'20240305')"});
        const CliRun::Ended ended = m_run.Run({"import", "--rejects-of", "4", "--errors", "abort"});
        Change(m_run.Database(), {"DELETE FROM SYS_FUS"});
        QCOMPARE(ended.exitCode, 2);
        QVERIFY2(ended.errors.contains("le righe di X01 hanno i codici delle controparti di X09"),
                 qPrintable(ended.errors));
    }

    void importsWhatIsMended() {
        const auto mend = [this](int run, const std::function<void(QMap<QString, QString> & row)>& how) {
            const QString number = QString::number(run);
            m_run.Run({"history", "--run", number, "--rejects", Path("scarti.xlsx")});
            Fill(Path("scarti.xlsx"), Path("corretti.xlsx"), how);
            if (m_run.Run({"history", "--run", number, "--rejects", Path("corretti.xlsx")}).exitCode != 2) {
                QTest::qFail("what is mended is written over", __FILE__, __LINE__);
            }
            QFile::remove(Path("scarti.xlsx"));
            QFile::rename(Path("corretti.xlsx"), Path("corretti-TABELLA.xlsx")); // as one of several is named
            const QJsonObject result =
                Json({"import", "--rejects-of", number, "--mended", Path("corretti.xlsx"), "--errors", "ignore"}, 0);
            QFile::remove(Path("corretti-TABELLA.xlsx"));
            return result;
        };
        mend(1, [](QMap<QString, QString>& row) { row["SC1CLFOR"] = "10"; });
        mend(2, [](QMap<QString, QString>& row) { row["PVARTICO"] = "12,50"; });
        const QJsonObject documents = mend(4, [](QMap<QString, QString>& row) { row["QTRIEMOV"] = row["QSRIEMOV"]; });
        QCOMPARE(documents["notes"].toArray(), QJsonArray()); // each row is met, whatever its name
        ovConnection source;
        Recordset rows = OpenEmbedded(source, Path("gescom/gescom.db"))
                             .ExecuteWC("SELECT CDRIEMOV, QSRIEMOV FROM RIEMOV WHERE RDRIEMOV = 1 AND CSRIEMOV = 'BV' "
                                        "ORDER BY RGRIEMOV");
        QVERIFY(!rows.Eof());
        for (; !rows.Eof(); rows.MoveNext()) {
            QCOMPARE(m_run
                         .Value("SELECT R.DRQTR FROM X01_DOC_VER R JOIN X01_DOC_VEN T ON T.RECORD_ID = R.IDTES WHERE "
                                "T.DTNUM = 1 AND R.DRART = '" +
                                rows.Fields(0).Value().toString() + "'")
                         .toDouble(),
                     rows.Fields(1).Value().toDouble());
        }
        const CliRun::Ended again = m_run.Run({"import", "--rejects-of", "4"});
        QCOMPARE(again.exitCode, 1);
        QVERIFY2(again.errors.contains("sono già state importate"), qPrintable(again.errors));
        QVERIFY(m_run.Run({"history"}).output.contains(", aperte 0 |"));
    }

    /// What named an article before it was mended is imported again; what the source still has wrong is told as mended.
    void provesIt() {
        const QJsonObject before = Json(QStringList{"report", "--output", Path("1.html")} + m_which, 1);
        QCOMPARE(before["verdict"].toString(), QString("red"));
        Import("dis", 0);
        const QJsonObject again = Import("doc", 4);
        QVERIFY(!QJsonDocument(again).toJson().contains("NON PIÙ NELL'ORIGINE\""));
        const QString runs =
            m_run.Run({"history", "--run", again["run"].toVariant().toString(), "--rejects", Path("ancora.xlsx")})
                .output;
        QVERIFY2(runs.contains("Nessuna riga scartata"), qPrintable(runs));
        const QJsonObject after = Json(QStringList{"report", "--output", Path("2.html")} + m_which, 4);
        QCOMPARE(after["verdict"].toString(), QString("yellow"));
        // Those of counterparties too, which an import leaves as they are when they are there.
        qint64 mended = 0;
        qint64 imported = 0;
        for (const QJsonValue& data : after["data"].toArray()) {
            mended += data["mended"].toInteger();
        }
        for (const char* run : {"1", "2", "4"}) {
            for (const QJsonValue& procedure : Json({"history", "--run", run}, 0)["procedures"].toArray()) {
                imported += procedure["rejectsImported"].toInteger();
            }
        }
        QCOMPARE(mended, imported);
        QVERIFY2(after["reason"].toString().contains("si sono importate coi valori corretti") &&
                     !after["reason"].toString().contains("non si possono importare") &&
                     !after["reason"].toString().contains("senza traduzione"),
                 qPrintable(after["reason"].toString()));
    }

    void comparesTheRuns() {
        const QString told = m_run.Run({"history", "--run", "11", "--compare", "2"}).output;
        QVERIFY2(told.contains("Ora importata: ImportArticoliGescom"), qPrintable(told));
    }

    /// What was not reached is told beside what was given up.
    void tellsHowToGoOn() {
        const QString wrong = "UPDATE ARCLFR SET SC1CLFOR = '%1' WHERE CODCLFOR = '000004' AND FLAGCLFR = 'C'";
        Change(Path("gescom/gescom.db"), {wrong.arg("venti")});
        const QString told = m_run.Run(QStringList{"import", "--errors", "abort", "--data", "cli"} + m_which).output;
        static const QRegularExpression resuming("riprendere da dove si è fermata: import --resume (\\d+)");
        const QString run = resuming.match(told).captured(1);
        QVERIFY2(!run.isEmpty() && told.contains("--rejects-of " + run), qPrintable(told));
        Change(Path("gescom/gescom.db"), {wrong.arg("20")});
        const QString resumed = m_run.Run({"import", "--errors", "abort", "--resume", run}).output;
        QVERIFY2(resumed.contains("abbandonate 0") && !resumed.contains("--rejects-of"), qPrintable(resumed));
        Change(Path("gescom/gescom.db"), {wrong.arg("dieci")});
    }

    /// A source that is not what was thought is noticed early; whoever goes on does what was not reached.
    void stopsAtSoManyRejects() {
        const QStringList documents = QStringList{"import", "--errors", "ignore", "--data", "doc"} + m_which;
        const QJsonObject stopped = Json(documents + QStringList{"--max-rejects", "2"}, 1);
        const qint64 givenUp = stopped["givenUp"].toInteger();
        QVERIFY(givenUp >= 2 && stopped["notReached"].toInteger() > 0);
        const QString why = stopped["errors"].toArray().first().toString();
        QVERIFY2(why.contains(QString("righe abbandonate %1 su ").arg(givenUp)) && why.contains("il limite è 2"),
                 qPrintable(why));
        const QString run = QString::number(stopped["run"].toInteger());
        QVERIFY(m_run.Run({"history", "--run", run}).output.contains("Si ferma a righe abbandonate: 2"));
        const QJsonObject resumed = Json({"import", "--errors", "ignore", "--resume", run}, 4);
        QVERIFY(resumed["notReached"].toInteger() == 0 && resumed["givenUp"].toInteger() > givenUp);
    }

    /// An import that the history could not keep stands, and is not taken for the one before it.
    void tellsNoRunThatIsNotKept() {
        Change(Path("Cronologia.sqlite"),
               {"CREATE TRIGGER full BEFORE INSERT ON runs BEGIN SELECT RAISE(ABORT, 'piena'); END"});
        QVERIFY(Import("cli", 4)["run"].isNull());
    }
};

QUADRIX_TEST(TestAfterImport)
#include "test_afterImport.moc"
