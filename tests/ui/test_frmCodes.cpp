#include "sources/tableFile.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/flaws.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/TestWindow.h"
#include "ui/CodePreview.h"
#include "ui/frmCodes.h"
#include "ui/WrappedLabel.h"

#include <QCheckBox>
#include <QListWidget>
#include <QScreen>
#include <QTableWidget>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>

namespace {

/// A window with a company that has payment terms, and codes that wait.
class CodedWindow : public TestWindow {
public:
    CodedWindow() {
        Start();
        Get().Quadrix.Execute(
            "INSERT INTO TAB_MOP (CDMOP, MPDES) VALUES ('RD', 'Rimessa diretta'), ('B9', 'Bonifico')");
        Get().Quadrix.Execute(
            "INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW) VALUES ('anagrafe', 'classe', '1', 'A'), "
            "('anagrafe', 'pag', 'Bonifico', ''), ('anagrafe', 'pag', 'Rimessa diretta', ''), "
            "('anagrafe', 'pag', 'Vista', '')");
        Choose("cmbAzienda", "Officine Dimostrative S.r.l.");
    }
    /// Opens the dialog by its button and works in it.
    bool InDialog(DialogDriver& driver, const std::function<void(frmCodes&)>& work) {
        bool done = false;
        driver.On = [&](QWidget& dialog) {
            auto* its = qobject_cast<frmCodes*>(&dialog);
            if (its != nullptr && !done) {
                done = true;
                QTimer::singleShot(0, its, [its, work] {
                    work(*its);
                    its->accept();
                });
            }
            return its != nullptr;
        };
        Window().findChild<QToolButton*>("cmdCodes")->click();
        return done;
    }
};

QStringList Shown(frmCodes& dialog) {
    const auto* list = dialog.findChild<QTreeWidget*>("lstCodes");
    QStringList codes;
    for (int i = 0; i < list->topLevelItemCount(); ++i) {
        codes.append(list->topLevelItem(i)->text(0) + '=' + list->topLevelItem(i)->text(4));
    }
    return codes;
}

} // namespace

/// The codes in the window: taken by one key, typed, made, and saved together.
class TestFrmCodes : public QObject {
    Q_OBJECT

private slots:
    void WorksTheListOff() {
        CodedWindow test;
        DialogDriver driver;
        QVERIFY(test.InDialog(driver, [&](frmCodes& dialog) {
            QCOMPARE(flaws::Of(dialog), QString());
            auto* list = dialog.findChild<QTreeWidget*>("lstCodes");
            QCOMPARE(Shown(dialog), QStringList({"Bonifico=", "Rimessa diretta=", "Vista="}));
            QCOMPARE(dialog.findChild<QListWidget*>("lstSuggestions")->item(0)->text(),
                     QString("1   B9  Bonifico (descrizione uguale)"));
            QTest::keyClick(list, Qt::Key_1); // and on to the next one
            QTest::keyClick(list, Qt::Key_1);
            auto* target = dialog.findChild<QComboBox*>("cmbTarget");
            target->setEditText("XX");
            QTest::keyClick(dialog.findChild<QPushButton*>("cmdUse"), Qt::Key_Space);
            QVERIFY2(driver.Events.last().contains("'XX' non è in TAB_MOP"), qPrintable(driver.Events.last()));
            target->setEditText("VI");
            dialog.findChild<QLineEdit*>("txtDescription")->setText("A vista");
            dialog.findChild<QPushButton*>("cmdMake")->click();
            QCOMPARE(Shown(dialog), QStringList({"Bonifico=B9 (da salvare)", "Rimessa diretta=RD (da salvare)",
                                                 "Vista=VI (da salvare)"}));
            QCOMPARE(test.Value("SELECT COUNT(*) FROM SYS_IMP WHERE TBNEW <> ''"), QString("1"));
            dialog.findChild<QPushButton*>("cmdSave")->click();
            QVERIFY2(driver.Events.last().contains("Codici cambiati: 3"), qPrintable(driver.Events.last()));
            QVERIFY(Shown(dialog).isEmpty());
        }));
        QCOMPARE(test.Value("SELECT TBNEW FROM SYS_IMP WHERE TBOLD = 'Rimessa diretta'"), QString("RD"));
        QCOMPARE(test.Value("SELECT MPDES FROM TAB_MOP WHERE CDMOP = 'VI'"), QString("A vista"));
    }

    void FindsAndTakesAway() {
        CodedWindow test;
        DialogDriver driver;
        QVERIFY(test.InDialog(driver, [&](frmCodes& dialog) {
            dialog.findChild<QLineEdit*>("txtSearch")->setText("diretta");
            QCOMPARE(Shown(dialog), QStringList("Rimessa diretta="));
            dialog.findChild<QLineEdit*>("txtSearch")->clear();
            dialog.findChild<QCheckBox*>("chkAll")->click();
            auto* lists = dialog.findChild<QComboBox*>("cmbLists");
            lists->setCurrentIndex(lists->findText("anagrafe.classe"));
            QCOMPARE(Shown(dialog), QStringList("1=A"));
            QTest::keyClick(dialog.findChild<QTreeWidget*>("lstCodes"), Qt::Key_Delete);
            QCOMPARE(Shown(dialog), QStringList("1=(da togliere)"));
            dialog.findChild<QPushButton*>("cmdSave")->click();
        }));
        QCOMPARE(test.Value("SELECT COUNT(*) FROM SYS_IMP WHERE TBNEW <> ''"), QString("0"));
    }

    /// What is chosen and not saved outlasts a file of other codes, and is saved before it is applied.
    void KeepsWhatIsNotSaved() {
        CodedWindow test;
        DialogDriver driver;
        QVERIFY(test.InDialog(driver, [&](frmCodes& dialog) {
            const auto press = [&dialog](const char* name) { dialog.findChild<QPushButton*>(name)->click(); };
            const QString path = test.Folder.filePath("codici.xlsx");
            driver.AnswerFiles(test.Folder.filePath("codici"));
            press("cmdExport");
            sources::TableOfFile file = sources::ReadTable(path);
            const auto fill = [&](qsizetype row, const QString& code) {
                file.rows.at(static_cast<size_t>(row)).values[file.columns.indexOf("Nuovo codice")] = code;
                const auto writer = sources::TableWriter::Create(path, {}, file.columns);
                for (const auto& each : file.rows) {
                    writer->AddRow(QVector<QVariant>(each.values.begin(), each.values.end()));
                }
                writer->Close();
            };
            fill(0, "B9");
            driver.Otherwise = "cmdNo";
            press("cmdExport");
            QVERIFY2(driver.Events.value(0).contains("codici compilati"), qPrintable(driver.Events.join('\n')));
            driver.Otherwise.clear();
            driver.AnswerFiles(path);
            auto* list = dialog.findChild<QTreeWidget*>("lstCodes");
            list->setCurrentItem(list->topLevelItem(1));
            dialog.findChild<QComboBox*>("cmbTarget")->setEditText("RD");
            press("cmdUse");
            press("cmdImport");
            QVERIFY2(driver.Events.last().contains("Codici cambiati: 1"), qPrintable(driver.Events.last()));
            QCOMPARE(Shown(dialog), QStringList({"Rimessa diretta=RD (da salvare)", "Vista="}));
            press("cmdApply");
        }));
        QVERIFY2(
            driver.Events.contains("? I codici scelti non sono salvati, e così non si applicano. Salvarli? = cmdYes"),
            qPrintable(driver.Events.join('\n')));
        QCOMPARE(test.Value("SELECT TBNEW FROM SYS_IMP WHERE TBOLD = 'Rimessa diretta'"), QString("RD"));
        QCOMPARE(test.Value("SELECT TBNEW FROM SYS_IMP WHERE TBOLD = 'Bonifico'"), QString("B9"));
    }

    /// What somebody else has saved meanwhile is told and seen, and kept from being written over once.
    void GoesOnWhenACodeWasTranslatedMeanwhile() {
        CodedWindow test;
        DialogDriver driver;
        QVERIFY(test.InDialog(driver, [&](frmCodes& dialog) {
            auto* list = dialog.findChild<QTreeWidget*>("lstCodes");
            QTest::keyClick(list, Qt::Key_1);
            QTest::keyClick(list, Qt::Key_1);
            test.Get().Quadrix.Execute("UPDATE SYS_IMP SET TBNEW = 'RD' WHERE TBOLD = 'Bonifico'");
            auto* save = dialog.findChild<QPushButton*>("cmdSave");
            save->click();
            QCOMPARE(driver.Events, QStringList("[!] anagrafe.pag, codice 'Bonifico': intanto qualcuno gli ha dato il "
                                                "codice 'RD': rivedere la scelta e ripetere"));
            QCOMPARE(Shown(dialog),
                     QStringList({"Bonifico=B9 (da salvare)", "Rimessa diretta=RD (da salvare)", "Vista="}));
            QCOMPARE(test.Value("SELECT TBNEW FROM SYS_IMP WHERE TBOLD = 'Bonifico'"), QString("RD"));
            save->click();
            QVERIFY2(driver.Events.last().contains("Codici cambiati: 2"), qPrintable(driver.Events.last()));
        }));
        QCOMPARE(test.Value("SELECT TBNEW FROM SYS_IMP WHERE TBOLD = 'Bonifico'"), QString("B9"));
    }

    /// Nobody is asked when the system ends the program.
    void TheEndDoesNotWaitForWhatIsNotSaved() {
        CodedWindow test;
        DialogDriver driver;
        bool isOpen = true;
        QVERIFY(test.InDialog(driver, [&](frmCodes& dialog) {
            QTest::keyClick(dialog.findChild<QTreeWidget*>("lstCodes"), Qt::Key_1);
            test.Window().End();
            isOpen = dialog.isVisible();
        }));
        QVERIFY(!isOpen);
        QTRY_VERIFY(!test.Window().isVisible());
        QVERIFY2(driver.Events.isEmpty(), qPrintable(driver.Events.join('\n')));
    }

    /// Every cell with both values, a row that goes, and no work without a yes.
    void ShowsWhatApplyingChanges() {
        codes::Preview preview;
        preview.cells = {{"CON_TRO", "000004 Donati", "COMOP", {}, "RD"}, {"DIS_FAS", "AB 0 - 10", {}, "la riga", {}}};
        CodePreview dialog(QStringList(500, "anagrafe.pag: 'ZZ' = 'RD'"), preview, nullptr);
        dialog.show();
        QVERIFY(dialog.height() <= dialog.screen()->availableGeometry().height());
        QCOMPARE(flaws::Of(dialog), QString());
        const auto* table = dialog.findChild<QTableWidget*>("tblCells");
        QStringList cells;
        for (int row = 0; row < table->rowCount(); ++row) {
            for (int column = 0; column < table->columnCount(); ++column) {
                cells.append(table->item(row, column)->text());
            }
        }
        QCOMPARE(cells.join('|'), QString("CON_TRO|000004 Donati|Pagamento (COMOP)|(vuoto)|RD|DIS_FAS|AB 0 - 10|(tutta "
                                          "la riga)|c'è|si toglie"));
        QVERIFY(dialog.findChild<WrappedLabel*>("lblQuestion")->Text().contains("1 in CON_TRO, 1 in DIS_FAS"));
        QTest::keyClick(&dialog, Qt::Key_Return);
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        dialog.findChild<QPushButton*>("cmdYes")->click();
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
    }
};

QUADRIX_TEST(TestFrmCodes)
#include "test_frmCodes.moc"
