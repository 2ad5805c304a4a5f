#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TriggersOff.h"
#include "adapters/contract/write/Attachment.h"
#include "adapters/contract/write/Counterparty.h"
#include "adapters/contract/write/Document.h"
#include "adapters/contract/write/PriceList.h"
#include "adapters/contract/write/Stock.h"
#include "core/qdxProduction_articles.h"
#include "tests/support/embedded.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QDir>
#include <QTest>

using namespace contract;

namespace {

/// A company with a run under way of which nothing is shown.
class Written : public TestTarget {
public:
    ImportRun Run{Get(), "modImport_Prova", "ImportProva", "X"};
};

QString MessageOf(const std::optional<ImportError>& error) { return error ? error->Message() : QString("no error"); }

} // namespace

/// What the writers of the contract do where no origin's fixture leads.
class TestWriters : public QObject {
    Q_OBJECT

private slots:
    /// Nothing is cut, rounded away or written as Null for want of room.
    void rowsRefuseWhatDoesNotFit_data() {
        Columns<QString, QString, QVariant, QString>("table", "column", "value", "message");
        Row("text", "CON_TRO", "COPRO", QVariant("TORINO"), "'TORINO' ha 6 caratteri, CON_TRO.COPRO ne tiene 5");
        Row("NUL", "CON_TRO", "CONOT", QVariant(QString("a") + QChar(u'\0') + "b"),
            "il testo per CON_TRO.CONOT contiene un carattere NUL");
        Row("a character cut in two", "CON_TRO", "CORAS", QVariant(QString::fromUtf8("Ditta 😀").chopped(1)),
            "il testo per CON_TRO.CORAS ha un carattere tagliato a metà");
        Row("number", "CON_TRO", "COSC1", QVariant("dieci"), "'dieci' non è un numero");
        Row("beyond a double", "CON_TRO", "COSC1", QVariant("1e400"), "'1e400' non è un numero");
        Row("whole number", "DIS_COM", "DCPOS", QVariant("1.5"), "'1.5' non è un numero intero");
        Row("whole number, of a source that counts in doubles", "DIS_COM", "DCPOS", QVariant(0.5),
            "'0.5' non è un numero intero");
        Row("a code like a number", "DOC_VEN", "DTNUM", QVariant("1E3"), "'1E3' non è un numero intero");
        Row("large", "DOC_VER", "DRNUM", QVariant("3000000000"), "'3000000000' è un numero troppo grande");
        Row("larger", "DOC_VEN", "DTNUM", QVariant("9223372036854775808"),
            "'9223372036854775808' è un numero troppo grande");
        Row("date", "CON_TRO", "COINV", QVariant("31/02/2024"), "'31/02/2024' non è una data");
        Row("column", "CON_TRO", "COXXX", QVariant(1), "la colonna 'CON_TRO.COXXX' non è nello schema");
    }
    void rowsRefuseWhatDoesNotFit() {
        QFETCH(const QString, table);
        QFETCH(const QString, column);
        QFETCH(const QVariant, value);
        Written target;
        TargetRow row(target.Run, table);
        QTEST(MessageOf(ErrorOf<ImportError>([&] { row.Set(column, value); })), "message");
    }

    /// A row whose name is blank in the source is carried over, and told; one that nothing was said of is not.
    void namelessRowsAreTold_data() {
        Columns<QString, QString, QString>("table", "column", "told");
        Row("counterparty", "CON_TRO", "CORAS", "SENZA DESCRIZIONE: ");
        Row("article", "ART_ICO", "ARDES", "SENZA DESCRIZIONE: ");
        Row("a text that it can do without", "CON_TRO", "CORA2", "");
    }
    void namelessRowsAreTold() {
        QFETCH(const QString, table);
        QFETCH(const QString, column);
        QFETCH(const QString, told);
        Written target;
        TargetRow row(target.Run, table);
        row.Set(column, "  ");
        row.Insert();
        QVERIFY2(told.isEmpty() ? target.Log().isEmpty() : target.Log().contains(told.toLatin1()), target.Log());
    }

    /// A source that names files by its own paths leads nowhere unseen, and to no other computer.
    void attachmentsTellWhereTheyLead_data() {
        Columns<QString, RowOutcome, QString>("name", "outcome", "told");
        Row("in the folder", "a.txt", RowOutcome::Inserted, "");
        Row("out of it", "../altrove/b.txt", RowOutcome::Inserted, "ALLEGATO FUORI DALLA CARTELLA: ");
        Row("out of it by a folder that begins alike", "../files2/c.txt", RowOutcome::Inserted,
            "ALLEGATO FUORI DALLA CARTELLA: ");
        Row("another computer", "//server/disegni/d.txt", RowOutcome::Skipped, "ALLEGATO SU UN ALTRO COMPUTER: ");
    }
    void attachmentsTellWhereTheyLead() {
        QFETCH(const QString, name);
        QFETCH(const QString, told);
        Written target;
        const QString folder = target.Folder.filePath("files");
        for (const char* file : {"files/a.txt", "altrove/b.txt", "files2/c.txt"}) {
            const QString path = target.Folder.filePath(file);
            QVERIFY(QDir().mkpath(QFileInfo(path).path()));
            WriteFile(path, "x");
        }
        const QString path = name.startsWith("//") ? name : PathIn(folder, name);
        QTEST(AttachmentWriter(target.Run).Write({"ART_ICO", "A1", path, folder}), "outcome");
        QVERIFY2(told.isEmpty() ? target.Log().isEmpty() : target.Log().contains(told.toLatin1()), target.Log());
    }

    /// The article stays.
    void picturesThatCannotBeReadAreTold() {
        Written target;
        const QString path = target.Folder.filePath("foto.png");
        WriteFile(path, "<svg xmlns='http://www.w3.org/2000/svg'/>");
        QCOMPARE(StoreImage(target.Run, {"ART_ICO", "A1", path, target.Folder.path()}), RowOutcome::Skipped);
        QVERIFY2(target.Log().contains("IMMAGINE NON LETTA: "), target.Log());
        QCOMPARE(target.Rows("SELECT * FROM X01_IMA_GES"), QStringList());
    }

    /// A run that goes on past midnight writes as of the day on which it began.
    void articlesCountFromTheProcessingDate() {
        Written target;
        target.Get().UserManager.DataElaborazione = QDate(2024, 3, 4);
        const auto write = [&](const QString& code, const QVariant& valid) {
            TargetRow row(target.Run, "ART_ICO");
            return qdxProduction::qdxInsertUpdateArticolo(target.Get(), code, row, [&] {
                row.Set("ARDES", "Vite");
                if (!valid.isNull()) {
                    row.Set("ARINV", valid);
                }
            });
        };
        QVERIFY(write("A'1", {}));
        QVERIFY(write("A2", QDate(2020, 1, 1))); // what the import says of itself wins
        QVERIFY(!write("a'1", {}));              // codes compare without case
        const QString day = "2024-03-04T00:00:00.000Z";
        QCOMPARE(target.Rows("SELECT CDART, ARANN, ARINV, DTINS, DTMDF FROM X01_ART_ICO ORDER BY CDART"),
                 QStringList({"A'1|false|" + QStringList(3, day).join("|"),
                              "A2|false|2020-01-01T00:00:00.000Z|" + day + "|NULL"}));
    }

    void rowsHoldWhatFits() {
        Written target;
        TargetRow row(target.Run, "DOC_VER");
        row.Set("DRNUM", "7-")
            .Set("DRPRZ", "1,5")
            .Set("DRCON", " ")
            .Set("DRQTR", "")
            .Set("DRDES", "Null")
            .Set("DRART", "A")
            .Set("DRART", "B");
        row.Insert();
        QCOMPARE(target.Rows("SELECT DRNUM, DRPRZ, DRCON, DRQTR, DRDES = 'Null', DRART, USINS FROM X01_DOC_VER"),
                 QStringList{"-7|1.5|NULL|NULL|1|B|SYSTEM_IMPORT"});
        QCOMPARE(target.Run.WrittenRows("DOC_VER"), qint64{1});
    }

    /// Codes and texts that people read follow the configuration, as it was when the run began; marks, numbers, notes
    /// and the codes of the source stay as they are.
    void rowsKeepTheCaseOfTheConfiguration_data() {
        Columns<QByteArray, QString, QString>("settings", "counterparty", "article");
        Row("default", QByteArray(), "Rossi & Straße|Via Po 1|Città|Nota|c1|a", "A1|Vite|ext1|NR|M3|Note");
        Row("both", QByteArray("TEXTFIELD_CHAR=1\n"), "ROSSI & STRAßE|VIA PO 1|CITTÀ|Nota|c1|a",
            "A1|VITE|ext1|NR|M3|Note");
        Row("neither", QByteArray("KEYFIELD_CHAR=0\n"), "Rossi & Straße|Via Po 1|Città|Nota|c1|a",
            "a1|Vite|ext1|nr|m3|Note");
    }
    void rowsKeepTheCaseOfTheConfiguration() {
        QFETCH(const QByteArray, settings);
        TestTarget target;
        const QString ini = target.Folder.filePath("Quadrix.ini");
        WriteFile(ini, "[CONFIG]\n" + settings);
        ImportRun run(target.Get(), "modImport_Prova", "ImportProva", "X");
        WriteFile(ini, "[CONFIG]\nKEYFIELD_CHAR=1\nTEXTFIELD_CHAR=0\n"); // holds for the next run
        TargetRow counterparty(run, "CON_TRO");
        counterparty.Set("CORAS", "Rossi & Straße").Set("COIND", "Via Po 1").Set("COCIT", "Città").Set("CONOT", "Nota");
        counterparty.Set("COCGE", "c1").Set("COMID", "a").Insert();
        TargetRow article(run, "ART_ICO");
        article.Set("CDART", "a1").Set("ARDES", "Vite").Set("CDEXT", "ext1").Set("ARUMS", "nr").Set("ARMAT", "m3");
        article.Set("ARNOT", "Note").Insert();
        QTEST(target.Rows("SELECT CORAS, COIND, COCIT, CONOT, COCGE, COMID FROM X01_CON_TRO").value(0), "counterparty");
        QTEST(target.Rows("SELECT CDART, ARDES, CDEXT, ARUMS, ARMAT, ARNOT FROM X01_ART_ICO").value(0), "article");
    }

    /// What a run has written is there for the next one, however the source writes it: SQLite knows the case of plain
    /// letters alone.
    void codesAreFoundAgain_data() {
        Columns<QByteArray, QString>("settings", "code");
        for (const QByteArray& settings : {QByteArray(), QByteArray("KEYFIELD_CHAR=0\n")}) {
            for (const char* code : {"metà", "Unità'1", "CITTÀ", "b1", "Null"}) {
                Row(QByteArray(settings + code).constData(), settings, QString::fromUtf8(code));
            }
        }
    }
    void codesAreFoundAgain() {
        QFETCH(const QByteArray, settings);
        QFETCH(const QString, code);
        TestTarget target;
        WriteFile(target.Folder.filePath("Quadrix.ini"), "[CONFIG]\n" + settings);
        ImportRun run(target.Get(), "modImport_Prova", "ImportProva", "X");
        Session& session = run.GetSession();
        TargetRow(run, "TAB_MOP").Set("CDMOP", code).Set("MPDES", "Null").Insert();
        QVERIFY(IsThere(session, "TAB_MOP", "CDMOP", code));
        QCOMPARE(LookUp(session, "TAB_MOP", "CDMOP", code, "MPDES"), QString("Null"));
        QVERIFY(IdWhere(session, "TAB_MOP", Equals(session, "CDMOP", code)) != 0);
        const qint64 list = PriceListWriter(run).Head(code, "V", "Listino").id;
        QCOMPARE(PriceListWriter(run).Head(code, "V", "Listino").id, list);
    }

    void documentsAreFoundByTheirNumber_data() {
        Columns<QString, bool>("number", "isThere");
        Row("digits", "502", true);
        Row("as others write it", "+502,0", true);
        Row("another", "503", false);
        Row("none", "5E2", false);
        Row("blank", "", false);
    }
    void documentsAreFoundByTheirNumber() {
        QFETCH(const QString, number);
        QFETCH(const bool, isThere);
        Written target;
        TargetRow(target.Run, "DOC_VEN").Set("DTNUM", "502.00").Set("DTCAU", "ORD").Set("DTANN", 2024).Insert();
        QCOMPARE(DocumentWriter(target.Run, Sales).Find(number, "ORD", 2024) != 0, isThere);
    }

    /// The translations are looked at before anything is written, whatever is imported.
    void checksTheTranslations() {
        TestTarget target;
        target.Execute("ALTER TABLE SYS_IMP RENAME COLUMN TBOLD TO TBALT");
        QCOMPARE(LacksOf(target.Get(), {}).necessary, QStringList{"Quadrix: colonna 'SYS_IMP.TBOLD'"});
    }

    /// An import whose look-ups fail goes on, and its result says so.
    void countsFailedLookupsInTheResult() {
        TestTarget target;
        target.Execute("DROP TABLE SYS_IMP");
        ImportRun run(target.Get(), "modImport_Prova", "ImportProva", "X");
        run.Guard([&] {
            for (const char* code : {"a", "b"}) {
                modImport::GetNewCode(target.Get(), "TAB_MOP", "CDMOP", code, true);
            }
        });
        const RunResult& result = target.Get().Results.last();
        QCOMPARE(result.outcome, RunResult::Outcome::Done);
        QCOMPARE(result.failedLookUps, 2);
        QCOMPARE(result.errors.size(), 1);
        QVERIFY2(result.errors[0].startsWith("GetNewCode: "), qPrintable(result.errors[0]));
        QCOMPARE(result.notes.count, 2);
    }

    void numbersCounterparties_data() {
        Columns<QStringList, QString>("codes", "next");
        Row("none", QStringList(), "000001");
        Row("one", QStringList{"000999"}, "001000");
        Row("a code that is no number", QStringList{"ZZ9"}, "000001");
        Row("others among them", QStringList{"000099", "99", "5000", "12A456", "5-0000", "ZZ9"}, "000100");
        Row("the last", QStringList{"999999", "ZZ9"}, "i codici a sei cifre di CON_TRO sono esauriti");
    }
    void numbersCounterparties() {
        QFETCH(const QStringList, codes);
        Written target;
        for (const QString& code : codes) {
            target.Execute("INSERT INTO X01_CON_TRO (CDCON) VALUES ('" + code + "')");
        }
        const CounterpartyRegister parties(target.Run);
        QString next;
        const auto error = ErrorOf<ImportError>([&] { next = parties.NextCode(); });
        QTEST(error ? error->Message() : next, "next");
    }

    /// One load movement for each warehouse, numbered after those of the year, with the articles' costs.
    void loadsBalances() {
        Written target;
        target.Execute("INSERT INTO X01_ART_ICO (CDART, ARDES, ARUMS, ARCOS) VALUES ('VITE', 'Vite M8', 'PZ', 0.335)");
        target.Execute("INSERT INTO X01_MOV_MAG (MMANN, MMNUM) VALUES (2024, 41)");
        target.Execute("INSERT INTO X01_MOV_MAG (MMANN, MMNUM) VALUES (2023, 900)");
        StockWriter writer(target.Run);
        QCOMPARE(writer.Balance("001", "VITE", 0), RowOutcome::Skipped);
        QCOMPARE(writer.Balance("001", "MANCA", 5), RowOutcome::Skipped);
        QCOMPARE(target.Value("SELECT COUNT(*) FROM X01_MOV_MAG"), QString("2"));
        QVERIFY(target.Log().contains("ARTICOLO NON TROVATO"));
        QCOMPARE(writer.Balance("001", "VITE", 3), RowOutcome::Inserted);
        QCOMPARE(writer.Balance("002", "VITE", -1), RowOutcome::Inserted);
        QCOMPARE(writer.Balance("001", "VITE", 2), RowOutcome::Inserted);
        QCOMPARE(target.Rows("SELECT MMNUM, MMMAG, MMESR FROM X01_MOV_MAG WHERE MMNUM BETWEEN 42 AND 50"),
                 QStringList({"42|001|2024", "43|002|2024"}));
        QCOMPARE(target.Rows("SELECT MRTES, MRNUM, MRQTA, MRPRZ, MRVAL, MRUMS FROM X01_MOV_MAR"),
                 QStringList({"3|1|3|0.335|1.01|PZ", "4|1|-1|0.335|-0.34|PZ", "3|2|2|0.335|0.67|PZ"}));
    }

    /// A reset removes what an import wrote and what has lost its head; what a hand wrote stays.
    void removesImportedDocuments() {
        Written target;
        for (const Family* family : {&Sales, &Purchases, &WorkAccount}) {
            for (const char* user : {"SYSTEM_IMPORT", "ANNA"}) {
                target.Execute(QString("INSERT INTO X01_%1 (DTNUM, USINS) VALUES (1, '%2')").arg(family->head, user));
            }
            for (const QString& child : {family->row, family->dueDate}) {
                for (const int head : {1, 2, 2, 99}) {
                    target.Execute(QString("INSERT INTO X01_%1 (IDTES, USINS) VALUES (%2, 'X')").arg(child).arg(head));
                }
            }
        }
        Empty(target.Run, false, DocumentEmptying());
        QCOMPARE(target.Value("SELECT COUNT(*) FROM X01_DOC_VER"), QString("4"));
        Empty(target.Run, true, DocumentEmptying());
        for (const Family* family : {&Sales, &Purchases, &WorkAccount}) {
            QCOMPARE(target.Rows("SELECT USINS FROM X01_" + family->head), QStringList{"ANNA"});
            QCOMPARE(target.Rows("SELECT IDTES FROM X01_" + family->row), QStringList({"2", "2"}));
            QCOMPARE(target.Rows("SELECT IDTES FROM X01_" + family->dueDate), QStringList({"2", "2"}));
        }
    }

    /// The triggers of document rows sleep while documents are written, and wake up whatever happens.
    void switchesTriggersOnAgain() {
        Written target;
        target.Execute("CREATE TRIGGER conta AFTER INSERT ON X01_DOC_VER BEGIN UPDATE X01_DOC_VEN SET DTMER = 1; END");
        target.Execute("INSERT INTO X01_DOC_VEN (DTNUM, DTMER) VALUES (1, 0)");
        QVERIFY(ErrorOf<ImportError>([&] {
            const TriggersOff triggers(target.Run, DocumentRowTables());
            target.Execute("INSERT INTO X01_DOC_VER (DRNUM) VALUES (1)");
            throw ImportError("interrotto");
        }));
        QCOMPARE(target.Value("SELECT DTMER FROM X01_DOC_VEN"), QString("0"));
        target.Execute("INSERT INTO X01_DOC_VER (DRNUM) VALUES (2)");
        QCOMPARE(target.Value("SELECT DTMER FROM X01_DOC_VEN"), QString("1"));
    }

    /// What the import leaves to be done by hand is no success, however well its rows went.
    void aTriggerThatStaysOffFailsTheRun() {
        TestTarget target;
        const QString text = "CREATE TRIGGER conta AFTER INSERT ON X01_DOC_VER BEGIN SELECT 1; END";
        target.Execute(text);
        ImportRun run(target.Get(), "modImport_Prova", "ImportProva", {});
        run.Guard([&] {
            const TriggersOff triggers(run, DocumentRowTables());
            target.Execute("CREATE TRIGGER conta AFTER INSERT ON X01_DOC_VEN BEGIN SELECT 1; END"); // takes the name
            run.Complete("Importazione completata");
        });
        const RunResult& result = target.Get().Results.last();
        QCOMPARE(result.outcome, RunResult::Outcome::Failed);
        QCOMPARE(result.errors.size(), 1);
        QVERIFY(result.errors[0].startsWith("I trigger di X01_DOC_VER sono rimasti disattivati"));
        QVERIFY2(result.errors[0].endsWith("da eseguire a mano: " + text), qPrintable(result.errors[0]));
        QVERIFY(target.Person.Messages.isEmpty());
        QCOMPARE(target.Value("SELECT DDL FROM QDX_TRIGGERS_OFF"), text);
    }

    /// Where the server is gone nothing can be run by hand: the next import wakes them up. Tables without triggers are
    /// none of the trouble.
    void triggersOfAServerThatIsGoneAreLeftToTheNextRun_data() {
        Columns<TestTarget::On>("engine");
        Row("MariaDB", TestTarget::On::MariaDbAgain);
        Row("SQLite", TestTarget::On::Embedded);
    }
    void triggersOfAServerThatIsGoneAreLeftToTheNextRun() {
        QFETCH(const TestTarget::On, engine);
        if (engine != TestTarget::On::Embedded && !TestTarget::HasMariaDb()) {
            QSKIP("needs the MariaDB server of scripts/test");
        }
        TestTarget target(engine);
        target.Execute(engine == TestTarget::On::Embedded
                           ? "CREATE TRIGGER conta AFTER INSERT ON X01_DOC_VER BEGIN SELECT 1; END"
                           : "CREATE TRIGGER conta AFTER INSERT ON X01_DOC_VER FOR EACH ROW SET @conta = 1");
        ImportRun run(target.Get(), "modImport_Prova", "ImportProva", {});
        run.Guard([&] {
            const TriggersOff triggers(run, DocumentRowTables());
            target.Db().CloseConnection();
        });
        const QStringList errors = target.Get().Results.last().errors;
        QCOMPARE(errors.size(), 1);
        QVERIFY2(errors[0].startsWith("I trigger di X01_DOC_VER sono rimasti disattivati") &&
                     errors[0].contains("i trigger 'conta' attendono nella tabella QDX_TRIGGERS_OFF"),
                 qPrintable(errors[0]));
        target.Db().OpenConnection();
        QCOMPARE(target.Value("SELECT NAME FROM QDX_TRIGGERS_OFF"), QString("conta"));
        { const TriggersOff next(run, DocumentRowTables()); }
        QVERIFY(!target.Db().GetTables().contains("QDX_TRIGGERS_OFF"));
        target.Execute("DROP TRIGGER conta");
    }

    void valuesDocumentRows_data() {
        QTest::addColumn<QList<double>>("numbers"); // quantity, price, discounts
        Columns<double>("amount");
        Row("half a cent", QList<double>{3, 1.005, 0, 0, 0}, 3.02);
        Row("discounts, one on the other", QList<double>{2, 100, 10, 10, 50}, 81.0);
        Row("a return", QList<double>{-2, 10.333, 0, 0, 0}, -20.67);
        Row("given away", QList<double>{2, 100, 100, 0, 0}, 0.0);
    }
    void valuesDocumentRows() {
        QFETCH(const QList<double>, numbers);
        DocumentRow row;
        row.quantity = numbers[0];
        row.price = numbers[1];
        row.discounts = {numbers[2], numbers[3], numbers[4]};
        QTEST(row.Amount(), "amount");
    }

    /// A document may be imported again: its rows are found by their numbers, each once.
    void findsRowsToRewrite() {
        Written target;
        for (const char* row : {"1, 2, 'ANNA'", "1, 2, 'SYSTEM_IMPORT'", "1, 2, 'SYSTEM_IMPORT'", "9, 2, 'ANNA'"}) {
            target.Execute(QString("INSERT INTO X01_DOC_VER (IDTES, DRNUM, USINS) VALUES (%1)").arg(row));
        }
        const DocumentWriter writer(target.Run, Sales);
        QCOMPARE(writer.FindRow(1, 2), qint64{2});
        QCOMPARE(writer.FindRow(9, 2), qint64{4});
        QCOMPARE(writer.FindImportedRow(1, 2), qint64{2});
        QCOMPARE(writer.FindImportedRow(1, 2, {2}), qint64{3});
        QCOMPARE(writer.FindImportedRow(1, 2, {2, 3}), qint64{0});
        target.Execute("UPDATE X01_DOC_VER SET DRART = 'VITE', USMDF = 'SYSTEM_IMPORT' WHERE IDTES = 9");
        QCOMPARE(writer.FindImportedRow(9, 2, {}, "VITE"), qint64{4}); // an earlier release has written over it
        QCOMPARE(writer.FindImportedRow(9, 2, {}, "DADO"), qint64{0});
        QCOMPARE(writer.FindImportedRow(9, 2), qint64{0});
    }

    /// Without a quantity a price holds for any; the same quantity is rewritten, in another validity it is another, and
    /// so it is in the list of the other direction.
    void rewritesScales() {
        Written target;
        PriceListWriter writer(target.Run);
        const QDate newYear(2024, 1, 1);
        const ListHead sales = writer.Head("L1", "V", "Listino");
        const ListHead purchases = writer.Head("L1", "A", "Acquisti");
        QCOMPARE(writer.Head("L1", "V", "Listino").id, sales.id);
        QVERIFY(purchases.id != sales.id);
        QCOMPARE(writer.AddScale(writer.Article(sales, "A", {newYear}), {{}, 10, {5, 2}}), RowOutcome::Inserted);
        QCOMPARE(writer.AddScale(writer.Article(sales, "A", {newYear}), {{}, 11, {4, {}}}), RowOutcome::Updated);
        QCOMPARE(writer.AddScale(writer.Article(sales, "A", {newYear}), {0.5, 12}), RowOutcome::Inserted);
        QCOMPARE(writer.AddScale(writer.Article(sales, "A", {}), {{}, 13}), RowOutcome::Inserted);
        QCOMPARE(writer.AddScale(writer.Article(purchases, "A", {newYear}), {{}, 7}), RowOutcome::Inserted);
        QCOMPARE(target.Rows("SELECT IDLSD, SCQTA, SCPRZ, SCSCO, SCSC2 FROM X01_LIS_ARS ORDER BY RECORD_ID"),
                 QStringList({"1|999999999|11|4|NULL", "1|0.5|12|NULL|NULL", "2|999999999|13|NULL|NULL",
                              "3|999999999|7|NULL|NULL"}));
        QVERIFY(target.Log().contains("prezzo 11 sconti 4, prima 10 sconti 5+2"));
    }

    /// What a list and an article's row are in the source now, on rows that an earlier import wrote without their head.
    void listsAreBroughtUpToDate() {
        Written target;
        const QDate newYear(2024, 1, 1);
        PriceListWriter first(target.Run);
        const qint64 row = first.Article(first.Head("L1", "V", "Listino", "USD"), "A", {newYear, QVariant()});
        target.Execute("UPDATE X01_LIS_ART SET IDTES = NULL");
        PriceListWriter again(target.Run);
        const ListHead list = again.Head("L1", "V", "Listino 2024", "EUR");
        QCOMPARE(again.Article(list, "A", {newYear, QDate(2024, 6, 30)}, "Fiera"), row);
        QCOMPARE(again.Article(list, "A", {newYear}), row); // the source does not tell of the end
        QCOMPARE(target.Rows("SELECT LTDES, LTVAL, IDTES, LAFIV, LANOT FROM X01_LIS_ART A JOIN X01_LIS_TES T ON "
                             "T.CDLIS = A.CDLIS"),
                 QStringList("Listino 2024|EUR|1|2024-06-30T00:00:00.000Z|Fiera"));
        QVERIFY(target.Log().contains("ora in EUR, prima in USD"));
        QVERIFY_THROWS_EXCEPTION(ImportError, again.Head("L1", "V", "Listino 2024", "USD"));
    }
};

QUADRIX_TEST(TestWriters)
#include "test_writers.moc"
