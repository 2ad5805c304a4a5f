#include "app/history/rejects.h"
#include "sources/tableFile.h"
#include "tests/app/KeptRuns.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

using namespace history;

/// Numbers that somebody has written into a file of rejects.
class TestMendedNumbers : public QObject {
    Q_OBJECT

private slots:
    /// A mark that may divide thousands means what it means in the column; where nothing tells it, that is said.
    void readsNumbersAsTheSourceDoes_data() {
        Columns<QString, QString, QString, QStringList>("beside", "typed", "read", "kinds");
        const QStringList divides{"SEGNO DELLE MIGLIAIA"};
        const QStringList doubtful{"NUMERO AMBIGUO"};
        Row("commas beside", "'2,50'", "2.000", "2000", divides);
        Row("points beside", "'2.50'", "2.000", "2", QStringList());
        Row("nothing beside", "'2'", "2.000", "2", doubtful);
        Row("numbers beside", "2.5", "2.000", "2", doubtful);
        Row("both marks", "'2'", "1.234,50", "1234.5", divides);
        Row("no mark of thousands", "'2,50'", "12.5", "12.5", QStringList());
    }
    void readsNumbersAsTheSourceDoes() {
        QFETCH(QString, beside);
        QFETCH(QString, typed);
        QFETCH(QStringList, kinds);
        Kept kept;
        kept.Source("ALTER TABLE ART RENAME COLUMN COSTO TO ALTRO");
        kept.Source("ALTER TABLE ART ADD COSTO");
        kept.Source("UPDATE ART SET COSTO = " + beside);
        kept.Source("UPDATE ART SET COSTO = 'due' WHERE CODICE = 'B'");
        kept.Run();
        const History history(kept.Path());
        const QString path = kept.Target.Folder.filePath("scarti.csv");
        WriteRejects(history, 1, path);
        WriteFile(path, ReadFile(path).replace(";due\r\n", QByteArray(';' + typed.toUtf8() + "\r\n")));
        kept.Target.Execute("DELETE FROM X01_ART_ICO");
        kept.Run(MendedRejects(history, 1, {path}, {}));
        QTEST(kept.Target.Value("SELECT ARCOS FROM X01_ART_ICO WHERE CDART = 'B'"), "read");
        QStringList told;
        for (const Notes::Kind& kind : kept.Target.Get().Results.last().notes.kinds) {
            told += kind.name == "UNITÀ NON TROVATA" ? QStringList() : QStringList(kind.name);
        }
        QCOMPARE(told, kinds);
    }

    /// So does a number that takes the place of one, unless a sheet itself keeps it as a number.
    void readsNumbersForNumbers_data() {
        Columns<QVariant, QString, QStringList>("typed", "read", "kinds");
        const QStringList doubtful{"NUMERO AMBIGUO"};
        Row("a text", QVariant("2.125"), "2.125", doubtful);
        Row("a number", QVariant(2.125), "2.125", QStringList());
        Row("both marks", QVariant("1.234,50"), "1234.5", QStringList());
        Row("marks twice", QVariant("1.234.567"), "1234567", QStringList());
    }
    void readsNumbersForNumbers() {
        QFETCH(QVariant, typed);
        QFETCH(QStringList, kinds);
        Kept kept;
        kept.Source("ALTER TABLE ART RENAME COLUMN COSTO TO ALTRO");
        kept.Source("ALTER TABLE ART ADD COSTO");
        kept.Source("UPDATE ART SET COSTO = 1");
        kept.Source("UPDATE ART SET COSTO = 7, UM = 'PZ' WHERE CODICE = 'B'");
        kept.Target.Execute("CREATE TRIGGER none BEFORE INSERT ON X01_ART_ICO WHEN NEW.ARCOS = 7 BEGIN SELECT "
                            "RAISE(ABORT, 'none'); END");
        kept.Run();
        const History history(kept.Path());
        const QString path = kept.Target.Folder.filePath("scarti.xlsx");
        WriteRejects(history, 1, path);
        auto table = sources::ReadTable(path);
        QCOMPARE(table.rows.size(), size_t(1));
        const QString own = kept.Target.Folder.filePath("mine.xlsx");
        const auto mended = sources::TableWriter::Create(own, "x", table.columns);
        QVector<QVariant> values(table.rows[0].values.begin(), table.rows[0].values.end());
        values.last() = typed;
        mended->AddRow(values);
        mended->Close();
        kept.Run(MendedRejects(history, 1, {own}, {}));
        QTEST(kept.Target.Value("SELECT ARCOS FROM X01_ART_ICO WHERE CDART = 'B'"), "read");
        QStringList told;
        for (const Notes::Kind& kind : kept.Target.Get().Results.last().notes.kinds) {
            told += kind.name;
        }
        QCOMPARE(told, kinds);
    }
};

QUADRIX_TEST(TestMendedNumbers)
#include "test_mendedNumbers.moc"
