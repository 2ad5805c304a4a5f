#include "adapters/registry.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/files.h"
#include "tests/support/flaws.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestWindow.h"
#include "ui/windowPlace.h"

#include <QMenu>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

using contract::Button;

namespace {

const QString Company = "Officine Dimostrative S.r.l.";

constexpr std::array<const char*, 8> ImportControls{"cmdImportCli",   "cmdImportArt",    "cmdImportDis",
                                                    "cmdImportDoc",   "cmdImportAcq",    "cmdImportSaldi",
                                                    "cmdImportPiano", "cmdImportDisegni"};

QString Caption(const QPushButton& button) { return button.text().remove('&'); }

} // namespace

class TestFrmImport : public QObject {
    Q_OBJECT

private slots:
    void cleanupTestCase() { m_origins.reset(); }

    // --- Loading ---

    void LoadsListsAndRemembersTheCompany() {
        TestWindow test;
        test.Set("IMPORT", "AZIENDA", Company);
        test.Set("IMPORT", "ORIGINE", "Mexal");
        test.Start();
        QCOMPARE(test.List("cmbAzienda").currentText(), Company);
        QCOMPARE(test.List("cmbOrigine").count(), 57);
        QCOMPARE(test.List("cmbOrigine").itemText(2), QString("Tessera + Solution"));
        QCOMPARE(test.List("cmbOrigine").currentIndex(), -1);
        QCOMPARE(test.List("cmbErrors").currentText(), QString("Gestiti dall'utente"));
        QVERIFY(test.Button("cmdReset").isVisible() && test.Button("cmdSequence").isVisible());
        QVERIFY(!test.Window().findChild<QWidget*>("frmConnection")->isVisible());
        QCOMPARE(test.Setting("IMPORT", "Disable_ImportPiano"), QString("0"));
    }

    /// Of two companies of one name the list tells the code; the one chosen last is chosen again.
    void TellsCompaniesOfOneNameApart() {
        TestWindow test;
        test.Set("IMPORT", "AZIENDA", Company);
        test.Start();
        CreateDatabase(test.Get().Quadrix, "ALT", "Altra S.r.l.");
        test.Get().Quadrix.Execute("UPDATE SYS_AZI SET AZRAS = '" + Company + "'");
        test.Window().close();
        test.Set("IMPORT", "AZIENDA", Company);
        test.Start();
        QCOMPARE(test.List("cmbAzienda").currentIndex(), -1);
        test.Choose("cmbAzienda", Company + " (DEM)");
        test.Window().close();
        test.Start();
        QCOMPARE(test.List("cmbAzienda").currentText(), Company + " (DEM)");
        QCOMPARE(test.List("cmbAzienda").count(), 2);
    }

    void ATaskIsNothingToCompare() {
        TestWindow test;
        test.Start(StartMode::Fast3);
        test.Choose("cmbOrigine", "Ad-Hoc");
        auto* menu = test.Window().findChild<QToolButton*>("cmdProof")->menu();
        emit menu->aboutToShow();
        QCOMPARE(menu->actions().size(), 1);
        QCOMPARE(menu->actions().first()->text(), QString("Tutto ciò che l'origine importa"));
    }

    void SettingsHideAndLock() {
        TestWindow test;
        test.Set("IMPORT", "ORIGINE", "Arca 2000");
        test.Set("IMPORT", "Disable_Configuration", "1");
        test.Set("IMPORT", "Disable_Reset", "1.0");
        test.Set("IMPORT", "Disable_ImportDoc", "si");
        test.Set("IMPORT", "Disable_ImportCli", "1");
        test.Set("IMPORT", "Disable_Sequence", "1");
        DialogDriver driver;
        test.Start();
        QVERIFY2(driver.Events.size() == 1 && driver.Events.first().contains("Disable_ImportDoc"),
                 qPrintable(driver.Events.join('|')));
        for (const char* list : {"cmbAzienda", "cmbOrigine", "cmbErrors"}) {
            QVERIFY(!test.List(list).isEnabled());
        }
        QVERIFY(!test.Button("cmdReset").isVisible());
        QVERIFY(!test.Window().findChild<QToolButton*>("cmdSource")->isVisible());
        // Locked lists leave no other way to choose than the last one.
        QCOMPARE(test.List("cmbOrigine").currentText(), QString("Arca 2000"));
        // What the row of that origin shows stays hidden.
        QVERIFY(!test.Button("cmdImportCli").isVisible() && !test.Button("cmdSequence").isVisible());
        QVERIFY(test.Button("cmdImportArt").isVisible());
    }

    void UnreadableSettingsAreToldOnce_data() {
        Columns<StartMode>("mode");
        Row("no start mode", StartMode::None);
        Row("locked lists", StartMode::Fast2);
    }
    void UnreadableSettingsAreToldOnce() {
        QFETCH(StartMode, mode);
        TestWindow test;
        test.Set("IMPORT", "Disable_ImportSaldi", "1");
        const QString path = test.Folder.filePath("Quadrix.ini");
        const QByteArray readable = ReadFile(path);
        WriteFile(path, "\xEF\xBB\xBF\xFF" + readable); // says that it is UTF-8, and is not
        DialogDriver driver;
        test.Start(mode);
        QCOMPARE(driver.Events.size(), 1);
        QVERIFY2(driver.Events.first().contains("Quadrix.ini"), qPrintable(driver.Events.first()));
        QVERIFY(test.Window().isVisible() && test.Window().findChild<QWidget*>("frmConnection")->isVisible());
        QVERIFY(test.Button("cmdImportSaldi").isVisible());
        WriteFile(path, readable);
        test.Button("cmdRetryConnection").click();
        QCOMPARE(driver.Events.size(), 1);
        QCOMPARE(test.List("cmbAzienda").itemText(0), Company);
        QVERIFY(!test.Button("cmdImportSaldi").isVisible());
    }

    /// The window tells what is wrong, shows what its start mode leaves, and goes on when the setting is mended.
    void ADatabaseThatIsNoQuadrixDatabaseIsExplained() {
        TestWindow test;
        {
            ovConnection other;
            OpenEmbedded(other, test.Folder.filePath("altro.db"));
            other.Execute("CREATE TABLE X (N INTEGER)");
        }
        test.Set("DATABASE", "DatabaseName", "altro.db");
        test.Set("IMPORT", "Disable_ImportDisegni", "0");
        DialogDriver driver;
        test.Start(StartMode::Fast3);
        QCOMPARE(driver.Events.size(), 1);
        const auto* banner = test.Window().findChild<QWidget*>("frmConnection");
        QVERIFY(banner->isVisible());
        QVERIFY(banner->findChild<QLabel*>("lblConnection")->text().contains("non è un database di Quadrix"));
        QCOMPARE(test.List("cmbOrigine").count(), 57);
        QVERIFY(!test.Button("cmdReset").isVisible() && !test.Button("cmdImportCli").isVisible());
        QVERIFY(test.Button("cmdImportDisegni").isVisible());
        test.Set("DATABASE", "DatabaseName", "quadrix.db");
        test.Button("cmdRetryConnection").click();
        QVERIFY(!banner->isVisible());
        QCOMPARE(test.List("cmbAzienda").itemText(0), Company);
        QCOMPARE(driver.Events.size(), 1);
    }

    void ACompanyMadeMeanwhileIsInTheList() {
        TestWindow test;
        test.Start();
        test.Choose("cmbAzienda", Company);
        CreateDatabase(test.Get().Quadrix, "ALT", "Altra S.p.A.");
        CreateDatabase(test.Get().Quadrix, "ZZ9", "Nuova S.p.A.");
        QComboBox& list = test.List("cmbAzienda");
        list.showPopup();
        QCOMPARE(list.count(), 3);
        // The chosen one stays, which now is the second.
        QCOMPARE(list.currentIndex(), 1);
        list.hidePopup();
        test.Get().Quadrix.Execute("DROP TABLE SYS_AZI");
        DialogDriver driver;
        list.showPopup();
        list.hidePopup();
        QCOMPARE(list.count(), 3);
        QVERIFY(driver.Events.isEmpty());
    }

    void TheWindowIsWhereItWas() {
        TestWindow test;
        test.Start();
        test.Window().resize(760, 560);
        test.Window().close();
        test.Start();
        QCOMPARE(test.Window().size(), QSize(760, 560));
        QCOMPARE(windowPlace::Fitted({820, 730}, {960, 540}), QSize(820, 492));
        QCOMPARE(windowPlace::Fitted({820, 730}, {1920, 1080}), QSize(820, 730));
    }

    void AStartModeShowsOneTask() {
        TestWindow test;
        test.Start(StartMode::Fast3);
        QStringList shown;
        for (const char* name : ImportControls) {
            if (test.Button(name).isVisible()) {
                shown.append(test.Button(name).text());
            }
        }
        QCOMPARE(shown, QStringList{"&Sistema Disegni Sfridi"});
        QVERIFY(!test.Button("cmdReset").isVisible() && !test.Button("cmdSequence").isVisible());
        QVERIFY(test.Button("cmdExit").isVisible());
        // The task is the same for every origin, also for one whose own button does something else.
        DialogDriver driver;
        test.Choose("cmbAzienda", Company);
        test.Choose("cmbOrigine", "Arca 2000");
        test.Button("cmdImportDisegni").click();
        QCOMPARE(driver.Events.size(), 1);
        QVERIFY2(driver.Events.first().contains("CorreggiAllegatiLantek"), qPrintable(driver.Events.first()));
    }

    void AFailedConnectionIsExplainedAndTriedAgain() {
        TestWindow test;
        test.Set("DATABASE", "DatabaseName", "manca/quadrix.db");
        DialogDriver driver;
        test.Start();
        QCOMPARE(driver.Events.size(), 1);
        QVERIFY(driver.Events.first().startsWith("reported "));
        const auto* banner = test.Window().findChild<QWidget*>("frmConnection");
        QVERIFY(test.Window().isVisible() && banner->isVisible());
        const QString text = banner->findChild<QLabel*>("lblConnection")->text().remove(QChar(0x200B));
        QVERIFY2(text.contains("manca/quadrix.db") && text.contains("Quadrix.ini"), qPrintable(text));
        test.Button("cmdImportCli").click();
        QCOMPARE(driver.Events.last(), QString("[!] Selezionare l'azienda sul quale operare!"));
        test.Set("DATABASE", "DatabaseName", "quadrix.db");
        test.Button("cmdRetryConnection").click();
        QVERIFY(!banner->isVisible());
        QCOMPARE(test.List("cmbAzienda").itemText(0), Company);
        QCOMPARE(driver.Events.size(), 2);
    }

    // --- Choosing ---

    void EveryOriginSetsItsButtons_data() {
        Columns<QString>("name");
        for (const contract::Origin* origin : registry::Origins()) {
            Row(qPrintable(origin->name), origin->name);
        }
    }
    /// One window, in which the origins are chosen one after the other: what a row does not mention stays.
    void EveryOriginSetsItsButtons() {
        if (!m_origins) {
            m_origins = std::make_unique<TestWindow>();
            m_origins->Start();
        }
        TestWindow& test = *m_origins;
        QFETCH(QString, name);
        std::array<ButtonState, 8> before;
        for (size_t i = 0; i < before.size(); ++i) {
            before[i] = {test.Button(ImportControls[i]).isVisible(), Caption(test.Button(ImportControls[i]))};
        }
        before[5].caption = "Importa Saldi di Magazzino";
        test.Choose("cmbOrigine", name);
        const contract::ButtonRows& rows = registry::Find(name)->buttons;
        for (size_t i = 0; i < before.size(); ++i) {
            const bool visible =
                rows[i].shown == contract::Shown::Keep ? before[i].visible : rows[i].shown == contract::Shown::Yes;
            QCOMPARE(test.Button(ImportControls[i]).isVisible(), visible);
            QCOMPARE(Caption(test.Button(ImportControls[i])),
                     rows[i].caption.isEmpty() ? before[i].caption : rows[i].caption);
        }
        test.Window().resize(test.Window().minimumSizeHint());
        QTest::qWait(1);
        QTRY_COMPARE(flaws::Of(test.Window()), QString());
    }

    void TheWheelChangesNoChoice_data() {
        Columns<QString>("name");
        Row("company", "cmbAzienda");
        Row("origin", "cmbOrigine");
        Row("errors", "cmbErrors");
    }
    void TheWheelChangesNoChoice() {
        QFETCH(QString, name);
        TestWindow test;
        test.Start();
        CreateDatabase(test.Get().Quadrix, "ZZ9", "Nuova S.p.A.");
        QComboBox& list = test.List(name);
        test.List("cmbAzienda").showPopup();
        test.List("cmbAzienda").hidePopup();
        list.setCurrentIndex(0);
        list.setFocus();
        const QPointF at = list.rect().center();
        QWheelEvent notch(at, list.mapToGlobal(at), {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(&list, &notch);
        QCOMPARE(list.currentIndex(), 0);
        QTest::keyClick(&list, Qt::Key_Down);
        QCOMPARE(list.currentIndex(), 1);
    }

    /// Captions of an earlier origin stay; the hint tells what runs now.
    void HintsTellWhatRuns() {
        TestWindow test;
        test.Start();
        const auto hint = [&test](const char* name) {
            const QPushButton& button = test.Button(name);
            return button.accessibleDescription() == button.toolTip() ? button.toolTip() : QString();
        };
        QCOMPARE(hint("cmdImportCli"), QString("Scegliere prima l'origine dei dati"));
        test.Choose("cmbOrigine", "WinProgest");
        test.Choose("cmbOrigine", "Arca 2000");
        QCOMPARE(Caption(test.Button("cmdImportCli")), QString("Riallinea DRORI"));
        QCOMPARE(hint("cmdImportCli"), QString("Controparti da Arca 2000: ImportContropartiArca2000"));
        QVERIFY(!test.Button("cmdImportCli").font().italic());
        const QComboBox& list = test.List("cmbOrigine");
        QVERIFY(list.itemData(list.findText("Arca 2000"), Qt::ToolTipRole).isNull());
    }

    void AnOriginShowsWhatASettingHid() {
        TestWindow test;
        QVector<bool> shown;
        for (const QString control : ImportControls) {
            shown.append(shown.size() % 3 != 0);
            test.Set("IMPORT", "Disable_" + control.mid(3), shown.last() ? "0" : "1");
        }
        test.Set("IMPORT", "Disable_Sequence", "1");
        test.Start();
        for (qsizetype i = 0; i < shown.size(); ++i) {
            QCOMPARE(test.Button(ImportControls.at(size_t(i))).isVisible(), shown[i]);
        }
        QVERIFY(!test.Button("cmdSequence").isVisible() && test.Button("cmdReset").isVisible());
        test.Choose("cmbOrigine", "Ad-Hoc");
        QVERIFY(test.Button("cmdImportCli").isVisible());
        test.Choose("cmbOrigine", "Mexal");
        QVERIFY(test.Button("cmdImportAcq").isVisible());
        QCOMPARE(Caption(test.Button("cmdImportAcq")), QString("Importa Tabelle Generali"));
    }

    // --- The gate ---

    void NothingStartsWithoutCompanyAndOrigin_data() {
        Columns<QString>("button");
        Row("import", "cmdImportCli");
        Row("reset", "cmdReset");
    }
    void NothingStartsWithoutCompanyAndOrigin() {
        QFETCH(QString, button);
        TestWindow test;
        test.Start();
        DialogDriver driver;
        test.Button(button).click();
        test.Choose("cmbAzienda", Company);
        test.Button(button).click();
        test.Choose("cmbOrigine", "Arca 2000");
        test.Get().Quadrix.Execute("UPDATE SYS_AZI SET AZRAS = 'Altra'");
        test.Button(button).click();
        QCOMPARE(driver.Events,
                 QStringList({"[!] Selezionare l'azienda sul quale operare!", "[!] Selezionare l'origine dei dati!",
                              "[!] Si è verificato un errore imprevisto sull'azienda selezionata!"}));
    }

    void TheErrorListIsMappedAndAMissingProcedureNamed() {
        TestWindow test;
        test.Start();
        test.Choose("cmbAzienda", Company);
        contract::Origin unbuilt;
        for (const contract::Origin* origin : registry::Origins()) {
            if (ProceduresOf(*origin, Button::Cli).empty()) {
                unbuilt = *origin;
            }
        }
        QVERIFY2(!unbuilt.name.isEmpty(), "every origin has its counterparties: this case needs another button");
        test.Choose("cmbOrigine", unbuilt.name);
        const std::array expected{ErrorAction::Ask, ErrorAction::Ignore, ErrorAction::Retry, ErrorAction::Abort};
        for (int position = 0; position < 4; ++position) {
            DialogDriver driver;
            test.List("cmbErrors").setCurrentIndex(position);
            test.Button("cmdImportCli").click();
            QCOMPARE(test.Get().Errors.Action, expected.at(static_cast<size_t>(position)));
            QCOMPARE(driver.Events.size(), 1);
            QVERIFY2(driver.Events.first().startsWith("[!] ") && driver.Events.first().contains(unbuilt.name),
                     qPrintable(driver.Events.first()));
        }
    }

    void TheSequenceNeedsItsPassword() {
        TestWindow test;
        test.Start();
        DialogDriver driver;
        driver.Inputs = {"tr1v0la8", "Tr1v0la8 ", std::nullopt, "Tr1v0la8"};
        for (int i = 0; i < 4; ++i) {
            test.Button("cmdSequence").click();
        }
        const QStringList asked{"? Lanciare la sequenza di importazione? = cmdYes", "> Password per import: "};
        QCOMPARE(driver.Events,
                 asked + asked + asked + asked + QStringList{"[!] Selezionare l'azienda sul quale operare!"});
        driver.Events.clear();
        driver.Inputs = {"Tr1v0la8"};
        test.Choose("cmbAzienda", Company);
        test.Choose("cmbOrigine", "Arca Evolution");
        test.Button("cmdSequence").click();
        QVERIFY2(driver.Events.last().startsWith("reported ") && driver.Events.last().contains("Sequence.ini"),
                 qPrintable(driver.Events.last()));
    }

    // --- Reset and closing ---

    void AResetEmptiesTheChosenTables() {
        TestWindow test;
        test.Set("IMPORT", "AZIENDA", Company);
        test.Start();
        test.Choose("cmbOrigine", "Arca 2000");
        test.Get().Quadrix.Execute("INSERT INTO DEM_ART_FMT DEFAULT VALUES");
        DialogDriver driver;
        driver.On = [](QWidget& dialog) {
            if (dialog.objectName() == "frmReset" && dialog.isVisible()) {
                auto* box = dialog.findChild<QAbstractButton*>("chkMagaLam");
                if (!box->isChecked()) {
                    box->click();
                    QTimer::singleShot(0, dialog.findChild<QPushButton*>("cmdOk"), &QPushButton::click);
                }
                return true;
            }
            return false;
        };
        test.Button("cmdReset").click();
        QCOMPARE(driver.Events, QStringList({"? Confermi l'eliminazione di tutti i dati selezionati? = cmdYes",
                                             "[i] Reset Database eseguito con successo!"}));
        QCOMPARE(test.Value("SELECT COUNT(*) FROM DEM_ART_FMT"), QString("0"));
    }

    void ClosingRemembersTheChoice() {
        TestWindow test;
        test.Start();
        test.Choose("cmbAzienda", Company);
        test.Choose("cmbOrigine", "Esatto");
        test.Choose("cmbOrigine", "EsaSoftware \"e\"");
        test.Button("cmdExit").click();
        QVERIFY(!test.Window().isVisible());
        QVERIFY(!test.Get().Quadrix.State());
        QCOMPARE(test.Setting("IMPORT", "ORIGINE"), QString("EsaSoftware \"e\""));
        QCOMPARE(test.Setting("IMPORT", "AZIENDA"), Company);
    }

private:
    std::unique_ptr<TestWindow> m_origins; ///< the window that goes through all origins
};

QUADRIX_TEST(TestFrmImport)
#include "test_frmImport.moc"
