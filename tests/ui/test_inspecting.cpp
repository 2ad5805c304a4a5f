#include "tests/support/DialogDriver.h"
#include "tests/support/files.h"
#include "tests/support/flaws.h"
#include "tests/support/foreignSource.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/TestWindow.h"
#include "ui/frmHelp.h"
#include "ui/frmInspect.h"
#include "ui/frmSource.h"

#include <QCheckBox>
#include <QDesktopServices>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QTabWidget>
#include <QTest>
#include <QTextBrowser>
#include <QToolButton>
#include <QTreeWidget>
#include <QUrl>

namespace {

/// A window with the company and Gescom chosen, and the foreign source behind it.
class ForeignWindow : public TestWindow {
public:
    ForeignWindow() {
        MakeForeignSource(Folder.filePath("sorgente.sqlite"));
        Set("IMPORT", "Databasename", "altro.sqlite");
        Start();
        Choose("cmbAzienda", "Officine Dimostrative S.r.l.");
        Choose("cmbOrigine", "Gescom");
    }
    QToolButton& Tool(const QString& name) { return *Window().findChild<QToolButton*>(name); }
    QString Source() { return Window().findChild<QWidget*>("lblSource")->accessibleName(); }
};

/// Works in a dialog of a kind once, in the turn that follows its showing; every press is counted.
template<class Dialog>
class AtDialog {
public:
    AtDialog(DialogDriver& driver, std::function<void(Dialog&)> work) {
        driver.On = [this, work = std::move(work)](QWidget& dialog) {
            auto* its = qobject_cast<Dialog*>(&dialog);
            if (its != nullptr && !m_done) {
                m_done = true;
                QTimer::singleShot(0, its, [its, work] {
                    work(*its);
                    its->accept();
                });
            }
            return its != nullptr;
        };
    }
    bool Done() const { return m_done; }

private:
    bool m_done = false;
};

void ChooseItem(QDialog& dialog, const QString& list, const QString& text) {
    auto* tree = dialog.findChild<QTreeWidget*>(list);
    tree->setCurrentItem(tree->findItems(text, Qt::MatchExactly).value(0));
}

void ChooseData(QDialog& dialog, const QString& list, const QString& name) {
    auto* box = dialog.findChild<QComboBox*>(list);
    box->setCurrentIndex(box->findData(name));
}

void Press(QDialog& dialog, const char* button) { dialog.findChild<QPushButton*>(button)->click(); }

} // namespace

/// The source in the window: chosen, tried, looked at and fitted.
class TestInspecting : public QObject {
    Q_OBJECT

public slots:
    /// Stands for the browser.
    void Opened(const QUrl& page) { m_opened = page.toLocalFile(); }

private slots:
    void TellsWhatWillBeRead() {
        ForeignWindow test;
        QVERIFY2(test.Source().endsWith("altro.sqlite"), qPrintable(test.Source()));
        DialogDriver driver;
        test.Tool("cmdTrySource").click();
        QCOMPARE(driver.Events.size(), 1);
        QVERIFY2(driver.Events.first().startsWith("[!] Impossibile connettersi a Gescom!") &&
                     driver.Events.first().contains("non esiste"),
                 qPrintable(driver.Events.first()));
        test.Choose("cmbOrigine", "DOMINIO");
        QVERIFY(test.Source().startsWith("Origine dati ODBC"));
        test.Set("IMPORT", "Databasename", "sorgente.sqlite");
        test.Choose("cmbOrigine", "Gescom");
        test.Tool("cmdTrySource").click();
        QVERIFY2(driver.Events.last().startsWith("[i] File ") && driver.Events.last().endsWith(": 4 tabelle."),
                 qPrintable(driver.Events.last()));
        QVERIFY(test.Get().Source == nullptr);
    }

    /// The window stays, and so does what was chosen in it.
    void TryingTellsThatTheSettingsCannotBeRead() {
        ForeignWindow test;
        const QString path = test.Folder.filePath("Quadrix.ini");
        WriteFile(path, ReadFile(path) + QByteArray("x\0", 2));
        DialogDriver driver;
        test.Tool("cmdTrySource").click();
        QCOMPARE(driver.Events.size(), 1);
        QVERIFY2(driver.Events.first().startsWith("[!] Impossibile connettersi a Gescom!") &&
                     driver.Events.first().contains("Quadrix.ini"),
                 qPrintable(driver.Events.first()));
        QCOMPARE(test.List("cmbOrigine").currentText(), QString("Gescom"));
    }

    void KeepsThePathsThatWereRead() {
        TestWindow test;
        test.Start();
        test.Choose("cmbOrigine", "Arca 2000");
        DialogDriver driver;
        const auto take = [&](const QString& path, QStringList* offered) {
            const AtDialog<frmSource> at(driver, [&](frmSource& dialog) {
                auto* paths = dialog.findChild<QComboBox*>("cmbPath");
                for (int i = 0; i < paths->count(); ++i) {
                    offered->append(paths->itemText(i));
                }
                paths->setCurrentText(path);
                Press(dialog, "cmdOk");
            });
            test.Window().findChild<QToolButton*>("cmdSource")->click();
            return at.Done();
        };
        QStringList offered;
        const QString folder = test.Folder.path();
        QVERIFY(take(folder, &offered) && offered.isEmpty());
        QCOMPARE(test.Setting("IMPORT", "Databasename"), folder);
        QVERIFY(take("/non/esiste", &offered));
        QCOMPARE(offered, QStringList(folder));
        offered.clear();
        QVERIFY(take(folder, &offered)); // one that is gone is not offered
        QCOMPARE(offered, QStringList(folder));
        QVERIFY(take(QString(200, 'x'), &offered));
        QVERIFY(driver.Events.last().contains("200 caratteri"));
        QCOMPARE(test.Setting("IMPORT", "Databasename"), folder);
    }

    /// A source with names that nobody has told before, fitted from nothing to an import without a loss.
    void FitsAForeignSource() {
        ForeignWindow test;
        DialogDriver driver;
        int actions = 0;
        QString flaw;
        const AtDialog<frmSource> source(driver, [&](frmSource& dialog) {
            flaw = flaws::Of(dialog);
            dialog.findChild<QLineEdit*>("txtDatabase")->setText("sorgente.sqlite");
            Press(dialog, "cmdOk");
            actions += 2;
        });
        test.Tool("cmdSource").click();
        ++actions;
        QVERIFY(source.Done());
        QCOMPARE(flaw, QString());
        const AtDialog<frmInspect> fit(driver, [&](frmInspect& dialog) {
            ChooseItem(dialog, "lstTables", "ARCLFR");
            ChooseData(dialog, "cmbTableName", "SOGGETTI");
            Press(dialog, "cmdUseTable");
            ChooseItem(dialog, "lstColumns", "FLAGCLFR");
            ChooseData(dialog, "cmbColumnName", "TIPO_SOGGETTO");
            Press(dialog, "cmdUseColumn");
            Press(dialog, "cmdTakeEqual"); // no name is
            QVERIFY(driver.Events.value(driver.Events.size() - 1).contains("nessun nome è uguale"));
            QTimer::singleShot(0, &dialog,
                               [&] { Press(*qobject_cast<QDialog*>(QApplication::activeModalWidget()), "cmdYes"); });
            Press(dialog, "cmdTakeAll");
            actions += 9;
        });
        test.Tool("cmdInspect").click();
        ++actions;
        QVERIFY(fit.Done());
        QVERIFY(test.Get().Source == nullptr);
        driver.On = nullptr;
        test.Button("cmdImportCli").click();
        actions += 5; // with its two questions and two messages
        QVERIFY(actions < 20);
        QVERIFY2(driver.Events.last().contains("importati correttamente"), qPrintable(driver.Events.join('\n')));
        for (const RunResult& result : test.Get().Results) {
            QCOMPARE(result.givenUpCount, 0);
        }
        QCOMPARE(test.Value("SELECT COUNT(*) FROM DEM_CON_TRO"), QString("4"));
        QCOMPARE(test.Value("SELECT COIVA FROM DEM_CON_TRO WHERE COCGE = '2'"), QString("01234567897"));
        QCOMPARE(test.Value("SELECT COUNT(*) FROM DEM_CON_SED"), QString("1"));
    }

    /// The sheets that are filled in for the origin "Excel" are written where the operator wants them.
    void WritesTemplates() {
        ForeignWindow test;
        QVERIFY(!test.Tool("cmdTemplate").isVisible());
        test.Choose("cmbOrigine", "Excel");
        QVERIFY(test.Tool("cmdTemplate").isVisible());
        const QString path = test.Folder.filePath("articoli.xlsx");
        DialogDriver driver;
        const AtDialog<QDialog> save(
            driver, [&](QDialog& dialog) { dialog.findChild<QLineEdit*>("fileNameEdit")->setText(path); });
        test.Tool("cmdTemplate").menu()->actions().last()->trigger();
        QVERIFY(save.Done());
        const QString result = test.Window().findChild<QPlainTextEdit*>("txtResult")->toPlainText();
        QVERIFY2(result.contains("articoli.xlsx: foglio ARTICOLI") && result.contains("Unità di misura"),
                 qPrintable(result));
        QVERIFY(QFileInfo(path).size() > 0);
    }

    /// What would be written is told, and nothing of it stays.
    void ChecksAndTriesWithoutWriting() {
        ForeignWindow test;
        test.Set("IMPORT", "Databasename", "sorgente.sqlite");
        DialogDriver driver;
        const auto result = [&test] { return test.Window().findChild<QPlainTextEdit*>("txtResult")->toPlainText(); };
        test.Tool("cmdCheck").click();
        QVERIFY2(result().contains("ImportContropartiGescom: manca") && result().contains("tabella 'ARCLFR'"),
                 qPrintable(result()));
        QDir(test.Folder.path()).mkpath("Tracciati");
        WriteFile(test.Folder.filePath("Tracciati/Gescom.ini"),
                  "[TABELLE]\nVETTORI=TRASPORTATORI\nARCLFR=SOGGETTI\nARDEST=LUOGHI\n[COLONNE]\n"
                  "ARCLFR.CODCLFOR=COD_SOGGETTO\nARCLFR.FLAGCLFR=TIPO_SOGGETTO\nARCLFR.RAGCLFOR=DENOMINAZIONE\n"
                  "ARCLFR.RA2CLFOR=DENOMINAZIONE_2\nARCLFR.IVACLFOR=CAMPO7\nARCLFR.FISCLFOR=COD_FISCALE\n"
                  "ARDEST.CODCLFOR=COD_SOGGETTO\nARDEST.FLAGCLFR=TIPO_SOGGETTO\nARDEST.PRGDEST=PROGRESSIVO\n"
                  "VETTORI.CDVETTOR=CODICE\nVETTORI.DSVETTOR=NOME\nVETTORI.PIVETTOR=PARTITA_IVA\n");
        auto* imports = test.Tool("cmdTrial").menu();
        emit imports->aboutToShow();
        QCOMPARE(imports->actions().first()->text(), QString("Controparti da Gescom"));
        imports->actions().first()->trigger();
        QVERIFY2(result().startsWith("Prova (il database è rimasto com'era) di Controparti da Gescom") &&
                     result().contains("inserite 3"),
                 qPrintable(result()));
        auto* proofs = test.Tool("cmdProof").menu();
        emit proofs->aboutToShow();
        QDesktopServices::setUrlHandler("file", this, "Opened");
        proofs->actions().first()->trigger();
        QDesktopServices::unsetUrlHandler("file");
        QVERIFY2(result().contains("che l'origine dà mancano"), qPrintable(result()));
        QVERIFY(ReadFile(m_opened).contains("Controparti"));
        QCOMPARE(test.Value("SELECT COUNT(*) FROM DEM_CON_TRO"), QString("0"));
    }

    /// The page is that of the import whose button has the focus.
    void HelpsWithTheMapping() {
        ForeignWindow test;
        DialogDriver driver;
        QString selected;
        QString keys;
        QString flaw;
        const AtDialog<frmHelp> at(driver, [&](frmHelp& dialog) {
            flaw = flaws::OfEachTab(dialog);
            selected = dialog.findChild<QTextBrowser*>("txtMapping")->textCursor().selectedText();
            keys = dialog.findChild<QTextBrowser*>("txtKeys")->toPlainText();
        });
        test.Window().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&test.Window()));
        test.Button("cmdImportArt").setFocus();
        QTest::keyClick(&test.Button("cmdImportArt"), Qt::Key_F1);
        QTRY_VERIFY(at.Done());
        QCOMPARE(flaw, QString());
        QCOMPARE(selected, QString("ImportArticoliGescom"));
        for (const QToolButton* tool : test.Window().findChildren<QToolButton*>()) {
            const QString key = tool->shortcut().toString();
            QVERIFY2(key.isEmpty() || keys.contains(key), qPrintable(key));
        }
    }

    /// A condition and a further column are written, seen as they would be written, and taken out again.
    void AddsAndPreviews() {
        ForeignWindow test;
        test.Set("IMPORT", "Databasename", "sorgente.sqlite");
        QDir(test.Folder.path()).mkpath("Tracciati");
        const QString path = test.Folder.filePath("Tracciati/Gescom.ini");
        WriteFile(path, "; di Carlo\n[TABELLE]\nARCLFR=SOGGETTI\n[COLONNE]\nARCLFR.CODCLFOR=COD_SOGGETTO\n"
                        "ARCLFR.FLAGCLFR=TIPO_SOGGETTO\nARCLFR.RAGCLFOR=DENOMINAZIONE\n");
        const QByteArray before = ReadFile(path);
        DialogDriver driver;
        QStringList shown;
        QString flaw;
        const AtDialog<frmInspect> at(driver, [&](frmInspect& dialog) {
            ChooseItem(dialog, "lstTables", "ARCLFR");
            dialog.findChild<QLineEdit*>("txtFilter")->setText("SOCIETA = '02'");
            Press(dialog, "cmdSetFilter");
            auto* target = dialog.findChild<QComboBox*>("cmbTarget");
            target->setCurrentIndex(target->findText("CON_TRO.CONOM"));
            dialog.findChild<QComboBox*>("cmbSource")->setCurrentText("GRUPPO_VENDITA");
            dialog.findChild<QComboBox*>("cmbRule")->setCurrentText("First(3)");
            Press(dialog, "cmdAdd");
            auto* tabs = dialog.findChild<QTabWidget*>();
            tabs->setCurrentIndex(2);
            flaw = flaws::OfEachTab(dialog);
            const auto* values = dialog.findChild<QTableWidget*>("tblPreview");
            for (int row = 0; row < values->rowCount(); ++row) {
                shown.append(values->item(row, 0)->text() + '=' +
                             (values->columnCount() == 4 ? values->item(row, 3)->text() : QString("rows")));
            }
            QCOMPARE(ReadFile(path), before + "\n[FILTRI]\nARCLFR=SOCIETA = '02'\n\n[AGGIUNTE]\n"
                                              "CON_TRO.CONOM=ARCLFR.GRUPPO_VENDITA -> First(3)\n");
            dialog.findChild<QLineEdit*>("txtFilter")->clear();
            Press(dialog, "cmdSetFilter");
            auto* added = dialog.findChild<QTreeWidget*>("lstAdded");
            added->setCurrentItem(added->topLevelItem(0));
            Press(dialog, "cmdRemove");
        });
        test.Tool("cmdInspect").click();
        QVERIFY(at.Done());
        QCOMPARE(flaw, QString());
        QVERIFY2(shown.contains("CON_TRO.CORAS=Acciaierie Nord S.p.A."), qPrintable(shown.join('\n')));
        QVERIFY(shown.contains("CON_TRO.CONOM=NOR"));
        QVERIFY(shown.contains("CON_TRO.CDCON=(lo assegna l'importazione)"));
        QVERIFY(shown.contains("CON_TRO.COCLI=cliente: True; fornitore: False; vettore: False"));
        QVERIFY(shown.contains("CON_TRO.COFGE=fornitore: 7"));
        QVERIFY(ReadFile(path).startsWith(before));
        QVERIFY(!ReadFile(path).contains("SOCIETA"));
        // What the rules did meanwhile has left nothing.
        QCOMPARE(test.Value("SELECT COUNT(*) FROM SYS_IMP"), QString("0"));
        QVERIFY(!QFileInfo::exists(test.Folder.filePath("import.log")));
    }

    /// What is typed is there until it is written, or given up with a yes; a file that cannot be written is told.
    void KeepsAConditionThatIsNotWritten() {
        ForeignWindow test;
        test.Set("IMPORT", "Databasename", "sorgente.sqlite");
        QDir(test.Folder.path()).mkpath("Tracciati");
        WriteFile(test.Folder.filePath("Tracciati/Gescom.ini"), "[TABELLE]\nARCLFR=SOGGETTI\nARDEST=LUOGHI\n");
        DialogDriver driver;
        QStringList seen;
        const AtDialog<frmInspect> at(driver, [&](frmInspect& dialog) {
            auto* filter = dialog.findChild<QLineEdit*>("txtFilter");
            ChooseItem(dialog, "lstTables", "ARCLFR");
            QTest::keyClicks(filter, "X = 1");
            ChooseItem(dialog, "lstTables", "ARDEST");
            seen.append(filter->text());
            ChooseItem(dialog, "lstTables", "ARCLFR");
            seen.append(filter->text());
            driver.Otherwise = "cmdNo";
            Press(dialog, "cmdClose");
            seen.append(dialog.isVisible() ? "open" : "closed");
            // As without the right to write into the folder, which an administrator has always.
            QDir(test.Folder.filePath("Tracciati")).removeRecursively();
            WriteFile(test.Folder.filePath("Tracciati"), "");
            Press(dialog, "cmdSetFilter");
            Press(dialog, "cmdAdd");
            seen.append(filter->text());
        });
        test.Tool("cmdInspect").click();
        QVERIFY(at.Done());
        QCOMPARE(seen, QStringList({"", "X = 1", "open", "X = 1"}));
        QCOMPARE(driver.Events.size(), 3);
        QVERIFY(driver.Events.first().startsWith("? Una condizione non è scritta"));
        for (const QString& told : driver.Events.mid(1)) {
            QVERIFY2(told.startsWith("[!] Il tracciato resta com'era: "), qPrintable(told));
        }
    }

    void TakesAPasswordAway() {
        ForeignWindow test;
        test.Set("IMPORT", "Username", "sa");
        test.Set("IMPORT", "Password", "segreta");
        DialogDriver driver;
        const auto press = [&](bool away) {
            const AtDialog<frmSource> at(driver, [away](frmSource& dialog) {
                dialog.findChild<QCheckBox*>("chkNoPassword")->setChecked(away);
                Press(dialog, "cmdOk");
            });
            test.Tool("cmdSource").click();
            return at.Done();
        };
        QVERIFY(press(false));
        QCOMPARE(test.Setting("IMPORT", "Password"), QString("segreta"));
        QVERIFY(press(true));
        QCOMPARE(test.Setting("IMPORT", "Password"), QString());
    }

private:
    QString m_opened;
};

QUADRIX_TEST(TestInspecting)
#include "test_inspecting.moc"
